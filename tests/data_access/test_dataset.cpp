// The cached dataset: lazy fetching, field objects, searching and posting through an update statement.
#include "fib_dataset.h"
#include "database_test.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

class DataSet : public ::testing::Test
{
protected:
    void SetUp() override
    {
        t.Exec("create table MAT (ID integer not null primary key, NAME varchar(40), CODE char(8), PRICE float, "
               "D date)");
        t.Exec("create table LOG (OLD_ID integer, NEW_NAME varchar(40), NAME_IS_NULL integer)");
        t.Exec("create procedure spMatOpen (F_NAME varchar(40)) returns (ID integer, NAME varchar(40), "
               "CODE char(8), PRICE float, D date) as begin for select ID, NAME, CODE, PRICE, D from MAT "
               "where NAME like :F_NAME or :F_NAME is null order by ID into :ID, :NAME, :CODE, :PRICE, :D do "
               "suspend; end");
        t.Exec("create procedure spMatEdit (OLD_ID integer, NAME varchar(40)) returns (ID integer) as begin "
               "insert into LOG values (:OLD_ID, :NAME, iif(:NAME is null, 1, 0)); "
               "update MAT set NAME = :NAME where ID = :OLD_ID; ID = OLD_ID + 1000; end");
        t.Exec("execute block as declare i integer = 1; begin while (i <= 1000) do begin "
               "insert into MAT values (:i, 'Материал ' || :i, iif(:i = 2, '        ', 'K' || :i), :i * 1.5, "
               "'21.11.2026 10:30'); i = i + 1; end end");
        t.Tr().Commit();
        ds.setObjectName("spMatOpen");
        ds.SetDatabase(&t.Db());
        ds.SetTransaction(&t.Tr());
        ds.SetSelectSQL("select * from spMatOpen(:F_NAME)");
    }

    TestDatabase t;
    TpFIBDataSet ds;
};

} // namespace

TEST_F(DataSet, OpenFetchesOnlyTheFirstRowAndLocateFetchesOn)
{
    ASSERT_FALSE(t.Tr().Active());
    ds.Open();
    EXPECT_TRUE(t.Tr().Active());
    EXPECT_EQ(ds.RecordCount(), 1);
    EXPECT_FALSE(ds.AllFetched());
    EXPECT_EQ(ds.FieldByName("ID")->AsInteger(), 1);

    EXPECT_TRUE(ds.Locate("ID", 500));
    EXPECT_EQ(ds.RecordCount(), 500);
    EXPECT_EQ(ds.FieldByName("name")->AsString(), "Материал 500");

    EXPECT_TRUE(ds.Locate("NAME", "материал 7", loCaseInsensitive | loPartialKey));
    EXPECT_EQ(ds.FieldByName("ID")->AsInteger(), 7);

    EXPECT_FALSE(ds.Locate("ID", 5000));
    EXPECT_EQ(ds.FieldByName("ID")->AsInteger(), 7);
    EXPECT_EQ(ds.RecordCount(), 1000);
    EXPECT_TRUE(ds.AllFetched());
}

TEST_F(DataSet, ParametersKeepTheirValuesAcrossCloseAndOpen)
{
    ds.ParamByName("F_NAME").SetValue("Материал 99%");
    ds.Open();
    ds.Close();
    ds.Open();
    ds.FetchAll();
    EXPECT_EQ(ds.RecordCount(), 11); // 99 and 990..999

    // Navigation walks every row once: 1, 10-19, 100-199, 1000.
    ds.Close();
    ds.ParamByName("F_NAME").SetValue("Материал 1%");
    ds.Open();
    int count = 0;
    for (ds.First(); !ds.Eof(); ds.Next())
        ++count;
    EXPECT_EQ(count, 112);
    EXPECT_EQ(ds.RecordCount(), 112);

    ds.Close();
    ds.ParamByName("F_NAME").SetValue("нет такого");
    ds.Open();
    EXPECT_TRUE(ds.Active() && ds.IsEmpty() && ds.Eof());
    EXPECT_FALSE(ds.Locate("ID", 1));
    EXPECT_FALSE(ds.FieldByName("ID")->Value().isValid());
}

TEST_F(DataSet, FieldsTrimTextAndTakeAutomaticFormats)
{
    ds.Open();
    EXPECT_EQ(ds.FieldByName("CODE")->AsString(), "K1");
    ds.Next();
    EXPECT_EQ(ds.FieldByName("CODE")->Value(), QVariant(QString("")));
    EXPECT_EQ(ds.FieldByName("D")->DisplayFormat, "dd.mm.yyyy hh:nn");
    EXPECT_EQ(ds.FieldByName("D")->DisplayText(), "21.11.2026 10:30");
    EXPECT_EQ(ds.FieldByName("PRICE")->DataType(), ftFloat);
    EXPECT_DOUBLE_EQ(ds.FieldByName("PRICE")->AsFloat(), 3.0);
    EXPECT_EQ(ds.FindField("NOPE"), nullptr);
    EXPECT_EQ(ErrorOf([&] { ds.FieldByName("NOPE"); }), "Field 'NOPE' not found");
    const QLocale saved;
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    EXPECT_EQ(FormatFieldValue(1234.5, "#,##0.00"), QString("1\u00A0234,50"));
    EXPECT_EQ(FormatFieldValue(1234.5, "0.0"), "1234,5");
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(FormatFieldValue(1234.5, "#,##0.00"), "1,234.50");
    EXPECT_EQ(FormatFieldValue(QDateTime(QDate(2026, 1, 2), QTime(3, 4)), "dd.mm.yyyy"), "02.01.2026");
    EXPECT_EQ(FormatFieldValue(QVariant(), "0.00"), "");
    QLocale::setDefault(saved);
}

TEST_F(DataSet, PostSendsOldAndNewValuesAndCopiesOutputsBack)
{
    ds.UpdateSQL = "execute procedure spMatEdit(:OLD_ID, :NEW_NAME)";
    ds.Open();
    ASSERT_TRUE(ds.Locate("ID", 3));
    bool beforePost = false;
    ds.BeforePost = [&](TFIBDataSet *) { beforePost = true; };
    ds.Edit();
    ds.FieldByName("ID")->SetValue(77);
    ds.FieldByName("NAME")->SetValue("Новое имя");
    ds.Post();
    EXPECT_TRUE(beforePost);
    EXPECT_EQ(ds.State(), dsBrowse);
    // The procedure's ID output arrived in the row.
    EXPECT_EQ(ds.FieldByName("ID")->AsInteger(), 1003);
    EXPECT_EQ(ds.FieldByName("NAME")->AsString(), "Новое имя");
    EXPECT_EQ(t.Scalar("select OLD_ID from LOG").toInt(), 3);
    EXPECT_EQ(t.Scalar("select NAME from MAT where ID = 3").toString(), "Новое имя");

    // An empty text goes as null.
    ds.Edit();
    ds.FieldByName("NAME")->SetValue("");
    ds.Post();
    EXPECT_EQ(t.Scalar("select NAME_IS_NULL from LOG where OLD_ID = 1003").toInt(), 1);
    EXPECT_TRUE(t.Tr().Active());
}

TEST_F(DataSet, FailedNoActionAndRefreshedPosts)
{
    // A failed post keeps the edit and the typed value.
    ds.UpdateSQL = "update MAT set PRICE = :PRICE where ID = :OLD_ID";
    ds.Open();
    ds.Edit();
    ds.FieldByName("PRICE")->SetValue("не число");
    EXPECT_THROW(ds.Post(), EFIBInterBaseError);
    EXPECT_EQ(ds.State(), dsEdit);
    EXPECT_EQ(ds.FieldByName("PRICE")->AsString(), "не число");
    ds.FieldByName("PRICE")->SetValue(9.5);
    ds.Post();
    EXPECT_DOUBLE_EQ(t.Scalar("select PRICE from MAT where ID = 1").toDouble(), 9.5);

    // "No Action" and a statement that changes nothing keep the value in the row only, until the next open.
    for (const char *update : {"No Action\nupdate MAT set NAME = 'x'", "update MAT set ID = :OLD_ID where ID = :OLD_ID"}) {
        ds.UpdateSQL = update;
        ds.Edit();
        ds.FieldByName("NAME")->SetValue("Только в гриде");
        ds.Post();
        EXPECT_EQ(ds.FieldByName("NAME")->AsString(), "Только в гриде") << update;
        EXPECT_EQ(t.Scalar("select NAME from MAT where ID = 1").toString(), "Материал 1") << update;
    }
    ds.Close();
    ds.Open();
    EXPECT_EQ(ds.FieldByName("NAME")->AsString(), "Материал 1");

    // A refresh statement rereads the posted row.
    ds.UpdateSQL = "update MAT set NAME = :NAME where ID = :OLD_ID";
    ds.RefreshSQL = "select NAME || ' (сохранено)' as NAME from MAT where ID = :ID";
    ds.Edit();
    ds.FieldByName("NAME")->SetValue("Абв");
    ds.Post();
    EXPECT_EQ(ds.FieldByName("NAME")->AsString(), "Абв (сохранено)");
}

TEST_F(DataSet, ReadOnlyAndStateErrorsUseTheirTexts)
{
    ds.Open();
    QStringList errors{ErrorOf([&] { ds.Edit(); }), ErrorOf([&] { ds.FieldByName("NAME")->SetValue("x"); }),
                       ErrorOf([&] { ds.Delete(); }), ErrorOf([&] { ds.Insert(); }), ErrorOf([&] { ds.Post(); })};
    ds.Close();
    errors << ErrorOf([&] { ds.Post(); });
    EXPECT_EQ(errors.join('\n'), "Can't update. (spMatOpen)\nDataSet not in Edit or Insert mode.(spMatOpen)\n"
                                 "Can't delete from dataset. (spMatOpen)\nCan't insert into dataset. (spMatOpen)\n"
                                 "Not editing.\nCan't post because spMatOpen dataset closed.");
}

TEST_F(DataSet, CalculatedFieldsAreFilledPerRowAsRowsArrive)
{
    TFIBField *doubled = ds.AddCalculatedField("PRICE2", ftFloat);
    ASSERT_NE(doubled, nullptr);
    int calls = 0;
    ds.OnCalcFields = [&](TFIBDataSet *d) {
        ++calls;
        d->FieldByName("PRICE2")->SetValue(d->FieldByName("PRICE")->AsFloat() * 2);
    };
    ds.Open();
    EXPECT_EQ(calls, 1);
    ds.Locate("ID", 10);
    EXPECT_EQ(calls, 10);
    EXPECT_DOUBLE_EQ(ds.FieldByName("PRICE2")->AsFloat(), 30.0);
    EXPECT_DOUBLE_EQ(ds.RowValue(3, ds.FieldByName("PRICE2")->Index()).toDouble(), 12.0);
}

TEST(DataSetCache, EveryKindOfValueReadsBackAfterTheCacheHasGrown)
{
    TestDatabase t;
    t.Exec("create table T (ID integer not null primary key, S smallint, AMOUNT numeric(9,2), X double precision, "
           "D date, CODE char(6), NAME varchar(2000), NOTE blob sub_type 1)");
    // Long names on 3,000 rows fill several blocks of the cache; row 2 holds a blob larger than the
    // blocks before it. Each column is null on its own rhythm.
    t.Exec("execute block as declare i integer = 1; begin while (i <= 3000) do begin "
           "insert into T values (:i, iif(mod(:i, 7) = 0, null, mod(:i, 100)), "
           "iif(mod(:i, 11) = 0, null, :i * 1.25), :i * 0.5, "
           "iif(mod(:i, 13) = 0, null, cast('01.01.2026' as date) + :i), "
           "iif(mod(:i, 17) = 0, null, 'C' || mod(:i, 1000)), "
           "iif(mod(:i, 19) = 0, null, rpad('', mod(:i * 37, 1500), 'ж') || ' Имя ' || :i), "
           "iif(:i = 2, rpad('', 10000, 'ю'), iif(mod(:i, 5) = 0, 'Заметка ' || :i, null))); "
           "i = i + 1; end end");
    t.Tr().Commit();

    TpFIBDataSet ds;
    ds.setObjectName("Cache");
    ds.SetDatabase(&t.Db());
    ds.SetTransaction(&t.Tr());
    ds.SetSelectSQL("select ID, S, AMOUNT, X, D, CODE, NAME, NOTE from T order by ID");
    ds.UpdateSQL = "update T set ID = :OLD_ID where ID = :OLD_ID";
    ds.Open();
    EXPECT_EQ(ds.RecordCount(), 1);
    ds.FetchAll();
    ASSERT_EQ(ds.RecordCount(), 3000);

    // Every value reads back from the cache as the uncached statement gives it, text without its padding.
    auto q = t.NewQuery();
    q->SetSQLText(ds.SelectSQL());
    q->ExecQuery();
    int rows = 0;
    for (; q->Next() && !::testing::Test::HasFailure(); ++rows)
        for (int f = 0; f < 8; ++f) {
            QVariant v = q->Fields(f).AsVariant();
            if (v.typeId() == QMetaType::QString)
                v = v.toString().remove(QRegularExpression(" +$"));
            EXPECT_EQ(ds.RowValue(rows, f), v) << rows << " " << f;
        }
    EXPECT_EQ(rows, 3000);
    EXPECT_EQ(ds.RowValue(1, 7).toString().size(), 10000);

    auto value = [&](int row, const char *name) { return ds.RowValue(row, ds.FieldByName(name)->Index()); };
    // A row fetched first, edited after the cache has grown: the edit lands on that row alone.
    ASSERT_TRUE(ds.Locate("ID", 2));
    ds.Edit();
    ds.FieldByName("NAME")->SetValue("Новое");
    ds.FieldByName("NOTE")->Clear();
    ds.Post();
    EXPECT_EQ(ds.CurrentIndex(), 1);
    EXPECT_EQ(value(1, "NAME").toString(), "Новое");
    EXPECT_FALSE(value(1, "NOTE").isValid());
    EXPECT_EQ(value(1, "S").toInt(), 2);
    EXPECT_EQ(value(0, "NAME").toString(), QString(37, QChar(u'ж')) + " Имя 1");
    EXPECT_EQ(value(2, "NAME").toString(), QString(111, QChar(u'ж')) + " Имя 3");

    // Reopened, the cache starts again from the first row with what the database holds.
    ds.Close();
    ds.Open();
    EXPECT_EQ(ds.RecordCount(), 1);
    EXPECT_EQ(ds.FieldByName("ID")->AsInteger(), 1);
    ASSERT_TRUE(ds.Locate("ID", 2));
    EXPECT_EQ(ds.FieldByName("NOTE")->AsString(), QString(10000, QChar(u'ю')));
    EXPECT_EQ(ds.RecordCount(), 2);
}
