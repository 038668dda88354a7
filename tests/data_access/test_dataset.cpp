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

    // Edits the current row, sets one field and posts.
    void Write(const char *field, const QVariant &value)
    {
        ds.Edit();
        ds.FieldByName(field)->SetValue(value);
        ds.Post();
    }

    TestDatabase t;
    TpFIBDataSet ds;
};

} // namespace

TEST_F(DataSet, OpenFetchesOnlyTheFirstRowAndLocateFetchesOnFillingCalculatedFieldsAsRowsArrive)
{
    ds.AddCalculatedField("PRICE2", ftFloat);
    int calls = 0;
    ds.OnCalcFields = [&](TFIBDataSet *d) {
        ++calls;
        d->FieldByName("PRICE2")->SetValue(d->FieldByName("PRICE")->AsFloat() * 2);
    };
    ASSERT_FALSE(t.Tr().Active());
    ds.Open();
    EXPECT_EQ(QList<int>({ds.RecordCount(), calls, ds.FieldByName("ID")->AsInteger(), t.Tr().Active(), ds.AllFetched()}),
              QList<int>({1, 1, 1, 1, 0}));

    EXPECT_TRUE(ds.Locate("ID", 500));
    EXPECT_EQ(QList<int>({ds.RecordCount(), calls}), QList<int>({500, 500}));
    EXPECT_EQ(ds.FieldByName("name")->AsString() + " " + QString::number(ds.FieldByName("PRICE2")->AsFloat()),
              "Материал 500 1500");
    EXPECT_DOUBLE_EQ(ds.RowValue(3, ds.FieldByName("PRICE2")->Index()).toDouble(), 12.0);

    EXPECT_TRUE(ds.Locate("NAME", "материал 7", loCaseInsensitive | loPartialKey));
    EXPECT_EQ(ds.FieldByName("ID")->AsInteger(), 7);

    EXPECT_FALSE(ds.Locate("ID", 5000));
    EXPECT_EQ(QList<int>({ds.FieldByName("ID")->AsInteger(), ds.RecordCount(), ds.AllFetched()}), QList<int>({7, 1000, 1}));
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
    EXPECT_EQ(QList<int>({count, ds.RecordCount()}), QList<int>({112, 112}));

    ds.Close();
    ds.ParamByName("F_NAME").SetValue("нет такого");
    ds.Open();
    EXPECT_TRUE(ds.Active() && ds.IsEmpty() && ds.Eof() && !ds.FieldByName("ID")->Value().isValid());
    EXPECT_FALSE(ds.Locate("ID", 1));
}

TEST_F(DataSet, FieldsTrimTextAndTakeAutomaticFormatsReadOnlyAndStateErrorsUseTheirTexts)
{
    ds.Open();
    EXPECT_EQ(ds.FieldByName("CODE")->AsString(), "K1");
    ds.Next();
    EXPECT_EQ(ds.FieldByName("CODE")->Value(), QVariant(QString("")));
    EXPECT_EQ(ds.FieldByName("D")->DisplayFormat + " " + ds.FieldByName("D")->DisplayText(),
              "dd.mm.yyyy hh:nn 21.11.2026 10:30");
    EXPECT_TRUE(ds.FieldByName("PRICE")->DataType() == ftFloat && ds.FieldByName("PRICE")->AsFloat() == 3.0);
    EXPECT_EQ(ds.FindField("NOPE"), nullptr);
    EXPECT_EQ(ErrorOf([&] { ds.FieldByName("NOPE"); }), "Field 'NOPE' not found");
    const QLocale saved;
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    QStringList formatted{FormatFieldValue(1234.5, "#,##0.00"), FormatFieldValue(1234.5, "0.0")};
    QLocale::setDefault(QLocale::c());
    formatted << FormatFieldValue(1234.5, "#,##0.00") << FormatFieldValue(QVariant(), "0.00")
              << FormatFieldValue(QDateTime(QDate(2026, 1, 2), QTime(3, 4)), "dd.mm.yyyy");
    QLocale::setDefault(saved);
    EXPECT_EQ(formatted.join('|'), QString("1\u00A0234,50|1234,5|1,234.50||02.01.2026"));

    // No update statement: read only.
    QStringList errors{ErrorOf([&] { ds.Edit(); }), ErrorOf([&] { ds.FieldByName("NAME")->SetValue("x"); }),
                       ErrorOf([&] { ds.Delete(); }), ErrorOf([&] { ds.Insert(); }), ErrorOf([&] { ds.Post(); })};
    ds.Close();
    errors << ErrorOf([&] { ds.Post(); });
    EXPECT_EQ(errors.join('\n'), "Can't update. (spMatOpen)\nDataSet not in Edit or Insert mode.(spMatOpen)\n"
                                 "Can't delete from dataset. (spMatOpen)\nCan't insert into dataset. (spMatOpen)\n"
                                 "Not editing.\nCan't post because spMatOpen dataset closed.");
}

TEST_F(DataSet, PostSendsOldAndNewValuesCopiesOutputsBackAndFailedNoActionAndRefreshedPostsKeepTheirValues)
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
    EXPECT_TRUE(beforePost && ds.State() == dsBrowse);
    // The procedure's ID output arrived in the row.
    EXPECT_EQ(ds.FieldByName("ID")->AsString() + " " + ds.FieldByName("NAME")->AsString(), "1003 Новое имя");
    EXPECT_EQ(t.Scalar("select OLD_ID || ' ' || NEW_NAME from LOG").toString(), "3 Новое имя");
    EXPECT_EQ(t.Scalar("select NAME from MAT where ID = 3").toString(), "Новое имя");

    // An empty text goes as null.
    Write("NAME", "");
    EXPECT_EQ(t.Scalar("select NAME_IS_NULL from LOG where OLD_ID = 1003").toInt(), 1);
    EXPECT_TRUE(t.Tr().Active());

    // A failed post keeps the edit and the typed value.
    ds.Close();
    ds.UpdateSQL = "update MAT set PRICE = :PRICE where ID = :OLD_ID";
    ds.Open();
    ds.Edit();
    ds.FieldByName("PRICE")->SetValue("не число");
    EXPECT_THROW(ds.Post(), EFIBInterBaseError);
    EXPECT_TRUE(ds.State() == dsEdit && ds.FieldByName("PRICE")->AsString() == "не число");
    Write("PRICE", 9.5);
    EXPECT_DOUBLE_EQ(t.Scalar("select PRICE from MAT where ID = 1").toDouble(), 9.5);

    // "No Action" and a statement that changes nothing keep the value in the row only, until the next open.
    for (const char *update : {"No Action\nupdate MAT set NAME = 'x'", "update MAT set ID = :OLD_ID where ID = :OLD_ID"}) {
        ds.UpdateSQL = update;
        Write("NAME", "Только в гриде");
        EXPECT_EQ(ds.FieldByName("NAME")->AsString(), "Только в гриде") << update;
        EXPECT_EQ(t.Scalar("select NAME from MAT where ID = 1").toString(), "Материал 1") << update;
    }
    ds.Close();
    ds.Open();
    EXPECT_EQ(ds.FieldByName("NAME")->AsString(), "Материал 1");

    // A refresh statement rereads the posted row.
    ds.UpdateSQL = "update MAT set NAME = :NAME where ID = :OLD_ID";
    ds.RefreshSQL = "select NAME || ' (сохранено)' as NAME from MAT where ID = :ID";
    Write("NAME", "Абв");
    EXPECT_EQ(ds.FieldByName("NAME")->AsString(), "Абв (сохранено)");
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
    EXPECT_EQ(QString("%1 %2 %3 %4").arg(ds.CurrentIndex()).arg(value(1, "NAME").toString()).arg(value(1, "NOTE").isValid())
                  .arg(value(1, "S").toInt()), "1 Новое 0 2");
    EXPECT_EQ(value(0, "NAME").toString(), QString(37, QChar(u'ж')) + " Имя 1");
    EXPECT_EQ(value(2, "NAME").toString(), QString(111, QChar(u'ж')) + " Имя 3");
}
