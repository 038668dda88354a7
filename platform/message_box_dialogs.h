#pragma once
// Message boxes of the window system, with Russian button texts.

#include "dialogs.h"

class QWidget;

class MessageBoxDialogs : public Dialogs
{
public:
    // Boxes are centred over `parent`, or over the active window when it is null.
    explicit MessageBoxDialogs(QWidget *parent = nullptr) : m_parent(parent) {}

    int Show(Kind kind, const QString &text, Buttons buttons, const QString &caption) override;

    // The caption a box gets when the caller gives none.
    static QString DefaultCaption(Kind kind);

private:
    QWidget *m_parent;
};
