#include "server_seats.h"

#include "data_dm.h"
#include "scripted_dialogs.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

void WriteServerSettings(const PrivateServer &server, const QString &path, const QString &user,
                         const QString &password)
{
    QSettings ini(TDataDM::UserIniFileName(), QSettings::IniFormat);
    for (const auto &[key, value] : {std::pair<QString, QVariant>{"Server", PrivateServer::Host()}, {"Port", server.Port()},
                                     {"Path", path}, {"User", user}, {"Password", password}})
        ini.setValue(QStringLiteral("Database/") + key, value);
}

void ForgetServerSettings()
{
    QSettings(TDataDM::UserIniFileName(), QSettings::IniFormat).remove(QStringLiteral("Database"));
}

namespace {

QString DeployedOnServer()
{
    static QString path;
    if (!path.isEmpty())
        return path;
    PrivateServer &server = PrivateServer::Shared();
    const QString made = server.DataFolder() + QStringLiteral("/deployed.fdb");
    static QTemporaryDir home;
    const QByteArray savedHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    WriteServerSettings(server, made);
    ScriptedDialogs dialogs;
    QString error;
    {
        TDataDM dm(nullptr, {QStringLiteral("kelvarion")});
        if (!dm.IsNewDatabase() || !dialogs.Texts().isEmpty())
            error = dm.LastScriptError() + dialogs.Texts().join(QLatin1Char('\n'));
    } // committed and detached: the server lets the file go
    ResetApplicationTerminate();
    savedHome.isEmpty() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", savedHome);
    if (!error.isEmpty())
        throw EDatabaseError(QStringLiteral("deployment on the server failed: ") + error);
    path = made;
    return path;
}

} // namespace

QString NewServerDatabase(const QString &name)
{
    const QString from = DeployedOnServer();
    const QString to = PrivateServer::Shared().DataFolder() + QLatin1Char('/') + name;
    QFile::remove(to);
    if (!QFile::copy(from, to))
        throw EDatabaseError(QStringLiteral("cannot copy %1 to %2").arg(from, to));
    QFile::setPermissions(to, QFile::ReadOwner | QFile::WriteOwner);
    return to;
}
