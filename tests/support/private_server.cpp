#include "private_server.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTcpServer>
#include <QTcpSocket>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace {

const char *const EngineFolder = "/usr/lib/x86_64-linux-gnu/firebird/3.0";

[[noreturn]] void Fail(const QString &why) { throw std::runtime_error(("private Firebird server: " + why).toStdString()); }

QString Quoted(const QString &s) { return "'" + QString(s).replace("'", "'\\''") + "'"; }

QString Tail(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(f.readAll().right(2000)) : QString();
}

// A port nobody listens on now; the kernel picks it, so parallel test binaries get different ones.
int FreePort()
{
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost))
        Fail(QStringLiteral("no free port: %1").arg(probe.errorString()));
    return probe.serverPort();
}

bool Accepts(int port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, quint16(port));
    return socket.waitForConnected(200);
}

void WriteFile(const QString &path, const QString &text)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(text.toUtf8()) < 0)
        Fail(QStringLiteral("cannot write %1").arg(path));
}

} // namespace

PrivateServer::PrivateServer()
{
    if (!m_root.isValid())
        Fail(QStringLiteral("no temporary folder"));
    m_port = FreePort();
    Configure();
    Start();
}

PrivateServer::~PrivateServer() { Stop(); }

QString PrivateServer::DataFolder() const { return m_root.filePath(QStringLiteral("data")); }

QString PrivateServer::Connection(const QString &pathOnServer) const
{
    return QStringLiteral("%1/%2:%3").arg(Host()).arg(m_port).arg(pathOnServer);
}

QString PrivateServer::ServerProgram() const
{
    const QString dir = QStringLiteral(KELVARION_FIREBIRD_SERVER_DIR);
    const QString program = dir + QStringLiteral("/usr/sbin/firebird");
    if (!QFileInfo(program).isExecutable()) {
        const QString cmd = QStringLiteral("bash %1 %2 >&2")
                                .arg(Quoted(QStringLiteral(KELVARION_SOURCE_DIR "/scripts/firebird_server.sh")), Quoted(dir));
        if (std::system(cmd.toLocal8Bit().constData()) != 0 || !QFileInfo(program).isExecutable())
            Fail(QStringLiteral("the server program %1 is missing and the package firebird3.0-server could not be "
                                "fetched by scripts/firebird_server.sh (see its message above)")
                     .arg(program));
    }
    return program;
}

void PrivateServer::Configure()
{
    const QString root = m_root.path();
    QDir dir(root);
    if (!dir.mkpath(QStringLiteral("lock")) || !dir.mkpath(QStringLiteral("data")))
        Fail(QStringLiteral("cannot make folders in %1").arg(root));
    // The character sets' module is refused when its real path lies outside the root: a copy, not a link.
    if (!dir.mkpath(QStringLiteral("intl")))
        Fail(QStringLiteral("cannot make folders in %1").arg(root));
    for (const char *part : {"firebird.msg", "plugins", "lib", "UDF", "intl/libfbintl.so", "intl/fbintl.conf"}) {
        const QString from = QStringLiteral("%1/%2").arg(QLatin1String(EngineFolder), QLatin1String(part)),
                      to = dir.filePath(QLatin1String(part));
        if (!(from.contains(QLatin1String("intl/")) ? QFile::copy(from, to) : QFile::link(from, to)))
            Fail(QStringLiteral("cannot link or copy %1 (is firebird3.0-server-core installed?)").arg(from));
    }
    if (!QFile::copy(QStringLiteral("/etc/firebird/3.0/plugins.conf"), dir.filePath(QStringLiteral("plugins.conf"))))
        Fail(QStringLiteral("cannot copy /etc/firebird/3.0/plugins.conf"));
    const QString security = dir.filePath(QStringLiteral("security3.fdb"));
    WriteFile(dir.filePath(QStringLiteral("firebird.conf")),
              QStringLiteral("RemoteServicePort = %1\nRemoteBindAddress = 127.0.0.1\nSecurityDatabase = %2\n"
                             "AuthServer = Srp\nAuthClient = Srp\nUserManager = Srp\nWireCrypt = Enabled\n")
                  .arg(m_port)
                  .arg(security));
    WriteFile(dir.filePath(QStringLiteral("security.sql")),
              QStringLiteral("create database '%1';\n"
                             "create user %2 password '%3' using plugin Srp;\n"
                             "create user %4 password '%5' using plugin Srp;\n"
                             "grant create database to user %4;\n"
                             "commit;\n")
                  .arg(security, QLatin1String(SysdbaUser), QLatin1String(SysdbaPassword), QLatin1String(SeatUser),
                       QLatin1String(SeatPassword)));
    // isql-fb opens the new security database in-process, under this root's configuration and locks.
    const QString log = dir.filePath(QStringLiteral("security.log"));
    const QString cmd = QStringLiteral("FIREBIRD=%1 FIREBIRD_LOCK=%2 isql-fb -user %3 -q -i %4 >%5 2>&1")
                            .arg(Quoted(root), Quoted(dir.filePath(QStringLiteral("lock"))), QLatin1String(SysdbaUser),
                                 Quoted(dir.filePath(QStringLiteral("security.sql"))), Quoted(log));
    if (std::system(cmd.toLocal8Bit().constData()) != 0 || !QFileInfo::exists(security))
        Fail(QStringLiteral("isql-fb could not make the security database: %1").arg(Tail(log)));
}

void PrivateServer::Start()
{
    if (Running())
        return;
    const std::string program = ServerProgram().toStdString();
    const std::string root = m_root.path().toStdString();
    const std::string log = m_root.filePath(QStringLiteral("server.log")).toStdString();
    std::vector<std::string> env;
    for (char **e = environ; *e; ++e)
        if (std::strncmp(*e, "FIREBIRD=", 9) != 0 && std::strncmp(*e, "FIREBIRD_LOCK=", 14) != 0)
            env.emplace_back(*e);
    env.push_back("FIREBIRD=" + root);
    env.push_back("FIREBIRD_LOCK=" + root + "/lock");
    std::vector<char *> envp;
    for (auto &e : env)
        envp.push_back(e.data());
    envp.push_back(nullptr);
    char *argv[] = {const_cast<char *>(program.c_str()), nullptr};

    const pid_t pid = ::fork();
    if (pid < 0)
        Fail(QStringLiteral("fork failed"));
    if (pid == 0) {
        // Dies with the test process even when that one is killed.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int fd = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
        if (fd >= 0) {
            ::dup2(fd, 1);
            ::dup2(fd, 2);
        }
        ::execve(argv[0], argv, envp.data());
        ::_exit(127);
    }
    m_pid = pid;
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!Accepts(m_port)) {
        int status = 0;
        if (::waitpid(m_pid, &status, WNOHANG) == m_pid) {
            m_pid = -1;
            Fail(QStringLiteral("the server ended at its start: %1 %2")
                     .arg(Tail(QString::fromStdString(log)), Tail(m_root.filePath(QStringLiteral("firebird.log")))));
        }
        if (std::chrono::steady_clock::now() > until) {
            Stop();
            Fail(QStringLiteral("the server does not listen on port %1 after 20 s").arg(m_port));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

void PrivateServer::Stop()
{
    if (!Running())
        return;
    ::kill(m_pid, SIGTERM);
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    int status = 0;
    while (::waitpid(m_pid, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > until) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, &status, 0);
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    m_pid = -1;
}

PrivateServer &PrivateServer::Shared()
{
    static PrivateServer server;
    return server;
}
