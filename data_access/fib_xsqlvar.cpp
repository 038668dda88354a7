#include "fib_xsqlvar.h"
#include "fib_encoding.h"
#include "fib_errors.h"
#include "fib_query.h"

#include <QLocale>
#include <cmath>
#include <cstring>

namespace {

const QDate kSerialZero(1899, 12, 30);
constexpr qint64 kMsecsPerDay = 86400000;
constexpr int kMjdToJulian = 2400001; // Firebird counts days from 17 November 1858

[[noreturn]] void conversionError()
{
    throw EFIBClientError(-1, QStringLiteral("Invalid data conversion."));
}

qint64 power10(int n)
{
    qint64 p = 1;
    while (n-- > 0)
        p *= 10;
    return p;
}

QDateTime fromTimestamp(ISC_DATE date, ISC_TIME time)
{
    const QDate d = QDate::fromJulianDay(qint64(date) + kMjdToJulian);
    return QDateTime(d, QTime::fromMSecsSinceStartOfDay(int(time / 10)));
}

ISC_DATE toIscDate(const QDate &d)
{
    return ISC_DATE(d.toJulianDay() - kMjdToJulian);
}

ISC_TIME toIscTime(const QTime &t)
{
    return ISC_TIME(t.msecsSinceStartOfDay()) * 10;
}

} // namespace

TFIBCurrency TFIBCurrency::FromDouble(double value)
{
    return TFIBCurrency{qint64(std::llround(value * 10000.0))};
}

double DateTimeToSerial(const QDateTime &value)
{
    const double days = double(kSerialZero.daysTo(value.date()));
    const double time = double(value.time().msecsSinceStartOfDay()) / double(kMsecsPerDay);
    return days >= 0 ? days + time : days - time;
}

QDateTime SerialToDateTime(double serial)
{
    const double days = std::trunc(serial);
    qint64 msecs = std::llround(std::fabs(serial - days) * double(kMsecsPerDay));
    qint64 whole = qint64(days);
    if (msecs >= kMsecsPerDay) {
        msecs -= kMsecsPerDay;
        whole += serial < 0 ? -1 : 1;
    }
    return QDateTime(kSerialZero.addDays(whole), QTime::fromMSecsSinceStartOfDay(int(msecs)));
}

bool TFIBColumnMeta::IsNumeric() const
{
    switch (SQLType) {
    case SQLShort: case SQLLong: case SQLInt64: case SQLFloat: case SQLDouble: case SQLDFloat:
        return true;
    default:
        return false;
    }
}

QVariant DecodeColumnValue(const TFIBColumnMeta &meta, const char *data, bool isNull, const QVariant &blobText)
{
    if (isNull)
        return QVariant();
    auto scaled = [&](qint64 raw) -> QVariant {
        if (meta.Scale == 0)
            return raw;
        return double(raw) / double(power10(-meta.Scale));
    };
    switch (meta.SQLType) {
    case SQLVarying: {
        short len;
        std::memcpy(&len, data, 2);
        return DecodeText(data + 2, len, IsUtf8CharSet(meta.CharSet()));
    }
    case SQLText:
        return DecodeText(data, meta.Length, IsUtf8CharSet(meta.CharSet()));
    case SQLShort: {
        qint16 v;
        std::memcpy(&v, data, 2);
        return meta.Scale == 0 ? QVariant(int(v)) : scaled(v);
    }
    case SQLLong: {
        qint32 v;
        std::memcpy(&v, data, 4);
        return meta.Scale == 0 ? QVariant(int(v)) : scaled(v);
    }
    case SQLFloat: {
        float v;
        std::memcpy(&v, data, 4);
        return double(v);
    }
    case SQLDouble:
    case SQLDFloat: {
        double v;
        std::memcpy(&v, data, 8);
        return v;
    }
    case SQLInt64: {
        qint64 v;
        std::memcpy(&v, data, 8);
        if (meta.Scale == 0)
            return v;
        if (meta.Scale < -4)
            return double(v) / double(power10(-meta.Scale));
        return QVariant::fromValue(TFIBCurrency{v * power10(4 + meta.Scale)});
    }
    case SQLTimestamp: {
        ISC_TIMESTAMP ts;
        std::memcpy(&ts, data, sizeof ts);
        return fromTimestamp(ts.timestamp_date, ts.timestamp_time);
    }
    case SQLDate: {
        ISC_DATE d;
        std::memcpy(&d, data, sizeof d);
        return fromTimestamp(d, 0);
    }
    case SQLTime: {
        ISC_TIME t;
        std::memcpy(&t, data, sizeof t);
        return QDateTime(kSerialZero, QTime::fromMSecsSinceStartOfDay(int(t / 10)));
    }
    case SQLBlob:
        return blobText;
    case SQLArray:
        return QStringLiteral("(Array)");
    case SQLBoolean:
        return bool(*data);
    default:
        conversionError();
    }
}

// ---------------------------------------------------------------------------------------------

TFIBXSQLVAR::TFIBXSQLVAR(TFIBXSQLDA *owner, int index) : m_owner(owner), m_index(index) {}

XSQLVAR &TFIBXSQLVAR::Var() const { return m_owner->m_da->sqlvar[m_index]; }
const TFIBColumnMeta &TFIBXSQLVAR::Meta() const { return m_owner->m_meta[m_index]; }
QString TFIBXSQLVAR::Name() const { return Meta().Name; }
short TFIBXSQLVAR::SQLType() const { return short(Var().sqltype & ~1); }
short TFIBXSQLVAR::Scale() const { return Var().sqlscale; }
short TFIBXSQLVAR::SubType() const { return Var().sqlsubtype; }
int TFIBXSQLVAR::CharSet() const { return Meta().CharSet(); }
short TFIBXSQLVAR::Length() const { return Var().sqllen; }

bool TFIBXSQLVAR::IsNull() const
{
    const XSQLVAR &v = Var();
    return (v.sqltype & 1) && v.sqlind && *v.sqlind < 0;
}

QVariant TFIBXSQLVAR::AsVariant() const
{
    const XSQLVAR &v = Var();
    TFIBColumnMeta current = Meta();
    current.SQLType = short(v.sqltype & ~1);
    current.Scale = v.sqlscale;
    current.SubType = v.sqlsubtype;
    current.Length = v.sqllen;
    if (IsNull())
        return QVariant();
    QVariant blob;
    if (current.SQLType == SQLBlob && !m_owner->m_isInput)
        blob = m_owner->m_blobValues.value(m_index);
    return DecodeColumnValue(current, v.sqldata, false, blob);
}

QString TFIBXSQLVAR::AsString() const
{
    const QVariant v = AsVariant();
    if (v.metaType() == QMetaType::fromType<TFIBCurrency>())
        return QString::number(v.value<TFIBCurrency>().ToDouble(), 'g', 19);
    return v.toString();
}

int TFIBXSQLVAR::AsInteger() const
{
    return int(AsInt64());
}

qint64 TFIBXSQLVAR::AsInt64() const
{
    const QVariant v = AsVariant();
    if (!v.isValid())
        return 0;
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
        return v.toLongLong();
    case QMetaType::Double:
        return std::llround(v.toDouble());
    case QMetaType::QString: {
        bool ok = false;
        const qint64 r = v.toString().trimmed().toLongLong(&ok);
        if (!ok)
            throw EFIBClientError(-1, QStringLiteral("'%1' is not a valid integer value").arg(v.toString()));
        return r;
    }
    case QMetaType::QDateTime:
        return qint64(std::trunc(DateTimeToSerial(v.toDateTime())));
    default:
        if (v.metaType() == QMetaType::fromType<TFIBCurrency>())
            return std::llround(v.value<TFIBCurrency>().ToDouble());
        conversionError();
    }
}

double TFIBXSQLVAR::AsDouble() const
{
    const QVariant v = AsVariant();
    if (!v.isValid())
        return 0;
    if (v.typeId() == QMetaType::QDateTime)
        return DateTimeToSerial(v.toDateTime());
    if (v.metaType() == QMetaType::fromType<TFIBCurrency>())
        return v.value<TFIBCurrency>().ToDouble();
    if (v.typeId() == QMetaType::QString) {
        bool ok = false;
        const double r = v.toString().toDouble(&ok);
        if (!ok)
            conversionError();
        return r;
    }
    return v.toDouble();
}

QDateTime TFIBXSQLVAR::AsDateTime() const
{
    const QVariant v = AsVariant();
    if (!v.isValid())
        return QDateTime();
    if (v.typeId() == QMetaType::QDateTime)
        return v.toDateTime();
    if (v.typeId() == QMetaType::QString) {
        const QDateTime parsed = QDateTime::fromString(v.toString(), Qt::ISODate);
        if (!parsed.isValid())
            conversionError();
        return parsed;
    }
    bool ok = false;
    const double serial = v.toDouble(&ok);
    if (!ok)
        conversionError();
    return SerialToDateTime(serial);
}

void TFIBXSQLVAR::SetRaw(short sqlType, short scale, const void *data, int length)
{
    QByteArray &buffer = m_owner->m_paramBuffers[m_index];
    buffer.resize(qMax(length, 1));
    if (length > 0)
        std::memcpy(buffer.data(), data, size_t(length));
    XSQLVAR &v = Var();
    v.sqltype = short(sqlType | 1);
    v.sqlscale = scale;
    v.sqllen = short(length);
    v.sqlsubtype = sqlType == SQLText ? Meta().SubType : 0;
    if (sqlType == SQLText && !Meta().IsText())
        v.sqlsubtype = 0;
    v.sqldata = buffer.data();
    v.sqlind = &m_owner->m_nulls[m_index];
    *v.sqlind = 0;
    CopyToSiblings();
}

void TFIBXSQLVAR::SetIsNull(bool value)
{
    if (!value) {
        if (IsNull())
            *Var().sqlind = 0;
        CopyToSiblings();
        return;
    }
    if (m_owner->m_isInput && !Meta().Nullable)
        throw EFIBClientError(-1, QStringLiteral("Column cannot be set to null (%1)").arg(Name()));
    const TFIBColumnMeta &meta = Meta();
    QByteArray &buffer = m_owner->m_paramBuffers[m_index];
    const int size = meta.Length + (meta.SQLType == SQLVarying ? 2 : 0);
    buffer.fill('\0', qMax(size, 8));
    XSQLVAR &v = Var();
    v.sqltype = short(meta.SQLType | 1);
    v.sqlscale = meta.Scale;
    v.sqlsubtype = meta.SubType;
    v.sqllen = meta.Length;
    v.sqldata = buffer.data();
    v.sqlind = &m_owner->m_nulls[m_index];
    *v.sqlind = -1;
    CopyToSiblings();
}

void TFIBXSQLVAR::SetAsInteger(int value)
{
    const qint32 v = value;
    SetRaw(SQLLong, 0, &v, 4);
}

void TFIBXSQLVAR::SetAsInt64(qint64 value, short scale)
{
    SetRaw(SQLInt64, scale, &value, 8);
}

void TFIBXSQLVAR::SetAsDouble(double value)
{
    SetRaw(SQLDouble, 0, &value, 8);
}

void TFIBXSQLVAR::SetAsCurrency(const TFIBCurrency &value)
{
    const TFIBColumnMeta &meta = Meta();
    const bool scaledTarget = (meta.SQLType == SQLShort || meta.SQLType == SQLLong || meta.SQLType == SQLInt64)
                              && meta.Scale < 0 && meta.Scale >= -4;
    if (!scaledTarget && (meta.SQLType == SQLFloat || meta.SQLType == SQLDouble || meta.SQLType == SQLDFloat)) {
        SetAsDouble(value.ToDouble());
        return;
    }
    const short scale = scaledTarget ? meta.Scale : short(-4);
    const qint64 divisor = power10(4 + scale);
    // Rounded half away from zero to the target's places.
    const qint64 q = value.Scaled / divisor;
    const qint64 r = value.Scaled % divisor;
    const qint64 rounded = q + (2 * std::llabs(r) >= divisor ? (value.Scaled < 0 ? -1 : 1) : 0);
    SetAsInt64(rounded, scale);
}

void TFIBXSQLVAR::SetAsDateTime(const QDateTime &value)
{
    switch (Meta().SQLType) {
    case SQLTime: {
        const ISC_TIME t = toIscTime(value.time());
        SetRaw(SQLTime, 0, &t, sizeof t);
        break;
    }
    case SQLDate: {
        const ISC_DATE d = toIscDate(value.date());
        SetRaw(SQLDate, 0, &d, sizeof d);
        break;
    }
    default: {
        const ISC_TIMESTAMP ts{toIscDate(value.date()), toIscTime(value.time())};
        SetRaw(SQLTimestamp, 0, &ts, sizeof ts);
        break;
    }
    }
}

void TFIBXSQLVAR::SetSerialDate(double serial)
{
    SetAsDateTime(SerialToDateTime(serial));
}

void TFIBXSQLVAR::SetAsString(const QString &value)
{
    SetText(value);
}

void TFIBXSQLVAR::SetText(const QString &value)
{
    const TFIBColumnMeta &meta = Meta();
    if (value.isEmpty() && (meta.IsNumeric() || meta.IsDateKind())) {
        SetIsNull(true);
        return;
    }
    QString text = value;
    if (meta.IsNumeric()) {
        text.replace(QLatin1Char(','), QLatin1Char('.'));
        const QString separator = QLocale().decimalPoint();
        if (separator != QLatin1String("."))
            text.replace(separator, QLatin1String("."));
    }
    const QByteArray bytes = EncodeText(text, IsUtf8CharSet(meta.CharSet()));
    if (bytes.size() > 32767) {
        const ISC_QUAD id = m_owner->m_query->WriteBlob(bytes);
        SetRaw(SQLBlob, 0, &id, sizeof id);
        Var().sqlsubtype = 1;
        return;
    }
    SetRaw(SQLText, 0, bytes.constData(), int(bytes.size()));
}

void TFIBXSQLVAR::SetValue(const QVariant &value)
{
    const bool dateTarget = Meta().IsDateKind();
    if (!value.isValid() || value.isNull()) {
        SetIsNull(true);
        return;
    }
    switch (value.typeId()) {
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::Short: case QMetaType::UShort:
    case QMetaType::Char: case QMetaType::SChar: case QMetaType::Long: case QMetaType::ULong:
        if (dateTarget)
            SetSerialDate(value.toDouble());
        else if (value.typeId() == QMetaType::UInt || value.typeId() == QMetaType::ULong)
            SetAsInt64(value.toLongLong());
        else
            SetAsInteger(value.toInt());
        return;
    case QMetaType::UChar:
        SetAsInteger(value.toInt());
        return;
    case QMetaType::LongLong: case QMetaType::ULongLong:
        SetAsInt64(value.toLongLong());
        return;
    case QMetaType::Float: case QMetaType::Double:
        if (dateTarget)
            SetSerialDate(value.toDouble());
        else
            SetAsDouble(value.toDouble());
        return;
    case QMetaType::QDateTime:
        SetAsDateTime(value.toDateTime());
        return;
    case QMetaType::QDate:
        SetAsDateTime(QDateTime(value.toDate(), QTime(0, 0)));
        return;
    case QMetaType::QTime:
        SetAsDateTime(QDateTime(kSerialZero, value.toTime()));
        return;
    case QMetaType::QString:
        SetText(value.toString());
        return;
    case QMetaType::Bool:
        SetAsInteger(value.toBool() ? 1 : 0);
        return;
    default:
        break;
    }
    if (value.metaType() == QMetaType::fromType<TFIBCurrency>()) {
        const TFIBCurrency c = value.value<TFIBCurrency>();
        if (dateTarget)
            SetSerialDate(c.ToDouble());
        else
            SetAsCurrency(c);
        return;
    }
    throw EFIBClientError(-1, QStringLiteral("Not permitted."));
}

void TFIBXSQLVAR::CopyToSiblings()
{
    if (!m_owner->m_isInput)
        return;
    const XSQLVAR &src = Var();
    for (int other : m_owner->m_siblings.value(m_index)) {
        XSQLVAR &dst = m_owner->m_da->sqlvar[other];
        QByteArray &buffer = m_owner->m_paramBuffers[other];
        buffer = m_owner->m_paramBuffers[m_index];
        buffer.detach();
        dst.sqltype = src.sqltype;
        dst.sqlscale = src.sqlscale;
        dst.sqlsubtype = src.sqlsubtype;
        dst.sqllen = src.sqllen;
        dst.sqldata = buffer.data();
        dst.sqlind = &m_owner->m_nulls[other];
        *dst.sqlind = *src.sqlind;
    }
}

// ---------------------------------------------------------------------------------------------

TFIBXSQLDA::TFIBXSQLDA(TFIBQuery *query, bool isInput) : m_query(query), m_isInput(isInput)
{
    Resize(0);
}

TFIBXSQLDA::~TFIBXSQLDA()
{
    std::free(m_da);
}

TFIBXSQLVAR &TFIBXSQLDA::operator[](int index)
{
    if (index < 0 || index >= m_vars.size())
        throw EFIBClientError(-1, m_isInput ? QStringLiteral("Invalid parameter index (index exceeds permitted range).")
                                            : QStringLiteral("Invalid column index (index exceeds permitted range)."));
    return m_vars[index];
}

TFIBXSQLVAR *TFIBXSQLDA::FindParam(const QString &name)
{
    for (int i = 0; i < m_meta.size(); ++i)
        if (m_meta[i].Name.compare(name, Qt::CaseInsensitive) == 0)
            return &m_vars[i];
    return nullptr;
}

TFIBXSQLVAR &TFIBXSQLDA::ParamByName(const QString &name)
{
    if (TFIBXSQLVAR *v = FindParam(name))
        return *v;
    throw EFIBClientError(-1, QStringLiteral("Parameter \"%1\" does not exist in %2")
                                  .arg(name, m_query ? m_query->objectName() : QString()));
}

void TFIBXSQLDA::Resize(int count)
{
    std::free(m_da);
    const int n = qMax(count, 1);
    m_da = static_cast<XSQLDA *>(std::calloc(1, XSQLDA_LENGTH(n)));
    m_da->version = SQLDA_VERSION1;
    m_da->sqln = short(n);
    m_da->sqld = 0;
}

void TFIBXSQLDA::Clear()
{
    m_vars.clear();
    m_meta.clear();
    m_paramBuffers.clear();
    m_siblings.clear();
    m_nulls.clear();
    m_blobValues.clear();
    m_row.clear();
    if (m_da)
        m_da->sqld = 0;
}

void TFIBXSQLDA::Setup(const QStringList &names)
{
    const int n = m_da->sqld;
    m_vars.clear();
    m_meta.resize(n);
    m_nulls.fill(0, n);
    m_blobValues.fill(QVariant(), n);
    for (int i = 0; i < n; ++i) {
        const XSQLVAR &v = m_da->sqlvar[i];
        TFIBColumnMeta &m = m_meta[i];
        m.SQLType = short(v.sqltype & ~1);
        m.Nullable = (v.sqltype & 1) != 0;
        m.Scale = v.sqlscale;
        m.SubType = v.sqlsubtype;
        m.Length = v.sqllen;
        m.SQLName = QString::fromLatin1(v.sqlname, v.sqlname_length).trimmed();
        m.RelName = QString::fromLatin1(v.relname, v.relname_length).trimmed();
        m.Name = m_isInput ? names.value(i) : QString::fromLatin1(v.aliasname, v.aliasname_length).trimmed();
        m_vars.append(TFIBXSQLVAR(this, i));
    }

    if (m_isInput) {
        m_paramBuffers.fill(QByteArray(), n);
        m_siblings.fill(QVector<int>(), n);
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j)
                if (i != j && !m_meta[i].Name.isEmpty()
                    && m_meta[i].Name.compare(m_meta[j].Name, Qt::CaseInsensitive) == 0)
                    m_siblings[i].append(j);
            // Input descriptors may report parameters as not nullable; the program sets nulls freely.
            m_meta[i].Nullable = true;
            m_vars[i].SetIsNull(true);
        }
        return;
    }

    // One block for all columns, each aligned for its type.
    QVector<int> offsets(n);
    int size = 0;
    for (int i = 0; i < n; ++i) {
        size = (size + 7) & ~7;
        offsets[i] = size;
        size += m_meta[i].Length + (m_meta[i].SQLType == SQLVarying ? 2 : 0);
    }
    m_row.fill('\0', qMax(size, 1));
    for (int i = 0; i < n; ++i) {
        XSQLVAR &v = m_da->sqlvar[i];
        v.sqldata = m_row.data() + offsets[i];
        v.sqlind = &m_nulls[i];
        v.sqltype = short(v.sqltype | 1);
    }
}
