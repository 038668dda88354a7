// The main window's storage: currency marks and placement in "kelvarion.ini" glued to the per-user
// folder's name, and starts that survive a bad file or a missing folder.

#include "app_windows_fixture.h"
#include "common.h"
#include "form_storage.h"
#include "system_folders.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QSettings>

namespace {

class MainWindowStorage : public AppWindowsTest
{
protected:
    // Where the file lies: beside the per-user folder, with the folder's name in front of its own.
    QString IniPath() const { return dataHome + "kelvarion.ini"; }
};

TEST_F(MainWindowStorage, PathHasNoSeparatorBeforeTheFileName)
{
    EXPECT_EQ(GetSpecialFolder(26), dataHome);
    EXPECT_EQ(TMainFM::StorageFileName(), home.path() + "/sharekelvarion.ini");
    TMainFM &form = NewMain();
    EXPECT_EQ(form.FormStorage1.IniFileName, IniPath());
    EXPECT_EQ(form.FormStorage1.StoredProps, QStringList({"edVal1.Text", "edVal2.Text", "edVal3.Text"}));
}

TEST_F(MainWindowStorage, CurrencyMarksFollowTheEditsAndArePersistedAtClose)
{
    TMainFM &form = NewMain();
    form.show();
    EXPECT_EQ(FormatMoney(1500), "1500.00 р. ");
    form.edVal1->setText("$");
    form.edVal2->setText("долл.");
    form.edVal3->setText("цент.");
    EXPECT_EQ(FormatMoney(1500), "1500.00 $ ");
    EXPECT_EQ(CurrencyWords().Val2, "долл.");
    EXPECT_EQ(CurrencyWords().Val3, "цент.");
    EXPECT_FALSE(QFileInfo::exists(IniPath())) << "the storage saves at close";
    form.close();
    ASSERT_TRUE(QFileInfo::exists(IniPath()));
    EXPECT_FALSE(QFileInfo::exists(dataHome + "/kelvarion.ini"));

    QSettings ini(IniPath(), QSettings::IniFormat);
    EXPECT_EQ(ini.value("MainFM/edVal1.Text").toString(), "$");
    EXPECT_EQ(ini.value("MainFM/edVal3.Text").toString(), "цент.");

    mainWindow.reset();
    CurrencyWords() = TCurrencyWords();
    TMainFM &again = NewMain();
    EXPECT_EQ(again.edVal1->text(), "$");
    EXPECT_EQ(again.edVal2->text(), "долл.");
    EXPECT_EQ(again.edVal3->text(), "цент.");
    EXPECT_EQ(FormatMoney(2), "2.00 $ ") << "restored marks reach FormatMoney";
    EXPECT_EQ(AmountInWords(CurrencyWords().Val2, CurrencyWords().Val3, 10000), "Один долл. 00 цент.");
}

TEST_F(MainWindowStorage, MarksChangedBehindTheEditsAreTakenOverAtClose)
{
    TMainFM &form = NewMain();
    form.show();
    CurrencyWords().Val1 = "€";
    form.close();
    EXPECT_EQ(form.edVal1->text(), "€");
    QSettings ini(IniPath(), QSettings::IniFormat);
    EXPECT_EQ(ini.value("MainFM/edVal1.Text").toString(), "€");
}

TEST_F(MainWindowStorage, NewMainWindowStartsFromTheDefaultMarks)
{
    CurrencyWords().Val1 = "old";
    TMainFM &form = NewMain();
    EXPECT_EQ(form.edVal1->text(), "р.");
    EXPECT_EQ(CurrencyWords().Val1, "р.");
}

TEST_F(MainWindowStorage, PlacementIsKept)
{
    TMainFM &form = NewMain();
    form.setWindowState(Qt::WindowNoState);
    form.setGeometry(40, 50, 640, 480);
    form.show();
    QCoreApplication::processEvents();
    const QSize size = form.size();
    form.close();
    mainWindow.reset();
    TMainFM &again = NewMain();
    EXPECT_FALSE(again.windowState() & Qt::WindowMaximized);
    again.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(again.size(), size);
    again.close();
}

TEST_F(MainWindowStorage, CorruptFileDoesNotStopTheStart)
{
    QFile file(IniPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QByteArray garbage("[MainFM\n\x01\x02\xff\xfe=\n edVal1.Text\n=\n[[[\nPlacement=@ByteArray(\\x00\\x01)\n");
    garbage.append(QByteArray(64, '\0'));
    file.write(garbage);
    file.close();
    TMainFM &form = NewMain();
    EXPECT_FALSE(form.edVal1->text().isNull());
    EXPECT_TRUE(form.windowState() & Qt::WindowMaximized) << "no usable placement: maximised";
    form.show();
    EXPECT_EQ(form.windowTitle().left(10), "Автосервис");
    form.close();
    EXPECT_TRUE(dialogs.Texts().isEmpty());
}

TEST_F(MainWindowStorage, PlacementOfAnotherKindIsIgnored)
{
    {
        QSettings ini(IniPath(), QSettings::IniFormat);
        ini.setValue("MainFM/Placement", "bm90IGEgcGxhY2VtZW50");
        ini.setValue("MainFM/edVal1.Text", 42);
    }
    TMainFM &form = NewMain();
    EXPECT_EQ(form.edVal1->text(), "42");
    EXPECT_TRUE(form.windowState() & Qt::WindowMaximized);
}

TEST_F(MainWindowStorage, MissingPerUserFolderDoesNotStopTheWindow)
{
    const QString missing = home.path() + "/nowhere/deeper/share";
    qputenv("XDG_DATA_HOME", missing.toLocal8Bit());
    TMainFM &form = NewMain();
    EXPECT_EQ(form.FormStorage1.IniFileName, missing + "kelvarion.ini");
    EXPECT_EQ(form.edVal1->text(), "р.");
    form.show();
    form.close();
    EXPECT_TRUE(dialogs.Texts().isEmpty());
}

TEST(FormStorage, UnwritableFileIsLeftAloneSilently)
{
    QWidget form;
    form.setObjectName("SomeFM");
    auto *edit = new QLineEdit("x", &form);
    edit->setObjectName("edName");
    TFormStorage storage(&form);
    storage.IniFileName = "/proc/kelvarion-cannot-be-here.ini";
    storage.StoredProps = {"edName.Text", "edMissing.Text"};
    storage.Save();
    EXPECT_FALSE(storage.Restore());
    EXPECT_EQ(edit->text(), "x");
}

} // namespace
