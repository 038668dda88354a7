#include "system_folders.h"

#include <QDir>
#include <QStandardPaths>

QString GetSpecialFolder(int csidl)
{
    if (csidl != CSIDL_APPDATA)
        return QString();
    // The per-user data folder; honours XDG_DATA_HOME.
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (folder.isEmpty())
        return QString();
    QString path = QDir::cleanPath(folder);
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    return path;
}
