// The stored procedures as the generic windows use them: the catalogue and the shape of each family,
// Empty and Edit, the searching Edits, every delete guard with its Russian text, and the rights lookup.
#include "fib_dataset.h"
#include "fib_encoding.h"
#include "database_test.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace {

class ProcContractBase : public DeployedDatabaseTest
{
protected:
    QStringList ColumnsOf(const QString &sql)
    {
        QStringList names;
        Select(sql, {}, &names);
        return names;
    }

    QStringList Strings(const QString &sql)
    {
        db.Tr().StartTransaction();
        auto q = db.NewQuery(QStringLiteral("Catalogue"));
        q->SetSQLText(sql);
        q->ExecQuery();
        QStringList values;
        while (q->Next())
            values << q->Fields(0).AsString().trimmed();
        return values;
    }

    // Parameter names of a procedure in their order: 0 inputs, 1 outputs.
    QStringList ParamsOf(const QString &procedure, int kind)
    {
        return Strings(QStringLiteral("select RDB$PARAMETER_NAME from RDB$PROCEDURE_PARAMETERS "
                                      "where RDB$PROCEDURE_NAME = '%1' and RDB$PARAMETER_TYPE = %2 "
                                      "order by RDB$PARAMETER_NUMBER")
                           .arg(procedure.toUpper())
                           .arg(kind));
    }

    int Int(const QString &sql) { return db.Scalar(sql).toInt(); }

    static std::vector<int> Ids(const QList<Row> &rows, const QString &column = QStringLiteral("ID"))
    {
        std::vector<int> ids;
        for (const Row &r : rows)
            ids.push_back(r.value(column).toInt());
        std::sort(ids.begin(), ids.end());
        return ids;
    }

};

class ProcCatalogue : public ProcContractBase {};
class ProcContract : public ProcContractBase {};
class ProcGuards : public ProcContractBase {};
class ProcRights : public ProcContractBase {};

bool IsTruncation(const QString &message)
{
    return message.contains(QStringLiteral("string right truncation"), Qt::CaseInsensitive);
}

} // namespace

TEST_F(ProcCatalogue, FreshDatabaseHoldsExactlyTheProceduresAndExceptionsOfTheSchema)
{
    EXPECT_EQ(Int("select count(*) from RDB$PROCEDURES where coalesce(RDB$SYSTEM_FLAG, 0) = 0"), 190);
    EXPECT_EQ(Int("select count(*) from RDB$EXCEPTIONS where coalesce(RDB$SYSTEM_FLAG, 0) = 0"), 46);

    const QStringList procedures =
        Strings("select RDB$PROCEDURE_NAME from RDB$PROCEDURES where coalesce(RDB$SYSTEM_FLAG, 0) = 0");
    // The print procedure sits in a comment, and the section named for spCustPayDel declares spCustOrderDel.
    EXPECT_FALSE(procedures.contains("SPORDERPRINT"));
    EXPECT_FALSE(procedures.contains("SPCUSTPAYDEL"));
    for (const char *name : {"SPCUSTORDERDEL", "SPGETRIGHTS", "SPSALARYMAIN", "SPORDERSDETAIL", "SPSTOREEMPTYDEL",
                             "SPUSERSACTIVESELECT", "SPOSTATEMAIN", "SPMATDIALOG", "SPCUSTEDIT2", "SPCUSTOPEN2",
                             "SPCONFIGOPEN2", "SPREQUISITSOPEN", "SPORDMATSERVOPEN", "SPORDSERVUPDEMPLOYEE",
                             "SPORDERMATSUMM", "SPSTOREVALUESEDIT", "SPCUSTDIALOG"})
        EXPECT_TRUE(procedures.contains(name)) << name;

    const QStringList exceptions =
        Strings("select RDB$EXCEPTION_NAME from RDB$EXCEPTIONS where coalesce(RDB$SYSTEM_FLAG, 0) = 0");
    for (const char *name : {"ADMIN_RIGHTS_NO_CH", "MATERIAL_NOT_ENOUGTH", "TEST_EXCEPT", "STOREMAT_HAS_STORE",
                             "AUTO_HAS_OWNERS", "ORDER_HAS_PAY", "ROLES_ACTIONS_NOT_ADDITION", "CUST_HAS_ORDERS"})
        EXPECT_TRUE(exceptions.contains(name)) << name;

}

TEST_F(ProcCatalogue, EveryFamilyHasItsMembersAndEditTakesTheOpenColumnsByPosition)
{
    // Edit parameters whose names differ from the Open column at the same place; they go by position.
    const QMap<QString, QMap<QString, QString>> renamed{
        {"spActions", {{"SYS_TACTION", "TACTION"}}},
        {"spEmpl", {{"IDPOS_LKP_POS_F_POSNAME", "IDPOS_LKP_POSITS_F_POSNAME"},
                    {"IDESTAT_LKP_ESTAT_F_ESTNAME", "IDESTAT_LKP_ESTATS_F_ESTNAME"}}},
        {"spServ", {{"IDCSERV_LKP_CSERV_F_CSERVNAME", "IDCSERV"}}},
        {"spPay", {{"NAME_LKP_NAL_F_NAME", "NAL"}}},
        {"spOrdParts", {{"SYS_IDORDER", "IDORDER"}}},
    };
    const QStringList stems{
        "spConfig", "spRoles", "spStates", "spUsers", "spActions", "spRights", "spRolesActions", "spDiscounts",
        "spAType", "spMod", "spMark", "spYear", "spNal", "spParts", "spCmat", "spCServ", "spCntry", "spProd",
        "spPos", "spEstat", "spEmpl", "spOType", "spServ", "spMat", "spCust", "spCustOrder", "spCustPay", "spAuto",
        "spOState", "spPayState", "spOrder", "spOrdParts", "spOrdServ", "spOrdMat", "spPayStatus", "spStoreMat",
        "spStore", "spPType", "spPurpose", "spPay", "spObject", "spClients", "spSalary"};
    const QStringList all =
        Strings("select RDB$PROCEDURE_NAME from RDB$PROCEDURES where coalesce(RDB$SYSTEM_FLAG, 0) = 0");

    for (const QString &stem : stems) {
        SCOPED_TRACE(stem.toStdString());
        const QStringList open = ParamsOf(stem + "Open", 1);
        ASSERT_FALSE(open.isEmpty());
        EXPECT_EQ(open.first(), "ID");

        QStringList expected{"OLD_ID"};
        for (const QString &column : open.mid(1))
            expected << renamed.value(stem).value(column, column);
        EXPECT_EQ(ParamsOf(stem + "Edit", 0), expected);
        EXPECT_EQ(ParamsOf(stem + "Edit", 1), QStringList{"ID"});

        if (stem != "spConfig") {
            EXPECT_TRUE(all.contains((stem + "Empty").toUpper()));
            EXPECT_TRUE(ParamsOf(stem + "Empty", 0).isEmpty());
            EXPECT_EQ(ParamsOf(stem + "Empty", 1), QStringList{"ID"});
        }
        if (stem != "spConfig" && stem != "spCustPay") {
            EXPECT_TRUE(all.contains((stem + "Del").toUpper()));
            EXPECT_EQ(ParamsOf(stem + "Del", 0), QStringList{"ID"});
        }
    }
    EXPECT_FALSE(all.contains("SPCONFIGEMPTY"));
    EXPECT_FALSE(all.contains("SPCONFIGDEL"));
}

TEST_F(ProcCatalogue, ResultColumnsOfTheJournalsCarryTheGridNamesInOrder)
{
    EXPECT_EQ(ColumnsOf("select * from spOrderOpen(:F_IDORDER, :F_DATE_UP, :F_DATE_TO, :F_IDOSTATE, :F_NUM, "
                        ":F_IDCUST, :F_REG, :F_IDMARK, :F_IDMODEL, :F_DEL)"),
              QStringList({"ID", "NUM", "CREATE_DATE", "STATUS_DATE", "IDSTATUS_LKP_OSTATE_F_STATENAME",
                           "PSTATUS_LKP_PAYSTATE_F_STATUS", "SYS_IDCUST", "DLG_IDCUST", "MOBI_PHONE", "ADDRESS",
                           "SYS_IDAUTO", "DLG_FULLNAME", "TYPE_LKP_ATYPE_F_ATYPENAME", "MODEL_LKP_MODEL_F_MODNAME",
                           "SYS_MOD_NAME", "MARK_LKP_MARK_F_MARKNAME", "REG", "YEAR_LKP_AYEAR_F_AYEARNAME", "VIN",
                           "DRIVE", "COLNAME", "DISCOUNT", "RETURNZP", "GUARANTEE", "SUMORDER", "SUMPAY",
                           "COMMENT"}));
    EXPECT_EQ(ColumnsOf("select * from spStoreOpen(:F_DATE_UP, :F_DATE_TO, :F_OTYPE, :F_ARTICUL, :F_CODE, "
                        ":F_NAME, :F_IDCUST, :F_DEL)"),
              QStringList({"ID", "SYS_IDSTOREMAT", "NUM", "STATUS_LKP_PAYSTATUS_F_STATUS", "OPER_DATE",
                           "IDOTYPE_LKP_OTYPE_F_OTYPENAME", "SUPPORT", "COMMENT", "ARTICUL", "SCODE",
                           "IDMAT_LKP_MAT_F_MATNAME", "QUANTITY", "PRICEBUY", "PRICESELL", "SUMMBUY", "SUMMSELL",
                           "IDCUST_LKP_CUST_F_CUSTNAME"}));
    EXPECT_EQ(ColumnsOf("select * from spPayOpen(:F_DATE_UP, :F_DATE_TO, :F_PAYNUM, :F_PTYPE, :F_PURPOSE, "
                        ":F_CUST, :F_OBJ, :F_SUMM, :F_NAL, :F_DEL)"),
              QStringList({"ID", "PAYNUM", "PAY_DATE", "PTYPE_LKP_PAYTYPE_F_PAYNAME", "PURPOSE_LKP_PURPOSE_F_PURPOSE",
                           "IDCUST_LKP_CUST_F_CUSTNAME", "IDOBJ_LKP_OBJECT_F_OBJNAME", "OBJTEXT", "SUMM",
                           "NAME_LKP_NAL_F_NAME", "COMMENT"}));
    // The customer's payment history keeps PAYDATE, so that it is not made a date column.
    EXPECT_EQ(ColumnsOf("select * from spCustPayOpen(:IDCUST)"),
              QStringList({"ID", "DEL", "PAYNUM", "PAYDATE", "PTYPE_LKP_PAYTYPE_F_PAYNAME",
                           "PURPOSE_LKP_PURPOSE_F_PURPOSE", "IDOBJ_LKP_OBJECT_F_OBJNAME", "OBJTEXT", "SUMM",
                           "NAME_LKP_NAL_F_NAME", "COMMENT"}));
    EXPECT_EQ(ColumnsOf("select * from spOrdServOpen(:IDORDER)"),
              QStringList({"ID", "SYS_IDORDER", "IDSERV_LKP_SERV_F_SERVNAME", "OHOURS", "HOURS", "COST", "SUMM0",
                           "NDS", "OUTNDS", "DISCOUNT", "SUMM", "IDEMPL_LKP_EMPL_F_EMPLNAME"}));
    EXPECT_EQ(ColumnsOf("select * from spRolesActionsOpen(:ID_ROLE)"),
              QStringList({"ID", "ID_ROLE_LKP_ROLES_F_ROLENAME", "ID_ACTION_LKP_ACTIONS_F_ACTNAME",
                           "ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME"}));
    EXPECT_EQ(ColumnsOf("select * from spSalaryMain(:F_DATE_UP, :F_DATE_TO)"),
              QStringList({"ID", "PAY_DATE", "IDEMPL_LKP_EMPL_F_EMPLNAME", "SUMM"}));

    // The requisites are the customer's columns with HOME_PHONE under the name PHONES.
    QStringList cust = ColumnsOf("select * from spCustOpen(:F_CUSTNAME, :F_PHONE, :F_ADDRESS, :F_REG, "
                                 ":F_MODNAME, :F_MARK)");
    ASSERT_EQ(cust.size(), 24);
    EXPECT_EQ(cust.first(), "ID");
    EXPECT_EQ(cust.last(), "CARDNUMBER");
    EXPECT_EQ(cust.indexOf("HOME_PHONE"), 4);
    cust[4] = "PHONES";
    EXPECT_EQ(ColumnsOf("select * from spRequisitsOpen"), cust);
}

TEST_F(ProcCatalogue, TooNarrowResultColumnsFailWithTheServersTruncationError)
{
    const QString s30(30, QLatin1Char('D'));
    const QString s31(31, QLatin1Char('D'));
    db.Exec("insert into AUTO (ID, REG, DRIVE) values (100, 'W1', '" + s30 + "')");
    db.Exec("insert into ORDERS (ID, NUM, IDAUTO) values (100, 'N-100', 100)");
    const QString journal = "select * from spOrderOpen(null, null, null, null, '%%', null, '%%', null, null, null)";
    EXPECT_EQ(Select(journal).size(), 1);
    // DRIVE is 32 wide in the table and 30 in the journal.
    db.Exec("update AUTO set DRIVE = '" + s31 + "' where ID = 100");
    EXPECT_TRUE(IsTruncation(UserText([&] { Select(journal); })));

    db.Exec("insert into MAT (ID, MATNAME, ARTICUL, QUANTITY) values (100, 'Filter', '" + s31 + "', 0)");
    db.Exec("insert into STOREMAT (ID, IDOTYPE) values (100, 1)");
    db.Exec("insert into STORE (ID, IDSTOREMAT, IDMAT, QUANTITY) values (100, 100, 100, 1)");
    EXPECT_TRUE(IsTruncation(UserText([&] {
        Select("select * from spStoreOpen(null, null, null, null, null, null, null, null)");
    })));

    db.Exec("insert into RIGHTS (ID, RIGHTNAME) values (100, '" + QString(33, QLatin1Char('R')) + "')");
    EXPECT_TRUE(IsTruncation(UserText([&] { Select("select * from spRightsOpen"); })));

    // INN and KPP joined by "/" exceed the 50 of INNKPP.
    db.Exec("insert into CUST (ID, CUSTNAME, INN, KPP) values (100, 'Wide', '" + s30 + "', '" + s30 + "')");
    EXPECT_TRUE(IsTruncation(UserText([&] { Select("select * from spCustOpen2(100)"); })));
    db.Exec("insert into CUST (ID, CUSTNAME, INN) values (101, 'Half', '" + s30 + "')");
    const QList<Row> half = Select("select * from spCustOpen2(:ID_CUST)", {{"ID_CUST", 101}});
    ASSERT_EQ(half.size(), 1);
    EXPECT_TRUE(half[0].value("INNKPP").isNull());
    EXPECT_EQ(half[0].value("CUST_NAME").toString(), "Half");

    // The type's Edit takes 32 characters for a column of 30.
    EXPECT_EQ(UserText([&] { Call("spATypeEdit", {QVariant(), s30}); }), "<no error>");
    EXPECT_TRUE(IsTruncation(UserText([&] { Call("spATypeEdit", {QVariant(), s31}); })));
}

TEST_F(ProcContract, EmptyStoresABlankRowAndReturnsItsIdAndEmptyBodiesReturnNull)
{
    const int types = Int("select count(*) from ATYPE");
    const int type = Call("spATypeEmpty").toInt();
    EXPECT_GT(type, 0);
    EXPECT_EQ(Int("select count(*) from ATYPE"), types + 1);
    EXPECT_TRUE(db.Scalar(QString("select ATYPENAME from ATYPE where ID = %1").arg(type)).isNull());

    // UPD_MAT forbids a blank name on update only, so the blank row is stored and the card's save refuses it.
    const int mat = Call("spMatEmpty").toInt();
    EXPECT_EQ(Int(QString("select count(*) from MAT where ID = %1").arg(mat)), 1);
    EXPECT_EQ(UserText([&] { Call("spMatEdit", {mat, "", QVariant(), "A1", "C1", 0, 10.0, QVariant(), QVariant(), ""}); }),
              "Материал должен иметь название.");
    EXPECT_EQ(UserText([&] { Call("spMatEdit", {mat, "Шина", QVariant(), "A1", "C1", -1, 10.0, QVariant(), QVariant(), ""}); }),
              "На складе недостаточно данного материала.");
    EXPECT_EQ(Call("spMatEdit", {mat, "Шина", QVariant(), "A1", "C1", 7, 10.0, QVariant(), QVariant(), ""}).toInt(), mat);
    EXPECT_EQ(Int(QString("select QUANTITY from MAT where ID = %1").arg(mat)), 7);

    const int order = Call("spOrderEmpty").toInt();
    EXPECT_EQ(db.Scalar(QString("select NUM from ORDERS where ID = %1").arg(order)).toString(),
              QString("P-%1").arg(80000 + order));
    EXPECT_EQ(Int(QString("select IDSTATUS from ORDERS where ID = %1").arg(order)), 1);

    const int role = Call("spRolesEmpty").toInt();
    EXPECT_EQ(db.Scalar(QString("select ROLENAME from ROLES where ID = %1").arg(role)).toString(), "Новая роль");

    // Only this stem's Empty makes a header; the journal's Empty makes a line with a header of its own.
    const int headers = Int("select count(*) from STOREMAT");
    const int header = Call("spStoreMatEmpty").toInt();
    EXPECT_EQ(Int("select count(*) from STOREMAT"), headers + 1);
    EXPECT_EQ(Int(QString("select count(*) from STORE where IDSTOREMAT = %1").arg(header)), 0);
    const int line = Call("spStoreEmpty").toInt();
    EXPECT_EQ(Int(QString("select count(*) from STORE where ID = %1 and IDSTOREMAT is not null").arg(line)), 1);

    // spPayStatusEmpty writes to PAYSTATE.
    const int payStatuses = Int("select count(*) from PAYSTATUS");
    const int payStates = Int("select count(*) from PAYSTATE");
    Call("spPayStatusEmpty");
    EXPECT_EQ(Int("select count(*) from PAYSTATUS"), payStatuses);
    EXPECT_EQ(Int("select count(*) from PAYSTATE"), payStates + 1);

    for (const char *name : {"spObjectEmpty", "spClientsEmpty", "spCustOrderEmpty", "spCustPayEmpty"})
        EXPECT_TRUE(Call(name).isNull()) << name;
    EXPECT_TRUE(Call("spObjectEdit", {1, "X", 1, 1.0}).isNull());
    EXPECT_TRUE(Call("spOrderMatSumm", {order}).isNull());
    EXPECT_TRUE(query->Fields(1).IsNull());
}

TEST_F(ProcContract, EditUpdatesByIdAndInsertsUnknownAndNullKeys)
{
    const int first = Call("spATypeEdit", {QVariant(), "Кабриолет"}).toInt();
    EXPECT_EQ(db.Scalar(QString("select ATYPENAME from ATYPE where ID = %1").arg(first)).toString(), "Кабриолет");

    // An unknown key is taken as it is, without the generator.
    EXPECT_EQ(Call("spATypeEdit", {777, "Пикап"}).toInt(), 777);
    EXPECT_EQ(db.Scalar("select ATYPENAME from ATYPE where ID = 777").toString(), "Пикап");
    EXPECT_EQ(Call("spATypeEmpty").toInt(), first + 1);

    const int count = Int("select count(*) from ATYPE");
    EXPECT_EQ(Call("spATypeEdit", {777, "Фургон"}).toInt(), 777);
    EXPECT_EQ(Int("select count(*) from ATYPE"), count);
    EXPECT_EQ(db.Scalar("select ATYPENAME from ATYPE where ID = 777").toString(), "Фургон");

    // Category cards write the name only; the tree link stays.
    db.Exec("insert into CMAT (ID, CMATNAME) values (100, 'Шины')");
    db.Exec("insert into CMAT (ID, CMATNAME, PARENT) values (101, 'Летние', 100)");
    EXPECT_EQ(Call("spCmatEdit", {101, "Летние шины"}).toInt(), 101);
    EXPECT_EQ(Int("select PARENT from CMAT where ID = 101"), 100);

    // A state made through the procedures has no filter mark and is not offered to the card.
    const int state = Call("spOStateEmpty").toInt();
    Call("spOStateEdit", {state, "Архив"});
    EXPECT_TRUE(db.Scalar(QString("select AFILTER from OSTATE where ID = %1").arg(state)).isNull());
    const QList<Row> offered = Select("select * from spOStateOpen");
    EXPECT_EQ(Ids(offered), std::vector<int>({1, 2, 3, 4, 5, 6}));
    const QList<Row> filter = Select("select * from spOStateMain");
    ASSERT_EQ(filter.size(), 8);
    EXPECT_EQ(filter[0].value("STATENAME").toString(), "-Активен-");

    // Settings are saved by the key the caller knows, never looked up by name.
    const int settings = Int("select count(*) from CONFIG");
    Call("spConfigEdit", {QVariant(), "ORDERSNUM", "B-"});
    EXPECT_EQ(Int("select count(*) from CONFIG"), settings + 1);
    EXPECT_EQ(Select("select * from spConfigOpen2('ORDERSNUM')").size(), 2);

    // An empty password keeps the stored one; a new user with an empty one gets null.
    const int user = Call("spUsersEdit", {QVariant(), "Кассир", "secret", 2, "", QVariant(), 1}).toInt();
    Call("spUsersEdit", {user, "Кассир", "", 2, "Кассир Иванова", QVariant(), 1});
    EXPECT_EQ(db.Scalar(QString("select PASSWORD from USERS where ID = %1").arg(user)).toString(), "secret");
    const int another = Call("spUsersEdit", {QVariant(), "Мастер", "", 2, "", QVariant(), 1}).toInt();
    EXPECT_TRUE(db.Scalar(QString("select PASSWORD from USERS where ID = %1").arg(another)).isNull());
    // The grid never receives a password; the login list does.
    for (const Row &r : Select("select * from spUsersOpen"))
        EXPECT_TRUE(r.value("PASSWORD").isNull());
    bool found = false;
    for (const Row &r : Select("select * from spUsersActiveSelect"))
        if (r.value("ID").toInt() == user) {
            found = true;
            EXPECT_EQ(r.value("PASSWORD").toString(), "secret");
        }
    EXPECT_TRUE(found);
}

TEST_F(ProcContract, SearchingEditsReuseTheRowOfTheSameName)
{
    const int marks = Int("select count(*) from MARK");
    EXPECT_EQ(Call("spMarkEdit", {QVariant(), "Skoda"}).toInt(), 2);
    EXPECT_EQ(Call("spMarkEdit", {0, "Skoda"}).toInt(), 2);
    EXPECT_EQ(Int("select count(*) from MARK"), marks);
    const int lada = Call("spMarkEdit", {QVariant(), "Лада"}).toInt();
    EXPECT_EQ(Int("select count(*) from MARK"), marks + 1);
    EXPECT_EQ(Call("spMarkEdit", {QVariant(), "Лада"}).toInt(), lada);
    // A name held twice breaks the singleton search with the server's own error.
    db.Exec("insert into MARK (ID, MARKNAME) values (100, 'Двойник')");
    db.Exec("insert into MARK (ID, MARKNAME) values (101, 'Двойник')");
    EXPECT_TRUE(UserText([&] { Call("spMarkEdit", {QVariant(), "Двойник"}); })
                    .contains("multiple rows in singleton select", Qt::CaseInsensitive));

    // A grid registers itself by its key and gets its caption refreshed.
    EXPECT_EQ(Call("spActionsEdit", {QVariant(), "Все пользователи", "UsersFM.frmUser"}).toInt(), 1);
    EXPECT_EQ(db.Scalar("select ACTNAME from ACTIONS where ID = 1").toString(), "Все пользователи");
    const int actions = Int("select count(*) from ACTIONS");
    const int action = Call("spActionsEdit", {QVariant(), "Отчёт", "ReportFM.frmReport"}).toInt();
    EXPECT_EQ(Int("select count(*) from ACTIONS"), actions + 1);
    EXPECT_EQ(Call("spActionsEdit", {0, "Отчёт", "ReportFM.frmReport"}).toInt(), action);

    // The full customer card overwrites every column of the found row; the short form keeps the others.
    db.Exec("insert into CUST (ID, CUSTNAME, MOBI_PHONE, INN) values (100, 'Иванов И.И.', '111', '7701')");
    QVariantList card{0, "Иванов И.И.", "222", "Тверская, 1"};
    for (int i = 0; i < 20; ++i)
        card << QVariant();
    EXPECT_EQ(Call("spCustEdit", card).toInt(), 100);
    EXPECT_EQ(db.Scalar("select MOBI_PHONE from CUST where ID = 100").toString(), "222");
    EXPECT_TRUE(db.Scalar("select INN from CUST where ID = 100").isNull());
    db.Exec("update CUST set INN = '7702' where ID = 100");
    EXPECT_EQ(Call("spCustEdit2", {QVariant(), "Иванов И.И.", "333", "Тверская, 2"}).toInt(), 100);
    EXPECT_EQ(db.Scalar("select INN from CUST where ID = 100").toString(), "7702");
    EXPECT_EQ(db.Scalar("select ADDRESS from CUST where ID = 100").toString(), "Тверская, 2");

    // Vehicles are found by registration number; FULLNAME is the triggers' alone.
    db.Exec("insert into AUTO (ID, TYPE, MODNAME, MARK, REG) values (100, 1, 1, 1, 'А777АА77')");
    const QString fullName = db.Scalar("select FULLNAME from AUTO where ID = 100").toString();
    const int autos = Int("select count(*) from AUTO");
    EXPECT_EQ(Call("spAutoEdit", {QVariant(), 1, 1, 1, "А777АА77", 3, "VIN1", "4WD", "Синий", "Другое имя"}).toInt(),
              100);
    EXPECT_EQ(Int("select count(*) from AUTO"), autos);
    EXPECT_EQ(db.Scalar("select COLNAME from AUTO where ID = 100").toString(), "Синий");
    EXPECT_EQ(Int("select AYEAR from AUTO where ID = 100"), 3);
    EXPECT_EQ(db.Scalar("select FULLNAME from AUTO where ID = 100").toString(), fullName);
    const int other = Call("spAutoEdit", {0, 2, 2, 2, "В001ВВ", QVariant(), "", "", "", ""}).toInt();
    EXPECT_NE(other, 100);
    EXPECT_EQ(Int("select count(*) from AUTO"), autos + 1);
}

TEST_F(ProcGuards, EveryDeleteGuardRefusesWithItsOwnTextAndChangesNothing)
{
    for (const char *sql : {
             "insert into AUTO (ID, TYPE, MODNAME, MARK, REG, AYEAR) values (100, 1, 1, 1, 'А100АА', 1)",
             "insert into CUST (ID, CUSTNAME) values (101, 'С заказом')",
             "insert into CUST (ID, CUSTNAME) values (102, 'С поставкой')",
             "insert into CUST (ID, CUSTNAME) values (103, 'С платежом и заказом')",
             "insert into ORDERS (ID, IDCUST, IDAUTO) values (100, 101, 100)",
             "insert into ORDERS (ID, IDCUST) values (101, 103)",
             "insert into PAY (ID, PTYPE, PURPOSE, IDOBJECT, IDCUST, SUMM) values (100, 1, 1, 101, 103, 10)",
             "insert into STOREMAT (ID, IDOTYPE, IDCUST) values (100, 1, 102)",
             "insert into CMAT (ID, CMATNAME) values (100, 'Шины')",
             "insert into CMAT (ID, CMATNAME, PARENT) values (101, 'Зимние', 100)",
             "insert into CMAT (ID, CMATNAME) values (102, 'Масла')",
             "insert into CSERV (ID, CSERVNAME) values (100, 'Шиномонтаж')",
             "insert into CSERV (ID, CSERVNAME, PARENT) values (101, 'Легковые', 100)",
             "insert into CSERV (ID, CSERVNAME) values (102, 'Мойка')",
             "insert into SERV (ID, SERVNAME, IDCSERV, COST) values (100, 'Мойка кузова', 102, 300)",
             "insert into SERV (ID, SERVNAME, IDCSERV, COST) values (101, 'Монтаж', 100, 200)",
             "insert into PROD (ID, PRODNAME) values (100, 'Шинторг')",
             "insert into MAT (ID, MATNAME, IDCMAT, IDPROD, IDCNTRY, QUANTITY, COST) "
             "values (100, 'Масло', 102, 100, 1, 10, 50)",
             "insert into MAT (ID, MATNAME, IDCMAT, QUANTITY, COST) values (101, 'Шина', 100, 10, 100)",
             "insert into MAT (ID, MATNAME, QUANTITY, COST) values (102, 'Фильтр', 0, 20)",
             "insert into STORE (ID, IDSTOREMAT, IDMAT, QUANTITY) values (150, 100, 102, 5)",
             "insert into EMPLS (ID, EMPLNAME, IDPOS, IDESTAT) values (100, 'Сидоров', 1, 1)",
             "insert into EMPLS (ID, EMPLNAME) values (101, 'Петров')",
             "insert into SALARY (ID, IDEMPL, SUMM) values (100, 100, 10)",
             "insert into ORDSERV (ID, IDORDER, IDSERV, IDEMPL) values (100, 100, 100, 101)",
             "insert into ORDSERV (ID, IDORDER, IDSERV, IDEMPL) values (101, 100, 101, 100)",
             "insert into ORDMAT (ID, IDORDER, IDMAT, OCNT) values (100, 100, 101, 1)"})
        db.Exec(sql);

    struct Guard
    {
        const char *procedure;
        int id;
        const char *table;
        const char *text;
    };
    const Guard guards[] = {
        {"spATypeDel", 1, "ATYPE", "Имеются автомобили данного типа. Удаление запрещено."},
        {"spModDel", 1, "MODEL", "Имеются автомобили данной модели. Удаление запрещено."},
        {"spMarkDel", 1, "MARK", "Имеются автомобили данной марки. Удаление запрещено."},
        {"spYearDel", 1, "AYEAR", "Имеются автомобили данного года выпуска. Удаление запрещено."},
        // A category with children and materials names its children first.
        {"spCmatDel", 100, "CMAT", "Имеются подчиненные категории материалов. Удаление запрещено."},
        {"spCmatDel", 102, "CMAT", "Имеются материалы данной категории. Удаление запрещено."},
        {"spCServDel", 100, "CSERV", "Имеются подчиненные категории услуг. Удаление запрещено."},
        {"spCServDel", 102, "CSERV", "Имеются услуги данной категории. Удаление запрещено."},
        {"spCntryDel", 1, "CNTRY", "Имеются материалы данного производителя. Удаление запрещено."},
        {"spProdDel", 100, "PROD", "Имеются материалы данного поставщика. Удаление запрещено."},
        {"spServDel", 100, "SERV", "Имеются заказы включающие данную услугу. Удаление запрещено."},
        {"spPosDel", 1, "POSITS", "Имеются сотрудники с данной должностью. Удаление запрещено."},
        {"spEstatDel", 1, "ESTATS", "Имеются сотрудники с данным статусом. Удаление запрещено."},
        // Payouts are tested before service lines.
        {"spEmplDel", 100, "EMPLS", "Имеются выплаты по данному сотруднику. Удаление запрещено."},
        {"spEmplDel", 101, "EMPLS", "Имеются заказы по данному сотруднику. Удаление запрещено."},
        {"spOTypeDel", 1, "OTYPE", "Имеются поставки с данным типом складской операции. Удаление запрещено."},
        {"spMatDel", 101, "MAT", "Имеются заказы включающие данный материал. Удаление запрещено."},
        {"spMatDel", 102, "MAT", "Имеются поставки данного товара. Удаление запрещено."},
        // Payments are tested before orders, orders before store operations.
        {"spCustDel", 103, "CUST", "Имеются платежи по данному клиенту. Удаление запрещено."},
        {"spCustDel", 101, "CUST", "Имеются заказы по данному клиенту. Удаление запрещено."},
        {"spCustDel", 102, "CUST", "Имеются поставки по данному клиенту. Удаление запрещено."},
        {"spAutoDel", 100, "AUTO", "Имеются заказы по данному автомобилю. Удаление запрещено."},
        {"spOStateDel", 1, "OSTATE", "Имеются заказы данного статуса. Удаление запрещено."},
        {"spPayStateDel", 1, "PAYSTATE", "Имеются заказы данного платежного статуса. Удаление запрещено."},
        {"spPayStatusDel", 1, "PAYSTATE", "Имеются поставки с данным статусом платежа. Удаление запрещено."},
        {"spPTypeDel", 1, "PAYTYPE", "Имеются платежи данного типа. Удаление запрещено."},
        {"spPurposeDel", 1, "PURPOSE", "Имеются платежи данного направления. Удаление запрещено."},
        {"spOrderDel", 101, "ORDERS", "Имеются платежи по данному заказу. Удаление запрещено."},
        {"spRolesDel", 1, "ROLES", "Имеются пользователи данной роли. Удаление запрещено."},
        {"spStatesDel", 1, "STATES", "Имеются пользователи с данным статусом. Удаление запрещено."},
        {"spRightsDel", 4, "RIGHTS",
         "Имеются пользовательские действия с данными правами. Удаление запрещено."},
        {"spRolesActionsDel", 1, "ROLES_ACTIONS",
         "Имеются пользовательские действия с данными правами. Удаление запрещено."},
        {"spActionsDel", 1, "ACTIONS", "Пользовательские действия удалять запрещено."},
    };
    for (const Guard &g : guards) {
        SCOPED_TRACE(QString("%1(%2)").arg(g.procedure).arg(g.id).toStdString());
        EXPECT_EQ(UserText([&] { Call(g.procedure, {g.id}); }), QString::fromUtf8(g.text));
        EXPECT_EQ(Int(QString("select count(*) from %1 where ID = %2").arg(g.table).arg(g.id)), 1);
    }
    EXPECT_EQ(UserText([&] { Call("spRolesActionsEmpty"); }), "Добавление новых разрешений не предусмотрено.");

    // The role guard also keeps the role's rights.
    EXPECT_GT(Int("select count(*) from ROLES_ACTIONS where ID_ROLE = 1"), 0);
    // A material taken into an order stays undeletable after its store line was soft-deleted.
    const int orderLine = Int("select ID from STORE where IDORDMAT = 100");
    Call("spStoreDel", {orderLine});
    EXPECT_EQ(UserText([&] { Call("spMatDel", {101}); }),
              "Имеются заказы включающие данный материал. Удаление запрещено.");
    EXPECT_EQ(Int("select count(*) from STORE where IDORDMAT = 100"), 1);
}

TEST_F(ProcGuards, UnguardedOrClearedDeletesGoThrough)
{
    const int type = Call("spATypeEmpty").toInt();
    Call("spATypeDel", {type});
    EXPECT_EQ(Int(QString("select count(*) from ATYPE where ID = %1").arg(type)), 0);

    // A material whose store lines are all soft-deleted goes, and takes them along.
    db.Exec("insert into MAT (ID, MATNAME, QUANTITY, COST) values (103, 'Свеча', 10, 5)");
    db.Exec("insert into STOREMAT (ID, IDOTYPE) values (100, 1)");
    db.Exec("insert into STORE (ID, IDSTOREMAT, IDMAT, QUANTITY) values (150, 100, 103, 2)");
    EXPECT_EQ(UserText([&] { Call("spMatDel", {103}); }), "Имеются поставки данного товара. Удаление запрещено.");
    Call("spStoreDel", {150});
    EXPECT_EQ(UserText([&] { Call("spMatDel", {103}); }), "<no error>");
    EXPECT_EQ(Int("select count(*) from MAT where ID = 103"), 0);
    EXPECT_EQ(Int("select count(*) from STORE where ID = 150"), 0);

    // No guard looks at material lines: the foreign key answers in the server's words.
    db.Exec("insert into EMPLS (ID, EMPLNAME) values (100, 'Кузнецов')");
    db.Exec("insert into ORDERS (ID) values (100)");
    db.Exec("insert into ORDMAT (ID, IDORDER, IDEMPL) values (100, 100, 100)");
    const QString fk = UserText([&] { Call("spEmplDel", {100}); });
    EXPECT_TRUE(fk.contains("FOREIGN KEY")) << fk.toStdString();
    EXPECT_EQ(Int("select count(*) from EMPLS where ID = 100"), 1);

    // Forms of payment have no guard and no reference by constraint.
    db.Exec("insert into PAY (ID, NAL, SUMM) values (100, 2, 5)");
    Call("spNalDel", {2});
    EXPECT_EQ(Int("select count(*) from NAL where ID = 2"), 0);

    // A role without users leaves with its rights rows.
    const int role = Call("spRolesEmpty").toInt();
    EXPECT_GT(Call("spRolesActionsEdit", {QVariant(), role, 1, 2}).toInt(), 0);
    Call("spRolesDel", {role});
    EXPECT_EQ(Int(QString("select count(*) from ROLES where ID = %1").arg(role)), 0);
    EXPECT_EQ(Int(QString("select count(*) from ROLES_ACTIONS where ID_ROLE = %1").arg(role)), 0);

    EXPECT_EQ(UserText([&] { Call("spRolesActionsDel", {99999}); }), "<no error>");
    EXPECT_EQ(UserText([&] { Call("spCustOrderDel", {1}); }), "<no error>");

    // spPayStatusDel removes a row of PAYSTATE.
    Call("spPayStatusDel", {3});
    EXPECT_EQ(Int("select count(*) from PAYSTATE where ID = 3"), 0);
    EXPECT_EQ(Int("select count(*) from PAYSTATUS where ID = 3"), 1);

    // Nothing protects the shop's own row here; the requisites then read nothing.
    EXPECT_EQ(Select("select * from spRequisitsOpen").size(), 1);
    Call("spCustDel", {1});
    EXPECT_EQ(Select("select * from spRequisitsOpen").size(), 0);
}

TEST_F(ProcRights, RolesGetTheirDefaultRightOnAnActionWithoutRows)
{
    // Seeded rows.
    EXPECT_EQ(Call("spGetRights", {1, 1}).toInt(), 4);
    EXPECT_EQ(Call("spGetRights", {2, 1}).toInt(), 3);
    EXPECT_EQ(Call("spGetRights", {3, 1}).toInt(), 2);

    const int action = Call("spActionsEdit", {QVariant(), "Новая таблица", "NewFM.frmNew"}).toInt();
    EXPECT_EQ(Int(QString("select count(*) from ROLES_ACTIONS where ID_ACTION = %1").arg(action)), 0);
    EXPECT_EQ(Call("spRolesEmpty").toInt(), 4);
    EXPECT_EQ(Call("spRolesEmpty").toInt(), 5);
    const int expected[] = {4, 3, 2, 1, 0};
    for (int role = 1; role <= 5; ++role)
        EXPECT_EQ(Call("spGetRights", {role, action}).toInt(), expected[role - 1]) << "role " << role;
    // A pair that does not exist yields nothing.
    EXPECT_TRUE(Call("spGetRights", {1, 99999}).isNull());

    // The matrix of one role lists every action, sorted, with the defaults where no row exists.
    const int actions = Int("select count(*) from ACTIONS");
    const QList<Row> matrix = Select("select * from spRolesActionsOpen(:ID_ROLE)", {{"ID_ROLE", 2}});
    ASSERT_EQ(matrix.size(), actions);
    for (int i = 1; i < matrix.size(); ++i)
        EXPECT_LT(matrix[i - 1].value("ID_ACTION_LKP_ACTIONS_F_ACTNAME").toInt(),
                  matrix[i].value("ID_ACTION_LKP_ACTIONS_F_ACTNAME").toInt());
    const Row &last = matrix.last();
    EXPECT_EQ(last.value("ID_ACTION_LKP_ACTIONS_F_ACTNAME").toInt(), action);
    EXPECT_TRUE(last.value("ID").isNull());
    EXPECT_EQ(last.value("ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME").toInt(), 3);
    const QList<Row> full = Select("select * from spRolesActionsOpen(:ID_ROLE)", {{"ID_ROLE", QVariant()}});
    ASSERT_EQ(full.size(), actions * 5);
    EXPECT_EQ(full.first().value("ID_ROLE_LKP_ROLES_F_ROLENAME").toInt(), 1);
    EXPECT_EQ(full.last().value("ID_ROLE_LKP_ROLES_F_ROLENAME").toInt(), 5);
    EXPECT_TRUE(full.last().value("ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME").isNull());

    // Saving a right: a zero changes nothing, a value makes the row, a second save finds it.
    EXPECT_TRUE(Call("spRolesActionsEdit", {QVariant(), 2, action, 0}).isNull());
    EXPECT_EQ(Int(QString("select count(*) from ROLES_ACTIONS where ID_ACTION = %1").arg(action)), 0);
    const int row = Call("spRolesActionsEdit", {QVariant(), 2, action, 1}).toInt();
    EXPECT_EQ(Call("spGetRights", {2, action}).toInt(), 1);
    EXPECT_EQ(Call("spRolesActionsEdit", {0, 2, action, 2}).toInt(), row);
    EXPECT_EQ(Call("spGetRights", {2, action}).toInt(), 2);
    EXPECT_EQ(Int(QString("select count(*) from ROLES_ACTIONS where ID_ACTION = %1").arg(action)), 1);
    EXPECT_EQ(Call("spRolesActionsEdit", {QVariant(), 5, action, 3}).toInt() > 0, true);
    EXPECT_EQ(Call("spGetRights", {5, action}).toInt(), 3);

    // The administrator's rows can be added once and never changed.
    EXPECT_EQ(UserText([&] { Call("spRolesActionsEdit", {QVariant(), 1, 1, 2}); }),
              "Права администратора менять запрещено.");
    EXPECT_EQ(Call("spGetRights", {1, 1}).toInt(), 4);
    EXPECT_GT(Call("spRolesActionsEdit", {QVariant(), 1, action, 3}).toInt(), 0);
    EXPECT_EQ(Call("spGetRights", {1, action}).toInt(), 3);
    EXPECT_EQ(UserText([&] { Call("spRolesActionsEdit", {QVariant(), 1, action, 4}); }),
              "Права администратора менять запрещено.");
}

TEST_F(ProcRights, LoginListKeepsUserOneWhateverItsState)
{
    QList<Row> active = Select("select * from spUsersActiveSelect");
    EXPECT_EQ(Ids(active), std::vector<int>({1, 2, 3}));
    Call("spUsersEdit", {1, "Администратор", "", 1, "", QVariant(), 2});
    Call("spUsersEdit", {2, "Оператор", "", 2, "", QVariant(), 2});
    EXPECT_EQ(Int("select STATE from USERS where ID = 1"), 2);
    active = Select("select * from spUsersActiveSelect");
    EXPECT_EQ(Ids(active), std::vector<int>({1, 3}));
    // A new user is always active, whatever the card sent.
    const int user = Call("spUsersEmpty").toInt();
    EXPECT_EQ(Int(QString("select STATE from USERS where ID = %1").arg(user)), 1);
    EXPECT_FALSE(db.Scalar(QString("select SYS_CREATE_DATE from USERS where ID = %1").arg(user)).isNull());
    // Users have no guard, user 1 included.
    Call("spUsersDel", {1});
    EXPECT_EQ(Int("select count(*) from USERS where ID = 1"), 0);
}
