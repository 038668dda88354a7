// Actions: nothing runs while disabled, the list's hook runs first, failures of a click are shown.

#include "actions.h"
#include "fib_errors.h"
#include "scripted_dialogs.h"

#include <QToolButton>
#include <gtest/gtest.h>

TEST(Actions, TheListHookRunsFirstMayTakeOverNothingRunsWhileDisabledAndFailuresAreShown)
{
    TActionList list(nullptr, "alGrid");
    TAction action(&list, "actAdd", "Добавить", 5);
    QStringList order;
    bool handled = false;
    list.OnExecute = [&](TAction *a, bool &h) {
        order << "hook:" + a->objectName();
        h = handled;
    };
    action.OnExecute = [&](QObject *sender) { order << (sender == &action ? "handler" : "?"); };
    EXPECT_TRUE(action.Execute());
    handled = true;
    action.Execute();
    EXPECT_EQ(order, QStringList({"hook:actAdd", "handler", "hook:actAdd"}));
    EXPECT_EQ(list.FindAction("actAdd"), &action);

    // Disabled, it runs nothing; a button runs the whole action.
    order.clear();
    handled = false;
    action.setEnabled(false);
    EXPECT_TRUE(!action.Execute() && order.isEmpty());
    QToolButton button;
    button.setDefaultAction(&action);
    action.setEnabled(true);
    button.click();
    EXPECT_EQ(order, QStringList({"hook:actAdd", "handler"}));

    // Exceptions reach the caller of Execute and, shown, the user of a button; an abort is silent.
    ScriptedDialogs dialogs;
    action.OnExecute = [](QObject *) { throw EDatabaseError("Не вышло"); };
    EXPECT_THROW(action.Execute(), EDatabaseError);
    EXPECT_TRUE(dialogs.Shown.isEmpty());
    action.trigger();
    ASSERT_EQ(dialogs.Texts(), QStringList{"Не вышло"});
    EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);

    action.OnExecute = [](QObject *) { throw EAbort(); };
    action.trigger();
    EXPECT_EQ(dialogs.Shown.size(), 1);
}
