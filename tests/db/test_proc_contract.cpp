// The stored procedures as the generic windows use them: the catalogue and the shape of each family,
// Empty and Edit, the searching Edits, every delete guard with its Russian text, and the rights lookup.
#include "database_test.h"

#include <gtest/gtest.h>

namespace {

class ProcContract : public DeployedDatabaseTest
{
protected:
    // Parameter names of a procedure in their order, joined by spaces: 0 inputs, 1 outputs.
    QString Params(const QString &procedure, int kind)
    {
        const QString sql = "select trim(RDB$PARAMETER_NAME) from RDB$PROCEDURE_PARAMETERS where RDB$PROCEDURE_NAME = "
                            "upper('%1') and RDB$PARAMETER_TYPE = %2 order by RDB$PARAMETER_NUMBER";
        return Rows(sql.arg(procedure).arg(kind)).replace(QStringLiteral("; "), QStringLiteral(" "));
    }
};

const QString kBlocked = QStringLiteral(" Удаление запрещено.");

} // namespace

TEST_F(ProcContract, CatalogueHoldsEveryFamilyWithTheGridNamesInOrderAndTheirWidths)
{
    // The print procedure sits in a comment, and the section named for spCustPayDel declares spCustOrderDel.
    Expect({{"select count(*) from RDB$PROCEDURES where coalesce(RDB$SYSTEM_FLAG, 0) = 0", "190"},
            {"select count(*) from RDB$EXCEPTIONS where coalesce(RDB$SYSTEM_FLAG, 0) = 0", "46"},
            {"select list(trim(RDB$PROCEDURE_NAME)) from RDB$PROCEDURES where RDB$PROCEDURE_NAME starting 'SPCUST' "
             "and RDB$PROCEDURE_NAME containing 'DEL'", "SPCUSTDEL,SPCUSTORDERDEL"}});

    // Edit takes the Open columns by position, under these other names where they differ.
    const QMap<QString, QString> renamed{{"spActions.SYS_TACTION", "TACTION"}, {"spPay.NAME_LKP_NAL_F_NAME", "NAL"},
                                         {"spServ.IDCSERV_LKP_CSERV_F_CSERVNAME", "IDCSERV"},
                                         {"spEmpl.IDPOS_LKP_POS_F_POSNAME", "IDPOS_LKP_POSITS_F_POSNAME"},
                                         {"spEmpl.IDESTAT_LKP_ESTAT_F_ESTNAME", "IDESTAT_LKP_ESTATS_F_ESTNAME"},
                                         {"spOrdParts.SYS_IDORDER", "IDORDER"}};
    for (const QString stem :
         {"spConfig", "spRoles", "spStates", "spUsers", "spActions", "spRights", "spRolesActions", "spDiscounts",
          "spAType", "spMod", "spMark", "spYear", "spNal", "spParts", "spCmat", "spCServ", "spCntry", "spProd", "spPos",
          "spEstat", "spEmpl", "spOType", "spServ", "spMat", "spCust", "spCustOrder", "spCustPay", "spAuto", "spOState",
          "spPayState", "spOrder", "spOrdParts", "spOrdServ", "spOrdMat", "spPayStatus", "spStoreMat", "spStore",
          "spPType", "spPurpose", "spPay", "spObject", "spClients", "spSalary"}) {
        QStringList edit = Params(stem + "Open", 1).split(' ');
        EXPECT_EQ(edit.first(), "ID") << stem.toStdString();
        edit[0] = "OLD_ID";
        for (QString &column : edit)
            column = renamed.value(stem + "." + column, column);
        // Edit, Empty and Del as "inputs > outputs"; the settings have neither Empty nor Del, customer payments no Del.
        const bool config = stem == "spConfig";
        EXPECT_EQ(Params(stem + "Edit", 0) + " > " + Params(stem + "Edit", 1) + " / " + Params(stem + "Empty", 0) +
                      " > " + Params(stem + "Empty", 1) + " / " + Params(stem + "Del", 0),
                  edit.join(' ') + " > ID /  > " + (config ? "" : "ID") + " / " +
                      (config || stem == "spCustPay" ? "" : "ID"))
            << stem.toStdString();
    }

    EXPECT_EQ(Params("spOrderOpen", 1),
              "ID NUM CREATE_DATE STATUS_DATE IDSTATUS_LKP_OSTATE_F_STATENAME PSTATUS_LKP_PAYSTATE_F_STATUS SYS_IDCUST "
              "DLG_IDCUST MOBI_PHONE ADDRESS SYS_IDAUTO DLG_FULLNAME TYPE_LKP_ATYPE_F_ATYPENAME MODEL_LKP_MODEL_F_MODNAME "
              "SYS_MOD_NAME MARK_LKP_MARK_F_MARKNAME REG YEAR_LKP_AYEAR_F_AYEARNAME VIN DRIVE COLNAME DISCOUNT RETURNZP "
              "GUARANTEE SUMORDER SUMPAY COMMENT");
    // The customer's payment history keeps PAYDATE, so that it is not made a date column; the requisites are the
    // customer's 24 columns with HOME_PHONE under the name PHONES.
    EXPECT_EQ(Params("spCustPayOpen", 1).section(' ', 0, 3), "ID DEL PAYNUM PAYDATE");
    const QString cust = Params("spCustOpen", 1);
    EXPECT_TRUE(cust.split(' ').size() == 24 && cust.startsWith("ID CUSTNAME MOBI_PHONE ADDRESS HOME_PHONE ")
                && cust.endsWith(" CARDNUMBER")) << cust.toStdString();
    EXPECT_EQ(Params("spRequisitsOpen", 1), QString(cust).replace(" HOME_PHONE ", " PHONES "));

    // Too narrow result columns fail with the server's truncation error.
    const QString s30(30, 'D'), s31(31, 'D'), cut = "~string right truncation";
    const QString orders = "select ID from spOrderOpen(null, null, null, null, '%%', null, '%%', null, null, null)";
    // DRIVE is 32 wide in the table and 30 in the journal; INN and KPP joined by "/" exceed the 50 of INNKPP;
    // the type's Edit takes 32 characters for a column of 30.
    Fill("AUTO (ID, REG, DRIVE)", {"100, 'W1', '" + s30 + "'"});
    Fill("ORDERS (ID, NUM, IDAUTO)", {"100, 'N-100', 100"});
    Fill("MAT (ID, MATNAME, ARTICUL, QUANTITY)", {"100, 'Filter', '" + s31 + "', 0"});
    Fill("STOREMAT (ID, IDOTYPE)", {"100, 1"});
    Fill("STORE (ID, IDSTOREMAT, IDMAT, QUANTITY)", {"100, 100, 100, 1"});
    Fill("RIGHTS (ID, RIGHTNAME)", {"100, '" + QString(33, 'R') + "'"});
    Fill("CUST (ID, CUSTNAME, INN, KPP)", {"100, 'Wide', '" + s30 + "', '" + s30 + "'", "101, 'Half', '" + s30 + "', null"});
    Expect({{orders, "100"}, {"update AUTO set DRIVE = '" + s31 + "' where ID = 100"}, {orders, cut},
            {"select ID from spStoreOpen(null, null, null, null, null, null, null, null)", cut},
            {"select ID from spRightsOpen", cut}, {"select INNKPP from spCustOpen2(100)", cut},
            {"select CUST_NAME, INNKPP from spCustOpen2(101)", "Half|null"},
            {"spATypeEdit(null, '" + s30 + "')", "4"}, {"spATypeEdit(null, '" + s31 + "')", cut}});
}

TEST_F(ProcContract, EmptyStoresABlankRowAndEditUpdatesByIdInsertsUnderTheKeyGivenOrFindsByName)
{
    const QString mat = "spMatEdit(1, '%1', null, 'A1', 'C1', %2, 10, null, null, '')";
    Expect({{"spATypeEmpty", "4"}, {"spATypeEdit(null, 'Кабриолет')", "5"},
            // An unknown key is taken as it is, without the generator.
            {"spATypeEdit(777, 'Пикап')", "777"}, {"spATypeEmpty", "6"}, {"spATypeEdit(777, 'Фургон')", "777"},
            {"select ID, ATYPENAME from ATYPE where ID > 3 order by ID", "4|null; 5|Кабриолет; 6|null; 777|Фургон"},
            // UPD_MAT forbids a blank name on update only, so the blank row is stored and the card's save refuses it.
            {"spMatEmpty", "1"}, {"select ID, MATNAME from MAT", "1|null"},
            {mat.arg("", "0"), "Материал должен иметь название."},
            {mat.arg("Шина", "-1"), "На складе недостаточно данного материала."},
            {mat.arg("Шина", "7"), "1"}, {"select MATNAME, QUANTITY from MAT", "Шина|7"},
            {"spRolesEmpty", "4"}, {"select ROLENAME from ROLES where ID = 4", "Новая роль"},
            // Only this stem's Empty makes a bare header; the journal's Empty makes a line with a header of its own.
            {"spStoreMatEmpty", "1"}, {"spStoreEmpty", "1"},
            {"select (select list(ID) from STOREMAT) || ' ' || (select list(ID || '>' || IDSTOREMAT) from STORE) "
             "from RDB$DATABASE", "1,2 1>2"},
            // spPayStatusEmpty writes to PAYSTATE; some Empty and Edit bodies are empty.
            {"spPayStatusEmpty", "4"},
            {"select (select count(*) from PAYSTATUS) || ' ' || (select max(ID) from PAYSTATE) from RDB$DATABASE", "3 4"},
            {"spObjectEmpty", "null"}, {"spClientsEmpty", "null"}, {"spCustOrderEmpty", "null"}, {"spCustPayEmpty", "null"},
            {"spObjectEdit(1, 'X', 1, 1)", "null"}, {"spOrderMatSumm(1)", "null|null"},
            // Category cards write the name only; the tree link stays.
            {"insert into CMAT (ID, CMATNAME) values (100, 'Шины')"},
            {"insert into CMAT (ID, CMATNAME, PARENT) values (101, 'Летние', 100)"}, {"spCmatEdit(101, 'Летние шины')", "101"},
            {"select CMATNAME, PARENT from CMAT where ID = 101", "Летние шины|100"},
            // A state made through the procedures has no filter mark and is not offered to the card.
            {"spOStateEmpty", "8"}, {"spOStateEdit(8, 'Архив')", "8"},
            {"select STATENAME, AFILTER from OSTATE where ID = 8", "Архив|null"},
            {"select list(ID) from spOStateOpen", "1,2,3,4,5,6"},
            {"select count(*), (select first 1 STATENAME from spOStateMain) from spOStateMain", "8|-Активен-"},
            // Settings are saved by the key the caller knows, never looked up by name.
            {"spConfigEdit(null, 'ORDERSNUM', 'B-')", "6"},
            {"select ID, PVALUE from spConfigOpen2('ORDERSNUM') order by ID", "2|A-; 6|B-"},
            // An empty password keeps the stored one, and a new user with an empty one gets null; the grid never
            // receives a password, the login list does.
            {"spUsersEdit(null, 'Кассир', 'secret', 2, '', null, 1)", "4"},
            {"spUsersEdit(4, 'Кассир', '', 2, 'Кассир Иванова', null, 1)", "4"},
            {"spUsersEdit(null, 'Мастер', '', 2, '', null, 1)", "5"},
            {"select ID, PASSWORD, USER_FULL_NAME from USERS where ID > 3 order by ID", "4|secret|Кассир Иванова; 5|null|"},
            {"select count(*), count(PASSWORD) from spUsersOpen", "5|0"},
            {"select PASSWORD from spUsersActiveSelect where ID = 4", "secret"}});

    // The searching Edits reuse the row of the same name.
    Fill("MARK (ID, MARKNAME)", {"100, 'Двойник'", "101, 'Двойник'"});
    Fill("CUST (ID, CUSTNAME, MOBI_PHONE, INN)", {"100, 'Иванов И.И.', '111', '7701'"});
    Fill("AUTO (ID, TYPE, MODNAME, MARK, REG)", {"100, 1, 1, 1, 'А777АА77'"});
    Expect({{"spMarkEdit(null, 'Skoda')", "2"}, {"spMarkEdit(0, 'Skoda')", "2"}, {"spMarkEdit(null, 'Лада')", "5"},
            {"spMarkEdit(null, 'Лада')", "5"}, {"select count(*) from MARK", "7"},
            // A name held twice breaks the singleton search with the server's own error.
            {"spMarkEdit(null, 'Двойник')", "~multiple rows in singleton select"},
            // A grid registers itself by its key and gets its caption refreshed.
            {"spActionsEdit(null, 'Все пользователи', 'UsersFM.frmUser')", "1"},
            {"spActionsEdit(null, 'Отчёт', 'ReportFM.frmReport')", "31"},
            {"spActionsEdit(0, 'Отчёт', 'ReportFM.frmReport')", "31"},
            {"select count(*), min(ACTNAME) from ACTIONS where ID in (1, 31, 32)", "2|Все пользователи"},
            // The full customer card overwrites every column of the found row; the short form keeps the others.
            {"spCustEdit(0, 'Иванов И.И.', '222', 'Тверская, 1'" + QString(", null").repeated(20) + ")", "100"},
            {"select MOBI_PHONE, ADDRESS, INN from CUST where ID = 100", "222|Тверская, 1|null"},
            {"update CUST set INN = '7702' where ID = 100"}, {"spCustEdit2(null, 'Иванов И.И.', '333', 'Тверская, 2')", "100"},
            {"select count(*), max(MOBI_PHONE), max(ADDRESS), max(INN) from CUST where ID > 1", "1|333|Тверская, 2|7702"},
            // Vehicles are found by registration number; FULLNAME is the triggers' alone.
            {"spAutoEdit(null, 1, 1, 1, 'А777АА77', 3, 'VIN1', '4WD', 'Синий', 'Другое имя')", "100"},
            {"select count(*), max(COLNAME), max(AYEAR), max(FULLNAME) from AUTO",
             "1|Синий|3|А777АА77 Легковой Passat Volkswagen"},
            {"spAutoEdit(0, 2, 2, 2, 'В001ВВ', null, '', '', '', '')", "1"}, {"select count(*) from AUTO", "2"}});
}

TEST_F(ProcContract, EveryDeleteGuardRefusesWithItsOwnTextAndChangesNothing)
{
    Fill("AUTO (ID, TYPE, MODNAME, MARK, REG, AYEAR)", {"100, 1, 1, 1, 'А100АА', 1"});
    Fill("CUST (ID, CUSTNAME)", {"101, 'С заказом'", "102, 'С поставкой'", "103, 'С платежом и заказом'"});
    Fill("ORDERS (ID, IDCUST, IDAUTO)", {"100, 101, 100", "101, 103, null"});
    Fill("PAY (ID, PTYPE, PURPOSE, IDOBJECT, IDCUST, SUMM)", {"100, 1, 1, 101, 103, 10"});
    Fill("STOREMAT (ID, IDOTYPE, IDCUST)", {"100, 1, 102"});
    Fill("CMAT (ID, CMATNAME, PARENT)", {"100, 'Шины', null", "101, 'Зимние', 100", "102, 'Масла', null"});
    Fill("CSERV (ID, CSERVNAME, PARENT)", {"100, 'Шиномонтаж', null", "101, 'Легковые', 100", "102, 'Мойка', null"});
    Fill("SERV (ID, SERVNAME, IDCSERV, COST)", {"100, 'Мойка кузова', 102, 300", "101, 'Монтаж', 100, 200"});
    Fill("PROD (ID, PRODNAME)", {"100, 'Шинторг'"});
    Fill("MAT (ID, MATNAME, IDCMAT, IDPROD, IDCNTRY, QUANTITY, COST)", {"100, 'Масло', 102, 100, 1, 10, 50",
                                                                      "101, 'Шина', 100, null, null, 10, 100",
                                                                      "102, 'Фильтр', null, null, null, 0, 20"});
    Fill("STORE (ID, IDSTOREMAT, IDMAT, QUANTITY)", {"150, 100, 102, 5"});
    Fill("EMPLS (ID, EMPLNAME, IDPOS, IDESTAT)", {"100, 'Сидоров', 1, 1", "101, 'Петров', null, null"});
    Fill("SALARY (ID, IDEMPL, SUMM)", {"100, 100, 10"});
    Fill("ORDSERV (ID, IDORDER, IDSERV, IDEMPL)", {"100, 100, 100, 101", "101, 100, 101, 100"});
    Fill("ORDMAT (ID, IDORDER, IDMAT, OCNT)", {"100, 100, 101, 1"});

    // The refusal of each call; a text that ends in a full stop goes on with the common one. A category with
    // children and materials names its children first; payouts are tested before service lines, payments before
    // orders, orders before store operations.
    const std::pair<const char *, const char *> guards[] = {
        {"spATypeDel(1)", "Имеются автомобили данного типа."}, {"spModDel(1)", "Имеются автомобили данной модели."},
        {"spMarkDel(1)", "Имеются автомобили данной марки."}, {"spYearDel(1)", "Имеются автомобили данного года выпуска."},
        {"spCmatDel(100)", "Имеются подчиненные категории материалов."},
        {"spCmatDel(102)", "Имеются материалы данной категории."}, {"spCServDel(100)", "Имеются подчиненные категории услуг."},
        {"spCServDel(102)", "Имеются услуги данной категории."}, {"spCntryDel(1)", "Имеются материалы данного производителя."},
        {"spProdDel(100)", "Имеются материалы данного поставщика."},
        {"spServDel(100)", "Имеются заказы включающие данную услугу."},
        {"spPosDel(1)", "Имеются сотрудники с данной должностью."}, {"spEstatDel(1)", "Имеются сотрудники с данным статусом."},
        {"spEmplDel(100)", "Имеются выплаты по данному сотруднику."},
        {"spEmplDel(101)", "Имеются заказы по данному сотруднику."},
        {"spOTypeDel(1)", "Имеются поставки с данным типом складской операции."},
        {"spMatDel(101)", "Имеются заказы включающие данный материал."}, {"spMatDel(102)", "Имеются поставки данного товара."},
        {"spCustDel(103)", "Имеются платежи по данному клиенту."}, {"spCustDel(101)", "Имеются заказы по данному клиенту."},
        {"spCustDel(102)", "Имеются поставки по данному клиенту."},
        {"spAutoDel(100)", "Имеются заказы по данному автомобилю."}, {"spOStateDel(1)", "Имеются заказы данного статуса."},
        {"spPayStateDel(1)", "Имеются заказы данного платежного статуса."},
        {"spPayStatusDel(1)", "Имеются поставки с данным статусом платежа."},
        {"spPTypeDel(1)", "Имеются платежи данного типа."}, {"spPurposeDel(1)", "Имеются платежи данного направления."},
        {"spOrderDel(101)", "Имеются платежи по данному заказу."}, {"spRolesDel(1)", "Имеются пользователи данной роли."},
        {"spStatesDel(1)", "Имеются пользователи с данным статусом."},
        {"spRightsDel(4)", "Имеются пользовательские действия с данными правами."},
        {"spRolesActionsDel(1)", "Имеются пользовательские действия с данными правами."},
        {"spActionsDel(1)", "Пользовательские действия удалять запрещено"},
        {"spRolesActionsEmpty", "Добавление новых разрешений не предусмотрено"}};
    const QString before = Counts();
    for (const auto &[call, refusal] : guards)
        Expect({{call, QString(refusal).endsWith('.') ? refusal + kBlocked : refusal + QString(".")}});
    EXPECT_EQ(Counts(), before);
    // A material taken into an order stays undeletable after its store line was soft-deleted.
    Expect({{"spStoreDel(1)"}, {"select ID, IDORDMAT, DEL from STORE where ID = 1", "1|100|1"},
            {"spMatDel(101)", "Имеются заказы включающие данный материал." + kBlocked}});
}

TEST_F(ProcContract, UnguardedOrClearedDeletesGoThrough)
{
    // A material whose store lines are all soft-deleted goes, and takes them along.
    const QString before = Counts();
    Fill("MAT (ID, MATNAME, QUANTITY, COST)", {"103, 'Свеча', 10, 5"});
    Fill("STOREMAT (ID, IDOTYPE)", {"100, 1"});
    Fill("STORE (ID, IDSTOREMAT, IDMAT, QUANTITY)", {"150, 100, 103, 2"});
    Expect({{"spATypeEmpty", "4"}, {"spATypeDel(4)"}, {"spMatDel(103)", "Имеются поставки данного товара." + kBlocked},
            {"spStoreDel(150)"}, {"spMatDel(103)"}, {"delete from STOREMAT"}});
    EXPECT_EQ(Counts(), before);
    // No guard looks at material lines: the foreign key answers in the server's words. Forms of payment have no
    // guard and no reference by constraint. A role without users leaves with its rights rows.
    Fill("EMPLS (ID, EMPLNAME)", {"100, 'Кузнецов'"});
    Fill("ORDERS (ID)", {"100"});
    Fill("ORDMAT (ID, IDORDER, IDEMPL)", {"100, 100, 100"});
    Fill("PAY (ID, NAL, SUMM)", {"100, 2, 5"});
    Expect({{"spEmplDel(100)", "~FOREIGN KEY"}, {"select count(*) from EMPLS where ID = 100", "1"},
            {"spNalDel(2)"}, {"select list(ID) from NAL", "1"},
            {"spRolesEmpty", "4"}, {"spRolesActionsEdit(null, 4, 1, 2)", "91"}, {"spRolesDel(4)"},
            {"select (select count(*) from ROLES) || ' ' || (select count(*) from ROLES_ACTIONS) from RDB$DATABASE", "3 90"},
            {"spRolesActionsDel(99999)"}, {"spCustOrderDel(1)"},
            // spPayStatusDel removes a row of PAYSTATE.
            {"spPayStatusDel(3)"},
            {"select (select list(ID) from PAYSTATE) || ' ' || (select list(ID) from PAYSTATUS) from RDB$DATABASE",
             "1,2 1,2,3"},
            // Nothing protects the shop's own row here; the requisites then read nothing.
            {"select ID from spRequisitsOpen", "1"}, {"spCustDel(1)"}, {"select count(*) from spRequisitsOpen", "0"}});
}

TEST_F(ProcContract, RolesGetTheirDefaultRightOnAnActionWithoutRowsAndTheLoginListKeepsUserOne)
{
    const QString refused = "Права администратора менять запрещено.";
    const QString rights = "select r.ID, (select ID_RIGHTS from spGetRights(r.ID, %1)) from ROLES r order by 1";
    Expect({{rights.arg(1), "1|4; 2|3; 3|2"},
            {"spActionsEdit(null, 'Новая таблица', 'NewFM.frmNew')", "31"}, {"spRolesEmpty", "4"}, {"spRolesEmpty", "5"},
            {rights.arg(31), "1|4; 2|3; 3|2; 4|1; 5|0"}, {"select * from spGetRights(1, 99999)", ""},
            // The matrix of one role lists every action, with the default where no row exists.
            {"select count(*), count(ID), max(ID_ACTION_LKP_ACTIONS_F_ACTNAME) from spRolesActionsOpen(2)", "31|30|31"},
            {"select * from spRolesActionsOpen(2) where ID is null", "null|2|31|3"},
            {"select count(*), count(distinct ID_ROLE_LKP_ROLES_F_ROLENAME) from spRolesActionsOpen(null)", "155|5"},
            {"select count(*), count(ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME) from spRolesActionsOpen(5)", "31|0"},
            // Saving a right: a zero changes nothing, a value makes the row, a second save finds it.
            {"spRolesActionsEdit(null, 2, 31, 0)", "null"}, {"select count(*) from ROLES_ACTIONS where ID_ACTION = 31", "0"},
            {"spRolesActionsEdit(null, 2, 31, 1)", "91"}, {"select * from spGetRights(2, 31)", "1"},
            {"spRolesActionsEdit(0, 2, 31, 2)", "91"}, {"select * from spGetRights(2, 31)", "2"},
            {"spRolesActionsEdit(null, 5, 31, 3)", "92"}, {"select * from spGetRights(5, 31)", "3"},
            // The administrator's rows can be added once and never changed.
            {"spRolesActionsEdit(null, 1, 1, 2)", refused}, {"select * from spGetRights(1, 1)", "4"},
            {"spRolesActionsEdit(null, 1, 31, 3)", "93"}, {"select * from spGetRights(1, 31)", "3"},
            {"spRolesActionsEdit(null, 1, 31, 4)", refused}, {"select * from spGetRights(1, 31)", "3"}});
    // One role's actions, and all roles', come sorted.
    const QString matrix = "select ID_ACTION_LKP_ACTIONS_F_ACTNAME from spRolesActionsOpen(%1)";
    for (const QString role : {"2", "null"})
        EXPECT_EQ(Rows(matrix.arg(role)), Rows(matrix.arg(role) + " order by ID_ROLE_LKP_ROLES_F_ROLENAME, 1"));

    // The login list keeps user 1 whatever its state; a new user is always active; users have no guard.
    Expect({{"select list(ID) from spUsersActiveSelect", "1,2,3"},
            {"spUsersEdit(1, 'Администратор', '', 1, '', null, 2)", "1"},
            {"spUsersEdit(2, 'Оператор', '', 2, '', null, 2)", "2"},
            {"select list(ID) from spUsersActiveSelect", "1,3"}, {"spUsersEmpty", "4"},
            {"select list(ID || ':' || STATE) from USERS", "1:2,2:2,3:1,4:1"},
            {"select iif(datediff(second, SYS_CREATE_DATE, current_timestamp) < 120, 'now', 'old') from USERS where ID = 4",
             "now"},
            {"spUsersDel(1)"}, {"select list(ID) from USERS", "2,3,4"}});
}
