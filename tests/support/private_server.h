#pragma once
// A Firebird server of a test's own: a private root folder with its own configuration, security database
// and port on 127.0.0.1, started as a child process and stopped by its PID when the object goes (also when
// a test fails). Nothing system-wide is installed, started or enabled.
//
// The server program comes from scripts/firebird_server.sh, unpacked into the build folder; a constructor
// that cannot fetch it, or cannot start the server, throws std::runtime_error saying why.

#include <QString>
#include <QTemporaryDir>
#include <sys/types.h>

class PrivateServer
{
public:
    // The administrator, and a plain user allowed to create databases.
    static constexpr const char *SysdbaUser = "SYSDBA";
    static constexpr const char *SysdbaPassword = "masterkey";
    static constexpr const char *SeatUser = "SEAT";
    static constexpr const char *SeatPassword = "seat";

    PrivateServer();
    ~PrivateServer();
    PrivateServer(const PrivateServer &) = delete;
    PrivateServer &operator=(const PrivateServer &) = delete;

    static QString Host() { return QStringLiteral("127.0.0.1"); }
    int Port() const { return m_port; }
    // A folder the server may keep databases in.
    QString DataFolder() const;
    // "127.0.0.1/<port>:<path>", the name a client attaches.
    QString Connection(const QString &pathOnServer) const;

    bool Running() const { return m_pid > 0; }
    // Ends the server (TERM, then KILL after a few seconds) and waits for it.
    void Stop();
    // Starts it again on the same port and root.
    void Start();

    // One server per test process, started at the first call and stopped at the process's end.
    static PrivateServer &Shared();

private:
    void Configure();
    QString ServerProgram() const;

    QTemporaryDir m_root;
    int m_port = 0;
    pid_t m_pid = -1;
};
