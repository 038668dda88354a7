#pragma once
// Single-line text, multi-line text and text with a chooser button. They take only what the database's
// Windows-1251 text can hold: any other character is refused as it is typed and dropped from a pasted text.

#include "value_editor.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QValidator>

// Whether Windows-1251 holds the character.
bool IsAnsiChar(QChar c);
// The text without the characters that Windows-1251 cannot hold.
QString AnsiOnly(const QString &text);

// Drops what Windows-1251 cannot hold, so that a refused key does nothing and a paste comes in cleaned.
class TAnsiTextValidator : public QValidator
{
public:
    using QValidator::QValidator;
    State validate(QString &input, int &pos) const override;
    void fixup(QString &input) const override;
};

class TTextEdit : public QLineEdit, public TValueEditor
{
    Q_OBJECT
public:
    explicit TTextEdit(QWidget *parent = nullptr);
    QVariant EditValue() const override;
    void SetEditValue(const QVariant &value) override;
};

class TMemo : public QPlainTextEdit, public TValueEditor
{
    Q_OBJECT
public:
    explicit TMemo(QWidget *parent = nullptr);
    QVariant EditValue() const override;
    void SetEditValue(const QVariant &value) override;

    // Characters at most, line breaks counted; 0 for no limit. A longer text is not cut.
    int MaxLength() const { return m_maxLength; }
    void SetMaxLength(int length) { m_maxLength = length; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    // What of `text` may replace the selection: the held characters, cut to the room left.
    QString Admissible(const QString &text) const;

    bool m_showing = false;
    int m_maxLength = 0;
};

// A text editor with a button at its right end that opens a chooser; the owner handles the click.
class TButtonEdit : public TTextEdit
{
    Q_OBJECT
public:
    explicit TButtonEdit(QWidget *parent = nullptr);

    std::function<void(int buttonIndex)> OnButtonClick;
    // Presses the button as a click would.
    void ClickButton(int buttonIndex = 0);

signals:
    void ButtonClick(int buttonIndex);
};
