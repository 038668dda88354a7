// The main window's storage: currency marks and placement in "kelvarion.ini" glued to the per-user
// folder's name, and starts that survive a bad file or a missing folder.

#include "app_fixture.h"
#include "common.h"
#include "form_storage.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QSettings>

namespace {

class MainWindowStorage : public AppWindowsTest
{
protected:
    // No separator between the per-user folder's name and the file's.
    QString IniPath() const { return home.path() + "/sharekelvarion.ini"; }
};

TEST_F(MainWindowStorage, MarksAndPlacementArePersistedAtCloseAndABadFileOrMissingFolderDoNotStopTheStart)
{
    CurrencyWords().Val1 = "old";
    TMainFM &form = NewMain();
    EXPECT_EQ(TMainFM::StorageFileName(), IniPath());
    EXPECT_EQ(form.edVal1->text(), "р.") << "a new window starts from the default marks";
    form.setWindowState(Qt::WindowNoState);
    form.setGeometry(40, 50, 640, 480);
    form.show();
    QCoreApplication::processEvents();
    const QSize size = form.size();
    form.edVal1->setText("$");
    form.edVal2->setText("долл.");
    EXPECT_EQ(FormatMoney(1500), "1500.00 $ ");
    CurrencyWords().Val3 = "цент."; // changed behind the edits: taken over at close
    EXPECT_FALSE(QFileInfo::exists(IniPath()));
    form.close();
    EXPECT_EQ(form.edVal3->text(), "цент.");
    EXPECT_EQ(QSettings(IniPath(), QSettings::IniFormat).value("MainFM/edVal3.Text").toString(), "цент.");
    EXPECT_FALSE(QFileInfo::exists(dataHome + "/kelvarion.ini"));

    mainWindow.reset();
    CurrencyWords() = TCurrencyWords();
    TMainFM &again = NewMain();
    EXPECT_EQ(again.edVal1->text(), "$");
    EXPECT_EQ(again.edVal2->text(), "долл.");
    EXPECT_EQ(AmountInWords(CurrencyWords().Val2, CurrencyWords().Val3, 10000), "Один долл. 00 цент.");
    EXPECT_FALSE(again.windowState() & Qt::WindowMaximized);
    again.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(again.size(), size);
    again.close();

    // A corrupt file, a foreign placement or a missing folder do not stop the start.
    QByteArray garbage("[MainFM\n\x01\x02\xff\xfe=\n edVal1.Text\n=\n[[[\nPlacement=@ByteArray(\\x00\\x01)\n");
    garbage.append(QByteArray(64, '\0'));
    for (const QByteArray &content : {garbage, QByteArray("[MainFM]\nPlacement=bm90IGEgcGxhY2VtZW50\nedVal1.Text=42\n")}) {
        QFile file(IniPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
        file.close();
        TMainFM &form = NewMain();
        EXPECT_TRUE(form.windowState() & Qt::WindowMaximized) << "no usable placement: maximised";
        form.show();
        EXPECT_TRUE(form.windowTitle().startsWith("Автосервис"));
        form.close();
    }
    EXPECT_EQ(mainWindow->edVal1->text(), "42");

    const QString missing = home.path() + "/nowhere/deeper/share";
    qputenv("XDG_DATA_HOME", missing.toLocal8Bit());
    TMainFM &moved = NewMain();
    EXPECT_EQ(moved.FormStorage1.IniFileName, missing + "kelvarion.ini");
    moved.show();
    moved.close();
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
