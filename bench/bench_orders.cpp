// The orders journal over 100,000 orders of a freshly deployed database: the window shown up to its
// first painted screen, and a filter change up to the refreshed first screen. Reports the rows fetched
// and the process's peak memory.
#include "data_dm.h"
#include "dialogs.h"
#include "grid_frame.h"
#include "grid_view.h"
#include "order_fm.h"
#include "text_editors.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <memory>

namespace {

constexpr int kOrders = 100000;

double statusKb(const char *key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(qstrlen(key)).trimmed().split(' ').first().toDouble();
    return 0;
}

// A data module on a new database in a folder of its own, with customers, vehicles and the orders of
// the last 30 days.
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
        Run("execute block as declare i integer = 1; begin while (i <= 1000) do begin "
            "insert into CUST (CUSTNAME, MOBI_PHONE) values ('Клиент ' || :i, '926-' || :i); "
            "insert into AUTO (TYPE, MODNAME, MARK, REG, AYEAR) values (1, 1, 1, 'А' || :i || 'ВС77', 1); "
            "i = i + 1; end end");
        Run("execute block as declare i integer = 1; declare c integer; declare a integer; begin "
            "select min(ID) from CUST where CUSTNAME starting with 'Клиент ' into :c; "
            "select min(ID) from AUTO where REG like 'А%ВС77' into :a; "
            "while (i <= 100000) do begin "
            "insert into ORDERS (IDCUST, IDAUTO, IDSTATUS, CREATE_DATE, COMMENT) values "
            "(:c + mod(:i, 1000), :a + mod(:i, 1000), mod(:i, 6) + 1, cast('today' as date) - mod(:i, 30), "
            "'Замена масла и фильтров'); i = i + 1; end end");
        dm->pFIBTransaction1.Commit();
        dm->pFIBTransaction1.StartTransaction();
    }

    void Run(const char *sql)
    {
        if (!dm->pFIBTransaction1.Active())
            dm->pFIBTransaction1.StartTransaction();
        TpFIBQuery q;
        q.SetDatabase(&dm->pFIBDatabaseMain);
        q.SetTransaction(&dm->pFIBTransaction1);
        q.SetSQLText(QString::fromUtf8(sql));
        q.ExecQuery();
    }

    static Shop &Instance()
    {
        static Shop shop;
        return shop;
    }
};

void paint(TOrderFM &journal)
{
    QCoreApplication::processEvents();
    journal.frmOrders->GridView->viewport()->repaint();
}

void BM_JournalFirstScreen(benchmark::State &state)
{
    Shop &shop = Shop::Instance();
    int fetched = 0;
    for (auto _ : state) {
        TOrderFM journal;
        journal.resize(1280, 800);
        journal.show();
        paint(journal);
        fetched = shop.dm->spOrdersOpen.RecordCount();
    }
    state.counters["rows_fetched"] = fetched;
    state.counters["orders_in_table"] = kOrders;
    state.counters["peak_rss_kB"] = statusKb("VmHWM:");
}

// What the filter timer's tick does after a change, up to the painted first screen; the 100 ms wait of
// the debounce itself is not counted.
void BM_JournalFilterRefresh(benchmark::State &state)
{
    Shop &shop = Shop::Instance();
    TOrderFM journal;
    journal.resize(1280, 800);
    journal.show();
    paint(journal);
    const QStringList plates = {QStringLiteral("1"), QStringLiteral("ВС7"), QStringLiteral("99"), QString()};
    int turn = 0;
    for (auto _ : state) {
        journal.edReg->SetEditValue(plates[turn++ % plates.size()]);
        journal.FilterChange();
        journal.tmrFilterTimer(journal.tmrFilter);
        paint(journal);
    }
    state.counters["rows_fetched"] = shop.dm->spOrdersOpen.RecordCount();
    state.counters["peak_rss_kB"] = statusKb("VmHWM:");
}

} // namespace

BENCHMARK(BM_JournalFirstScreen)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_JournalFilterRefresh)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    Shop::Instance();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
