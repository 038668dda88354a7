// Actions: nothing runs while disabled, the list's hook runs first, failures of a click are shown.

#include "actions.h"
#include "fib_errors.h"
#include "scripted_dialogs.h"

#include <QToolButton>
#include <gtest/gtest.h>

namespace {

TEST(Actions, ExecuteRunsTheListHookThenTheHandler)
{
    TActionList list(nullptr, "alGrid");
    TAction action(&list, "actAdd", "Добавить", 5);
    QStringList order;
    list.OnExecute = [&](TAction *a, bool &) { order << "hook:" + a->objectName(); };
    action.OnExecute = [&](QObject *sender) { order << (sender == &action ? "handler" : "?"); };
    EXPECT_TRUE(action.Execute());
    EXPECT_EQ(order, QStringList({"hook:actAdd", "handler"}));
    EXPECT_EQ(action.text(), "Добавить");
    EXPECT_EQ(action.ImageIndex, 5);
    EXPECT_EQ(list.FindAction("actAdd"), &action);
}

TEST(Actions, HandledFlagSkipsTheHandler)
{
    TActionList list;
    TAction action(&list, "actEdit", "Изменить");
    int handled = 0;
    list.OnExecute = [](TAction *, bool &h) { h = true; };
    action.OnExecute = [&](QObject *) { ++handled; };
    action.Execute();
    EXPECT_EQ(handled, 0);
}

TEST(Actions, DisabledActionRunsNothingAndItsButtonFollows)
{
    TActionList list;
    TAction action(&list, "actDel", "Удалить");
    int runs = 0, hooks = 0;
    list.OnExecute = [&](TAction *, bool &) { ++hooks; };
    action.OnExecute = [&](QObject *) { ++runs; };
    QToolButton button;
    button.setDefaultAction(&action);
    action.setEnabled(false);
    EXPECT_FALSE(action.Execute());
    EXPECT_FALSE(button.isEnabled());
    button.click();
    EXPECT_EQ(runs + hooks, 0);
    action.setEnabled(true);
    button.click();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(hooks, 1);
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
