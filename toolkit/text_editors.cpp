#include "text_editors.h"

#include "app_exception.h"
#include "fib_encoding.h"

#include <QAction>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QStyle>
#include <QTextCursor>

#include <array>

bool IsAnsiChar(QChar c)
{
    // 0 unknown, 1 held, 2 not held; the answer of the encoder for each UTF-16 unit, asked once.
    static std::array<quint8, 0x10000> known{};
    quint8 &answer = known[c.unicode()];
    if (answer == 0) {
        // What the database would store: the text as it goes out and comes back.
        const QByteArray bytes = AnsiEncode(QStringView(&c, 1));
        const QString back = AnsiDecode(bytes);
        answer = !c.isSurrogate() && back.size() == 1 && back.at(0) == c ? 1 : 2;
    }
    return answer == 1;
}

QString AnsiOnly(const QString &text)
{
    QString held;
    held.reserve(text.size());
    for (const QChar c : text)
        if (IsAnsiChar(c))
            held.append(c);
    return held;
}

QValidator::State TAnsiTextValidator::validate(QString &input, int &pos) const
{
    QString held;
    held.reserve(input.size());
    int newPos = pos;
    for (int i = 0; i < input.size(); ++i) {
        if (IsAnsiChar(input.at(i)))
            held.append(input.at(i));
        else if (i < pos)
            --newPos;
    }
    input = held;
    pos = newPos;
    return Acceptable;
}

void TAnsiTextValidator::fixup(QString &input) const
{
    input = AnsiOnly(input);
}

namespace {

TAnsiTextValidator *ansiValidator()
{
    static TAnsiTextValidator validator;
    return &validator;
}

} // namespace

TTextEdit::TTextEdit(QWidget *parent) : QLineEdit(parent)
{
    setValidator(ansiValidator());
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

QString TMemo::Admissible(const QString &text) const
{
    QString held = AnsiOnly(text);
    if (m_maxLength > 0) {
        const QTextCursor cursor = textCursor();
        const int kept = int(toPlainText().size()) - (cursor.selectionEnd() - cursor.selectionStart());
        held.truncate(qMax(0, m_maxLength - kept));
    }
    return held;
}

void TMemo::keyPressEvent(QKeyEvent *event)
{
    // A key that would add a character the text cannot take does nothing.
    const QString typed = event->text();
    if (!typed.isEmpty() && typed.at(0).isPrint() && Admissible(typed) != typed) {
        event->accept();
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && Admissible(QStringLiteral("\n")).isEmpty()) {
        event->accept();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void TMemo::inputMethodEvent(QInputMethodEvent *event)
{
    const QString committed = event->commitString();
    if (!committed.isEmpty() && Admissible(committed) != committed) {
        QInputMethodEvent cleaned(event->preeditString(), event->attributes());
        cleaned.setCommitString(Admissible(committed), event->replacementStart(), event->replacementLength());
        QPlainTextEdit::inputMethodEvent(&cleaned);
        return;
    }
    QPlainTextEdit::inputMethodEvent(event);
}

void TMemo::insertFromMimeData(const QMimeData *source)
{
    if (!source || !source->hasText())
        return;
    insertPlainText(Admissible(source->text()));
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
