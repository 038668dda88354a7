// The once-per-installation update check: marker first, one secure request, the page only on "update".

#include "app_windows_fixture.h"
#include "update_check.h"

#include <QElapsedTimer>
#include <QFileInfo>
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
            Secure << secure;
            EXPECT_TRUE(QFileInfo::exists(check.MarkerPath)) << "the marker comes first";
            return Reply;
        };
    }

    QTemporaryDir dir;
    RecordingShell shell;
    TUpdateCheck check;
    QStringList Requests;
    QList<bool> Secure;
    QString Reply;
};

TEST_F(UpdateCheck, AsksOnceSecurelyWithTheMachineAndLanguage)
{
    EXPECT_TRUE(check.Run());
    ASSERT_EQ(Requests.size(), 1);
    EXPECT_EQ(Requests[0],
              "http://updates.example/system/kelvarion/update/?pc_id=" + TUpdateCheck::MachineId() + "&lang=ru");
    EXPECT_TRUE(Secure[0]);
    EXPECT_TRUE(QFileInfo::exists(check.MarkerPath));
    EXPECT_TRUE(shell.Opened.isEmpty());

    EXPECT_FALSE(check.Run());
    EXPECT_EQ(Requests.size(), 1) << "never repeated";
}

TEST_F(UpdateCheck, MachineIdIsStableAndOpaque)
{
    const QString id = TUpdateCheck::MachineId();
    EXPECT_EQ(id, TUpdateCheck::MachineId());
    EXPECT_EQ(id.size(), 32);
    EXPECT_EQ(id, id.toLower());
}

TEST_F(UpdateCheck, ReplyUpdateOpensTheUpdatePage)
{
    Reply = "update";
    check.Run();
    EXPECT_EQ(shell.Opened, QStringList({"http://updates.example/soft/kelvarion/update/"}));
}

TEST_F(UpdateCheck, AnyOtherReplyOpensNothing)
{
    for (const QString reply : {"Update", "update\n", " update", "no", ""}) {
        QFile::remove(check.MarkerPath);
        Reply = reply;
        check.Run();
    }
    EXPECT_EQ(Requests.size(), 5);
    EXPECT_TRUE(shell.Opened.isEmpty());
}

TEST_F(UpdateCheck, PresentMarkerMeansNoRequest)
{
    QFile marker(check.MarkerPath);
    ASSERT_TRUE(marker.open(QIODevice::WriteOnly));
    marker.close();
    EXPECT_FALSE(check.Run());
    EXPECT_TRUE(Requests.isEmpty());
}

TEST_F(UpdateCheck, MarkerThatCannotBeWrittenMeansNoRequest)
{
    check.MarkerPath = dir.path() + "/missing/folder/chkupd";
    EXPECT_FALSE(check.Run());
    EXPECT_TRUE(Requests.isEmpty());
}

TEST_F(UpdateCheck, VendorSiteIsNamedAndGoesSecureThroughTheDownload)
{
    TUpdateCheck plain;
    EXPECT_EQ(plain.Site, TUpdateCheck::VendorSite);
    EXPECT_TRUE(TUpdateCheck::VendorSite.startsWith("http://")) << "the secure flag turns http into https";
    EXPECT_TRUE(plain.MarkerPath.endsWith("/chkupd"));
    EXPECT_EQ(QFileInfo(plain.MarkerPath).absolutePath(), QCoreApplication::applicationDirPath());
}

TEST_F(UpdateCheck, ClosedPortFailsSilentlyAndQuickly)
{
    quint16 port = 0;
    {
        QTcpServer probe;
        ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
        port = probe.serverPort();
    }
    TUpdateCheck real;
    real.MarkerPath = dir.path() + "/real-chkupd";
    real.Site = QString("http://127.0.0.1:%1").arg(port);
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(real.Run());
    EXPECT_LT(clock.elapsed(), 1000 * 16) << "within the time-outs";
    EXPECT_TRUE(QFileInfo::exists(real.MarkerPath));
    EXPECT_TRUE(shell.Opened.isEmpty());
    clock.restart();
    EXPECT_FALSE(real.Run());
    EXPECT_LT(clock.elapsed(), 100);
}

class MainWindowUpdate : public AppWindowsTest
{
};

TEST_F(MainWindowUpdate, ShowingTheMainWindowChecksOnceAndStaysQuietOnFailure)
{
    quint16 port = 0;
    {
        QTcpServer probe;
        ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
        port = probe.serverPort();
    }
    TMainFM &form = NewMain();
    form.UpdateCheck.MarkerPath = home.path() + "/fresh-chkupd";
    form.UpdateCheck.Site = QString("http://127.0.0.1:%1").arg(port);
    form.show();
    EXPECT_TRUE(QFileInfo::exists(form.UpdateCheck.MarkerPath));
    EXPECT_TRUE(dialogs.Texts().isEmpty());
    EXPECT_TRUE(shell.Opened.isEmpty());
    form.close();
}

TEST_F(MainWindowUpdate, ReplyUpdateOpensThePageThroughTheShell)
{
    TMainFM &form = NewMain();
    form.UpdateCheck.MarkerPath = home.path() + "/fresh-chkupd";
    int asked = 0;
    form.UpdateCheck.Download = [&](const QString &, bool) {
        ++asked;
        return QString("update");
    };
    form.show();
    form.hide();
    form.show();
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(shell.Opened, QStringList({TUpdateCheck::VendorSite + "/soft/kelvarion/update/"}));
    form.close();
}

} // namespace
