#pragma once
// A small database of goods and their kinds, made once for the suite, and datasets over it.

#include "fib_datasource.h"
#include "scripted_dialogs.h"
#include "test_database.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

class ToolkitTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        db = new TestDatabase("toolkit.fdb");
        db->Exec("create table KINDS (ID integer not null primary key, KINDNAME varchar(20))");
        db->Exec("create table GOODS (ID integer not null primary key, NAME varchar(40), PRICE double precision, "
                 "MADE_DATE date, PAID_BIT integer, KIND_ID integer)");
        db->Exec("create procedure MANY_ROWS (N integer) returns (ID integer, NAME varchar(20)) as "
                 "begin ID = 0; while (ID < N) do begin ID = ID + 1; NAME = 'row ' || ID; suspend; end end");
        db->CommitAndRestart();
        db->Exec("insert into KINDS values (1, 'Масло')");
        db->Exec("insert into KINDS values (2, 'Фильтр')");
        db->Exec("insert into GOODS values (1, 'Масло 5W40', 1234.5, '2024-03-05 14:07:09', 1, 1)");
        db->Exec("insert into GOODS values (2, 'Фильтр воздушный', 100, '2024-03-06 09:00:00', 0, 2)");
        db->Exec("insert into GOODS values (3, 'Неизвестно', null, null, null, 7)");
        db->CommitAndRestart();
    }
    static void TearDownTestSuite()
    {
        delete db;
        db = nullptr;
    }

    void SetUp() override { dialogs.Install(); }

    void TearDown() override
    {
        widgets.clear();
        source.reset();
        dataSets.clear();
    }

    // The one data source of a test, over `ds`.
    TDataSource *Source(TFIBDataSet *ds)
    {
        source = std::make_unique<TDataSource>(nullptr, ds);
        return source.get();
    }

    // An open dataset over the suite's database; a harmless update statement lets it be edited.
    TpFIBDataSet *Open(const QString &select, bool editable = true)
    {
        dataSets.push_back(std::make_unique<TpFIBDataSet>());
        TpFIBDataSet *ds = dataSets.back().get();
        ds->setObjectName(QStringLiteral("ds%1").arg(dataSets.size()));
        ds->SetDatabase(&db->Db());
        ds->SetTransaction(&db->Tr());
        ds->SetSelectSQL(select);
        if (editable)
            ds->UpdateSQL = "update GOODS set NAME = NAME where ID = :OLD_ID";
        ds->Open();
        return ds;
    }

    template <class W>
    W *Keep(W *widget)
    {
        widgets.emplace_back(widget);
        return widget;
    }

    static TestDatabase *db;
    ScriptedDialogs dialogs;
    // Widgets go before the sources and datasets they show.
    std::vector<std::unique_ptr<TpFIBDataSet>> dataSets;
    std::vector<std::unique_ptr<QObject>> widgets;
    std::unique_ptr<TDataSource> source;
};

inline TestDatabase *ToolkitTest::db = nullptr;
