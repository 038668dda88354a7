#include "data_dm.h"

#include "deploy_scripts.h"
#include "dialogs.h"
#include "system_folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

TDataDM *DataDM = nullptr;
qint32 CurrentUserId = 0;
qint32 CurrentRoleId = 0;
QString CurrentUserName;
QVariant CurrentRoleName;

namespace {

bool g_terminate = false;

} // namespace

void RequestApplicationTerminate() { g_terminate = true; }
bool ApplicationTerminateRequested() { return g_terminate; }
void ResetApplicationTerminate() { g_terminate = false; }

const QString TDataDM::InitErrorText = QStringLiteral(
    "E1001: Невозможно подключиться к файлу БД!\r\nРабота не возможна!\r\nОбратитесь к системному администратору.");

TDataDM::TDataDM(QObject *owner, const QStringList &arguments) : QObject(owner)
{
    setObjectName(QStringLiteral("DataDM"));
    pFIBDatabaseMain.setObjectName(QStringLiteral("pFIBDatabaseMain"));
    pFIBDatabaseMain.SQLDialect = 1;
    pFIBDatabaseMain.Timeout = 0;
    pFIBDatabaseMain.LibraryName = QStringLiteral("fbembed.dll");
    pFIBDatabaseMain.WaitForRestoreConnect = 0;
    pFIBDatabaseMain.DefaultTransaction = &pFIBTransaction1;

    pFIBTransaction1.setObjectName(QStringLiteral("pFIBTransaction1"));
    pFIBTransaction1.SetDefaultDatabase(&pFIBDatabaseMain);
    pFIBTransaction1.TPBMode = tpbReadCommitted;
    pFIBTransaction1.TimeoutAction = TARollback;

    Query.setObjectName(QStringLiteral("Query"));
    Query.SetDatabase(&pFIBDatabaseMain);
    Query.SetTransaction(&pFIBTransaction1);
    Bind(ScriptTables, QStringLiteral("ScriptTables"));
    Bind(ScriptProcedures, QStringLiteral("ScriptProcedures"));
    Bind(ScriptUpdater, QStringLiteral("ScriptUpdater"));
    ScriptTables.SetScript(BuiltInScript(DeployScript::Tables));
    ScriptProcedures.SetScript(BuiltInScript(DeployScript::Procedures));
    ScriptUpdater.SetScript(BuiltInScript(DeployScript::Update));

    pFibErrorHandler1.setObjectName(QStringLiteral("pFibErrorHandler1"));
    pFibErrorHandler1.OnFIBErrorEvent = [this](QObject *sender, EFIBError &error, TKindIBError kind, bool &doRaise) {
        pFibErrorHandler1FIBErrorEvent(sender, error, kind, doRaise);
    };

    DataDM = this;
    DataModuleCreate(arguments.isEmpty() && QCoreApplication::instance() ? QCoreApplication::arguments() : arguments);
}

TDataDM::~TDataDM()
{
    if (!m_destroyed) {
        try {
            DataModuleDestroy();
        } catch (const std::exception &) {
            // Nothing was opened since the last commit: there is nothing to keep.
        }
    }
    if (DataDM == this)
        DataDM = nullptr;
}

void TDataDM::Bind(TpFIBScripter &scripter, const QString &name)
{
    scripter.setObjectName(name);
    scripter.SetDatabase(&pFIBDatabaseMain);
    scripter.SetTransaction(&pFIBTransaction1);
}

void TDataDM::DataModuleCreate(const QStringList &arguments)
{
    DataFolder = GetSpecialFolder(CSIDL_APPDATA) + QStringLiteral("/Kelvarion/");
    DbFolder = DataFolder + QStringLiteral("db/");
    DocFolder = DataFolder + QStringLiteral("doc/");
    DbFileName = DbFolder + QStringLiteral("database.fdb");
    pFIBDatabaseMain.DBName = DbFileName;

    m_newDatabase = false;
    // The database is thrown away on every start with this word, on purpose.
    if (arguments.size() > 1 && arguments.at(1).toUpper() == QLatin1String("TRACE"))
        QFile::remove(DbFileName);

    if (!QFileInfo::exists(DbFileName)) {
        m_newDatabase = true;
        try {
            QDir().mkpath(DbFolder);
            pFIBDatabaseMain.CreateDatabase();
        } catch (const std::exception &) {
            SetGlobalInitError(true);
            return;
        }
    }

    ConnectTries = 0;
    do {
        ++ConnectTries;
        try {
            pFIBDatabaseMain.SetConnected(true);
        } catch (const std::exception &) {
            SetGlobalInitError(ConnectTries > 4);
        }
    } while (!pFIBDatabaseMain.Connected() && ConnectTries < 5);

    if (m_newDatabase)
        SetGlobalInitError(!UpdateDatabase());
}

bool TDataDM::UpdateDatabase()
{
    const QString folder = QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QDir::currentPath();
    QString current = OverrideFileName(DeployScript::Tables);
    try {
        struct Step { TpFIBScripter *scripter; DeployScript script; };
        for (const Step &step : {Step{&ScriptTables, DeployScript::Tables},
                                 Step{&ScriptProcedures, DeployScript::Procedures},
                                 Step{&ScriptUpdater, DeployScript::Update}}) {
            current = OverrideFileName(step.script);
            const QString path = QDir(folder).filePath(current);
            const bool exists = QFileInfo::exists(path);
            QStringList lines;
            // An unreadable override file leaves the built-in text in place.
            if (exists && ReadOverrideFile(path, lines))
                step.scripter->SetScript(lines);
            if (step.script == DeployScript::Update && !exists)
                continue;
            step.scripter->ExecuteScript(1);
        }
    } catch (const EDatabaseError &e) {
        m_lastScriptError = QStringLiteral("ScriptName=") + current + QLatin1Char(' ') + e.Message();
        return false;
    } catch (const std::exception &e) {
        m_lastScriptError = QStringLiteral("ScriptName=") + current + QLatin1Char(' ') + QString::fromUtf8(e.what());
        return false;
    }
    return true;
}

void TDataDM::SetGlobalInitError(bool value)
{
    if (!value)
        return;
    Dialogs::Current().Show(Dialogs::Error, InitErrorText, Dialogs::Ok);
    RequestApplicationTerminate();
}

void TDataDM::DataModuleDestroy()
{
    m_destroyed = true;
    pFIBTransaction1.Commit();
}

void TDataDM::pFibErrorHandler1FIBErrorEvent(QObject *sender, EFIBError &error, TKindIBError, bool &)
{
    if (sender && dynamic_cast<TFIBQuery *>(sender))
        error.SetMessage(RepairUtf8Message(error.Message()));
}
