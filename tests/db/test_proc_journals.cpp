// The procedures behind the journals and cards: the order card's save with its vehicle and customer, the
// order journal's filters, deletion by state, the line grids, what the payment card may choose, the debt to
// employees for a period, and the filters of the dictionaries and of the store journal.
#include "fib_dataset.h"
#include "fib_encoding.h"
#include "database_test.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <vector>

namespace {

using Row = QVariantMap;
using Ids = std::vector<int>;

// What the order card sends, field by field; the columns the card only shows stay null.
struct OrderCard
{
    QVariant id, num, created, statusDate, state, custId, custName, phone, address, autoId, type, model, mark, reg,
        year, vin, drive, colour, discount, returnZp, guarantee, sumOrder, sumPay, comment;

    QVariantList Values() const
    {
        return {id,     num,  created, statusDate, state,    QVariant(), custId,    custName, phone,
                address, autoId, QVariant(), type, model, QVariant(), mark,   reg,       year,
                vin,    drive, colour,  discount,  returnZp, guarantee,  sumOrder, sumPay,   comment};
    }
};

const char *const kJournal = "select * from spOrderOpen(:F_IDORDER, :F_DATE_UP, :F_DATE_TO, :F_IDOSTATE, :F_NUM, "
                             ":F_IDCUST, :F_REG, :F_IDMARK, :F_IDMODEL, :F_DEL)";

class ProcJournals : public DeployedDatabaseTest
{
protected:
    // A window's parameters: its defaults for empty controls, then the changes.
    QList<Row> With(const QString &sql, QVariantMap defaults, const QVariantMap &changes)
    {
        for (auto it = changes.begin(); it != changes.end(); ++it)
            defaults[it.key()] = it.value();
        return Select(sql, defaults);
    }

    // The order journal: empty text boxes give "%%", the other filters null.
    QList<Row> Journal(const QVariantMap &changes = {})
    {
        return With(kJournal,
                    {{"F_IDORDER", {}}, {"F_DATE_UP", {}}, {"F_DATE_TO", {}}, {"F_IDOSTATE", {}}, {"F_NUM", "%%"},
                     {"F_IDCUST", {}}, {"F_REG", "%%"}, {"F_IDMARK", {}}, {"F_IDMODEL", {}}, {"F_DEL", {}}},
                    changes);
    }
    Ids JournalIds(const QVariantMap &changes = {}) { return IdsOf(Journal(changes)); }

    static Ids IdsOf(const QList<Row> &rows, const QString &column = QStringLiteral("ID"))
    {
        Ids ids;
        for (const Row &r : rows)
            ids.push_back(r.value(column).toInt());
        std::sort(ids.begin(), ids.end());
        return ids;
    }

    static Row RowOf(const QList<Row> &rows, int id)
    {
        for (const Row &r : rows)
            if (r.value("ID").toInt() == id)
                return r;
        return {};
    }

    void Run(std::initializer_list<const char *> statements)
    {
        for (const char *sql : statements)
            db.Exec(QString::fromUtf8(sql));
    }

    int Int(const QString &sql) { return db.Scalar(sql).toInt(); }
    double Real(const QString &sql) { return db.Scalar(sql).toDouble(); }
    QVariant Get(const QString &table, int id, const QString &column)
    {
        return db.Scalar(QStringLiteral("select %1 from %2 where ID = %3").arg(column, table).arg(id));
    }
    // Chosen columns of a row joined with "|".
    static QString Joined(const Row &row, const QStringList &columns)
    {
        QStringList values;
        for (const QString &c : columns)
            values << row.value(c).toString();
        return values.join('|');
    }

    // Lines as the card adds them: a blank row first, then its values.
    int AddService(const QVariant &order, int serv, double hours, const QVariant &discount = {},
                   const QVariant &empl = {})
    {
        const int line = Call("spOrdServEmpty").toInt();
        // Prices and sums sent by the card are ignored by the procedure.
        Call("spOrdServEdit", {line, order, serv, hours, 99.0, 1.0, 1.0, QVariant(), 1.0, discount, 1.0, empl});
        return line;
    }
    int AddMaterial(const QVariant &order, int mat, int count, const QVariant &discount = {},
                    const QVariant &empl = {})
    {
        const int line = Call("spOrdMatEmpty").toInt();
        Call("spOrdMatEdit", {line, order, mat, count, QVariant(), 1.0, QVariant(), 1.0, discount, QVariant(), empl});
        return line;
    }
    int AddPart(const QVariant &order, const QString &name)
    {
        const int line = Call("spOrdPartsEmpty").toInt();
        Call("spOrdPartsEdit", {line, order, name, 1, ""});
        return line;
    }

    // A payment saved by the card: a blank row, then all its values.
    int Pay(int type, int purpose, const QVariant &cust, const QVariant &object, double sum, int nal,
            const QVariant &num = {})
    {
        const int id = Call("spPayEmpty").toInt();
        Call("spPayEdit", {id, num, QVariant(), type, purpose, cust, object, "текст карты", sum, nal, ""});
        return id;
    }
};

class ProcOrders : public ProcJournals {};
class ProcPayments : public ProcJournals {};
class ProcSalary : public ProcJournals {};
class ProcFilters : public ProcJournals {};

Ids Sorted(Ids ids)
{
    std::sort(ids.begin(), ids.end());
    return ids;
}

QDateTime At(int y, int m, int d, int h = 0, int min = 0) { return QDateTime(QDate(y, m, d), QTime(h, min)); }

} // namespace

TEST_F(ProcOrders, CardSaveUpsertsVehicleAndCustomerThenWritesTheOrder)
{
    const int customers = Int("select count(*) from CUST");
    const int vehicles = Int("select count(*) from AUTO");

    const int first = Call("spOrderEmpty").toInt();
    OrderCard card{.id = first, .num = "З-1", .created = At(2024, 3, 10, 9), .state = 1,
                   .custName = "Петров П.П.", .phone = "900", .address = "Ленина, 5", .type = 1, .model = 1,
                   .mark = 1, .reg = "А123ВС77", .year = 5, .vin = "VIN-A", .drive = "2WD", .colour = "Серый",
                   .discount = 5.0, .returnZp = 1, .guarantee = 6, .sumOrder = 999.0, .sumPay = 999.0,
                   .comment = "Замена масла"};
    EXPECT_EQ(Call("spOrderEdit", card.Values()).toInt(), first);
    EXPECT_EQ(Int("select count(*) from CUST"), customers + 1);
    EXPECT_EQ(Int("select count(*) from AUTO"), vehicles + 1);

    const Row row = RowOf(Journal(), first);
    ASSERT_FALSE(row.isEmpty());
    const int cust = row.value("SYS_IDCUST").toInt();
    const int vehicle = row.value("SYS_IDAUTO").toInt();
    EXPECT_GT(cust, 1);
    EXPECT_EQ(row.value("CREATE_DATE").toDateTime(), At(2024, 3, 10, 9));
    EXPECT_EQ(Joined(row, {"NUM", "DLG_IDCUST", "MOBI_PHONE", "ADDRESS", "REG", "SYS_MOD_NAME", "MARK_LKP_MARK_F_MARKNAME",
                           "YEAR_LKP_AYEAR_F_AYEARNAME", "COLNAME", "DLG_FULLNAME", "DISCOUNT", "RETURNZP", "GUARANTEE",
                           "COMMENT", "PSTATUS_LKP_PAYSTATE_F_STATUS"}),
              "З-1|Петров П.П.|900|Ленина, 5|А123ВС77|Passat|1|5|Серый|А123ВС77 Легковой Passat Volkswagen|5|1|6|"
              "Замена масла|1");
    // Money is the triggers' business; what the card sends for it is dropped.
    EXPECT_TRUE(Get("ORDERS", first, "coalesce(SUMORDER, SUMPAY)").isNull());

    // The same name and number typed on a new card bind to the old rows and overwrite them.
    const int second = Call("spOrderEmpty").toInt();
    OrderCard again = card;
    again.id = second;
    again.num = "З-2";
    again.created = At(2024, 3, 20, 11);
    again.custId = 0;
    again.autoId = 0;
    again.phone = "901";
    again.colour = "Белый";
    EXPECT_EQ(Call("spOrderEdit", again.Values()).toInt(), second);
    EXPECT_EQ(Int("select count(*) from CUST"), customers + 1);
    EXPECT_EQ(Int("select count(*) from AUTO"), vehicles + 1);
    EXPECT_EQ(Get("ORDERS", second, "IDCUST || ' ' || IDAUTO").toString(), QString("%1 %2").arg(cust).arg(vehicle));
    EXPECT_EQ(Get("CUST", cust, "MOBI_PHONE").toString() + Get("AUTO", vehicle, "COLNAME").toString(), "901Белый");

    // With the keys given, a changed name renames the same customer.
    again.custId = cust;
    again.autoId = vehicle;
    again.custName = "Петров Пётр";
    Call("spOrderEdit", again.Values());
    EXPECT_EQ(Int("select count(*) from CUST"), customers + 1);
    EXPECT_EQ(Get("CUST", cust, "CUSTNAME").toString(), "Петров Пётр");

    // The customer's history is newest first.
    const QList<Row> history = Select("select * from spCustOrderOpen(:IDCUST)", {{"IDCUST", cust}});
    ASSERT_EQ(history.size(), 2);
    EXPECT_EQ(QString("%1 %2").arg(history[0].value("ID").toInt()).arg(history[1].value("ID").toInt()),
              QString("%1 %2").arg(second).arg(first));

    // A name held by two customers breaks the save with the server's error; the order stays as it was.
    db.Exec("insert into CUST (ID, CUSTNAME) values (100, 'Двойник')");
    db.Exec("insert into CUST (ID, CUSTNAME) values (101, 'Двойник')");
    OrderCard twin = card;
    twin.custName = "Двойник";
    twin.comment = "не сохранится";
    EXPECT_TRUE(UserText([&] { Call("spOrderEdit", twin.Values()); })
                    .contains("multiple rows in singleton select", Qt::CaseInsensitive));
    EXPECT_EQ(Get("ORDERS", first, "COMMENT").toString(), "Замена масла");

    // An unknown key is inserted under that key; a null one takes the generator and the trigger's number.
    OrderCard fresh = card;
    fresh.id = 5000;
    fresh.num = "З-5000";
    EXPECT_EQ(Call("spOrderEdit", fresh.Values()).toInt(), 5000);
    EXPECT_EQ(Get("ORDERS", 5000, "NUM").toString(), "З-5000");
    fresh.id = fresh.num = QVariant();
    const int generated = Call("spOrderEdit", fresh.Values()).toInt();
    EXPECT_EQ(Get("ORDERS", generated, "NUM").toString(), QString("P-%1").arg(80000 + generated));
}

TEST_F(ProcOrders, JournalFiltersKeepTheirOwnForms)
{
    Run({"insert into CUST (ID, CUSTNAME) values (200, 'Алексеев')",
         "insert into CUST (ID, CUSTNAME) values (201, 'Борисов')",
         "insert into AUTO (ID, MARK, MODNAME, REG) values (200, 1, 1, 'А111АА')",
         "insert into AUTO (ID, MARK, MODNAME, REG) values (201, 2, 2, 'В222ВВ')",
         "insert into AUTO (ID) values (202)",
         "insert into ORDERS (ID, NUM, CREATE_DATE, IDSTATUS, IDCUST, IDAUTO) "
         "values (200, 'Z-200', '2024-03-10 09:00:00', 1, 200, 200)",
         "insert into ORDERS (ID, NUM, CREATE_DATE, IDSTATUS, IDCUST, IDAUTO) "
         "values (201, 'Z-201', '2024-03-15 18:30:00', 3, 201, 201)",
         "insert into ORDERS (ID, NUM, CREATE_DATE, IDSTATUS, IDCUST, IDAUTO) "
         "values (202, 'z-202', '2024-03-16 08:00:00', 5, 200, 202)",
         "insert into ORDERS (ID, NUM, CREATE_DATE, IDSTATUS, IDCUST, IDAUTO) "
         "values (203, 'Z-203', '2024-03-12 12:00:00', 6, 201, 201)",
         "insert into ORDERS (ID, NUM, CREATE_DATE, IDSTATUS, DEL) values (204, 'Z-204', '2024-03-11 10:00:00', 2, 1)",
         "insert into ORDERS (ID, CREATE_DATE) values (205, '2024-03-13 10:00:00')",
         "update ORDERS set NUM = null, IDSTATUS = null where ID = 205",
         "insert into ORDERS (ID, NUM, IDSTATUS) values (206, 'Z-206', 1)",
         "update ORDERS set CREATE_DATE = null where ID = 206",
         "update ORDERS set SUMORDER = 100, SUMPAY = 150 where ID = 201"});

    const std::pair<QVariantMap, Ids> cases[] = {
        // A row without a creation date never passes; one without number or state always does.
        {{}, {200, 201, 202, 203, 205}},
        {{{"F_IDORDER", 201}}, {200, 201, 202, 203, 205}},
        // Whole days, the last one included up to its midnight.
        {{{"F_DATE_UP", QDate(2024, 3, 10)}, {"F_DATE_TO", QDate(2024, 3, 15)}}, {200, 201, 203, 205}},
        {{{"F_DATE_UP", QDate(2024, 3, 16)}}, {202}},
        {{{"F_DATE_TO", QDate(2024, 3, 12)}}, {200, 203}},
        // 7 is every open state; any other value is that state; a null state passes all.
        {{{"F_IDOSTATE", 7}}, {200, 201, 202, 205}},
        {{{"F_IDOSTATE", 6}}, {203, 205}},
        // Number and registration are plain case-sensitive patterns; null matches only a null column.
        {{{"F_NUM", QVariant()}}, {205}},
        {{{"F_NUM", "%z-20%"}}, {202, 205}},
        {{{"F_REG", QVariant()}}, {202, 205}},
        {{{"F_REG", "%А111%"}}, {200, 202, 205}},
        {{{"F_REG", "%а111%"}}, {202, 205}},
        // Keys keep rows whose key is null.
        {{{"F_IDCUST", 200}}, {200, 202, 205}},
        {{{"F_IDMARK", 2}}, {201, 202, 203, 205}},
        {{{"F_IDMODEL", 1}}, {200, 202, 205}},
        // Deleted rows only on request, and then only they.
        {{{"F_DEL", 0}}, {200, 201, 202, 203, 205}},
        {{{"F_DEL", 1}}, {204}},
    };
    for (const auto &[changes, ids] : cases)
        EXPECT_EQ(JournalIds(changes), ids) << QStringList(changes.keys()).join(',').toStdString();
    EXPECT_TRUE(Journal({{"F_DEL", 1}})[0].value("DLG_IDCUST").isNull());

    // SUMPAY of the journal is what remains to pay: negative when overpaid.
    const QList<Row> all = Journal();
    EXPECT_EQ(Joined(RowOf(all, 201), {"SUMPAY", "DLG_IDCUST", "SYS_MOD_NAME"}), "-50|Борисов|Fabia");
    EXPECT_NEAR(RowOf(all, 200).value("SUMPAY").toDouble(), 0.0, 1e-6);
}

TEST_F(ProcOrders, DeletionRemovesANewOrderAndMarksAnOpenedOne)
{
    Run({"insert into SERV (ID, SERVNAME, COST, HOURS) values (300, 'Мойка', 100, 1)",
         "insert into MAT (ID, MATNAME, COST, QUANTITY) values (300, 'Масло', 50, 10)",
         "insert into CUST (ID, CUSTNAME) values (300, 'Смирнов')",
         "insert into AUTO (ID, REG) values (300, 'Е300КХ')"});
    auto makeOrder = [&](const QString &state) {
        const int id = Call("spOrderEmpty").toInt();
        db.Exec(QString("update ORDERS set IDCUST = 300, IDAUTO = 300, IDSTATUS = %1 where ID = %2").arg(state).arg(id));
        AddPart(id, "Колпак");
        AddService(id, 300, 1);
        AddMaterial(id, 300, 2);
        return id;
    };
    // Lines of the order, store lines under its header, and the header.
    auto lines = [&](int id) {
        return db.Scalar(QString("select cast((select count(*) from ORDPARTS where IDORDER = %1) + "
                                              "(select count(*) from ORDSERV where IDORDER = %1) + "
                                              "(select count(*) from ORDMAT where IDORDER = %1) as integer) || ' ' || "
                                              "(select count(*) from STORE s join STOREMAT m on m.ID = s.IDSTOREMAT "
                                              "where m.IDORDER = %1) || ' ' || "
                                              "(select count(*) from STOREMAT where IDORDER = %1) from RDB$DATABASE").arg(id)).toString();
    };
    auto order = [&](int id) { return Get("ORDERS", id, "coalesce(IDCUST, 0) || ' ' || coalesce(DEL, 0)").toString(); };

    // State 1: the order goes, with its lines and the store lines they made; the store header stays.
    const int fresh = makeOrder("1");
    EXPECT_EQ(lines(fresh), "3 1 1");
    Call("spOrderDel", {fresh});
    EXPECT_EQ(Int(QString("select count(*) from ORDERS where ID = %1").arg(fresh)), 0);
    EXPECT_EQ(lines(fresh), "0 0 1");

    // Above state 1: the lines go, the order is marked and loses customer and vehicle.
    const int worked = makeOrder("2");
    const QString num = Get("ORDERS", worked, "NUM").toString();
    Call("spOrderDel", {worked});
    EXPECT_EQ(lines(worked).left(1), "0");
    EXPECT_EQ(order(worked), "0 1");
    EXPECT_EQ(Get("ORDERS", worked, "NUM || ' ' || IDSTATUS || ' ' || cast(SUMORDER as integer) || "
                                   "iif(IDAUTO is null, '-', '+')").toString(), num + " 2 0-");
    EXPECT_EQ(JournalIds({{"F_DEL", 1}}), Ids({worked}));
    // A marked order is removed for good by a second delete.
    Call("spOrderDel", {worked});
    EXPECT_EQ(Int(QString("select count(*) from ORDERS where ID = %1").arg(worked)), 0);

    // Without a state the call does nothing at all.
    const int stateless = makeOrder("null");
    Call("spOrderDel", {stateless});
    EXPECT_EQ(lines(stateless).left(1), "3");
    EXPECT_EQ(order(stateless), "300 0");

    // Any payment, even one cancelled, keeps the order for ever.
    const int paid = makeOrder("1");
    const int pay = Call("spPayEmpty").toInt();
    Call("spPayEdit", {pay, QVariant(), QVariant(), 1, 1, 300, paid, "", 10.0, 2, ""});
    Call("spPayDel", {pay});
    EXPECT_EQ(UserText([&] { Call("spOrderDel", {paid}); }), "Имеются платежи по данному заказу. Удаление запрещено.");
    EXPECT_EQ(lines(paid).left(1), "3");
    EXPECT_EQ(order(paid), "300 0");
}

TEST_F(ProcOrders, LineGridsWorkTheirSumsOutFromThePresentCatalogue)
{
    Run({"insert into SERV (ID, SERVNAME, COST, HOURS) values (400, 'Балансировка', 1000, 2)",
         "insert into MAT (ID, MATNAME, COST, QUANTITY) values (400, 'Груз', 50, 10)",
         "insert into EMPLS (ID, EMPLNAME) values (400, 'Мастер 1')",
         "insert into EMPLS (ID, EMPLNAME) values (401, 'Мастер 2')"});
    const int order = Call("spOrderEmpty").toInt();
    const QVariantMap byOrder{{"IDORDER", order}};

    // The norm of the catalogue shows as OHOURS and the line's hours as HOURS.
    const int serv = AddService(order, 400, 2.5, 10.0, 400);
    QList<Row> services = Select("select * from spOrdServOpen(:IDORDER)", byOrder);
    ASSERT_EQ(services.size(), 1);
    Row s = services[0];
    EXPECT_EQ(Joined(s, {"ID", "SYS_IDORDER", "IDSERV_LKP_SERV_F_SERVNAME", "OHOURS", "HOURS", "COST", "SUMM0", "SUMM",
                         "NDS", "IDEMPL_LKP_EMPL_F_EMPLNAME"}),
              QString("%1|%2|400|2|2.5|1000|1250|1125|20|400").arg(serv).arg(order));
    EXPECT_NEAR(Real(QString("select SUMORDER from ORDERS where ID = %1").arg(order)), 1125.0, 1e-2);

    // The grid cell HOURS goes back as OHOURS.
    Call("spOrdServValuesEdit", {serv, 3.0, 0.0});
    s = Select("select * from spOrdServOpen(:IDORDER)", byOrder)[0];
    EXPECT_NEAR(s.value("HOURS").toDouble(), 3.0, 1e-6);
    EXPECT_NEAR(s.value("SUMM").toDouble(), 1500.0, 1e-3);

    const int mat = AddMaterial(order, 400, 3, 0.0, 400);
    EXPECT_EQ(Int("select QUANTITY from MAT where ID = 400"), 7);
    Row m = Select("select * from spOrdMatOpen(:IDORDER)", byOrder)[0];
    EXPECT_EQ(m.value("ID").toInt(), mat);
    EXPECT_EQ(m.value("OCNT").toInt(), 3);
    EXPECT_NEAR(m.value("SUMM0").toDouble(), 150.0, 1e-3);

    // A count beyond the stock is refused and nothing moves.
    EXPECT_EQ(UserText([&] { Call("spOrdMatValuesEdit", {mat, order, 20, 0.0}); }),
              "На складе недостаточно данного материала.");
    EXPECT_EQ(Int(QString("select OCNT from ORDMAT where ID = %1").arg(mat)), 3);
    EXPECT_EQ(Int("select QUANTITY from MAT where ID = 400"), 7);
    Call("spOrdMatValuesEdit", {mat, order, 4, 10.0});
    EXPECT_EQ(Int("select QUANTITY from MAT where ID = 400"), 6);
    m = Select("select * from spOrdMatOpen(:IDORDER)", byOrder)[0];
    EXPECT_NEAR(m.value("SUMM").toDouble(), 180.0, 1e-3);

    // The order's discount and master reach service lines only.
    Call("spOrdServUpdDiscount", {order, 20.0});
    Call("spOrdServUpdEmployee", {order, 401});
    EXPECT_EQ(Get("ORDSERV", serv, "cast(DISCOUNT as integer) || ' ' || IDEMPL").toString() + ", " +
                  Get("ORDMAT", mat, "cast(DISCOUNT as integer) || ' ' || IDEMPL").toString(),
              "20 401, 10 400");
    EXPECT_NEAR(Real(QString("select SUMORDER from ORDERS where ID = %1").arg(order)), 1200.0 + 180.0, 1e-2);
    Call("spOrdServUpdDiscount", {order, QVariant()});
    EXPECT_NEAR(Select("select * from spOrdServOpen(:IDORDER)", byOrder)[0].value("SUMM").toDouble(), 1500.0, 1e-3);

    // After a price change the grid reads the new price while the stored total keeps the old one.
    db.Exec("update MAT set COST = 60 where ID = 400");
    m = Select("select * from spOrdMatOpen(:IDORDER)", byOrder)[0];
    EXPECT_NEAR(m.value("SUMM0").toDouble(), 240.0, 1e-3);
    EXPECT_NEAR(m.value("COST").toDouble(), 50.0, 1e-3);
    EXPECT_NEAR(Real(QString("select SUMORDER from ORDERS where ID = %1").arg(order)), 1500.0 + 180.0, 1e-2);

    // The documents' list: services, then materials, with a material's count as OHOURS.
    const QList<Row> doc = Select("select * from spOrdMatServOpen(:IDORDER)", byOrder);
    ASSERT_EQ(doc.size(), 2);
    const bool serviceFirst = doc[0].value("SERVNAME").toString() == "Балансировка";
    const Row &ds = serviceFirst ? doc[0] : doc[1];
    const Row &dm = serviceFirst ? doc[1] : doc[0];
    const QStringList docColumns{"ID", "SERVNAME", "OHOURS", "HOURS", "IDEMPL_LKP_EMPL_F_EMPLNAME"};
    EXPECT_EQ(Joined(ds, docColumns) + "; " + Joined(dm, docColumns),
              QString("%1|Балансировка|2|3|401; %2|Груз|4|1|400").arg(serv).arg(mat));

    // Blank lines with no order show in every order's grids; the documents drop lines without a service.
    const int other = Call("spOrderEmpty").toInt();
    const int blankPart = Call("spOrdPartsEmpty").toInt();
    const int blankServ = Call("spOrdServEmpty").toInt();
    const int named = AddPart(other, "Колесо");
    EXPECT_EQ(IdsOf(Select("select * from spOrdPartsOpen(:IDORDER)", {{"IDORDER", other}})),
              Ids({blankPart, named}));
    EXPECT_EQ(IdsOf(Select("select * from spOrdPartsOpen(:IDORDER)", byOrder)), Ids({blankPart}));
    EXPECT_EQ(IdsOf(Select("select * from spOrdPartsOpen(:IDORDER)", {{"IDORDER", QVariant()}})),
              Ids({blankPart, named}));
    EXPECT_EQ(IdsOf(Select("select * from spOrdServOpen(:IDORDER)", byOrder)), Ids({serv, blankServ}));
    EXPECT_EQ(Select("select * from spOrdMatServOpen(:IDORDER)", byOrder).size(), 2);

    // A service name beyond the 32 of the documents' list makes the whole list fail.
    db.Exec("update SERV set SERVNAME = '" + QString(33, QLatin1Char('S')) + "' where ID = 400");
    EXPECT_TRUE(UserText([&] { Select("select * from spOrdMatServOpen(:IDORDER)", byOrder); })
                    .contains("string right truncation", Qt::CaseInsensitive));
}

TEST_F(ProcPayments, CardIsOfferedWhatRemainsToPayAndWhoOwesIt)
{
    Run({"insert into CUST (ID, CUSTNAME) values (500, 'Орлов')",
         "insert into CUST (ID, CUSTNAME) values (501, 'Зайцев')",
         "insert into CUST (ID, CUSTNAME) values (502, 'Поставщик')",
         "insert into ORDERS (ID, NUM, IDCUST) values (500, 'Z-500', 500)",
         "insert into ORDERS (ID, NUM, IDCUST) values (501, 'Z-501', 500)",
         "insert into ORDERS (ID, NUM, IDCUST) values (502, 'Z-502', 501)",
         "insert into ORDERS (ID, NUM) values (503, 'Z-503')",
         "update ORDERS set SUMORDER = 150 where ID = 500",
         "update ORDERS set SUMORDER = 80 where ID = 501",
         "update ORDERS set SUMORDER = 300 where ID = 502",
         "update ORDERS set SUMORDER = 50 where ID = 503",
         "insert into STOREMAT (ID, NUM, IDOTYPE, IDCUST) values (500, 'S-500', 2, 501)",
         "insert into STOREMAT (ID, NUM, IDOTYPE, IDCUST) values (501, 'S-501', 1, 502)",
         "insert into STOREMAT (ID, NUM, IDOTYPE, IDCUST) values (502, 'S-502', 3, 502)",
         "update STOREMAT set SUMSTORE = 120 where ID = 500",
         "update STOREMAT set SUMSTORE = 400 where ID = 501"});
    const QString objects = "select * from spObjectOpen(:IDPAYTYPE, :IDCUST, :IDOBJ)";
    const QString clients = "select * from spClientsOpen(:IDPAYTYPE, :IDCUST, :IDOBJ)";
    auto offer = [&](const QString &sql, const QVariant &type, const QVariant &cust, const QVariant &obj) {
        return Select(sql, {{"IDPAYTYPE", type}, {"IDCUST", cust}, {"IDOBJ", obj}});
    };

    // Orders with a customer and not paid; a customer narrows them down.
    QList<Row> rows = offer(objects, 1, {}, {});
    EXPECT_EQ(IdsOf(rows), Ids({500, 501, 502}));
    EXPECT_EQ(RowOf(rows, 500).value("OBJNAME").toString(), "Z-500");
    EXPECT_EQ(RowOf(rows, 502).value("IDCUST").toInt(), 501);
    EXPECT_NEAR(RowOf(rows, 502).value("PAYDIFF").toDouble(), 300.0, 1e-3);
    EXPECT_EQ(IdsOf(offer(objects, 1, 500, {})), Ids({500, 501}));
    EXPECT_EQ(IdsOf(offer(clients, 1, {}, {})), Ids({500, 501}));

    // Two payments of 100 on 150: what remains after the first, nothing offered after the second.
    const int first = Pay(1, 1, 500, 500, 100.0, 2);
    EXPECT_EQ(Int("select PAYSTATE from ORDERS where ID = 500"), 2);
    EXPECT_EQ(db.Scalar(QString("select OBJTEXT from PAY where ID = %1").arg(first)).toString(), "Z-500");
    EXPECT_NEAR(RowOf(offer(objects, 1, 500, {}), 500).value("PAYDIFF").toDouble(), 50.0, 1e-3);
    Pay(1, 1, 500, 500, 100.0, 2);
    EXPECT_EQ(Int("select PAYSTATE from ORDERS where ID = 500"), 3);
    EXPECT_EQ(IdsOf(offer(objects, 1, 500, {})), Ids({501}));
    // Opening a payment on a chosen object shows what has been paid, or null before any payment.
    rows = offer(objects, 1, {}, 500);
    ASSERT_EQ(IdsOf(rows), Ids({500}));
    EXPECT_NEAR(rows[0].value("PAYDIFF").toDouble(), 200.0, 1e-3);
    rows = offer(objects, 1, {}, 501);
    ASSERT_EQ(IdsOf(rows), Ids({501}));
    EXPECT_TRUE(rows[0].value("PAYDIFF").isNull());

    // A customer whose orders are all paid leaves the list, unless he is the one already chosen.
    Pay(1, 1, 500, 501, 80.0, 1);
    EXPECT_EQ(IdsOf(offer(clients, 1, {}, {})), Ids({501}));
    rows = offer(clients, 1, 500, {});
    EXPECT_EQ(IdsOf(rows), Ids({500, 501}));
    EXPECT_EQ(RowOf(rows, 500).value("CUSTNAME").toString(), "Орлов");
    EXPECT_EQ(IdsOf(offer(clients, 1, {}, 500)), Ids({500}));

    // Store operations: only the type made by orders is offered, deliveries and write-offs never.
    rows = offer(objects, 2, {}, {});
    ASSERT_EQ(IdsOf(rows), Ids({500}));
    EXPECT_EQ(rows[0].value("OBJNAME").toString(), "S-500");
    EXPECT_NEAR(rows[0].value("PAYDIFF").toDouble(), 120.0, 1e-3);
    EXPECT_TRUE(offer(objects, 2, {}, 501).isEmpty());
    EXPECT_TRUE(offer(objects, 2, 502, {}).isEmpty());
    EXPECT_TRUE(offer(objects, 3, {}, {}).isEmpty());
    EXPECT_TRUE(offer(clients, 3, {}, {}).isEmpty());
    // The customers' list of store payments has no type test and ignores the chosen customer.
    EXPECT_EQ(IdsOf(offer(clients, 2, {}, {})), Ids({501, 502}));
    EXPECT_EQ(IdsOf(offer(clients, 2, 500, {})), Ids({501, 502}));

    Pay(2, 2, 501, 500, 120.0, 1);
    EXPECT_EQ(Int("select PAYSTATUS from STOREMAT where ID = 500"), 3);
    EXPECT_TRUE(offer(objects, 2, {}, {}).isEmpty());
    rows = offer(objects, 2, {}, 500);
    ASSERT_EQ(IdsOf(rows), Ids({500}));
    EXPECT_NEAR(rows[0].value("PAYDIFF").toDouble(), 0.0, 1e-6);
    EXPECT_EQ(IdsOf(offer(clients, 2, {}, {})), Ids({502}));
    EXPECT_EQ(IdsOf(offer(clients, 2, {}, 500)), Ids({501}));

    // The purposes of a direction, or all of them.
    EXPECT_EQ(IdsOf(Select("select * from spPurposeOpen(:IDPAYTYPE)", {{"IDPAYTYPE", 2}})), Ids({2}));
    EXPECT_EQ(IdsOf(Select("select * from spPurposeOpen(:IDPAYTYPE)", {{"IDPAYTYPE", QVariant()}})), Ids({1, 2}));
}

TEST_F(ProcPayments, CashJournalFiltersAndSoftDeletion)
{
    Run({"insert into CUST (ID, CUSTNAME) values (600, 'Орлова Анна')",
         "insert into CUST (ID, CUSTNAME) values (601, 'Зайцев')",
         "insert into ORDERS (ID, NUM, IDCUST) values (600, 'Z-600', 600)",
         "update ORDERS set SUMORDER = 500 where ID = 600"});
    const int p1 = Pay(1, 1, 600, 600, 100.0, 2);
    const int p2 = Pay(2, 2, 601, QVariant(), 50.0, 1, "Касса-7");
    const int p3 = Call("spPayEmpty").toInt();
    EXPECT_EQ(db.Scalar(QString("select PAYNUM from PAY where ID = %1").arg(p3)).toString(),
              QString("PAY-%1").arg(10000 + p3));

    const QString sql = "select * from spPayOpen(:F_DATE_UP, :F_DATE_TO, :F_PAYNUM, :F_PTYPE, :F_PURPOSE, :F_CUST, "
                        ":F_OBJ, :F_SUMM, :F_NAL, :F_DEL)";
    const QVariantMap none{{"F_DATE_UP", {}}, {"F_DATE_TO", {}}, {"F_PAYNUM", "%%"}, {"F_PTYPE", {}},
                           {"F_PURPOSE", {}}, {"F_CUST", "%%"},  {"F_OBJ", {}},      {"F_SUMM", {}},
                           {"F_NAL", {}},     {"F_DEL", {}}};
    auto journal = [&](const QVariantMap &changes) { return IdsOf(With(sql, none, changes)); };

    const QList<Row> all = With(sql, none, {});
    EXPECT_EQ(IdsOf(all), Ids({p1, p2, p3}));
    const Row first = RowOf(all, p1);
    EXPECT_EQ(first.value("PAY_DATE").toDateTime().date(), QDate::currentDate());
    EXPECT_EQ(first.value("OBJTEXT").toString(), "Z-600");
    EXPECT_EQ(first.value("IDOBJ_LKP_OBJECT_F_OBJNAME").toInt(), 600);
    EXPECT_EQ(first.value("NAME_LKP_NAL_F_NAME").toString(), "2");
    EXPECT_NEAR(first.value("SUMM").toDouble(), 100.0, 1e-4);

    const QDate today = QDate::currentDate();
    EXPECT_EQ(journal({{"F_DATE_UP", today}, {"F_DATE_TO", today}}), Ids({p1, p2, p3}));
    EXPECT_EQ(journal({{"F_DATE_TO", today.addDays(-1)}}), Ids());
    EXPECT_EQ(journal({{"F_PAYNUM", "%касса%"}}), Ids({p2}));
    EXPECT_EQ(journal({{"F_PAYNUM", "%pay-%"}}), Ids({p1, p3}));
    // Rows without a customer, type, purpose or form always pass.
    EXPECT_EQ(journal({{"F_CUST", "%орлова%"}}), Ids({p1, p3}));
    EXPECT_EQ(journal({{"F_PTYPE", 1}}), Ids({p1, p3}));
    EXPECT_EQ(journal({{"F_PURPOSE", 2}}), Ids({p2, p3}));
    EXPECT_EQ(journal({{"F_NAL", 1}}), Ids({p2, p3}));
    EXPECT_EQ(journal({{"F_OBJ", 999}, {"F_SUMM", 1.0}}), Ids({p1, p2, p3}));

    // A cancelled payment leaves the journal but still counts as paid.
    Call("spPayDel", {p1});
    EXPECT_EQ(journal({}), Ids({p2, p3}));
    EXPECT_EQ(journal({{"F_DEL", 0}}), Ids({p2, p3}));
    EXPECT_EQ(journal({{"F_DEL", 1}}), Ids({p1}));
    EXPECT_NEAR(Real("select SUMPAY from ORDERS where ID = 600"), 100.0, 1e-4);
    EXPECT_EQ(Int("select PAYSTATE from ORDERS where ID = 600"), 2);

    // The customer's history keeps cancelled payments, marked.
    const QList<Row> history = Select("select * from spCustPayOpen(:IDCUST)", {{"IDCUST", 600}});
    ASSERT_EQ(IdsOf(history), Ids({p1}));
    EXPECT_EQ(history[0].value("DEL").toInt(), 1);
    EXPECT_EQ(history[0].value("PAYNUM").toString(), QString("PAY-%1").arg(10000 + p1));
}

TEST_F(ProcSalary, PeriodSetsAccrualsOfClosedOrdersAgainstPayouts)
{
    Run({"insert into EMPLS (ID, EMPLNAME, IDESTAT, PERCSERV, PERCMAT) values (700, 'Иванов', 1, 30, 5)",
         "insert into EMPLS (ID, EMPLNAME, IDESTAT, PERCSERV) values (701, 'Петров', 1, 10)",
         "insert into EMPLS (ID, EMPLNAME, IDESTAT) values (702, 'Сидоров', 1)",
         "insert into EMPLS (ID, EMPLNAME, IDESTAT) values (703, 'Уволенный', 2)",
         "insert into SERV (ID, SERVNAME, COST, HOURS) values (700, 'Ремонт', 1000, 1)",
         "insert into SERV (ID, SERVNAME, COST, HOURS) values (701, 'Осмотр', 500, 1)",
         "insert into MAT (ID, MATNAME, COST, QUANTITY) values (700, 'Фильтр', 200, 100)",
         // closed in the middle of May
         "insert into ORDERS (ID, IDSTATUS, STATUS_DATE) values (700, 6, '2024-05-10 14:00:00')",
         "insert into ORDSERV (IDORDER, IDSERV, IDEMPL) values (700, 700, 700)",
         "insert into ORDSERV (IDORDER, IDSERV, IDEMPL) values (700, 701, 701)",
         "insert into ORDMAT (IDORDER, IDMAT, OCNT, IDEMPL) values (700, 700, 1, 700)",
         "insert into ORDMAT (IDORDER, IDMAT, OCNT, IDEMPL) values (700, 700, 1, 701)",
         // closed in the evening of the period's last day
         "insert into ORDERS (ID, IDSTATUS, STATUS_DATE) values (701, 6, '2024-05-31 18:00:00')",
         "insert into ORDSERV (IDORDER, IDSERV, IDEMPL) values (701, 700, 700)",
         // still open
         "insert into ORDERS (ID, IDSTATUS, STATUS_DATE) values (702, 5, '2024-05-15 10:00:00')",
         "insert into ORDSERV (IDORDER, IDSERV, IDEMPL) values (702, 700, 700)",
         // closed the morning after the period
         "insert into ORDERS (ID, IDSTATUS, STATUS_DATE) values (703, 6, '2024-06-01 10:00:00')",
         "insert into ORDSERV (IDORDER, IDSERV, IDEMPL) values (703, 701, 700)"});
    ASSERT_NEAR(Real("select SUMM from ORDSERV where IDORDER = 700 and IDEMPL = 700"), 1000.0, 1e-3);

    auto payout = [&](const QDateTime &when, int empl, double sum) {
        const int id = Call("spSalaryEmpty").toInt();
        Call("spSalaryEdit", {id, QString("V-%1").arg(id), when, empl, sum, "аванс"});
        return id;
    };
    payout(At(2024, 5, 20, 12), 700, 100.0);
    payout(At(2024, 5, 5, 9), 702, 70.0);
    payout(At(2024, 4, 30, 17), 700, 40.0);
    payout(At(2024, 5, 31, 23), 701, 25.0);

    const QVariantMap may{{"F_DATE_UP", QDate(2024, 5, 1)}, {"F_DATE_TO", QDate(2024, 5, 31)}};
    const QVariantMap ever{{"F_DATE_UP", QVariant()}, {"F_DATE_TO", QVariant()}};

    // One row per line with an employee, by its own percentage; a null percentage gives a null amount.
    const QList<Row> detail = Select("select * from spOrdersDetail(:F_DATE_UP, :F_DATE_TO)", may);
    std::multimap<std::pair<int, QString>, QVariant> lines;
    for (const Row &r : detail) {
        lines.emplace(std::make_pair(r.value("IDEMPL_LKP_EMPL_F_EMPLNAME").toInt(), r.value("COMMENT").toString()),
                      r.value("SUMM"));
        EXPECT_TRUE(r.value("ID").isNull());
        EXPECT_TRUE(r.value("PAYNUM").isNull());
        EXPECT_EQ(r.value("PAY_DATE").toDateTime().date(), QDate(2024, 5, 31));
    }
    QStringList found;
    for (const auto &[key, sum] : lines)
        found << QString("%1 %2 %3").arg(key.first).arg(key.second, sum.isNull() ? "null" : sum.toString());
    EXPECT_EQ(found.join(", "), "700 MAT 10, 700 SERV 300, 700 SERV 300, 701 MAT null, 701 SERV 50");

    const QList<Row> paid = Select("select * from spSalaryDetail(:F_DATE_UP, :F_DATE_TO)", may);
    EXPECT_EQ(IdsOf(paid, "IDEMPL_LKP_EMPL_F_EMPLNAME"), Ids({700, 701, 702}));
    for (const Row &r : paid) {
        EXPECT_TRUE(r.value("ID").isNull());
        if (r.value("IDEMPL_LKP_EMPL_F_EMPLNAME").toInt() == 700)
            EXPECT_NEAR(r.value("SUMM").toDouble(), 100.0, 1e-4);
    }

    auto debts = [&](const QVariantMap &period) {
        std::map<int, double> result;
        for (const Row &r : Select("select * from spSalaryMain(:F_DATE_UP, :F_DATE_TO)", period)) {
            EXPECT_TRUE(r.value("ID").isNull());
            EXPECT_TRUE(r.value("PAY_DATE").isNull());
            result[r.value("IDEMPL_LKP_EMPL_F_EMPLNAME").toInt()] = r.value("SUMM").toDouble();
        }
        return result;
    };
    // Every employee, the dismissed one too; payouts alone give a negative debt.
    std::map<int, double> d = debts(may);
    ASSERT_EQ(d.size(), 4u);
    EXPECT_NEAR(d[700], 10 + 300 + 300 - 100, 1e-2);
    EXPECT_NEAR(d[701], 50 - 25, 1e-2);
    EXPECT_NEAR(d[702], -70, 1e-2);
    EXPECT_NEAR(d[703], 0, 1e-6);

    // Without dates all accruals meet all payouts.
    d = debts(ever);
    EXPECT_NEAR(d[700], 10 + 300 + 300 + 150 - 100 - 40, 1e-2);
    EXPECT_NEAR(d[701], 25, 1e-2);

    // Percentages are read now, so a change reaches back; a reopened order drops out.
    db.Exec("update EMPLS set PERCSERV = 20 where ID = 701");
    EXPECT_NEAR(debts(may)[701], 100 - 25, 1e-2);
    db.Exec("update ORDERS set IDSTATUS = 5 where ID = 700");
    d = debts(may);
    EXPECT_NEAR(d[700], 300 - 100, 1e-2);
    EXPECT_NEAR(d[701], -25, 1e-2);

    // The payouts journal: dates up to the end of the last day, the employee's name as a text filter.
    const QString journal = "select * from spSalaryOpen(:F_DATE_UP, :F_DATE_TO, :F_EMPLNANE)";
    QVariantMap p = may;
    p["F_EMPLNANE"] = "%%";
    EXPECT_EQ(IdsOf(Select(journal, p), "IDEMPL_LKP_EMPL_F_EMPLNAME"), Ids({700, 701, 702}));
    p["F_EMPLNANE"] = "%иванов%";
    const QList<Row> ivanov = Select(journal, p);
    ASSERT_EQ(ivanov.size(), 1);
    EXPECT_NEAR(ivanov[0].value("SUMM").toDouble(), 100.0, 1e-4);
    EXPECT_EQ(ivanov[0].value("PAY_DATE").toDateTime().toString("yyyy-MM-dd hh:mm"), "2024-05-20 12:00");
    EXPECT_EQ(ivanov[0].value("PAYNUM").toString(), QString("V-%1").arg(ivanov[0].value("ID").toInt()));
    EXPECT_EQ(ivanov[0].value("COMMENT").toString(), "аванс");
}

TEST_F(ProcFilters, CustomerListsSearchCaseBlindAndRepeatPerVehicle)
{
    Run({"insert into CUST (ID, CUSTNAME, MOBI_PHONE, ADDRESS) values (800, 'ИВАНОВ Иван', '111-22', 'г. Москва')",
         "insert into CUST (ID, CUSTNAME, MOBI_PHONE) values (801, 'Петрова', '333')",
         "insert into CUST (ID, CUSTNAME, ADDRESS) values (802, 'Сидоров', 'Тула')",
         "insert into AUTO (ID, REG, MODNAME, MARK) values (800, 'А800АА', 1, 1)",
         "insert into AUTO (ID, REG, MODNAME, MARK) values (801, 'К801КК', 2, 2)",
         "insert into ORDERS (ID, IDCUST, IDAUTO) values (800, 802, 800)",
         "insert into ORDERS (ID, IDCUST, IDAUTO) values (801, 802, 801)",
         "insert into ORDERS (ID, IDCUST, IDAUTO) values (802, 802, 800)"});
    const int nameless = Call("spCustEmpty").toInt();

    const QString sql = "select * from spCustOpen(:F_CUSTNAME, :F_PHONE, :F_ADDRESS, :F_REG, :F_MODNAME, :F_MARK)";
    const QVariantMap none{{"F_CUSTNAME", "%%"}, {"F_PHONE", "%%"}, {"F_ADDRESS", "%%"},
                           {"F_REG", "%%"},      {"F_MODNAME", {}}, {"F_MARK", {}}};
    auto list = [&](const QVariantMap &changes) { return IdsOf(With(sql, none, changes)); };

    // Row 1 is the shop and is never listed; a customer shows once per vehicle he came with.
    EXPECT_EQ(list({}), Sorted({800, 801, 802, 802, nameless}));
    EXPECT_EQ(IdsOf(Select(sql)), Sorted({800, 801, 802, 802, nameless}));
    EXPECT_EQ(list({{"F_CUSTNAME", "%иванов%"}}), Sorted({800, nameless}));
    EXPECT_EQ(list({{"F_CUSTNAME", "%ИВАНОВ_иван%"}}), Sorted({800, nameless}));
    EXPECT_EQ(list({{"F_PHONE", "%111%"}}), Sorted({800, 802, 802, nameless}));
    // A text filter cannot drop a row whose column is null.
    EXPECT_EQ(list({{"F_ADDRESS", "%москва%"}}), Sorted({800, 801, nameless}));
    EXPECT_EQ(list({{"F_REG", "%к801%"}}), Sorted({800, 801, 802, nameless}));
    // Model and make filters drop customers without orders.
    EXPECT_EQ(list({{"F_MODNAME", 2}}), Sorted({802}));
    EXPECT_EQ(list({{"F_MARK", 1}}), Sorted({802}));

    const QString dialog = "select * from spCustDialog(:F_CUSTNAME, :F_PHONE, :F_ADDRESS)";
    const QList<Row> chosen = Select(dialog, {{"F_CUSTNAME", "%%"}, {"F_PHONE", "%%"}, {"F_ADDRESS", "%%"}});
    EXPECT_EQ(IdsOf(chosen), Sorted({1, 800, 801, 802, nameless}));
    EXPECT_EQ(IdsOf(Select(dialog, {{"F_CUSTNAME", "%сидор%"}, {"F_PHONE", "%%"}, {"F_ADDRESS", "%%"}})),
              Sorted({802, nameless}));
}

TEST_F(ProcFilters, VehicleListFallsBackToTheRegistrationForEmptyTextFilters)
{
    Run({"insert into AUTO (ID, TYPE, MODNAME, MARK, AYEAR, REG, VIN, COLNAME) "
         "values (800, 1, 1, 1, 1, 'А800АА', 'WVW800', 'Серый')",
         "insert into AUTO (ID, TYPE, MODNAME, MARK, REG) values (801, 2, 2, 2, 'К801КК')",
         "insert into AUTO (ID, REG, DEL) values (802, 'М802ММ', 1)",
         "insert into AUTO (ID, REG, VIN) values (803, 'О803ОО', 'О803ОО')"});
    const QString sql = "select * from spAutoOpen(:F_TYPE, :F_MODNAME, :F_MARK, :F_REG, :F_YEAR, :F_VIN, :F_DRIVE, "
                        ":F_COLNAME, :F_DEL)";
    const QVariantMap none{{"F_TYPE", {}}, {"F_MODNAME", {}}, {"F_MARK", {}},    {"F_REG", "%%"},    {"F_YEAR", {}},
                           {"F_VIN", "%%"}, {"F_DRIVE", "%%"}, {"F_COLNAME", "%%"}, {"F_DEL", {}}};
    auto list = [&](const QVariantMap &changes) { return IdsOf(With(sql, none, changes)); };

    EXPECT_EQ(list({}), Ids({800, 801, 803}));
    // A null VIN filter compares the VIN with the vehicle's own number.
    EXPECT_EQ(list({{"F_VIN", QVariant()}}), Ids({801, 803}));
    EXPECT_EQ(list({{"F_COLNAME", QVariant()}}), Ids({801, 803}));
    EXPECT_EQ(list({{"F_VIN", "%wvw%"}}), Ids({800, 801}));
    EXPECT_EQ(list({{"F_REG", "%к801%"}}), Ids({801}));
    // Key filters drop vehicles whose key is null.
    EXPECT_EQ(list({{"F_MARK", 2}}), Ids({801}));
    EXPECT_EQ(list({{"F_TYPE", 1}}), Ids({800}));
    EXPECT_EQ(list({{"F_YEAR", 1}}), Ids({800}));
    EXPECT_EQ(list({{"F_DEL", 1}}), Ids({802}));
    EXPECT_EQ(list({{"F_DEL", 0}}), Ids({800, 801, 803}));
}

TEST_F(ProcFilters, CatalogueListsPassRowsWithoutTheFilteredValue)
{
    Run({"insert into CMAT (ID, CMATNAME) values (800, 'Шины')",
         "insert into CMAT (ID, CMATNAME) values (801, 'Дворники')",
         "insert into MAT (ID, MATNAME, IDCMAT, ARTICUL, SCODE, QUANTITY) values (800, 'Шина летняя', 800, 'S-195', '001', 0)",
         "insert into MAT (ID, MATNAME, QUANTITY) values (801, 'Масло моторное', 0)",
         "insert into MAT (ID, MATNAME, IDCMAT, ARTICUL, QUANTITY) values (802, 'Щетка', 801, 'B-1', 0)",
         "insert into CSERV (ID, CSERVNAME) values (800, 'Шиномонтаж')",
         "insert into SERV (ID, SERVNAME, IDCSERV) values (800, 'Снятие колеса', 800)",
         "insert into SERV (ID, SERVNAME, SERVART) values (801, 'Мойка', 'M-1')",
         "insert into EMPLS (ID, EMPLNAME, IDPOS, IDESTAT, PHONES) values (810, 'Смирнов', 1, 1, '555')",
         "insert into EMPLS (ID, EMPLNAME, IDPOS, IDESTAT) values (811, 'Кузнецов', 2, 2)",
         "insert into EMPLS (ID, EMPLNAME) values (812, 'Новиков')"});
    const QVariantMap matNone{{"F_MATNAME", "%%"}, {"F_CATEGORY", "%%"}, {"F_ARTICUL", "%%"}, {"F_SCODE", "%%"}};
    for (const QString proc : {"spMatOpen", "spMatDialog"}) {
        SCOPED_TRACE(proc.toStdString());
        const QString sql = "select * from " + proc + "(:F_MATNAME, :F_CATEGORY, :F_ARTICUL, :F_SCODE)";
        auto list = [&](const QVariantMap &changes) { return IdsOf(With(sql, matNone, changes)); };
        EXPECT_EQ(list({}), Ids({800, 801, 802}));
        EXPECT_EQ(list({{"F_CATEGORY", "%шин%"}}), Ids({800, 801}));
        EXPECT_EQ(list({{"F_MATNAME", "%МАСЛО%"}}), Ids({801}));
        EXPECT_EQ(list({{"F_ARTICUL", "%s-1%"}}), Ids({800, 801}));
        EXPECT_EQ(list({{"F_SCODE", "%002%"}}), Ids({801, 802}));
    }

    const QString serv = "select * from spServOpen(:F_SERVNAME, :F_CATEGORY, :F_SERVART, :F_SERVCODE)";
    const QVariantMap servNone{{"F_SERVNAME", "%%"}, {"F_CATEGORY", "%%"}, {"F_SERVART", "%%"}, {"F_SERVCODE", "%%"}};
    EXPECT_EQ(IdsOf(With(serv, servNone, {{"F_CATEGORY", "%монтаж%"}})), Ids({800, 801}));
    EXPECT_EQ(IdsOf(With(serv, servNone, {{"F_SERVNAME", "%мойка%"}})), Ids({801}));

    const QString empl = "select * from spEmplOpen(:F_EMPLNAME, :F_POS, :F_ESTAT, :F_ADDRESS, :F_PHONES)";
    const QVariantMap emplNone{{"F_EMPLNAME", "%%"}, {"F_POS", {}}, {"F_ESTAT", {}}, {"F_ADDRESS", "%%"},
                               {"F_PHONES", "%%"}};
    EXPECT_EQ(IdsOf(With(empl, emplNone, {})), Ids({810, 811, 812}));
    EXPECT_EQ(IdsOf(With(empl, emplNone, {{"F_EMPLNAME", "%смирн%"}})), Ids({810}));
    // Employee keys keep rows with a null key.
    EXPECT_EQ(IdsOf(With(empl, emplNone, {{"F_POS", 1}})), Ids({810, 812}));
    EXPECT_EQ(IdsOf(With(empl, emplNone, {{"F_ESTAT", 2}})), Ids({811, 812}));
    EXPECT_EQ(IdsOf(With(empl, emplNone, {{"F_PHONES", "%777%"}})), Ids({811, 812}));
}

TEST_F(ProcFilters, StoreJournalShowsLinesAndTheCardOneOperation)
{
    Run({"insert into MAT (ID, MATNAME, ARTICUL, QUANTITY, COST) values (820, 'Шина зимняя', 'W-1', 0, 100)",
         "insert into MAT (ID, MATNAME, QUANTITY, COST) values (821, 'Масло', 0, 10)",
         "insert into CUST (ID, CUSTNAME) values (820, 'Шинторг')",
         "insert into STOREMAT (ID, NUM, IDOTYPE, OPER_DATE, IDCUST) values (820, 'D-1', 1, '2024-04-10 10:00:00', 820)",
         "insert into STORE (ID, IDSTOREMAT, IDMAT, QUANTITY, PRICEBUY, PRICESELL) values (820, 820, 820, 4, 50, 80)",
         "insert into STORE (ID, IDSTOREMAT, IDMAT, QUANTITY, PRICEBUY, PRICESELL) values (821, 820, 821, 2, 5, 8)",
         "insert into STORE (ID, IDSTOREMAT) values (822, 820)",
         "insert into STOREMAT (ID, NUM, IDOTYPE, OPER_DATE, IDCUST) values (821, 'W-1', 3, '2024-04-20 10:00:00', 1)",
         "insert into STORE (ID, IDSTOREMAT, IDMAT, QUANTITY) values (823, 821, 820, 1)"});
    EXPECT_EQ(Int("select QUANTITY from MAT where ID = 820"), 3);

    const QString sql = "select * from spStoreOpen(:F_DATE_UP, :F_DATE_TO, :F_OTYPE, :F_ARTICUL, :F_CODE, :F_NAME, "
                        ":F_IDCUST, :F_DEL)";
    // The store journal's text boxes send the text and "%".
    const QVariantMap none{{"F_DATE_UP", {}}, {"F_DATE_TO", {}}, {"F_OTYPE", {}}, {"F_ARTICUL", "%"},
                           {"F_CODE", "%"},   {"F_NAME", "%"},   {"F_IDCUST", {}}, {"F_DEL", {}}};
    auto list = [&](const QVariantMap &changes) { return IdsOf(With(sql, none, changes)); };

    const QList<Row> all = With(sql, none, {});
    EXPECT_EQ(IdsOf(all), Ids({820, 821, 822, 823}));
    const Row tyres = RowOf(all, 820);
    EXPECT_EQ(tyres.value("SYS_IDSTOREMAT").toInt(), 820);
    EXPECT_EQ(tyres.value("NUM").toString(), "D-1");
    EXPECT_EQ(tyres.value("ARTICUL").toString(), "W-1");
    EXPECT_EQ(tyres.value("IDCUST_LKP_CUST_F_CUSTNAME").toInt(), 820);
    EXPECT_NEAR(tyres.value("SUMMBUY").toDouble(), 200.0, 1e-3);
    EXPECT_NEAR(tyres.value("SUMMSELL").toDouble(), 320.0, 1e-3);

    // A line without a material passes every text filter.
    EXPECT_EQ(list({{"F_NAME", "шина%"}}), Ids({820, 822, 823}));
    EXPECT_EQ(list({{"F_OTYPE", 3}}), Ids({823}));
    EXPECT_EQ(list({{"F_IDCUST", 820}}), Ids({820, 821, 822}));
    EXPECT_EQ(list({{"F_DATE_UP", QDate(2024, 4, 15)}}), Ids({823}));
    EXPECT_EQ(list({{"F_DATE_TO", QDate(2024, 4, 10)}}), Ids({820, 821, 822}));

    // The card shows the whole operation of any of its lines, without blank and deleted lines.
    EXPECT_EQ(IdsOf(Select("select * from spStoreMatOpen(:IDSTORE)", {{"IDSTORE", 822}})), Ids({820, 821}));
    EXPECT_TRUE(Select("select * from spStoreMatOpen(:IDSTORE)", {{"IDSTORE", 99999}}).isEmpty());

    // Deleting a line twice moves stock once; the line then shows only among deleted ones.
    Call("spStoreDel", {821});
    Call("spStoreMatDel", {821});
    EXPECT_EQ(Int("select QUANTITY from MAT where ID = 821"), 0);
    EXPECT_EQ(list({{"F_DEL", 1}}), Ids({821}));
    EXPECT_EQ(list({{"F_DEL", 0}}), Ids({820, 822, 823}));
    EXPECT_EQ(IdsOf(Select("select * from spStoreMatOpen(:IDSTORE)", {{"IDSTORE", 820}})), Ids({820}));
    // Taking back a delivered line that was already used is refused by the balance.
    EXPECT_EQ(UserText([&] { Call("spStoreDel", {820}); }), "На складе недостаточно данного материала.");
    EXPECT_EQ(Int("select coalesce(DEL, 0) from STORE where ID = 820"), 0);

    // Closing the card clears its blank lines only.
    Call("spStoreEmptyDel", {820});
    EXPECT_EQ(Int("select count(*) from STORE where ID = 822"), 0);
    EXPECT_EQ(Int("select count(*) from STORE where IDSTOREMAT = 820"), 2);
}
