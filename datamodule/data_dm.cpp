#include "data_dm.h"

#include "deploy_scripts.h"
#include "dialogs.h"
#include "system_folders.h"
#include "backups.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSettings>
#include <QThread>
#include <QTimer>
#include <QUrl>

TDataDM *DataDM = nullptr;
qint32 CurrentUserId = 0;
qint32 CurrentRoleId = 0;
QString CurrentUserName;
QVariant CurrentRoleName;

namespace {

bool g_terminate = false;

// Update statements that let data-bound editors post a row without changing anything; the real save of a
// card is its procedure. The tables named have no update triggers.
const char *const kNoChangeUsers = "update USERS set USERNAME = USERNAME where ID = :OLD_ID";
const char *const kNoChangePayStatus = "update PAYSTATUS set STATUS = STATUS where ID = :OLD_ID";
const char *const kNoChangeRights = "update RIGHTS set RIGHTNAME = RIGHTNAME where ID = :OLD_ID";
// ORDMAT's triggers reprice the line and recount the order on any update, so this one matches no row.
const char *const kNoChangeOrdMat = "update ORDMAT set ID = ID where ID = :OLD_ID and ID is null";
const char *const kOrdersUpdate = "update ORDERS set NUM = :NUM where ID = :OLD_ID";
// The lines of an order: a post attaches the line to the order the dataset was opened for.
const char *const kOrdPartsUpdate = "update ORDPARTS set IDORDER = :IDORDER where ID = :OLD_ID";
const char *const kOrdServUpdate = "update ORDSERV set IDORDER = :IDORDER where ID = :OLD_ID";
const char *const kOrdMatUpdate = "update ORDMAT set IDORDER = :IDORDER where ID = :OLD_ID";

const char *const kConfigUpdate = "update CONFIG set PVALUE = :PVALUE where ID = :ID";
const char *const kRolesActionsUpdate =
    "update ROLES_ACTIONS set ID_ROLE = :ID_ROLE_LKP_ROLES_F_ROLENAME, ID_ACTION = :ID_ACTION_LKP_ACTIONS_F_ACTNAME, "
    "ID_RIGHTS = :ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME where ID = :OLD_ID";
const char *const kStoreMatUpdate =
    "execute procedure spStoreMatEdit(:ID, :NUM, :STATUS_LKP_PAYSTATUS_F_STATUS, :MATNAME, :SYS_IDMAT, :ARTICUL, "
    ":SCODE, :QUANTITY, :PRICEBUY, :PRICESELL, :SUMMBUY, :SUMMSELL)";

// The reports' statements as their windows build them with no status and no payment state chosen.
const char *const kOtchetVipZakaz = "SELECT *\n"
                                    "FROM ORDERS O\n"
                                    "LEFT JOIN CUST C ON O.IDCUST = C.ID\n"
                                    "LEFT JOIN AUTO A ON O.IDAUTO = A.ID\n"
                                    "LEFT JOIN MODEL M ON A.MODNAME = M.ID\n"
                                    "LEFT JOIN PAYSTATE N ON O.PAYSTATE = N.ID\n"
                                    "LEFT JOIN OSTATE D ON O.idstatus = D.ID\n"
                                    "where\n"
                                    "(create_date>=:dtstart and create_date<=:dtend)";
const char *const kOtchetUslug = "SELECT A.servname,count(A.ID) as cnt,sum(D.summ) as sumprice\n"
                                 "FROM ORDSERV D\n"
                                 "LEFT JOIN ORDERS O ON O.ID = D.idorder\n"
                                 "LEFT JOIN SERV A ON A.id=D.idserv\n"
                                 "where\n"
                                 "(create_date>=:dtstart and create_date<=:dtend)\n"
                                 "GROUP BY A.servname,A.ID";
const char *const kOtchetMaterial = "SELECT A.matname,sum(D.OCNT) as cnt,sum(D.OCNT*D.summ) as sumprice\n"
                                    "FROM ORDMAT D\n"
                                    "LEFT JOIN ORDERS O ON O.ID = D.idorder\n"
                                    "LEFT JOIN MAT A ON A.id=D.idmat\n"
                                    "where\n"
                                    "(create_date>=:dtstart and create_date<=:dtend)\n"
                                    "GROUP BY A.matname,A.ID";

// One dataset of the module: what it reads, with which parameters, and how a post is sent.
struct CatalogueEntry {
    TpFIBDataSet TDataDM::*dataSet;
    const char *name;
    TDataSource TDataDM::*dataSource; // null when the dataset has none
    const char *sourceName;
    const char *procedure;            // read as "select * from <procedure>(:P1, ...)"
    const char *params;               // blank-separated, in the procedure's order
    const char *update;               // null: read-only
    const char *fixedSelect = nullptr; // instead of the procedure
};

#define DS(member) &TDataDM::member, #member
#define SRC(member) &TDataDM::member, #member
#define NO_SRC nullptr, nullptr

const CatalogueEntry kCatalogue[] = {
    {DS(spUsersOpen), NO_SRC, "spUsersOpen", "", kNoChangeUsers},
    {DS(spRolesOpen), SRC(dsRolesOpen), "spRolesOpen", "", kNoChangeUsers},
    {DS(spStatesOpen), SRC(dsStatesOpen), "spStatesOpen", "", kNoChangeUsers},
    {DS(tConfig), SRC(dsConfig), "spConfigOpen", "", kConfigUpdate},
    {DS(spUsersActiveSelect), NO_SRC, "spUsersActiveSelect", "", kNoChangeUsers},
    {DS(spRolesActionsOpen), NO_SRC, "spRolesActionsOpen", "ID_ROLE", kRolesActionsUpdate},
    {DS(spActionsOpen), SRC(dsActionsOpen), "spActionsOpen", "", kNoChangeUsers},
    {DS(spRightsOpen), SRC(dsRightsOpen), "spRightsOpen", "", kNoChangeUsers},
    {DS(spRolesActionsEdit), NO_SRC, "spRolesActionsOpen", "ID_ROLE", kNoChangeUsers},
    {DS(spDiscountsOpen), SRC(dsDiscountsOpen), "spDiscountsOpen", "", kNoChangeUsers},
    {DS(spCustOpen), SRC(dsCustOpen), "spCustOpen", "F_CUSTNAME F_PHONE F_ADDRESS F_REG F_MODNAME F_MARK",
     kNoChangeUsers},
    {DS(spMatOpen), SRC(dsMatOpen), "spMatOpen", "F_MATNAME F_CATEGORY F_ARTICUL F_SCODE", kNoChangeUsers},
    {DS(spCntryOpen), SRC(dsCntryOpen), "spCntryOpen", "", kNoChangeUsers},
    {DS(spProdOpen), SRC(dsProdOpen), "spProdOpen", "", kNoChangeUsers},
    {DS(spCmatOpen), SRC(dsCmatOpen), "spCmatOpen", "", kNoChangeUsers},
    {DS(spCServOpen), SRC(dsCServOpen), "spCServOpen", "", kNoChangeUsers},
    {DS(spServOpen), SRC(dsServOpen), "spServOpen", "F_SERVNAME F_CATEGORY F_SERVART F_SERVCODE", kNoChangeUsers},
    {DS(spPosOpen), SRC(dsPosOpen), "spPosOpen", "", kNoChangeUsers},
    {DS(spEstatOpen), SRC(dsEstatOpen), "spEstatOpen", "", kNoChangeUsers},
    {DS(spEmplOpen), SRC(dsEmplOpen), "spEmplOpen", "F_EMPLNAME F_POS F_ESTAT F_ADDRESS F_PHONES", kNoChangeUsers},
    {DS(spOTypeOpen), SRC(dsOTypeOpen), "spOTypeOpen", "", kNoChangeUsers},
    {DS(spStoreOpen), SRC(dsStoreOpen), "spStoreOpen",
     "F_DATE_UP F_DATE_TO F_OTYPE F_ARTICUL F_CODE F_NAME F_IDCUST F_DEL", kNoChangeUsers},
    {DS(spStoreMatOpen), SRC(dsStoreMatOpen), "spStoreMatOpen", "IDSTORE", kStoreMatUpdate},
    {DS(spMatDialog), SRC(dsMatDialog), "spMatDialog", "F_MATNAME F_CATEGORY F_ARTICUL F_SCODE", kNoChangeUsers},
    {DS(spATypeOpen), SRC(dsATypeOpen), "spATypeOpen", "", kNoChangeUsers},
    {DS(spModelOpen), SRC(dsModelOpen), "spModOpen", "", kNoChangeUsers},
    {DS(spMarkOpen), SRC(dsMarkOpen), "spMarkOpen", "", kNoChangeUsers},
    {DS(spAYearOpen), SRC(dsAYearOpen), "spYearOpen", "", kNoChangeUsers},
    {DS(spAutoOpen), SRC(dsAutoOpen), "spAutoOpen",
     "F_TYPE F_MODNAME F_MARK F_REG F_YEAR F_VIN F_DRIVE F_COLNAME F_DEL", kNoChangeUsers},
    {DS(spOrdersOpen), SRC(dsOrdersOpen), "spOrderOpen",
     "F_IDORDER F_DATE_UP F_DATE_TO F_IDOSTATE F_NUM F_IDCUST F_REG F_IDMARK F_IDMODEL F_DEL", kOrdersUpdate},
    {DS(spOStateOpen), SRC(dsOStateOpen), "spOStateOpen", "", kNoChangeUsers},
    {DS(spOrdPartsOpen), SRC(dsOrdPartsOpen), "spOrdPartsOpen", "IDORDER", kOrdPartsUpdate},
    {DS(spPartsOpen), SRC(dsPartsOpen), "spPartsOpen", "", kNoChangeUsers},
    {DS(spOrdServOpen), SRC(dsOrdServOpen), "spOrdServOpen", "IDORDER", kOrdServUpdate},
    {DS(spOrdMatOpen), SRC(dsOrdMatOpen), "spOrdMatOpen", "IDORDER", kOrdMatUpdate},
    {DS(spPayTypeOpen), SRC(dsPayTypeOpen), "spPTypeOpen", "", kNoChangeUsers},
    {DS(spPurposeOpen), SRC(dsPurposeOpen), "spPurposeOpen", "IDPAYTYPE", kNoChangeUsers},
    {DS(spPayOpen), SRC(dsPayOpen), "spPayOpen",
     "F_DATE_UP F_DATE_TO F_PAYNUM F_PTYPE F_PURPOSE F_CUST F_OBJ F_SUMM F_NAL F_DEL", kNoChangeUsers},
    {DS(spPayStateOpen), SRC(dsPayStateOpen), "spPayStateOpen", "", kNoChangeUsers},
    {DS(spPurposesOpen), SRC(dsPurposesOpen), "spPurposeOpen", "IDPAYTYPE", kNoChangeUsers},
    {DS(spObjectOpen), SRC(dsObjectOpen), "spObjectOpen", "IDPAYTYPE IDCUST IDOBJ", kNoChangeUsers},
    {DS(spClientsOpen), SRC(dsClientsOpen), "spClientsOpen", "IDPAYTYPE IDCUST IDOBJ", kNoChangeUsers},
    {DS(spPayStatusOpen), SRC(dsPayStatusOpen), "spPayStatusOpen", "", kNoChangeUsers},
    {DS(spSalaryOpen), SRC(dsSalaryOpen), "spSalaryOpen", "F_DATE_UP F_DATE_TO F_EMPLNANE", kNoChangeUsers},
    {DS(spSalaryMain), SRC(dsSalaryMain), "spSalaryMain", "F_DATE_UP F_DATE_TO", kNoChangeOrdMat},
    {DS(spOStateMain), SRC(dsOStateMain), "spOStateMain", "", kNoChangeOrdMat},
    {DS(spCustOpen2), NO_SRC, "spCustOpen2", "ID_CUST", kNoChangeUsers},
    {DS(spRequisitsOpen), SRC(dsRequisitsOpen), "spRequisitsOpen", "", kNoChangePayStatus},
    {DS(spOrdMatServOpen), NO_SRC, "spOrdMatServOpen", "IDORDER", kNoChangeUsers},
    {DS(spNalOpen), SRC(dsNalOpen), "spNalOpen", "", kNoChangeRights},
    {DS(spCustOrderOpen), SRC(dsCustOrderOpen), "spCustOrderOpen", "IDCUST", kNoChangeUsers},
    {DS(spCustPayOpen), SRC(dsCustPayOpen), "spCustPayOpen", "IDCUST", kNoChangeUsers},
    {DS(spCustDialog), SRC(dsCustDialog), "spCustDialog", "F_CUSTNAME F_PHONE F_ADDRESS", kNoChangeUsers},
    {DS(spRolesActionsOpen2), NO_SRC, "spRolesActionsOpen", "ID_ROLE", kNoChangeUsers},
    {DS(dbOtchetVipZakaz), SRC(dsOtchetVipZakaz), nullptr, "", nullptr, kOtchetVipZakaz},
    {DS(dbOtchetUslug), SRC(dsOtchetUslug), nullptr, "", nullptr, kOtchetUslug},
    {DS(dbOtchetMaterial), SRC(dsOtchetMaterial), nullptr, "", nullptr, kOtchetMaterial},
};

#undef DS
#undef SRC
#undef NO_SRC

QString SelectOf(const CatalogueEntry &entry)
{
    if (entry.fixedSelect)
        return QString::fromUtf8(entry.fixedSelect);
    QString sql = QStringLiteral("select * from ") + QLatin1String(entry.procedure);
    const QStringList params = QString::fromLatin1(entry.params).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (!params.isEmpty())
        sql += QStringLiteral("(:") + params.join(QStringLiteral(", :")) + QLatin1Char(')');
    return sql;
}

} // namespace

void RequestApplicationTerminate() { g_terminate = true; }
bool ApplicationTerminateRequested() { return g_terminate; }
void ResetApplicationTerminate() { g_terminate = false; }

const QString TDataDM::InitErrorText = QStringLiteral(
    "E1001: Невозможно подключиться к файлу БД!\r\nРабота не возможна!\r\nОбратитесь к системному администратору.");
const QString TDataDM::LostConnectionText = QStringLiteral(
    "Связь с сервером базы данных %1:%2 потеряна: сервер остановлен или недоступен по сети.\r\n"
    "Всё сохранённое до этого записано на сервере, последнее действие не выполнено. Программа будет закрыта.");
const QString TDataDM::ConfigWriteErrorText = QStringLiteral("Не удалось записать значение в таблицу Config");

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

    CreateDataSets();

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
    // What windows parented here goes before the connection it uses.
    qDeleteAll(children());
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
    BackupFolder = DataFolder + QStringLiteral("backup/");
    DbFileName = DbFolder + QStringLiteral("database.fdb");
    pFIBDatabaseMain.DBName = DbFileName;
    if (!ReadServerSettings()) {
        SetGlobalInitError(true);
        return;
    }

    // "--restore FILE": the database of the backup takes the place of the present one before it is attached;
    // a failure is said and the present database is used as it is. Through a server the replaced database
    // is kept as a backup in the backup folder.
    const qsizetype restore = arguments.indexOf(QStringLiteral("--restore"));
    if (restore > 0 && restore + 1 < arguments.size()) {
        try {
            Backups().Restore(arguments.at(restore + 1), ServerMode() ? BackupFolder : QString());
        } catch (const EFIBError &e) {
            Dialogs::Current().Show(Dialogs::Error, e.Message());
        }
    }
    if (ServerMode()) {
        // "TRACE" never throws a server's database away: other seats work in it.
        ConnectToServer();
        return;
    }

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

bool TDataDM::ReadServerSettings()
{
    m_server = TFIBServer{};
    QSettings ini(UserIniFileName(), QSettings::IniFormat);
    ini.beginGroup(QStringLiteral("Database"));
    const QString host = ini.value(QStringLiteral("Server")).toString().trimmed();
    if (host.isEmpty())
        return true;
    m_server.Host = host;
    m_server.Port = ini.value(QStringLiteral("Port"), ServerPort).toInt();
    m_server.User = ini.value(QStringLiteral("User")).toString().trimmed();
    m_server.Password = ini.value(QStringLiteral("Password")).toString();
    const QString path = ini.value(QStringLiteral("Path")).toString().trimmed();
    if (path.isEmpty()) {
        Dialogs::Current().Show(Dialogs::Error,
                                QStringLiteral("В разделе [Database] файла %1 указан сервер, но не указан путь к "
                                               "базе данных на нём (Path).")
                                    .arg(QDir::toNativeSeparators(UserIniFileName())),
                                Dialogs::Ok);
        return false;
    }
    DbFileName = path;
    pFIBDatabaseMain.DBName = QStringLiteral("%1/%2:%3").arg(host).arg(m_server.Port).arg(path);
    pFIBDatabaseMain.UserName = m_server.User;
    pFIBDatabaseMain.Password = m_server.Password;
    pFIBDatabaseMain.ConnectTimeout = qMax(1, ini.value(QStringLiteral("Timeout"), ServerConnectTimeoutS).toInt());
    return true;
}

void TDataDM::ConnectToServer()
{
    const QString server = QStringLiteral("%1:%2").arg(m_server.Host).arg(m_server.Port);
    const QString ini = QDir::toNativeSeparators(UserIniFileName());
    const auto reasonOf = [&](const EFIBError &e) {
        switch (e.IBErrorCode) {
        case isc_login:
            return QStringLiteral("Сервер базы данных %1 не принял имя пользователя «%2» или пароль.\r\n"
                                  "Проверьте User и Password в разделе [Database] файла %3.")
                .arg(server, m_server.User, ini);
        case isc_network_error:
        case isc_net_connect_err:
        case isc_net_connect_listen_err:
        case isc_connect_reject:
            return QStringLiteral("Сервер базы данных %1 не отвечает.\r\nПроверьте, что сервер Firebird запущен "
                                  "и доступен по сети, и раздел [Database] файла %2.")
                .arg(server, ini);
        default:
            return QStringLiteral("Не удалось подключиться к базе данных %1 на сервере %2:\r\n%3")
                .arg(DbFileName, server, e.IBMessage().trimmed());
        }
    };
    QString why;
    bool created = false;
    ConnectTries = 0;
    do {
        ++ConnectTries;
        try {
            pFIBDatabaseMain.Open();
        } catch (const EFIBError &e) {
            why = reasonOf(e);
            if (pFIBDatabaseMain.LastOpenFoundNoFile() && !created) {
                // The server has no such database yet: it is made and deployed as the embedded start does.
                created = true;
                try {
                    pFIBDatabaseMain.CreateDatabase();
                    m_newDatabase = true;
                } catch (const EFIBError &c) {
                    why = QStringLiteral("Не удалось создать базу данных %1 на сервере %2:\r\n%3")
                              .arg(DbFileName, server, c.IBMessage().trimmed());
                    break;
                }
            }
        } catch (const std::exception &e) {
            why = QString::fromUtf8(e.what());
        }
    } while (!pFIBDatabaseMain.Connected() && ConnectTries < 5);

    if (!pFIBDatabaseMain.Connected()) {
        Dialogs::Current().Show(Dialogs::Error, why, Dialogs::Ok);
        SetGlobalInitError(true);
        return;
    }
    if (m_newDatabase && !UpdateDatabase()) {
        SetGlobalInitError(true);
        return;
    }
    // Each seat's confirmed work is durable at once, so the other seats see it at their next refresh.
    pFIBTransaction1.CommitRetainingAfterWrite = true;
    pFIBDatabaseMain.OnLostConnect = [this](TFIBDatabase *, bool &) { ServerConnectionLost(); };
}

void TDataDM::ServerConnectionLost()
{
    if (!m_connectionLost) {
        m_connectionLost = true;
        Dialogs::Current().Show(Dialogs::Error, LostConnectionText.arg(m_server.Host).arg(m_server.Port), Dialogs::Ok);
    }
    // Nothing more can be asked of the server; the run ends without its commit.
    pFIBDatabaseMain.MarkConnectionLost();
    RequestApplicationTerminate();
    if (QCoreApplication::instance() && QThread::currentThread()->loopLevel() > 0)
        QCoreApplication::exit(1);
}

TBackups TDataDM::Backups() const
{
    return TBackups(m_server, DbFileName, pFIBDatabaseMain.LibraryName);
}

QString TDataDM::MakeBackup(const QString &folder)
{
    if (pFIBTransaction1.Active())
        pFIBTransaction1.CommitRetaining();
    return Backups().Make(folder);
}

void TDataDM::AutomaticBackup()
{
    if (!AutoBackupEnabled() || !pFIBDatabaseMain.Connected())
        return;
    if (pFIBTransaction1.Active())
        pFIBTransaction1.CommitRetaining();
    Backups().MakeAutomatic(BackupFolder);
}

QString TDataDM::UserIniFileName()
{
    // No separator on purpose: the file lies beside the per-user folder, its name glued to the folder's.
    return GetSpecialFolder(CSIDL_APPDATA) + QStringLiteral("kelvarion.ini");
}

bool TDataDM::AutoBackupEnabled()
{
    return QSettings(UserIniFileName(), QSettings::IniFormat).value(QStringLiteral("Backup/AtExit"), true).toBool();
}

void TDataDM::SetAutoBackupEnabled(bool enabled)
{
    QSettings(UserIniFileName(), QSettings::IniFormat).setValue(QStringLiteral("Backup/AtExit"), enabled);
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

void TDataDM::pFibErrorHandler1FIBErrorEvent(QObject *sender, EFIBError &error, TKindIBError kind, bool &)
{
    // That text is the handler's own, not the engine's.
    if (kind == keLockConflict)
        return;
    if (sender && dynamic_cast<TFIBQuery *>(sender))
        error.SetMessage(RepairUtf8Message(error.Message()));
}

// ---------------------------------------------------------------------------------------------
// Datasets

void TDataDM::CreateDataSets()
{
    for (const CatalogueEntry &entry : kCatalogue) {
        TpFIBDataSet &dataSet = this->*entry.dataSet;
        const QString name = QLatin1String(entry.name);
        dataSet.setObjectName(name);
        dataSet.SetDatabase(&pFIBDatabaseMain);
        dataSet.SetTransaction(&pFIBTransaction1);
        const QString select = SelectOf(entry);
        dataSet.SetSelectSQL(select);
        if (entry.update)
            dataSet.UpdateSQL = QString::fromLatin1(entry.update);
        else
            dataSet.RefreshSQL = select;
        m_dataSets.insert(name.toLower(), &dataSet);
        m_dataSetList.append(&dataSet);
        if (entry.dataSource) {
            TDataSource &source = this->*entry.dataSource;
            const QString sourceName = QLatin1String(entry.sourceName);
            source.setObjectName(sourceName);
            source.SetDataSet(&dataSet);
            m_dataSources.insert(sourceName.toLower(), &source);
        }
    }

    spStoreMatOpen.BeforePost = [this](TFIBDataSet *dataSet) { spStoreMatOpenBeforePost(dataSet); };
    dbOtchetVipZakaz.AddCalculatedField(QStringLiteral("sumOplata"), ftFloat);
    for (TpFIBDataSet *report : {&dbOtchetVipZakaz, &dbOtchetUslug, &dbOtchetMaterial})
        report->OnCalcFields = [this](TFIBDataSet *dataSet) { dbOtchetVipZakazCalcFields(dataSet); };
}

TFIBDataSet *TDataDM::FindDataSet(const QString &name) const
{
    return m_dataSets.value(name.toLower(), nullptr);
}

TDataSource *TDataDM::FindDataSource(const QString &name) const
{
    return m_dataSources.value(name.toLower(), nullptr);
}

void TDataDM::spStoreMatOpenBeforePost(TFIBDataSet *)
{
    TFIBField *material = spStoreMatOpen.FieldByName(QStringLiteral("SYS_IDMAT"));
    if (material->IsNull())
        material->SetValue(ChosenMaterialId);
}

void TDataDM::dbOtchetVipZakazCalcFields(TFIBDataSet *)
{
    dbOtchetVipZakaz.FieldByName(QStringLiteral("sumOplata"))
        ->SetValue(dbOtchetVipZakaz.FieldByName(QStringLiteral("SUMORDER"))->AsFloat()
                   - dbOtchetVipZakaz.FieldByName(QStringLiteral("SUMPAY"))->AsFloat());
}

// ---------------------------------------------------------------------------------------------
// Settings

QString TDataDM::GetConfigString(const QString &key)
{
    tConfig.Open();
    if (tConfig.Locate(QStringLiteral("PNAME"), key))
        return tConfig.FieldByName(QStringLiteral("PVALUE"))->AsString();
    return QString();
}

double TDataDM::GetConfigFloat(const QString &key)
{
    tConfig.Open();
    if (tConfig.Locate(QStringLiteral("PNAME"), key))
        return tConfig.FieldByName(QStringLiteral("PVALUE"))->AsFloat();
    return 0;
}

void TDataDM::CheckConfigWritten(const QString &key)
{
    tConfig.Close();
    tConfig.Open();
    if (!tConfig.Locate(QStringLiteral("PNAME"), key))
        throw EDatabaseError(ConfigWriteErrorText);
}

void TDataDM::SetConfigString(const QString &key, const QString &value)
{
    // No open here: the caller has read before, or opens tConfig itself.
    QVariant oldId;
    if (tConfig.Locate(QStringLiteral("PNAME"), key))
        oldId = tConfig.FieldByName(QStringLiteral("ID"))->Value();
    Query.ExecProcedure(QStringLiteral("spConfigEdit"), {oldId, key, value});
    CheckConfigWritten(key);
}

void TDataDM::SetConfigFloat(const QString &key, double value)
{
    // Always row 0: no look-up of the key first.
    Query.ExecProcedure(QStringLiteral("spConfigEdit"), {0, key, QString::number(value, 'g', 15)});
    CheckConfigWritten(key);
}

// ---------------------------------------------------------------------------------------------
// Small services

QString TDataDM::MD5(const QString &text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Md5).toHex()).toLower();
}

QString TDataDM::DownloadString(const QString &url, bool secure)
{
    QString result;
    try {
        // The event loop below cannot run without an application object.
        if (!QCoreApplication::instance())
            return result;

        QString target = url;
        const QUrl parsed(url, QUrl::TolerantMode);
        if (parsed.isValid())
            target = QString::fromLatin1(parsed.toEncoded());
        if (secure)
            target = QStringLiteral("https") + target.mid(4);

        QNetworkAccessManager manager;
        QNetworkRequest request{QUrl(target, QUrl::StrictMode)};
        request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/x-www-form-urlencoded"));
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);

        QEventLoop loop;
        QTimer watchdog;
        watchdog.setSingleShot(true);
        QNetworkReply *reply = manager.post(request, QByteArray());
        // Every arrival restarts the read time-out. Qt tells when a TLS session is up, but not when a plain
        // connection is, so there the connect time-out is part of the first wait.
        const auto readAgain = [&watchdog] { watchdog.start(ReadTimeoutMs); };
        QObject::connect(&watchdog, &QTimer::timeout, reply, &QNetworkReply::abort);
        QObject::connect(reply, &QNetworkReply::encrypted, &watchdog, readAgain);
        QObject::connect(reply, &QNetworkReply::metaDataChanged, &watchdog, readAgain);
        QObject::connect(reply, &QNetworkReply::readyRead, &watchdog, readAgain);
        QObject::connect(reply, &QNetworkReply::downloadProgress, &watchdog, readAgain);
        QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        const bool tls = target.startsWith(QLatin1String("https:"), Qt::CaseInsensitive);
        watchdog.start(tls ? ConnectTimeoutMs : ConnectTimeoutMs + ReadTimeoutMs);
        if (!reply->isFinished())
            loop.exec(QEventLoop::ExcludeUserInputEvents);
        watchdog.stop();

        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (reply->error() == QNetworkReply::NoError && status >= 200 && status < 300)
            result = QString::fromUtf8(reply->readAll());
        delete reply;
    } catch (...) {
        result.clear();
    }
    return result;
}
