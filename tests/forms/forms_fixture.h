#pragma once
// A data module over its own copy of the deployed database, logged in as the administrator, with
// dialogs answered from a script and a shell that opens nothing.

#include "data_dm.h"
#include "modal_driver.h"
#include "recording_shell.h"
#include "scripted_dialogs.h"
#include "data_module_copy.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

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

    void Exec(const QString &sql) { ExecIn(*dm, sql); }

    QVariant Scalar(const QString &sql) { return ScalarIn(*dm, sql); }

    int Count(const QString &table) { return Scalar("select count(*) from " + table).toInt(); }

    QTemporaryDir home;
    ScriptedDialogs dialogs;
    RecordingShell shell;
    std::unique_ptr<TDataDM> dm;
};
