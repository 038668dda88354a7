#pragma once
// The customers' and vehicles' windows over their own copy of the deployed database, logged in as the
// administrator, with the column titles and labels of resources/kelvarion.ini beside the test binary.

#include "window_fixture.h"

class CustomersTest : public WindowTest
{
protected:
    int NewCustomer(const QString &name, const QString &phone = "null", const QString &address = "null")
    {
        return Insert(QString("insert into CUST (CUSTNAME, MOBI_PHONE, ADDRESS) values ('%1', %2, %3)")
                          .arg(QString(name).replace("'", "''"), phone, address));
    }
    // Type 1, year 1 ("2011"), model 1 ("Passat") and make 1 ("Volkswagen") unless told otherwise.
    int NewVehicle(const QString &reg, int model = 1, int mark = 1)
    {
        return Insert(QString("insert into AUTO (TYPE, MODNAME, MARK, REG, AYEAR) values (1, %1, %2, '%3', 1)")
                          .arg(model).arg(mark).arg(reg));
    }
    int NewOrder(int cust, int vehicle)
    {
        return Insert(QString("insert into ORDERS (IDCUST, IDAUTO, IDSTATUS) values (%1, %2, 1)").arg(cust).arg(vehicle));
    }
};
