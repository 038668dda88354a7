#pragma once
// A data module running over its own copy of the deployed database, as at a normal start.

#include "data_dm.h"
#include "dialogs.h"
#include "test_database.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

class DataModuleTest : public ::testing::Test
{
protected:
    class RecordingDialogs : public Dialogs
    {
    public:
        QStringList Texts;
        int Show(Kind, const QString &text, Buttons, const QString &) override
        {
            Texts << text;
            return ResultOk;
        }
    };

    void SetUp() override
    {
        // First, as it sets and restores the variable itself.
        const QString deployed = DeployedTemplatePath();
        qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
        const QString dbPath = home.path() + "/Kelvarion/db/database.fdb";
        ASSERT_TRUE(QDir().mkpath(home.path() + "/Kelvarion/db"));
        ASSERT_TRUE(QFile::copy(deployed, dbPath));
        QFile::setPermissions(dbPath, QFile::ReadOwner | QFile::WriteOwner);
        Dialogs::Install(&dialogs);
        ResetApplicationTerminate();
        dm = std::make_unique<TDataDM>(nullptr, QStringList{"kelvarion"});
        ASSERT_FALSE(dm->IsNewDatabase());
        ASSERT_TRUE(dm->pFIBDatabaseMain.Connected());
        ASSERT_TRUE(dialogs.Texts.isEmpty()) << dialogs.Texts.join('\n').toStdString();
    }

    void TearDown() override
    {
        dm.reset();
        Dialogs::Install(nullptr);
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

    // All rows of a select, each as its columns joined by '|'.
    QStringList Rows(const QString &sql)
    {
        dm->pFIBTransaction1.StartTransaction();
        TpFIBQuery q;
        q.SetDatabase(&dm->pFIBDatabaseMain);
        q.SetTransaction(&dm->pFIBTransaction1);
        q.SetSQLText(sql);
        q.ExecQuery();
        QStringList rows;
        while (q.Next()) {
            QStringList cols;
            for (int i = 0; i < q.Fields().Count(); ++i)
                cols << q.Fields(i).AsVariant().toString();
            rows << cols.join('|');
        }
        return rows;
    }

    QTemporaryDir home;
    RecordingDialogs dialogs;
    std::unique_ptr<TDataDM> dm;
};
