#pragma once
// Single-line text, multi-line text and text with a chooser button.

#include "value_editor.h"

#include <QLineEdit>
#include <QPlainTextEdit>

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

private:
    bool m_showing = false;
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
