#pragma once
// The store's catalogues and the staff windows over a copy of the deployed database whose catalogues
// hold a few rows.

#include "window_fixture.h"

class CatalogueTest : public WindowTest
{
protected:
    // The catalogues start empty: a few rows of each, before any window opens.
    void SetUp() override
    {
        WindowTest::SetUp();
        for (const char *sql : {
                 "insert into CMAT (CMATNAME) values ('Шины')",
                 "insert into CMAT (CMATNAME) values ('Расходные материалы')",
                 "insert into PROD (PRODNAME) values ('ООО \"Шинторг\"')",
                 "insert into CSERV (CSERVNAME) values ('Шиномонтаж')",
                 "insert into CSERV (CSERVNAME) values ('Балансировка')",
                 "insert into MAT (MATNAME, IDCMAT, ARTICUL, SCODE, QUANTITY, COST, IDPROD, IDCNTRY) "
                 "select 'Вентиль TR413', min(ID), 'TR413', '0001', 0, 50, null, 1 from CMAT where CMATNAME = 'Расходные материалы'",
                 "insert into MAT (MATNAME, IDCMAT, ARTICUL, SCODE, QUANTITY, COST) "
                 "select 'Груз балансировочный 10 г', min(ID), 'BG10', '0002', 0, 15 from CMAT where CMATNAME = 'Расходные материалы'",
                 "insert into MAT (MATNAME, IDCMAT, ARTICUL, SCODE, QUANTITY, COST) "
                 "select 'Шина 195/65 R15', min(ID), 'S19565', '0003', 0, 4200 from CMAT where CMATNAME = 'Шины'",
                 "insert into SERV (SERVART, SERVCODE, SERVNAME, IDCSERV, HOURS, COST) "
                 "select 'SM-01', '101', 'Снятие и установка колеса', min(ID), 1, 200 from CSERV where CSERVNAME = 'Шиномонтаж'",
                 "insert into SERV (SERVART, SERVCODE, SERVNAME, IDCSERV, HOURS, COST) "
                 "select 'BL-01', '201', 'Балансировка колеса', min(ID), 2, 500 from CSERV where CSERVNAME = 'Балансировка'",
                 "insert into EMPLS (EMPLNAME, IDPOS, IDESTAT, EMPL_FULL_NAME, PHONES, PERCSERV, PERCMAT) "
                 "values ('Соколов Д.', 1, 1, 'Соколов Дмитрий Игоревич', '926-000-11-22', 30, 5)",
             })
            Exec(sql);
    }
};
