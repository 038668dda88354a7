#pragma once
// The shop's backups of its database: made by the engine's service manager into a folder, the automatic
// ones of every orderly exit kept to the last few, and a restore that keeps the database it replaces.
// Failures are raised as EFIBError with a Russian message that says what could not be done and why.
//
// Through a server the database file is out of reach of this machine and cannot be renamed aside, so a
// restore keeps the replaced database as a backup on this machine instead, taken first. The chosen file is
// then restored into a side database on the server: a file that is not a whole backup fails there, with
// the database untouched. Only then is the database replaced from it; should that fail half-way, the kept
// backup is put back at once. The server keeps a half-made database shut down, out of reach even of a
// drop, so a failed side database is overwritten with the kept one before it is dropped. While other seats
// are attached the restore is refused at once: the replacing would fail only at its end.

#include "fib_services.h"

#include <QDateTime>
#include <QString>

class TBackups
{
public:
    TBackups(const TFIBServer &server, const QString &database, const QString &libraryName = QString());

    // A new backup in `folder`, made when missing, named after the moment; returns the file's path.
    QString Make(const QString &folder);
    // A backup of an orderly exit; afterwards only the newest `keep` of them stay in `folder`.
    QString MakeAutomatic(const QString &folder, int keep = 7);
    // Puts the database of `backupFile` in place of the database, which must not be attached, and keeps
    // the replaced one: beside it, or through a server as a backup in `keepFolder` (the chosen file's own
    // folder when empty). Returns the kept file's path, empty when there was no database to replace.
    QString Restore(const QString &backupFile, const QString &keepFolder = QString());

    // The moment that names the next backup (tests set it).
    QDateTime Now;

    static const QString AutomaticPrefix;

private:
    QString Write(const QString &folder, const QString &prefix);
    QString RestoreThroughServer(const QString &backupFile, const QString &keepFolder);

    TFIBServer m_server;
    TFIBServices m_services;
    QString m_database;
};
