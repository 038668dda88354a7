// Seed rows, the security tables and the triggers of the reference tables, on a deployed database,
// driven by plain statements.
#include "database_test.h"

#include <QRegularExpression>
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
    QVariant Get(const QString &table, int id, const QString &column)
    {
        return db.Scalar(QStringLiteral("select %1 from %2 where ID = %3").arg(column, table).arg(id));
    }
    // Seconds between a stored moment and now.
    double Age(const QString &column, const QString &table, int id)
    {
        return Get(table, id, QStringLiteral("abs(datediff(second, %1, current_timestamp))").arg(column)).toDouble();
    }
    // ID and one text column of a list, in ID order.
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

class SchemaSeed : public SchemaTables {};
class SchemaSecurity : public SchemaTables {};
class SchemaReference : public SchemaTables {};

} // namespace

TEST_F(SchemaSeed, ListsHoldTheIdsTheRulesCompareWith)
{
    const std::pair<const char *, const char *> lists[] = {
        {"OSTATE", "STATENAME || ' ' || AFILTER"},
        {"OTYPE", "OTYPENAME"},
        {"PAYSTATE", "STATUS"},
        {"PAYSTATUS", "STATUS"},
        {"PAYTYPE", "PAYNAME"},
        {"PURPOSE", "PURPOSE || ' ' || PAYTYPE_LKP_PAYTYPE_F_PAYNAME"},
        {"STATES", "STATENAME"},
        {"RIGHTS", "RIGHTNAME"},
        {"NAL", "NAME"},
        {"ATYPE", "ATYPENAME"},
        {"ROLES", "ROLENAME || ' ' || COMMENT"},
        {"USERS", "USERNAME || ' ' || ID_ROLE || ' ' || STATE || ' ' || coalesce(PASSWORD, '-')"},
        {"CONFIG", "PNAME || '=' || PVALUE"},
    };
    QStringList all;
    for (const auto &[table, column] : lists)
        all << QStringLiteral("%1: %2").arg(table, Names(table, column).join(", "));
    EXPECT_EQ(all.join('\n'),
              "OSTATE: 1 Создан 0, 2 В работе 0, 3 Ожидает з/п 0, 4 На согласовании 0, 5 Готов 0, 6 Закрыт 0, "
              "7 -Активен- 1\n"
              "OTYPE: 1 Приход, 2 Расход, 3 Списание, 4 Возврат поставщику\n"
              "PAYSTATE: 1 Не оплачен, 2 Частично оплачен, 3 Оплачен\n"
              "PAYSTATUS: 1 Не оплачено, 2 Частично оплачено, 3 Оплачено\n"
              "PAYTYPE: 1 Приход, 2 Расход\n"
              "PURPOSE: 1 Оплата заказа 1, 2 Оплата поставки 2\n"
              "STATES: 1 Активен, 2 Заблокирован\n"
              "RIGHTS: 1 Запрещено, 2 Просмотр, 3 Изменение, 4 Полный доступ\n"
              "NAL: 1 Безналичный, 2 Наличный\n"
              "ATYPE: 1 Легковой, 2 Грузовой, 3 Минивен\n"
              "ROLES: 1 Администратор Администратор, 2 Оператор Оператор, 3 Только просмотр Только просмотр\n"
              "USERS: 1 Администратор 1 1 -, 2 Оператор 2 1 -, 3 Только просмотр 3 1 -\n"
              "CONFIG: 1 REPORTSNUM=1-, 2 ORDERSNUM=A-, 3 ORDERSPOSTFIX=001, 4 ORDERSTEXT=Заказ, 5 NEWROLENAME=Новая роль");
    EXPECT_EQ(Str("select count(*) || ': ' || list(ID || ' ' || AYEARNAME) from AYEAR where ID in (1, 20)"),
              "2: 1 2011,20 2030");
    EXPECT_EQ(Int("select max(ID) from AYEAR"), 20);
    EXPECT_EQ(Str("select count(*) || ':' || max(case when DFROM = 100 and DTO = 3000 then DVALUE end) from DISCOUNTS"),
              "3:3.0000000");

    // The shop is customer 1; every list, seeded or not, goes on from its last ID.
    EXPECT_EQ(Str("select CUSTNAME || '|' || BANK || '|' || CORR_ACC || '|' || CARDNUMBER || '|' || DISCOUNT || '|' || "
                  "DISCOUNT_VALUE || '|' || iif(GEN_DIR is null, 0, 1) from CUST"),
              "ООО \"Шиномонтажка\"|Первый шиномонтажный Банк|Корр.счёт|00000001|1|350.50000|1");
    EXPECT_EQ(Insert("insert into CUST (CUSTNAME) values ('Иванов И.И.')"), 2);
    EXPECT_EQ(Int("select count(*) from PROD") + Int("select count(*) from SERV") + Int("select count(*) from MAT"), 0);
    EXPECT_EQ(Insert("insert into PROD (PRODNAME) values ('Поставщик')"), 1);
}

TEST_F(SchemaSeed, ActionsAreTheThirtyGridsWithARightForEachRole)
{
    const QStringList actions = Names("ACTIONS", "TACTION");
    ASSERT_EQ(actions.size(), 30);
    EXPECT_EQ(actions.first(), "1 UsersFM.frmUser");
    EXPECT_EQ(actions[17], "18 OrderFM.frmOrders");
    EXPECT_EQ(actions.last(), "30 SalaryCardFM.frmEmpl");
    EXPECT_EQ(Names("ACTIONS", "ACTNAME").filter(QRegularExpression("^(1|18|28|30) ")),
              QStringList({"1 Пользователи", "18 Заказы", "28 Карточка заказа. Услуги.",
                           "30 Задолженность перед сотрудниками"}));

    // Role by role, in ID blocks of 30: administrator 4, operator 3, viewer 2, each action once.
    EXPECT_EQ(Str("select list(S, ', ') from (select ID_ROLE || ':' || count(distinct ID_ACTION) || ':' || min(ID) || '-' || "
                  "max(ID) || ':' || min(ID_RIGHTS) || max(ID_RIGHTS) as S from ROLES_ACTIONS group by ID_ROLE order by 1)"),
              "1:30:1-30:44, 2:30:31-60:33, 3:30:61-90:22");
    EXPECT_EQ(Insert("insert into ACTIONS (ACTNAME, TACTION) values ('Новая', 'NewFM.frmNew')"), 31);
}

TEST_F(SchemaSecurity, ManyRolesMayBearTheDefaultNameAndNoOtherNameRepeats)
{
    const int a = Insert("insert into ROLES (ROLENAME) values (null)");
    const int b = Insert("insert into ROLES (ROLENAME, COMMENT) values ('', 'пустое')");
    EXPECT_EQ(a, 4);
    EXPECT_EQ(Get("ROLES", a, "ROLENAME").toString() + "|" + Get("ROLES", b, "ROLENAME").toString(),
              "Новая роль|Новая роль");
    EXPECT_EQ(Refusal("insert into ROLES (ROLENAME) values ('Новая роль')"), ""); // row 6

    EXPECT_EQ(Refusal(QStringLiteral("update ROLES set ROLENAME = 'Оператор' where ID = %1").arg(a)),
              "ROLENAME_ALREADY_EXIST");
    EXPECT_EQ(refusalText, "Роль с таким названием уже существует.");
    EXPECT_EQ(Get("ROLES", a, "ROLENAME").toString(), "Новая роль");
    EXPECT_EQ(Refusal("insert into ROLES (ROLENAME) values ('Администратор')"), "ROLENAME_ALREADY_EXIST");
    EXPECT_EQ(Refusal(QStringLiteral("update ROLES set ROLENAME = 'Мастер' where ID = %1").arg(a)), "");
    EXPECT_EQ(Refusal("insert into ROLES (ROLENAME) values ('Мастер')"), "ROLENAME_ALREADY_EXIST");
    // Its own present name, a new comment, and a null name all pass.
    EXPECT_EQ(Refusal("update ROLES set ROLENAME = 'Оператор', COMMENT = 'другой' where ID = 2"), "");
    EXPECT_EQ(Refusal(QStringLiteral("update ROLES set ROLENAME = null where ID = %1").arg(b)), "");
    EXPECT_TRUE(Get("ROLES", b, "ROLENAME").isNull());
    EXPECT_EQ(Int("select count(*) from ROLES"), 6);

    // With another default, "Новая роль" is an ordinary name borne twice: only the lower row may be written.
    const int c = Insert("insert into ROLES (ROLENAME) values (null)");
    Exec("update CONFIG set PVALUE = 'Роль' where PNAME = 'NEWROLENAME'");
    EXPECT_EQ(Refusal(QStringLiteral("update ROLES set COMMENT = 'x' where ID = %1").arg(c)), "ROLENAME_ALREADY_EXIST");
    EXPECT_EQ(Refusal(QStringLiteral("update ROLES set COMMENT = 'x' where ID = %1").arg(c - 1)), "");
    EXPECT_EQ(Get("ROLES", Insert("insert into ROLES (COMMENT) values ('c')"), "ROLENAME").toString(), "Роль");
}

TEST_F(SchemaSecurity, TheDefaultRoleNameIsReadIntoFifteenCharacters)
{
    Exec("update CONFIG set PVALUE = 'Безымянная роль' where PNAME = 'NEWROLENAME'");
    EXPECT_EQ(Get("ROLES", Insert("insert into ROLES (ROLENAME) values (null)"), "ROLENAME").toString(),
              "Безымянная роль");

    Exec("update CONFIG set PVALUE = 'Безымянная роль2' where PNAME = 'NEWROLENAME'");
    for (const char *sql : {"insert into ROLES (ROLENAME) values ('Кассир')", "update ROLES set COMMENT = 'x' where ID = 2"}) {
        EXPECT_EQ(Refusal(sql), "");
        EXPECT_EQ(refusalCode, -802) << sql;
        EXPECT_TRUE(refusalText.contains("truncation")) << refusalText.toStdString();
    }
    EXPECT_EQ(Int("select count(*) from ROLES"), 4);
    EXPECT_EQ(Str("select COMMENT from ROLES where ID = 2"), "Оператор");
}

TEST_F(SchemaSecurity, UsersAreBornActiveAndMayBeLockedLater)
{
    const int id = Insert("insert into USERS (USERNAME, ID_ROLE, STATE, SYS_CREATE_DATE) "
                          "values ('Петров', 2, 2, '01.01.2001')");
    EXPECT_EQ(id, 4);
    EXPECT_EQ(Get("USERS", id, "STATE").toInt(), 1);
    EXPECT_LT(Age("SYS_CREATE_DATE", "USERS", id), 120);

    // Only the insert forces the state and stamps the creation time.
    Exec(QStringLiteral("update USERS set STATE = 2, SYS_CREATE_DATE = '01.01.2001' where ID = %1").arg(id));
    EXPECT_EQ(Get("USERS", id, "STATE").toInt(), 2);
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
    EXPECT_EQ(Refusal("update ROLES_ACTIONS set ID_RIGHTS = 1 where ID_ROLE = 2 and ID_ACTION = 1"), "");
    // The test is on the new role: moving a row to role 1 is refused, moving one away passes.
    EXPECT_EQ(Refusal("update ROLES_ACTIONS set ID_ROLE = 1 where ID = 31"), "ADMIN_RIGHTS_NO_CH");
    EXPECT_EQ(Refusal("update ROLES_ACTIONS set ID_ROLE = 2 where ID = 30"), "");
    EXPECT_EQ(Str("select list(ID || ':' || ID_ROLE || ':' || ID_RIGHTS) from ROLES_ACTIONS where ID in (1, 30, 31)"),
              "1:1:4,30:2:4,31:2:1");
    // An administrator's row may still be added.
    EXPECT_EQ(Refusal(QStringLiteral("insert into ROLES_ACTIONS (ID_ROLE, ID_ACTION, ID_RIGHTS) values (1, %1, 4)")
                          .arg(added)),
              "");
}

TEST_F(SchemaReference, ServicesAlwaysHaveNormHoursAndEmployeesACreationTime)
{
    const int zero = Insert("insert into SERV (SERVNAME, HOURS, COST) values ('Мойка', 0, 300)");
    const int none = Insert("insert into SERV (SERVNAME, COST) values ('Шиномонтаж', 500)");
    const int some = Insert("insert into SERV (SERVNAME, HOURS, COST) values ('Развал', 2.5, 900)");
    EXPECT_NEAR(Get("SERV", zero, "HOURS").toDouble(), 1, 1e-6);
    EXPECT_NEAR(Get("SERV", none, "HOURS").toDouble(), 1, 1e-6);
    EXPECT_NEAR(Get("SERV", some, "HOURS").toDouble(), 2.5, 1e-6);
    Exec(QStringLiteral("update SERV set HOURS = 0 where ID = %1").arg(some));
    EXPECT_NEAR(Get("SERV", some, "HOURS").toDouble(), 1, 1e-6);

    const int empl = Insert("insert into EMPLS (EMPLNAME, SYS_CREATE_DATE) values ('Соколов', '01.01.2001')");
    EXPECT_EQ(empl, 1);
    EXPECT_LT(Age("SYS_CREATE_DATE", "EMPLS", empl), 120);
}

TEST_F(SchemaReference, VehicleNameIsComposedOnInsertAndFollowsOnlyTheBodyType)
{
    const int full = Insert("insert into AUTO (TYPE, MODNAME, MARK, REG) values (1, 1, 1, 'А123ВС77')");
    EXPECT_EQ(Get("AUTO", full, "FULLNAME").toString(), "А123ВС77 Легковой Passat Volkswagen");
    EXPECT_TRUE(Get("AUTO", Insert("insert into AUTO (TYPE, MODNAME, REG) values (1, 2, 'К456МН99')"), "FULLNAME").isNull());

    // Number, model and make alone leave the name as it was.
    Exec(QStringLiteral("update AUTO set REG = 'Е001КХ77', MODNAME = 3, MARK = 3 where ID = %1").arg(full));
    EXPECT_EQ(Get("AUTO", full, "FULLNAME").toString(), "А123ВС77 Легковой Passat Volkswagen");
    Exec(QStringLiteral("update AUTO set TYPE = 2 where ID = %1").arg(full));
    EXPECT_EQ(Get("AUTO", full, "FULLNAME").toString(), "Е001КХ77 Грузовой Ducato Fiat");

    // A blank vehicle filled in later keeps no name: its old type was null.
    const int blank = Insert("insert into AUTO (REG) values (null)");
    Exec(QStringLiteral("update AUTO set TYPE = 3, MODNAME = 4, MARK = 4, REG = 'М777ММ77' where ID = %1").arg(blank));
    EXPECT_TRUE(Get("AUTO", blank, "FULLNAME").isNull());
}
