// Statements, parameters, conversions and text encoding against a real embedded database.
#include "fib_encoding.h"
#include "database_test.h"

#include <QPoint>
#include <gtest/gtest.h>

namespace {

// A value as text: none as "null", moments as "dd.MM.yyyy hh:mm", other values with their type's name.
QString Shown(const QVariant &v)
{
    if (!v.isValid())
        return "null";
    if (v.typeId() == QMetaType::QDateTime)
        return v.toDateTime().toString("dd.MM.yyyy hh:mm");
    return QString("%1:%2").arg(v.typeName(), v.toString());
}

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

    // The current row, its columns joined by "|".
    QString Row()
    {
        QStringList parts;
        for (int i = 0; i < q->Fields().Count(); ++i)
            parts << Shown(q->Fields(i).AsVariant());
        return parts.join('|');
    }
    QString Select(const QString &sql)
    {
        q->SetSQLText(sql);
        q->ExecQuery();
        return q->Next() ? Row() : "<no row>";
    }

    TestDatabase t;
    std::unique_ptr<TpFIBQuery> q;
};

} // namespace

TEST_F(Query, ExecProcedureBuildsItsTextReusesThePreparedStatementAndValuesConvertByKindScaleAndSerial)
{
    q->ExecProcedure("TWICE", {21});
    EXPECT_EQ(q->SQLText() + " " + q->Fields(0).AsString(), "EXECUTE  PROCEDURE TWICE(?P0) 42");
    q->ExecProcedure("TWICE", {5});
    EXPECT_EQ(QList<int>({q->Fields(0).AsInteger(), q->PrepareCount()}), QList<int>({10, 1}));

    q->ExecProcedure("ECHO", {1, QVariant(), "x"});
    EXPECT_EQ(q->SQLText() + QString(" %1 ").arg(q->PrepareCount()) + q->FieldByName("RS").AsString(),
              "EXECUTE  PROCEDURE ECHO(?P0,?P1,?P2) 2 x");
    EXPECT_EQ(ErrorOf([&] { q->Fields(7); }), "Field No: 7");

    // Parameter values convert by the parameter's kind: a comma is a decimal point for a number; empty text is
    // null for numbers and dates only; numbers into dates are serial days.
    // Each row as RF|RD|RS|SNULL|DNULL.
    const struct { QVariantList args; const char *row; } cases[] = {
        {{"1,50", "", ""}, "double:1.5|null|QString:|int:0|int:1"},
        {{QString(), "21.11.2026", QVariant()}, "null|21.11.2026 00:00|null|int:1|int:0"},
        {{0, 0, "a"}, "double:0|30.12.1899 00:00|QString:a|int:0|int:0"},
        {{0, 46347.75, "a"}, "double:0|21.11.2026 18:00|QString:a|int:0|int:0"},
        {{true, QDateTime(QDate(2020, 2, 29), QTime(10, 30)), 7}, "double:1|29.02.2020 10:30|QString:7|int:0|int:0"},
    };
    for (const auto &c : cases) {
        q->ExecProcedure("ECHO", c.args);
        EXPECT_EQ(Row(), c.row);
    }

    // Column values decode by type and scale; moments are serial days.
    TFIBColumnMeta meta;
    meta.SQLType = SQLInt64;
    const qint64 raw = 123456;
    const char *data = reinterpret_cast<const char *>(&raw);
    QStringList decoded;
    for (int scale : {0, -2, -4, -6}) {
        meta.Scale = scale;
        const QVariant v = DecodeColumnValue(meta, data, false);
        decoded << (v.typeId() == qMetaTypeId<TFIBCurrency>() ? QString("cy:%1").arg(v.value<TFIBCurrency>().Scaled)
                                                              : Shown(v));
    }
    meta.SQLType = SQLArray;
    decoded << DecodeColumnValue(meta, data, false).toString() << Shown(DecodeColumnValue(meta, nullptr, true));
    EXPECT_EQ(decoded.join(' '), "qlonglong:123456 cy:12345600 cy:123456 double:0.123456 (Array) null");
    meta.SQLType = 999;
    EXPECT_THROW(DecodeColumnValue(meta, data, false), EFIBClientError);

    QStringList moments;
    for (double serial : {0.0, 2.0, -1.25, 45658.5})
        moments << SerialToDateTime(serial).toString("dd.MM.yyyy hh:mm");
    EXPECT_EQ(moments.join(' '), "30.12.1899 00:00 01.01.1900 00:00 29.12.1899 06:00 01.01.2025 12:00");
    for (double serial : {0.0, 1.5, 36526.0, 45658.999988426, -2.75})
        EXPECT_NEAR(DateTimeToSerial(SerialToDateTime(serial)), serial, 1e-7) << serial;
}

TEST_F(Query, ParametersAreFoundByNameIgnoringCaseDdlGoesAsUtf8EverythingElseAsWindows1251AndLongTextAsABlob)
{
    q->SetSQLText("select ID from T where NAME = :Name and ID > ?MinId or NAME = :NAME");
    q->Prepare();
    ASSERT_EQ(q->Params().Count(), 3);
    EXPECT_TRUE(!q->FindParam("nosuch") && q->FindParam("name") && q->FindParam("MINID")->Index() == 1);
    EXPECT_EQ(ErrorOf([&] { q->ParamByName("nosuch"); }), "Parameter \"nosuch\" does not exist in qryTest");
    // A name used twice takes one value everywhere.
    t.Exec("insert into T (ID, NAME) values (1, 'a')");
    q->ParamByName("name").SetValue("a");
    q->ParamByName("minid").SetValue(0);
    q->ExecQuery();
    EXPECT_EQ(q->Next() ? Row() : "<no row>", "int:1");
    EXPECT_TRUE(!q->Next() && q->Eof());

    // DDL goes as UTF-8, everything else as Windows-1251, and a long text as a blob.
    t.Exec("create exception E_RU 'Ошибка'");
    t.Exec("insert into T (ID, NAME) values (2, 'Ошибка')");
    Select("select cast(rdb$message as varchar(60) character set octets) from rdb$exceptions "
           "where rdb$exception_name = 'E_RU'");
    EXPECT_EQ(AnsiEncode(q->Fields(0).AsString()), QString("Ошибка").toUtf8());
    Select("select cast(NAME as varchar(40) character set octets), NAME from T where ID = 2");
    EXPECT_TRUE(AnsiEncode(q->Fields(0).AsString()) == AnsiEncode(QString("Ошибка")) && q->Fields(1).AsString() == "Ошибка");

    // A long text travels as a blob.
    const QString longText = QString("Текст ").repeated(7000);
    q->SetSQLText("update T set NOTE = :NOTE where ID = 2");
    q->ParamByName("NOTE").SetValue(longText);
    q->ExecQuery();
    EXPECT_EQ(Select("select NOTE from T where ID = 2"), "QString:" + longText);
}

TEST_F(Query, ResultColumnsConvertByTypeAndBadValuesRaiseLeavingTheQueryUsable)
{
    t.Exec("insert into T (ID, NAME, AMOUNT, D) values (1, 'Привет', 2.5, '21.11.2026 13:45')");
    // Dialect 1 keeps wide numerics as doubles.
    EXPECT_EQ(Select("select cast(12.345 as numeric(9,2)), cast(1.5 as numeric(18,3)), cast(2 as numeric(18,6)), "
                     "AMOUNT, D, cast(NAME as char(10)), NAME, cast(null as integer), cast(5 as smallint) from T"),
              "double:12.35|double:1.5|double:2|double:2.5|21.11.2026 13:45|QString:Привет    |QString:Привет|null|int:5");
    EXPECT_EQ(q->Fields(0).AsInteger(), 12);

    // Bad values raise and leave the query usable.
    q->SetSQLText("insert into T (ID) values (:ID)");
    q->Prepare();
    EXPECT_EQ(ErrorOf([&] { q->ParamByName("ID").SetValue(QVariant::fromValue(QPoint(1, 2))); }), "Not permitted.");
    q->ParamByName("ID").SetValue("abc");
    EXPECT_THROW(q->ExecQuery(), EFIBInterBaseError);
    EXPECT_TRUE(t.Tr().Active());
    q->ParamByName("ID").SetValue("12");
    EXPECT_NO_THROW(q->ExecQuery());

    Select("select 'abc', NAME, ID from T where ID = 12");
    EXPECT_EQ(QList<int>({q->Fields(1).AsInteger(), q->Fields(2).AsInteger()}), QList<int>({0, 12}));
    EXPECT_EQ(ErrorOf([&] { q->Fields(0).AsInteger(); }), "'abc' is not a valid integer value");
}
