#pragma once
// A data module running over its own copy of the deployed database, as at a normal start.

#include "data_dm.h"
#include "data_module_copy.h"
#include "scripted_dialogs.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

class DataModuleTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // A sub-folder, so that the ini glued to the folder's name stays inside the temporary one.
        PrepareDataHome(home.path() + "/share");
        dialogs.Install();
        dm = std::make_unique<TDataDM>(nullptr, QStringList{"kelvarion"});
        ASSERT_FALSE(dm->IsNewDatabase());
        ASSERT_TRUE(dm->pFIBDatabaseMain.Connected());
        ASSERT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    }

    void TearDown() override
    {
        dm.reset();
        ForgetDataHome();
    }

    void Exec(const QString &sql) { ExecIn(*dm, sql); }

    QVariant Scalar(const QString &sql) { return ScalarIn(*dm, sql); }

    QStringList Rows(const QString &sql) { return RowsIn(*dm, sql); }

    QTemporaryDir home;
    ScriptedDialogs dialogs;
    std::unique_ptr<TDataDM> dm;
};
