// The real program from its start to the login dialog, on a new machine and on an existing database.

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

struct ProgramRun
{
    bool finished = false;
    int exitCode = -1;
    QString errors;
};

// Runs the program with KELVARION_SMOKE=1, which writes the login dialog's caption and users to the error
// stream and cancels the dialog there.
ProgramRun StartToLogin(const QString &dataHome, const QStringList &arguments = {}, int timeoutMs = 600000)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("XDG_DATA_HOME", dataHome);
    environment.insert("KELVARION_SMOKE", "1");
    process.setProcessEnvironment(environment);
    process.start(QString::fromUtf8(KELVARION_EXECUTABLE), arguments);
    ProgramRun run;
    run.finished = process.waitForFinished(timeoutMs);
    if (!run.finished) {
        process.kill();
        process.waitForFinished();
    }
    run.exitCode = process.exitCode();
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}

TEST(ProgramStart, NewMachineEndsInTheLoginDialogOfADeployedDatabase)
{
    QTemporaryDir home;
    const QString dataHome = home.path() + "/not/yet/there";
    const ProgramRun first = StartToLogin(dataHome);
    ASSERT_TRUE(first.finished);
    EXPECT_EQ(first.exitCode, 0) << first.errors.toStdString();
    EXPECT_TRUE(first.errors.contains("Вход в программу: Администратор, Оператор, Только просмотр"))
        << first.errors.toStdString();
    EXPECT_FALSE(first.errors.contains("E1001")) << first.errors.toStdString();
    const QString database = dataHome + "/Kelvarion/db/database.fdb";
    EXPECT_TRUE(QFileInfo::exists(database));
    EXPECT_FALSE(QFileInfo::exists(dataHome + "/Kelvarion/doc")) << "the documents folder is made later";
    EXPECT_FALSE(QFileInfo::exists(dataHome + "kelvarion.ini")) << "no main window after a cancelled login";

    const QDateTime made = QFileInfo(database).birthTime();
    const ProgramRun second = StartToLogin(dataHome, {}, 120000);
    ASSERT_TRUE(second.finished);
    EXPECT_EQ(second.exitCode, 0);
    EXPECT_TRUE(second.errors.contains("Вход в программу: Администратор, Оператор, Только просмотр"))
        << second.errors.toStdString();
    EXPECT_EQ(QFileInfo(database).birthTime(), made) << "an existing database is kept";
}

TEST(ProgramStart, UnusableDataFolderReportsTheStartErrorAndEnds)
{
    QTemporaryDir home;
    // A file where the folder of the database has to be.
    QFile blocker(home.path() + "/Kelvarion");
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const ProgramRun run = StartToLogin(home.path(), {}, 120000);
    ASSERT_TRUE(run.finished);
    EXPECT_TRUE(run.errors.contains("E1001: Невозможно подключиться к файлу БД!")) << run.errors.toStdString();
    EXPECT_FALSE(run.errors.contains("Вход в программу")) << "no login after the start error";
}

} // namespace
