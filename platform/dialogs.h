#pragma once
// Message boxes and modal questions, behind one interface so that tests can answer them from a script.

#include <QString>

class Dialogs
{
public:
    enum Kind { Information, Warning, Error, Confirmation };
    // Button sets; the answer is the modal result of the pressed button.
    enum Buttons { Ok, OkCancel, YesNo, YesNoCancel };
    enum Result { ResultNone = 0, ResultOk = 1, ResultCancel = 2, ResultYes = 6, ResultNo = 7 };

    virtual ~Dialogs() = default;
    virtual int Show(Kind kind, const QString &text, Buttons buttons = Ok, const QString &caption = QString()) = 0;

    void ShowError(const QString &text) { Show(Error, text); }
    void ShowInformation(const QString &text) { Show(Information, text); }
    bool Confirm(const QString &text) { return Show(Confirmation, text, YesNo) == ResultYes; }

    // The dialogs in force; installing null restores the default one.
    static Dialogs &Current();
    static void Install(Dialogs *dialogs);
};

// Without a window system: every message goes to the standard error stream and is answered with the
// first button.
class ConsoleDialogs : public Dialogs
{
public:
    int Show(Kind kind, const QString &text, Buttons buttons, const QString &caption) override;
};
