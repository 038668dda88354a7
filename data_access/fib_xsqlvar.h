#pragma once
// Parameters and result columns of a statement, and the conversions between Firebird's types and QVariant.

#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <QVector>
#include <ibase.h>
#include <memory>

class TFIBQuery;

// A fixed-point amount with four decimal places, the client's form of NUMERIC(18,1..4).
struct TFIBCurrency
{
    qint64 Scaled = 0; // value × 10 000
    double ToDouble() const { return double(Scaled) / 10000.0; }
    static TFIBCurrency FromDouble(double value);
    bool operator==(const TFIBCurrency &other) const = default;
};
Q_DECLARE_METATYPE(TFIBCurrency)

// Day numbers from 30 December 1899, the fraction being the time of day.
double DateTimeToSerial(const QDateTime &value);
QDateTime SerialToDateTime(double serial);

// Firebird type numbers, with the nullable bit masked off.
enum TFIBSqlType : short {
    SQLVarying = 448, SQLText = 452, SQLDouble = 480, SQLFloat = 482, SQLLong = 496, SQLShort = 500,
    SQLTimestamp = 510, SQLBlob = 520, SQLDFloat = 530, SQLArray = 540, SQLQuad = 550, SQLTime = 560,
    SQLDate = 570, SQLInt64 = 580, SQLBoolean = 32764, SQLNull = 32766
};

// What describes one column or parameter, independent of where its bytes are kept.
struct TFIBColumnMeta
{
    QString Name;      // the alias of a column, the name of a parameter
    QString SQLName;   // the column or parameter's own name
    QString RelName;   // table of the column
    short SQLType = 0; // masked
    short Scale = 0;
    short SubType = 0;
    short Length = 0;
    bool Nullable = true;

    int CharSet() const { return (SQLType == SQLText || SQLType == SQLVarying) ? (SubType & 0xFF) : 0; }
    bool IsNumeric() const;
    bool IsDateKind() const { return SQLType == SQLTimestamp || SQLType == SQLDate || SQLType == SQLTime; }
    bool IsText() const { return SQLType == SQLText || SQLType == SQLVarying; }
};

// Value of a column given its bytes in Firebird's layout. `blobText` supplies blob contents already read.
QVariant DecodeColumnValue(const TFIBColumnMeta &meta, const char *data, bool isNull, const QVariant &blobText = {});

class TFIBXSQLDA;

// One parameter or one result column of a statement.
class TFIBXSQLVAR
{
public:
    TFIBXSQLVAR(TFIBXSQLDA *owner, int index);

    QString Name() const;
    int Index() const { return m_index; }
    const TFIBColumnMeta &Meta() const;
    short SQLType() const;
    short Scale() const;
    short SubType() const;
    int CharSet() const;
    short Length() const;

    bool IsNull() const;
    QVariant AsVariant() const;
    QString AsString() const;
    int AsInteger() const;
    qint64 AsInt64() const;
    double AsDouble() const;
    QDateTime AsDateTime() const;
    QDateTime AsDate() const { return AsDateTime(); }

    // Writes a value by the conversion rules of the program's parameters.
    void SetValue(const QVariant &value);
    void SetIsNull(bool value);
    void SetAsInteger(int value);
    void SetAsInt64(qint64 value, short scale = 0);
    void SetAsDouble(double value);
    void SetAsCurrency(const TFIBCurrency &value);
    void SetAsDateTime(const QDateTime &value);
    void SetAsString(const QString &value);

private:
    friend class TFIBXSQLDA;
    XSQLVAR &Var() const;
    void SetRaw(short sqlType, short scale, const void *data, int length);
    void SetSerialDate(double serial);
    void SetText(const QString &value);
    void CopyToSiblings();

    TFIBXSQLDA *m_owner;
    int m_index;
};

// An ordered list of parameters or columns with the buffers the client library reads and writes.
class TFIBXSQLDA
{
public:
    TFIBXSQLDA(TFIBQuery *query, bool isInput);
    ~TFIBXSQLDA();
    TFIBXSQLDA(const TFIBXSQLDA &) = delete;
    TFIBXSQLDA &operator=(const TFIBXSQLDA &) = delete;

    int Count() const { return int(m_vars.size()); }
    TFIBXSQLVAR &operator[](int index);
    TFIBXSQLVAR &Vars(int index) { return (*this)[index]; }
    // Case-insensitive search; nullptr for an unknown name.
    TFIBXSQLVAR *FindParam(const QString &name);
    TFIBXSQLVAR *ByName(const QString &name) { return FindParam(name); }
    // Raises "Parameter \"%s\" does not exist in %s" for an unknown name.
    TFIBXSQLVAR &ParamByName(const QString &name);

    XSQLDA *Handle() { return m_da; }
    TFIBQuery *Query() const { return m_query; }
    bool IsInput() const { return m_isInput; }

    // Sizes the descriptor for `count` entries; the client library then describes into it.
    void Resize(int count);
    // After a describe: records the metadata, gives every entry its buffer. `names` names parameters.
    void Setup(const QStringList &names = QStringList());
    void Clear();

    const TFIBColumnMeta &Meta(int index) const { return m_meta[index]; }
    // Output rows: all column buffers lie in one block, so a fetched row can be copied at once.
    const char *RowBuffer() const { return m_row.constData(); }
    short *NullIndicator(int index) { return &m_nulls[index]; }
    // Blob contents read for the current row, by column.
    QVector<QVariant> &BlobValues() { return m_blobValues; }

private:
    friend class TFIBXSQLVAR;
    TFIBQuery *m_query;
    bool m_isInput;
    XSQLDA *m_da = nullptr;
    QVector<TFIBXSQLVAR> m_vars;
    QVector<TFIBColumnMeta> m_meta;
    QVector<QByteArray> m_paramBuffers;     // input: each parameter's own, re-typed on every write
    QVector<QVector<int>> m_siblings;       // input: other entries with the same name
    QByteArray m_row;                       // output: one block for every column
    QVector<short> m_nulls;
    QVector<QVariant> m_blobValues;
};
