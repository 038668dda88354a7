// Order money, stock movement and the cash journal as the triggers keep them, on a deployed database,
// driven by plain statements.
#include "database_test.h"

#include <QDate>
#include <gtest/gtest.h>

namespace {

class SchemaMoney : public DeployedDatabaseTest
{
protected:
    void Exec(const QString &sql) { db.Exec(sql); }
    int Int(const QString &sql) { return db.Scalar(sql).toInt(); }

    QVariant Get(const QString &table, int id, const QString &column)
    {
        return db.Scalar(QStringLiteral("select %1 from %2 where ID = %3").arg(column, table).arg(id));
    }
    double Num(const QString &table, int id, const QString &column) { return Get(table, id, column).toDouble(); }
    int Whole(const QString &table, int id, const QString &column) { return Get(table, id, column).toInt(); }
    QString Text(const QString &table, int id, const QString &column) { return Get(table, id, column).toString(); }
    bool IsNull(const QString &table, int id, const QString &column) { return Get(table, id, column).isNull(); }
    void Set(const QString &table, int id, const QString &assignments)
    {
        db.Exec(QStringLiteral("update %1 set %2 where ID = %3").arg(table, assignments).arg(id));
    }

    // Seconds between a stored moment and now.
    double Age(const QString &table, int id, const QString &column)
    {
        return Get(table, id, QStringLiteral("abs(datediff(second, %1, current_timestamp))").arg(column)).toDouble();
    }

    int NewMat(const QString &name, double cost, const QString &quantity)
    {
        return Insert(QStringLiteral("insert into MAT (MATNAME, COST, QUANTITY) values ('%1', %2, %3)")
                          .arg(name).arg(cost).arg(quantity));
    }
    int NewMat(double cost, int quantity) { return NewMat(QStringLiteral("Материал"), cost, QString::number(quantity)); }
    int NewServ(double cost, double hours)
    {
        return Insert(QStringLiteral("insert into SERV (SERVNAME, COST, HOURS) values ('Услуга', %1, %2)").arg(cost).arg(hours));
    }
    int NewOrder(int cust = 1) { return Insert(QStringLiteral("insert into ORDERS (IDCUST) values (%1)").arg(cust)); }
    int ServLine(int order, int serv, const QString &hours = QStringLiteral("null"))
    {
        return Insert(QStringLiteral("insert into ORDSERV (IDORDER, IDSERV, OHOURS) values (%1, %2, %3)")
                          .arg(order).arg(serv).arg(hours));
    }
    QString MatLineSql(int order, int mat, int count)
    {
        return QStringLiteral("insert into ORDMAT (IDORDER, IDMAT, OCNT) values (%1, %2, %3)").arg(order).arg(mat).arg(count);
    }
    int MatLine(int order, int mat, int count) { return Insert(MatLineSql(order, mat, count)); }
    int Header(const QString &type) { return Insert(QStringLiteral("insert into STOREMAT (IDOTYPE) values (%1)").arg(type)); }
    int Header(int type) { return Header(QString::number(type)); }
    QString LineSql(int header, int mat, double quantity, double price = 10)
    {
        return QStringLiteral("insert into STORE (IDSTOREMAT, IDMAT, QUANTITY, PRICEBUY, PRICESELL) values (%1, %2, %3, %4, %4)")
            .arg(header).arg(mat).arg(quantity).arg(price);
    }
    int Line(int header, int mat, double quantity, double price = 10) { return Insert(LineSql(header, mat, quantity, price)); }
    int Stock(int mat) { return Whole("MAT", mat, "QUANTITY"); }
    int OrdersHeader(int order) { return Int(QStringLiteral("select ID from STOREMAT where IDORDER = %1").arg(order)); }
    int HeadersOf(int order) { return Int(QStringLiteral("select count(*) from STOREMAT where IDORDER = %1").arg(order)); }
    int StoreLineOf(int ordMat) { return Int(QStringLiteral("select ID from STORE where IDORDMAT = %1").arg(ordMat)); }
    int StoreLinesOf(int ordMat) { return Int(QStringLiteral("select count(*) from STORE where IDORDMAT = %1").arg(ordMat)); }
    int Pay(int purpose, int object, const QString &sum)
    {
        return Insert(QStringLiteral("insert into PAY (PURPOSE, IDOBJECT, SUMM) values (%1, %2, %3)")
                          .arg(purpose).arg(object).arg(sum));
    }

    static QString Today() { return QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")); }
};

class SchemaOrders : public SchemaMoney {};
class SchemaStore : public SchemaMoney {};
class SchemaCash : public SchemaMoney {};

} // namespace

TEST_F(SchemaOrders, NewOrdersAreNumberedFromTheirIdAndStartNewAndUnpaid)
{
    const int first = Insert("insert into ORDERS (COMMENT) values ('первый')");
    EXPECT_EQ(first, 1);
    EXPECT_EQ(Text("ORDERS", first, "NUM || ' ' || IDSTATUS || ' ' || PAYSTATE"), "P-80001 1 1");
    EXPECT_LT(Age("ORDERS", first, "CREATE_DATE"), 120);
    EXPECT_TRUE(IsNull("ORDERS", first, "STATUS_DATE"));

    // What is sent stays.
    const int given = Insert("insert into ORDERS (NUM, IDSTATUS, PAYSTATE, CREATE_DATE) "
                             "values ('A-1', 2, 3, '15.03.2020 10:30')");
    EXPECT_EQ(Text("ORDERS", given, "NUM || ' ' || IDSTATUS || ' ' || PAYSTATE"), "A-1 2 3");
    EXPECT_EQ(Get("ORDERS", given, "CREATE_DATE").toDateTime(), QDateTime(QDate(2020, 3, 15), QTime(10, 30)));

    EXPECT_EQ(Text("ORDERS", Insert("insert into ORDERS (ID) values (500)"), "NUM"), "P-80500");
    EXPECT_EQ(Text("ORDERS", NewOrder(), "NUM"), "P-80003");
}

TEST_F(SchemaOrders, StatusDateIsStampedByAChangeOfStateOnly)
{
    const int o = NewOrder();
    Set("ORDERS", o, "COMMENT = 'без смены состояния'");
    EXPECT_TRUE(IsNull("ORDERS", o, "STATUS_DATE"));

    // A change between two known states replaces a date sent with it; any state may follow any other.
    const std::pair<const char *, bool> steps[] = {
        {"STATUS_DATE = '01.01.2001'", false}, {"IDSTATUS = 6, STATUS_DATE = '01.01.2001'", true},
        {"IDSTATUS = 6, STATUS_DATE = '01.01.2001'", false}, {"IDSTATUS = null", false},
        {"IDSTATUS = 2", false}, {"IDSTATUS = 1", true}};
    for (const auto &[assignment, stamped] : steps) {
        Set("ORDERS", o, assignment);
        EXPECT_EQ(Age("ORDERS", o, "STATUS_DATE") < 120, stamped) << assignment;
    }
    EXPECT_EQ(Whole("ORDERS", o, "PAYSTATE"), 1);
}

TEST_F(SchemaOrders, ServiceLineIsThePriceOfItsNormHoursLessDiscountWithTheTaxInside)
{
    const int s = NewServ(1000, 2);
    const int o = NewOrder();
    const int l1 = ServLine(o, s, "2.5");
    EXPECT_NEAR(Num("ORDSERV", l1, "COST"), 1000, 1e-3);
    EXPECT_NEAR(Num("ORDSERV", l1, "SUMM"), 1250, 1e-3);
    EXPECT_NEAR(Num("ORDSERV", l1, "NDS"), 20, 1e-6);
    EXPECT_NEAR(Num("ORDSERV", l1, "OUTNDS"), 1250.0 * 20 / 120, 1e-3);

    // Hours default to 1; a price or sum sent by the client does not count.
    const int l2 = Insert(QStringLiteral("insert into ORDSERV (IDORDER, IDSERV, DISCOUNT, NDS, COST, SUMM) "
                                         "values (%1, %2, 10, 10, 1, 1)").arg(o).arg(s));
    EXPECT_NEAR(Num("ORDSERV", l2, "OHOURS"), 1, 1e-6);
    EXPECT_NEAR(Num("ORDSERV", l2, "SUMM"), 450, 1e-3);
    EXPECT_NEAR(Num("ORDSERV", l2, "OUTNDS"), 450.0 * 10 / 110, 1e-3);
    const int none = Insert(QStringLiteral("insert into ORDSERV (IDORDER) values (%1)").arg(o));
    EXPECT_NEAR(Num("ORDSERV", none, "COST") + Num("ORDSERV", none, "SUMM"), 0, 1e-6);
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 1700, 1e-3);

    // Prices are not frozen: a line takes the catalogue's price at its next write.
    Set("SERV", s, "COST = 2000");
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 1700, 1e-3);
    Set("ORDSERV", l2, "DISCOUNT = 20");
    EXPECT_NEAR(Num("ORDSERV", l2, "SUMM"), 800, 1e-3);
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 2050, 1e-3);

    // Discounts are not bounded.
    Set("ORDSERV", l2, "DISCOUNT = 100");
    Set("ORDSERV", l1, "DISCOUNT = 150");
    EXPECT_NEAR(Num("ORDSERV", l1, "SUMM"), -1250, 1e-3);
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), -1250, 1e-3);
}

TEST_F(SchemaOrders, MaterialLineCountsUnitsAndABlankLineKeepsWhatWasSent)
{
    const int m = NewMat(150, 100);
    const int o = NewOrder();
    const int l1 = Insert(QStringLiteral("insert into ORDMAT (IDORDER, IDMAT, OCNT, DISCOUNT) values (%1, %2, 3, 10)")
                              .arg(o).arg(m));
    EXPECT_NEAR(Num("ORDMAT", l1, "COST"), 150, 1e-3);
    EXPECT_NEAR(Num("ORDMAT", l1, "SUMM"), 405, 1e-3);
    EXPECT_NEAR(Num("ORDMAT", l1, "OUTNDS"), 67.5, 1e-3);
    const int l2 = Insert(QStringLiteral("insert into ORDMAT (IDORDER, IDMAT) values (%1, %2)").arg(o).arg(m));
    EXPECT_EQ(Whole("ORDMAT", l2, "OCNT"), 1);
    EXPECT_NEAR(Num("ORDMAT", l2, "SUMM"), 150, 1e-3);

    // Without a material nothing is computed, and a sum sent stays and counts.
    const int blank = Insert(QStringLiteral("insert into ORDMAT (IDORDER, COST, SUMM) values (%1, 77, 88)").arg(o));
    EXPECT_EQ(Text("ORDMAT", blank, "OCNT || ' ' || NDS || ' ' || COST || ' ' || SUMM"), "1 20.000000 77.000000 88.000000");
    EXPECT_TRUE(IsNull("ORDMAT", blank, "OUTNDS"));
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 643, 1e-3);

    // Services and materials add up; the order's own discount is not taken off again.
    ServLine(o, NewServ(1000, 1));
    Set("ORDERS", o, "DISCOUNT = 50");
    Set("ORDMAT", l2, "DISCOUNT = 0");
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 1643, 1e-3);
}

TEST_F(SchemaOrders, PaymentStateComparesThePaidSumWithTheOrdersSum)
{
    const int o = NewOrder();
    ServLine(o, NewServ(1000, 1));
    EXPECT_EQ(Whole("ORDERS", o, "PAYSTATE"), 1);
    // With no paid sum, or a negative one, the state stays whatever it is.
    const std::pair<const char *, int> steps[] = {
        {"PAYSTATE = 2", 2}, {"SUMPAY = 0", 1},    {"SUMPAY = 400", 2}, {"SUMPAY = 1000", 3},
        {"SUMPAY = 1500", 3}, {"SUMPAY = -5, PAYSTATE = 2", 2}, {"SUMPAY = 1000", 3}};
    for (const auto &[assignment, state] : steps) {
        Set("ORDERS", o, assignment);
        EXPECT_EQ(Whole("ORDERS", o, "PAYSTATE"), state) << assignment;
    }
    // A new line after payment makes a paid order partly paid again.
    ServLine(o, NewServ(500, 1));
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 1500, 1e-3);
    EXPECT_EQ(Whole("ORDERS", o, "PAYSTATE"), 2);

    // Nothing to pay and nothing paid counts as paid; without any payment the state stays 1.
    const int empty = NewOrder();
    Set("ORDERS", empty, "SUMORDER = 0, SUMPAY = 0");
    EXPECT_EQ(Whole("ORDERS", empty, "PAYSTATE"), 3);
    const int unpaid = NewOrder();
    Set("ORDERS", unpaid, "SUMORDER = 0");
    EXPECT_EQ(Whole("ORDERS", unpaid, "PAYSTATE"), 1);
}

TEST_F(SchemaOrders, DeletingALineLeavesOutTheSameIdOfTheOtherKindUntilTheNextWrite)
{
    const int other = NewMat(10, 0);
    const int m = NewMat(150, 10);
    const int o = NewOrder();
    const int serv = ServLine(o, NewServ(1000, 1));
    const int mat = MatLine(o, m, 2);
    const int serv2 = ServLine(o, NewServ(500, 1));
    ASSERT_EQ(serv, mat);
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 1800, 1e-3);

    Exec(QStringLiteral("delete from ORDSERV where ID = %1").arg(serv));
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 500, 1e-3);
    Set("ORDSERV", serv2, "DISCOUNT = 0");
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 800, 1e-3);

    // The store line goes with the material line; its quantity lands on the material numbered like
    // the store line, not on the line's own material.
    ASSERT_EQ(StoreLineOf(mat), other);
    Exec(QStringLiteral("delete from ORDMAT where ID = %1").arg(mat));
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 500, 1e-3);
    EXPECT_EQ(StoreLinesOf(mat), 0);
    EXPECT_EQ(HeadersOf(o), 1);
    EXPECT_EQ(Stock(m), 8);
    EXPECT_EQ(Stock(other), 2);
}

TEST_F(SchemaOrders, FirstMaterialLineOpensTheOrdersStoreOperation)
{
    const int cust = Insert("insert into CUST (CUSTNAME) values ('Смирнов')");
    const int o = NewOrder(cust);
    const int m = NewMat(150, 10);
    const int m2 = NewMat(20, 10);
    const int l = MatLine(o, m, 3);

    ASSERT_EQ(HeadersOf(o), 1);
    const int h = OrdersHeader(o);
    EXPECT_EQ(Text("STOREMAT", h, "NUM || ' ' || IDOTYPE || ' ' || IDCUST"), QStringLiteral("P-90001 2 %1").arg(cust));
    EXPECT_EQ(Text("STOREMAT", h, "SUPPORT"), "Заказ P-80001 " + Today());
    ASSERT_EQ(StoreLinesOf(l), 1);
    const int sl = StoreLineOf(l);
    EXPECT_EQ(Whole("STORE", sl, "IDSTOREMAT"), h);
    EXPECT_EQ(Whole("STORE", sl, "IDMAT"), m);
    EXPECT_NEAR(Num("STORE", sl, "QUANTITY"), 3, 1e-6);
    EXPECT_NEAR(Num("STORE", sl, "PRICEBUY"), 150, 1e-3);
    // The whole line's sum as the sale price, so the header holds sum times count.
    EXPECT_NEAR(Num("STORE", sl, "PRICESELL"), 450, 1e-3);
    EXPECT_NEAR(Num("STOREMAT", h, "SUMSTORE"), 1350, 1e-3);
    EXPECT_EQ(Stock(m), 7);

    const int l2 = MatLine(o, m2, 2);
    EXPECT_EQ(HeadersOf(o), 1);
    EXPECT_EQ(Whole("STORE", StoreLineOf(l2), "IDSTOREMAT"), h);
    EXPECT_EQ(Stock(m2), 8);

    // A count change moves the difference; the header keeps its basis and the line its prices.
    Exec("update CONFIG set PVALUE = 'Наряд' where PNAME = 'ORDERSTEXT'");
    Set("ORDMAT", l, "OCNT = 5");
    EXPECT_NEAR(Num("STORE", sl, "QUANTITY"), 5, 1e-6);
    EXPECT_NEAR(Num("STORE", sl, "PRICESELL"), 450, 1e-3);
    EXPECT_EQ(Stock(m), 5);
    EXPECT_EQ(Text("STOREMAT", h, "SUPPORT"), "Заказ P-80001 " + Today());
    EXPECT_NEAR(Num("STOREMAT", h, "SUMSTORE"), 450 * 5 + 40 * 2, 1e-2);
    Set("ORDMAT", l, "OCNT = 1");
    EXPECT_EQ(Stock(m), 9);

    const int servicesOnly = NewOrder();
    ServLine(servicesOnly, NewServ(100, 1));
    EXPECT_EQ(HeadersOf(servicesOnly), 0);
    const int next = NewOrder();
    MatLine(next, m, 1);
    EXPECT_EQ(Text("STOREMAT", OrdersHeader(next), "NUM || ' ' || SUPPORT"),
              "P-90002 Наряд " + Text("ORDERS", next, "NUM") + " " + Today());
}

TEST_F(SchemaOrders, ABlankMaterialLineMovesStockOnlyWhenItsCountChanges)
{
    const int m = NewMat(150, 10);
    const int m2 = NewMat(20, 10);
    const int o = NewOrder();
    const int l = Insert(QStringLiteral("insert into ORDMAT (IDORDER) values (%1)").arg(o));
    EXPECT_EQ(HeadersOf(o), 0);

    // Material set at the count it already had: the header only.
    Set("ORDMAT", l, QStringLiteral("IDMAT = %1, OCNT = 1").arg(m));
    EXPECT_EQ(HeadersOf(o), 1);
    EXPECT_EQ(StoreLinesOf(l), 0);
    EXPECT_EQ(Stock(m), 10);
    // The first count change writes the whole count.
    Set("ORDMAT", l, "OCNT = 3");
    EXPECT_NEAR(Num("STORE", StoreLineOf(l), "QUANTITY"), 3, 1e-6);
    EXPECT_EQ(Stock(m), 7);

    // Another material at the same count moves nothing; the store line stays on the old one.
    Set("ORDMAT", l, QStringLiteral("IDMAT = %1").arg(m2));
    EXPECT_NEAR(Num("ORDMAT", l, "SUMM"), 60, 1e-3);
    EXPECT_EQ(Whole("STORE", StoreLineOf(l), "IDMAT"), m);
    EXPECT_EQ(Stock(m2), 10);
    // Material and count together adjust the old store line.
    Set("ORDMAT", l, "OCNT = 4");
    EXPECT_EQ(Whole("STORE", StoreLineOf(l), "IDMAT"), m);
    EXPECT_NEAR(Num("STORE", StoreLineOf(l), "QUANTITY"), 4, 1e-6);
    EXPECT_EQ(Stock(m), 6);
    EXPECT_EQ(Stock(m2), 10);
}

TEST_F(SchemaOrders, ACountBeyondTheStockUndoesTheWholeStatement)
{
    const int m = NewMat(150, 2);
    const int o = NewOrder();
    EXPECT_EQ(Refusal(MatLineSql(o, m, 3)), "MATERIAL_NOT_ENOUGTH");
    EXPECT_EQ(refusalText, "На складе недостаточно данного материала.");
    EXPECT_EQ(Int("select count(*) from ORDMAT") + Int("select count(*) from STOREMAT"), 0);
    EXPECT_EQ(Stock(m), 2);
    EXPECT_TRUE(IsNull("ORDERS", o, "SUMORDER"));

    const int l = MatLine(o, m, 2);
    EXPECT_EQ(Refusal(QStringLiteral("update ORDMAT set OCNT = 3 where ID = %1").arg(l)), "MATERIAL_NOT_ENOUGTH");
    EXPECT_EQ(Whole("ORDMAT", l, "OCNT"), 2);
    EXPECT_NEAR(Num("STORE", StoreLineOf(l), "QUANTITY"), 2, 1e-6);
    EXPECT_EQ(Stock(m), 0);
    EXPECT_NEAR(Num("ORDERS", o, "SUMORDER"), 300, 1e-3);

    const int unnamed = NewMat(QStringLiteral("  "), 10, QStringLiteral("5"));
    EXPECT_EQ(Refusal(MatLineSql(o, unnamed, 2)), "MAT_HAS_NAME");
    EXPECT_EQ(Stock(unnamed), 5);
}

TEST_F(SchemaOrders, OrdersTextIsLimitedToFifteenCharactersForEveryMaterialLine)
{
    const int m = NewMat(150, 10);
    const int o = NewOrder();
    Exec("update CONFIG set PVALUE = 'Заказ-наряд №12' where PNAME = 'ORDERSTEXT'");
    const int l = MatLine(o, m, 1);
    EXPECT_EQ(Text("STOREMAT", OrdersHeader(o), "SUPPORT"), "Заказ-наряд №12 P-80001 " + Today());

    Exec("update CONFIG set PVALUE = 'Заказ-наряд №123' where PNAME = 'ORDERSTEXT'");
    for (const QString &sql : {QStringLiteral("insert into ORDMAT (IDORDER) values (%1)").arg(o),
                               QStringLiteral("update ORDMAT set DISCOUNT = 5 where ID = %1").arg(l)}) {
        EXPECT_EQ(Refusal(sql), "");
        EXPECT_EQ(refusalCode, -802) << refusalText.toStdString();
        EXPECT_TRUE(refusalText.contains("truncation")) << refusalText.toStdString();
    }
    EXPECT_EQ(Int(QStringLiteral("select count(*) from ORDMAT where IDORDER = %1").arg(o)), 1);
    // Service lines do not read the setting.
    EXPECT_EQ(Refusal(QStringLiteral("insert into ORDSERV (IDORDER) values (%1)").arg(o)), "");
    EXPECT_EQ(refusalCode, 0);
}

TEST_F(SchemaStore, OperationsAreNumberedFromTheirIdAndPaidByTheirSum)
{
    const int h = Header(1);
    EXPECT_EQ(h, 1);
    EXPECT_EQ(Text("STOREMAT", h, "NUM || ' ' || PAYSTATUS"), "P-90001 1");
    EXPECT_LT(Age("STOREMAT", h, "OPER_DATE"), 120);
    const int given = Insert("insert into STOREMAT (NUM, OPER_DATE, IDOTYPE) values ('Н-7', '01.02.2020', 1)");
    EXPECT_EQ(Text("STOREMAT", given, "NUM"), "Н-7");
    EXPECT_EQ(Get("STOREMAT", given, "OPER_DATE").toDateTime(), QDateTime(QDate(2020, 2, 1), QTime(0, 0)));
    EXPECT_EQ(Text("STOREMAT", Header(2), "NUM"), "P-90003");

    const std::pair<const char *, int> steps[] = {
        {"SUMPAY = 50", 1}, {"SUMSTORE = 100, SUMPAY = 0, PAYSTATUS = 3", 1}, {"SUMPAY = 50", 2},
        {"SUMPAY = 100", 3}, {"SUMPAY = 150", 3}, {"SUMPAY = -5", 3}, {"SUMSTORE = 0, SUMPAY = 0, PAYSTATUS = 1", 3}};
    for (const auto &[assignment, status] : steps) {
        Set("STOREMAT", h, assignment);
        EXPECT_EQ(Whole("STOREMAT", h, "PAYSTATUS"), status) << assignment;
    }
}

TEST_F(SchemaStore, DeliveriesAddToStockAndEveryOtherTypeTakesFromIt)
{
    const int m = NewMat(50, 0);
    const int delivery = Header(1);
    const int expense = Header(2);
    const int in = Line(delivery, m, 10);
    EXPECT_EQ(Refusal(LineSql(expense, m, 12)), "MATERIAL_NOT_ENOUGTH");
    EXPECT_EQ(Int(QStringLiteral("select count(*) from STORE where IDSTOREMAT = %1").arg(expense)), 0);
    EXPECT_EQ(Stock(m), 10);

    const int out = Line(expense, m, 4);
    EXPECT_EQ(Stock(m), 6);
    for (const QString type : {"3", "4", "null"})
        Line(Header(type), m, 1);
    EXPECT_EQ(Stock(m), 3);

    const std::pair<QString, int> edits[] = {
        {QStringLiteral("QUANTITY = 12 where ID = %1").arg(in), 5},
        {QStringLiteral("QUANTITY = 2 where ID = %1").arg(out), 7},
        {QStringLiteral("PRICEBUY = 99 where ID = %1").arg(in), 7}};
    for (const auto &[edit, stock] : edits) {
        Exec("update STORE set " + edit);
        EXPECT_EQ(Stock(m), stock) << edit.toStdString();
    }
    // Retyping a header or moving a line to another material moves nothing.
    Set("STOREMAT", delivery, "IDOTYPE = 2");
    const int m2 = NewMat(50, 0);
    Set("STORE", out, QStringLiteral("IDMAT = %1").arg(m2));
    EXPECT_EQ(Stock(m), 7);
    EXPECT_EQ(Stock(m2), 0);
    // The balance is whole: a fraction below one half is lost.
    Line(Header(1), m, 0.4);
    EXPECT_EQ(Stock(m), 7);
}

TEST_F(SchemaStore, SoftDeleteTakesBackTheOldQuantity)
{
    const int m = NewMat(50, 0);
    const int delivery = Header(1);
    const int expense = Header(2);
    const int five = Line(delivery, m, 5);
    Set("STORE", five, "DEL = 1");
    EXPECT_EQ(Stock(m), 0);
    Set("STORE", five, "DEL = 0");
    EXPECT_EQ(Stock(m), 0);

    const int ten = Line(delivery, m, 10);
    const int out = Line(expense, m, 4);
    Set("STORE", out, "DEL = 1");
    EXPECT_EQ(Stock(m), 10);
    // Deleting and changing at once counts the old quantity only.
    const int three = Line(delivery, m, 3);
    Set("STORE", three, "DEL = 1, QUANTITY = 8");
    EXPECT_EQ(Stock(m), 10);

    // A delivery whose units are gone cannot be taken back.
    Line(expense, m, 10);
    EXPECT_EQ(Refusal(QStringLiteral("update STORE set DEL = 1 where ID = %1").arg(ten)), "MATERIAL_NOT_ENOUGTH");
    EXPECT_TRUE(IsNull("STORE", ten, "DEL"));
    EXPECT_EQ(Stock(m), 0);
}

TEST_F(SchemaStore, HeaderSumCountsSoftDeletedLinesAndAMissingHeaderIsMade)
{
    const int m = NewMat(50, 0);
    const int delivery = Header(1);
    const int a = Line(delivery, m, 3, 100);
    const int b = Line(delivery, m, 2, 50);
    EXPECT_NEAR(Num("STOREMAT", delivery, "SUMSTORE"), 400, 1e-3);
    Set("STORE", a, "DEL = 1");
    EXPECT_NEAR(Num("STOREMAT", delivery, "SUMSTORE"), 400, 1e-3);
    // A physical delete still counts the row; the next write of a line puts the sum right.
    Exec(QStringLiteral("delete from STORE where ID = %1").arg(b));
    EXPECT_NEAR(Num("STOREMAT", delivery, "SUMSTORE"), 400, 1e-3);
    Set("STORE", a, "PRICEBUY = 1");
    EXPECT_NEAR(Num("STOREMAT", delivery, "SUMSTORE"), 300, 1e-3);

    // A line without a header gets a new untyped one and counts as outgoing.
    const int n = NewMat(50, 5);
    const int orphan = Insert(QStringLiteral("insert into STORE (IDMAT, QUANTITY, PRICESELL) values (%1, 1, 10)").arg(n));
    const int made = Whole("STORE", orphan, "IDSTOREMAT");
    ASSERT_GT(made, delivery);
    EXPECT_EQ(Text("STOREMAT", made, "NUM"), QStringLiteral("P-%1").arg(90000 + made));
    EXPECT_TRUE(IsNull("STOREMAT", made, "IDOTYPE"));
    EXPECT_NEAR(Num("STOREMAT", made, "SUMSTORE"), 10, 1e-3);
    EXPECT_EQ(Stock(n), 4);

    // A blank line moves nothing until its quantity is written.
    const int blank = Insert(QStringLiteral("insert into STORE (IDSTOREMAT) values (%1)").arg(Header(1)));
    Set("STORE", blank, QStringLiteral("IDMAT = %1").arg(n));
    EXPECT_EQ(Stock(n), 4);
    Set("STORE", blank, "QUANTITY = 6");
    EXPECT_EQ(Stock(n), 10);
}

TEST_F(SchemaStore, PhysicalDeleteAddsTheQuantityToTheMaterialNumberedLikeTheLine)
{
    const int a = NewMat(50, 5);
    const int b = NewMat(50, 0);
    const int delivery = Header(1);
    // Incoming or outgoing, the quantity is added to material a; material b keeps what the line did.
    const int first = Line(delivery, b, 10);
    ASSERT_EQ(first, a);
    Exec(QStringLiteral("delete from STORE where ID = %1").arg(first));
    EXPECT_EQ(Stock(a), 15);
    EXPECT_EQ(Stock(b), 10);
    const int second = Line(Header(2), a, 4);
    ASSERT_EQ(second, b);
    Exec(QStringLiteral("delete from STORE where ID = %1").arg(second));
    EXPECT_EQ(Stock(a), 11);
    EXPECT_EQ(Stock(b), 14);

    // No material bears the line's number: nothing moves.
    const int third = Line(delivery, b, 1);
    ASSERT_EQ(Int(QStringLiteral("select count(*) from MAT where ID = %1").arg(third)), 0);
    Exec(QStringLiteral("delete from STORE where ID = %1").arg(third));
    EXPECT_EQ(Stock(a) * 100 + Stock(b), 1115);
}

TEST_F(SchemaStore, MaterialsNeedANameAndANonNegativeBalance)
{
    const int blank = NewMat(QStringLiteral("   "), 10, QStringLiteral("5"));
    EXPECT_EQ(Refusal(QStringLiteral("update MAT set COST = 1 where ID = %1").arg(blank)), "MAT_HAS_NAME");
    EXPECT_EQ(refusalText, "Материал должен иметь название.");
    const int unnamed = Insert("insert into MAT (COST) values (1)");
    EXPECT_EQ(Refusal(QStringLiteral("update MAT set COST = 2 where ID = %1").arg(unnamed)), "MAT_HAS_NAME");
    const int delivery = Header(1);
    EXPECT_EQ(Refusal(LineSql(delivery, blank, 1)), "MAT_HAS_NAME");

    const int m = NewMat(QStringLiteral("Груз"), 10, QStringLiteral("null"));
    EXPECT_EQ(Refusal(QStringLiteral("update MAT set QUANTITY = -1 where ID = %1").arg(m)), "MATERIAL_NOT_ENOUGTH");
    EXPECT_EQ(Refusal(QStringLiteral("update MAT set COST = 11 where ID = %1").arg(m)), "");
    // A null balance counts as 0.
    const int line = Line(delivery, m, 3);
    EXPECT_EQ(Stock(m), 3);
    // Even a move to another material at the same quantity writes that material.
    EXPECT_EQ(Refusal(QStringLiteral("update STORE set IDMAT = %1 where ID = %2").arg(blank).arg(line)), "MAT_HAS_NAME");
}

TEST_F(SchemaCash, PaymentsAreNumberedStampedAndNameTheirObject)
{
    const int o = NewOrder();
    const int h = Header(1);
    const int p1 = Insert(QStringLiteral("insert into PAY (PURPOSE, IDOBJECT, SUMM, PAYDATE, OBJTEXT) "
                                         "values (1, %1, 100, '01.01.2001', 'x')")
                              .arg(o));
    EXPECT_EQ(p1, 1);
    EXPECT_EQ(Text("PAY", p1, "PAYNUM"), "PAY-10001");
    EXPECT_LT(Age("PAY", p1, "PAYDATE"), 120);
    EXPECT_EQ(Text("PAY", p1, "OBJTEXT"), "P-80001");

    const int p2 = Pay(2, h, "50");
    EXPECT_EQ(Text("PAY", p2, "PAYNUM"), "PAY-10002");
    EXPECT_EQ(Text("PAY", p2, "OBJTEXT"), "P-90001");

    const int own = Insert("insert into PAY (PAYNUM, OBJTEXT) values ('К-1', 'x')");
    EXPECT_EQ(Text("PAY", own, "PAYNUM"), "К-1");
    EXPECT_TRUE(IsNull("PAY", own, "OBJTEXT"));
    EXPECT_TRUE(IsNull("PAY", Pay(1, 999, "10"), "OBJTEXT"));

    // The text follows the object only when the payment is written again, and so does the date.
    Set("ORDERS", o, "NUM = 'P-1'");
    EXPECT_EQ(Text("PAY", p1, "OBJTEXT"), "P-80001");
    Exec(QStringLiteral("update PAY set PAYDATE = '01.01.2001' where ID = %1").arg(p1));
    EXPECT_EQ(Text("PAY", p1, "OBJTEXT"), "P-1");
    EXPECT_LT(Age("PAY", p1, "PAYDATE"), 120);
}

TEST_F(SchemaCash, PaymentsKeepTheOrdersPaidSumEvenWhenMarkedDeleted)
{
    const int s = NewServ(150, 1);
    const int o = NewOrder();
    ServLine(o, s);
    EXPECT_TRUE(IsNull("PAY", Insert("insert into PAY (SUMM) values (null)"), "PURPOSE"));
    EXPECT_TRUE(IsNull("ORDERS", o, "SUMPAY"));

    const int p1 = Pay(1, o, "100");
    EXPECT_EQ(Text("ORDERS", o, "cast(SUMPAY as integer) || ' ' || PAYSTATE"), "100 2");
    const int p2 = Pay(1, o, "100");
    Set("PAY", p2, "DEL = 1");
    EXPECT_EQ(Text("ORDERS", o, "cast(SUMPAY as integer) || ' ' || PAYSTATE"), "200 3");

    // Moving a payment recounts only the new object.
    const int o2 = NewOrder();
    Set("PAY", p1, QStringLiteral("IDOBJECT = %1").arg(o2));
    EXPECT_NEAR(Num("ORDERS", o, "SUMPAY"), 200, 1e-3);
    EXPECT_NEAR(Num("ORDERS", o2, "SUMPAY"), 100, 1e-3);
    // A physical delete recounts the others and never leaves a null.
    Exec(QStringLiteral("delete from PAY where ID = %1").arg(p2));
    EXPECT_EQ(Text("ORDERS", o, "cast(SUMPAY as integer) || ' ' || PAYSTATE"), "0 1");

    // A payment with no amount writes a null paid sum, which leaves the state alone.
    const int o3 = NewOrder();
    ServLine(o3, s);
    Set("ORDERS", o3, "PAYSTATE = 2");
    Pay(1, o3, "null");
    EXPECT_TRUE(IsNull("ORDERS", o3, "SUMPAY"));
    EXPECT_EQ(Whole("ORDERS", o3, "PAYSTATE"), 2);
}

TEST_F(SchemaCash, StorePaymentsMoveThePayStatusOfTheOperation)
{
    const int h = Header(1);
    Exec(QStringLiteral("insert into STORE (IDSTOREMAT, QUANTITY, PRICESELL) values (%1, 3, 100)").arg(h));
    const int o = NewOrder();
    ASSERT_EQ(o, h);
    Pay(2, h, "100");
    EXPECT_EQ(Text("STOREMAT", h, "cast(SUMPAY as integer) || ' ' || PAYSTATUS"), "100 2");
    EXPECT_TRUE(IsNull("ORDERS", o, "SUMPAY"));
    const int over = Pay(2, h, "250");
    EXPECT_EQ(Text("STOREMAT", h, "cast(SUMPAY as integer) || ' ' || PAYSTATUS"), "350 3");
    Pay(1, o, "30");
    EXPECT_NEAR(Num("STOREMAT", h, "SUMPAY"), 350, 1e-3);
    Exec(QStringLiteral("delete from PAY where ID = %1").arg(over));
    EXPECT_EQ(Text("STOREMAT", h, "cast(SUMPAY as integer) || ' ' || PAYSTATUS"), "100 2");
    EXPECT_NEAR(Num("ORDERS", o, "SUMPAY"), 30, 1e-3);
}

TEST_F(SchemaCash, PayoutsAreNumberedAndDatedOnInsertOnly)
{
    const int e = Insert("insert into EMPLS (EMPLNAME) values ('Соколов')");
    const int first = Insert(QStringLiteral("insert into SALARY (IDEMPL, SUMM, PAY_DATE) values (%1, 5000, '01.01.2001')").arg(e));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(Text("SALARY", first, "PAYNUM"), "SAL-20001");
    EXPECT_LT(Age("SALARY", first, "PAY_DATE"), 120);
    const int own = Insert(QStringLiteral("insert into SALARY (IDEMPL, SUMM, PAYNUM) values (%1, 1, 'S-5')").arg(e));
    EXPECT_EQ(Text("SALARY", own, "PAYNUM"), "S-5");
    EXPECT_EQ(Text("SALARY", Insert("insert into SALARY (SUMM) values (2)"), "PAYNUM"), "SAL-20003");

    Set("SALARY", first, "PAY_DATE = '01.01.2001', PAYNUM = 'SAL-1'");
    EXPECT_GT(Age("SALARY", first, "PAY_DATE"), 86400.0 * 365);
    EXPECT_EQ(Text("SALARY", first, "PAYNUM"), "SAL-1");
}
