#pragma once
// The checks a card makes before it saves: a value that is missing is told in a box under the card's
// caption for save errors, and the card stays open.

#include <QString>

class QWidget;

class TCardCheck
{
public:
    explicit TCardCheck(const QString &caption) : m_caption(caption) {}

    // False, after telling `text`, when the editor is missing or holds only blanks.
    bool HasText(QWidget *editor, const QString &text) const;
    // False, after telling `text`, when the editor is missing or its value is Null.
    bool HasValue(QWidget *editor, const QString &text) const;

private:
    bool Fail(const QString &text) const;
    QString m_caption;
};
