#pragma once
// A new embedded database holding an orders-like table of 100,000 rows, made once per benchmark process.

#include "fib_database.h"
#include "fib_query.h"

#include <QTemporaryDir>

struct OrdersTable
{
    static constexpr int Rows = 100000;

    QTemporaryDir dir;
    TpFIBDatabase db;
    TpFIBTransaction tr;

    OrdersTable()
    {
        db.SQLDialect = 1;
        db.DBName = dir.filePath(QStringLiteral("bench.fdb"));
        tr.SetDefaultDatabase(&db);
        db.CreateDatabase();
        Run("create table ORDERS (ID integer not null primary key, NUM varchar(32), ORDER_DATE date, "
            "CUSTNAME varchar(255), REG varchar(32), SUMORDER float, SUMPAY float, STATE integer, "
            "PAID_BIT integer, COMMENT varchar(1024))");
        Run("execute block as declare i integer = 1; begin while (i <= 100000) do begin "
            "insert into ORDERS values (:i, 'P-' || (80000 + :i), '01.01.2026', 'Иванов Иван Иванович ' || :i, "
            "'А' || :i || 'ВС77', :i * 10.5, :i * 3.25, mod(:i, 6) + 1, mod(:i, 2), 'Замена масла и фильтров'); "
            "i = i + 1; end end");
        tr.Commit();
        tr.StartTransaction();
    }

    void Run(const char *sql)
    {
        tr.StartTransaction();
        TpFIBQuery q;
        q.SetDatabase(&db);
        q.SetTransaction(&tr);
        q.SetSQLText(QString::fromUtf8(sql));
        q.ExecQuery();
        if (q.IsDDL())
            tr.Commit();
    }

    static OrdersTable &Instance()
    {
        static OrdersTable table;
        return table;
    }
};
