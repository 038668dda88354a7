// The shop's backups, of the database in this process and of one on a server: every table's rows survive
// a backup and a restore, the automatic ones are kept to seven, and whatever fails leaves the database as
// it was, with a Russian message.
#include "backups.h"
#include "database_test.h"
#include "private_server.h"

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
    QStringList counts;
    for (const QString &table : tables)
        counts << table + "=" + t.Scalar("select count(*) from " + table).toString();
    return counts;
}

// The rows of the database a backup file holds, restored here to be counted (the engine here takes
// only names in the system's encoding, which in tests is ASCII).
QStringList RowCountsOf(const QString &backupFile)
{
    QTemporaryDir dir;
    const QString copy = dir.filePath("counted.fbk"), restored = dir.filePath("counted.fdb");
    EXPECT_TRUE(QFile::copy(backupFile, copy));
    TFIBServices(TFIBServer{}).Restore(copy, restored);
    TestDatabase t("counted.fdb", restored);
    return RowCounts(t);
}

TFIBServer Server(const QString &password = PrivateServer::SysdbaPassword)
{
    return TFIBServer{PrivateServer::Host(), PrivateServer::Shared().Port(), PrivateServer::SysdbaUser, password};
}

// A database on the server made from a local one, under a name no other test uses.
QString OnServer(TestDatabase &local, const QString &name)
{
    const QString file = TBackups(TFIBServer{}, local.Path()).Make(QDir(local.Folder()).filePath("to server"));
    const QString path = QDir(PrivateServer::Shared().DataFolder()).filePath(name);
    TFIBServices(Server()).Restore(file, path);
    return path;
}

// A file of `size` bytes: the first ones of `from`, or junk.
QString Written(const QString &path, qint64 size, const QString &from = QString())
{
    QByteArray bytes(size, 'x');
    QFile in(from);
    if (!from.isEmpty() && in.open(QIODevice::ReadOnly))
        bytes = in.read(size);
    QFile out(path);
    EXPECT_TRUE(out.open(QIODevice::WriteOnly) && out.write(bytes) == size);
    return path;
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
    const qint64 size = QFileInfo(t.Path()).size();
    for (const QString &bad : {Written(QDir(t.Folder()).filePath("junk.fbk"), 8192),
                               Written(QDir(t.Folder()).filePath("half.fbk"), QFileInfo(file).size() / 2, file),
                               QDir(t.Folder()).filePath("none.fbk")}) {
        EXPECT_TRUE(ErrorOf([&] { backups.Restore(bad); }).contains(bad)) << bad.toStdString();
        EXPECT_EQ(QFileInfo(t.Path()).size(), size);
        EXPECT_FALSE(QFile::exists(t.Path() + ".restoring"));
    }
}

TEST(Backups, ThroughAServerEveryTableRoundTripsAndTheReplacedDatabaseIsKeptAsABackupHere)
{
    DeployedDatabase shop;
    shop.Exec("insert into CUST (CUSTNAME) values ('Иванов')");
    shop.CommitAndRestart();
    const QStringList before = RowCounts(shop);
    const QString shopFile = TBackups(TFIBServer{}, shop.Path()).Make(QDir(shop.Folder()).filePath("local"));

    // The server's database is at first another one, which the restore must keep.
    TestDatabase other;
    other.Exec("create table A (ID integer)");
    other.CommitAndRestart();
    const QString onServer = OnServer(other, "round trip.fdb");
    const QString side = onServer + ".restoring";
    TBackups backups(Server(), onServer);
    backups.Now = QDateTime(QDate(2026, 11, 23), QTime(9, 15));
    const QString folder = QDir(shop.Folder()).filePath("backup");
    const QString kept = backups.Restore(shopFile, folder);
    EXPECT_EQ(kept, QDir(folder).filePath("round trip до восстановления 2026-11-23 09-15-00.fbk"));
    EXPECT_EQ(RowCountsOf(kept), QStringList{"A=0"});
    EXPECT_FALSE(QFile::exists(side));
    const QString made = backups.Make(folder);
    EXPECT_EQ(RowCountsOf(made), before);

    // Not a backup, half a backup, a folder that cannot keep the replaced database: nothing is kept, and
    // the server's database is the one it was.
    const QString blocker = Written(QDir(shop.Folder()).filePath("file"), 0);
    const struct
    {
        QString file, keepFolder, error;
    } refused[] = {
        {Written(QDir(shop.Folder()).filePath("junk.fbk"), 8192), folder, "junk.fbk"},
        {Written(QDir(shop.Folder()).filePath("half.fbk"), QFileInfo(made).size() / 2, made), folder, "half.fbk"},
        {made, blocker + "/backup", "недоступна для записи"},
    };
    for (const auto &r : refused) {
        const QString error = ErrorOf([&] { backups.Restore(r.file, r.keepFolder); });
        EXPECT_TRUE(error.contains(r.error)) << error.toStdString();
        EXPECT_FALSE(QFile::exists(side)) << r.file.toStdString();
    }
    EXPECT_EQ(QDir(folder).entryList({"*.fbk"}).size(), 2);
    // Another seat at work on the database.
    TFIBDatabase seat;
    seat.DBName = PrivateServer::Shared().Connection(onServer);
    seat.UserName = PrivateServer::SeatUser;
    seat.Password = PrivateServer::SeatPassword;
    seat.Open();
    EXPECT_TRUE(ErrorOf([&] { backups.Restore(made, folder); }).contains("работают другие подключения (1)"));
    EXPECT_TRUE(seat.Connected());
    seat.Close();
    EXPECT_EQ(QDir(folder).entryList({"*.fbk"}).size(), 2);
    EXPECT_EQ(RowCountsOf(backups.Make(folder)), before);
}

TEST(Backups, SevenAutomaticBackupsAreKeptAndAFolderThatCannotBeWrittenIsSaidSo)
{
    TestDatabase t;
    t.Exec("create table A (ID integer)");
    t.CommitAndRestart();
    const QString blocker = Written(QDir(t.Folder()).filePath("file"), 0);
    const struct
    {
        QString name;
        TFIBServer server;
        QString database;
    } places[] = {{"here", TFIBServer{}, t.Path()}, {"on the server", Server(), OnServer(t, "seven.fdb")}};
    for (const auto &place : places) {
        SCOPED_TRACE(place.name.toStdString());
        const QString folder = QDir(t.Folder()).filePath("backup " + place.name);
        TBackups backups(place.server, place.database);
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
        EXPECT_TRUE(ErrorOf([&] { backups.Make(blocker + "/backup"); }).contains("недоступна для записи"));
    }

    // A server that refuses the user, a database it does not have: no file is left half-made.
    const QString folder = QDir(t.Folder()).filePath("refused");
    for (const auto &[server, database] : {std::pair{Server("wrong"), places[1].database},
                                           std::pair{Server(), places[1].database + ".none"}}) {
        const QString error = ErrorOf([&] { TBackups(server, database).Make(folder); });
        EXPECT_TRUE(error.startsWith("Не удалось создать резервную копию базы данных.")) << error.toStdString();
        EXPECT_EQ(QDir(folder).entryList(QDir::Files), QStringList());
    }
    const QString local = TBackups(TFIBServer{}, t.Path()).Make(folder);
    EXPECT_TRUE(ErrorOf([&] { TBackups(Server("wrong"), places[1].database).Restore(local, folder); })
                    .contains("восстановление не выполнено"));
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), QStringList{QFileInfo(local).fileName()});
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
