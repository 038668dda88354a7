#include "fib_database.h"
#include "fib_encoding.h"
#include "fib_errors.h"

#include <QFile>
#include <cerrno>
#include <QRegularExpression>

namespace {

QList<TFIBDatabase *> g_databases;

// The transaction existence block of isc_start_multiple.
struct TransactionBlock
{
    isc_db_handle *Database;
    int TPBLength;
    const char *TPB;
};

[[noreturn]] void clientError(const QString &text, QObject *raiser = nullptr)
{
    throw EFIBClientError(-1, text, raiser);
}

// Major and minor of a version string such as "LI-V3.0.11.33637 Firebird 3.0".
void parseVersion(const QString &text, int &major, int &minor)
{
    static const QRegularExpression re(QStringLiteral("[A-Z]{2}-[A-Z](\\d+)\\.(\\d+)"));
    const auto m = re.match(text);
    if (m.hasMatch()) {
        major = m.captured(1).toInt();
        minor = m.captured(2).toInt();
    }
}

// An "open" of the database file that failed. The local engine adds the system's error number (only "no such
// file" counts then); a server sends the system's text instead, so from a server any failed open counts.
// Creating in its place is safe either way: the engine never creates over an existing file.
bool statusSaysNoFile(const ISC_STATUS *status)
{
    bool openFailed = false;
    for (const ISC_STATUS *p = status; *p != isc_arg_end;) {
        const ISC_STATUS kind = *p++;
        if (kind == isc_arg_gds && *p == isc_io_open_err)
            openFailed = true;
        if (kind == isc_arg_unix && openFailed)
            return *p == ENOENT;
        p += kind == isc_arg_cstring ? 2 : 1;
    }
    return openFailed;
}

} // namespace

TFIBDatabase *DatabaseOf(QObject *component)
{
    if (auto *client = dynamic_cast<TFIBDatabaseClient *>(component))
        return client->FIBDatabase();
    return nullptr;
}

TFIBDatabase::TFIBDatabase(QObject *owner) : QObject(owner)
{
    g_databases.append(this);
}

TFIBDatabase::~TFIBDatabase()
{
    try {
        if (Connected())
            Close();
    } catch (const std::exception &) {
        m_handle = 0; // nothing more can be done for a connection that will not close
    }
    for (TFIBDatabaseClient *client : std::as_const(m_clients))
        if (auto *tr = dynamic_cast<TFIBTransaction *>(client); tr && tr->DefaultDatabase() == this)
            tr->SetDefaultDatabase(nullptr);
    g_databases.removeAll(this);
}

QList<TFIBDatabase *> TFIBDatabase::AllDatabases()
{
    return g_databases;
}

TFIBClientLibrary &TFIBDatabase::Client() const
{
    if (m_client)
        return *m_client;
    return TFIBClientLibrary::Load(LibraryName);
}

void TFIBDatabase::CheckActive() const
{
    if (!Connected())
        clientError(QStringLiteral("%1: Cannot perform operation -- DB is not open.").arg(objectName()),
                    const_cast<TFIBDatabase *>(this));
}

void TFIBDatabase::SetConnected(bool value)
{
    if (value)
        Open();
    else
        Close();
}

void TFIBDatabase::CreateDatabase()
{
    if (Connected())
        clientError(QStringLiteral("Cannot perform operation -- DB is currently open."), this);
    m_client = &TFIBClientLibrary::Load(LibraryName);

    QByteArray sql = "CREATE DATABASE '" + QFile::encodeName(DBName) + "' ";
    if (!UserName.isEmpty())
        sql += "USER '" + UserName.toUtf8().replace('\'', "''") + "' ";
    if (!Password.isEmpty())
        sql += "PASSWORD '" + Password.toUtf8().replace('\'', "''") + "' ";
    sql += AnsiEncode(DBParams.join(QLatin1Char(' ')));
    ISC_STATUS_ARRAY status{};
    isc_tr_handle tr = 0;
    if (m_client->isc_dsql_execute_immediate(status, &m_handle, &tr, 0, sql.constData(),
                                             static_cast<unsigned short>(SQLDialect), nullptr)) {
        m_handle = 0;
        RaiseFIBError(status, this);
    }
    ReadFacts();
}

void TFIBDatabase::Open()
{
    if (Connected())
        return;
    if (DBName.isEmpty())
        clientError(QStringLiteral("Database name is missing."), this);
    m_client = &TFIBClientLibrary::Load(LibraryName);

    const QByteArray path = QFile::encodeName(DBName);
    const QByteArray dpb = AttachParameters();
    ISC_STATUS_ARRAY status{};
    m_lastOpenFoundNoFile = false;
    if (m_client->isc_attach_database(status, 0, path.constData(), &m_handle, static_cast<short>(dpb.size()),
                                      dpb.isEmpty() ? nullptr : dpb.constData())) {
        m_handle = 0;
        m_lastOpenFoundNoFile = statusSaysNoFile(status);
        RaiseFIBError(status, this);
    }
    ReadFacts();
}

QByteArray TFIBDatabase::AttachParameters() const
{
    if (UserName.isEmpty() && Password.isEmpty() && ConnectTimeout <= 0)
        return {};
    QByteArray dpb(1, char(isc_dpb_version1));
    const auto add = [&](char item, const QByteArray &value) {
        dpb.append(item);
        dpb.append(char(qMin<qsizetype>(value.size(), 255)));
        dpb.append(value.left(255));
    };
    if (!UserName.isEmpty())
        add(isc_dpb_user_name, UserName.toUtf8());
    if (!Password.isEmpty())
        add(isc_dpb_password, Password.toUtf8());
    if (ConnectTimeout > 0) {
        QByteArray seconds;
        for (int shift = 0; shift < 32; shift += 8)
            seconds.append(char((quint32(ConnectTimeout) >> shift) & 0xff));
        add(isc_dpb_connect_timeout, seconds);
    }
    return dpb;
}

void TFIBDatabase::ReadFacts()
{
    const char items[] = {isc_info_db_sql_dialect, frb_info_att_charset, isc_info_ods_version,
                          isc_info_ods_minor_version, isc_info_firebird_version, isc_info_version, isc_info_end};
    char buf[512] = {};
    ISC_STATUS_ARRAY status{};
    if (Client().isc_database_info(status, &m_handle, sizeof items, items, sizeof buf, buf))
        RaiseFIBError(status, this);

    m_isFirebird = false;
    m_charSet = 0;
    QString version, firebirdVersion;
    for (const char *p = buf; p < buf + sizeof buf && *p != isc_info_end;) {
        const int item = static_cast<unsigned char>(*p++);
        if (item == isc_info_truncated || item == isc_info_error)
            break;
        const int len = int(Client().isc_vax_integer(p, 2));
        p += 2;
        auto number = [&] { return int(Client().isc_vax_integer(p, static_cast<short>(len))); };
        // Version items hold a count, then length-prefixed strings; the first one names the build.
        auto firstString = [&] { return len > 2 ? QString::fromLatin1(p + 2, static_cast<unsigned char>(p[1])) : QString(); };
        switch (item) {
        case isc_info_db_sql_dialect: m_dbDialect = number(); break;
        case frb_info_att_charset: m_charSet = number(); break;
        case isc_info_ods_version: m_odsMajor = number(); break;
        case isc_info_ods_minor_version: m_odsMinor = number(); break;
        case isc_info_firebird_version:
            m_isFirebird = true;
            firebirdVersion = firstString();
            break;
        case isc_info_version: version = firstString(); break;
        default: break;
        }
        p += len;
    }
    m_serverVersion = m_isFirebird ? firebirdVersion : version;
    m_serverMajor = m_serverMinor = 0;
    parseVersion(m_serverVersion, m_serverMajor, m_serverMinor);
    if (m_dbDialect > 0 && m_dbDialect < SQLDialect)
        SQLDialect = m_dbDialect;
}

bool TFIBDatabase::ComputeNeedUTFEncodeDDL(int charSet, int serverMajor, int serverMinor, int odsMajor, int odsMinor)
{
    const bool translate = charSet == 0 || charSet == 3 || charSet == 4;
    const bool server21 = serverMajor > 2 || (serverMajor == 2 && serverMinor >= 1);
    const bool ods111 = odsMajor > 11 || (odsMajor == 11 && odsMinor >= 1);
    return translate && server21 && ods111;
}

bool TFIBDatabase::NeedUTFEncodeDDL() const
{
    return ComputeNeedUTFEncodeDDL(m_charSet, m_serverMajor, m_serverMinor, m_odsMajor, m_odsMinor);
}

void TFIBDatabase::NotifyClosing()
{
    const auto clients = m_clients;
    for (TFIBDatabaseClient *client : clients)
        client->DatabaseClosing();
}

void TFIBDatabase::Close()
{
    if (!Connected())
        return;
    for (TFIBDatabaseClient *client : std::as_const(m_clients)) {
        auto *tr = dynamic_cast<TFIBTransaction *>(client);
        if (!tr || !tr->Active())
            continue;
        if (tr->TimeoutAction == TACommit || tr->TimeoutAction == TACommitRetaining)
            tr->Commit();
        else
            tr->Rollback();
    }
    NotifyClosing();
    ISC_STATUS_ARRAY status{};
    if (Client().isc_detach_database(status, &m_handle)) {
        m_handle = 0;
        RaiseFIBError(status, this);
    }
    m_handle = 0;
}

void TFIBDatabase::DropDatabase()
{
    CheckActive();
    for (TFIBDatabaseClient *client : std::as_const(m_clients))
        if (auto *tr = dynamic_cast<TFIBTransaction *>(client); tr && tr->Active())
            tr->Rollback();
    NotifyClosing();
    ISC_STATUS_ARRAY status{};
    if (Client().isc_drop_database(status, &m_handle))
        RaiseFIBError(status, this);
    m_handle = 0;
}

void TFIBDatabase::MarkConnectionLost()
{
    // The server is gone: handles are dropped without asking it anything.
    NotifyClosing();
    if (m_handle) {
        ISC_STATUS_ARRAY status{};
        Client().isc_detach_database(status, &m_handle);
    }
    m_handle = 0;
}

void TFIBDatabase::DoConnectionLost(bool &stop)
{
    if (OnLostConnect)
        OnLostConnect(this, stop);
}

void TFIBDatabase::AddClient(TFIBDatabaseClient *client)
{
    if (client && !m_clients.contains(client))
        m_clients.append(client);
}

void TFIBDatabase::RemoveClient(TFIBDatabaseClient *client)
{
    m_clients.removeAll(client);
}

// ---------------------------------------------------------------------------------------------

TFIBTransaction::TFIBTransaction(QObject *owner) : QObject(owner) {}

TFIBTransaction::~TFIBTransaction()
{
    if (Active()) {
        ISC_STATUS_ARRAY status{};
        if (m_database && m_database->Connected())
            m_database->Client().isc_rollback_transaction(status, &m_handle);
        m_handle = 0;
    }
    if (m_database)
        m_database->RemoveClient(this);
}

void TFIBTransaction::SetDefaultDatabase(TFIBDatabase *database)
{
    if (m_database == database)
        return;
    if (m_database)
        m_database->RemoveClient(this);
    m_database = database;
    if (m_database)
        m_database->AddClient(this);
}

void TFIBTransaction::CheckInTransaction() const
{
    if (!Active())
        clientError(QStringLiteral("%1 :Transaction is not active.").arg(objectName()),
                    const_cast<TFIBTransaction *>(this));
}

QByteArray TFIBTransaction::BuildTPB(const QStringList &params)
{
    static const QHash<QString, char> codes{
        {"consistency", isc_tpb_consistency},   {"concurrency", isc_tpb_concurrency},
        {"shared", isc_tpb_shared},             {"protected", isc_tpb_protected},
        {"exclusive", isc_tpb_exclusive},       {"wait", isc_tpb_wait},
        {"nowait", isc_tpb_nowait},             {"read", isc_tpb_read},
        {"write", isc_tpb_write},               {"ignore_limbo", isc_tpb_ignore_limbo},
        {"read_committed", isc_tpb_read_committed}, {"autocommit", isc_tpb_autocommit},
        {"rec_version", isc_tpb_rec_version},   {"no_rec_version", isc_tpb_no_rec_version},
        {"restart_requests", isc_tpb_restart_requests}, {"no_auto_undo", isc_tpb_no_auto_undo},
    };
    QByteArray tpb(1, char(isc_tpb_version3));
    for (QString p : params) {
        p = p.trimmed().toLower();
        if (p.startsWith(QLatin1String("isc_tpb_")))
            p = p.mid(8);
        const auto it = codes.constFind(p);
        if (it == codes.constEnd())
            throw EFIBClientError(-1, QStringLiteral("Неизвестный параметр транзакции: %1").arg(p));
        tpb.append(*it);
    }
    return tpb;
}

void TFIBTransaction::StartTransaction()
{
    if (Active())
        clientError(QStringLiteral("%1 :Transaction is active.").arg(objectName()), this);
    if (!m_database)
        clientError(QStringLiteral("%1 :No databases are listed in transaction component.").arg(objectName()), this);
    m_database->CheckActive();

    switch (TPBMode) {
    case tpbReadCommitted:
        TRParams = {QStringLiteral("write"), QStringLiteral("isc_tpb_nowait"), QStringLiteral("read_committed"),
                    QStringLiteral("rec_version")};
        break;
    case tpbRepeatableRead:
        TRParams = {QStringLiteral("write"), QStringLiteral("isc_tpb_nowait"), QStringLiteral("concurrency")};
        break;
    case tpbDefault:
        break;
    }
    const QByteArray tpb = BuildTPB(TRParams);
    TransactionBlock teb{m_database->Handle(), int(tpb.size()), tpb.constData()};
    ISC_STATUS_ARRAY status{};
    if (m_database->Client().isc_start_multiple(status, &m_handle, 1, &teb)) {
        m_handle = 0;
        RaiseFIBError(status, this);
    }
}

void TFIBTransaction::EndTransaction(TTransactionAction action)
{
    CheckInTransaction();
    TFIBClientLibrary &fb = m_database->Client();
    ISC_STATUS_ARRAY status{};
    ISC_STATUS failed = 0;
    switch (action) {
    case TARollback: failed = fb.isc_rollback_transaction(status, &m_handle); break;
    case TARollbackRetaining: failed = fb.isc_rollback_retaining(status, &m_handle); break;
    case TACommit: failed = fb.isc_commit_transaction(status, &m_handle); break;
    case TACommitRetaining: failed = fb.isc_commit_retaining(status, &m_handle); break;
    }
    if (failed)
        RaiseFIBError(status, this);
    if (action == TARollback || action == TACommit) {
        m_handle = 0;
        const auto clients = m_clients;
        for (TFIBDatabaseClient *client : clients)
            client->TransactionEnded(this);
    }
}

void TFIBTransaction::Commit() { EndTransaction(TACommit); }
void TFIBTransaction::CommitRetaining() { EndTransaction(TACommitRetaining); }
void TFIBTransaction::Rollback() { EndTransaction(TARollback); }
void TFIBTransaction::RollbackRetaining() { EndTransaction(TARollbackRetaining); }

void TFIBTransaction::DatabaseClosing()
{
    m_handle = 0;
}

void TFIBTransaction::AddClient(TFIBDatabaseClient *client)
{
    if (client && !m_clients.contains(client))
        m_clients.append(client);
}

void TFIBTransaction::RemoveClient(TFIBDatabaseClient *client)
{
    m_clients.removeAll(client);
}

void TpFIBTransaction::StartTransaction()
{
    if (!Active())
        TFIBTransaction::StartTransaction();
}
