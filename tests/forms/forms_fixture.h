#pragma once
// A data module over its own copy of the deployed database, logged in as the administrator, with
// dialogs answered from a script and a shell that opens nothing.

#include "data_dm.h"
#include "modal_driver.h"
#include "recording_shell.h"
#include "scripted_dialogs.h"
#include "test_database.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

class FormsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // First, as it sets and restores the variable itself and installs dialogs of its own.
        const QString deployed = DeployedTemplatePath();
        dialogs.Install();
        qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
        const QString dbPath = home.path() + "/Kelvarion/db/database.fdb";
        ASSERT_TRUE(QDir().mkpath(home.path() + "/Kelvarion/db"));
        ASSERT_TRUE(QFile::copy(deployed, dbPath));
        QFile::setPermissions(dbPath, QFile::ReadOwner | QFile::WriteOwner);
        ResetApplicationTerminate();
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
        ResetApplicationTerminate();
        qunsetenv("XDG_DATA_HOME");
    }

    // Runs a statement in the module's transaction.
    void Exec(const QString &sql)
    {
        dm->pFIBTransaction1.StartTransaction();
        TpFIBQuery q;
        q.SetDatabase(&dm->pFIBDatabaseMain);
        q.SetTransaction(&dm->pFIBTransaction1);
        q.SetSQLText(sql);
        q.ExecQuery();
    }

    // First column of the first row, or an invalid value when there is none.
    QVariant Scalar(const QString &sql)
    {
        dm->pFIBTransaction1.StartTransaction();
        TpFIBQuery q;
        q.SetDatabase(&dm->pFIBDatabaseMain);
        q.SetTransaction(&dm->pFIBTransaction1);
        q.SetSQLText(sql);
        q.ExecQuery();
        if (!q.Next())
            return QVariant();
        return q.Fields(0).AsVariant();
    }

    int Count(const QString &table) { return Scalar("select count(*) from " + table).toInt(); }

    QTemporaryDir home;
    ScriptedDialogs dialogs;
    RecordingShell shell;
    std::unique_ptr<TDataDM> dm;
};
