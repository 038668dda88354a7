#include "desktop_shell.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QMimeDatabase>
#include <QProcess>
#include <QStandardPaths>
#include <QRegularExpression>
#include <QUrl>

bool DesktopShell::Open(const QString &documentOrUrl)
{
    // A scheme of two letters or more; "C:" style drive letters stay file paths.
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]+:"));
    const QUrl url = scheme.match(documentOrUrl).hasMatch() ? QUrl(documentOrUrl)
                                                             : QUrl::fromLocalFile(documentOrUrl);
    return QDesktopServices::openUrl(url);
}

namespace {

// A line "type=program;…" or a desktop entry's "MimeType=…;type;…" names a program for the type.
bool ListsType(const QString &fileName, const QStringList &types)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        for (const QString &type : types) {
            if (line.startsWith(type + QLatin1Char('=')) && line.size() > type.size() + 1)
                return true;
            if (line.startsWith(QLatin1String("MimeType="))
                && line.mid(9).split(QLatin1Char(';'), Qt::SkipEmptyParts).contains(type))
                return true;
        }
    }
    return false;
}

} // namespace

bool DesktopShell::CanOpen(const QString &extension)
{
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(QStringLiteral("x.") + extension, QMimeDatabase::MatchExtension);
    if (!type.isValid() || type.isDefault())
        return false;
    QProcess query;
    query.start(QStringLiteral("xdg-mime"), {QStringLiteral("query"), QStringLiteral("default"), type.name()});
    if (query.waitForStarted(3000)) {
        query.waitForFinished(10000);
        return !query.readAllStandardOutput().trimmed().isEmpty();
    }
    // No xdg-mime: the associations and desktop entries it would have read.
    const QStringList types = QStringList{type.name()} + type.aliases();
    QStringList places = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (const QString &dir : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        places << dir;
        const QDir applications(dir);
        for (const QString &entry : applications.entryList({QStringLiteral("*.desktop")}, QDir::Files))
            if (ListsType(applications.filePath(entry), types))
                return true;
    }
    for (const QString &dir : places)
        for (const char *name : {"mimeapps.list", "mimeinfo.cache"})
            if (ListsType(QDir(dir).filePath(QLatin1String(name)), types))
                return true;
    return false;
}
