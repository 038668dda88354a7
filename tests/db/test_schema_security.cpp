// Seed rows, the security tables and the triggers of the reference tables, on a deployed database,
// driven by plain statements.
#include "database_test.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

class SchemaTables : public DeployedDatabaseTest
{
protected:
    void Exec(const QString &sql) { db.Exec(sql); }
    int Int(const QString &sql) { return db.Scalar(sql).toInt(); }
    double Num(const QString &sql) { return db.Scalar(sql).toDouble(); }
    QString Str(const QString &sql) { return db.Scalar(sql).toString(); }
    bool IsNull(const QString &sql) { return db.Scalar(sql).isNull(); }

    // Seconds between a stored moment and now.
    double Age(const QString &column, const QString &table, int id)
    {
        return Num(QStringLiteral("select abs(datediff(second, %1, current_timestamp)) from %2 where ID = %3")
                       .arg(column, table)
                       .arg(id));
    }

};

class SchemaSeed : public SchemaTables
{
protected:
    // ID and one text column of a seeded list, in ID order.
    QStringList Names(const QString &table, const QString &column)
    {
        auto q = db.NewQuery();
        db.Tr().StartTransaction();
        q->SetSQLText(QStringLiteral("select ID, %1 from %2 order by ID").arg(column, table));
        q->ExecQuery();
        QStringList out;
        while (q->Next())
            out << QStringLiteral("%1 %2").arg(q->Fields(0).AsInteger()).arg(q->Fields(1).AsString());
        return out;
    }
};

class SchemaSecurity : public SchemaTables
{
};

class SchemaReference : public SchemaTables
{
};

} // namespace

TEST_F(SchemaSeed, StatesTypesAndPurposesHaveTheIdsTheRulesCompareWith)
{
    EXPECT_EQ(Names("OSTATE", "STATENAME"),
              QStringList({"1 Создан", "2 В работе", "3 Ожидает з/п", "4 На согласовании", "5 Готов", "6 Закрыт",
                           "7 -Активен-"}));
    EXPECT_EQ(Int("select count(*) from OSTATE where AFILTER = 0 and ID between 1 and 6"), 6);
    EXPECT_EQ(Int("select AFILTER from OSTATE where ID = 7"), 1);

    EXPECT_EQ(Names("OTYPE", "OTYPENAME"),
              QStringList({"1 Приход", "2 Расход", "3 Списание", "4 Возврат поставщику"}));
    EXPECT_EQ(Names("PAYSTATE", "STATUS"),
              QStringList({"1 Не оплачен", "2 Частично оплачен", "3 Оплачен"}));
    EXPECT_EQ(Names("PAYSTATUS", "STATUS"),
              QStringList({"1 Не оплачено", "2 Частично оплачено", "3 Оплачено"}));
    EXPECT_EQ(Names("PAYTYPE", "PAYNAME"), QStringList({"1 Приход", "2 Расход"}));
    EXPECT_EQ(Names("PURPOSE", "PURPOSE"), QStringList({"1 Оплата заказа", "2 Оплата поставки"}));
    EXPECT_EQ(Int("select PAYTYPE_LKP_PAYTYPE_F_PAYNAME from PURPOSE where ID = 1"), 1);
    EXPECT_EQ(Int("select PAYTYPE_LKP_PAYTYPE_F_PAYNAME from PURPOSE where ID = 2"), 2);
    EXPECT_EQ(Names("STATES", "STATENAME"), QStringList({"1 Активен", "2 Заблокирован"}));
    EXPECT_EQ(Names("RIGHTS", "RIGHTNAME"),
              QStringList({"1 Запрещено", "2 Просмотр", "3 Изменение", "4 Полный доступ"}));
    EXPECT_EQ(Names("NAL", "NAME"), QStringList({"1 Безналичный", "2 Наличный"}));
    EXPECT_EQ(Names("ATYPE", "ATYPENAME"), QStringList({"1 Легковой", "2 Грузовой", "3 Минивен"}));
    const QStringList years = Names("AYEAR", "AYEARNAME");
    ASSERT_EQ(years.size(), 20);
    EXPECT_EQ(years.first(), "1 2011");
    EXPECT_EQ(years.last(), "20 2030");

    EXPECT_EQ(Int("select count(*) from DISCOUNTS"), 3);
    EXPECT_NEAR(Num("select DVALUE from DISCOUNTS where DFROM = 100 and DTO = 3000"), 3, 1e-6);
    // The lists without seed rows start at 1 too.
    EXPECT_EQ(Int("select count(*) from PROD") + Int("select count(*) from SERV") + Int("select count(*) from MAT"), 0);
    EXPECT_EQ(Insert("insert into PROD (PRODNAME) values ('Поставщик')"), 1);
}

TEST_F(SchemaSeed, TheShopIsCustomerOneAndTheNextCustomerIsTwo)
{
    EXPECT_EQ(Int("select count(*) from CUST"), 1);
    EXPECT_EQ(Str("select CUSTNAME from CUST where ID = 1"), "ООО \"Шиномонтажка\"");
    EXPECT_EQ(Str("select BANK from CUST where ID = 1"), "Первый шиномонтажный Банк");
    EXPECT_EQ(Str("select CORR_ACC from CUST where ID = 1"), "Корр.счёт");
    EXPECT_EQ(Str("select CARDNUMBER from CUST where ID = 1"), "00000001");
    EXPECT_EQ(Int("select DISCOUNT from CUST where ID = 1"), 1);
    EXPECT_NEAR(Num("select DISCOUNT_VALUE from CUST where ID = 1"), 350.5, 1e-4);
    EXPECT_FALSE(IsNull("select GEN_DIR from CUST where ID = 1"));
    EXPECT_EQ(Insert("insert into CUST (CUSTNAME) values ('Иванов И.И.')"), 2);
}

TEST_F(SchemaSeed, UsersAndRolesAreTheThreeOfTheInstallation)
{
    EXPECT_EQ(Names("ROLES", "ROLENAME"), QStringList({"1 Администратор", "2 Оператор", "3 Только просмотр"}));
    EXPECT_EQ(Str("select COMMENT from ROLES where ID = 3"), "Только просмотр");
    EXPECT_EQ(Names("USERS", "USERNAME"), QStringList({"1 Администратор", "2 Оператор", "3 Только просмотр"}));
    for (int id = 1; id <= 3; ++id) {
        EXPECT_EQ(Int(QStringLiteral("select ID_ROLE from USERS where ID = %1").arg(id)), id);
        EXPECT_EQ(Int(QStringLiteral("select STATE from USERS where ID = %1").arg(id)), 1);
        EXPECT_TRUE(IsNull(QStringLiteral("select PASSWORD from USERS where ID = %1").arg(id)));
        EXPECT_FALSE(IsNull(QStringLiteral("select SYS_CREATE_DATE from USERS where ID = %1").arg(id)));
    }
}

TEST_F(SchemaSeed, ConfigHoldsTheFiveSettingsInOrder)
{
    EXPECT_EQ(Names("CONFIG", "PNAME"),
              QStringList({"1 REPORTSNUM", "2 ORDERSNUM", "3 ORDERSPOSTFIX", "4 ORDERSTEXT", "5 NEWROLENAME"}));
    EXPECT_EQ(Names("CONFIG", "PVALUE"), QStringList({"1 1-", "2 A-", "3 001", "4 Заказ", "5 Новая роль"}));
}

TEST_F(SchemaSeed, ActionsAreTheThirtyGridsWithARightForEachRole)
{
    const QStringList keys = {
        "UsersFM.frmUser", "UsersFM.frmRoles", "UsersFM.frmStates", "UsersFM.frmActions",
        "UsersFM.frmRolesActions", "UsersFM.frmRights", "DiscountFM.frmDiscount", "MaterialsFM.frmMaterials",
        "ServicesFM.frmServices", "EmployeeFM.frmEmployee", "CustFM.frmCust", "StoreFM.frmStore",
        "AutoFM.frmMark", "AutoFM.frmModel", "AutoFM.frmAType", "AutoFM.frmAYear", "AutoFM.frmAuto",
        "OrderFM.frmOrders", "PaymentFM.frmPayments", "SalaryFM.frmSalary", "CustCardFM.frmOrders",
        "CustCardFM.frmPayments", "StoreCardFM.frmMaterials", "MaterialsDialogFM.frmMaterials",
        "OrdersCardFM.frmOrdParts", "OrdersCardFM.frmOrdServ", "OrdersCardFM.frmOrdMat",
        "OrdServCardFM.frmServices", "OrdMatCardFM.frmMaterials", "SalaryCardFM.frmEmpl"};
    QStringList expected;
    for (int i = 0; i < keys.size(); ++i)
        expected << QStringLiteral("%1 %2").arg(i + 1).arg(keys[i]);
    EXPECT_EQ(Names("ACTIONS", "TACTION"), expected);
    EXPECT_EQ(Str("select ACTNAME from ACTIONS where ID = 1"), "Пользователи");
    EXPECT_EQ(Str("select ACTNAME from ACTIONS where ID = 18"), "Заказы");
    EXPECT_EQ(Str("select ACTNAME from ACTIONS where ID = 28"), "Карточка заказа. Услуги.");
    EXPECT_EQ(Str("select ACTNAME from ACTIONS where ID = 30"), "Задолженность перед сотрудниками");

    // 90 rows, role by role: administrator 4, operator 3, viewer 2, each on every action once.
    EXPECT_EQ(Int("select count(*) from ROLES_ACTIONS"), 90);
    const int rights[] = {4, 3, 2};
    for (int role = 1; role <= 3; ++role) {
        const QString where = QStringLiteral(" from ROLES_ACTIONS where ID_ROLE = %1").arg(role);
        EXPECT_EQ(Int("select count(distinct ID_ACTION)" + where), 30) << role;
        EXPECT_EQ(Int("select min(ID)" + where), (role - 1) * 30 + 1) << role;
        EXPECT_EQ(Int("select max(ID)" + where), role * 30) << role;
        EXPECT_EQ(Int("select min(ID_RIGHTS)" + where), rights[role - 1]) << role;
        EXPECT_EQ(Int("select max(ID_RIGHTS)" + where), rights[role - 1]) << role;
    }
    EXPECT_EQ(Insert("insert into ACTIONS (ACTNAME, TACTION) values ('Новая', 'NewFM.frmNew')"), 31);
}

TEST_F(SchemaSecurity, ManyRolesMayBearTheDefaultNameAndNoOtherNameRepeats)
{
    const int a = Insert("insert into ROLES (ROLENAME) values (null)");
    const int b = Insert("insert into ROLES (ROLENAME, COMMENT) values ('', 'пустое')");
    EXPECT_EQ(a, 4);
    EXPECT_EQ(Str(QStringLiteral("select ROLENAME from ROLES where ID = %1").arg(a)), "Новая роль");
    EXPECT_EQ(Str(QStringLiteral("select ROLENAME from ROLES where ID = %1").arg(b)), "Новая роль");
    EXPECT_EQ(Refusal("insert into ROLES (ROLENAME) values ('Новая роль')"), "");

    EXPECT_EQ(Refusal(QStringLiteral("update ROLES set ROLENAME = 'Оператор' where ID = %1").arg(a)),
              "ROLENAME_ALREADY_EXIST");
    EXPECT_EQ(refusalText, "Роль с таким названием уже существует.");
    EXPECT_EQ(Str(QStringLiteral("select ROLENAME from ROLES where ID = %1").arg(a)), "Новая роль");
    EXPECT_EQ(Refusal("insert into ROLES (ROLENAME) values ('Администратор')"), "ROLENAME_ALREADY_EXIST");
    EXPECT_EQ(Int("select count(*) from ROLES"), 6);

    EXPECT_EQ(Refusal(QStringLiteral("update ROLES set ROLENAME = 'Мастер' where ID = %1").arg(a)), "");
    EXPECT_EQ(Refusal("insert into ROLES (ROLENAME) values ('Мастер')"), "ROLENAME_ALREADY_EXIST");
    // Its own present name, a new comment, and a null name all pass.
    EXPECT_EQ(Refusal("update ROLES set ROLENAME = 'Оператор', COMMENT = 'другой' where ID = 2"), "");
    EXPECT_EQ(Refusal(QStringLiteral("update ROLES set ROLENAME = null where ID = %1").arg(b)), "");
    EXPECT_TRUE(IsNull(QStringLiteral("select ROLENAME from ROLES where ID = %1").arg(b)));
}

TEST_F(SchemaSecurity, AnotherDefaultNameMakesTheLowerNamesakeWin)
{
    const int a = Insert("insert into ROLES (ROLENAME) values (null)");
    const int b = Insert("insert into ROLES (ROLENAME) values (null)");
    Exec("update CONFIG set PVALUE = 'Роль' where PNAME = 'NEWROLENAME'");
    // "Новая роль" is now an ordinary name borne twice: only the lower row may be written.
    EXPECT_EQ(Refusal(QStringLiteral("update ROLES set COMMENT = 'x' where ID = %1").arg(b)), "ROLENAME_ALREADY_EXIST");
    EXPECT_EQ(Refusal(QStringLiteral("update ROLES set COMMENT = 'x' where ID = %1").arg(a)), "");
    const int c = Insert("insert into ROLES (COMMENT) values ('c')");
    EXPECT_EQ(Str(QStringLiteral("select ROLENAME from ROLES where ID = %1").arg(c)), "Роль");
}

TEST_F(SchemaSecurity, TheDefaultRoleNameIsReadIntoFifteenCharacters)
{
    Exec("update CONFIG set PVALUE = 'Безымянная роль' where PNAME = 'NEWROLENAME'");
    const int a = Insert("insert into ROLES (ROLENAME) values (null)");
    EXPECT_EQ(Str(QStringLiteral("select ROLENAME from ROLES where ID = %1").arg(a)), "Безымянная роль");

    Exec("update CONFIG set PVALUE = 'Безымянная роль2' where PNAME = 'NEWROLENAME'");
    EXPECT_EQ(Refusal("insert into ROLES (ROLENAME) values ('Кассир')"), "");
    EXPECT_EQ(refusalCode, -802) << refusalText.toStdString();
    EXPECT_TRUE(refusalText.contains("truncation")) << refusalText.toStdString();
    EXPECT_EQ(Refusal("update ROLES set COMMENT = 'x' where ID = 2"), "");
    EXPECT_EQ(refusalCode, -802) << refusalText.toStdString();
    EXPECT_EQ(Int("select count(*) from ROLES"), 4);
    EXPECT_EQ(Str("select COMMENT from ROLES where ID = 2"), "Оператор");
}

TEST_F(SchemaSecurity, UsersAreBornActiveAndMayBeLockedLater)
{
    const int id = Insert("insert into USERS (USERNAME, ID_ROLE, STATE, SYS_CREATE_DATE) "
                          "values ('Петров', 2, 2, '01.01.2001')");
    EXPECT_EQ(id, 4);
    EXPECT_EQ(Int(QStringLiteral("select STATE from USERS where ID = %1").arg(id)), 1);
    EXPECT_LT(Age("SYS_CREATE_DATE", "USERS", id), 120);

    Exec(QStringLiteral("update USERS set STATE = 2 where ID = %1").arg(id));
    EXPECT_EQ(Int(QStringLiteral("select STATE from USERS where ID = %1").arg(id)), 2);
    // Only the insert stamps the creation time.
    Exec(QStringLiteral("update USERS set SYS_CREATE_DATE = '01.01.2001' where ID = %1").arg(id));
    EXPECT_GT(Age("SYS_CREATE_DATE", "USERS", id), 86400.0 * 365);
}

TEST_F(SchemaSecurity, ActionsAreNeverDeletedAndAdministratorRightsNeverChange)
{
    EXPECT_EQ(Refusal("delete from ACTIONS where ID = 5"), "ACTION_NO_DEL");
    EXPECT_EQ(refusalText, "Пользовательские действия удалять запрещено.");
    const int added = Insert("insert into ACTIONS (ACTNAME, TACTION) values ('Новая', 'NewFM.frmNew')");
    EXPECT_EQ(Refusal(QStringLiteral("delete from ACTIONS where ID = %1").arg(added)), "ACTION_NO_DEL");
    EXPECT_EQ(Int("select count(*) from ACTIONS"), 31);

    EXPECT_EQ(Refusal("update ROLES_ACTIONS set ID_RIGHTS = 1 where ID_ROLE = 1 and ID_ACTION = 1"),
              "ADMIN_RIGHTS_NO_CH");
    EXPECT_EQ(refusalText, "Права администратора менять запрещено.");
    EXPECT_EQ(Int("select ID_RIGHTS from ROLES_ACTIONS where ID_ROLE = 1 and ID_ACTION = 1"), 4);

    EXPECT_EQ(Refusal("update ROLES_ACTIONS set ID_RIGHTS = 1 where ID_ROLE = 2 and ID_ACTION = 1"), "");
    EXPECT_EQ(Int("select ID_RIGHTS from ROLES_ACTIONS where ID_ROLE = 2 and ID_ACTION = 1"), 1);

    // The test is on the new role: moving a row to role 1 is refused, moving one away passes.
    EXPECT_EQ(Refusal("update ROLES_ACTIONS set ID_ROLE = 1 where ID = 31"), "ADMIN_RIGHTS_NO_CH");
    EXPECT_EQ(Refusal("update ROLES_ACTIONS set ID_ROLE = 2 where ID = 30"), "");
    EXPECT_EQ(Int("select ID_ROLE from ROLES_ACTIONS where ID = 30"), 2);

    EXPECT_EQ(Refusal(QStringLiteral("insert into ROLES_ACTIONS (ID_ROLE, ID_ACTION, ID_RIGHTS) values (1, %1, 4)")
                          .arg(added)),
              "");
    EXPECT_EQ(Int(QStringLiteral("select count(*) from ROLES_ACTIONS where ID_ROLE = 1 and ID_ACTION = %1").arg(added)),
              1);
}

TEST_F(SchemaReference, ServicesAlwaysHaveNormHoursAndEmployeesACreationTime)
{
    const int zero = Insert("insert into SERV (SERVNAME, HOURS, COST) values ('Мойка', 0, 300)");
    const int none = Insert("insert into SERV (SERVNAME, COST) values ('Шиномонтаж', 500)");
    const int some = Insert("insert into SERV (SERVNAME, HOURS, COST) values ('Развал', 2.5, 900)");
    EXPECT_NEAR(Num(QStringLiteral("select HOURS from SERV where ID = %1").arg(zero)), 1, 1e-6);
    EXPECT_NEAR(Num(QStringLiteral("select HOURS from SERV where ID = %1").arg(none)), 1, 1e-6);
    EXPECT_NEAR(Num(QStringLiteral("select HOURS from SERV where ID = %1").arg(some)), 2.5, 1e-6);
    Exec(QStringLiteral("update SERV set HOURS = 0 where ID = %1").arg(some));
    EXPECT_NEAR(Num(QStringLiteral("select HOURS from SERV where ID = %1").arg(some)), 1, 1e-6);

    const int empl = Insert("insert into EMPLS (EMPLNAME, SYS_CREATE_DATE) values ('Соколов', '01.01.2001')");
    EXPECT_EQ(empl, 1);
    EXPECT_LT(Age("SYS_CREATE_DATE", "EMPLS", empl), 120);
}

TEST_F(SchemaReference, VehicleNameIsComposedOnInsertAndFollowsOnlyTheBodyType)
{
    const int full = Insert("insert into AUTO (TYPE, MODNAME, MARK, REG) values (1, 1, 1, 'А123ВС77')");
    EXPECT_EQ(Str(QStringLiteral("select FULLNAME from AUTO where ID = %1").arg(full)),
              "А123ВС77 Легковой Passat Volkswagen");
    const int noMark = Insert("insert into AUTO (TYPE, MODNAME, REG) values (1, 2, 'К456МН99')");
    EXPECT_TRUE(IsNull(QStringLiteral("select FULLNAME from AUTO where ID = %1").arg(noMark)));

    // Number, model and make alone leave the name as it was.
    Exec(QStringLiteral("update AUTO set REG = 'Е001КХ77', MODNAME = 3, MARK = 3 where ID = %1").arg(full));
    EXPECT_EQ(Str(QStringLiteral("select FULLNAME from AUTO where ID = %1").arg(full)),
              "А123ВС77 Легковой Passat Volkswagen");
    Exec(QStringLiteral("update AUTO set TYPE = 2 where ID = %1").arg(full));
    EXPECT_EQ(Str(QStringLiteral("select FULLNAME from AUTO where ID = %1").arg(full)),
              "Е001КХ77 Грузовой Ducato Fiat");

    // A blank vehicle filled in later keeps no name: its old type was null.
    const int blank = Insert("insert into AUTO (REG) values (null)");
    Exec(QStringLiteral("update AUTO set TYPE = 3, MODNAME = 4, MARK = 4, REG = 'М777ММ77' where ID = %1").arg(blank));
    EXPECT_TRUE(IsNull(QStringLiteral("select FULLNAME from AUTO where ID = %1").arg(blank)));
}
