#pragma once
// The shop of 100,000 orders that the journal benchmarks open.

#include "data_dm.h"
#include "dialogs.h"

#include <QString>
#include <QTemporaryDir>
#include <memory>

constexpr int kShopOrders = 100000;

inline void execIn(TDataDM &dm, const QString &sql)
{
    if (!dm.pFIBTransaction1.Active())
        dm.pFIBTransaction1.StartTransaction();
    TpFIBQuery q;
    q.SetDatabase(&dm.pFIBDatabaseMain);
    q.SetTransaction(&dm.pFIBTransaction1);
    q.SetSQLText(sql);
    q.ExecQuery();
}

// Writes 1,000 customers, 1,000 vehicles and the orders, all of the last 30 days and of every state,
// into the data module's database and commits them.
inline void fillShop(TDataDM &dm)
{
    execIn(dm, QStringLiteral(
                   "execute block as declare i integer = 1; begin while (i <= 1000) do begin "
                   "insert into CUST (ID, CUSTNAME, MOBI_PHONE, ADDRESS) values (:i + 100000, "
                   "'Иванов Иван Иванович ' || :i, '+7 900 000-' || :i, 'г. Москва, ул. Ленина, д. ' || :i); "
                   "insert into AUTO (ID, TYPE, MODNAME, MARK, AYEAR, REG, VIN, DRIVE, COLNAME) values (:i + 100000, "
                   "1, 1, 1, 1, 'А' || :i || 'ВС77', 'XTA2107' || :i, 'задний', 'белый'); i = i + 1; end end"));
    execIn(dm, QStringLiteral(
                   "execute block as declare i integer = 1; begin while (i <= %1) do begin "
                   "insert into ORDERS (ID, CREATE_DATE, IDCUST, IDAUTO, IDSTATUS, SUMORDER, SUMPAY, DEL, COMMENT) "
                   "values (:i + 100000, cast('TODAY' as date) - mod(:i, 30), mod(:i, 1000) + 100001, "
                   "mod(:i, 1000) + 100001, mod(:i, 6) + 1, :i * 10.5, :i * 3.25, 0, 'Замена масла и фильтров'); "
                   "i = i + 1; end end")
                   .arg(kShopOrders));
    dm.pFIBTransaction1.Commit();
    dm.pFIBTransaction1.StartTransaction();
}

// A data module on a new database in a folder of its own, with the shop above; made once per process.
struct Shop
{
    QTemporaryDir home;
    ConsoleDialogs dialogs;
    std::unique_ptr<TDataDM> dm;

    Shop()
    {
        qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
        Dialogs::Install(&dialogs);
        dm = std::make_unique<TDataDM>(nullptr, QStringList{QStringLiteral("kelvarion")});
        CurrentUserId = CurrentRoleId = 1;
        fillShop(*dm);
    }

    static Shop &Instance()
    {
        static Shop shop;
        return shop;
    }
};
