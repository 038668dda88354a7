// Settings of the CONFIG table read and written through the data module, and the password hash.
#include "data_dm_fixture.h"
#include "database_test.h"

using DataModuleSettings = DataModuleTest;

TEST_F(DataModuleSettings, SetStringUpdatesAKeyInPlaceOrInsertsItSetFloatAlwaysWritesRowZero)
{
    EXPECT_EQ(dm->GetConfigString("ORDERSNUM"), "A-");
    const QString id = Scalar("select ID from CONFIG where PNAME = 'ORDERSNUM'").toString();
    dm->SetConfigString("ORDERSNUM", "Зк-");
    EXPECT_EQ(Rows("select ID, PVALUE from CONFIG where PNAME = 'ORDERSNUM'"), QStringList{id + "|Зк-"});
    EXPECT_EQ(dm->GetConfigString("ORDERSNUM"), "Зк-");

    const int before = Scalar("select count(*) from CONFIG").toInt();
    dm->SetConfigString("NEWKEY", "значение");
    EXPECT_EQ(Rows("select count(*), sign(max(ID)) from CONFIG where PNAME = 'NEWKEY'"), QStringList{"1|1"});
    EXPECT_EQ(Scalar("select count(*) from CONFIG").toInt(), before + 1);
    // Left on the row written.
    EXPECT_EQ(dm->tConfig.FieldByName("PNAME")->AsString(), "NEWKEY");
    EXPECT_EQ(dm->GetConfigString("NEWKEY"), "значение");

    dm->SetConfigFloat("RATE", 12.25);
    EXPECT_EQ(Rows("select ID, PNAME, PVALUE from CONFIG where ID = 0"), QStringList{"0|RATE|12.25"});
    EXPECT_DOUBLE_EQ(dm->GetConfigFloat("RATE"), 12.25);
    // A second key takes over the same row; an existing key is not updated in place but gets a second row.
    dm->SetConfigFloat("TAX", 20);
    EXPECT_EQ(Rows("select ID, PNAME, PVALUE from CONFIG where ID = 0"), QStringList{"0|TAX|20"});
    EXPECT_EQ(dm->GetConfigString("RATE"), "");
    dm->SetConfigFloat("ORDERSPOSTFIX", 0.1);
    EXPECT_EQ(Scalar("select count(*) from CONFIG where PNAME = 'ORDERSPOSTFIX'").toInt(), 2);
}

TEST_F(DataModuleSettings, FailedWritesRaiseAndReadersOpenTheTableAndFindTheKeyExactly)
{
    // Nothing has opened a dataset, so the transaction has not started either: the writes fail at once.
    EXPECT_THROW(dm->SetConfigString("NEWKEY", "x"), EDatabaseError);
    EXPECT_THROW(dm->SetConfigFloat("RATE", 1), EFIBError);
    // Readers open the table and find the key exactly.
    EXPECT_FALSE(dm->tConfig.Active());
    EXPECT_EQ(dm->GetConfigString("ORDERSTEXT"), "Заказ");
    EXPECT_TRUE(dm->tConfig.Active());
    // Case counts; an absent key reads empty and zero and leaves the cursor where it was.
    EXPECT_EQ(dm->GetConfigString("ORDERSPOSTFIX"), "001");
    for (const char *absent : {"orderspostfix", "ORDERSPOSTFI", "NOSUCHKEY"}) {
        EXPECT_EQ(dm->GetConfigString(absent), QString()) << absent;
        EXPECT_EQ(dm->GetConfigFloat(absent), 0.0) << absent;
    }
    EXPECT_EQ(dm->tConfig.FieldByName("PNAME")->AsString(), "ORDERSPOSTFIX");

    Exec("insert into CONFIG (PNAME, PVALUE) values ('RATE', '20.5')");
    Exec("insert into CONFIG (PNAME, PVALUE) values ('WORD', 'abc')");
    dm->tConfig.Close();
    EXPECT_DOUBLE_EQ(dm->GetConfigFloat("RATE"), 20.5);
    EXPECT_THROW(dm->GetConfigFloat("WORD"), EDatabaseError);
    EXPECT_EQ(Scalar("select count(*) from CONFIG where PNAME in ('NEWKEY', 'RATE')").toInt(), 1);
    // A name longer than the column: the server's own error comes first.
    const QString tooLong = ErrorOf([&] { dm->SetConfigString(QString(40, 'K'), "x"); });
    EXPECT_NE(tooLong, "<no error>");
    EXPECT_NE(tooLong, TDataDM::ConfigWriteErrorText);

    // The write itself succeeds while the key is missing afterwards.
    Exec("create trigger CONFIG_RENAME for CONFIG active before insert or update position 9 as "
         "begin if (new.PNAME = 'LOST') then new.PNAME = 'FOUND'; end");
    dm->pFIBTransaction1.Commit();
    dm->tConfig.Close();
    dm->tConfig.Open();
    EXPECT_EQ(ErrorOf([&] { dm->SetConfigString("LOST", "x"); }), "Не удалось записать значение в таблицу Config");
    EXPECT_EQ(ErrorOf([&] { dm->SetConfigFloat("LOST", 1.5); }), TDataDM::ConfigWriteErrorText);
    EXPECT_EQ(Rows("select PVALUE from CONFIG where PNAME = 'FOUND' order by ID"), QStringList({"1.5", "x"}));
}

TEST(DataModuleHash, Md5IsLowerCaseHexOfTheUtf8Text)
{
    const char *const vectors[][2] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        // Cyrillic goes as UTF-8.
        {"пароль", "e242f36f4f95f12966da8fa2efd59992"},
    };
    for (const auto &v : vectors)
        EXPECT_EQ(TDataDM::MD5(QString::fromUtf8(v[0])), v[1]) << v[0];
}
