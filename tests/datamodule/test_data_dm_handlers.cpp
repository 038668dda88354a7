// Handlers hung on the data module's datasets and its error hook.
#include "data_dm_fixture.h"
#include "database_test.h"
#include "fib_encoding.h"

#include <QDateTime>

using DataModuleHandlers = DataModuleTest;

TEST_F(DataModuleHandlers, StoreLinePostedWithoutMaterialTakesTheChosenOne)
{
    Exec("insert into MAT (ID, MATNAME, QUANTITY) values (11, 'Масло', 0)");
    Exec("insert into MAT (ID, MATNAME, QUANTITY) values (12, 'Антифриз', 0)");
    // A delivery with one line.
    Exec("insert into STOREMAT (ID, IDOTYPE) values (50, 1)");
    Exec("insert into STORE (ID, IDSTOREMAT, IDMAT, QUANTITY, PRICEBUY, PRICESELL) values (60, 50, 11, 2, 10, 15)");

    TpFIBDataSet &ds = dm->spStoreMatOpen;
    ds.ParamByName("IDSTORE").SetValue(60);
    ds.Open();
    ASSERT_EQ(ds.FieldByName("SYS_IDMAT")->AsInteger(), 11);

    // A material already there stays.
    dm->ChosenMaterialId = 12;
    ds.Edit();
    ds.FieldByName("QUANTITY")->SetValue(3);
    ds.Post();
    EXPECT_EQ(Rows("select IDMAT, QUANTITY from STORE where ID = 60"), QStringList{"11|3"});
    EXPECT_EQ(Scalar("select QUANTITY from MAT where ID = 11").toInt(), 3);

    // A row without one gets the chosen material before the statement runs.
    ds.Edit();
    ds.FieldByName("SYS_IDMAT")->Clear();
    ds.Post();
    EXPECT_EQ(ds.FieldByName("SYS_IDMAT")->AsInteger(), 12);
    EXPECT_EQ(ds.FieldByName("ID")->AsInteger(), 60); // returned by the procedure
    EXPECT_EQ(Scalar("select IDMAT from STORE where ID = 60").toInt(), 12);
    // Only that dataset has the handler.
    EXPECT_FALSE(static_cast<bool>(dm->spStoreOpen.BeforePost));
}

TEST_F(DataModuleHandlers, CompletedOrdersReportComputesWhatIsLeftToPayOthersHaveNoSuchField)
{
    Exec("insert into ORDERS (ID, CREATE_DATE, SUMORDER, SUMPAY) values (1, '2024-03-10', 1000, 300)");
    Exec("insert into ORDERS (ID, CREATE_DATE, SUMORDER, SUMPAY) values (2, '2024-03-11', 500, null)");
    Exec("insert into ORDERS (ID, CREATE_DATE, SUMORDER, SUMPAY) values (3, '2024-05-01', 1, 1)");
    TpFIBDataSet &ds = dm->dbOtchetVipZakaz;
    // What is left of each order in the period, a null payment counting as 0; the sum over all of them.
    const auto leftToPay = [&](const QDate &end) {
        ds.Close();
        ds.ParamByName("dtstart").SetValue(QDateTime(QDate(2024, 3, 1), QTime()));
        ds.ParamByName("dtend").SetValue(QDateTime(end, QTime()));
        ds.Open();
        ds.FetchAll();
        QStringList left;
        for (int row = 0; row < ds.RecordCount(); ++row)
            left << QString::number(ds.RowValue(row, ds.FieldByName("sumOplata")->Index()).toDouble());
        return left;
    };
    EXPECT_EQ(leftToPay(QDate(2024, 4, 1)), QStringList({"700", "500"}));
    EXPECT_TRUE(ds.FieldByName("sumOplata")->Calculated());
    // The window rebuilds the statement with a status chosen: the calculated field goes on working.
    ds.Close();
    ds.SetSelectSQL(ds.SelectSQL().replace("where\n", "where\nidstatus=:idstatus and\n"));
    ds.ParamByName("idstatus").SetValue(1);
    EXPECT_EQ(leftToPay(QDate(2024, 6, 1)), QStringList({"700", "500", "0"}));

    // The popularity reports share the handler and have no such field.
    Exec("insert into SERV (ID, SERVNAME, COST, HOURS) values (1, 'Замена масла', 100, 1)");
    Exec("insert into ORDSERV (IDORDER, IDSERV) values (1, 1)");
    Exec("insert into ORDSERV (IDORDER, IDSERV) values (1, 1)");
    TpFIBDataSet &services = dm->dbOtchetUslug;
    EXPECT_TRUE(static_cast<bool>(services.OnCalcFields));
    EXPECT_TRUE(static_cast<bool>(dm->dbOtchetMaterial.OnCalcFields));
    services.ParamByName("dtstart").SetValue(QDateTime(QDate(2024, 3, 1), QTime()));
    services.ParamByName("dtend").SetValue(QDateTime(QDate(2024, 4, 1), QTime()));
    services.Open();
    ASSERT_EQ(services.RecordCount(), 1);
    EXPECT_EQ(services.FieldByName("CNT")->AsInteger(), 2);
    EXPECT_DOUBLE_EQ(services.FieldByName("SUMPRICE")->AsFloat(), 200.0);
    EXPECT_EQ(services.FindField("sumOplata"), nullptr);
    dm->dbOtchetMaterial.Open();
    EXPECT_EQ(dm->dbOtchetMaterial.FindField("sumOplata"), nullptr);
}

TEST_F(DataModuleHandlers, ErrorHookRepairsTheTextOfAQueryOnly)
{
    const QString text = "Роль должна иметь название";
    const QString misread = AnsiDecode(text.toUtf8());
    ASSERT_NE(misread, text);
    bool raise = true;

    EFIBError fromQuery(-836, QString(), misread, &dm->Query);
    dm->pFibErrorHandler1FIBErrorEvent(&dm->Query, fromQuery, keException, raise);
    // The whole message is decoded again, the component's name before the text as well.
    EXPECT_EQ(fromQuery.Message(), "Query:\r\n" + text);
    EXPECT_TRUE(raise);

    EFIBError fromTransaction(-836, QString(), misread, &dm->pFIBTransaction1);
    const QString before = fromTransaction.Message();
    dm->pFibErrorHandler1FIBErrorEvent(&dm->pFIBTransaction1, fromTransaction, keException, raise);
    EXPECT_EQ(fromTransaction.Message(), before);
    EXPECT_TRUE(raise);

    EFIBError fromNobody(-836, QString(), misread, nullptr);
    dm->pFibErrorHandler1FIBErrorEvent(nullptr, fromNobody, keException, raise);
    EXPECT_EQ(fromNobody.Message(), misread);

    // The hook is in force: a procedure's refusal reaches the caller in Russian.
    dm->spRolesOpen.Open(); // starts the transaction, as windows do
    EXPECT_TRUE(ErrorOf([&] { dm->Query.ExecProcedure("spRolesActionsEmpty"); })
                    .contains("Добавление новых разрешений не предусмотрено."));
}

