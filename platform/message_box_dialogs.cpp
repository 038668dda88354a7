#include "message_box_dialogs.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {

QMessageBox::Icon iconOf(Dialogs::Kind kind)
{
    switch (kind) {
    case Dialogs::Information: return QMessageBox::Information;
    case Dialogs::Warning: return QMessageBox::Warning;
    case Dialogs::Error: return QMessageBox::Critical;
    case Dialogs::Confirmation: return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

struct ButtonSpec
{
    QString text;
    QMessageBox::ButtonRole role;
    int result;
};

QList<ButtonSpec> buttonsOf(Dialogs::Buttons buttons)
{
    const ButtonSpec ok{QStringLiteral("OK"), QMessageBox::AcceptRole, Dialogs::ResultOk};
    const ButtonSpec cancel{QStringLiteral("Отмена"), QMessageBox::RejectRole, Dialogs::ResultCancel};
    const ButtonSpec yes{QStringLiteral("Да"), QMessageBox::YesRole, Dialogs::ResultYes};
    const ButtonSpec no{QStringLiteral("Нет"), QMessageBox::NoRole, Dialogs::ResultNo};
    switch (buttons) {
    case Dialogs::Ok: return {ok};
    case Dialogs::OkCancel: return {ok, cancel};
    case Dialogs::YesNo: return {yes, no};
    case Dialogs::YesNoCancel: return {yes, no, cancel};
    }
    return {ok};
}

} // namespace

QString MessageBoxDialogs::DefaultCaption(Kind kind)
{
    switch (kind) {
    case Information: return QStringLiteral("Информация");
    case Warning: return QStringLiteral("Предупреждение");
    case Error: return QStringLiteral("Ошибка");
    case Confirmation: return QStringLiteral("Подтверждение");
    }
    return QString();
}

int MessageBoxDialogs::Show(Kind kind, const QString &text, Buttons buttons, const QString &caption)
{
    QMessageBox box(iconOf(kind), caption.isEmpty() ? DefaultCaption(kind) : caption, text, QMessageBox::NoButton,
                    m_parent ? m_parent : QApplication::activeWindow());
    QHash<QAbstractButton *, int> results;
    const QList<ButtonSpec> specs = buttonsOf(buttons);
    for (const ButtonSpec &button : specs)
        results.insert(box.addButton(button.text, button.role), button.result);
    box.setDefaultButton(static_cast<QPushButton *>(results.key(specs.first().result)));
    // The window's close box answers like the last button: cancel, no, or the one OK.
    box.setEscapeButton(results.key(specs.last().result));
    box.exec();
    return results.value(box.clickedButton(), ResultCancel);
}
