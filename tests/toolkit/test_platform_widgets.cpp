// The real message boxes and the desktop's opener.

#include "desktop_shell.h"
#include "message_box_dialogs.h"
#include "recording_shell.h"

#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QUrl>
#include <gtest/gtest.h>

namespace {

// Presses the button of the given text on the next message box, noting what the box held.
struct BoxAnswer
{
    QStringList buttons;
    QString caption, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;

    void Press(const QString &buttonText)
    {
        QTimer::singleShot(20, [this, buttonText] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            caption = box->windowTitle();
            text = box->text();
            icon = box->icon();
            for (QAbstractButton *b : box->buttons())
                buttons << b->text();
            // The box lays its buttons out by role; only which ones it holds matters.
            buttons.sort();
            for (QAbstractButton *b : box->buttons())
                if (b->text() == buttonText)
                    b->click();
        });
    }
};

TEST(MessageBoxDialogs, QuestionsHaveRussianButtons)
{
    MessageBoxDialogs box;
    Dialogs &dialogs = box;
    BoxAnswer answer;
    answer.Press("Нет");
    EXPECT_EQ(dialogs.Show(Dialogs::Confirmation, "Удалить?", Dialogs::YesNo), Dialogs::ResultNo);
    EXPECT_EQ(answer.buttons, QStringList({"Да", "Нет"}));
    EXPECT_EQ(answer.caption, "Подтверждение");
    EXPECT_EQ(answer.text, "Удалить?");
    EXPECT_EQ(answer.icon, QMessageBox::Question);
}

TEST(MessageBoxDialogs, OkCancelAndCaptions)
{
    MessageBoxDialogs box;
    Dialogs &dialogs = box;
    BoxAnswer answer;
    answer.Press("Отмена");
    EXPECT_EQ(dialogs.Show(Dialogs::Warning, "Сохранить?", Dialogs::OkCancel, "Подтверждение"), Dialogs::ResultCancel);
    EXPECT_EQ(answer.buttons, QStringList({"OK", "Отмена"}));

    BoxAnswer error;
    error.Press("OK");
    EXPECT_EQ(dialogs.Show(Dialogs::Error, "Не удалось", Dialogs::Ok), Dialogs::ResultOk);
    EXPECT_EQ(error.caption, "Ошибка");
    EXPECT_EQ(error.icon, QMessageBox::Critical);

    BoxAnswer three;
    three.Press("Да");
    EXPECT_EQ(dialogs.Show(Dialogs::Information, "?", Dialogs::YesNoCancel, "Вопрос"), Dialogs::ResultYes);
    EXPECT_EQ(three.buttons, QStringList({"Да", "Нет", "Отмена"}));
    EXPECT_EQ(three.caption, "Вопрос");
}

class UrlCatcher : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl &url) { urls << url; }
};

TEST(DesktopShell, OpensFilesAndAddressesThroughTheDesktop)
{
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler("file", &catcher, "open");
    QDesktopServices::setUrlHandler("https", &catcher, "open");
    DesktopShell shell;
    EXPECT_TRUE(shell.Open("/tmp/~abc.xlsx"));
    EXPECT_TRUE(shell.Open("https://example.org/update?pc_id=1"));
    QDesktopServices::unsetUrlHandler("file");
    QDesktopServices::unsetUrlHandler("https");
    ASSERT_EQ(catcher.urls.size(), 2);
    EXPECT_EQ(catcher.urls[0], QUrl::fromLocalFile("/tmp/~abc.xlsx"));
    EXPECT_EQ(catcher.urls[1].host(), "example.org");
}

TEST(Shell, TheInstalledShellIsInForceUntilItGoes)
{
    {
        RecordingShell recording;
        EXPECT_EQ(&Shell::Current(), &recording);
        Shell::Current().Open("x.rtf");
        EXPECT_EQ(recording.Opened, QStringList{"x.rtf"});
    }
    EXPECT_NE(dynamic_cast<ConsoleShell *>(&Shell::Current()), nullptr);
    EXPECT_FALSE(Shell::Current().Open("nothing"));
}

} // namespace

#include "test_platform_widgets.moc"
