#include "text_editors.h"

#include "app_exception.h"

#include <QAction>
#include <QStyle>

TTextEdit::TTextEdit(QWidget *parent) : QLineEdit(parent)
{
    connect(this, &QLineEdit::textEdited, this, [this] { UserChanged(); });
}

QVariant TTextEdit::EditValue() const
{
    return text();
}

void TTextEdit::SetEditValue(const QVariant &value)
{
    const QString shown = value.isValid() ? value.toString() : QString();
    if (shown != text())
        setText(shown);
}

TMemo::TMemo(QWidget *parent) : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_showing)
            UserChanged();
    });
}

QVariant TMemo::EditValue() const
{
    return toPlainText();
}

void TMemo::SetEditValue(const QVariant &value)
{
    const QString shown = value.isValid() ? value.toString() : QString();
    if (shown == toPlainText())
        return;
    m_showing = true;
    setPlainText(shown);
    m_showing = false;
}

TButtonEdit::TButtonEdit(QWidget *parent) : TTextEdit(parent)
{
    QAction *button = addAction(style()->standardIcon(QStyle::SP_FileDialogContentsView), QLineEdit::TrailingPosition);
    button->setObjectName(QStringLiteral("Button0"));
    connect(button, &QAction::triggered, this, [this] {
        try {
            ClickButton(0);
        } catch (...) {
            HandleCurrentException();
        }
    });
}

void TButtonEdit::ClickButton(int buttonIndex)
{
    if (!isEnabled())
        return;
    if (OnButtonClick)
        OnButtonClick(buttonIndex);
    emit ButtonClick(buttonIndex);
}
