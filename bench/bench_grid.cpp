// A grid frame over 100,000 rows: the first screen is shown without fetching the rest. Reports the
// time of a refresh up to a painted first screen, the rows it fetched, and the process's peak memory;
// then the same grid taken to its last row by the scroll bar and by Ctrl+End, against the dataset's
// own fetch of every row measured in the same process.
#include "bench_support.h"
#include "fib_dataset.h"
#include "grid_frame.h"
#include "grid_view.h"
#include "orders_table.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QScrollBar>

namespace {

constexpr int kRows = OrdersTable::Rows;

// The table and the journal's dataset over it.
struct Fixture
{
    OrdersTable &table = OrdersTable::Instance();
    TpFIBDataSet orders;

    Fixture()
    {
        orders.setObjectName(QStringLiteral("spOrdersOpen"));
        orders.SetDatabase(&table.db);
        orders.SetTransaction(&table.tr);
        orders.SetSelectSQL(QStringLiteral("select ID, NUM, ORDER_DATE, CUSTNAME, REG, SUMORDER, SUMPAY, PAID_BIT, "
                                           "COMMENT from ORDERS order by ID"));
    }
};

Fixture &fixture()
{
    static Fixture f;
    return f;
}

// A frame as a journal holds it, shown at a usual window size.
struct Journal
{
    TGridFrame frame{nullptr, QStringLiteral("frmOrders")};
    explicit Journal(TFIBDataSet *dataSet)
    {
        frame.DS->SetDataSet(dataSet);
        frame.resize(1200, 800);
        frame.show();
    }
    // Refresh, then let the grid lay out, fetch what it shows and paint.
    void RefreshAndShow()
    {
        frame.actRefresh->Execute();
        QCoreApplication::processEvents();
        frame.GridView->viewport()->repaint();
    }
};

void BM_FrameFirstScreen(benchmark::State &state)
{
    Fixture &f = fixture();
    Journal journal(&f.orders);
    for (auto _ : state)
        journal.RefreshAndShow();
    state.counters["rows_fetched"] = f.orders.RecordCount();
    state.counters["all_fetched"] = f.orders.AllFetched() ? 1 : 0;
    state.counters["rows_in_table"] = kRows;
    state.counters["columns"] = journal.frame.GridView->ColumnCount();
    state.counters["peak_rss_kB"] = statusKb("VmHWM:");
    state.counters["rss_kB"] = statusKb("VmRSS:");
}

// The reference for the two below: the journal's dataset, bound to no grid, opened and fetched to the end.
void BM_DataSetFetchAll(benchmark::State &state)
{
    Fixture &f = fixture();
    for (auto _ : state) {
        f.orders.Open();
        f.orders.FetchAll();
        if (f.orders.RecordCount() != kRows)
            state.SkipWithError("wrong row count");
        f.orders.Close();
    }
}

// The scroll bar dragged to the bottom again and again until the last row is there.
void BM_FrameScrolledToEnd(benchmark::State &state)
{
    Fixture &f = fixture();
    Journal journal(&f.orders);
    for (auto _ : state) {
        journal.RefreshAndShow();
        QScrollBar *bar = journal.frame.GridView->verticalScrollBar();
        while (!f.orders.AllFetched()) {
            bar->setValue(bar->maximum());
            QCoreApplication::processEvents();
        }
        journal.frame.GridView->viewport()->repaint();
    }
    state.counters["rows_fetched"] = f.orders.RecordCount();
    state.counters["peak_rss_kB"] = statusKb("VmHWM:");
    state.counters["rss_kB"] = statusKb("VmRSS:");
}

void BM_FrameCtrlEnd(benchmark::State &state)
{
    Fixture &f = fixture();
    Journal journal(&f.orders);
    for (auto _ : state) {
        journal.RefreshAndShow();
        QKeyEvent key(QEvent::KeyPress, Qt::Key_End, Qt::ControlModifier);
        QCoreApplication::sendEvent(journal.frame.GridView, &key);
        QCoreApplication::processEvents();
        journal.frame.GridView->viewport()->repaint();
        if (!f.orders.AllFetched() || f.orders.CurrentIndex() != kRows - 1)
            state.SkipWithError("not on the last row");
    }
    state.counters["rows_fetched"] = f.orders.RecordCount();
    state.counters["peak_rss_kB"] = statusKb("VmHWM:");
    state.counters["rss_kB"] = statusKb("VmRSS:");
}

} // namespace

// First screen first, so that its peak memory is not the full grid's.
BENCHMARK(BM_FrameFirstScreen)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DataSetFetchAll)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FrameScrolledToEnd)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_FrameCtrlEnd)->Unit(benchmark::kMillisecond)->Iterations(3);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    fixture();
    return runBenchmarks(argc, argv);
}
