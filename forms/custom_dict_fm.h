#pragma once
// The base of all cards: the modal dialog in which one row of a grid (or of a data source) is viewed
// and changed, saved through one stored procedure that takes the row's values by position.

#include "fm_dialog.h"
#include "field_name_grammar.h"

#include "fib_datasource.h"
#include "fib_errors.h"
#include "fib_query.h"

#include <QPointer>
#include <QVariantList>

class QLabel;
class TDBGridView;
class TGridColumn;

class TCustomDictFM : public TfmDialog
{
    Q_OBJECT
public:
    // The card of a grid: the form named `formName` ("DictFM" becomes `namePrefix` + "DictFM"), saving
    // through `procName`; its data source is the grid's.
    TCustomDictFM(const QString &formName, TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                  QWidget *parent = nullptr);
    // A card on a data source, with no grid; a failed save does not keep it open.
    TCustomDictFM(const QString &formName, TDataSource *dataSource, const QString &procName, QWidget *parent = nullptr);

    QString ProcName;
    bool EditMode = false;
    QVariantList DataArray;
    TpFIBQuery *CardQuery;
    QPointer<TDBGridView> GridView;
    QPointer<TDataSource> DataSource;
    // Text of the last failed save; empty after a success.
    QString ErrorText;
    // Saves on OK although the modal result is not OK, for a card saved while it stays open.
    bool SaveWithoutClose = false;

    TFIBDataSet *DataSet() const { return DataSource ? DataSource->DataSet() : nullptr; }

    // The last editor made of each kind.
    QPointer<QWidget> LastLookup, LastButton, LastDate, LastCurrency, LastMemo, LastText;

    virtual void CreateControls() = 0;
    virtual void DoCreateLabel(QLabel *label) = 0;
    virtual bool IsEnabled() = 0;
    virtual bool IsVisible() = 0;
    virtual void AlignControl(QWidget *control, QWidget *parent) = 0;
    // The arguments of ProcName: the grid's columns of the focused row in column order, or with no
    // grid the fields of the dataset.
    virtual void CreateDataArray();
    virtual QLabel *CreateLabel(QWidget *parent, const QString &caption, const QString &name);
    virtual void SetEditMode(bool value);
    // After the card has been shown.
    virtual void AfterOpenDataset();

    // The save; runs on OK.
    virtual void actOKExecute(QObject *sender);
    virtual void actCancelExecute(QObject *sender);
protected:
    // A data-bound editor of `kind` on the card's data source, taking a copy of `properties` where the
    // kind has settings; remembered as the last editor of its kind.
    QWidget *CreateBoundEditor(TCardEditor kind, const QString &fieldName, const TEditProperties *properties);

public:
    // The text of a failed save procedure keeps the card open.
    void FIBQueryExecuteError(const EFIBError &error);

    void FormShow(QObject *sender) override;
    void FormCloseQuery(QObject *sender, bool &canClose) override;

    static const QString SaveQuestion;

protected:
    // Executes ProcName with DataArray on CardQuery.
    void ExecuteSave();

private:
    void Init(const QString &procName);
    bool m_watchesExecuteErrors = false;
};
