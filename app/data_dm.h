#pragma once
// The data module: the one connection, the one transaction and everything the windows share.

#include "fib_database.h"
#include "fib_errors.h"
#include "fib_query.h"
#include "fib_script.h"

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

    QString DataFolder;
    QString DbFolder;
    QString DocFolder;
    QString DbFileName;
    qint32 ConnectTries = 0;
    qint32 ChosenMaterialId = 0;

    bool IsNewDatabase() const { return m_newDatabase; }
    // Runs the deployment scripts; true when all of them ran.
    bool UpdateDatabase();
    // The last deployment failure as "ScriptName=<file> <message>", shown to nobody.
    QString LastScriptError() const { return m_lastScriptError; }
    // When `value`, reports the fatal start error and asks the application to end.
    void SetGlobalInitError(bool value);

    // The one hard commit of a run; raises when the transaction is not active.
    void DataModuleDestroy();

    // Repairs the text of an error raised by a query: UTF-8 bytes that were read as ANSI.
    void pFibErrorHandler1FIBErrorEvent(QObject *sender, EFIBError &error, TKindIBError kind, bool &doRaise);

    static const QString InitErrorText;

private:
    void DataModuleCreate(const QStringList &arguments);
    void Bind(TpFIBScripter &scripter, const QString &name);

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
