#include "fib_query.h"
#include "fib_encoding.h"
#include "fib_errors.h"

#include <QRegularExpression>

namespace {

[[noreturn]] void clientError(const QString &text, QObject *raiser)
{
    throw EFIBClientError(-1, text, raiser);
}

bool isNameChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$');
}

} // namespace

TFIBQuery::TFIBQuery(QObject *owner) : QObject(owner) {}

TFIBQuery::~TFIBQuery()
{
    try {
        FreeHandle();
    } catch (const std::exception &) {
        m_stmt = 0; // the attachment is gone: nothing left to free
    }
    SetTransaction(nullptr);
    SetDatabase(nullptr);
}

void TFIBQuery::SetDatabase(TFIBDatabase *database)
{
    if (m_database == database)
        return;
    FreeHandle();
    if (m_database)
        m_database->RemoveClient(this);
    m_database = database;
    if (m_database)
        m_database->AddClient(this);
}

void TFIBQuery::SetTransaction(TFIBTransaction *transaction)
{
    if (m_transaction == transaction)
        return;
    if (m_open)
        Close();
    if (m_transaction)
        m_transaction->RemoveClient(this);
    m_transaction = transaction;
    if (m_transaction)
        m_transaction->AddClient(this);
}

void TFIBQuery::SetSQLText(const QString &text)
{
    if (text == m_sql)
        return;
    if (m_open)
        Close();
    if (m_prepared)
        FreeHandle();
    m_sql = text;
}

TFIBXSQLVAR &TFIBQuery::Fields(int index)
{
    if (index < 0 || index >= m_fields.Count())
        clientError(QStringLiteral("Field No: %1").arg(index), this);
    return m_fields[index];
}

TFIBXSQLVAR &TFIBQuery::FieldByName(const QString &name)
{
    if (TFIBXSQLVAR *v = m_fields.FindParam(name))
        return *v;
    clientError(QStringLiteral("Field \"%1\" not found.").arg(name), this);
}

TFIBXSQLVAR &TFIBQuery::ParamByName(const QString &name)
{
    if (!m_prepared)
        Prepare();
    return m_params.ParamByName(name);
}

TFIBXSQLVAR *TFIBQuery::FindParam(const QString &name)
{
    if (!m_prepared)
        Prepare();
    return m_params.FindParam(name);
}

QString TFIBQuery::PreprocessParams(const QString &sql, QStringList &names)
{
    names.clear();
    QString out;
    out.reserve(sql.size());
    const qsizetype n = sql.size();
    for (qsizetype i = 0; i < n;) {
        const QChar c = sql[i];
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            qsizetype end = sql.indexOf(c, i + 1);
            end = end < 0 ? n : end + 1;
            out += QStringView(sql).mid(i, end - i);
            i = end;
        } else if (c == QLatin1Char('-') && i + 1 < n && sql[i + 1] == QLatin1Char('-')) {
            qsizetype end = sql.indexOf(QLatin1Char('\n'), i);
            end = end < 0 ? n : end;
            out += QStringView(sql).mid(i, end - i);
            i = end;
        } else if (c == QLatin1Char('/') && i + 1 < n && sql[i + 1] == QLatin1Char('*')) {
            qsizetype end = sql.indexOf(QStringLiteral("*/"), i + 2);
            end = end < 0 ? n : end + 2;
            out += QStringView(sql).mid(i, end - i);
            i = end;
        } else if ((c == QLatin1Char(':') || c == QLatin1Char('?'))) {
            qsizetype j = i + 1;
            while (j < n && isNameChar(sql[j]))
                ++j;
            if (c == QLatin1Char(':') && j == i + 1) { // a lone colon is not a parameter
                out += c;
                ++i;
                continue;
            }
            names << sql.mid(i + 1, j - i - 1);
            out += QLatin1Char('?');
            i = j;
        } else {
            out += c;
            ++i;
        }
    }
    return out;
}

void TFIBQuery::CheckReady(const QString &operation)
{
    if (m_sql.trimmed().isEmpty())
        clientError(QStringLiteral("Can't %1 , because  query is empty").arg(operation), this);
    if (!m_database)
        clientError(QStringLiteral("Database not assigned for %1.").arg(objectName()), this);
    if (!m_transaction)
        clientError(QStringLiteral("Transaction not assigned for %1.").arg(objectName()), this);
    m_database->CheckActive();
    m_transaction->CheckInTransaction();
}

void TFIBQuery::Prepare()
{
    CheckReady(QStringLiteral("Prepare"));
    if (m_prepared)
        return;
    m_isDDL = IsDDLStatement(m_sql);
    m_params.Clear();
    m_fields.Clear();
    if (m_isDDL) {
        m_statementType = SQLDDL;
        m_prepared = true;
        return;
    }

    TFIBClientLibrary &fb = m_database->Client();
    ISC_STATUS_ARRAY status{};
    QStringList names;
    // Inside an EXECUTE BLOCK, ":name" is a local variable of the block, not a parameter.
    static const QRegularExpression executeBlock(QStringLiteral("^\\s*EXECUTE\\s+BLOCK\\b"),
                                                 QRegularExpression::CaseInsensitiveOption);
    const QString text = executeBlock.match(m_sql).hasMatch() ? m_sql : PreprocessParams(m_sql, names);
    const QByteArray bytes = EncodeText(text, m_database->IsUnicodeConnect());
    const unsigned short dialect = static_cast<unsigned short>(m_database->SQLDialect);

    if (!m_stmt && fb.isc_dsql_allocate_statement(status, m_database->Handle(), &m_stmt))
        RaiseFIBError(status, this);
    m_fields.Resize(8);
    ++m_prepareCount;
    if (fb.isc_dsql_prepare(status, m_transaction->Handle(), &m_stmt, static_cast<unsigned short>(bytes.size()),
                            bytes.constData(), dialect, m_fields.Handle()))
        RaiseFIBError(status, this);
    if (m_fields.Handle()->sqld > m_fields.Handle()->sqln) {
        m_fields.Resize(m_fields.Handle()->sqld);
        if (fb.isc_dsql_describe(status, &m_stmt, dialect, m_fields.Handle()))
            RaiseFIBError(status, this);
    }
    m_fields.Setup();

    m_params.Resize(qMax(int(names.size()), 1));
    if (fb.isc_dsql_describe_bind(status, &m_stmt, dialect, m_params.Handle()))
        RaiseFIBError(status, this);
    if (m_params.Handle()->sqld > m_params.Handle()->sqln) {
        m_params.Resize(m_params.Handle()->sqld);
        if (fb.isc_dsql_describe_bind(status, &m_stmt, dialect, m_params.Handle()))
            RaiseFIBError(status, this);
    }
    m_params.Setup(names);

    const char item = isc_info_sql_stmt_type;
    char info[16] = {};
    if (fb.isc_dsql_sql_info(status, &m_stmt, 1, &item, sizeof info, info))
        RaiseFIBError(status, this);
    m_statementType = SQLUnknown;
    if (info[0] == isc_info_sql_stmt_type) {
        const short len = short(fb.isc_vax_integer(info + 1, 2));
        m_statementType = TFIBStatementType(fb.isc_vax_integer(info + 3, len));
    }
    m_hasBlobColumns = false;
    for (int i = 0; i < m_fields.Count(); ++i)
        m_hasBlobColumns = m_hasBlobColumns || m_fields.Meta(i).SQLType == SQLBlob;
    m_prepared = true;
}

void TFIBQuery::ExecQuery()
{
    CheckReady(QStringLiteral("Execute"));
    if (m_open)
        Close();
    if (!m_prepared)
        Prepare();

    TFIBClientLibrary &fb = m_database->Client();
    ISC_STATUS_ARRAY status{};
    const unsigned short dialect = static_cast<unsigned short>(m_database->SQLDialect);

    if (m_isDDL) {
        const QByteArray bytes = EncodeText(m_sql, m_database->NeedUTFEncodeDDL());
        if (fb.isc_dsql_execute_immediate(status, m_database->Handle(), m_transaction->Handle(),
                                          static_cast<unsigned short>(bytes.size()), bytes.constData(), dialect,
                                          nullptr))
            RaiseFIBError(status, this);
        CommitWriteIfAsked();
        return;
    }

    XSQLDA *in = m_params.Count() > 0 ? m_params.Handle() : nullptr;
    switch (m_statementType) {
    case SQLSelect:
    case SQLSelectForUpdate:
        if (fb.isc_dsql_execute(status, m_transaction->Handle(), &m_stmt, dialect, in))
            RaiseFIBError(status, this);
        m_open = true;
        m_eof = false;
        break;
    case SQLExecProcedure: {
        XSQLDA *out = m_fields.Count() > 0 ? m_fields.Handle() : nullptr;
        if (fb.isc_dsql_execute2(status, m_transaction->Handle(), &m_stmt, dialect, in, out))
            RaiseFIBError(status, this);
        if (m_hasBlobColumns)
            ReadBlobColumns();
        break;
    }
    default:
        if (fb.isc_dsql_execute(status, m_transaction->Handle(), &m_stmt, dialect, in))
            RaiseFIBError(status, this);
        break;
    }
    if (m_statementType != SQLSelect && m_statementType != SQLSelectForUpdate && m_statementType != SQLCommit
        && m_statementType != SQLRollback)
        CommitWriteIfAsked();
}

void TFIBQuery::CommitWriteIfAsked()
{
    if (m_transaction->CommitRetainingAfterWrite && m_transaction->Active())
        m_transaction->CommitRetaining();
}

bool TFIBQuery::Next()
{
    if (!m_open || m_eof)
        return false;
    ISC_STATUS_ARRAY status{};
    const ISC_STATUS rc = m_database->Client().isc_dsql_fetch(
        status, &m_stmt, static_cast<unsigned short>(m_database->SQLDialect), m_fields.Handle());
    if (rc == 100) {
        m_eof = true;
        return false;
    }
    if (rc != 0)
        RaiseFIBError(status, this);
    if (m_hasBlobColumns)
        ReadBlobColumns();
    return true;
}

void TFIBQuery::ReadBlobColumns()
{
    for (int i = 0; i < m_fields.Count(); ++i) {
        const TFIBColumnMeta &meta = m_fields.Meta(i);
        if (meta.SQLType != SQLBlob)
            continue;
        QVariant value;
        if (*m_fields.NullIndicator(i) >= 0) {
            ISC_QUAD id;
            std::memcpy(&id, m_fields.Handle()->sqlvar[i].sqldata, sizeof id);
            // For a blob, the scale holds its character set.
            const QByteArray bytes = ReadBlob(id);
            value = DecodeText(bytes.constData(), int(bytes.size()), IsUtf8CharSet(meta.Scale & 0xFF));
        }
        m_fields.BlobValues()[i] = value;
    }
}

void TFIBQuery::Close()
{
    if (!m_open)
        return;
    m_open = false;
    m_eof = true;
    if (m_stmt && m_database && m_database->Connected()) {
        ISC_STATUS_ARRAY status{};
        if (m_database->Client().isc_dsql_free_statement(status, &m_stmt, DSQL_close))
            RaiseFIBError(status, this);
    }
}

void TFIBQuery::FreeHandle()
{
    m_open = false;
    m_eof = true;
    m_prepared = false;
    if (m_stmt && m_database && m_database->Connected()) {
        ISC_STATUS_ARRAY status{};
        m_database->Client().isc_dsql_free_statement(status, &m_stmt, DSQL_drop);
    }
    m_stmt = 0;
}

void TFIBQuery::DatabaseClosing()
{
    FreeHandle();
}

void TFIBQuery::TransactionEnded(TFIBTransaction *)
{
    // The server closed the cursor with the transaction.
    m_open = false;
    m_eof = true;
}

void TFIBQuery::ExecProcedure(const QString &name, const QVariantList &values)
{
    if (values.isEmpty()) {
        ExecProcedure(name);
        return;
    }
    QString text = QStringLiteral("EXECUTE  PROCEDURE ") + name + QStringLiteral("(?P0");
    for (int i = 1; i < values.size(); ++i)
        text += QStringLiteral(",?P") + QString::number(i);
    text += QLatin1Char(')');
    SetSQLText(text);
    if (!m_prepared)
        Prepare();
    for (int i = 0; i < m_params.Count(); ++i)
        m_params[i].SetValue(values.value(i));
    if (text.trimmed().left(8).toUpper() == QLatin1String("EXECUTE "))
        ExecQuery();
}

void TFIBQuery::ExecProcedure(const QString &name)
{
    SetSQLText(QStringLiteral("EXECUTE  PROCEDURE ") + name);
    ExecQuery();
}

ISC_QUAD TFIBQuery::WriteBlob(const QByteArray &bytes)
{
    CheckReady(QStringLiteral("Execute"));
    TFIBClientLibrary &fb = m_database->Client();
    ISC_STATUS_ARRAY status{};
    isc_blob_handle blob = 0;
    ISC_QUAD id{};
    if (fb.isc_create_blob2(status, m_database->Handle(), m_transaction->Handle(), &blob, &id, 0, nullptr))
        RaiseFIBError(status, this);
    for (qsizetype pos = 0; pos < bytes.size(); pos += 32000) {
        const auto len = static_cast<unsigned short>(qMin<qsizetype>(32000, bytes.size() - pos));
        if (fb.isc_put_segment(status, &blob, len, bytes.constData() + pos)) {
            ISC_STATUS_ARRAY ignored{};
            fb.isc_close_blob(ignored, &blob);
            RaiseFIBError(status, this);
        }
    }
    if (fb.isc_close_blob(status, &blob))
        RaiseFIBError(status, this);
    return id;
}

QByteArray TFIBQuery::ReadBlob(const ISC_QUAD &id)
{
    TFIBClientLibrary &fb = m_database->Client();
    ISC_STATUS_ARRAY status{};
    isc_blob_handle blob = 0;
    ISC_QUAD blobId = id;
    if (fb.isc_open_blob2(status, m_database->Handle(), m_transaction->Handle(), &blob, &blobId, 0, nullptr))
        RaiseFIBError(status, this);
    QByteArray result;
    char segment[32768];
    for (;;) {
        unsigned short got = 0;
        const ISC_STATUS rc = fb.isc_get_segment(status, &blob, &got, sizeof segment, segment);
        if (rc != 0 && rc != isc_segment) {
            if (rc == isc_segstr_eof)
                break;
            ISC_STATUS_ARRAY ignored{};
            fb.isc_close_blob(ignored, &blob);
            RaiseFIBError(status, this);
        }
        result.append(segment, got);
    }
    fb.isc_close_blob(status, &blob);
    return result;
}
