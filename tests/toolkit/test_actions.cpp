// Actions: nothing runs while disabled, the list's hook runs first, failures of a click are shown.

#include "actions.h"
#include "fib_errors.h"
#include "scripted_dialogs.h"

#include <QToolButton>
#include <gtest/gtest.h>

namespace {

TEST(Actions, TheListHookRunsFirstMayTakeOverAndNothingRunsWhileDisabled)
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
    EXPECT_FALSE(action.Execute());
    EXPECT_TRUE(order.isEmpty());
    QToolButton button;
    button.setDefaultAction(&action);
    action.setEnabled(true);
    button.click();
    EXPECT_EQ(order, QStringList({"hook:actAdd", "handler"}));
}

TEST(Actions, ExceptionsReachTheCallerOfExecuteAndTheUserOfAButton)
{
    ScriptedDialogs dialogs;
    TActionList list;
    TAction action(&list, "actRefresh", "Обновить");
    action.OnExecute = [](QObject *) { throw EDatabaseError("Не вышло"); };
    EXPECT_THROW(action.Execute(), EDatabaseError);
    EXPECT_TRUE(dialogs.Shown.isEmpty());
    action.trigger();
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].text, "Не вышло");
    EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);

    action.OnExecute = [](QObject *) { throw EAbort(); };
    action.trigger();
    EXPECT_EQ(dialogs.Shown.size(), 1);
}

} // namespace
