#pragma once
// A data module over its own copy of the deployed database, logged in as the administrator, with
// dialogs answered from a script and a shell that opens nothing.

#include "data_dm.h"
#include "custom_dict_fm.h"
#include "grid_frame.h"
#include "modal_driver.h"
#include "recording_shell.h"
#include "scripted_dialogs.h"
#include "data_module_copy.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <functional>
#include <memory>
#include <type_traits>

class FormsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // A sub-folder, so that the ini glued to the folder's name stays inside the temporary one.
        PrepareDataHome(home.path() + "/share");
        dialogs.Install();
        dm = std::make_unique<TDataDM>(nullptr, QStringList{"kelvarion"});
        ASSERT_TRUE(dm->pFIBDatabaseMain.Connected());
        ASSERT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
        dm->pFIBTransaction1.StartTransaction();
        CurrentRoleId = 1;
        CurrentUserId = 1;
    }

    void TearDown() override
    {
        dm.reset();
        ForgetDataHome();
    }

    // Does `open` (an action, or what a user does) and the steps, each on the window of type C then open.
    template <class C, class Open>
    static void OnModal(Open open, const QList<std::function<void(C *)>> &steps)
    {
        ModalDriver driver;
        for (const auto &step : steps)
            driver.Then([step](QWidget *modal) {
                auto *window = qobject_cast<C *>(modal);
                ASSERT_NE(window, nullptr) << modal->objectName().toStdString();
                step(window);
            });
        if constexpr (std::is_invocable_v<Open>)
            open();
        else
            open->Execute();
        EXPECT_EQ(driver.Ran(), steps.size());
        EXPECT_TRUE(driver.Failures.isEmpty()) << driver.Failures.join('\n').toStdString();
    }
    // The same on cards and dialogs of the forms.
    template <class Open>
    static void OnCard(Open open, const QList<std::function<void(TCustomDictFM *)>> &steps)
    {
        OnModal<TCustomDictFM>(open, steps);
    }

    void Exec(const QString &sql) { ExecIn(*dm, sql); }

    QVariant Scalar(const QString &sql) { return ScalarIn(*dm, sql); }

    int Count(const QString &table) { return Scalar("select count(*) from " + table).toInt(); }

    // Deletes the frame's current row as a user would; what was asked and told then, each trimmed.
    QStringList Delete(TGridFrame *frame)
    {
        dialogs.Clear();
        frame->actDel->Execute();
        return dialogs.Texts().replaceInStrings(QRegularExpression("^\\s+|\\s+$"), "");
    }

    QTemporaryDir home;
    ScriptedDialogs dialogs;
    RecordingShell shell;
    std::unique_ptr<TDataDM> dm;
};
