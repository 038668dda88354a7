#pragma once
// Typing into a widget as a keyboard would, any alphabet.

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWidget>

// Sends one key press and release per character; a line editor's present text is replaced.
inline void TypeText(QWidget *widget, const QString &text)
{
    if (auto *line = qobject_cast<QLineEdit *>(widget))
        line->selectAll();
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
        QCoreApplication::sendEvent(widget, &press);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, QString(c));
        QCoreApplication::sendEvent(widget, &release);
    }
}
