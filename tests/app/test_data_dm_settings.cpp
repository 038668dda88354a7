// Settings of the CONFIG table read and written through the data module, and the password hash.
#include "data_dm_fixture.h"

#include <QCryptographicHash>

using DataModuleSettings = DataModuleTest;

TEST_F(DataModuleSettings, ReadersOpenTheTableAndFindTheKeyExactly)
{
    EXPECT_FALSE(dm->tConfig.Active());
    EXPECT_EQ(dm->GetConfigString("ORDERSNUM"), "A-");
    EXPECT_TRUE(dm->tConfig.Active());
    EXPECT_EQ(dm->tConfig.FieldByName("PNAME")->AsString(), "ORDERSNUM");
    EXPECT_EQ(dm->GetConfigString("ORDERSTEXT"), "Заказ");
    EXPECT_EQ(dm->GetConfigString("NEWROLENAME"), "Новая роль");
    // Case counts.
    EXPECT_EQ(dm->GetConfigString("ordersnum"), "");
    EXPECT_EQ(dm->GetConfigString("ORDERSNU"), "");
}

TEST_F(DataModuleSettings, AbsentKeyReadsEmptyAndZeroWithoutRaising)
{
    EXPECT_EQ(dm->GetConfigString("NOSUCHKEY"), QString());
    EXPECT_EQ(dm->GetConfigFloat("NOSUCHKEY"), 0.0);
    // The cursor stays where it was when nothing is found.
    EXPECT_EQ(dm->GetConfigString("ORDERSPOSTFIX"), "001");
    dm->GetConfigString("NOSUCHKEY");
    EXPECT_EQ(dm->tConfig.FieldByName("PNAME")->AsString(), "ORDERSPOSTFIX");
}

TEST_F(DataModuleSettings, FloatIsReadFromTheText)
{
    Exec("insert into CONFIG (PNAME, PVALUE) values ('RATE', '20.5')");
    EXPECT_DOUBLE_EQ(dm->GetConfigFloat("RATE"), 20.5);
    Exec("insert into CONFIG (PNAME, PVALUE) values ('WORD', 'abc')");
    dm->tConfig.Close();
    EXPECT_THROW(dm->GetConfigFloat("WORD"), EDatabaseError);
}

TEST_F(DataModuleSettings, SetStringUpdatesAnExistingKeyInPlace)
{
    EXPECT_EQ(dm->GetConfigString("ORDERSNUM"), "A-");
    const int id = Scalar("select ID from CONFIG where PNAME = 'ORDERSNUM'").toInt();
    dm->SetConfigString("ORDERSNUM", "Зк-");
    EXPECT_EQ(Rows("select ID, PVALUE from CONFIG where PNAME = 'ORDERSNUM'"), QStringList{QString("%1|Зк-").arg(id)});
    EXPECT_EQ(dm->GetConfigString("ORDERSNUM"), "Зк-");
    // Left on the row written.
    dm->SetConfigString("REPORTSNUM", "2-");
    EXPECT_EQ(dm->tConfig.FieldByName("PNAME")->AsString(), "REPORTSNUM");
    EXPECT_EQ(dm->tConfig.FieldByName("PVALUE")->AsString(), "2-");
}

TEST_F(DataModuleSettings, SetStringInsertsANewKey)
{
    dm->tConfig.Open();
    const int before = Scalar("select count(*) from CONFIG").toInt();
    dm->SetConfigString("NEWKEY", "значение");
    EXPECT_EQ(Scalar("select count(*) from CONFIG").toInt(), before + 1);
    EXPECT_EQ(Scalar("select PVALUE from CONFIG where PNAME = 'NEWKEY'").toString(), "значение");
    EXPECT_GT(Scalar("select ID from CONFIG where PNAME = 'NEWKEY'").toInt(), 0);
    EXPECT_EQ(dm->GetConfigString("NEWKEY"), "значение");
}

TEST_F(DataModuleSettings, SetStringNeedsTheTableOpenAlready)
{
    // Nothing has opened a dataset, so the transaction has not started either: the call fails at once.
    EXPECT_FALSE(dm->tConfig.Active());
    EXPECT_THROW(dm->SetConfigString("NEWKEY", "x"), EDatabaseError);
    dm->pFIBTransaction1.StartTransaction();
    EXPECT_EQ(Scalar("select count(*) from CONFIG where PNAME = 'NEWKEY'").toInt(), 0);
}

TEST_F(DataModuleSettings, FailedWriteRaisesTheConfigMessage)
{
    dm->tConfig.Open();
    // A name longer than the column cannot be found again after the write.
    try {
        dm->SetConfigString(QString(40, 'K'), "x");
        FAIL() << "no exception";
    } catch (const EDatabaseError &e) {
        EXPECT_NE(e.Message(), TDataDM::ConfigWriteErrorText); // the server's own error comes first
    }
    // The write itself may succeed while the key is still missing afterwards.
    Exec("create trigger CONFIG_RENAME for CONFIG active before insert or update position 9 as "
         "begin if (new.PNAME = 'LOST') then new.PNAME = 'FOUND'; end");
    dm->pFIBTransaction1.Commit();
    dm->tConfig.Close();
    dm->tConfig.Open();
    try {
        dm->SetConfigString("LOST", "x");
        FAIL() << "no exception";
    } catch (const EDatabaseError &e) {
        EXPECT_EQ(e.Message(), "Не удалось записать значение в таблицу Config");
    }
    EXPECT_EQ(Scalar("select PVALUE from CONFIG where PNAME = 'FOUND'").toString(), "x");
}

TEST_F(DataModuleSettings, SetFloatWritesRowZeroWithoutLookingUp)
{
    dm->tConfig.Open();
    dm->SetConfigFloat("RATE", 12.25);
    EXPECT_EQ(Rows("select ID, PNAME, PVALUE from CONFIG where ID = 0"), QStringList{"0|RATE|12.25"});
    EXPECT_DOUBLE_EQ(dm->GetConfigFloat("RATE"), 12.25);

    // A second key takes over the same row.
    dm->SetConfigFloat("TAX", 20);
    EXPECT_EQ(Rows("select ID, PNAME, PVALUE from CONFIG where ID = 0"), QStringList{"0|TAX|20"});
    EXPECT_EQ(dm->GetConfigString("RATE"), "");
    EXPECT_DOUBLE_EQ(dm->GetConfigFloat("TAX"), 20.0);

    // An existing key is not updated in place: a second row of that name appears.
    dm->SetConfigFloat("ORDERSPOSTFIX", 0.1);
    EXPECT_EQ(Scalar("select count(*) from CONFIG where PNAME = 'ORDERSPOSTFIX'").toInt(), 2);
    EXPECT_EQ(Scalar("select PVALUE from CONFIG where ID = 0").toString(), "0.1");
}

TEST_F(DataModuleSettings, SetFloatFailuresPassOn)
{
    // The transaction is not running yet: the procedure call fails and nothing stops the error.
    EXPECT_THROW(dm->SetConfigFloat("RATE", 1), EFIBError);
    dm->tConfig.Open();
    Exec("create trigger CONFIG_RENAME for CONFIG active before insert or update position 9 as "
         "begin if (new.PNAME = 'LOST') then new.PNAME = 'FOUND'; end");
    dm->pFIBTransaction1.Commit();
    dm->tConfig.Close();
    dm->tConfig.Open();
    try {
        dm->SetConfigFloat("LOST", 1.5);
        FAIL() << "no exception";
    } catch (const EDatabaseError &e) {
        EXPECT_EQ(e.Message(), TDataDM::ConfigWriteErrorText);
    }
}

TEST(DataModuleHash, Md5IsLowerCaseHexOfTheUtf8Text)
{
    EXPECT_EQ(TDataDM::MD5(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(TDataDM::MD5("a"), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(TDataDM::MD5("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(TDataDM::MD5("The quick brown fox jumps over the lazy dog"), "9e107d9d372bb6826bd81d3542a419d6");
    EXPECT_EQ(TDataDM::MD5("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
              "57edf4a22be3c955ac49da2e2107b67a");
    // Cyrillic goes as UTF-8: the same as hashing the bytes of "пароль" in that encoding.
    EXPECT_EQ(TDataDM::MD5("пароль"),
              QString(QCryptographicHash::hash(QByteArray("\xd0\xbf\xd0\xb0\xd1\x80\xd0\xbe\xd0\xbb\xd1\x8c"),
                                               QCryptographicHash::Md5)
                          .toHex()));
    const QString h = TDataDM::MD5("Пароль");
    EXPECT_EQ(h.size(), 32);
    EXPECT_EQ(h, h.toLower());
}
