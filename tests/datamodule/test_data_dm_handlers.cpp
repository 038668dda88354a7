// Handlers hung on the data module's datasets and its error hook.
#include "data_dm_fixture.h"
#include "database_test.h"
#include "fib_encoding.h"

#include <QDateTime>

using DataModuleHandlers = DataModuleTest;

TEST_F(DataModuleHandlers, StoreLinePostedWithoutMaterialTakesTheChosenOneAndTheCompletedOrdersReportComputesWhatIsLeftToPay)
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
    EXPECT_EQ(Rows("select IDMAT, QUANTITY, (select QUANTITY from MAT where ID = 11) from STORE where ID = 60"),
              QStringList{"11|3|3"});

    // A row without one gets the chosen material before the statement runs.
    ds.Edit();
    ds.FieldByName("SYS_IDMAT")->Clear();
    ds.Post();
    // The ID is returned by the procedure.
    EXPECT_EQ(ds.FieldByName("SYS_IDMAT")->AsString() + " " + ds.FieldByName("ID")->AsString(), "12 60");
    EXPECT_EQ(Scalar("select IDMAT from STORE where ID = 60").toInt(), 12);
    // Only that dataset has the handler.
    EXPECT_FALSE(static_cast<bool>(dm->spStoreOpen.BeforePost));

    // The completed orders report computes what is left to pay; the others have no such field.
    Exec("insert into ORDERS (ID, CREATE_DATE, SUMORDER, SUMPAY) values (1, '2024-03-10', 1000, 300)");
    Exec("insert into ORDERS (ID, CREATE_DATE, SUMORDER, SUMPAY) values (2, '2024-03-11', 500, null)");
    Exec("insert into ORDERS (ID, CREATE_DATE, SUMORDER, SUMPAY) values (3, '2024-05-01', 1, 1)");
    TpFIBDataSet &report = dm->dbOtchetVipZakaz;
    // What is left of each order in the period, a null payment counting as 0; the sum over all of them.
    const auto leftToPay = [&](const QDate &end) {
        report.Close();
        report.ParamByName("dtstart").SetValue(QDateTime(QDate(2024, 3, 1), QTime()));
        report.ParamByName("dtend").SetValue(QDateTime(end, QTime()));
        report.Open();
        report.FetchAll();
        QStringList left;
        for (int row = 0; row < report.RecordCount(); ++row)
            left << QString::number(report.RowValue(row, report.FieldByName("sumOplata")->Index()).toDouble());
        return left;
    };
    EXPECT_EQ(leftToPay(QDate(2024, 4, 1)), QStringList({"700", "500"}));
    EXPECT_TRUE(report.FieldByName("sumOplata")->Calculated());
    // The window rebuilds the statement with a status chosen: the calculated field goes on working.
    report.Close();
    report.SetSelectSQL(report.SelectSQL().replace("where\n", "where\nidstatus=:idstatus and\n"));
    report.ParamByName("idstatus").SetValue(1);
    EXPECT_EQ(leftToPay(QDate(2024, 6, 1)), QStringList({"700", "500", "0"}));

    // The popularity reports share the handler and have no such field.
    Exec("insert into SERV (ID, SERVNAME, COST, HOURS) values (1, 'Замена масла', 100, 1)");
    Exec("insert into ORDSERV (IDORDER, IDSERV) values (1, 1)");
    Exec("insert into ORDSERV (IDORDER, IDSERV) values (1, 1)");
    TpFIBDataSet &services = dm->dbOtchetUslug;
    EXPECT_TRUE(static_cast<bool>(services.OnCalcFields) && static_cast<bool>(dm->dbOtchetMaterial.OnCalcFields));
    services.ParamByName("dtstart").SetValue(QDateTime(QDate(2024, 3, 1), QTime()));
    services.ParamByName("dtend").SetValue(QDateTime(QDate(2024, 4, 1), QTime()));
    services.Open();
    EXPECT_EQ(QString("%1 %2 %3").arg(services.RecordCount()).arg(services.FieldByName("CNT")->AsInteger())
                  .arg(services.FieldByName("SUMPRICE")->AsFloat()), "1 2 200");
    dm->dbOtchetMaterial.Open();
    EXPECT_TRUE(!services.FindField("sumOplata") && !dm->dbOtchetMaterial.FindField("sumOplata"));
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

    for (QObject *other : {static_cast<QObject *>(&dm->pFIBTransaction1), static_cast<QObject *>(nullptr)}) {
        EFIBError error(-836, QString(), misread, other);
        const QString before = error.Message();
        dm->pFibErrorHandler1FIBErrorEvent(other, error, keException, raise);
        EXPECT_EQ(error.Message(), before);
        EXPECT_TRUE(raise);
    }

    // The hook is in force: a procedure's refusal reaches the caller in Russian.
    dm->spRolesOpen.Open(); // starts the transaction, as windows do
    EXPECT_TRUE(ErrorOf([&] { dm->Query.ExecProcedure("spRolesActionsEmpty"); })
                    .contains("Добавление новых разрешений не предусмотрено."));
}

