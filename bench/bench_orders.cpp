// The orders journal over 100,000 orders of a freshly deployed database: the window shown up to its
// first painted screen, and a filter change up to the refreshed first screen. Reports the rows fetched
// and the process's peak memory.
#include "bench_shop.h"
#include "bench_support.h"
#include "data_dm.h"
#include "dialogs.h"
#include "grid_frame.h"
#include "grid_view.h"
#include "order_fm.h"
#include "text_editors.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <memory>

namespace {

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
    state.counters["orders_in_table"] = kShopOrders;
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
    return runBenchmarks(argc, argv);
}
