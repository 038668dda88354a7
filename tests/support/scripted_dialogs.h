#pragma once
// Dialogs for tests: answers questions from a queue and records every box that was shown.

#include "dialogs.h"

#include <QList>
#include <QQueue>
#include <QString>
#include <QStringList>

class ScriptedDialogs : public Dialogs
{
public:
    struct Box
    {
        Kind kind;
        QString text;
        Buttons buttons;
        QString caption;
    };

    // Installs itself for its lifetime.
    ScriptedDialogs() { Dialogs::Install(this); }
    ~ScriptedDialogs() override { Dialogs::Install(nullptr); }
    ScriptedDialogs(const ScriptedDialogs &) = delete;
    ScriptedDialogs &operator=(const ScriptedDialogs &) = delete;

    // Puts itself in force again, after something else was installed meanwhile.
    void Install() { Dialogs::Install(this); }

    // Answers in order of the questions; with none left, the first button of the box.
    void Answer(int result) { m_answers.enqueue(result); }

    int Show(Kind kind, const QString &text, Buttons buttons, const QString &caption) override
    {
        Shown.append({kind, text, buttons, caption});
        if (!m_answers.isEmpty())
            return m_answers.dequeue();
        return buttons == Ok || buttons == OkCancel ? ResultOk : ResultYes;
    }

    QStringList Texts() const
    {
        QStringList texts;
        for (const Box &box : Shown)
            texts << box.text;
        return texts;
    }
    QStringList Captions() const
    {
        QStringList captions;
        for (const Box &box : Shown)
            captions << box.caption;
        return captions;
    }
    int PendingAnswers() const { return int(m_answers.size()); }
    void Clear() { Shown.clear(); }

    QList<Box> Shown;

private:
    QQueue<int> m_answers;
};
