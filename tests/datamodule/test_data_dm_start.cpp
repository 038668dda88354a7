// The data module's start: folders, "TRACE", creation, five tries, deployment and the commit at the end.
#include "data_module_copy.h"
#include "scripted_dialogs.h"
#include "database_test.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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
        qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
        QDir::setCurrent(programDir.path());
        writeOverride("script_tab.txt", "CREATE TABLE CONFIG (ID integer, PNAME varchar(32));\n"
                                        "INSERT INTO CONFIG VALUES (1, 'ORDERSTEXT');\nCOMMIT;\n");
        writeOverride("script_proc.txt", "SET TERM ^ ;\nCREATE OR ALTER PROCEDURE spPing RETURNS (R integer) AS\n"
                                         "begin R = 1; end^\nSET TERM ; ^\nCOMMIT;\n");
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
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
    }
    void writeOverride(const QString &name, const QByteArray &text) { write(programDir.filePath(name), text); }

    QString dbPath() const { return home.path() + "/Kelvarion/db/database.fdb"; }

    int count(TDataDM &dm, const QString &sql) { return ScalarIn(dm, sql).toInt(); }
    int objects(TDataDM &dm, const char *table, const char *name)
    {
        return count(dm, QString("select count(*) from rdb$%1s where rdb$%1_name = '%2'").arg(table, name));
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

TEST_F(Start, FirstStartCreatesTheFoldersAndDeploysTheScripts)
{
    // The update script runs after the others, only on a new database.
    writeOverride("script_update.txt", "INSERT INTO CONFIG VALUES (2, 'ДОБАВЛЕНО');\nCOMMIT;\n");
    {
        TDataDM dm(nullptr, {"kelvarion"});
        EXPECT_EQ(DataDM, &dm);
        const QString data = home.path() + "/Kelvarion/";
        EXPECT_EQ(QStringList({dm.DataFolder, dm.DbFolder, dm.DocFolder, dm.DbFileName, dm.pFIBDatabaseMain.DBName}),
                  QStringList({data, data + "db/", data + "doc/", dbPath(), dbPath()}));
        // new, connected, tries, messages, end requested, doc folder made, CONFIG rows, SPPING made
        EXPECT_EQ(QString("%1 %2 %3 %4 %5 %6 %7 %8")
                      .arg(dm.IsNewDatabase()).arg(dm.pFIBDatabaseMain.Connected()).arg(dm.ConnectTries)
                      .arg(dialogs.Texts().size()).arg(ApplicationTerminateRequested())
                      .arg(QFileInfo::exists(dm.DocFolder)).arg(count(dm, "select count(*) from CONFIG"))
                      .arg(objects(dm, "procedure", "SPPING")),
                  "1 1 1 0 0 0 2 1");
    }
    EXPECT_EQ(DataDM, nullptr);

    // The second start opens the same file as it is, whatever lies beside the program.
    TDataDM again(nullptr, {"kelvarion"});
    EXPECT_TRUE(!again.IsNewDatabase() && count(again, "select count(*) from CONFIG") == 2);
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
                      .arg(objects(dm, "procedure", "SPPING")), "100");
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
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    QDir().mkpath(home.path() + "/Kelvarion/db");
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
        ExecIn(dm, "insert into CONFIG values (7, 'Сохранится')");
        dm.Query.ExecProcedure("spPing");
        EXPECT_EQ(dm.Query.Fields(0).AsInteger(), 1);
    }
    {
        TDataDM dm(nullptr, {"kelvarion"});
        EXPECT_EQ(ScalarIn(dm, "select list(PNAME) from CONFIG where ID = 7").toString(), "Сохранится");
        ExecIn(dm, "delete from CONFIG");
        dm.pFIBDatabaseMain.Close(); // as if killed: nothing of this run is kept
    }
    {
        TDataDM dm(nullptr, {"kelvarion"});
        // Nothing opened since the last commit: the end of the run has nothing to commit.
        EXPECT_EQ(ErrorOf([&] { dm.DataModuleDestroy(); }), "pFIBTransaction1 :Transaction is not active.");
        EXPECT_EQ(count(dm, "select count(*) from CONFIG"), 2);
    }
    {
        TDataDM dm(nullptr, {"kelvarion", "x", "TRACE"});
        EXPECT_FALSE(dm.IsNewDatabase());
        EXPECT_EQ(count(dm, "select count(*) from CONFIG"), 2);
    }
    TDataDM dm(nullptr, {"kelvarion", "tRaCe"});
    EXPECT_TRUE(dm.IsNewDatabase());
    EXPECT_EQ(count(dm, "select count(*) from CONFIG"), 1);
}
