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

class UrlCatcher : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl &url) { urls << url; }
};

TEST(PlatformWidgets, TheDesktopOpensFilesAndAddressesAnInstalledShellIsInForceUntilItGoesAndMessageBoxesAreRussian)
{
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler("file", &catcher, "open");
    QDesktopServices::setUrlHandler("https", &catcher, "open");
    DesktopShell shell;
    EXPECT_TRUE(shell.Open("/tmp/~abc.xlsx"));
    EXPECT_TRUE(shell.Open("https://example.org/update?pc_id=1"));
    QDesktopServices::unsetUrlHandler("file");
    QDesktopServices::unsetUrlHandler("https");
    EXPECT_EQ(catcher.urls, QList<QUrl>({QUrl::fromLocalFile("/tmp/~abc.xlsx"), QUrl("https://example.org/update?pc_id=1")}));

    {
        RecordingShell recording;
        Shell::Current().Open("x.rtf");
        EXPECT_EQ(recording.Opened, QStringList{"x.rtf"});
    }
    // Then the console's, which opens nothing.
    EXPECT_FALSE(Shell::Current().Open("nothing"));

    // The real message boxes: buttons are Russian and captions follow the kind.
    MessageBoxDialogs box;
    using D = Dialogs;
    using Q = QMessageBox;
    // The kind, the buttons, the caption asked for, the button pressed, the result, the icon, and the caption shown
    // with the buttons, sorted.
    const struct { D::Kind kind; D::Buttons buttons; const char *caption, *press; int result; Q::Icon icon;
                   const char *seen; } table[] = {
        {D::Confirmation, D::YesNo, "", "Нет", D::ResultNo, Q::Question, "Подтверждение: Да Нет"},
        {D::Warning, D::OkCancel, "Сохранение", "Отмена", D::ResultCancel, Q::Warning, "Сохранение: OK Отмена"},
        {D::Error, D::Ok, "", "OK", D::ResultOk, Q::Critical, "Ошибка: OK"},
        {D::Information, D::YesNoCancel, "Вопрос", "Да", D::ResultYes, Q::Information, "Вопрос: Да Нет Отмена"},
    };
    for (const auto &row : table) {
        QString seen;
        QTimer::singleShot(20, [&] {
            auto *shown = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            ASSERT_NE(shown, nullptr);
            QStringList buttons;
            for (QAbstractButton *b : shown->buttons())
                buttons << b->text();
            buttons.sort(); // laid out by role: only which buttons it holds matters
            seen = QString("%1: %2 [%3] %4").arg(shown->windowTitle(), buttons.join(' ')).arg(int(shown->icon()))
                       .arg(shown->text());
            for (QAbstractButton *b : shown->buttons())
                if (b->text() == row.press)
                    b->click();
        });
        EXPECT_EQ(box.Show(row.kind, "Текст?", row.buttons, row.caption), row.result) << row.seen;
        EXPECT_EQ(seen, QString("%1 [%2] Текст?").arg(row.seen).arg(int(row.icon)));
    }
}

} // namespace

#include "test_platform_widgets.moc"
