// Order money, stock movement and the cash journal as the triggers keep them, on a deployed database,
// driven by plain statements.
#include "database_test.h"

#include <QDate>
#include <gtest/gtest.h>

namespace {

using Changes = std::initializer_list<std::pair<const char *, const char *>>;

class SchemaMoney : public DeployedDatabaseTest
{
protected:
    // "now" for a moment within the last two minutes, else the moment itself.
    static QString Now(const QString &column)
    {
        return QStringLiteral("iif(datediff(second, %1, current_timestamp) < 120, 'now', %1)").arg(column);
    }
    // One row updated after another, each followed by what `returning` reads of it.
    static QList<Step> Updates(const QString &table, int id, const QString &returning, Changes changes)
    {
        QList<Step> steps;
        for (const auto &[set, expected] : changes)
            steps << Step{QStringLiteral("update %1 set %2 where ID = %3 returning %4").arg(table, set).arg(id).arg(returning),
                          expected};
        return steps;
    }
    static QString Line(int header, int mat, const QString &quantity, int price = 10)
    {
        return QStringLiteral("insert into STORE (IDSTOREMAT, IDMAT, QUANTITY, PRICEBUY, PRICESELL) "
                              "values (%1, %2, %3, %4, %4)")
            .arg(header).arg(mat).arg(quantity).arg(price);
    }
    static QString Today() { return QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")); }
};

const QString kNotEnough = QStringLiteral("На складе недостаточно данного материала.");
const QString kNoName = QStringLiteral("Материал должен иметь название.");
const QString kStock = QStringLiteral("select list(QUANTITY) from MAT");
const QString kMat = QStringLiteral("insert into MAT (MATNAME, COST, QUANTITY) values ('Материал', %1)");
const QString kServ = QStringLiteral("insert into SERV (SERVNAME, COST, HOURS) values ('Услуга', %1)");
const QString kOrder = QStringLiteral("insert into ORDERS (IDCUST) values (1)");
const QString kHeader = QStringLiteral("insert into STOREMAT (IDOTYPE) values (%1)");

} // namespace

TEST_F(SchemaMoney, OrdersAreNumberedStampedOnAChangeOfStateAndPaidByTheirSums)
{
    // What is sent stays.
    Expect({{"insert into ORDERS (COMMENT) values ('первый') returning ID, NUM, IDSTATUS, PAYSTATE, STATUS_DATE, " +
                 Now("CREATE_DATE"), "1|P-80001|1|1|null|now"},
            {"insert into ORDERS (NUM, IDSTATUS, PAYSTATE, CREATE_DATE) values ('A-1', 2, 3, '15.03.2020 10:30') "
             "returning ID, NUM, IDSTATUS, PAYSTATE, CREATE_DATE", "2|A-1|2|3|2020-03-15 10:30"},
            {"insert into ORDERS (ID) values (500) returning NUM", "P-80500"}, {kOrder + " returning NUM", "P-80003"}});
    // A change between two known states replaces a date sent with it; any state may follow any other.
    Expect(Updates("ORDERS", 1, "PAYSTATE, " + Now("STATUS_DATE"),
                   {{"COMMENT = 'без смены состояния'", "1|null"}, {"STATUS_DATE = '01.01.2001'", "1|01-JAN-2001"},
                    {"IDSTATUS = 6, STATUS_DATE = '01.01.2001'", "1|now"},
                    {"IDSTATUS = 6, STATUS_DATE = '01.01.2001'", "1|01-JAN-2001"}, {"IDSTATUS = null", "1|01-JAN-2001"},
                    {"IDSTATUS = 2", "1|01-JAN-2001"}, {"IDSTATUS = 1", "1|now"}}));
    // With no paid sum, or a negative one, the payment state stays whatever it is.
    Expect({{kServ.arg("1000, 1")}, {"insert into ORDSERV (IDORDER, IDSERV) values (3, 1)"},
            {"select SUMORDER, PAYSTATE from ORDERS where ID = 3", "1000|1"}});
    Expect(Updates("ORDERS", 3, "PAYSTATE", {{"PAYSTATE = 2", "2"}, {"SUMPAY = 0", "1"}, {"SUMPAY = 400", "2"},
                                             {"SUMPAY = 1000", "3"}, {"SUMPAY = 1500", "3"}, {"SUMPAY = -5, PAYSTATE = 2", "2"},
                                             {"SUMPAY = 1000", "3"}}));
    // A new line after payment makes a paid order partly paid again; nothing to pay and nothing paid counts as paid,
    // and without any payment the state stays 1.
    Expect({{kServ.arg("500, 1")}, {"insert into ORDSERV (IDORDER, IDSERV) values (3, 2)"},
            {"select SUMORDER, PAYSTATE from ORDERS where ID = 3", "1500|2"},
            {"update ORDERS set SUMORDER = 0, SUMPAY = 0 where ID = 500 returning PAYSTATE", "3"},
            {"insert into ORDERS (ID) values (501)"},
            {"update ORDERS set SUMORDER = 0 where ID = 501 returning PAYSTATE", "1"}});
}

TEST_F(SchemaMoney, LinesArePricedFromThePresentCatalogueWithTheTaxInside)
{
    const QString sum = "select SUMORDER from ORDERS where ID = %1";
    // A service line is the price of its norm hours less discount, hours 1 by default; a price or sum sent does not
    // count. Prices are not frozen: a line takes the catalogue's price at its next write. Discounts are not bounded.
    Expect({{kServ.arg("1000, 2")}, {kOrder},
            {"insert into ORDSERV (IDORDER, IDSERV, OHOURS) values (1, 1, 2.5) returning COST, SUMM, NDS, OUTNDS",
             "1000|1250|20|208.3333"},
            {"insert into ORDSERV (IDORDER, IDSERV, DISCOUNT, NDS, COST, SUMM) values (1, 1, 10, 10, 1, 1) "
             "returning OHOURS, SUMM, OUTNDS", "1|450|40.90909"},
            {"insert into ORDSERV (IDORDER) values (1) returning COST, SUMM", "0|0"}, {sum.arg(1), "1700"},
            {"update SERV set COST = 2000 where ID = 1"}, {sum.arg(1), "1700"},
            {"update ORDSERV set DISCOUNT = 20 where ID = 2 returning SUMM", "800"}, {sum.arg(1), "2050"},
            {"update ORDSERV set DISCOUNT = 100 where ID = 2"},
            {"update ORDSERV set DISCOUNT = 150 where ID = 1 returning SUMM", "-1250"}, {sum.arg(1), "-1250"},
            // A material line counts units; without a material nothing is computed, and a sum sent stays and counts.
            {kMat.arg("150, 100")}, {kOrder},
            {"insert into ORDMAT (IDORDER, IDMAT, OCNT, DISCOUNT) values (2, 1, 3, 10) returning COST, SUMM, OUTNDS",
             "150|405|67.5"},
            {"insert into ORDMAT (IDORDER, IDMAT) values (2, 1) returning ID, OCNT, SUMM", "2|1|150"},
            {"insert into ORDMAT (IDORDER, COST, SUMM) values (2, 77, 88) returning OCNT, NDS, COST, SUMM, OUTNDS",
             "1|20|77|88|null"},
            {sum.arg(2), "643"},
            // Services and materials add up; the order's own discount is not taken off again.
            {"insert into ORDSERV (IDORDER, IDSERV) values (2, 1)"}, {"update ORDERS set DISCOUNT = 50 where ID = 2"},
            {"update ORDMAT set DISCOUNT = 0 where ID = 2"}, {sum.arg(2), "1643"}});
}

TEST_F(SchemaMoney, DeletingALineLeavesOutTheSameIdOfTheOtherKindUntilTheNextWrite)
{
    // The store line goes with the material line; its quantity lands on the material numbered like the store line,
    // not on the line's own material.
    const QString sum = "select SUMORDER from ORDERS";
    Expect({{kMat.arg("10, 0")}, {kMat.arg("150, 10")}, {kServ.arg("1000, 1")}, {kServ.arg("500, 1")}, {kOrder},
            {"insert into ORDSERV (IDORDER, IDSERV) values (1, 1) returning ID", "1"},
            {"insert into ORDMAT (IDORDER, IDMAT, OCNT) values (1, 2, 2) returning ID", "1"},
            {"insert into ORDSERV (IDORDER, IDSERV) values (1, 2)"}, {sum, "1800"}, {"delete from ORDSERV where ID = 1"},
            {sum, "500"}, {"update ORDSERV set DISCOUNT = 0 where ID = 2"}, {sum, "800"},
            {"select ID from STORE where IDORDMAT = 1", "1"}, {"delete from ORDMAT where ID = 1"},
            {"select SUMORDER, (select count(*) from STORE), (select count(*) from STOREMAT where IDORDER = 1) from ORDERS",
             "500|0|1"},
            {kStock, "2,8"}});
}

TEST_F(SchemaMoney, MaterialLinesMoveStockThroughTheOrdersStoreOperation)
{
    // The first material line opens the order's operation, with the whole line's sum as the sale price, so the
    // header holds sum times count; a count change moves the difference, the header keeps its basis and the line
    // its prices. Service lines open nothing.
    const QString header = "select ID, NUM, IDOTYPE, IDCUST, SUPPORT, SUMSTORE from STOREMAT where IDORDER = %1";
    Expect({{kMat.arg("150, 10")}, {kMat.arg("20, 10")}, {"insert into CUST (CUSTNAME) values ('Смирнов')"},
            {"insert into ORDERS (IDCUST) values (2)"}, {"insert into ORDMAT (IDORDER, IDMAT, OCNT) values (1, 1, 3)"},
            {header.arg(1), "1|P-90001|2|2|Заказ P-80001 " + Today() + "|1350"},
            {"select ID, IDSTOREMAT, IDMAT, QUANTITY, PRICEBUY, PRICESELL from STORE where IDORDMAT = 1", "1|1|1|3|150|450"},
            {"insert into ORDMAT (IDORDER, IDMAT, OCNT) values (1, 2, 2)"},
            {"select list(IDSTOREMAT) from STORE where IDORDMAT = 2", "1"}, {kStock, "7,8"},
            {"update CONFIG set PVALUE = 'Наряд' where PNAME = 'ORDERSTEXT'"}, {"update ORDMAT set OCNT = 5 where ID = 1"},
            {"select QUANTITY, PRICESELL from STORE where IDORDMAT = 1", "5|450"}, {kStock, "5,8"},
            {header.arg(1), "1|P-90001|2|2|Заказ P-80001 " + Today() + "|2330"},
            {"update ORDMAT set OCNT = 1 where ID = 1"}, {kStock, "9,8"}, {kOrder}, {kServ.arg("100, 1")},
            {"insert into ORDSERV (IDORDER, IDSERV) values (2, 1)"}, {header.arg(2), ""}, {kOrder},
            {"insert into ORDMAT (IDORDER, IDMAT, OCNT) values (3, 1, 1)"},
            {header.arg(3), "2|P-90002|2|1|Наряд P-80003 " + Today() + "|150"}});

    // A blank line: a material set at the count it already had makes the header only, the first count change writes
    // the whole count; another material at the same count moves nothing and the store line stays on the old one;
    // material and count together adjust the old store line.
    const QString store = "select IDMAT, QUANTITY from STORE where IDORDMAT = 4";
    Expect({{"insert into ORDMAT (IDORDER) values (2)"}, {"select count(*) from STOREMAT where IDORDER = 2", "0"},
            {"update ORDMAT set IDMAT = 1, OCNT = 1 where ID = 4"}, {"select count(*) from STOREMAT where IDORDER = 2", "1"},
            {store, ""}, {kStock, "8,8"}, {"update ORDMAT set OCNT = 3 where ID = 4"}, {store, "1|3"}, {kStock, "5,8"},
            {"update ORDMAT set IDMAT = 2 where ID = 4 returning SUMM", "60"}, {store, "1|3"}, {kStock, "5,8"},
            {"update ORDMAT set OCNT = 4 where ID = 4"}, {store, "1|4"}, {kStock, "4,8"}});
}

TEST_F(SchemaMoney, ARefusedLineUndoesTheWholeStatement)
{
    Expect({{kMat.arg("150, 2")}, {kOrder}});
    const QString before = Counts();
    Expect({{"insert into ORDMAT (IDORDER, IDMAT, OCNT) values (1, 1, 3)", kNotEnough},
            {"select SUMORDER, (select QUANTITY from MAT) from ORDERS", "null|2"}});
    EXPECT_EQ(Counts(), before);
    Expect({{"insert into ORDMAT (IDORDER, IDMAT, OCNT) values (1, 1, 2)"},
            {"update ORDMAT set OCNT = 3 where IDORDER = 1", kNotEnough},
            {"select OCNT, (select QUANTITY from STORE), (select QUANTITY from MAT), (select SUMORDER from ORDERS) from ORDMAT",
             "2|2|0|300"},
            {"insert into MAT (MATNAME, COST, QUANTITY) values ('  ', 10, 5)"},
            {"insert into ORDMAT (IDORDER, IDMAT, OCNT) values (1, 2, 2)", kNoName}, {kStock, "0,5"},
            // The orders text is read into fifteen characters for every material line, and by service lines never.
            {"update CONFIG set PVALUE = 'Заказ-наряд №12' where PNAME = 'ORDERSTEXT'"}, {kOrder}, {kMat.arg("1, 5")},
            {"insert into ORDMAT (IDORDER, IDMAT, OCNT) values (2, 3, 1)"},
            {"select SUPPORT from STOREMAT where IDORDER = 2", "Заказ-наряд №12 P-80002 " + Today()},
            {"update CONFIG set PVALUE = 'Заказ-наряд №123' where PNAME = 'ORDERSTEXT'"},
            {"insert into ORDMAT (IDORDER) values (2)", "~string right truncation"},
            {"update ORDMAT set DISCOUNT = 5 where IDORDER = 2", "~string right truncation"},
            {"select count(*) from ORDMAT where IDORDER = 2", "1"}, {"insert into ORDSERV (IDORDER) values (2)"}});
}

TEST_F(SchemaMoney, StoreOperationsAreNumberedPaidByTheirSumAndADeletedLineFeedsTheMaterialNumberedLikeIt)
{
    Expect({{"insert into STOREMAT (IDOTYPE) values (1) returning ID, NUM, PAYSTATUS, " + Now("OPER_DATE"), "1|P-90001|1|now"},
            {"insert into STOREMAT (NUM, OPER_DATE, IDOTYPE) values ('Н-7', '01.02.2020', 1) returning NUM, OPER_DATE",
             "Н-7|2020-02-01"},
            {"insert into STOREMAT (IDOTYPE) values (2) returning NUM", "P-90003"}});
    Expect(Updates("STOREMAT", 1, "PAYSTATUS",
                   {{"SUMPAY = 50", "1"}, {"SUMSTORE = 100, SUMPAY = 0, PAYSTATUS = 3", "1"}, {"SUMPAY = 50", "2"},
                    {"SUMPAY = 100", "3"}, {"SUMPAY = 150", "3"}, {"SUMPAY = -5", "3"},
                    {"SUMSTORE = 0, SUMPAY = 0, PAYSTATUS = 1", "3"}}));
    // A physically deleted line's quantity goes, incoming or outgoing, to the material bearing the line's number;
    // with no such material nothing moves.
    Expect({{kMat.arg("50, 5")}, {kMat.arg("50, 0")}, {Line(1, 2, "10") + " returning ID", "1"},
            {"delete from STORE where ID = 1"}, {kStock, "15,10"}, {Line(3, 1, "4") + " returning ID", "2"},
            {"delete from STORE where ID = 2"}, {kStock, "11,14"}, {Line(1, 2, "1") + " returning ID", "3"},
            {"delete from STORE where ID = 3"}, {kStock, "11,15"}});
}

TEST_F(SchemaMoney, DeliveriesAddToStockAndEveryOtherTypeTakesFromIt)
{
    // Retyping a header or moving a line to another material moves nothing; the balance is whole, so a fraction
    // below one half is lost.
    Expect({{kMat.arg("50, 0")}, {kHeader.arg(1)}, {kHeader.arg(2)}, {Line(1, 1, "10")}, {Line(2, 1, "12"), kNotEnough},
            {"select count(*) from STORE where IDSTOREMAT = 2", "0"}, {kStock, "10"}, {Line(2, 1, "4")}, {kStock, "6"},
            {kHeader.arg(3)}, {kHeader.arg(4)}, {kHeader.arg("null")}, {Line(3, 1, "1")}, {Line(4, 1, "1")},
            {Line(5, 1, "1")}, {kStock, "3"}, {"update STORE set QUANTITY = 12 where IDSTOREMAT = 1"}, {kStock, "5"},
            {"update STORE set QUANTITY = 2 where IDSTOREMAT = 2"}, {kStock, "7"},
            {"update STORE set PRICEBUY = 99 where IDSTOREMAT = 1"}, {kStock, "7"},
            {"update STOREMAT set IDOTYPE = 2 where ID = 1"}, {kMat.arg("50, 0")},
            {"update STORE set IDMAT = 2 where IDSTOREMAT = 2"}, {kStock, "7,0"}, {kHeader.arg(1)}, {Line(6, 1, "0.4")},
            {kStock, "7,0"}});
}

TEST_F(SchemaMoney, SoftDeleteTakesBackTheOldQuantity)
{
    // Deleting and changing at once counts the old quantity only; a delivery whose units are gone cannot be taken
    // back.
    Expect({{kMat.arg("50, 0")}, {kHeader.arg(1)}, {kHeader.arg(2)}, {Line(1, 1, "5") + " returning ID", "1"},
            {"update STORE set DEL = 1 where ID = 1"}, {kStock, "0"}, {"update STORE set DEL = 0 where ID = 1"}, {kStock, "0"},
            {Line(1, 1, "10") + " returning ID", "2"}, {Line(2, 1, "4") + " returning ID", "3"},
            {"update STORE set DEL = 1 where ID = 3"}, {kStock, "10"}, {Line(1, 1, "3") + " returning ID", "4"},
            {"update STORE set DEL = 1, QUANTITY = 8 where ID = 4"}, {kStock, "10"}, {Line(2, 1, "10")},
            {"update STORE set DEL = 1 where ID = 2", kNotEnough},
            {"select DEL, (select QUANTITY from MAT) from STORE where ID = 2", "null|0"}});
}

TEST_F(SchemaMoney, HeaderSumCountsSoftDeletedLinesAndAMissingHeaderIsMade)
{
    // A physical delete still counts the row; the next write of a line puts the sum right. A line without a header
    // gets a new untyped one and counts as outgoing; a blank line moves nothing until its quantity is written.
    const QString sum = "select SUMSTORE from STOREMAT where ID = %1", mat2 = "select QUANTITY from MAT where ID = 2";
    Expect({{kMat.arg("50, 0")}, {kHeader.arg(1)}, {Line(1, 1, "3", 100)}, {Line(1, 1, "2", 50)}, {sum.arg(1), "400"},
            {"update STORE set DEL = 1 where ID = 1"}, {sum.arg(1), "400"}, {"delete from STORE where ID = 2"},
            {sum.arg(1), "400"}, {"update STORE set PRICEBUY = 1 where ID = 1"}, {sum.arg(1), "300"}, {kMat.arg("50, 5")},
            {"insert into STORE (IDMAT, QUANTITY, PRICESELL) values (2, 1, 10) returning IDSTOREMAT", "2"},
            {"select NUM, IDOTYPE, SUMSTORE from STOREMAT where ID = 2", "P-90002|null|10"}, {mat2, "4"}, {kHeader.arg(1)},
            {"insert into STORE (ID, IDSTOREMAT) values (10, 3)"}, {"update STORE set IDMAT = 2 where ID = 10"}, {mat2, "4"},
            {"update STORE set QUANTITY = 6 where ID = 10"}, {mat2, "10"}});
}

TEST_F(SchemaMoney, MaterialsNeedANameAndANonNegativeBalance)
{
    // A null balance counts as 0; even a move to another material at the same quantity writes that material.
    Expect({{"insert into MAT (MATNAME, COST, QUANTITY) values ('   ', 10, 5)"},
            {"update MAT set COST = 1 where ID = 1", kNoName}, {"insert into MAT (COST) values (1)"},
            {"update MAT set COST = 2 where ID = 2", kNoName}, {kHeader.arg(1)}, {Line(1, 1, "1"), kNoName},
            {kMat.arg("10, null")}, {"update MAT set QUANTITY = -1 where ID = 3", kNotEnough},
            {"update MAT set COST = 11 where ID = 3"}, {Line(1, 3, "3")},
            {"select QUANTITY from MAT order by ID", "5; null; 3"}, {"update STORE set IDMAT = 1 where IDMAT = 3", kNoName}});
}

TEST_F(SchemaMoney, PaymentsAndPayoutsAreNumberedStampedAndNameTheirObject)
{
    // The text follows the object only when the payment is written again, and so does the date. Payouts are
    // numbered and dated on insert only.
    const QString pay = "insert into PAY (PURPOSE, IDOBJECT, SUMM) values (%1) returning ID, PAYNUM, OBJTEXT";
    Expect({{kOrder}, {kHeader.arg(1)},
            {"insert into PAY (PURPOSE, IDOBJECT, SUMM, PAYDATE, OBJTEXT) values (1, 1, 100, '01.01.2001', 'x') "
             "returning ID, PAYNUM, OBJTEXT, " + Now("PAYDATE"), "1|PAY-10001|P-80001|now"},
            {pay.arg("2, 1, 50"), "2|PAY-10002|P-90001"},
            {"insert into PAY (PAYNUM, OBJTEXT) values ('К-1', 'x') returning PAYNUM, OBJTEXT", "К-1|null"},
            {pay.arg("1, 999, 10"), "4|PAY-10004|null"}, {"update ORDERS set NUM = 'P-1' where ID = 1"},
            {"select OBJTEXT from PAY where ID = 1", "P-80001"},
            {"update PAY set PAYDATE = '01.01.2001' where ID = 1 returning OBJTEXT, " + Now("PAYDATE"), "P-1|now"},
            {"insert into EMPLS (EMPLNAME) values ('Соколов')"},
            {"insert into SALARY (IDEMPL, SUMM, PAY_DATE) values (1, 5000, '01.01.2001') returning ID, PAYNUM, " +
                 Now("PAY_DATE"), "1|SAL-20001|now"},
            {"insert into SALARY (IDEMPL, SUMM, PAYNUM) values (1, 1, 'S-5') returning PAYNUM", "S-5"},
            {"insert into SALARY (SUMM) values (2) returning PAYNUM", "SAL-20003"},
            {"update SALARY set PAY_DATE = '01.01.2001', PAYNUM = 'SAL-1' where ID = 1 returning PAYNUM, " + Now("PAY_DATE"),
             "SAL-1|01-JAN-2001"}});
}

TEST_F(SchemaMoney, PaymentsKeepThePaidSumOfTheirObjectEvenWhenMarkedDeleted)
{
    const QString paid = "select SUMPAY, PAYSTATE from ORDERS where ID = %1";
    const QString pay = "insert into PAY (PURPOSE, IDOBJECT, SUMM) values (%1)";
    const QString store = "select SUMPAY, PAYSTATUS from STOREMAT";
    Expect({{kServ.arg("150, 1")}, {kOrder}, {"insert into ORDSERV (IDORDER, IDSERV) values (1, 1)"},
            {"insert into PAY (SUMM) values (null) returning PURPOSE", "null"}, {paid.arg(1), "null|1"},
            {pay.arg("1, 1, 100")}, {paid.arg(1), "100|2"}, {pay.arg("1, 1, 100")}, {"update PAY set DEL = 1 where ID = 3"},
            {paid.arg(1), "200|3"},
            // Moving a payment recounts only the new object; a physical delete recounts the others, never to null.
            {kOrder}, {"update PAY set IDOBJECT = 2 where ID = 2"}, {paid.arg(1), "200|3"}, {paid.arg(2), "100|1"},
            {"delete from PAY where ID = 3"}, {paid.arg(1), "0|1"},
            // A payment with no amount writes a null paid sum, which leaves the state alone.
            {kOrder}, {"insert into ORDSERV (IDORDER, IDSERV) values (3, 1)"}, {"update ORDERS set PAYSTATE = 2 where ID = 3"},
            {pay.arg("1, 3, null")}, {paid.arg(3), "null|2"},
            // Store payments move the operation's paid sum and status, never the order of the same number.
            {"insert into STOREMAT (ID, IDOTYPE) values (3, 1)"},
            {"insert into STORE (IDSTOREMAT, QUANTITY, PRICESELL) values (3, 3, 100)"}, {pay.arg("2, 3, 100")},
            {store, "100|2"}, {pay.arg("2, 3, 250") + " returning ID", "6"}, {store, "350|3"}, {pay.arg("1, 3, 30")},
            {store, "350|3"}, {"delete from PAY where ID = 6"},
            {"select SUMPAY, PAYSTATUS, (select SUMPAY from ORDERS where ID = 3) from STOREMAT", "100|2|30"}});
}
