// The procedures behind the journals and cards: the order card's save with its vehicle and customer, deletion by
// state, the line grids, what the payment card may choose, the debt to employees for a period, and the filters of
// every journal and list.
#include "database_test.h"

#include <gtest/gtest.h>

namespace {

using Values = QMap<QString, QString>;

class ProcJournals : public DeployedDatabaseTest
{
protected:
    // A procedure's inputs as SQL values in their order: those named in `values`, text ones "%%" when `blank`
    // (what an empty filter box sends), the rest null.
    QString Args(const QString &procedure, const Values &values, bool blank = true)
    {
        QStringList args;
        const QString params = Rows("select trim(p.RDB$PARAMETER_NAME) || ':' || f.RDB$FIELD_TYPE from "
                                    "RDB$PROCEDURE_PARAMETERS p join RDB$FIELDS f on f.RDB$FIELD_NAME = p.RDB$FIELD_SOURCE "
                                    "where p.RDB$PARAMETER_TYPE = 0 and p.RDB$PROCEDURE_NAME = upper('" + procedure +
                                    "') order by p.RDB$PARAMETER_NUMBER");
        for (const QString &param : params.split(QStringLiteral("; "), Qt::SkipEmptyParts))
            args << values.value(param.section(':', 0, 0), blank && param.endsWith(":37") ? "'%%'" : "null");
        return args.join(QStringLiteral(", "));
    }
    // `columns` of a journal opened with some filters, in the order of the first column.
    QString Open(const QString &procedure, const Values &filters = {}, const QString &columns = "ID")
    {
        return Rows("select " + columns + " from " + procedure + "(" + Args(procedure, filters) + ") order by 1");
    }
    void Filters(const QString &procedure, const QList<std::pair<Values, QString>> &cases)
    {
        for (const auto &[filters, ids] : cases)
            EXPECT_EQ(Open(procedure, filters), ids) << (procedure + "(" + Args(procedure, filters) + ")").toStdString();
    }
};

const QString kNotEnough = QStringLiteral("На складе недостаточно данного материала.");

} // namespace

TEST_F(ProcJournals, OrderCardSaveUpsertsVehicleAndCustomerThenWritesTheOrder)
{
    const Values card{{"OLD_ID", "1"}, {"NUM", "'З-1'"}, {"CREATE_DATE", "'2024-03-10 09:00'"},
                      {"IDSTATUS_LKP_OSTATE_F_STATENAME", "1"}, {"DLG_IDCUST", "'Петров П.П.'"}, {"MOBI_PHONE", "'900'"},
                      {"ADDRESS", "'Ленина, 5'"}, {"TYPE_LKP_ATYPE_F_ATYPENAME", "1"}, {"MODEL_LKP_MODEL_F_MODNAME", "1"},
                      {"MARK_LKP_MARK_F_MARKNAME", "1"}, {"REG", "'А123ВС77'"}, {"YEAR_LKP_AYEAR_F_AYEARNAME", "5"},
                      {"VIN", "'VIN-A'"}, {"DRIVE", "'2WD'"}, {"COLNAME", "'Серый'"}, {"DISCOUNT", "5"}, {"RETURNZP", "1"},
                      {"GUARANTEE", "6"}, {"SUMORDER", "999"}, {"SUMPAY", "999"}, {"COMMENT", "'Замена масла'"}};
    auto save = [&](const Values &changes) {
        Values values = card;
        values.insert(changes);
        return "spOrderEdit(" + Args("spOrderEdit", values, false) + ")";
    };
    Values again{{"OLD_ID", "2"}, {"NUM", "'З-2'"}, {"CREATE_DATE", "'2024-03-20 11:00'"}, {"SYS_IDCUST", "0"},
                 {"SYS_IDAUTO", "0"}, {"MOBI_PHONE", "'901'"}, {"COLNAME", "'Белый'"}};
    const QString people = "select (select count(*) || ' ' || list(CUSTNAME || ' ' || MOBI_PHONE) from CUST where ID > 1) "
                           "|| ' / ' || (select count(*) || ' ' || list(COLNAME) from AUTO) from RDB$DATABASE";
    // Money is the triggers' business; what the card sends for it is dropped.
    Expect({{"spOrderEmpty", "1"}, {save({}), "1"}, {people, "1 Петров П.П. 900 / 1 Серый"},
            {"select * from spOrderOpen(null, null, null, null, '%%', null, '%%', null, null, null)",
             "1|З-1|2024-03-10 09:00|null|1|1|2|Петров П.П.|900|Ленина, 5|1|А123ВС77 Легковой Passat Volkswagen|1|1|"
             "Passat|1|А123ВС77|5|VIN-A|2WD|Серый|5|1|6|null|0|Замена масла"},
            // The same name and number typed on a new card bind to the old rows and overwrite them.
            {"spOrderEmpty", "2"}, {save(again), "2"}, {people, "1 Петров П.П. 901 / 1 Белый"},
            {"select ID, NUM, IDCUST, IDAUTO from ORDERS order by ID", "1|З-1|2|1; 2|З-2|2|1"}});
    // With the keys given, a changed name renames the same customer; his history is newest first.
    again.insert(Values{{"SYS_IDCUST", "2"}, {"SYS_IDAUTO", "1"}, {"DLG_IDCUST", "'Петров Пётр'"}});
    Fill("CUST (ID, CUSTNAME)", {"100, 'Двойник'", "101, 'Двойник'"});
    Expect({{save(again), "2"}, {people, "3 Петров Пётр 901 / 1 Белый"}, {"select ID from spCustOrderOpen(2)", "2; 1"},
            // A name held by two customers breaks the save with the server's error; the order stays as it was.
            {save({{"DLG_IDCUST", "'Двойник'"}, {"COMMENT", "'не сохранится'"}}), "~multiple rows in singleton select"},
            {"select COMMENT from ORDERS where ID = 1", "Замена масла"},
            // An unknown key is inserted under that key; a null one takes the generator and the trigger's number.
            {save({{"OLD_ID", "5000"}, {"NUM", "'З-5000'"}}), "5000"}, {save({{"OLD_ID", "null"}, {"NUM", "null"}}), "3"},
            {"select ID, NUM from ORDERS where ID > 2 order by ID", "3|P-80003; 5000|З-5000"}});
}

TEST_F(ProcJournals, OrderJournalFiltersKeepTheirOwnForms)
{
    Fill("CUST (ID, CUSTNAME)", {"200, 'Алексеев'", "201, 'Борисов'"});
    Fill("AUTO (ID, MARK, MODNAME, REG)", {"200, 1, 1, 'А111АА'", "201, 2, 2, 'В222ВВ'", "202, null, null, null"});
    Fill("ORDERS (ID, NUM, CREATE_DATE, IDSTATUS, IDCUST, IDAUTO, DEL)",
         {"200, 'Z-200', '2024-03-10 09:00', 1, 200, 200, null", "201, 'Z-201', '2024-03-15 18:30', 3, 201, 201, null",
          "202, 'z-202', '2024-03-16 08:00', 5, 200, 202, null", "203, 'Z-203', '2024-03-12 12:00', 6, 201, 201, null",
          "204, 'Z-204', '2024-03-11 10:00', 2, null, null, 1", "205, null, '2024-03-13 10:00', null, null, null, null",
          "206, 'Z-206', null, 1, null, null, null"});
    // What the insert fills in is taken away again.
    Expect({{"update ORDERS set NUM = null, IDSTATUS = null where ID = 205"},
            {"update ORDERS set CREATE_DATE = null where ID = 206"},
            {"update ORDERS set SUMORDER = 100, SUMPAY = 150 where ID = 201"}});
    Filters("spOrderOpen",
            {// A row without a creation date never passes; one without number or state always does.
             {{}, "200; 201; 202; 203; 205"}, {{{"F_IDORDER", "201"}}, "200; 201; 202; 203; 205"},
             // Whole days, the last one included up to its midnight.
             {{{"F_DATE_UP", "'2024-03-10'"}, {"F_DATE_TO", "'2024-03-15'"}}, "200; 201; 203; 205"},
             {{{"F_DATE_UP", "'2024-03-16'"}}, "202"}, {{{"F_DATE_TO", "'2024-03-12'"}}, "200; 203"},
             // 7 is every open state; any other value is that state; a null state passes all.
             {{{"F_IDOSTATE", "7"}}, "200; 201; 202; 205"}, {{{"F_IDOSTATE", "6"}}, "203; 205"},
             // Number and registration are plain case-sensitive patterns; null matches only a null column.
             {{{"F_NUM", "null"}}, "205"}, {{{"F_NUM", "'%z-20%'"}}, "202; 205"}, {{{"F_REG", "null"}}, "202; 205"},
             {{{"F_REG", "'%А111%'"}}, "200; 202; 205"}, {{{"F_REG", "'%а111%'"}}, "202; 205"},
             // Keys keep rows whose key is null; deleted rows only on request, and then only they.
             {{{"F_IDCUST", "200"}}, "200; 202; 205"}, {{{"F_IDMARK", "2"}}, "201; 202; 203; 205"},
             {{{"F_IDMODEL", "1"}}, "200; 202; 205"}, {{{"F_DEL", "0"}}, "200; 201; 202; 203; 205"},
             {{{"F_DEL", "1"}}, "204"}});
    // SUMPAY of the journal is what remains to pay: negative when overpaid.
    EXPECT_EQ(Open("spOrderOpen", {{"F_IDCUST", "201"}}, "ID, SUMPAY, DLG_IDCUST, SYS_MOD_NAME"),
              "201|-50|Борисов|Fabia; 203|0|Борисов|Fabia; 205|0|null|null");
}

TEST_F(ProcJournals, DeletionRemovesANewOrderAndMarksAnOpenedOne)
{
    // Orders in states 1, 2, none and 1 again, each with a part, a service and a material line.
    Fill("SERV (ID, SERVNAME, COST, HOURS)", {"300, 'Мойка', 100, 1"});
    Fill("MAT (ID, MATNAME, COST, QUANTITY)", {"300, 'Масло', 50, 10"});
    Fill("CUST (ID, CUSTNAME)", {"300, 'Смирнов'"});
    Fill("AUTO (ID, REG)", {"300, 'Е300КХ'"});
    Fill("ORDERS (ID, IDCUST, IDAUTO)", {"1, 300, 300", "2, 300, 300", "3, 300, 300", "4, 300, 300"});
    Expect({{"update ORDERS set IDSTATUS = decode(ID, 2, 2, 3, null, 1)"}});
    Fill("ORDPARTS (IDORDER, PARTNAME)", {"1, 'Колпак'", "2, 'Колпак'", "3, 'Колпак'", "4, 'Колпак'"});
    Fill("ORDSERV (IDORDER, IDSERV)", {"1, 300", "2, 300", "3, 300", "4, 300"});
    Fill("ORDMAT (IDORDER, IDMAT, OCNT)", {"1, 300, 2", "2, 300, 2", "3, 300, 2", "4, 300, 2"});
    // Per order: its lines, the store lines under its header, its headers, customer, vehicle, mark, number, state, sum.
    const QString lines =
        "select o.ID, (select count(*) from ORDPARTS where IDORDER = o.ID) + (select count(*) from ORDSERV where IDORDER = "
        "o.ID) + (select count(*) from ORDMAT where IDORDER = o.ID), (select count(*) from STORE s join STOREMAT m on m.ID "
        "= s.IDSTOREMAT where m.IDORDER = o.ID), (select count(*) from STOREMAT where IDORDER = o.ID), o.IDCUST, o.IDAUTO, "
        "o.DEL, o.NUM, o.IDSTATUS, o.SUMORDER from ORDERS o order by 1";
    const QString kept = "3|3|1|1|300|300|null|P-80003|null|200; 4|3|1|1|300|300|null|P-80004|1|200";
    // State 1: the order goes with its lines and the store lines they made; the store header stays. Above state 1:
    // the lines go, the order is marked and loses customer and vehicle. Without a state, nothing happens. Any
    // payment, even one cancelled, keeps the order for ever.
    Expect({{lines, "1|3|1|1|300|300|null|P-80001|1|200; 2|3|1|1|300|300|null|P-80002|2|200; " + kept},
            {"spOrderDel(1)"}, {"spOrderDel(2)"}, {"spOrderDel(3)"}, {"spPayEmpty", "1"},
            {"spPayEdit(1, null, null, 1, 1, 300, 4, '', 10, 2, '')", "1"}, {"spPayDel(1)"},
            {"spOrderDel(4)", "Имеются платежи по данному заказу. Удаление запрещено."},
            {lines, "2|0|0|1|null|null|1|P-80002|2|0; " + kept},
            {"select count(*), (select count(*) from STORE s join STOREMAT m on m.ID = s.IDSTOREMAT where m.IDORDER = 1) "
             "from STOREMAT where IDORDER = 1", "1|0"},
            {"select ID from spOrderOpen(null, null, null, null, '%%', null, '%%', null, null, 1)", "2"},
            // A marked order is removed for good by a second delete.
            {"spOrderDel(2)"}, {"select list(ID) from ORDERS", "3,4"}});
}

TEST_F(ProcJournals, LineGridsWorkTheirSumsOutFromThePresentCatalogue)
{
    const QString sum = "select SUMORDER from ORDERS where ID = 1";
    Fill("SERV (ID, SERVNAME, COST, HOURS)", {"400, 'Балансировка', 1000, 2"});
    Fill("MAT (ID, MATNAME, COST, QUANTITY)", {"400, 'Груз', 50, 10"});
    Fill("EMPLS (ID, EMPLNAME)", {"400, 'Мастер 1'", "401, 'Мастер 2'"});
    // Lines as the card adds them, a blank row first; the prices and sums it sends are ignored. The norm of the
    // catalogue shows as OHOURS and the line's hours as HOURS, and the grid cell HOURS goes back as OHOURS.
    Expect({{"spOrderEmpty", "1"}, {"spOrdServEmpty", "1"},
            {"spOrdServEdit(1, 1, 400, 2.5, 99, 1, 1, null, 1, 10, 1, 400)", "1"},
            {"select * from spOrdServOpen(1)", "1|1|400|2|2.5|1000|1250|20|187.5|10|1125|400"}, {sum, "1125"},
            {"spOrdServValuesEdit(1, 3, 0)", "1"}, {"select HOURS, SUMM from spOrdServOpen(1)", "3|1500"},
            {"spOrdMatEmpty", "1"}, {"spOrdMatEdit(1, 1, 400, 3, null, 1, null, 1, 0, null, 400)", "1"},
            {"select * from spOrdMatOpen(1)", "1|1|400|3|50|150|20|25|0|150|400"},
            // A count beyond the stock is refused and nothing moves.
            {"spOrdMatValuesEdit(1, 1, 20, 0)", kNotEnough},
            {"select OCNT, (select QUANTITY from MAT where ID = 400) from ORDMAT", "3|7"},
            {"spOrdMatValuesEdit(1, 1, 4, 10)", "1"},
            {"select OCNT, SUMM, (select QUANTITY from MAT where ID = 400) from spOrdMatOpen(1)", "4|180|6"},
            // The order's discount and master reach service lines only.
            {"spOrdServUpdDiscount(1, 20)"}, {"spOrdServUpdEmployee(1, 401)"},
            {"select DISCOUNT, IDEMPL from ORDSERV union all select DISCOUNT, IDEMPL from ORDMAT", "20|401; 10|400"},
            {sum, "1380"}, {"spOrdServUpdDiscount(1, null)"}, {"select SUMM from spOrdServOpen(1)", "1500"},
            // After a price change the grid reads the new price while the stored total keeps the old one.
            {"update MAT set COST = 60 where ID = 400"}, {"select SUMM0, COST from spOrdMatOpen(1)", "240|50"}, {sum, "1680"},
            // The documents' list: services and materials, with a material's count as OHOURS.
            {"select ID, SERVNAME, OHOURS, HOURS, IDEMPL_LKP_EMPL_F_EMPLNAME from spOrdMatServOpen(1) order by 2",
             "1|Балансировка|2|3|401; 1|Груз|4|1|400"},
            // Blank lines with no order show in every order's grids; the documents drop lines without a service.
            {"spOrderEmpty", "2"}, {"spOrdPartsEmpty", "1"}, {"spOrdServEmpty", "2"}, {"spOrdPartsEmpty", "2"},
            {"spOrdPartsEdit(2, 2, 'Колесо', 1, '')", "2"}, {"select ID from spOrdPartsOpen(2) order by 1", "1; 2"},
            {"select ID from spOrdPartsOpen(1)", "1"}, {"select ID from spOrdPartsOpen(null) order by 1", "1; 2"},
            {"select ID from spOrdServOpen(1) order by 1", "1; 2"}, {"select count(*) from spOrdMatServOpen(1)", "2"},
            // A service name beyond the 32 of the documents' list makes the whole list fail.
            {"update SERV set SERVNAME = '" + QString(33, 'S') + "' where ID = 400"},
            {"select ID from spOrdMatServOpen(1)", "~string right truncation"}});
}

TEST_F(ProcJournals, PaymentCardIsOfferedWhatRemainsToPayAndWhoOwesIt)
{
    Fill("CUST (ID, CUSTNAME)", {"500, 'Орлов'", "501, 'Зайцев'", "502, 'Поставщик'"});
    Fill("ORDERS (ID, NUM, IDCUST)", {"500, 'Z-500', 500", "501, 'Z-501', 500", "502, 'Z-502', 501", "503, 'Z-503', null"});
    Fill("STOREMAT (ID, NUM, IDOTYPE, IDCUST)", {"500, 'S-500', 2, 501", "501, 'S-501', 1, 502", "502, 'S-502', 3, 502"});
    Expect({{"update ORDERS set SUMORDER = decode(ID, 500, 150, 501, 80, 502, 300, 50)"},
            {"update STOREMAT set SUMSTORE = decode(ID, 500, 120, 501, 400, null)"}});
    const QString objects = "select * from spObjectOpen(%1) order by 1";
    const QString clients = "select ID, CUSTNAME from spClientsOpen(%1) order by 1";
    auto pay = [&](const QString &id, const QString &values) {
        Expect({{"spPayEmpty", id}, {"spPayEdit(" + id + ", null, null, " + values + ", '')", id}});
    };
    // Orders with a customer and not paid; a customer narrows them down.
    Expect({{objects.arg("1, null, null"), "500|Z-500|500|150; 501|Z-501|500|80; 502|Z-502|501|300"},
            {objects.arg("1, 500, null"), "500|Z-500|500|150; 501|Z-501|500|80"},
            {clients.arg("1, null, null"), "500|Орлов; 501|Зайцев"}});
    // Two payments of 100 on 150: what remains after the first, nothing offered after the second. Opening a payment
    // on a chosen object shows what has been paid, or null before any payment.
    pay("1", "1, 1, 500, 500, 'текст карты', 100, 2");
    Expect({{"select PAYSTATE, (select OBJTEXT from PAY) from ORDERS where ID = 500", "2|Z-500"},
            {objects.arg("1, 500, null"), "500|Z-500|500|50; 501|Z-501|500|80"}});
    pay("2", "1, 1, 500, 500, 'текст карты', 100, 2");
    Expect({{"select PAYSTATE from ORDERS where ID = 500", "3"}, {objects.arg("1, 500, null"), "501|Z-501|500|80"},
            {objects.arg("1, null, 500"), "500|Z-500|500|200"}, {objects.arg("1, null, 501"), "501|Z-501|500|null"}});
    // A customer whose orders are all paid leaves the list, unless he is the one already chosen. Of store operations
    // only the type made by orders is offered; the customers' list of store payments has no type test and ignores
    // the chosen customer.
    pay("3", "1, 1, 500, 501, 'текст карты', 80, 1");
    Expect({{clients.arg("1, null, null"), "501|Зайцев"}, {clients.arg("1, 500, null"), "500|Орлов; 501|Зайцев"},
            {clients.arg("1, null, 500"), "500|Орлов"}, {objects.arg("2, null, null"), "500|S-500|501|120"},
            {objects.arg("2, null, 501"), ""}, {objects.arg("2, 502, null"), ""}, {objects.arg("3, null, null"), ""},
            {clients.arg("3, null, null"), ""}, {clients.arg("2, null, null"), "501|Зайцев; 502|Поставщик"},
            {clients.arg("2, 500, null"), "501|Зайцев; 502|Поставщик"}});
    pay("4", "2, 2, 501, 500, 'текст карты', 120, 1");
    Expect({{"select PAYSTATUS from STOREMAT where ID = 500", "3"}, {objects.arg("2, null, null"), ""},
            {objects.arg("2, null, 500"), "500|S-500|501|0"}, {clients.arg("2, null, null"), "502|Поставщик"},
            {clients.arg("2, null, 500"), "501|Зайцев"},
            // The purposes of a direction, or all of them.
            {"select ID from spPurposeOpen(2)", "2"}, {"select ID from spPurposeOpen(null) order by 1", "1; 2"}});
}

TEST_F(ProcJournals, CashJournalFiltersAndSoftDeletion)
{
    const QString today = QDate::currentDate().toString("''yyyy-MM-dd''");
    Fill("CUST (ID, CUSTNAME)", {"600, 'Орлова Анна'", "601, 'Зайцев'"});
    Fill("ORDERS (ID, NUM, IDCUST)", {"600, 'Z-600', 600"});
    Expect({{"update ORDERS set SUMORDER = 500 where ID = 600"}, {"spPayEmpty", "1"},
            {"spPayEdit(1, null, null, 1, 1, 600, 600, 'x', 100, 2, '')", "1"}, {"spPayEmpty", "2"},
            {"spPayEdit(2, 'Касса-7', null, 2, 2, 601, null, 'x', 50, 1, '')", "2"}, {"spPayEmpty", "3"}});
    EXPECT_EQ(Open("spPayOpen", {}, "ID, PAYNUM, PTYPE_LKP_PAYTYPE_F_PAYNAME, PURPOSE_LKP_PURPOSE_F_PURPOSE, "
                                    "IDCUST_LKP_CUST_F_CUSTNAME, IDOBJ_LKP_OBJECT_F_OBJNAME, OBJTEXT, SUMM, "
                                    "NAME_LKP_NAL_F_NAME, COMMENT"),
              "1|PAY-10001|1|1|600|600|Z-600|100|2|; 2|Касса-7|2|2|601|null|null|50|1|; "
              "3|PAY-10003|null|null|null|null|null|null|null|null");
    // Rows without a customer, type, purpose or form always pass.
    Filters("spPayOpen", {{{{"F_DATE_UP", today}, {"F_DATE_TO", today}}, "1; 2; 3"},
                          {{{"F_DATE_TO", "cast(" + today + " as date) - 1"}}, ""},
                          {{{"F_PAYNUM", "'%касса%'"}}, "2"}, {{{"F_PAYNUM", "'%pay-%'"}}, "1; 3"},
                          {{{"F_CUST", "'%орлова%'"}}, "1; 3"}, {{{"F_PTYPE", "1"}}, "1; 3"}, {{{"F_PURPOSE", "2"}}, "2; 3"},
                          {{{"F_NAL", "1"}}, "2; 3"}, {{{"F_OBJ", "999"}, {"F_SUMM", "1"}}, "1; 2; 3"}});
    // A cancelled payment leaves the journal but still counts as paid; the customer's history keeps it, marked.
    Expect({{"spPayDel(1)"}, {"select SUMPAY, PAYSTATE from ORDERS where ID = 600", "100|2"},
            {"select ID, DEL, PAYNUM from spCustPayOpen(600)", "1|1|PAY-10001"}});
    Filters("spPayOpen", {{{}, "2; 3"}, {{{"F_DEL", "0"}}, "2; 3"}, {{{"F_DEL", "1"}}, "1"}});
}

TEST_F(ProcJournals, SalaryPeriodSetsAccrualsOfClosedOrdersAgainstPayouts)
{
    Fill("EMPLS (ID, EMPLNAME, IDESTAT, PERCSERV, PERCMAT)",
         {"700, 'Иванов', 1, 30, 5", "701, 'Петров', 1, 10, null", "702, 'Сидоров', 1, null, null",
          "703, 'Уволенный', 2, null, null"});
    Fill("SERV (ID, SERVNAME, COST, HOURS)", {"700, 'Ремонт', 1000, 1", "701, 'Осмотр', 500, 1"});
    Fill("MAT (ID, MATNAME, COST, QUANTITY)", {"700, 'Фильтр', 200, 100"});
    // Closed in the middle of May, in the evening of the period's last day, still open, and the morning after.
    Fill("ORDERS (ID, IDSTATUS, STATUS_DATE)",
         {"700, 6, '2024-05-10 14:00'", "701, 6, '2024-05-31 18:00'", "702, 5, '2024-05-15 10:00'",
          "703, 6, '2024-06-01 10:00'"});
    Fill("ORDSERV (IDORDER, IDSERV, IDEMPL)",
         {"700, 700, 700", "700, 701, 701", "701, 700, 700", "702, 700, 700", "703, 701, 700"});
    Fill("ORDMAT (IDORDER, IDMAT, OCNT, IDEMPL)", {"700, 700, 1, 700", "700, 700, 1, 701"});
    // Payouts as the card saves them.
    for (const QString payout : {"1, 'V-1', '2024-05-20 12:00', 700, 100", "2, 'V-2', '2024-05-05 09:00', 702, 70",
                                 "3, 'V-3', '2024-04-30 17:00', 700, 40", "4, 'V-4', '2024-05-31 23:00', 701, 25"})
        Expect({{"spSalaryEmpty", payout.left(1)}, {"spSalaryEdit(" + payout + ", 'аванс')", payout.left(1)}});
    const QString may = "'2024-05-01', '2024-05-31'";
    const QString debts = "select IDEMPL_LKP_EMPL_F_EMPLNAME, SUMM from spSalaryMain(%1) where ID is null and PAY_DATE is null "
                          "order by 1";
    // One row per line with an employee, by its own percentage; a null percentage gives a null amount. Every
    // employee owes or is owed, the dismissed one too; payouts alone give a negative debt; without dates all
    // accruals meet all payouts.
    Expect({{"select IDEMPL_LKP_EMPL_F_EMPLNAME, COMMENT, SUMM from spOrdersDetail(" + may + ") order by 1, 2, 3",
             "700|MAT|10; 700|SERV|300; 700|SERV|300; 701|MAT|null; 701|SERV|50"},
            {"select count(*) from spOrdersDetail(" + may + ") where ID is null and PAYNUM is null and PAY_DATE = '2024-05-31'",
             "5"},
            {"select IDEMPL_LKP_EMPL_F_EMPLNAME, SUMM from spSalaryDetail(" + may + ") where ID is null order by 1",
             "700|100; 701|25; 702|70"},
            {debts.arg(may), "700|510; 701|25; 702|-70; 703|0"}, {debts.arg("null, null"), "700|620; 701|25; 702|-70; 703|0"},
            // Percentages are read now, so a change reaches back; a reopened order drops out.
            {"update EMPLS set PERCSERV = 20 where ID = 701"}, {debts.arg(may), "700|510; 701|75; 702|-70; 703|0"},
            {"update ORDERS set IDSTATUS = 5 where ID = 700"}, {debts.arg(may), "700|200; 701|-25; 702|-70; 703|0"},
            // The payouts journal: dates up to the end of the last day, the employee's name as a text filter.
            {"select IDEMPL_LKP_EMPL_F_EMPLNAME from spSalaryOpen(" + may + ", '%%') order by 1", "700; 701; 702"},
            {"select ID, PAYNUM, PAY_DATE, IDEMPL_LKP_EMPL_F_EMPLNAME, SUMM, COMMENT from spSalaryOpen(" + may +
                 ", '%иванов%')",
             "1|V-1|2024-05-20 12:00|700|100|аванс"}});
}

TEST_F(ProcJournals, ListsSearchCaseBlindAndPassRowsWithoutTheFilteredValue)
{
    Fill("CUST (ID, CUSTNAME, MOBI_PHONE, ADDRESS)",
         {"800, 'ИВАНОВ Иван', '111-22', 'г. Москва'", "801, 'Петрова', '333', null", "802, 'Сидоров', null, 'Тула'"});
    Expect({{"spCustEmpty", "2"}});
    Fill("AUTO (ID, TYPE, MODNAME, MARK, AYEAR, REG, VIN, COLNAME, DEL)",
         {"800, null, 1, 1, null, 'А800АА', null, null, null", "801, null, 2, 2, null, 'К801КК', null, null, null",
          "810, 1, 1, 1, 1, 'А810АА', 'WVW810', 'Серый', null", "811, 2, 2, 2, null, 'К811КК', null, null, null",
          "812, null, null, null, null, 'М812ММ', null, null, 1",
          "813, null, null, null, null, 'О813ОО', 'О813ОО', null, null"});
    Fill("ORDERS (ID, IDCUST, IDAUTO)", {"800, 802, 800", "801, 802, 801", "802, 802, 800"});
    Fill("CMAT (ID, CMATNAME)", {"800, 'Шины'", "801, 'Дворники'"});
    Fill("MAT (ID, MATNAME, IDCMAT, ARTICUL, SCODE, QUANTITY)", {"800, 'Шина летняя', 800, 'S-195', '001', 0",
                                                               "801, 'Масло моторное', null, null, null, 0",
                                                               "802, 'Щетка', 801, 'B-1', null, 0"});
    Fill("CSERV (ID, CSERVNAME)", {"800, 'Шиномонтаж'"});
    Fill("SERV (ID, SERVNAME, IDCSERV, SERVART)", {"800, 'Снятие колеса', 800, null", "801, 'Мойка', null, 'M-1'"});
    Fill("EMPLS (ID, EMPLNAME, IDPOS, IDESTAT, PHONES)",
         {"810, 'Смирнов', 1, 1, '555'", "811, 'Кузнецов', 2, 2, null", "812, 'Новиков', null, null, null"});
    // Row 1 is the shop and is never listed; a customer shows once per vehicle he came with, 2 has no name. A text
    // filter cannot drop a row whose column is null; model and make filters drop customers without orders.
    Filters("spCustOpen", {{{}, "2; 800; 801; 802; 802"}, {{{"F_CUSTNAME", "'%иванов%'"}}, "2; 800"},
                           {{{"F_CUSTNAME", "'%ИВАНОВ_иван%'"}}, "2; 800"}, {{{"F_PHONE", "'%111%'"}}, "2; 800; 802; 802"},
                           {{{"F_ADDRESS", "'%москва%'"}}, "2; 800; 801"}, {{{"F_REG", "'%к801%'"}}, "2; 800; 801; 802"},
                           {{{"F_MODNAME", "2"}}, "802"}, {{{"F_MARK", "1"}}, "802"}});
    EXPECT_EQ(Rows("select ID from spCustOpen order by 1"), "2; 800; 801; 802; 802");
    Filters("spCustDialog", {{{}, "1; 2; 800; 801; 802"}, {{{"F_CUSTNAME", "'%сидор%'"}}, "2; 802"}});
    // A null VIN filter compares the VIN with the vehicle's own number; key filters drop rows whose key is null.
    Filters("spAutoOpen", {{{}, "800; 801; 810; 811; 813"}, {{{"F_VIN", "null"}}, "800; 801; 811; 813"},
                           {{{"F_COLNAME", "null"}}, "800; 801; 811; 813"}, {{{"F_VIN", "'%wvw%'"}}, "800; 801; 810; 811"},
                           {{{"F_REG", "'%к811%'"}}, "811"}, {{{"F_MARK", "2"}}, "801; 811"}, {{{"F_TYPE", "1"}}, "810"},
                           {{{"F_YEAR", "1"}}, "810"}, {{{"F_DEL", "1"}}, "812"},
                           {{{"F_DEL", "0"}}, "800; 801; 810; 811; 813"}});
    for (const QString proc : {"spMatOpen", "spMatDialog"})
        Filters(proc, {{{}, "800; 801; 802"}, {{{"F_CATEGORY", "'%шин%'"}}, "800; 801"}, {{{"F_MATNAME", "'%МАСЛО%'"}}, "801"},
                       {{{"F_ARTICUL", "'%s-1%'"}}, "800; 801"}, {{{"F_SCODE", "'%002%'"}}, "801; 802"}});
    Filters("spServOpen", {{{{"F_CATEGORY", "'%монтаж%'"}}, "800; 801"}, {{{"F_SERVNAME", "'%мойка%'"}}, "801"}});
    Filters("spEmplOpen", {{{}, "810; 811; 812"}, {{{"F_EMPLNAME", "'%смирн%'"}}, "810"}, {{{"F_POS", "1"}}, "810; 812"},
                           {{{"F_ESTAT", "2"}}, "811; 812"}, {{{"F_PHONES", "'%777%'"}}, "811; 812"}});
}

TEST_F(ProcJournals, StoreJournalShowsLinesAndTheCardOneOperation)
{
    Fill("MAT (ID, MATNAME, ARTICUL, QUANTITY, COST)", {"820, 'Шина зимняя', 'W-1', 0, 100", "821, 'Масло', null, 0, 10"});
    Fill("CUST (ID, CUSTNAME)", {"820, 'Шинторг'"});
    Fill("STOREMAT (ID, NUM, IDOTYPE, OPER_DATE, IDCUST)",
         {"820, 'D-1', 1, '2024-04-10 10:00', 820", "821, 'W-1', 3, '2024-04-20 10:00', 1"});
    Fill("STORE (ID, IDSTOREMAT, IDMAT, QUANTITY, PRICEBUY, PRICESELL)",
         {"820, 820, 820, 4, 50, 80", "821, 820, 821, 2, 5, 8", "822, 820, null, null, null, null",
          "823, 821, 820, 1, null, null"});
    EXPECT_EQ(Rows("select list(QUANTITY) from MAT"), "3,2");
    EXPECT_EQ(Open("spStoreOpen", {}, "ID, SYS_IDSTOREMAT, NUM, IDOTYPE_LKP_OTYPE_F_OTYPENAME, ARTICUL, "
                                      "IDMAT_LKP_MAT_F_MATNAME, QUANTITY, PRICEBUY, PRICESELL, SUMMBUY, SUMMSELL, "
                                      "IDCUST_LKP_CUST_F_CUSTNAME"),
              "820|820|D-1|1|W-1|820|4|50|80|200|320|820; 821|820|D-1|1|null|821|2|5|8|10|16|820; "
              "822|820|D-1|1|null|null|null|null|null|null|null|820; 823|821|W-1|3|W-1|820|1|null|null|null|null|1");
    // A line without a material passes every text filter.
    Filters("spStoreOpen", {{{{"F_NAME", "'шина%'"}}, "820; 822; 823"}, {{{"F_OTYPE", "3"}}, "823"},
                            {{{"F_IDCUST", "820"}}, "820; 821; 822"}, {{{"F_DATE_UP", "'2024-04-15'"}}, "823"},
                            {{{"F_DATE_TO", "'2024-04-10'"}}, "820; 821; 822"}});
    // The card shows the whole operation of any of its lines, without blank and deleted lines. Deleting a line twice
    // moves stock once; taking back a delivered line that was already used is refused by the balance; closing the
    // card clears its blank lines only.
    Expect({{"select ID from spStoreMatOpen(822) order by 1", "820; 821"}, {"select ID from spStoreMatOpen(99999)", ""},
            {"spStoreDel(821)"}, {"spStoreMatDel(821)"}, {"select QUANTITY from MAT where ID = 821", "0"},
            {"select ID from spStoreMatOpen(820)", "820"}, {"spStoreDel(820)", kNotEnough},
            {"select DEL from STORE where ID = 820", "null"}, {"spStoreEmptyDel(820)", "null"},
            {"select list(ID) from STORE where IDSTOREMAT = 820", "820,821"}});
    Filters("spStoreOpen", {{{{"F_DEL", "1"}}, "821"}, {{{"F_DEL", "0"}}, "820; 823"}});
}
