#pragma once
// The shop's backups of its database: made by the engine's service manager into a folder, the automatic
// ones of every orderly exit kept to the last few, and a restore that keeps the database it replaces.
// Failures are raised as EFIBError with a Russian message that says what could not be done and why.

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
    // the replaced file beside it; returns the name that file now has.
    QString Restore(const QString &backupFile);

    // The moment that names the next backup (tests set it).
    QDateTime Now;

    static const QString AutomaticPrefix;

private:
    QString Write(const QString &folder, const QString &prefix);

    TFIBServices m_services;
    QString m_database;
};
