// The orders journal's frame over 100,000 orders: the data module's spOrdersOpen in a grid frame, opened
// with the journal's own parameters (the last 30 days, every status, not deleted). Reports the first
// screen, the process's peak memory with it shown, and the same after Ctrl+End has brought every row.
//
// The orders are written by a child process into a deployed database under a data folder of its own,
// so that this process, like the program on an existing database, only attaches it.
#include "bench_shop.h"
#include "bench_support.h"
#include "data_dm.h"
#include "fib_dataset.h"
#include "grid_frame.h"
#include "grid_view.h"

#include <QApplication>
#include <QDate>
#include <QFile>
#include <QKeyEvent>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <memory>

namespace {

// Deploys the database under `dataHome` and writes the shop into it.
int fill(const QString &dataHome)
{
    qputenv("XDG_DATA_HOME", dataHome.toLocal8Bit());
    TDataDM dm(nullptr, QStringList{QStringLiteral("kelvarion")});
    fillShop(dm);
    return 0;
}

// The data module attached to the filled database, and the journal's frame over its dataset.
struct Journal
{
    std::unique_ptr<TDataDM> dm;
    std::unique_ptr<TGridFrame> frame;

    Journal()
    {
        dm = std::make_unique<TDataDM>(nullptr, QStringList{QStringLiteral("kelvarion")});
        frame = std::make_unique<TGridFrame>(nullptr, QStringLiteral("frmOrders"));
        frame->OnFillParameters = [](TFIBDataSet *ds) {
            const QDate today = QDate::currentDate();
            ds->ParamByName(QStringLiteral("F_DATE_UP")).SetValue(QDateTime(today.addDays(-30), QTime(0, 0)));
            ds->ParamByName(QStringLiteral("F_DATE_TO")).SetValue(QDateTime(today, QTime(0, 0)));
            ds->ParamByName(QStringLiteral("F_NUM")).SetValue(QStringLiteral("%%"));
            ds->ParamByName(QStringLiteral("F_REG")).SetValue(QStringLiteral("%%"));
            ds->ParamByName(QStringLiteral("F_DEL")).SetValue(0);
        };
        frame->DS->SetDataSet(&dm->spOrdersOpen);
        frame->resize(1200, 800);
        frame->show();
    }
    void RefreshAndShow()
    {
        frame->actRefresh->Execute();
        QCoreApplication::processEvents();
        frame->GridView->viewport()->repaint();
    }
};

Journal *g_journal = nullptr;

Journal &journal()
{
    return *g_journal;
}

void BM_JournalFirstScreen(benchmark::State &state)
{
    Journal &j = journal();
    for (auto _ : state)
        j.RefreshAndShow();
    state.counters["rows_fetched"] = j.dm->spOrdersOpen.RecordCount();
    state.counters["all_fetched"] = j.dm->spOrdersOpen.AllFetched() ? 1 : 0;
    state.counters["columns"] = j.frame->GridView->ColumnCount();
    state.counters["peak_rss_kB"] = statusKb("VmHWM:");
}

void BM_JournalCtrlEnd(benchmark::State &state)
{
    Journal &j = journal();
    for (auto _ : state) {
        j.RefreshAndShow();
        QKeyEvent key(QEvent::KeyPress, Qt::Key_End, Qt::ControlModifier);
        QCoreApplication::sendEvent(j.frame->GridView, &key);
        QCoreApplication::processEvents();
        j.frame->GridView->viewport()->repaint();
        if (j.dm->spOrdersOpen.RecordCount() != kShopOrders)
            state.SkipWithError("not every order fetched");
    }
    state.counters["rows_fetched"] = j.dm->spOrdersOpen.RecordCount();
    state.counters["peak_rss_kB"] = statusKb("VmHWM:");
}

} // namespace

// First screen first, so that its peak memory is not the full grid's.
BENCHMARK(BM_JournalFirstScreen)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_JournalCtrlEnd)->Unit(benchmark::kMillisecond)->Iterations(1);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--fill") == 0)
        return fill(QString::fromLocal8Bit(argv[2]));

    QTemporaryDir dataHome;
    QProcess filler;
    filler.setProcessChannelMode(QProcess::ForwardedChannels);
    filler.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--fill"), dataHome.path()});
    if (!filler.waitForFinished(-1) || filler.exitCode() != 0) {
        std::fprintf(stderr, "could not write the orders\n");
        return 1;
    }
    qputenv("XDG_DATA_HOME", dataHome.path().toLocal8Bit());
    // Gone before the application object.
    auto opened = std::make_unique<Journal>();
    g_journal = opened.get();
    const int code = runBenchmarks(argc, argv);
    g_journal = nullptr;
    return code;
}
