// Backups and restores through the engine's service manager, of a database in use.
#include "fib_services.h"
#include "test_database.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

QString serviceError(const std::function<void()> &f)
{
    try {
        f();
    } catch (const EFIBError &e) {
        return e.Message();
    }
    return QString();
}

} // namespace

TEST(Services, ABackupOfADatabaseInUseRestoresWithItsCommittedRows)
{
    TestDatabase t;
    t.Exec("create table GOODS (ID integer, NAME varchar(20))");
    t.CommitAndRestart();
    t.Exec("insert into GOODS values (1, 'Масло')");
    t.Exec("insert into GOODS values (2, 'Фильтр')");
    t.CommitAndRestart();
    t.Exec("insert into GOODS values (3, 'not committed')");

    const QDir dir(t.Folder());
    TFIBServices services{TFIBServer{}};
    services.Backup(t.Path(), dir.filePath("shop.fbk"));
    EXPECT_TRUE(QFileInfo(dir.filePath("shop.fbk")).size() > 0);
    EXPECT_FALSE(services.Log().isEmpty());

    services.Restore(dir.filePath("shop.fbk"), dir.filePath("restored.fdb"));
    TestDatabase copy("copy.fdb", dir.filePath("restored.fdb"));
    EXPECT_EQ(copy.Scalar("select list(NAME, ',') from (select NAME from GOODS order by ID)").toString(),
              "Масло,Фильтр");

    // A restore never replaces a database, and a file that is no backup is refused; both in the engine's words.
    EXPECT_FALSE(serviceError([&] { services.Restore(dir.filePath("shop.fbk"), t.Path()); }).isEmpty());
    QFile junk(dir.filePath("junk.fbk"));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(4096, 'x'));
    junk.close();
    EXPECT_FALSE(serviceError([&] { services.Restore(junk.fileName(), dir.filePath("junk.fdb")); }).isEmpty());
    QFile half(dir.filePath("half.fbk"));
    ASSERT_TRUE(QFile::copy(dir.filePath("shop.fbk"), half.fileName()));
    ASSERT_TRUE(half.resize(half.size() / 2));
    EXPECT_FALSE(serviceError([&] { services.Restore(half.fileName(), dir.filePath("half.fdb")); }).isEmpty());
    EXPECT_FALSE(QFile::exists(dir.filePath("junk.fdb")) || QFile::exists(dir.filePath("half.fdb")));
    EXPECT_EQ(t.Scalar("select count(*) from GOODS").toInt(), 3) << "the database in use is untouched";
}
