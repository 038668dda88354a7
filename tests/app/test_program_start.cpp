// The real program from its start to the login dialog, on a new machine and on an existing database.

#include <QDateTime>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

// Runs the program with KELVARION_SMOKE=1, which writes the login dialog's caption and users to the error
// stream and cancels the dialog there; what it wrote, or "<hung>".
QString StartToLogin(const QString &dataHome, int timeoutMs = 120000)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("XDG_DATA_HOME", dataHome);
    environment.insert("KELVARION_SMOKE", "1");
    process.setProcessEnvironment(environment);
    process.start(QString::fromUtf8(KELVARION_EXECUTABLE));
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished();
        return "<hung>";
    }
    return QString::fromUtf8(process.readAllStandardError()) + QString("<exit %1>").arg(process.exitCode());
}

TEST(ProgramStart, NewMachineEndsInTheLoginDialogOfADeployedDatabase)
{
    QTemporaryDir home;
    const QString dataHome = home.path() + "/not/yet/there";
    const QString login = "Вход в программу: Администратор, Оператор, Только просмотр";
    const QString first = StartToLogin(dataHome, 600000);
    EXPECT_TRUE(first.contains(login) && first.endsWith("<exit 0>")) << first.toStdString();
    EXPECT_FALSE(first.contains("E1001")) << first.toStdString();
    const QString database = dataHome + "/Kelvarion/db/database.fdb";
    EXPECT_TRUE(QFileInfo::exists(database));
    EXPECT_FALSE(QFileInfo::exists(dataHome + "/Kelvarion/doc")) << "the documents folder is made later";
    EXPECT_FALSE(QFileInfo::exists(dataHome + "kelvarion.ini")) << "no main window after a cancelled login";

    const QDateTime made = QFileInfo(database).birthTime();
    const QString second = StartToLogin(dataHome);
    EXPECT_TRUE(second.contains(login) && second.endsWith("<exit 0>")) << second.toStdString();
    EXPECT_EQ(QFileInfo(database).birthTime(), made) << "an existing database is kept";
}

TEST(ProgramStart, UnusableDataFolderReportsTheStartErrorAndEnds)
{
    QTemporaryDir home;
    // A file where the folder of the database has to be.
    QFile blocker(home.path() + "/Kelvarion");
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const QString run = StartToLogin(home.path());
    EXPECT_TRUE(run.contains("E1001: Невозможно подключиться к файлу БД!")) << run.toStdString();
    EXPECT_FALSE(run.contains("Вход в программу")) << "no login after the start error";
}

} // namespace
