#include "fib_dataset.h"
#include "fib_encoding.h"
#include "fib_errors.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

TFieldType fieldTypeOf(const TFIBColumnMeta &m)
{
    switch (m.SQLType) {
    case SQLText: case SQLVarying: return ftString;
    case SQLShort: return m.Scale ? ftFloat : ftSmallint;
    case SQLLong: return m.Scale ? ftFloat : ftInteger;
    case SQLInt64: return m.Scale == 0 ? ftLargeint : (m.Scale < -4 ? ftFloat : ftBCD);
    case SQLFloat: case SQLDouble: case SQLDFloat: return ftFloat;
    case SQLTimestamp: return ftDateTime;
    case SQLDate: return ftDate;
    case SQLTime: return ftTime;
    case SQLBlob: return ftMemo;
    case SQLBoolean: return ftBoolean;
    default: return ftUnknown;
    }
}

bool isNumericType(TFieldType t)
{
    return t == ftSmallint || t == ftInteger || t == ftLargeint || t == ftFloat || t == ftBCD;
}

QVariant normalised(const QVariant &v)
{
    if (v.metaType() == QMetaType::fromType<TFIBCurrency>())
        return v.value<TFIBCurrency>().ToDouble();
    return v;
}

} // namespace

QString QtDateTimePattern(const QString &format)
{
    QString out;
    bool literal = false;
    for (qsizetype i = 0; i < format.size();) {
        qsizetype j = i;
        while (j < format.size() && format[j].toLower() == format[i].toLower())
            ++j;
        const QString run = format.mid(i, j - i);
        const QChar c = format[i].toLower();
        if (c == QLatin1Char('m')) {
            // "m" after an hour means minutes.
            const bool minutes = out.contains(QLatin1Char('h')) && !out.contains(QLatin1Char('m'));
            out += minutes ? QString(run.size(), QLatin1Char('m')) : QString(run.size(), QLatin1Char('M'));
        } else if (c == QLatin1Char('n')) {
            out += QString(run.size(), QLatin1Char('m'));
        } else if (c == QLatin1Char('y') || c == QLatin1Char('d') || c == QLatin1Char('h') || c == QLatin1Char('s')) {
            out += run.toLower();
        } else {
            // Neighbouring literal runs share one quoted section: Qt reads '' as a quote character.
            if (literal)
                out.chop(1);
            else
                out += QLatin1Char('\'');
            out += QString(run).replace(QLatin1Char('\''), QLatin1String("''")) + QLatin1Char('\'');
            literal = true;
            i = j;
            continue;
        }
        literal = false;
        i = j;
    }
    return out;
}

QString FormatFieldValue(const QVariant &value, const QString &format)
{
    if (!value.isValid())
        return QString();
    const QVariant v = normalised(value);
    if (v.typeId() == QMetaType::QDateTime) {
        if (format.isEmpty())
            return QLocale().toString(v.toDateTime(), QLocale::ShortFormat);
        return v.toDateTime().toString(QtDateTimePattern(format));
    }
    if (format.isEmpty() || v.typeId() == QMetaType::QString)
        return v.toString();
    bool ok = false;
    const double number = v.toDouble(&ok);
    if (!ok)
        return v.toString();
    // Sections: positive;negative;zero. Only the first is used by the program's formats.
    const QString section = format.section(QLatin1Char(';'), 0, 0);
    // The number pattern ends at its last digit placeholder; what follows (a currency mark such as
    // "р.", dot included) stays as written.
    const qsizetype last = std::max(section.lastIndexOf(QLatin1Char('0')), section.lastIndexOf(QLatin1Char('#')));
    const QString pattern = section.left(last + 1);
    const qsizetype dot = pattern.indexOf(QLatin1Char('.'));
    int decimals = 0;
    if (dot >= 0)
        for (qsizetype i = dot + 1; i < pattern.size() && (pattern[i] == QLatin1Char('0') || pattern[i] == QLatin1Char('#')); ++i)
            ++decimals;
    QLocale locale;
    // Thousands are grouped by a comma in the pattern or by blanks between its digits ("# ### ###.00").
    const bool grouped = pattern.contains(QLatin1Char(',')) || pattern.trimmed().contains(QLatin1Char(' '));
    locale.setNumberOptions(grouped ? QLocale::DefaultNumberOptions : QLocale::OmitGroupSeparator);
    QString text = locale.toString(number, 'f', decimals);
    text += section.mid(last + 1).remove(QLatin1Char('"'));
    return text;
}

// ---------------------------------------------------------------------------------------------

TFIBField::TFIBField(TFIBDataSet *dataSet, int index, const QString &name, TFieldType type, bool calculated)
    : m_dataSet(dataSet), m_index(index), m_name(name), m_type(type), m_calculated(calculated)
{
}

QVariant TFIBField::Value() const { return m_dataSet->CurrentValue(m_index); }

QVariant TFIBField::OldValue() const
{
    if (m_dataSet->m_state == dsEdit || m_dataSet->m_state == dsInsert)
        return m_dataSet->m_oldValues.value(m_index);
    return Value();
}

QString TFIBField::AsString() const
{
    const QVariant v = normalised(Value());
    return v.isValid() ? v.toString() : QString();
}

int TFIBField::AsInteger() const
{
    const QVariant v = normalised(Value());
    if (!v.isValid())
        return 0;
    if (v.typeId() == QMetaType::Double)
        return int(std::llround(v.toDouble()));
    bool ok = false;
    const int r = v.toInt(&ok);
    if (!ok)
        throw EFIBClientError(-1, QStringLiteral("'%1' is not a valid integer value").arg(v.toString()));
    return r;
}

double TFIBField::AsFloat() const
{
    const QVariant v = normalised(Value());
    if (!v.isValid())
        return 0;
    if (v.typeId() == QMetaType::QDateTime)
        return DateTimeToSerial(v.toDateTime());
    bool ok = false;
    const double r = v.toDouble(&ok);
    if (!ok)
        throw EFIBClientError(-1, QStringLiteral("'%1' is not a valid floating point value").arg(v.toString()));
    return r;
}

QDateTime TFIBField::AsDateTime() const
{
    const QVariant v = normalised(Value());
    if (!v.isValid())
        return QDateTime();
    if (v.typeId() == QMetaType::QDateTime)
        return v.toDateTime();
    return SerialToDateTime(v.toDouble());
}

QString TFIBField::DisplayText() const
{
    return FormatFieldValue(Value(), DisplayFormat);
}

bool TFIBField::IsNumeric() const { return isNumericType(m_type); }

void TFIBField::SetValue(const QVariant &value)
{
    m_dataSet->SetFieldValue(m_index, value);
}

// ---------------------------------------------------------------------------------------------

class TFIBDataSet::FetchNotice
{
public:
    explicit FetchNotice(TFIBDataSet *ds) : m_ds(ds), m_before(ds->m_cache.Count()) {}
    ~FetchNotice()
    {
        const int after = m_ds->m_cache.Count();
        if (after > m_before && m_ds->m_state != dsInactive)
            emit m_ds->RowsFetched(m_before, after - 1);
    }

private:
    TFIBDataSet *m_ds;
    int m_before;
};

void TFIBDataSet::SetState(TDataSetState state)
{
    if (m_state == state)
        return;
    m_state = state;
    emit StateChanged(state);
}

TFIBDataSet::TFIBDataSet(QObject *owner) : QObject(owner)
{
    m_select.setObjectName(QStringLiteral("SelectQuery"));
    m_update.setObjectName(QStringLiteral("UpdateQuery"));
    m_refresh.setObjectName(QStringLiteral("RefreshQuery"));
}

TFIBDataSet::~TFIBDataSet()
{
    if (Database())
        Database()->RemoveClient(this);
    if (Transaction())
        Transaction()->RemoveClient(this);
}

void TFIBDataSet::SetDatabase(TFIBDatabase *database)
{
    if (Database())
        Database()->RemoveClient(this);
    m_select.SetDatabase(database);
    m_update.SetDatabase(database);
    m_refresh.SetDatabase(database);
    if (database)
        database->AddClient(this);
}

void TFIBDataSet::SetTransaction(TFIBTransaction *transaction)
{
    if (Transaction())
        Transaction()->RemoveClient(this);
    m_select.SetTransaction(transaction);
    m_update.SetTransaction(transaction);
    m_refresh.SetTransaction(transaction);
    if (transaction)
        transaction->AddClient(this);
}

void TFIBDataSet::SetSelectSQL(const QString &sql)
{
    if (sql == m_selectSQL)
        return;
    if (Active())
        Raise(QStringLiteral("Can't %1 because %2 dataset open.").arg(QStringLiteral("change SelectSQL"), objectName()));
    m_selectSQL = sql;
    m_select.SetSQLText(sql);
    // Calculated fields are the design's, not the select's: they outlive a new text.
    m_fields.removeIf([](const std::shared_ptr<TFIBField> &f) { return !f->Calculated(); });
}

void TFIBDataSet::Raise(const QString &text) const
{
    throw EFIBClientError(-1, text, const_cast<TFIBDataSet *>(this));
}

void TFIBDataSet::StartTransactionIfNeeded()
{
    if ((Options & poStartTransaction) && Transaction() && !Transaction()->Active())
        Transaction()->StartTransaction();
}

void TFIBDataSet::Prepare()
{
    if (m_select.Prepared())
        return;
    StartTransactionIfNeeded();
    m_select.SetSQLText(m_selectSQL);
    m_select.Prepare();
    BuildFields();
}

TFIBXSQLDA &TFIBDataSet::Params()
{
    Prepare();
    return m_select.Params();
}

TFIBXSQLVAR &TFIBDataSet::ParamByName(const QString &name)
{
    return Params().ParamByName(name);
}

TFIBXSQLVAR *TFIBDataSet::FindParam(const QString &name)
{
    return Params().FindParam(name);
}

void TFIBDataSet::BuildFields()
{
    QVector<std::shared_ptr<TFIBField>> calculated;
    for (const auto &f : std::as_const(m_fields))
        if (f->Calculated())
            calculated.append(f);

    TFIBXSQLDA &cols = m_select.Fields();
    QVector<std::shared_ptr<TFIBField>> fields;
    for (int i = 0; i < cols.Count(); ++i) {
        const TFIBColumnMeta &m = cols.Meta(i);
        // A field kept from an earlier prepare keeps what windows set on it.
        std::shared_ptr<TFIBField> field;
        for (const auto &old : std::as_const(m_fields))
            if (!old->Calculated() && old->FieldName() == m.Name && old->DataType() == fieldTypeOf(m)
                && old->Index() == i)
                field = old;
        if (!field) {
            field = std::make_shared<TFIBField>(this, i, m.Name, fieldTypeOf(m), false);
            field->Size = m.IsText() ? m.Length : 0;
            if (Options & poAutoFormatFields) {
                switch (m.SQLType) {
                case SQLTimestamp: field->DisplayFormat = QStringLiteral("dd.mm.yyyy hh:nn"); break;
                case SQLDate: field->DisplayFormat = QStringLiteral("dd.mm.yyyy"); break;
                case SQLTime: field->DisplayFormat = QStringLiteral("hh:nn"); break;
                default:
                    if (m.Scale < 0 && m.IsNumeric()) {
                        const QString zeros(-m.Scale, QLatin1Char('0'));
                        field->DisplayFormat = QStringLiteral("#,##0.") + zeros;
                        field->EditFormat = QStringLiteral("0.") + zeros;
                    }
                    break;
                }
            }
        }
        fields.append(field);
    }
    m_dbFieldCount = int(fields.size());
    for (int i = 0; i < calculated.size(); ++i) {
        auto f = std::make_shared<TFIBField>(this, m_dbFieldCount + i, calculated[i]->FieldName(),
                                             calculated[i]->DataType(), true);
        f->DisplayFormat = calculated[i]->DisplayFormat;
        fields.append(f);
    }
    m_hasCalcFields = !calculated.isEmpty();
    m_fields = fields;
}

TFIBField *TFIBDataSet::AddCalculatedField(const QString &name, TFieldType type)
{
    const int index = int(m_fields.size());
    m_fields.append(std::make_shared<TFIBField>(this, index, name, type, true));
    m_hasCalcFields = true;
    return m_fields.last().get();
}

TFIBField *TFIBDataSet::FindField(const QString &name) const
{
    for (const auto &f : m_fields)
        if (f->FieldName().compare(name, Qt::CaseInsensitive) == 0)
            return f.get();
    return nullptr;
}

TFIBField *TFIBDataSet::FieldByName(const QString &name) const
{
    if (TFIBField *f = FindField(name))
        return f;
    Raise(QStringLiteral("Field '%1' not found").arg(name));
}

void TFIBDataSet::Open()
{
    if (Active())
        return;
    if (!Database())
        Raise(QStringLiteral("Database not assigned for %1.").arg(objectName()));
    if (!Transaction())
        Raise(QStringLiteral("Transaction not assigned for %1.").arg(objectName()));
    StartTransactionIfNeeded();
    Prepare();
    m_cache.SetColumns(m_select.Fields());
    m_changed.clear();
    m_calculated.clear();
    m_current = -1;
    m_select.ExecQuery();
    m_allFetched = false;
    m_state = dsBrowse;
    FetchRow();
    m_current = IsEmpty() ? -1 : 0;
    m_bof = true;
    m_eof = IsEmpty();
    emit Opened();
    emit StateChanged(m_state);
    if (AfterOpen)
        AfterOpen(this);
    DoAfterScroll();
}

void TFIBDataSet::Close()
{
    if (!Active())
        return;
    m_state = dsInactive;
    m_select.Close();
    m_cache.Clear();
    m_changed.clear();
    m_calculated.clear();
    m_editBuffer.clear();
    m_current = -1;
    m_eof = m_bof = true;
    m_allFetched = true;
    emit Closed();
    emit StateChanged(m_state);
}

void TFIBDataSet::TransactionEnded(TFIBTransaction *)
{
    // Rows fetched so far stay readable; the cursor is gone.
    m_allFetched = true;
}

void TFIBDataSet::DatabaseClosing()
{
    m_allFetched = true;
    if (Active())
        m_state = dsBrowse;
}

bool TFIBDataSet::FetchRow()
{
    if (m_allFetched)
        return false;
    if (!m_select.Open() || !m_select.Next()) {
        m_allFetched = true;
        return false;
    }
    m_cache.Append(m_select.Fields());
    if (m_hasCalcFields && OnCalcFields) {
        const int saved = m_current;
        const TDataSetState state = m_state;
        m_current = m_cache.Count() - 1;
        m_state = dsCalcFields;
        m_calculated[m_current].resize(m_fields.size() - m_dbFieldCount);
        try {
            OnCalcFields(this);
        } catch (...) {
            m_current = saved;
            m_state = state;
            throw;
        }
        m_current = saved;
        m_state = state;
    }
    return true;
}

int TFIBDataSet::FetchMore(int count)
{
    FetchNotice notice(this);
    int got = 0;
    while (got < count && FetchRow())
        ++got;
    return got;
}

void TFIBDataSet::FetchAll()
{
    FetchNotice notice(this);
    while (FetchRow()) {
    }
}

QVariant TFIBDataSet::StoredValue(int row, int field) const
{
    if (row < 0 || row >= m_cache.Count() || field < 0 || field >= m_fields.size())
        return QVariant();
    if (field >= m_dbFieldCount) {
        const auto it = m_calculated.constFind(row);
        return it == m_calculated.constEnd() ? QVariant() : it->value(field - m_dbFieldCount);
    }
    const auto changed = m_changed.constFind(row);
    if (changed != m_changed.constEnd())
        return changed->value(field);
    return m_cache.Value(row, field, Options & poTrimCharFields);
}

QVariant TFIBDataSet::CurrentValue(int field) const
{
    if (m_state == dsEdit || m_state == dsInsert)
        return m_editBuffer.value(field);
    return StoredValue(m_current, field);
}

QVariant TFIBDataSet::RowValue(int row, int field) const
{
    if (row == m_current && (m_state == dsEdit || m_state == dsInsert))
        return m_editBuffer.value(field);
    return StoredValue(row, field);
}

void TFIBDataSet::SetFieldValue(int field, const QVariant &value)
{
    if (m_state == dsCalcFields) {
        if (field >= m_dbFieldCount)
            m_calculated[m_current][field - m_dbFieldCount] = value;
        return;
    }
    if (m_state != dsEdit && m_state != dsInsert)
        Raise(QStringLiteral("DataSet not in Edit or Insert mode.(%1)").arg(objectName()));
    QVariant v = value;
    if ((PrepareOptions & psSetEmptyStrToNull) && v.typeId() == QMetaType::QString && v.toString().isEmpty())
        v = QVariant();
    m_editBuffer[field] = v;
    emit FieldChanged(field);
}

void TFIBDataSet::DoAfterScroll()
{
    emit Scrolled(m_current);
    if (AfterScroll)
        AfterScroll(this);
}

bool TFIBDataSet::MoveTo(int index)
{
    FetchNotice notice(this);
    while (index >= m_cache.Count() && FetchRow()) {
    }
    if (index < 0 || index >= m_cache.Count())
        return false;
    if (m_state == dsEdit || m_state == dsInsert)
        Post();
    m_current = index;
    m_eof = m_bof = false;
    DoAfterScroll();
    return true;
}

void TFIBDataSet::First()
{
    if (!Active())
        return;
    if (IsEmpty()) {
        m_eof = m_bof = true;
        return;
    }
    MoveTo(0);
    m_bof = true;
}

void TFIBDataSet::Next()
{
    if (!Active())
        return;
    if (!MoveTo(m_current + 1))
        m_eof = true;
}

void TFIBDataSet::Prior()
{
    if (!Active())
        return;
    if (m_current <= 0)
        m_bof = true;
    else
        MoveTo(m_current - 1);
}

void TFIBDataSet::Last()
{
    if (!Active())
        return;
    FetchAll();
    if (!IsEmpty())
        MoveTo(m_cache.Count() - 1);
    m_eof = true;
}

bool TFIBDataSet::Locate(const QString &keyFields, const QVariant &keyValues, int options)
{
    if (!Active())
        return false;
    QVector<int> keys;
    for (const QString &name : keyFields.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        keys.append(FieldByName(name.trimmed())->Index());
    QVariantList values = keys.size() == 1 ? QVariantList{keyValues} : keyValues.toList();
    FetchNotice notice(this);

    auto matches = [&](int row) {
        for (int k = 0; k < keys.size(); ++k) {
            const QVariant have = normalised(StoredValue(row, keys[k]));
            const QVariant want = normalised(values.value(k));
            if (!want.isValid() || !have.isValid()) {
                if (want.isValid() != have.isValid())
                    return false;
                continue;
            }
            if (m_fields[keys[k]]->DataType() == ftString || have.typeId() == QMetaType::QString) {
                const Qt::CaseSensitivity cs = (options & loCaseInsensitive) ? Qt::CaseInsensitive : Qt::CaseSensitive;
                const QString h = have.toString(), w = want.toString();
                if ((options & loPartialKey) ? !h.startsWith(w, cs) : h.compare(w, cs) != 0)
                    return false;
            } else if (have.typeId() == QMetaType::QDateTime) {
                if (have.toDateTime() != want.toDateTime())
                    return false;
            } else {
                bool ok = false;
                const double w = want.toDouble(&ok);
                if (!ok || have.toDouble() != w)
                    return false;
            }
        }
        return true;
    };

    for (int row = 0;; ++row) {
        if (row >= m_cache.Count() && !FetchRow())
            return false;
        if (matches(row))
            return MoveTo(row);
    }
}

void TFIBDataSet::Edit()
{
    if (!Active())
        Raise(QStringLiteral("Can't %1 because %2 dataset closed.").arg(QStringLiteral("edit"), objectName()));
    if (m_state == dsEdit || m_state == dsInsert)
        return;
    if (UpdateSQL.trimmed().isEmpty())
        Raise(QStringLiteral("Can't update. (%1)").arg(objectName()));
    if (m_current < 0) {
        Insert();
        return;
    }
    m_editBuffer.resize(m_fields.size());
    for (int i = 0; i < m_fields.size(); ++i)
        m_editBuffer[i] = StoredValue(m_current, i);
    m_oldValues = m_editBuffer;
    SetState(dsEdit);
}

void TFIBDataSet::Insert()
{
    Raise(QStringLiteral("Can't insert into dataset. (%1)").arg(objectName()));
}

void TFIBDataSet::Delete()
{
    Raise(QStringLiteral("Can't delete from dataset. (%1)").arg(objectName()));
}

void TFIBDataSet::Cancel()
{
    if (m_state == dsEdit || m_state == dsInsert) {
        m_editBuffer.clear();
        SetState(dsBrowse);
        emit RowChanged(m_current);
    }
}

void TFIBDataSet::FillStatementParams(TFIBQuery &query)
{
    for (int i = 0; i < query.Params().Count(); ++i) {
        TFIBXSQLVAR &param = query.Params()[i];
        const QString name = param.Name();
        QVariant value;
        TFIBField *field = nullptr;
        if (name.startsWith(QLatin1String("OLD_"), Qt::CaseInsensitive)) {
            field = FindField(name.mid(4));
            if (field)
                value = m_oldValues.value(field->Index());
        } else {
            field = FindField(name.startsWith(QLatin1String("NEW_"), Qt::CaseInsensitive) ? name.mid(4) : name);
            if (field)
                value = m_editBuffer.value(field->Index());
        }
        if (field)
            param.SetValue(value);
        else if (TFIBXSQLVAR *selected = &query != &m_select ? m_select.Params().FindParam(name) : nullptr)
            // A detail's key, such as the order of an order's lines, is a parameter of the select.
            param.SetValue(selected->AsVariant());
    }
}

void TFIBDataSet::CopyOutputsToFields(TFIBQuery &query)
{
    for (int i = 0; i < query.Fields().Count(); ++i)
        if (TFIBField *field = FindField(query.Fields()[i].Name()))
            m_editBuffer[field->Index()] = query.Fields()[i].AsVariant();
}

void TFIBDataSet::Post()
{
    if (BeforePost)
        BeforePost(this);
    if (!Active())
        Raise(QStringLiteral("Can't %1 because %2 dataset closed.").arg(QStringLiteral("post"), objectName()));
    if (m_state != dsEdit && m_state != dsInsert)
        Raise(QStringLiteral("Not editing."));

    const QString statement = UpdateSQL.trimmed();
    if (!statement.isEmpty() && statement.section(QLatin1Char('\n'), 0, 0).trimmed() != QLatin1String("No Action")) {
        if (Transaction() && !Transaction()->Active())
            Transaction()->StartTransaction();
        m_update.SetSQLText(UpdateSQL);
        if (!m_update.Prepared())
            m_update.Prepare();
        FillStatementParams(m_update);
        m_update.ExecQuery();
        if (m_update.StatementType() == SQLExecProcedure)
            CopyOutputsToFields(m_update);
        else if (m_update.StatementType() == SQLSelect && m_update.Next()) {
            CopyOutputsToFields(m_update);
            m_update.Close();
        }
    }

    m_changed[m_current] = m_editBuffer;
    SetState(dsBrowse);
    if ((AutoCommit || (Transaction() && Transaction()->CommitRetainingAfterWrite)) && Transaction()
        && Transaction()->Active())
        Transaction()->CommitRetaining();

    if (!RefreshSQL.trimmed().isEmpty() && (Options & poRefreshAfterPost)) {
        m_oldValues = m_editBuffer;
        m_refresh.SetSQLText(RefreshSQL);
        if (!m_refresh.Prepared())
            m_refresh.Prepare();
        FillStatementParams(m_refresh);
        m_refresh.ExecQuery();
        if (m_refresh.Next()) {
            CopyOutputsToFields(m_refresh);
            m_changed[m_current] = m_editBuffer;
        }
        m_refresh.Close();
    }
    m_editBuffer.clear();
    emit RowChanged(m_current);
    if (AfterPost)
        AfterPost(this);
}

TpFIBDataSet::TpFIBDataSet(QObject *owner) : TFIBDataSet(owner)
{
    Options = poTrimCharFields | poRefreshAfterPost | poStartTransaction | poAutoFormatFields;
    PrepareOptions = pfImportDefaultValues | psUseBooleanField | psGetOrderInfo | psSetEmptyStrToNull;
}
