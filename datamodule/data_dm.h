#pragma once
// The data module: the one connection, the one transaction and everything the windows share.

#include "backups.h"
#include "fib_database.h"
#include "fib_dataset.h"
#include "fib_datasource.h"
#include "fib_errors.h"
#include "fib_query.h"
#include "fib_script.h"
#include "fib_services.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

class TDataDM : public QObject
{
public:
    // Runs the whole creation: folders, "TRACE", a new database if missing, five connection tries and
    // deployment of a new database. `arguments` are the process's, the program's name first.
    explicit TDataDM(QObject *owner = nullptr, const QStringList &arguments = QStringList());
    ~TDataDM() override;

    TpFIBDatabase pFIBDatabaseMain;
    TpFIBTransaction pFIBTransaction1;
    TpFIBQuery Query;
    TpFIBScripter ScriptTables;
    TpFIBScripter ScriptProcedures;
    TpFIBScripter ScriptUpdater;
    TpFibErrorHandler pFibErrorHandler1;

    // The shared datasets, declared after the connection so that they go before it. Each one's select,
    // update statement and data source come from the catalogue in data_dm.cpp.
    TpFIBDataSet tConfig;
    TpFIBDataSet spUsersOpen, spRolesOpen, spStatesOpen, spUsersActiveSelect, spRolesActionsOpen, spActionsOpen,
        spRightsOpen, spRolesActionsEdit, spDiscountsOpen, spCustOpen, spMatOpen, spCntryOpen, spProdOpen, spCmatOpen,
        spCServOpen, spServOpen, spPosOpen, spEstatOpen, spEmplOpen, spOTypeOpen, spStoreOpen, spStoreMatOpen,
        spMatDialog, spATypeOpen, spModelOpen, spMarkOpen, spAYearOpen, spAutoOpen, spOrdersOpen, spOStateOpen,
        spOrdPartsOpen, spPartsOpen, spOrdServOpen, spOrdMatOpen, spPayTypeOpen, spPurposeOpen, spPayOpen,
        spPayStateOpen, spPurposesOpen, spObjectOpen, spClientsOpen, spPayStatusOpen, spSalaryOpen, spSalaryMain,
        spOStateMain, spCustOpen2, spRequisitsOpen, spOrdMatServOpen, spNalOpen, spCustOrderOpen, spCustPayOpen,
        spCustDialog, spRolesActionsOpen2;
    // The reports' datasets: windows rebuild their selects; dbOtchetVipZakaz carries `sumOplata`.
    TpFIBDataSet dbOtchetVipZakaz, dbOtchetUslug, dbOtchetMaterial;

    TDataSource dsConfig;
    TDataSource dsRolesOpen, dsStatesOpen, dsActionsOpen, dsRightsOpen, dsDiscountsOpen, dsCustOpen, dsMatOpen,
        dsCntryOpen, dsProdOpen, dsCmatOpen, dsCServOpen, dsServOpen, dsPosOpen, dsEstatOpen, dsEmplOpen, dsOTypeOpen,
        dsStoreOpen, dsStoreMatOpen, dsMatDialog, dsATypeOpen, dsModelOpen, dsMarkOpen, dsAYearOpen, dsAutoOpen,
        dsOrdersOpen, dsOStateOpen, dsOrdPartsOpen, dsPartsOpen, dsOrdServOpen, dsOrdMatOpen, dsPayTypeOpen,
        dsPurposeOpen, dsPayOpen, dsPayStateOpen, dsPurposesOpen, dsObjectOpen, dsClientsOpen, dsPayStatusOpen,
        dsSalaryOpen, dsSalaryMain, dsOStateMain, dsRequisitsOpen, dsNalOpen, dsCustOrderOpen, dsCustPayOpen,
        dsCustDialog;
    TDataSource dsOtchetVipZakaz, dsOtchetUslug, dsOtchetMaterial;

    QString DataFolder;
    QString DbFolder;
    QString DocFolder;
    QString BackupFolder;
    QString DbFileName;
    qint32 ConnectTries = 0;
    qint32 ChosenMaterialId = 0;

    // Server mode: a [Database] section in the per-user ini file names a Firebird server (Server, Port),
    // the database's path on it (Path), who attaches (User, Password) and how many seconds each try waits
    // for an answer (Timeout). Without it the database is the embedded one under DbFolder. In server mode
    // DbFileName is the path on the server.
    bool ServerMode() const { return !m_server.Local(); }
    // The server that keeps the database, empty (local) in embedded mode.
    TFIBServer DatabaseServer() const { return m_server; }
    static constexpr int ServerPort = 3050;
    // Seconds an attach waits for the server to answer, on each of the five tries, unless Timeout says.
    static constexpr int ServerConnectTimeoutS = 5;
    // Said when the server connection is lost, before the program ends.
    static const QString LostConnectionText;

    bool IsNewDatabase() const { return m_newDatabase; }
    // Runs the deployment scripts; true when all of them ran.
    bool UpdateDatabase();
    // The last deployment failure as "ScriptName=<file> <message>", shown to nobody.
    QString LastScriptError() const { return m_lastScriptError; }
    // When `value`, reports the fatal start error and asks the application to end.
    void SetGlobalInitError(bool value);

    // The one hard commit of a run; raises when the transaction is not active.
    void DataModuleDestroy();

    // A backup into `folder`, the run's work made durable first; returns the file's path.
    QString MakeBackup(const QString &folder);
    // The backup of an orderly exit into `BackupFolder`, when the user wants one; the last seven are kept.
    void AutomaticBackup();
    // Whether every orderly exit makes a backup: a setting of the per-user ini file, on when missing.
    static bool AutoBackupEnabled();
    static void SetAutoBackupEnabled(bool enabled);
    // The per-user ini file, beside the per-user folder.
    static QString UserIniFileName();

    // Repairs the text of an error raised by a query: UTF-8 bytes that were read as ANSI.
    void pFibErrorHandler1FIBErrorEvent(QObject *sender, EFIBError &error, TKindIBError kind, bool &doRaise);

    // A dataset or data source of the module by its name in any case; null when there is none.
    TFIBDataSet *FindDataSet(const QString &name) const;
    TDataSource *FindDataSource(const QString &name) const;
    // All datasets of the catalogue, in its order.
    QList<TFIBDataSet *> DataSets() const { return m_dataSetList; }

    // Settings of CONFIG by PNAME, exact and case-sensitive.
    QString GetConfigString(const QString &key);
    double GetConfigFloat(const QString &key);
    // Both raise "Не удалось записать значение в таблицу Config" when the key is not there afterwards.
    // SetConfigString needs tConfig open already.
    void SetConfigString(const QString &key, const QString &value);
    void SetConfigFloat(const QString &key, double value);
    static const QString ConfigWriteErrorText;

    // Lower-case hexadecimal MD5 of the text's UTF-8 bytes: the stored form of a password.
    static QString MD5(const QString &text);

    // One HTTP POST with an empty form; the body of the reply, or empty on any failure. Blocks for at most
    // the time-outs below; needs a QCoreApplication for its event loop.
    static QString DownloadString(const QString &url, bool secure);
    static constexpr int ConnectTimeoutMs = 5000;
    static constexpr int ReadTimeoutMs = 10000;

    // A row posted without a material takes the one last chosen in the materials dialog.
    void spStoreMatOpenBeforePost(TFIBDataSet *dataSet);
    // sumOplata := SUMORDER - SUMPAY, always on dbOtchetVipZakaz, whichever report dataset calls.
    void dbOtchetVipZakazCalcFields(TFIBDataSet *dataSet);

    static const QString InitErrorText;

private:
    void DataModuleCreate(const QStringList &arguments);
    // Reads the [Database] section; false (after saying why) when it names a server but no database.
    bool ReadServerSettings();
    // The five tries of an attach; in server mode a database the server does not have is created first.
    void ConnectToServer();
    void ServerConnectionLost();
    // The backups of the database, through the server's service manager in server mode.
    TBackups Backups() const;
    void Bind(TpFIBScripter &scripter, const QString &name);
    void CreateDataSets();
    // Closes, opens and locates the key in tConfig; raises when it is not there.
    void CheckConfigWritten(const QString &key);

    QHash<QString, TFIBDataSet *> m_dataSets;
    QHash<QString, TDataSource *> m_dataSources;
    QList<TFIBDataSet *> m_dataSetList;

    TFIBServer m_server;
    bool m_connectionLost = false;
    bool m_newDatabase = false;
    bool m_destroyed = false;
    QString m_lastScriptError;
};

// The data module of the process.
extern TDataDM *DataDM;

// The logged-in user and role.
extern qint32 CurrentUserId;
extern qint32 CurrentRoleId;
extern QString CurrentUserName;
extern QVariant CurrentRoleName;

// The application was asked to end; the start-up goes on and the message loop ends at once.
void RequestApplicationTerminate();
bool ApplicationTerminateRequested();
void ResetApplicationTerminate();
