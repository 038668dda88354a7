#pragma once
// A select read lazily into a client-side row cache, with a current row, field objects and posting
// of a changed row through an update statement.

#include "fib_query.h"
#include "fib_row_cache.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>
#include <functional>
#include <memory>

class TFIBDataSet;

enum TDataSetState { dsInactive, dsBrowse, dsEdit, dsInsert, dsCalcFields };
enum TFieldType { ftUnknown, ftString, ftSmallint, ftInteger, ftLargeint, ftFloat, ftBCD, ftDateTime, ftDate, ftTime,
                  ftMemo, ftBoolean };

enum TpFIBDsOption { poTrimCharFields = 1, poRefreshAfterPost = 2, poStartTransaction = 4, poAutoFormatFields = 8 };
enum TpPrepareOption { pfImportDefaultValues = 1, psUseBooleanField = 2, psGetOrderInfo = 4, psSetEmptyStrToNull = 8 };
enum TLocateOption { loCaseInsensitive = 1, loPartialKey = 2 };

// One column of a dataset, read and written through the dataset's current row.
class TFIBField
{
public:
    TFIBField(TFIBDataSet *dataSet, int index, const QString &name, TFieldType type, bool calculated);

    QString FieldName() const { return m_name; }
    TFieldType DataType() const { return m_type; }
    int Index() const { return m_index; }
    bool Calculated() const { return m_calculated; }
    TFIBDataSet *DataSet() const { return m_dataSet; }
    // Width in characters of a text column.
    int Size = 0;
    QString DisplayFormat;
    QString EditFormat;
    QString DisplayLabel;
    bool Visible = true;

    QVariant Value() const;
    QVariant AsVariant() const { return Value(); }
    QVariant OldValue() const;
    bool IsNull() const { return !Value().isValid(); }
    QString AsString() const;
    int AsInteger() const;
    double AsFloat() const;
    QDateTime AsDateTime() const;
    // Text under DisplayFormat, as a grid shows it.
    QString DisplayText() const;

    void SetValue(const QVariant &value);
    void SetAsString(const QString &value) { SetValue(value); }
    void Clear() { SetValue(QVariant()); }

    bool IsNumeric() const;

private:
    TFIBDataSet *m_dataSet;
    int m_index;
    QString m_name;
    TFieldType m_type;
    bool m_calculated;
};

// A value shown through its display picture: "dd.mm.yyyy hh:nn" for dates and times, "#,##0.00" (grouped
// thousands) and "0.00" for numbers; an empty picture shows the value as it is.
QString FormatFieldValue(const QVariant &value, const QString &format);
// A date picture ("dd", "mm", "yyyy", "hh", "nn" for minutes, "ss") as a Qt date-time format; other
// characters stay literal.
QString QtDateTimePattern(const QString &picture);

class TFIBDataSet : public QObject, public TFIBDatabaseClient
{
    Q_OBJECT
public:
    explicit TFIBDataSet(QObject *owner = nullptr);
    ~TFIBDataSet() override;

    TFIBDatabase *Database() const { return m_select.Database(); }
    void SetDatabase(TFIBDatabase *database);
    TFIBTransaction *Transaction() const { return m_select.Transaction(); }
    void SetTransaction(TFIBTransaction *transaction);

    QString SelectSQL() const { return m_selectSQL; }
    void SetSelectSQL(const QString &sql);
    QString UpdateSQL;
    QString RefreshSQL;
    QString InsertSQL;
    QString DeleteSQL;
    int Options = 0;
    int PrepareOptions = 0;
    bool AutoCommit = false;
    bool CachedUpdates = false;

    std::function<void(TFIBDataSet *)> BeforePost;
    std::function<void(TFIBDataSet *)> AfterPost;
    std::function<void(TFIBDataSet *)> AfterScroll;
    std::function<void(TFIBDataSet *)> AfterOpen;
    std::function<void(TFIBDataSet *)> OnCalcFields;

    // Parameters of the select; prepares it when needed.
    TFIBXSQLDA &Params();
    TFIBXSQLVAR &ParamByName(const QString &name);
    TFIBXSQLVAR *FindParam(const QString &name);

    void Prepare();
    bool Prepared() const { return m_select.Prepared(); }
    void Open();
    void Close();
    bool Active() const { return m_state != dsInactive; }
    void SetActive(bool value) { value ? Open() : Close(); }
    TDataSetState State() const { return m_state; }

    // Adds a calculated field, filled by OnCalcFields; only before the first open.
    TFIBField *AddCalculatedField(const QString &name, TFieldType type);
    int FieldCount() const { return int(m_fields.size()); }
    TFIBField *Fields(int index) const { return m_fields.value(index).get(); }
    TFIBField *FindField(const QString &name) const;
    // Raises "Field '%s' not found" for a name the dataset lacks.
    TFIBField *FieldByName(const QString &name) const;

    // Navigation over the fetched rows, fetching more as needed.
    void First();
    void Next();
    void Prior();
    void Last();
    bool Eof() const { return m_eof; }
    bool Bof() const { return m_bof; }
    bool IsEmpty() const { return m_cache.Count() == 0; }
    // Rows fetched so far; never forces a fetch.
    int RecordCount() const { return m_cache.Count(); }
    // Zero-based index of the current row, -1 when there is none.
    int CurrentIndex() const { return m_current; }
    bool MoveTo(int index);
    bool AllFetched() const { return m_allFetched; }
    // Fetches up to `count` more rows; returns how many came.
    int FetchMore(int count);
    void FetchAll();
    // A value of any fetched row, without moving.
    QVariant RowValue(int row, int field) const;

    bool Locate(const QString &keyFields, const QVariant &keyValues, int options = 0);

    void Edit();
    void Post();
    void Cancel();
    void Insert();
    void Append() { Insert(); }
    void Delete();

    TFIBDatabase *FIBDatabase() const override { return m_select.Database(); }
    void TransactionEnded(TFIBTransaction *) override;
    void DatabaseClosing() override;

signals:
    // For views bound to the dataset.
    void Opened();
    void Closed();
    void RowsFetched(int first, int last);
    void Scrolled(int row);
    void StateChanged(TDataSetState state);
    void FieldChanged(int field);
    void RowChanged(int row);

private:
    // Announces the rows that came in while it lived.
    class FetchNotice;
    void SetState(TDataSetState state);
    friend class TFIBField;
    QVariant CurrentValue(int field) const;
    QVariant StoredValue(int row, int field) const;
    void SetFieldValue(int field, const QVariant &value);
    bool FetchRow();
    void BuildFields();
    void StartTransactionIfNeeded();
    void FillStatementParams(TFIBQuery &query);
    void CopyOutputsToFields(TFIBQuery &query);
    void DoAfterScroll();
    [[noreturn]] void Raise(const QString &text) const;

    QString m_selectSQL;
    TFIBQuery m_select;
    TFIBQuery m_update;
    TFIBQuery m_refresh;
    TDataSetState m_state = dsInactive;
    QVector<std::shared_ptr<TFIBField>> m_fields;
    int m_dbFieldCount = 0;
    bool m_hasCalcFields = false;

    // The fetched rows as the client library laid them out; rows changed by a post keep their values apart.
    TFIBRowCache m_cache;
    QHash<int, QVector<QVariant>> m_changed;
    QHash<int, QVector<QVariant>> m_calculated;
    QVector<QVariant> m_editBuffer;
    QVector<QVariant> m_oldValues;
    int m_current = -1;
    bool m_eof = true;
    bool m_bof = true;
    bool m_allFetched = true;
};

class TpFIBDataSet : public TFIBDataSet
{
public:
    explicit TpFIBDataSet(QObject *owner = nullptr);
};
