#include "fib_services.h"

#include "fib_errors.h"
#include "fib_library.h"

#include <QFile>
#include <QThread>

#include <cerrno>
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

// The reply block of a service query holds at most this much, its length being two bytes.
constexpr int kReplySize = 65000;
// What a query sends to a service waiting for its input, leaving room for the item's own three bytes.
constexpr qint64 kInputChunk = 60000;

quint32 unsignedAt(TFIBClientLibrary &client, const char *p, short bytes)
{
    return quint32(client.isc_vax_integer(p, bytes)) & (bytes == 2 ? 0xFFFFu : 0xFFFFFFFFu);
}

// The system's own "no such file" behind the engine's error: the database is missing, not unreachable.
// A server sends the system's words instead of its code: those of Linux and of Windows.
bool NoSuchFile(const ISC_STATUS *status)
{
    for (const ISC_STATUS *s = status; *s != isc_arg_end;) {
        const ISC_STATUS tag = *s++;
        if (tag == isc_arg_unix && *s == ENOENT)
            return true;
        if (tag == isc_arg_win32 && (*s == 2 || *s == 3))
            return true;
        if (tag == isc_arg_interpreted) {
            const QByteArray words(reinterpret_cast<const char *>(*s));
            if (words.contains("No such file") || words.contains("cannot find the"))
                return true;
        }
        s += tag == isc_arg_cstring ? 2 : 1;
    }
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
    if (m_server.Local()) {
        appendText(request, isc_spb_bkp_file, backupFile.toUtf8(), 2);
        request.append(char(isc_spb_verbose));
        Run(request);
        if (!Finished(m_log, QStringLiteral("closing file, committing, and finishing")))
            throw EFIBClientError(0, QStringLiteral("Резервная копия не завершена: ") + m_log.value(m_log.size() - 1));
        return;
    }

    // The service's output is the backup itself, so it runs without its lines; an unfinished run ends
    // with the service's error.
    appendText(request, isc_spb_bkp_file, QByteArrayLiteral("stdout"), 2);
    QFile file(backupFile);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw EFIBClientError(0, QStringLiteral("Не удалось создать файл \"%1\".").arg(backupFile));
    try {
        Run(request, &file);
        if (file.size() == 0)
            throw EFIBClientError(0, QStringLiteral("Резервная копия не завершена: сервер не передал ни одного байта."));
    } catch (...) {
        file.remove();
        throw;
    }
}

void TFIBServices::Restore(const QString &backupFile, const QString &database, bool replace)
{
    const bool local = m_server.Local();
    QByteArray request(1, char(isc_action_svc_restore));
    appendText(request, isc_spb_bkp_file, local ? backupFile.toUtf8() : QByteArrayLiteral("stdin"), 2);
    appendText(request, isc_spb_dbname, database.toUtf8(), 2);
    request.append(char(isc_spb_verbose));
    appendInt(request, isc_spb_options, replace ? isc_spb_res_replace : isc_spb_res_create);
    if (local)
        Run(request);
    else
        RestoreStreamed(request, backupFile);
    // A short backup file ends the run quietly half-way: what was made of it is no database to work on.
    if (!Finished(m_log, QStringLiteral("finishing, closing, and going home"))) {
        if (local && !replace)
            QFile::remove(database);
        throw EFIBClientError(0, QStringLiteral("Файл \"%1\" не является полной резервной копией базы данных: "
                                                "восстановление прервано.").arg(backupFile));
    }
}

void TFIBServices::RestoreStreamed(const QByteArray &request, const QString &backupFile)
{
    QFile file(backupFile);
    if (!file.open(QIODevice::ReadOnly))
        throw EFIBClientError(0, QStringLiteral("Не удалось прочитать файл \"%1\".").arg(backupFile));
    Run(request, nullptr, &file);
}

QByteArray TFIBServices::ServiceUser() const
{
    return (m_server.User.isEmpty() ? QStringLiteral("SYSDBA") : m_server.User).toUtf8();
}

QByteArray TFIBServices::DatabaseName(const QString &database) const
{
    if (m_server.Local())
        return database.toUtf8();
    const QString host = m_server.Port > 0 ? QStringLiteral("%1/%2").arg(m_server.Host).arg(m_server.Port) : m_server.Host;
    return (host + QLatin1Char(':') + database).toUtf8();
}

bool TFIBServices::Attach(TFIBClientLibrary &client, const QString &database, isc_db_handle &handle,
                          ISC_STATUS *status) const
{
    QByteArray dpb(1, char(isc_dpb_version1));
    appendText(dpb, isc_dpb_user_name, ServiceUser(), 1);
    if (!m_server.Password.isEmpty())
        appendText(dpb, isc_dpb_password, m_server.Password.toUtf8(), 1);
    const QByteArray name = DatabaseName(database);
    return client.isc_attach_database(status, 0, name.constData(), &handle, static_cast<short>(dpb.size()),
                                      dpb.constData())
        == 0;
}

bool TFIBServices::Exists(const QString &database)
{
    TFIBClientLibrary &client = TFIBClientLibrary::Load(m_libraryName);
    ISC_STATUS_ARRAY status{};
    isc_db_handle handle = 0;
    if (Attach(client, database, handle, status)) {
        client.isc_detach_database(status, &handle);
        return true;
    }
    if (NoSuchFile(status))
        return false;
    RaiseFIBError(status, nullptr);
    return false;
}

int TFIBServices::OtherAttachments(const QString &database)
{
    TFIBClientLibrary &client = TFIBClientLibrary::Load(m_libraryName);
    ISC_STATUS_ARRAY status{};
    isc_db_handle handle = 0;
    if (!Attach(client, database, handle, status))
        RaiseFIBError(status, nullptr);
    // One item for each attachment, this one among them.
    const char items[] = {isc_info_user_names, isc_info_end};
    QByteArray reply(kReplySize, '\0');
    const bool asked = client.isc_database_info(status, &handle, sizeof items, items, static_cast<short>(reply.size()),
                                                reply.data()) == 0;
    ISC_STATUS_ARRAY ignored{};
    client.isc_detach_database(ignored, &handle);
    if (!asked)
        RaiseFIBError(status, nullptr);
    int count = 0;
    for (const char *p = reply.constData(); p < reply.constData() + reply.size() && *p == isc_info_user_names;) {
        ++count;
        p += 3 + unsignedAt(client, p + 1, 2);
    }
    return count - 1;
}

void TFIBServices::Drop(const QString &database)
{
    TFIBClientLibrary &client = TFIBClientLibrary::Load(m_libraryName);
    ISC_STATUS_ARRAY status{};
    isc_db_handle handle = 0;
    if (!Attach(client, database, handle, status))
        RaiseFIBError(status, nullptr);
    if (client.isc_drop_database(status, &handle)) {
        ISC_STATUS_ARRAY ignored{};
        client.isc_detach_database(ignored, &handle);
        RaiseFIBError(status, nullptr);
    }
}

void TFIBServices::Run(const QByteArray &request, QFile *output, QFile *input)
{
    TFIBClientLibrary &client = TFIBClientLibrary::Load(m_libraryName);
    m_log.clear();

    // The engine inside the process still wants a user to run a service as.
    QByteArray attach;
    attach.append(char(isc_spb_version));
    attach.append(char(isc_spb_current_version));
    appendText(attach, isc_spb_user_name, ServiceUser(), 1);
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

    // The run ends when the service has nothing left to give; a failure comes with the last query. A file
    // of ours that fails is said only once the service has ended, so that it leaves nothing running.
    QByteArray reply(kReplySize, '\0');
    const char *const end = reply.constData() + reply.size();
    auto ask = [&](ISC_STATUS *into, const QByteArray &send, const QByteArray &items) {
        return client.isc_service_query(into, &service.handle, nullptr, static_cast<unsigned short>(send.size()),
                                        send.constData(), static_cast<unsigned short>(items.size()), items.constData(),
                                        static_cast<unsigned short>(reply.size()), reply.data()) == 0;
    };
    auto query = [&](const QByteArray &send, const QByteArray &items) {
        if (ask(status, send, items))
            return;
        // The failure is told before the service has let its database go; what follows a failed restore
        // (a restore over what it left) finds the database in use unless the service has ended.
        if (!m_server.Local()) {
            ISC_STATUS_ARRAY more{};
            for (int i = 0; i < 600 && ask(more, QByteArray(), QByteArray(1, char(isc_info_svc_running))) &&
                            reply[0] == isc_info_svc_running && client.isc_vax_integer(reply.constData() + 1, 4) != 0;
                 ++i)
                QThread::msleep(50);
        }
        RaiseFIBError(status, nullptr);
    };

    if (output) {
        bool written = true;
        for (;;) {
            query(QByteArray(), QByteArray(1, char(isc_info_svc_to_eof)));
            if (reply[0] != isc_info_svc_to_eof)
                break;
            const int length = int(unsignedAt(client, reply.constData() + 1, 2));
            if (length == 0 && reply[3] != isc_info_data_not_ready)
                break;
            if (written)
                written = output->write(reply.constData() + 3, length) == length;
        }
        if (!written || !output->flush())
            throw EFIBClientError(0, QStringLiteral("Не удалось записать файл \"%1\".").arg(output->fileName()));
        return;
    }

    QByteArray items(1, char(isc_info_svc_line));
    if (input)
        items.prepend(char(isc_info_svc_stdin));
    QByteArray send;
    bool readFailed = false;
    for (;;) {
        query(send, items);
        send.clear();
        quint32 wanted = 0;
        bool more = false;
        for (const char *p = reply.constData(); p < end && *p != isc_info_end;) {
            const char item = *p++;
            if (item == isc_info_svc_stdin) {
                wanted = unsignedAt(client, p, 4);
                p += 4;
            } else if (item == isc_info_svc_line) {
                const int length = int(unsignedAt(client, p, 2));
                if (length > 0) {
                    m_log << QString::fromUtf8(p + 2, length);
                    more = true;
                }
                p += 2 + length;
            } else if (item == isc_info_data_not_ready || item == isc_info_truncated) {
                more = true;
            } else {
                break;
            }
        }
        if (wanted > 0) {
            // Nothing sent is the end of the file for the service, also after a read that failed.
            QByteArray chunk;
            if (!readFailed) {
                chunk = input->read(qMin<qint64>(wanted, kInputChunk));
                readFailed = input->error() != QFileDevice::NoError;
                if (readFailed)
                    chunk.clear();
            }
            send.append(char(isc_info_svc_line));
            send.append(char(chunk.size() & 0xFF));
            send.append(char((chunk.size() >> 8) & 0xFF));
            send.append(chunk);
            continue;
        }
        if (!more)
            break;
    }
    if (readFailed)
        throw EFIBClientError(0, QStringLiteral("Не удалось прочитать файл \"%1\".").arg(input->fileName()));
}
