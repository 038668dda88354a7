#pragma once
// Backups and restores of a database through the engine's service manager: the engine reads its own
// pages, so a backup of a database in use is consistent, which a copy of the open file is not.

#include <QString>
#include <QStringList>

// Where the service manager is: an empty server is the engine inside this process.
struct TFIBServer
{
    QString Host;
    int Port = 0;
    QString User;
    QString Password;

    bool Local() const { return Host.isEmpty(); }
    // The service manager's name as the client library takes it: "service_mgr", "host/port:service_mgr".
    QString ServiceManager() const;
};

class TFIBServices
{
public:
    explicit TFIBServices(const TFIBServer &server, const QString &libraryName = QString());

    // Writes a backup of `database` to `backupFile`, which must not exist yet. Raises EFIBError with the
    // engine's own message when the service refuses or fails.
    void Backup(const QString &database, const QString &backupFile);
    // Makes a new database `database` from `backupFile`; an existing file of that name is never replaced.
    void Restore(const QString &backupFile, const QString &database);

    // What the service printed during the last run, one line each.
    QStringList Log() const { return m_log; }

private:
    void Run(const QByteArray &request);

    TFIBServer m_server;
    QString m_libraryName;
    QStringList m_log;
};
