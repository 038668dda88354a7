// Seed rows, the security tables and the triggers of the reference tables, on a deployed database,
// driven by plain statements.
#include "database_test.h"

#include <gtest/gtest.h>

namespace {

class SchemaTables : public DeployedDatabaseTest {};

const QString kTaken = QStringLiteral("Роль с таким названием уже существует.");
const QString kAdmin = QStringLiteral("Права администратора менять запрещено.");
const QString kRecent = QStringLiteral("iif(datediff(second, SYS_CREATE_DATE, current_timestamp) < 120, 'now', "
                                       "SYS_CREATE_DATE)");

} // namespace

TEST_F(SchemaTables, SeedListsHoldTheIdsTheRulesCompareWith)
{
    Expect({{"select ID || ' ' || STATENAME || ' ' || AFILTER from OSTATE order by ID",
             "1 Создан 0; 2 В работе 0; 3 Ожидает з/п 0; 4 На согласовании 0; 5 Готов 0; 6 Закрыт 0; 7 -Активен- 1"},
            {"select ID, OTYPENAME from OTYPE order by ID", "1|Приход; 2|Расход; 3|Списание; 4|Возврат поставщику"},
            {"select ID, STATUS from PAYSTATE order by ID", "1|Не оплачен; 2|Частично оплачен; 3|Оплачен"},
            {"select ID, STATUS from PAYSTATUS order by ID", "1|Не оплачено; 2|Частично оплачено; 3|Оплачено"},
            {"select ID, PAYNAME from PAYTYPE order by ID", "1|Приход; 2|Расход"},
            {"select ID, PURPOSE, PAYTYPE_LKP_PAYTYPE_F_PAYNAME from PURPOSE order by ID",
             "1|Оплата заказа|1; 2|Оплата поставки|2"},
            {"select ID, STATENAME from STATES order by ID", "1|Активен; 2|Заблокирован"},
            {"select ID, RIGHTNAME from RIGHTS order by ID", "1|Запрещено; 2|Просмотр; 3|Изменение; 4|Полный доступ"},
            {"select ID, NAME from NAL order by ID", "1|Безналичный; 2|Наличный"},
            {"select ID, ATYPENAME from ATYPE order by ID", "1|Легковой; 2|Грузовой; 3|Минивен"},
            {"select ID, ROLENAME, COMMENT from ROLES order by ID",
             "1|Администратор|Администратор; 2|Оператор|Оператор; 3|Только просмотр|Только просмотр"},
            {"select ID, USERNAME, ID_ROLE, STATE, PASSWORD from USERS order by ID",
             "1|Администратор|1|1|null; 2|Оператор|2|1|null; 3|Только просмотр|3|1|null"},
            {"select ID, PNAME, PVALUE from CONFIG order by ID",
             "1|REPORTSNUM|1-; 2|ORDERSNUM|A-; 3|ORDERSPOSTFIX|001; 4|ORDERSTEXT|Заказ; 5|NEWROLENAME|Новая роль"},
            {"select ID, AYEARNAME, (select max(ID) from AYEAR) from AYEAR where ID in (1, 20) order by 1",
             "1|2011|20; 20|2030|20"},
            {"select count(*) || ':' || max(iif(DFROM = 100 and DTO = 3000, DVALUE, null)) from DISCOUNTS", "3:3.0000000"},
            // The shop is customer 1; every list, seeded or not, goes on from its last ID.
            {"select ID, CUSTNAME, BANK, CORR_ACC, CARDNUMBER, DISCOUNT, DISCOUNT_VALUE, iif(GEN_DIR is null, 0, 1) from CUST",
             "1|ООО \"Шиномонтажка\"|Первый шиномонтажный Банк|Корр.счёт|00000001|1|350.5|1"},
            {"insert into CUST (CUSTNAME) values ('Иванов И.И.') returning ID", "2"},
            {"select (select count(*) from PROD) + (select count(*) from SERV) + (select count(*) from MAT) "
             "from RDB$DATABASE", "0"},
            {"insert into PROD (PRODNAME) values ('Поставщик') returning ID", "1"},
            // The actions are the thirty grids, with a right for each role in ID blocks of 30: administrator 4,
            // operator 3, viewer 2, each action once.
            {"select ID, TACTION from ACTIONS where ID in (1, 18, 30) order by ID",
             "1|UsersFM.frmUser; 18|OrderFM.frmOrders; 30|SalaryCardFM.frmEmpl"},
            {"select ID, ACTNAME from ACTIONS where ID in (1, 18, 28, 30) order by ID",
             "1|Пользователи; 18|Заказы; 28|Карточка заказа. Услуги.; 30|Задолженность перед сотрудниками"},
            {"select ID_ROLE, count(distinct ID_ACTION), min(ID), max(ID), min(ID_RIGHTS), max(ID_RIGHTS) from ROLES_ACTIONS "
             "group by ID_ROLE order by 1", "1|30|1|30|4|4; 2|30|31|60|3|3; 3|30|61|90|2|2"},
            {"insert into ACTIONS (ACTNAME, TACTION) values ('Новая', 'NewFM.frmNew') returning ID", "31"}});
}

TEST_F(SchemaTables, SecurityAndReferenceTriggersKeepTheirRules)
{
    // Many roles may bear the default name, and no other name repeats.
    const QString last = "update ROLES set COMMENT = 'x' where ID = (select max(ID) from ROLES)";
    Expect({{"insert into ROLES (ROLENAME) values (null) returning ID, ROLENAME", "4|Новая роль"},
            {"insert into ROLES (ROLENAME, COMMENT) values ('', 'пустое') returning ID, ROLENAME", "5|Новая роль"},
            {"insert into ROLES (ROLENAME) values ('Новая роль') returning ID", "6"},
            {"update ROLES set ROLENAME = 'Оператор' where ID = 4", kTaken},
            {"select ROLENAME from ROLES where ID = 4", "Новая роль"},
            {"insert into ROLES (ROLENAME) values ('Администратор')", kTaken},
            {"update ROLES set ROLENAME = 'Мастер' where ID = 4"}, {"insert into ROLES (ROLENAME) values ('Мастер')", kTaken},
            // Its own present name, a new comment, and a null name all pass.
            {"update ROLES set ROLENAME = 'Оператор', COMMENT = 'другой' where ID = 2"},
            {"update ROLES set ROLENAME = null where ID = 5 returning ROLENAME", "null"}, {"select count(*) from ROLES", "6"},
            // With another default, "Новая роль" is an ordinary name borne twice: only the lower row may be written.
            {"insert into ROLES (ROLENAME) values (null) returning ROLENAME", "Новая роль"},
            {"update CONFIG set PVALUE = 'Роль' where PNAME = 'NEWROLENAME'"}, {last, kTaken},
            {"update ROLES set COMMENT = 'x' where ID = 6"},
            {"insert into ROLES (COMMENT) values ('c') returning ROLENAME", "Роль"},
            // The default name is read into fifteen characters.
            {"update CONFIG set PVALUE = 'Безымянная роль' where PNAME = 'NEWROLENAME'"},
            {"insert into ROLES (ROLENAME) values (null) returning ROLENAME", "Безымянная роль"},
            {"update CONFIG set PVALUE = 'Безымянная роль2' where PNAME = 'NEWROLENAME'"},
            {"insert into ROLES (ROLENAME) values ('Кассир')", "~string right truncation"},
            {"update ROLES set COMMENT = 'x' where ID = 2", "~string right truncation"},
            {"select count(*), (select COMMENT from ROLES where ID = 2) from ROLES", "9|другой"}});

    // Only the insert forces the state and stamps the creation time. Moving a rights row to role 1 is refused,
    // moving one away passes, and an administrator's row may still be added.
    Expect({{"insert into USERS (USERNAME, ID_ROLE, STATE, SYS_CREATE_DATE) values ('Петров', 2, 2, '01.01.2001') "
             "returning ID, STATE, " + kRecent, "4|1|now"},
            {"update USERS set STATE = 2, SYS_CREATE_DATE = '01.01.2001' where ID = 4 returning STATE, " + kRecent,
             "2|01-JAN-2001"},
            {"delete from ACTIONS where ID = 5", "Пользовательские действия удалять запрещено."},
            {"insert into ACTIONS (ACTNAME, TACTION) values ('Новая', 'NewFM.frmNew')"},
            {"delete from ACTIONS where ID = 31", "Пользовательские действия удалять запрещено."},
            {"select count(*) from ACTIONS", "31"},
            {"update ROLES_ACTIONS set ID_RIGHTS = 1 where ID_ROLE = 1 and ID_ACTION = 1", kAdmin},
            {"update ROLES_ACTIONS set ID_RIGHTS = 1 where ID_ROLE = 2 and ID_ACTION = 1"},
            {"update ROLES_ACTIONS set ID_ROLE = 1 where ID = 31", kAdmin},
            {"update ROLES_ACTIONS set ID_ROLE = 2 where ID = 30"},
            {"select ID, ID_ROLE, ID_RIGHTS from ROLES_ACTIONS where ID in (1, 30, 31) order by ID", "1|1|4; 30|2|4; 31|2|1"},
            {"insert into ROLES_ACTIONS (ID_ROLE, ID_ACTION, ID_RIGHTS) values (1, 31, 4)"}});

    // Services always have norm hours. The vehicle's name is composed on insert and follows only the body type; a
    // blank vehicle filled in later keeps no name, its old type was null.
    const QString name = "select FULLNAME from AUTO where ID = 1";
    Expect({{"insert into SERV (SERVNAME, HOURS, COST) values ('Мойка', 0, 300) returning HOURS", "1"},
            {"insert into SERV (SERVNAME, COST) values ('Шиномонтаж', 500) returning HOURS", "1"},
            {"insert into SERV (SERVNAME, HOURS, COST) values ('Развал', 2.5, 900) returning HOURS", "2.5"},
            {"update SERV set HOURS = 0 where ID = 3 returning HOURS", "1"},
            {"insert into EMPLS (EMPLNAME, SYS_CREATE_DATE) values ('Соколов', '01.01.2001') returning ID, " + kRecent,
             "1|now"},
            {"insert into AUTO (TYPE, MODNAME, MARK, REG) values (1, 1, 1, 'А123ВС77') returning FULLNAME",
             "А123ВС77 Легковой Passat Volkswagen"},
            {"insert into AUTO (TYPE, MODNAME, REG) values (1, 2, 'К456МН99') returning FULLNAME", "null"},
            {"update AUTO set REG = 'Е001КХ77', MODNAME = 3, MARK = 3 where ID = 1"},
            {name, "А123ВС77 Легковой Passat Volkswagen"}, {"update AUTO set TYPE = 2 where ID = 1"},
            {name, "Е001КХ77 Грузовой Ducato Fiat"}, {"insert into AUTO (REG) values (null)"},
            {"update AUTO set TYPE = 3, MODNAME = 4, MARK = 4, REG = 'М777ММ77' where ID = 3 returning FULLNAME", "null"}});
}
