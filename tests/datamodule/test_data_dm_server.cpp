// The data module on a Firebird server: creation and deployment at the first start, "TRACE", refused and
// unanswered attaches, two seats seeing each other's work and colliding, and a server that goes away.
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
#include <QTemporaryDir>
#include <functional>
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// A per-user folder and a program folder of the test's own; small override scripts deploy in moments.
class ServerStart : public ::testing::Test
{
protected:
    void SetUp() override
    {
        savedCwd = QDir::currentPath();
        // A sub-folder, so that the ini glued to the folder's name stays inside the temporary one.
        qputenv("XDG_DATA_HOME", (home.path() + "/share").toLocal8Bit());
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

    void writeOverride(const QString &name, const QByteArray &text)
    {
        QFile f(programDir.filePath(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
    }
    // A database path on the shared server that no other test uses.
    static QString NewPath()
    {
        static int n = 0;
        return PrivateServer::Shared().DataFolder() + QString("/start%1.fdb").arg(++n);
    }
    QString first(TDataDM &dm, const QString &sql)
    {
        const QVariant v = ScalarIn(dm, sql);
        return v.toString().trimmed();
    }

    QTemporaryDir home;
    QTemporaryDir programDir;
    QString savedCwd;
    ScriptedDialogs dialogs;
};

// A port on which nothing listens, and one whose listener never speaks.
int ClosedPort()
{
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof a;
    ::bind(s, reinterpret_cast<sockaddr *>(&a), sizeof a);
    ::getsockname(s, reinterpret_cast<sockaddr *>(&a), &len);
    ::close(s);
    return ntohs(a.sin_port);
}

struct SilentListener
{
    SilentListener()
    {
        fd = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t len = sizeof a;
        ::bind(fd, reinterpret_cast<sockaddr *>(&a), sizeof a);
        ::listen(fd, 16);
        ::getsockname(fd, reinterpret_cast<sockaddr *>(&a), &len);
        port = ntohs(a.sin_port);
    }
    ~SilentListener() { ::close(fd); }
    int fd = -1;
    int port = 0;
};

} // namespace

TEST_F(ServerStart, FirstStartCreatesAndDeploysOnTheServerAndTraceNeverDropsIt)
{
    PrivateServer &server = PrivateServer::Shared();
    const QString path = NewPath();
    WriteServerSettings(server, path);
    writeOverride("script_update.txt", "INSERT INTO CONFIG (ID, PNAME) VALUES (2, 'ДОБАВЛЕНО');\nCOMMIT;\n");
    {
        TDataDM dm(nullptr, {"kelvarion"});
        EXPECT_TRUE(dm.ServerMode());
        EXPECT_EQ(QStringList({dm.DbFileName, dm.pFIBDatabaseMain.DBName, dm.DatabaseServer().Host,
                               QString::number(dm.DatabaseServer().Port), dm.DatabaseServer().User}),
                  QStringList({path, server.Connection(path), "127.0.0.1", QString::number(server.Port()), "SEAT"}));
        // new, connected, tries, messages, end requested, rows deployed, the seat's user, no local file
        EXPECT_EQ(QString("%1 %2 %3 %4 %5 %6 %7 %8")
                      .arg(dm.IsNewDatabase()).arg(dm.pFIBDatabaseMain.Connected()).arg(dm.ConnectTries)
                      .arg(dialogs.Texts().size()).arg(ApplicationTerminateRequested())
                      .arg(first(dm, "select count(*) from CONFIG")).arg(first(dm, "select current_user from rdb$database"))
                      .arg(QFileInfo::exists(dm.DbFolder + "database.fdb")),
                  "1 1 1 0 0 2 SEAT 0");
    }
    for (const QStringList &arguments : {QStringList{"kelvarion"}, QStringList{"kelvarion", "TRACE"}}) {
        TDataDM dm(nullptr, arguments);
        EXPECT_FALSE(dm.IsNewDatabase()) << arguments.join(' ').toStdString();
        EXPECT_EQ(first(dm, "select count(*) from CONFIG"), "2") << arguments.join(' ').toStdString();
    }
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
}

TEST_F(ServerStart, RefusedOrUnansweredAttachSaysWhyBeforeE1001AfterFiveTries)
{
    PrivateServer &server = PrivateServer::Shared();
    const QString path = NewPath();
    WriteServerSettings(server, path);
    { TDataDM made(nullptr, {"kelvarion"}); }
    ASSERT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    SilentListener silent;
    const int closed = ClosedPort();
    const QString ini = QDir::toNativeSeparators(TDataDM::UserIniFileName());
    struct Row
    {
        const char *what;
        int port;
        QString user, password, reason;
    };
    const QString refused = "Сервер базы данных 127.0.0.1:%1 не принял имя пользователя «%2» или пароль.\r\n"
                            "Проверьте User и Password в разделе [Database] файла %3.";
    const QString unanswered = "Сервер базы данных 127.0.0.1:%1 не отвечает.\r\nПроверьте, что сервер Firebird "
                               "запущен и доступен по сети, и раздел [Database] файла %2.";
    const Row rows[] = {
        {"wrong password", server.Port(), "SEAT", "wrong", refused.arg(server.Port()).arg("SEAT", ini)},
        {"unknown user", server.Port(), "NOBODY", "seat", refused.arg(server.Port()).arg("NOBODY", ini)},
        {"nothing listens", closed, "SEAT", "seat", unanswered.arg(closed).arg(ini)},
        {"a listener that never answers", silent.port, "SEAT", "seat", unanswered.arg(silent.port).arg(ini)},
    };
    for (const Row &row : rows) {
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
        EXPECT_EQ(dm.ConnectTries, 5) << row.what;
        EXPECT_FALSE(dm.pFIBDatabaseMain.Connected()) << row.what;
        EXPECT_TRUE(ApplicationTerminateRequested()) << row.what;
        EXPECT_EQ(dialogs.Texts(), QStringList({row.reason, TDataDM::InitErrorText})) << row.what;
    }
}

TEST_F(ServerStart, TwoSeatsSeeEachOthersConfirmedWorkAndCollideOnUncommittedRows)
{
    PrivateServer &server = PrivateServer::Shared();
    WriteServerSettings(server, NewPath());
    TDataDM a(nullptr, {"kelvarion"});
    TDataDM b(nullptr, {"kelvarion"});
    ASSERT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    // Each way of writing is durable at once: a statement, a procedure, a dataset's post.
    const struct
    {
        const char *what;
        std::function<void()> write;
    } writes[] = {
        {"statement", [&] { ExecIn(a, "insert into CONFIG (ID, PNAME) values (10, 'СТРОКА')"); }},
        {"procedure", [&] { a.Query.ExecProcedure("spConfigAdd", {11, "ПРОЦЕДУРА"}); }},
        {"post", [&] {
             a.tConfig.Open();
             a.tConfig.Edit();
             a.tConfig.FieldByName("PVALUE")->SetValue("ИЗМЕНЕНО");
             a.tConfig.Post();
         }},
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

TEST_F(ServerStart, ServerThatStopsUnderASeatIsSaidAndTheRunEndsWithoutHanging)
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
        EXPECT_FALSE(dm.pFIBDatabaseMain.Connected());
        EXPECT_FALSE(dm.pFIBTransaction1.Active());
        EXPECT_TRUE(ApplicationTerminateRequested());
    } // the end of the run, with nothing left to commit
    EXPECT_LT(clock.elapsed(), 10000);
    EXPECT_EQ(dialogs.Texts().size(), 1);

    // What was made durable before is there when the server is back.
    own.Start();
    ResetApplicationTerminate();
    TDataDM again(nullptr, {"kelvarion"});
    EXPECT_EQ(first(again, "select list(PNAME) from CONFIG where ID in (3, 4)"), "ДО ОСТАНОВКИ");
}
