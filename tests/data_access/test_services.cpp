// Backups and restores through the engine's service manager, of a database in use.
#include "fib_services.h"
#include "database_test.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

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
    EXPECT_FALSE(services.Log().isEmpty());

    services.Restore(dir.filePath("shop.fbk"), dir.filePath("restored.fdb"));
    TestDatabase copy("copy.fdb", dir.filePath("restored.fdb"));
    EXPECT_EQ(copy.Scalar("select list(NAME, ',') from (select NAME from GOODS order by ID)").toString(),
              "Масло,Фильтр");

    // A restore never replaces a database, in the engine's words.
    EXPECT_NE(ErrorOf([&] { services.Restore(dir.filePath("shop.fbk"), t.Path()); }), "<no error>");
    EXPECT_EQ(t.Scalar("select count(*) from GOODS").toInt(), 3) << "the database in use is untouched";
}
