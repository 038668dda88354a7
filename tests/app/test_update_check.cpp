// The once-per-installation update check: marker first, one secure request, the page only on "update". The
// main window's suite sees it run when the window shows.

#include "app_fixture.h"
#include "update_check.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTcpServer>

namespace {

class UpdateCheck : public ::testing::Test
{
protected:
    UpdateCheck()
    {
        check.MarkerPath = dir.path() + "/chkupd";
        check.Site = "http://updates.example";
        check.Download = [this](const QString &url, bool secure) {
            Requests << url;
            EXPECT_TRUE(secure);
            EXPECT_TRUE(QFileInfo::exists(check.MarkerPath)) << "the marker comes first";
            return Reply;
        };
    }

    QTemporaryDir dir;
    RecordingShell shell;
    TUpdateCheck check;
    QStringList Requests;
    QString Reply;
};

TEST_F(UpdateCheck, AsksOnceOpensThePageOnlyOnTheExactReplyUpdateAndAClosedPortFailsQuietly)
{
    const QString id = TUpdateCheck::MachineId();
    EXPECT_EQ(id, TUpdateCheck::MachineId());
    EXPECT_TRUE(QRegularExpression("^[0-9a-f]{32}$").match(id).hasMatch()) << id.toStdString();
    EXPECT_TRUE(check.Run());
    EXPECT_FALSE(check.Run()) << "never repeated";
    EXPECT_EQ(Requests, QStringList({"http://updates.example/system/kelvarion/update/?pc_id=" + id + "&lang=ru"}));

    for (const QString reply : {"Update", "update\n", " update", "no", "update"}) {
        QFile::remove(check.MarkerPath);
        Reply = reply;
        check.Run();
    }
    EXPECT_EQ(Requests.size(), 6);
    EXPECT_EQ(shell.Opened, QStringList({"http://updates.example/soft/kelvarion/update/"}));

    check.MarkerPath = dir.path() + "/missing/folder/chkupd";
    EXPECT_FALSE(check.Run()) << "no marker, no request";
    EXPECT_EQ(Requests.size(), 6);

    // A closed port fails silently and quickly.
    quint16 port = 0;
    {
        QTcpServer probe;
        ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
        port = probe.serverPort();
    }
    TUpdateCheck real;
    EXPECT_EQ(QFileInfo(real.MarkerPath).absoluteFilePath(), QCoreApplication::applicationDirPath() + "/chkupd");
    real.MarkerPath = dir.path() + "/real-chkupd";
    real.Site = QString("http://127.0.0.1:%1").arg(port);
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(real.Run());
    EXPECT_LT(clock.elapsed(), 1000 * 16) << "within the time-outs";
    EXPECT_TRUE(QFileInfo::exists(real.MarkerPath));
    EXPECT_EQ(shell.Opened.size(), 1) << "nothing more opened";
    clock.restart();
    EXPECT_FALSE(real.Run());
    EXPECT_LT(clock.elapsed(), 100);
}

} // namespace
