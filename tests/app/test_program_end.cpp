// The real program from its start to the login dialog, on a new machine and on an existing database; how
// it ends: after a failed start, with no core and with an error code; on SIGTERM, SIGINT and SIGHUP in the
// same order as "Выход", from the main window or from the login dialog.

#include "app_fixture.h"
#include "fib_library.h"
#include "requisits_fm.h"
#include "signal_exit.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLibrary>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>
#include <csignal>

namespace {

// The program copied into a folder of its own, so that its override files and update marker are the
// test's; the marker is there, so no start goes to the network.
class ProgramCopy
{
public:
    ProgramCopy()
    {
        bin = folder.path() + "/bin";
        QDir().mkpath(bin);
        QFile::copy(QString::fromUtf8(KELVARION_EXECUTABLE), bin + "/kelvarion");
        QFile(bin + "/chkupd").open(QIODevice::WriteOnly);
        dataHome = folder.path() + "/share";
    }

    // Starts it with KELVARION_SMOKE=`smoke` ("1" writes the login dialog's caption and users to the error
    // stream and cancels the dialog there); waits until its error stream holds `waitFor`, when given.
    bool Start(const QString &smoke, const QString &waitFor = QString())
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("XDG_DATA_HOME", dataHome);
        environment.insert("KELVARION_SMOKE", smoke);
        process.setProcessEnvironment(environment);
        process.start(bin + "/kelvarion");
        if (!process.waitForStarted())
            return false;
        QElapsedTimer waited;
        waited.start();
        while (!waitFor.isEmpty() && !output.contains(waitFor)) {
            if (waited.elapsed() > 120000 || process.state() == QProcess::NotRunning)
                return false;
            process.waitForReadyRead(100);
            output += QString::fromUtf8(process.readAllStandardError());
        }
        return true;
    }
    // Waits for the end; "<exit N>" or "<crash>" after what it wrote, or "<hung>".
    QString Finish()
    {
        if (!process.waitForFinished(600000)) {
            process.kill();
            process.waitForFinished();
            return output + "<hung>";
        }
        output += QString::fromUtf8(process.readAllStandardError());
        return output + (process.exitStatus() == QProcess::CrashExit ? QString("<crash>")
                                                                     : QString("<exit %1>").arg(process.exitCode()));
    }
    QString Run(const QString &smoke)
    {
        output.clear();
        return Start(smoke) ? Finish() : "<not started>";
    }

    QTemporaryDir folder;
    QString bin;
    QString dataHome;
    QProcess process;
    QString output;
};

TEST(ProgramStart, NewMachineEndsInTheLoginDialogOfADeployedDatabaseAndAFailedDeploymentInAnErrorCodeTwice)
{
    ProgramCopy program;
    program.dataHome = program.folder.path() + "/not/yet/there";
    const QString login = "Вход в программу: Администратор, Оператор, Только просмотр";
    const QString first = program.Run("1");
    EXPECT_TRUE(first.contains(login) && first.endsWith("<exit 0>") && !first.contains("E1001")) << first.toStdString();
    const QString database = program.dataHome + "/Kelvarion/db/database.fdb";
    EXPECT_TRUE(QFileInfo::exists(database));
    EXPECT_FALSE(QFileInfo::exists(program.dataHome + "/Kelvarion/doc")) << "the documents folder is made later";
    EXPECT_FALSE(QFileInfo::exists(program.dataHome + "kelvarion.ini")) << "no main window after a cancelled login";

    const QDateTime made = QFileInfo(database).birthTime();
    const QString second = program.Run("1");
    EXPECT_TRUE(second.contains(login) && second.endsWith("<exit 0>")) << second.toStdString();
    EXPECT_EQ(QFileInfo(database).birthTime(), made) << "an existing database is kept";

    // A file where the folder of the database has to be.
    program.dataHome = program.folder.path() + "/blocked";
    ASSERT_TRUE(QDir().mkpath(program.dataHome) && QFile(program.dataHome + "/Kelvarion").open(QIODevice::WriteOnly));
    const QString blocked = program.Run("1");
    EXPECT_TRUE(blocked.contains("E1001: Невозможно подключиться к файлу БД!")) << blocked.toStdString();
    EXPECT_FALSE(blocked.contains("Вход в программу")) << "no login after the start error";

    // A failed deployment on another new machine ends with an error code.
    program.dataHome = program.folder.path() + "/broken";
    QFile broken(program.bin + "/script_tab.txt");
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("create table BROKEN (ID integer not null primary key);\nthis is no statement;\n");
    broken.close();

    const QString failed = program.Run("1");
    EXPECT_TRUE(failed.contains("E1001: Невозможно подключиться к файлу БД!") && failed.endsWith("<exit 1>"))
        << failed.toStdString();
    ASSERT_TRUE(QFileInfo::exists(program.dataHome + "/Kelvarion/db/database.fdb")) << "the half-made file is kept";

    // The half-made database is used as it is: its error is reported and the program ends in order.
    const QString reused = program.Run("1");
    EXPECT_TRUE(reused.contains("Ошибка в работе программы.\r\nТекст ошибки:\r\n") && reused.contains("SPUSERSACTIVESELECT")
                && !reused.contains("E1001") && reused.endsWith("<exit 1>"))
        << reused.toStdString();
}

struct SignalCase { int signal; bool atMainWindow; };

class ProgramSignal : public ::testing::TestWithParam<SignalCase>
{
};

TEST_P(ProgramSignal, EndsInOrderWithNoWindowLeftAndNoError)
{
    ProgramCopy program;
    PrepareDataHome(program.dataHome);
    ForgetDataHome();
    const SignalCase c = GetParam();
    const QString caption = "Автосервис [Администратор](Роль: Администратор)";
    ASSERT_TRUE(program.Start(c.atMainWindow ? "enter" : "wait", c.atMainWindow ? caption : "Вход в программу: "))
        << program.output.toStdString();
    ::kill(pid_t(program.process.processId()), c.signal);
    const QString run = program.Finish();
    EXPECT_TRUE(run.endsWith("<exit 0>")) << run.toStdString();
    EXPECT_FALSE(run.contains("Ошибка")) << "the run's transaction is committed: " << run.toStdString();
    EXPECT_EQ(run.contains(caption), c.atMainWindow) << run.toStdString();
    // The placement and the currency marks, beside the per-user folder.
    EXPECT_EQ(QFileInfo::exists(program.dataHome + "kelvarion.ini"), c.atMainWindow);
    // An orderly end, so the database is backed up.
    EXPECT_EQ(QDir(program.dataHome + "/Kelvarion/backup").entryList({"auto *.fbk"}).size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Signals, ProgramSignal,
                         ::testing::Values(SignalCase{SIGTERM, true}, SignalCase{SIGHUP, true},
                                           SignalCase{SIGTERM, false}, SignalCase{SIGINT, false}));

// ---- In the process ------------------------------------------------------------------------------

using SignalEnd = AppWindowsTest;

// Lets the queued end run; whether the window went.
bool Hidden(TMainFM &form)
{
    QElapsedTimer waited;
    waited.start();
    while (form.isVisible() && waited.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    return !form.isVisible();
}

// What the engine does on SIGINT or SIGTERM when its own handler is in place: asks for a shutdown.
int EngineShutdownOnSignal()
{
    QLibrary client(TFIBClientLibrary::DefaultLibraryName());
    auto shutdown = reinterpret_cast<int (*)(unsigned int, int)>(client.resolve("fb_shutdown"));
    return shutdown ? shutdown(0, fb_shutrsn_signal) : -1;
}

TEST_F(SignalEnd, EngineKeepsItsConnectionOnASignalAndTheRunIsCommitted)
{
    TSignalExit signalExit;
    TMainFM &form = NewMain();
    form.show();
    Flush();
    Exec("update CONFIG set PVALUE = 'после сигнала' where PNAME = 'ORDERSPOSTFIX'");
    dialogs.Answer(Dialogs::ResultCancel); // the exit question would be refused: it must not be asked
    EXPECT_NE(EngineShutdownOnSignal(), 0) << "the engine's shutdown is refused";
    EXPECT_TRUE(Hidden(form));
    EXPECT_TRUE(signalExit.Requested());
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_TRUE(QFileInfo::exists(home.path() + "/sharekelvarion.ini"));

    mainWindow.reset();
    delete LoginFM;
    LoginFM = nullptr;
    dm.reset();
    TDataDM again(nullptr, {"kelvarion"});
    EXPECT_EQ(ScalarIn(again, "select PVALUE from CONFIG where PNAME = 'ORDERSPOSTFIX'").toString(), "после сигнала");
}

TEST_F(SignalEnd, TheLoginDialogStaysWithinTheScreenWhateverTheUserNameAndASignalAtAModalCardCancelsItFirst)
{
    const QString longName = QString(128, QChar(0x0416)); // "Ж" × 128
    Exec(QString("update USERS set USERNAME = '%1' where ID = 1").arg(longName));
    OnModal<TLoginFM>([] { EXPECT_FALSE(LoginFM->Execute()); }, {[&](TLoginFM *) {
        const QRect area = LoginFM->screen()->availableGeometry();
        EXPECT_TRUE(area.contains(LoginFM->frameGeometry())) << LoginFM->width();
        for (QWidget *button : {static_cast<QWidget *>(LoginFM->AdvGlowButton1), static_cast<QWidget *>(LoginFM->AdvGlowButton2)})
            EXPECT_TRUE(area.contains(QRect(button->mapToGlobal(QPoint(0, 0)), button->size())));
        EXPECT_EQ(LoginFM->cxUserName->currentText(), longName);
        LoginFM->AdvGlowButton2->click();
    }});

    // A signal at a modal card cancels it first.
    TSignalExit signalExit;
    TMainFM &form = NewMain();
    form.show();
    Flush();
    OnModal<TRequisitsFM>(form.actRequisits, {[](TRequisitsFM *) { ::raise(SIGINT); }});
    EXPECT_TRUE(Hidden(form));
}

} // namespace
