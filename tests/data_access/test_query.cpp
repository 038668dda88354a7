// Statements, parameters, conversions and text encoding against a real embedded database.
#include "fib_encoding.h"
#include "test_database.h"

#include <QPoint>
#include <gtest/gtest.h>

namespace {

class Query : public ::testing::Test
{
protected:
    void SetUp() override
    {
        t.Exec("create table T (ID integer, NAME varchar(40), AMOUNT float, D date, NOTE blob sub_type 1)");
        t.Exec("create procedure TWICE (A integer) returns (R integer) as begin R = A * 2; end");
        t.Exec("create procedure ECHO (F float, D date, S varchar(20)) returns (RF float, RD date, RS varchar(20), "
               "SNULL integer, DNULL integer) as begin RF = F; RD = D; RS = S; "
               "SNULL = iif(S is null, 1, 0); DNULL = iif(D is null, 1, 0); end");
        t.Tr().StartTransaction();
        q = t.NewQuery("qryTest");
    }

    TestDatabase t;
    std::unique_ptr<TpFIBQuery> q;
};

} // namespace

TEST_F(Query, ExecProcedureBuildsItsTextAndReusesThePreparedStatement)
{
    q->ExecProcedure("TWICE", {21});
    EXPECT_EQ(q->SQLText(), "EXECUTE  PROCEDURE TWICE(?P0)");
    EXPECT_EQ(q->Fields(0).AsInteger(), 42);
    EXPECT_EQ(q->PrepareCount(), 1);

    q->ExecProcedure("TWICE", {5});
    EXPECT_EQ(q->Fields(0).AsInteger(), 10);
    EXPECT_EQ(q->PrepareCount(), 1);

    q->ExecProcedure("ECHO", {1, QVariant(), "x"});
    EXPECT_EQ(q->SQLText(), "EXECUTE  PROCEDURE ECHO(?P0,?P1,?P2)");
    EXPECT_EQ(q->PrepareCount(), 2);
    EXPECT_EQ(q->FieldByName("RS").AsString(), "x");

    EXPECT_THROW(q->Fields(7), EFIBClientError);
    try {
        q->Fields(7);
    } catch (const EFIBError &e) {
        EXPECT_EQ(e.Message(), "Field No: 7");
    }
}

TEST_F(Query, TextValuesFollowTheParameterKind)
{
    // A comma is a decimal point for a number; empty text is null for numbers and dates only.
    q->ExecProcedure("ECHO", {"1,50", "", ""});
    EXPECT_DOUBLE_EQ(q->FieldByName("RF").AsDouble(), 1.5);
    EXPECT_TRUE(q->FieldByName("RD").IsNull());
    EXPECT_EQ(q->FieldByName("DNULL").AsInteger(), 1);
    EXPECT_EQ(q->FieldByName("SNULL").AsInteger(), 0);
    EXPECT_EQ(q->FieldByName("RS").AsVariant(), QVariant(QString("")));

    q->ExecProcedure("ECHO", {QString(), "21.11.2026", QVariant()});
    EXPECT_TRUE(q->FieldByName("RF").IsNull());
    EXPECT_EQ(q->FieldByName("RD").AsDateTime(), QDateTime(QDate(2026, 11, 21), QTime(0, 0)));
    EXPECT_EQ(q->FieldByName("SNULL").AsInteger(), 1);
}

TEST_F(Query, NumbersIntoDateParametersAreSerialDays)
{
    q->ExecProcedure("ECHO", {0, 0, "a"});
    EXPECT_EQ(q->FieldByName("RD").AsDateTime(), QDateTime(QDate(1899, 12, 30), QTime(0, 0)));
    EXPECT_EQ(q->FieldByName("DNULL").AsInteger(), 0);
    q->ExecProcedure("ECHO", {0, 46347.75, "a"});
    EXPECT_EQ(q->FieldByName("RD").AsDateTime(), QDateTime(QDate(2026, 11, 21), QTime(18, 0)));
    q->ExecProcedure("ECHO", {true, QDateTime(QDate(2020, 2, 29), QTime(10, 30)), 7});
    EXPECT_DOUBLE_EQ(q->FieldByName("RF").AsDouble(), 1.0);
    EXPECT_EQ(q->FieldByName("RS").AsString(), "7");
    EXPECT_EQ(q->FieldByName("RD").AsDateTime(), QDateTime(QDate(2020, 2, 29), QTime(10, 30)));
}

TEST(ColumnValues, Int64ByScale)
{
    TFIBColumnMeta meta;
    meta.SQLType = SQLInt64;
    const qint64 raw = 123456;
    meta.Scale = 0;
    EXPECT_EQ(DecodeColumnValue(meta, reinterpret_cast<const char *>(&raw), false), QVariant(qint64(123456)));
    meta.Scale = -2;
    EXPECT_EQ(DecodeColumnValue(meta, reinterpret_cast<const char *>(&raw), false).value<TFIBCurrency>().Scaled, 12345600);
    meta.Scale = -4;
    EXPECT_EQ(DecodeColumnValue(meta, reinterpret_cast<const char *>(&raw), false).value<TFIBCurrency>().Scaled, 123456);
    meta.Scale = -6;
    EXPECT_DOUBLE_EQ(DecodeColumnValue(meta, reinterpret_cast<const char *>(&raw), false).toDouble(), 0.123456);
    meta.SQLType = SQLArray;
    EXPECT_EQ(DecodeColumnValue(meta, reinterpret_cast<const char *>(&raw), false).toString(), "(Array)");
    meta.SQLType = 999;
    EXPECT_THROW(DecodeColumnValue(meta, reinterpret_cast<const char *>(&raw), false), EFIBClientError);
    EXPECT_FALSE(DecodeColumnValue(meta, nullptr, true).isValid());
}

TEST(DateSerial, CountsDaysFromTheLastDaysOf1899)
{
    EXPECT_EQ(SerialToDateTime(0), QDateTime(QDate(1899, 12, 30), QTime(0, 0)));
    EXPECT_EQ(SerialToDateTime(2), QDateTime(QDate(1900, 1, 1), QTime(0, 0)));
    EXPECT_EQ(SerialToDateTime(-1.25), QDateTime(QDate(1899, 12, 29), QTime(6, 0)));
    EXPECT_EQ(SerialToDateTime(45658.5), QDateTime(QDate(2025, 1, 1), QTime(12, 0)));
    for (double serial : {0.0, 1.5, 36526.0, 45658.999988426, -2.75})
        EXPECT_NEAR(DateTimeToSerial(SerialToDateTime(serial)), serial, 1e-7) << serial;
}

TEST_F(Query, ParametersAreFoundByNameIgnoringCase)
{
    q->SetSQLText("select ID from T where NAME = :Name and ID > ?MinId or NAME = :NAME");
    q->Prepare();
    ASSERT_EQ(q->Params().Count(), 3);
    EXPECT_EQ(q->FindParam("nosuch"), nullptr);
    ASSERT_NE(q->FindParam("name"), nullptr);
    EXPECT_EQ(q->FindParam("MINID")->Index(), 1);
    try {
        q->ParamByName("nosuch");
        FAIL();
    } catch (const EFIBClientError &e) {
        EXPECT_EQ(e.Message(), "Parameter \"nosuch\" does not exist in qryTest");
    }
    // A name used twice takes one value everywhere.
    t.Exec("insert into T (ID, NAME) values (1, 'a')");
    q->ParamByName("name").SetValue("a");
    q->ParamByName("minid").SetValue(0);
    q->ExecQuery();
    ASSERT_TRUE(q->Next());
    EXPECT_EQ(q->Fields(0).AsInteger(), 1);
    EXPECT_FALSE(q->Next());
    EXPECT_TRUE(q->Eof());
}

TEST_F(Query, ResultColumnsConvertByType)
{
    t.Exec("insert into T (ID, NAME, AMOUNT, D) values (1, 'Привет', 2.5, '21.11.2026 13:45')");
    q->SetSQLText("select cast(12.345 as numeric(9,2)), cast(7 as numeric(18,0)), cast(1.5 as numeric(18,3)), "
                  "cast(2 as numeric(18,6)), AMOUNT, D, cast(NAME as char(10)), NAME, cast(null as integer), "
                  "cast(5 as smallint) from T");
    q->ExecQuery();
    ASSERT_TRUE(q->Next());
    EXPECT_EQ(q->Fields(0).AsVariant().typeId(), QMetaType::Double);
    EXPECT_DOUBLE_EQ(q->Fields(0).AsDouble(), 12.35);
    EXPECT_EQ(q->Fields(0).AsInteger(), 12);
    // Dialect 1 keeps wide numerics as doubles.
    EXPECT_EQ(q->Fields(2).AsVariant().typeId(), QMetaType::Double);
    EXPECT_EQ(q->Fields(3).AsVariant().typeId(), QMetaType::Double);
    EXPECT_DOUBLE_EQ(q->Fields(4).AsDouble(), 2.5);
    EXPECT_EQ(q->Fields(5).AsDateTime(), QDateTime(QDate(2026, 11, 21), QTime(13, 45)));
    EXPECT_EQ(q->Fields(6).AsString(), "Привет    ");
    EXPECT_EQ(q->Fields(7).AsString(), "Привет");
    EXPECT_TRUE(q->Fields(8).IsNull());
    EXPECT_FALSE(q->Fields(8).AsVariant().isValid());
    EXPECT_EQ(q->Fields(9).AsVariant().typeId(), QMetaType::Int);
}

TEST_F(Query, DdlGoesAsUtf8AndEverythingElseAsWindows1251)
{
    t.Exec("create exception E_RU 'Ошибка'");
    t.Exec("insert into T (ID, NAME) values (1, 'Ошибка')");
    q->SetSQLText("select cast(rdb$message as varchar(60) character set octets) from rdb$exceptions "
                  "where rdb$exception_name = 'E_RU'");
    q->ExecQuery();
    ASSERT_TRUE(q->Next());
    EXPECT_EQ(AnsiEncode(q->Fields(0).AsString()), QString("Ошибка").toUtf8());

    q->SetSQLText("select cast(NAME as varchar(40) character set octets), NAME from T where ID = 1");
    q->ExecQuery();
    ASSERT_TRUE(q->Next());
    EXPECT_EQ(AnsiEncode(q->Fields(0).AsString()), AnsiEncode(QString("Ошибка")));
    EXPECT_EQ(q->Fields(1).AsString(), "Ошибка");
}

TEST_F(Query, LongTextTravelsAsABlob)
{
    const QString longText = QString("Текст ").repeated(7000);
    q->SetSQLText("insert into T (ID, NOTE) values (:ID, :NOTE)");
    q->ParamByName("ID").SetValue(3);
    q->ParamByName("NOTE").SetValue(longText);
    q->ExecQuery();
    q->SetSQLText("select NOTE from T where ID = 3");
    q->ExecQuery();
    ASSERT_TRUE(q->Next());
    EXPECT_EQ(q->Fields(0).AsString(), longText);
}

TEST_F(Query, BadValuesRaiseAndLeaveTheQueryUsable)
{
    q->SetSQLText("insert into T (ID) values (:ID)");
    q->Prepare();
    try {
        q->ParamByName("ID").SetValue(QVariant::fromValue(QPoint(1, 2)));
        FAIL();
    } catch (const EFIBClientError &e) {
        EXPECT_EQ(e.Message(), "Not permitted.");
    }
    q->ParamByName("ID").SetValue("abc");
    EXPECT_THROW(q->ExecQuery(), EFIBInterBaseError);
    EXPECT_TRUE(t.Tr().Active());
    q->ParamByName("ID").SetValue("12");
    EXPECT_NO_THROW(q->ExecQuery());
    EXPECT_EQ(t.Scalar("select ID from T").toInt(), 12);

    q->SetSQLText("select 'abc', NAME from T");
    q->ExecQuery();
    ASSERT_TRUE(q->Next());
    EXPECT_EQ(q->Fields(1).AsInteger(), 0);
    try {
        q->Fields(0).AsInteger();
        FAIL();
    } catch (const EFIBClientError &e) {
        EXPECT_EQ(e.Message(), "'abc' is not a valid integer value");
    }
}
