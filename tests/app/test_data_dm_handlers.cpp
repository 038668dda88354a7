// Handlers hung on the data module's datasets and its error hook.
#include "data_dm_fixture.h"
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
    const int line = 60;

    TpFIBDataSet &ds = dm->spStoreMatOpen;
    ds.ParamByName("IDSTORE").SetValue(line);
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
}

TEST_F(DataModuleHandlers, StoreLineBeforePostRunsOnlyOnItsDataset)
{
    EXPECT_TRUE(static_cast<bool>(dm->spStoreMatOpen.BeforePost));
    EXPECT_FALSE(static_cast<bool>(dm->spStoreOpen.BeforePost));
    EXPECT_FALSE(static_cast<bool>(dm->spMatOpen.BeforePost));
}

TEST_F(DataModuleHandlers, CompletedOrdersReportComputesWhatIsLeftToPay)
{
    Exec("insert into ORDERS (ID, CREATE_DATE, SUMORDER, SUMPAY) values (1, '2024-03-10', 1000, 300)");
    Exec("insert into ORDERS (ID, CREATE_DATE, SUMORDER, SUMPAY) values (2, '2024-03-11', 500, null)");
    Exec("insert into ORDERS (ID, CREATE_DATE, SUMORDER, SUMPAY) values (3, '2024-05-01', 1, 1)");

    TpFIBDataSet &ds = dm->dbOtchetVipZakaz;
    ds.ParamByName("dtstart").SetValue(QDateTime(QDate(2024, 3, 1), QTime()));
    ds.ParamByName("dtend").SetValue(QDateTime(QDate(2024, 4, 1), QTime()));
    ds.Open();
    ds.FetchAll();
    ASSERT_EQ(ds.RecordCount(), 2);
    QMap<int, double> left;
    for (int row = 0; row < ds.RecordCount(); ++row) {
        ds.MoveTo(row);
        ASSERT_NE(ds.FindField("sumOplata"), nullptr);
        EXPECT_TRUE(ds.FieldByName("sumOplata")->Calculated());
        left[ds.FieldByName("ID")->AsInteger()] = ds.FieldByName("sumOplata")->AsFloat();
    }
    EXPECT_DOUBLE_EQ(left[1], 700.0);
    EXPECT_DOUBLE_EQ(left[2], 500.0); // a null payment counts as 0
    EXPECT_NE(ds.FindField("STATENAME"), nullptr);
    EXPECT_NE(ds.FindField("CUSTNAME"), nullptr);

    // The window rebuilds the statement with a status chosen: the calculated field goes on working.
    ds.Close();
    ds.SetSelectSQL(ds.SelectSQL().replace("where\n", "where\nidstatus=:idstatus and\n"));
    ds.ParamByName("idstatus").SetValue(1);
    ds.ParamByName("dtstart").SetValue(QDateTime(QDate(2024, 3, 1), QTime()));
    ds.ParamByName("dtend").SetValue(QDateTime(QDate(2024, 6, 1), QTime()));
    ds.Open();
    ds.FetchAll();
    ASSERT_EQ(ds.RecordCount(), 3);
    double total = 0;
    for (int row = 0; row < ds.RecordCount(); ++row)
        total += ds.RowValue(row, ds.FieldByName("sumOplata")->Index()).toDouble();
    EXPECT_DOUBLE_EQ(total, 1200.0);
}

TEST_F(DataModuleHandlers, PopularityReportsShareTheHandlerWithoutCalculatedFields)
{
    Exec("insert into SERV (ID, SERVNAME, COST, HOURS) values (1, 'Замена масла', 100, 1)");
    Exec("insert into ORDERS (ID, CREATE_DATE) values (1, '2024-03-10')");
    Exec("insert into ORDSERV (IDORDER, IDSERV) values (1, 1)");
    Exec("insert into ORDSERV (IDORDER, IDSERV) values (1, 1)");

    EXPECT_TRUE(static_cast<bool>(dm->dbOtchetUslug.OnCalcFields));
    EXPECT_TRUE(static_cast<bool>(dm->dbOtchetMaterial.OnCalcFields));
    TpFIBDataSet &ds = dm->dbOtchetUslug;
    ds.ParamByName("dtstart").SetValue(QDateTime(QDate(2024, 3, 1), QTime()));
    ds.ParamByName("dtend").SetValue(QDateTime(QDate(2024, 4, 1), QTime()));
    ds.Open();
    ASSERT_EQ(ds.RecordCount(), 1);
    EXPECT_EQ(ds.FieldByName("SERVNAME")->AsString(), "Замена масла");
    EXPECT_EQ(ds.FieldByName("CNT")->AsInteger(), 2);
    EXPECT_DOUBLE_EQ(ds.FieldByName("SUMPRICE")->AsFloat(), 200.0);
    EXPECT_EQ(ds.FindField("sumOplata"), nullptr);

    dm->dbOtchetMaterial.Open();
    EXPECT_TRUE(dm->dbOtchetMaterial.IsEmpty());
    EXPECT_NE(dm->dbOtchetMaterial.FindField("MATNAME"), nullptr);
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
}

TEST_F(DataModuleHandlers, ProcedureRefusalReachesTheCallerInRussian)
{
    dm->spRolesOpen.Open(); // starts the transaction, as windows do
    try {
        dm->Query.ExecProcedure("spRolesActionsEmpty");
        FAIL() << "no exception";
    } catch (const EFIBError &e) {
        EXPECT_TRUE(e.Message().contains("Добавление новых разрешений не предусмотрено.")) << e.Message().toStdString();
    }
}
