// The completed orders report over 50,000 orders of a freshly deployed database: the run button up to the
// painted grid with its footer sums, and the export of those rows to a saved workbook.
#include "bench_shop.h"
#include "bench_support.h"
#include "data_dm.h"
#include "date_edit.h"
#include "dialogs.h"
#include "grid_view.h"
#include "report_fm.h"
#include "shell.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QToolButton>
#include <memory>

namespace {

// The desktop as the export sees it: a program for workbooks, which opens nothing.
class QuietShell : public Shell
{
public:
    bool Open(const QString &) override { return true; }
    bool CanOpen(const QString &) override { return true; }
};

// The shop, with that desktop in place.
Shop &shopWithWorkbooks()
{
    static QuietShell shell;
    Shell::Install(&shell);
    return Shop::Instance();
}

// The shop's orders fall on the last 30 days evenly: the last 15 of them hold half, 50,000.
void lastFifteenDays(TfmVipZakaz &report)
{
    const QDate today = QDate::currentDate();
    report.edDateStart->SetEditValue(QDateTime(today.addDays(-14), QTime(0, 0)));
    report.edDateEnd->SetEditValue(QDateTime(today, QTime(0, 0)));
}

void paint(TfmVipZakaz &report)
{
    QCoreApplication::processEvents();
    report.cxGridDBTableView1->viewport()->repaint();
    report.repaint();
}

void BM_ReportRunToGrid(benchmark::State &state)
{
    Shop &shop = shopWithWorkbooks();
    TfmVipZakaz report;
    report.resize(1280, 800);
    report.show();
    lastFifteenDays(report);
    for (auto _ : state) {
        report.cxButton1->click();
        paint(report);
    }
    state.counters["rows"] = shop.dm->dbOtchetVipZakaz.RecordCount();
    state.counters["peak_rss_kB"] = statusKb("VmHWM:");
}

void BM_ReportExport(benchmark::State &state)
{
    Shop &shop = shopWithWorkbooks();
    TfmVipZakaz report;
    report.resize(1280, 800);
    report.show();
    lastFifteenDays(report);
    report.cxButton1->click();
    paint(report);
    qint64 bytes = 0;
    for (auto _ : state) {
        report.cxButton2Click(nullptr);
        state.PauseTiming();
        if (!QFile::exists(report.LastWorkbook())) {
            state.SkipWithError("no workbook written");
            break;
        }
        bytes = QFile(report.LastWorkbook()).size();
        QFile::remove(report.LastWorkbook());
        state.ResumeTiming();
    }
    state.counters["rows"] = shop.dm->dbOtchetVipZakaz.RecordCount();
    state.counters["file_kB"] = bytes / 1024.0;
    state.counters["peak_rss_kB"] = statusKb("VmHWM:");
}

} // namespace

BENCHMARK(BM_ReportRunToGrid)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ReportExport)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    shopWithWorkbooks();
    return runBenchmarks(argc, argv);
}
