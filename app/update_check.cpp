#include "update_check.h"

#include "data_dm.h"
#include "shell.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

const QString TUpdateCheck::VendorSite = QStringLiteral("http://www.kelvarion.ru");

TUpdateCheck::TUpdateCheck() : Download(&TDataDM::DownloadString)
{
    const QString folder = QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QDir::currentPath();
    MarkerPath = QDir(folder).filePath(QStringLiteral("chkupd"));
}

QString TUpdateCheck::CheckUrl() const
{
    return Site + QStringLiteral("/system/kelvarion/update/?pc_id=") + MachineId() + QStringLiteral("&lang=ru");
}

QString TUpdateCheck::PageUrl() const
{
    return Site + QStringLiteral("/soft/kelvarion/update/");
}

QString TUpdateCheck::MachineId()
{
    QByteArray id = QSysInfo::machineUniqueId();
    if (id.isEmpty())
        id = QSysInfo::machineHostName().toUtf8();
    return TDataDM::MD5(QStringLiteral("kelvarion:") + QString::fromLatin1(id.toHex()));
}

bool TUpdateCheck::Run()
{
    try {
        if (QFileInfo::exists(MarkerPath))
            return false;
        // The marker comes first: a failed or refused check is never repeated. Where it cannot be written the
        // check would come back at every start, so it is not made at all.
        QFile marker(MarkerPath);
        if (!marker.open(QIODevice::WriteOnly))
            return false;
        marker.close();
        const QString reply = Download ? Download(CheckUrl(), true) : QString();
        if (reply == QLatin1String("update"))
            Shell::Current().Open(PageUrl());
        return true;
    } catch (...) {
        return false;
    }
}
