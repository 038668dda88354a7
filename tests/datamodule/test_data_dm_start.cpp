// The data module's start, embedded and on a Firebird server: folders, "TRACE", creation, five tries,
// deployment and the commit at the end; refused and unanswered attaches, two seats seeing each other's work
// and colliding, and a server that goes away.
#include "data_dm.h"
#include "data_module_copy.h"
#include "database_test.h"
#include "scripted_dialogs.h"
#include "server_seats.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTcpServer>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

namespace {

// A per-user data folder and a program folder of the test's own, with small override scripts so that
// a new database deploys in moments.
class Start : public ::testing::Test
{
protected:
    void SetUp() override
    {
        savedCwd = QDir::currentPath();
        // A sub-folder, so that the ini glued to the folder's name stays inside the temporary one.
        qputenv("XDG_DATA_HOME", dataHome().toLocal8Bit());
        QDir::setCurrent(programDir.path());
        writeOverride("script_tab.txt", "CREATE TABLE CONFIG (ID integer, PNAME varchar(32), PVALUE varchar(32));\n"
                                        "INSERT INTO CONFIG (ID, PNAME) VALUES (1, 'ORDERSTEXT');\nCOMMIT;\n");
        writeOverride("script_proc.txt",
                      "SET TERM ^ ;\n"
                      "CREATE OR ALTER PROCEDURE spConfigAdd (ID integer, PNAME varchar(32)) AS\n"
                      "begin insert into CONFIG (ID, PNAME) values (:ID, :PNAME); end^\n"
                      "CREATE OR ALTER PROCEDURE spConfigOpen RETURNS (ID integer, PNAME varchar(32), PVALUE "
                      "varchar(32)) AS\nbegin for select ID, PNAME, PVALUE from CONFIG into :ID, :PNAME, :PVALUE do "
                      "suspend; end^\nSET TERM ; ^\nCOMMIT;\n");
        dialogs.Install();
        ResetApplicationTerminate();
    }

    void TearDown() override
    {
        Dialogs::Install(nullptr);
        ResetApplicationTerminate();
        QDir::setCurrent(savedCwd);
        qunsetenv("XDG_DATA_HOME");
    }

    void write(const QString &path, const QByteArray &text)
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write(text) == text.size());
    }
    void writeOverride(const QString &name, const QByteArray &text) { write(programDir.filePath(name), text); }

    QString dataHome() const { return home.path() + "/share"; }
    QString dbPath() const { return dataHome() + "/Kelvarion/db/database.fdb"; }
    // A database path on the shared server that no other test uses.
    static QString NewPath()
    {
        static int n = 0;
        return PrivateServer::Shared().DataFolder() + QString("/start%1.fdb").arg(++n);
    }

    QString first(TDataDM &dm, const QString &sql) { return ScalarIn(dm, sql).toString().trimmed(); }
    QString objects(TDataDM &dm, const char *table, const char *name)
    {
        return first(dm, QString("select count(*) from rdb$%1s where rdb$%1_name = '%2'").arg(table, name));
    }
    // A start that could not go on: one E1001 message and the request to end.
    void expectFailedStart(TDataDM &dm)
    {
        EXPECT_FALSE(dm.pFIBDatabaseMain.Connected());
        ASSERT_EQ(dialogs.Texts().size(), 1);
        EXPECT_TRUE(dialogs.Texts()[0].startsWith("E1001: "));
        EXPECT_TRUE(ApplicationTerminateRequested());
    }

    QTemporaryDir home;
    QTemporaryDir programDir;
    QString savedCwd;
    ScriptedDialogs dialogs;
};

} // namespace

TEST_F(Start, FirstStartCreatesAndDeploysEmbeddedOrOnTheServerAndLaterStartsOpenItAsItIs)
{
    // The update script runs after the others, only on a new database.
    writeOverride("script_update.txt", "INSERT INTO CONFIG (ID, PNAME) VALUES (2, 'ДОБАВЛЕНО');\nCOMMIT;\n");
    PrivateServer &server = PrivateServer::Shared();
    const QString onServer = NewPath(), data = dataHome() + "/Kelvarion/";
    // The server first: it must leave no file in the data folder, where the embedded start then makes its own.
    for (const bool onTheServer : {true, false}) {
        const char *what = onTheServer ? "server" : "embedded";
        onTheServer ? WriteServerSettings(server, onServer) : ForgetServerSettings();
        {
            TDataDM dm(nullptr, {"kelvarion"});
            EXPECT_EQ(DataDM, &dm);
            EXPECT_EQ(QStringList({dm.DataFolder, dm.DbFolder, dm.DocFolder, dm.DbFileName, dm.pFIBDatabaseMain.DBName}),
                      QStringList({data, data + "db/", data + "doc/", onTheServer ? onServer : dbPath(),
                                   onTheServer ? server.Connection(onServer) : dbPath()})) << what;
            // server mode, new, connected, tries, messages, end requested, doc folder made, CONFIG rows,
            // SPCONFIGOPEN made, a local file, the user (character sets other than the default one are there)
            EXPECT_EQ(QString("%1 %2 %3 %4 %5 %6 %7 %8 %9 %10 %11")
                          .arg(dm.ServerMode()).arg(dm.IsNewDatabase()).arg(dm.pFIBDatabaseMain.Connected())
                          .arg(dm.ConnectTries).arg(dialogs.Texts().size()).arg(ApplicationTerminateRequested())
                          .arg(QFileInfo::exists(dm.DocFolder)).arg(first(dm, "select count(*) from CONFIG"))
                          .arg(objects(dm, "procedure", "SPCONFIGOPEN")).arg(QFileInfo::exists(dbPath()))
                          .arg(first(dm, "select cast(current_user as varchar(31) character set win1251) "
                                         "from rdb$database")),
                      onTheServer ? "1 1 1 1 0 0 0 2 1 0 SEAT" : "0 1 1 1 0 0 0 2 1 1 SYSDBA");
            // A backup arrives here either way: through the server's service manager in server mode.
            EXPECT_GT(QFileInfo(dm.MakeBackup(home.filePath(what))).size(), 0) << what;
        }
        EXPECT_EQ(DataDM, nullptr);
        // Later starts open the same database as it is, whatever lies beside the program; on a server,
        // "TRACE" never drops it.
        for (const QStringList &arguments : {QStringList{"kelvarion"}, QStringList{"kelvarion", "TRACE"}}) {
            if (!onTheServer && arguments.size() > 1)
                continue;
            TDataDM dm(nullptr, arguments);
            EXPECT_FALSE(dm.IsNewDatabase()) << what << arguments.join(' ').toStdString();
            EXPECT_EQ(first(dm, "select count(*) from CONFIG"), "2") << what << arguments.join(' ').toStdString();
        }
        EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    }
}

TEST_F(Start, FailedDeploymentShowsE1001AndLeavesThePartialFile)
{
    writeOverride("script_tab.txt", "CREATE TABLE CONFIG (ID integer);\nINSERT INTO NOSUCH VALUES (1);\n"
                                    "CREATE TABLE LATER (ID integer);\n");
    {
        TDataDM dm(nullptr, {"kelvarion"});
        EXPECT_EQ(dialogs.Texts(), QStringList{"E1001: Невозможно подключиться к файлу БД!\r\nРабота не возможна!\r\n"
                                               "Обратитесь к системному администратору."});
        EXPECT_TRUE(ApplicationTerminateRequested());
        EXPECT_TRUE(dm.LastScriptError().startsWith("ScriptName=script_tab.txt ") && dm.LastScriptError().contains("NOSUCH"))
            << dm.LastScriptError().toStdString();
        EXPECT_EQ(QString("%1%2%3").arg(objects(dm, "relation", "CONFIG")).arg(objects(dm, "relation", "LATER"))
                      .arg(objects(dm, "procedure", "SPCONFIGOPEN")), "100");
    }
    // The half-made file is opened as it is at the next start.
    dialogs.Clear();
    ResetApplicationTerminate();
    TDataDM dm(nullptr, {"kelvarion"});
    EXPECT_TRUE(!dm.IsNewDatabase() && dialogs.Texts().isEmpty());
}

TEST_F(Start, FolderThatCannotBeCreatedOrAnUnattachableFileEndsInE1001AfterFiveTries)
{
    write(home.filePath("blocked"), "");
    qputenv("XDG_DATA_HOME", home.filePath("blocked").toLocal8Bit());
    expectFailedStart(*std::make_unique<TDataDM>(nullptr, QStringList{"kelvarion"}));

    dialogs.Clear();
    ResetApplicationTerminate();
    qputenv("XDG_DATA_HOME", dataHome().toLocal8Bit());
    QDir().mkpath(dataHome() + "/Kelvarion/db");
    write(dbPath(), QByteArray(8192, 'z'));
    TDataDM dm(nullptr, {"kelvarion"});
    EXPECT_TRUE(dm.ConnectTries == 5 && !dm.IsNewDatabase()) << dm.ConnectTries;
    expectFailedStart(dm);
}

TEST_F(Start, UnreadableOverrideFallsBackToTheBuiltInText)
{
    // A folder in the file's place cannot be read as a script.
    QFile::remove(programDir.filePath("script_proc.txt"));
    QDir(programDir.path()).mkdir("script_proc.txt");
    writeOverride("script_tab.txt", "CREATE TABLE CONFIG (ID integer, PNAME varchar(32));\nCOMMIT;\n");
    TDataDM dm(nullptr, {"kelvarion"});
    // The built-in procedures script needs the built-in tables, so it fails here: proof that it ran.
    EXPECT_TRUE(dm.LastScriptError().startsWith("ScriptName=script_proc.txt ")) << dm.LastScriptError().toStdString();
}

TEST_F(Start, TheRunIsOneTransactionCommittedAtDestroyAndTraceAsFirstArgumentThrowsTheDatabaseAway)
{
    {
        TDataDM dm(nullptr, {"kelvarion"});
        ExecIn(dm, "insert into CONFIG (ID, PNAME) values (7, 'Сохранится')");
    }
    {
        TDataDM dm(nullptr, {"kelvarion"});
        EXPECT_EQ(first(dm, "select list(PNAME) from CONFIG where ID = 7"), "Сохранится");
        ExecIn(dm, "delete from CONFIG");
        dm.pFIBDatabaseMain.Close(); // as if killed: nothing of this run is kept
    }
    {
        TDataDM dm(nullptr, {"kelvarion"});
        // Nothing opened since the last commit: the end of the run has nothing to commit.
        EXPECT_EQ(ErrorOf([&] { dm.DataModuleDestroy(); }), "pFIBTransaction1 :Transaction is not active.");
        EXPECT_EQ(first(dm, "select count(*) from CONFIG"), "2");
    }
    {
        TDataDM dm(nullptr, {"kelvarion", "x", "TRACE"});
        EXPECT_FALSE(dm.IsNewDatabase());
        EXPECT_EQ(first(dm, "select count(*) from CONFIG"), "2");
    }
    TDataDM dm(nullptr, {"kelvarion", "tRaCe"});
    EXPECT_TRUE(dm.IsNewDatabase());
    EXPECT_EQ(first(dm, "select count(*) from CONFIG"), "1");
}

TEST_F(Start, RefusedOrUnansweredAttachSaysWhyBeforeE1001AfterFiveTries)
{
    PrivateServer &server = PrivateServer::Shared();
    const QString path = NewPath();
    WriteServerSettings(server, path);
    { TDataDM made(nullptr, {"kelvarion"}); }
    ASSERT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    // A listener that never speaks; once closed, a port on which nothing listens.
    QTcpServer silent, gone;
    silent.listen(QHostAddress::LocalHost);
    gone.listen(QHostAddress::LocalHost);
    const int gonePort = gone.serverPort();
    gone.close();
    const QString ini = QDir::toNativeSeparators(TDataDM::UserIniFileName());
    const QString refused = "Сервер базы данных 127.0.0.1:%1 не принял имя пользователя «%2» или пароль.\r\n"
                            "Проверьте User и Password в разделе [Database] файла %3.";
    const QString unanswered = "Сервер базы данных 127.0.0.1:%1 не отвечает.\r\nПроверьте, что сервер Firebird "
                               "запущен и доступен по сети, и раздел [Database] файла %2.";
    const struct { const char *what; int port; const char *user, *password; } rows[] = {
        {"wrong password", server.Port(), "SEAT", "wrong"}, {"unknown user", server.Port(), "NOBODY", "seat"},
        {"nothing listens", gonePort, "SEAT", "seat"}, {"a listener that never answers", silent.serverPort(), "SEAT", "seat"},
    };
    for (const auto &row : rows) {
        dialogs.Clear();
        ResetApplicationTerminate();
        WriteServerSettings(server, path, row.user, row.password);
        QSettings settings(TDataDM::UserIniFileName(), QSettings::IniFormat);
        settings.setValue("Database/Port", row.port);
        settings.setValue("Database/Timeout", 1);
        settings.sync();
        QElapsedTimer clock;
        clock.start();
        TDataDM dm(nullptr, {"kelvarion"});
        EXPECT_LT(clock.elapsed(), 15000) << row.what;
        // tries, connected, end requested
        EXPECT_EQ(QString("%1 %2 %3").arg(dm.ConnectTries).arg(dm.pFIBDatabaseMain.Connected())
                      .arg(ApplicationTerminateRequested()), "5 0 1") << row.what;
        const QString reason = row.port == server.Port() ? refused.arg(row.port).arg(row.user, ini)
                                                         : unanswered.arg(row.port).arg(ini);
        EXPECT_EQ(dialogs.Texts(), QStringList({reason, TDataDM::InitErrorText})) << row.what;
    }
}

TEST_F(Start, TwoSeatsSeeEachOthersConfirmedWorkAndCollideOnUncommittedRows)
{
    PrivateServer &server = PrivateServer::Shared();
    WriteServerSettings(server, NewPath());
    TDataDM a(nullptr, {"kelvarion"});
    TDataDM b(nullptr, {"kelvarion"});
    ASSERT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    // Each way of writing is durable at once: a statement, a procedure, a dataset's post.
    const struct { const char *what; std::function<void()> write; } writes[] = {
        {"statement", [&] { ExecIn(a, "insert into CONFIG (ID, PNAME) values (10, 'СТРОКА')"); }},
        {"procedure", [&] { a.Query.ExecProcedure("spConfigAdd", {11, "ПРОЦЕДУРА"}); }},
        {"post", [&] { a.tConfig.Open(); a.tConfig.Edit(); a.tConfig.FieldByName("PVALUE")->SetValue("ИЗМЕНЕНО");
                       a.tConfig.Post(); }},
    };
    const QString all = "select list(PNAME || coalesce('=' || PVALUE, ''), ',') from (select * from CONFIG order by ID)";
    const QString seen[] = {"ORDERSTEXT,СТРОКА", "ORDERSTEXT,СТРОКА,ПРОЦЕДУРА", "ORDERSTEXT=ИЗМЕНЕНО,СТРОКА,ПРОЦЕДУРА"};
    for (int i = 0; i < 3; ++i) {
        writes[i].write();
        EXPECT_EQ(first(b, all), seen[i]) << writes[i].what;
    }

    // Seat a holds an update it has not committed: seat b is told at once, and may try again later.
    a.pFIBTransaction1.CommitRetainingAfterWrite = false;
    ExecIn(a, "update CONFIG set PVALUE = 'У ПЕРВОГО' where ID = 10");
    EXPECT_EQ(ErrorOf([&] { ExecIn(b, "update CONFIG set PVALUE = 'У ВТОРОГО' where ID = 10"); }),
              TpFibErrorHandler::LockConflictText);
    a.pFIBTransaction1.CommitRetaining();
    ExecIn(b, "update CONFIG set PVALUE = 'У ВТОРОГО' where ID = 10");
    EXPECT_EQ(first(a, "select PVALUE from CONFIG where ID = 10"), "У ВТОРОГО");
}

TEST_F(Start, ServerThatStopsUnderASeatIsSaidAndTheRunEndsWithoutHanging)
{
    PrivateServer own;
    WriteServerSettings(own, own.DataFolder() + "/lost.fdb");
    QElapsedTimer clock;
    {
        TDataDM dm(nullptr, {"kelvarion"});
        ASSERT_TRUE(dm.pFIBDatabaseMain.Connected()) << dialogs.Texts().join('\n').toStdString();
        ExecIn(dm, "insert into CONFIG (ID, PNAME) values (3, 'ДО ОСТАНОВКИ')");
        own.Stop();
        clock.start();
        EXPECT_THROW(ExecIn(dm, "insert into CONFIG (ID, PNAME) values (4, 'ПОСЛЕ')"), EAbort);
        EXPECT_EQ(dialogs.Texts(), QStringList{TDataDM::LostConnectionText.arg("127.0.0.1").arg(own.Port())});
        // connected, transaction active, end requested
        EXPECT_EQ(QString("%1 %2 %3").arg(dm.pFIBDatabaseMain.Connected()).arg(dm.pFIBTransaction1.Active())
                      .arg(ApplicationTerminateRequested()), "0 0 1");
    } // the end of the run, with nothing left to commit
    EXPECT_LT(clock.elapsed(), 10000);
    EXPECT_EQ(dialogs.Texts().size(), 1);

    // What was made durable before is there when the server is back.
    own.Start();
    ResetApplicationTerminate();
    TDataDM again(nullptr, {"kelvarion"});
    EXPECT_EQ(first(again, "select list(PNAME) from CONFIG where ID in (3, 4)"), "ДО ОСТАНОВКИ");
}
