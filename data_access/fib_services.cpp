#include "fib_services.h"

#include "fib_errors.h"
#include "fib_library.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

namespace {

void appendText(QByteArray &block, char tag, const QByteArray &text, int lengthBytes)
{
    block.append(tag);
    const int length = int(text.size());
    block.append(char(length & 0xFF));
    if (lengthBytes == 2)
        block.append(char((length >> 8) & 0xFF));
    block.append(text);
}

void appendInt(QByteArray &block, char tag, quint32 value)
{
    block.append(tag);
    for (int i = 0; i < 4; ++i)
        block.append(char((value >> (8 * i)) & 0xFF));
}

// Detaches on every way out.
struct ServiceHandle
{
    TFIBClientLibrary &client;
    isc_svc_handle handle = 0;
    ~ServiceHandle()
    {
        ISC_STATUS_ARRAY status{};
        if (handle)
            client.isc_service_detach(status, &handle);
    }
};

// The engine inside the process asks on the console for the next volume of a short backup file;
// with no console to answer, the question must meet an end of input at once instead of waiting.
struct NoConsoleInput
{
    int saved = -1;
    explicit NoConsoleInput(bool local)
    {
        if (!local)
            return;
        const int empty = ::open("/dev/null", O_RDONLY);
        if (empty < 0)
            return;
        saved = ::dup(STDIN_FILENO);
        ::dup2(empty, STDIN_FILENO);
        ::close(empty);
    }
    ~NoConsoleInput()
    {
        if (saved >= 0) {
            ::dup2(saved, STDIN_FILENO);
            ::close(saved);
        }
    }
};

// The service's own last words of a run that went to its end.
bool Finished(const QStringList &log, const QString &words)
{
    for (const QString &line : log)
        if (line.contains(words))
            return true;
    return false;
}

} // namespace

QString TFIBServer::ServiceManager() const
{
    if (Local())
        return QStringLiteral("service_mgr");
    return Port > 0 ? QStringLiteral("%1/%2:service_mgr").arg(Host).arg(Port) : Host + QStringLiteral(":service_mgr");
}

TFIBServices::TFIBServices(const TFIBServer &server, const QString &libraryName)
    : m_server(server), m_libraryName(libraryName)
{
}

void TFIBServices::Backup(const QString &database, const QString &backupFile)
{
    QByteArray request(1, char(isc_action_svc_backup));
    appendText(request, isc_spb_dbname, database.toUtf8(), 2);
    appendText(request, isc_spb_bkp_file, backupFile.toUtf8(), 2);
    request.append(char(isc_spb_verbose));
    Run(request);
    if (!Finished(m_log, QStringLiteral("closing file, committing, and finishing")))
        throw EFIBClientError(0, QStringLiteral("Резервная копия не завершена: ") + m_log.value(m_log.size() - 1));
}

void TFIBServices::Restore(const QString &backupFile, const QString &database)
{
    QByteArray request(1, char(isc_action_svc_restore));
    appendText(request, isc_spb_bkp_file, backupFile.toUtf8(), 2);
    appendText(request, isc_spb_dbname, database.toUtf8(), 2);
    request.append(char(isc_spb_verbose));
    appendInt(request, isc_spb_options, isc_spb_res_create);
    Run(request);
    // A short backup file ends the run quietly half-way: what was made of it is no database to work on.
    if (!Finished(m_log, QStringLiteral("finishing, closing, and going home"))) {
        if (m_server.Local())
            QFile::remove(database);
        throw EFIBClientError(0, QStringLiteral("Файл \"%1\" не является полной резервной копией базы данных: "
                                                "восстановление прервано.").arg(backupFile));
    }
}

void TFIBServices::Run(const QByteArray &request)
{
    TFIBClientLibrary &client = TFIBClientLibrary::Load(m_libraryName);
    m_log.clear();

    // The engine inside the process still wants a user to run a service as.
    const QByteArray user = (m_server.User.isEmpty() ? QStringLiteral("SYSDBA") : m_server.User).toUtf8();
    QByteArray attach;
    attach.append(char(isc_spb_version));
    attach.append(char(isc_spb_current_version));
    appendText(attach, isc_spb_user_name, user, 1);
    if (!m_server.Password.isEmpty())
        appendText(attach, isc_spb_password, m_server.Password.toUtf8(), 1);

    NoConsoleInput noInput(m_server.Local());
    ServiceHandle service{client};
    ISC_STATUS_ARRAY status{};
    const QByteArray name = m_server.ServiceManager().toUtf8();
    if (client.isc_service_attach(status, 0, name.constData(), &service.handle, static_cast<unsigned short>(attach.size()),
                                  attach.constData())) {
        service.handle = 0;
        RaiseFIBError(status, nullptr);
    }
    if (client.isc_service_start(status, &service.handle, nullptr, static_cast<unsigned short>(request.size()),
                                 request.constData()))
        RaiseFIBError(status, nullptr);

    // The run ends when the service has no line left to give; a failure comes with the last query.
    const char items[] = {isc_info_svc_line};
    char buffer[4096];
    for (;;) {
        if (client.isc_service_query(status, &service.handle, nullptr, 0, nullptr, sizeof items, items,
                                     sizeof buffer, buffer))
            RaiseFIBError(status, nullptr);
        if (buffer[0] != isc_info_svc_line)
            break;
        const int length = static_cast<int>(client.isc_vax_integer(buffer + 1, 2));
        if (length == 0)
            break;
        m_log << QString::fromUtf8(buffer + 3, length);
    }
}
