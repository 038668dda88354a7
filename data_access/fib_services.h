#pragma once
// Backups and restores of a database through the engine's service manager: the engine reads its own
// pages, so a backup of a database in use is consistent, which a copy of the open file is not.
// Through a server the backup file is on this machine, not the server's: the backup is streamed from the
// service into the file and a restore streams the file to the service.

#include "fib_library.h"

#include <QString>
#include <QStringList>

class QFile;

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
    // engine's own message when the service refuses or fails; through a server a failed run leaves no file.
    void Backup(const QString &database, const QString &backupFile);
    // Makes a new database `database` from `backupFile`; an existing database of that name is never
    // replaced unless `replace`. A new file that a failed run left half-made here is removed. A server
    // keeps such a database shut down, out of reach of any attachment: only a restore over it (`replace`)
    // reclaims it, which is left to the caller.
    void Restore(const QString &backupFile, const QString &database, bool replace = false);

    // Whether `database` exists on the server; raises when that cannot be told.
    bool Exists(const QString &database);
    // How many attachments other than one of its own the server has to `database`.
    int OtherAttachments(const QString &database);
    // Removes `database` from the server; raises when it cannot.
    void Drop(const QString &database);

    // What the service printed during the last run, one line each.
    QStringList Log() const { return m_log; }

private:
    // Runs the service to its end, its lines into Log(); through a server, what the service writes goes
    // to `output` and what it reads comes from `input`.
    void Run(const QByteArray &request, QFile *output = nullptr, QFile *input = nullptr);
    QByteArray ServiceUser() const;
    QByteArray DatabaseName(const QString &database) const;
    // Attaches to `database` as the service's user; false, with `status` filled, when the engine refuses.
    bool Attach(TFIBClientLibrary &client, const QString &database, isc_db_handle &handle, ISC_STATUS *status) const;
    void RestoreStreamed(const QByteArray &request, const QString &backupFile);

    TFIBServer m_server;
    QString m_libraryName;
    QStringList m_log;
};
