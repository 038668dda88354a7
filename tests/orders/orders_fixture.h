#pragma once
// The orders' windows over their own copy of the deployed database, logged in as the administrator,
// with helpers that put customers, vehicles, orders and catalogue rows into it.

#include "window_fixture.h"

class OrdersTest : public WindowTest
{
protected:
    // A text as an SQL literal; "null" stays null.
    static QString Quoted(const QString &text) { return text == "null" ? text : "'" + QString(text).replace("'", "''") + "'"; }

    int NewCustomer(const QString &name, const QString &phone = "null")
    {
        return Insert(QString("insert into CUST (CUSTNAME, MOBI_PHONE) values (%1, %2)").arg(Quoted(name), phone));
    }
    // Type 1, year 1, model 1 and make 1 unless told otherwise.
    int NewVehicle(const QString &reg, int model = 1, int mark = 1)
    {
        return Insert(QString("insert into AUTO (TYPE, MODNAME, MARK, REG, AYEAR) values (1, %1, %2, %3, 1)")
                          .arg(model).arg(mark).arg(Quoted(reg)));
    }
    // An order of today in status 1 ("Создан") unless told otherwise; 0 leaves a reference null.
    int NewOrder(int cust, int vehicle, int status = 1, const QString &createDate = "cast('today' as date)", int del = 0)
    {
        return Insert(QString("insert into ORDERS (IDCUST, IDAUTO, IDSTATUS, CREATE_DATE, DEL) values (%1, %2, %3, %4, %5)")
                          .arg(cust ? QString::number(cust) : "null", vehicle ? QString::number(vehicle) : "null")
                          .arg(status).arg(createDate).arg(del));
    }
    int NewService(const QString &name, double cost = 1000, double hours = 1, const QString &art = "null",
                   const QString &code = "null")
    {
        return Insert(QString("insert into SERV (SERVNAME, COST, HOURS, SERVART, SERVCODE) values (%1, %2, %3, %4, %5)")
                          .arg(Quoted(name)).arg(cost).arg(hours).arg(Quoted(art), Quoted(code)));
    }
    int NewMaterial(const QString &name, double cost = 100, int quantity = 100, const QString &articul = "null",
                    const QString &scode = "null")
    {
        return Insert(QString("insert into MAT (MATNAME, COST, QUANTITY, ARTICUL, SCODE) values (%1, %2, %3, %4, %5)")
                          .arg(Quoted(name)).arg(cost).arg(quantity).arg(Quoted(articul), Quoted(scode)));
    }
};
