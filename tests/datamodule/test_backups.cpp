// The shop's backups: every table's rows survive a backup and a restore, the automatic ones are kept to
// seven, and whatever fails leaves the database as it was, with a Russian message.
#include "backups.h"
#include "database_test.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

// Rows of every table of the shop, "TABLE=count" in the order of the names.
QStringList RowCounts(TestDatabase &t)
{
    QStringList tables;
    auto q = t.NewQuery();
    q->SetSQLText("select trim(rdb$relation_name) from rdb$relations where rdb$system_flag = 0 and rdb$view_blr is null "
                  "order by 1");
    t.Tr().StartTransaction();
    q->ExecQuery();
    while (q->Next())
        tables << q->Fields(0).AsString();
    q->Close();
    QStringList counts;
    for (const QString &table : tables)
        counts << table + "=" + t.Scalar("select count(*) from " + table).toString();
    return counts;
}

} // namespace

TEST(Backups, EveryTableRoundTripsAndTheReplacedDatabaseStaysBeside)
{
    DeployedDatabase t;
    t.Exec("insert into CUST (CUSTNAME) values ('Иванов')");
    t.CommitAndRestart();
    const QStringList before = RowCounts(t);
    ASSERT_GE(before.size(), 39);

    TBackups backups(TFIBServer{}, t.Path());
    const QString file = backups.Make(QDir(t.Folder()).filePath("backup"));
    t.Tr().Commit();
    t.Db().Close();

    const QString kept = backups.Restore(file);
    EXPECT_TRUE(QFile::exists(kept));
    EXPECT_TRUE(kept.contains("до восстановления"));
    TestDatabase restored("again.fdb", t.Path());
    EXPECT_EQ(RowCounts(restored), before);

    // Not a backup, half a backup, a missing file: the database in place stays as it is.
    QFile junk(QDir(t.Folder()).filePath("junk.fbk"));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(8192, 'x'));
    junk.close();
    QFile half(QDir(t.Folder()).filePath("half.fbk"));
    ASSERT_TRUE(QFile::copy(file, half.fileName()));
    ASSERT_TRUE(half.resize(half.size() / 2));
    const qint64 size = QFileInfo(t.Path()).size();
    for (const QString &bad : {junk.fileName(), half.fileName(), QDir(t.Folder()).filePath("none.fbk")}) {
        EXPECT_TRUE(ErrorOf([&] { backups.Restore(bad); }).contains(bad)) << bad.toStdString();
        EXPECT_EQ(QFileInfo(t.Path()).size(), size);
        EXPECT_FALSE(QFile::exists(t.Path() + ".restoring"));
    }
}

TEST(Backups, SevenAutomaticBackupsAreKeptAndAFolderThatCannotBeWrittenIsSaidSo)
{
    TestDatabase t;
    t.Exec("create table A (ID integer)");
    t.CommitAndRestart();
    const QString folder = QDir(t.Folder()).filePath("backup");
    TBackups backups(TFIBServer{}, t.Path());
    QStringList made;
    for (int day = 1; day <= 8; ++day) {
        backups.Now = QDateTime(QDate(2026, 11, day), QTime(18, 30));
        made << QFileInfo(backups.MakeAutomatic(folder)).fileName();
    }
    EXPECT_EQ(made.first(), "auto 2026-11-01 18-30-00.fbk");
    EXPECT_EQ(QDir(folder).entryList({"*.fbk"}, QDir::Files, QDir::Name), made.mid(1));
    // A backup by hand is never counted among the automatic ones.
    backups.Make(folder);
    EXPECT_EQ(QDir(folder).entryList({"*.fbk"}).size(), 8);

    QFile blocker(QDir(t.Folder()).filePath("file"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    EXPECT_TRUE(ErrorOf([&] { backups.Make(blocker.fileName() + "/backup"); }).contains("недоступна для записи"));
}

#include "data_dm_fixture.h"

using DataModuleBackups = DataModuleTest;

TEST_F(DataModuleBackups, ABackupKeepsTheRunsWorkAndARestoreAtStartBringsItBack)
{
    Exec("insert into CUST (CUSTNAME) values ('Петров')");
    const QString file = dm->MakeBackup(dm->BackupFolder);
    Exec("delete from CUST where CUSTNAME = 'Петров'");
    dm->DataModuleDestroy();
    ASSERT_EQ(Scalar("select count(*) from CUST where CUSTNAME = 'Петров'").toInt(), 0);
    dm->SetAutoBackupEnabled(false);
    dm->AutomaticBackup();
    EXPECT_EQ(QDir(dm->BackupFolder).entryList({"auto *"}).size(), 0);
    dm->SetAutoBackupEnabled(true);
    dm->AutomaticBackup();
    EXPECT_EQ(QDir(dm->BackupFolder).entryList({"auto *"}).size(), 1);
    dm.reset();

    // The backup made mid-run holds the customer; the database left at exit does not.
    dm = std::make_unique<TDataDM>(nullptr, QStringList{"kelvarion", "--restore", file});
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Scalar("select count(*) from CUST where CUSTNAME = 'Петров'").toInt(), 1);
    EXPECT_EQ(QDir(dm->DbFolder).entryList({"database до восстановления *.fdb"}).size(), 1);
    dm.reset();

    // A restore that fails is said, and the program goes on with the database it has.
    dm = std::make_unique<TDataDM>(nullptr, QStringList{"kelvarion", "--restore", "/no/such.fbk"});
    EXPECT_EQ(dialogs.Texts(), QStringList({"Файл резервной копии \"/no/such.fbk\" не найден."}));
    EXPECT_TRUE(dm->pFIBDatabaseMain.Connected());
    EXPECT_EQ(Scalar("select count(*) from CUST where CUSTNAME = 'Петров'").toInt(), 1);
}
