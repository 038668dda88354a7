// Fetching 100,000 rows through TpFIBDataSet against a bare isc_dsql_fetch loop over the same select,
// and opening that select (which must fetch only the first row).
#include "fib_dataset.h"
#include "fib_library.h"
#include "orders_table.h"

#include <benchmark/benchmark.h>
#include <memory>

namespace {

constexpr int kRows = OrdersTable::Rows;
const char *const kSelect = "select ID, NUM, ORDER_DATE, CUSTNAME, REG, SUMORDER, SUMPAY, STATE, COMMENT from ORDERS";

OrdersTable &fixture() { return OrdersTable::Instance(); }

// The reference: prepare once, then execute and fetch every row into the descriptor's buffers.
void BM_BareFetchLoop(benchmark::State &state)
{
    OrdersTable &f = fixture();
    TFIBClientLibrary &fb = TFIBClientLibrary::Load();
    ISC_STATUS_ARRAY st{};
    isc_stmt_handle stmt = 0;
    fb.isc_dsql_allocate_statement(st, f.db.Handle(), &stmt);
    XSQLDA *out = static_cast<XSQLDA *>(calloc(1, XSQLDA_LENGTH(16)));
    out->version = SQLDA_VERSION1;
    out->sqln = 16;
    fb.isc_dsql_prepare(st, f.tr.Handle(), &stmt, 0, kSelect, 1, out);
    std::vector<std::vector<char>> buffers(out->sqld);
    std::vector<short> nulls(out->sqld);
    for (int i = 0; i < out->sqld; ++i) {
        XSQLVAR &v = out->sqlvar[i];
        buffers[i].resize(v.sqllen + 2);
        v.sqldata = buffers[i].data();
        v.sqlind = &nulls[i];
        v.sqltype |= 1;
    }
    for (auto _ : state) {
        fb.isc_dsql_execute(st, f.tr.Handle(), &stmt, 1, nullptr);
        int rows = 0;
        while (fb.isc_dsql_fetch(st, &stmt, 1, out) == 0)
            ++rows;
        fb.isc_dsql_free_statement(st, &stmt, DSQL_close);
        if (rows != kRows)
            state.SkipWithError("wrong row count");
    }
    fb.isc_dsql_free_statement(st, &stmt, DSQL_drop);
    free(out);
}

void BM_DataSetFetchAll(benchmark::State &state)
{
    OrdersTable &f = fixture();
    TpFIBDataSet ds;
    ds.SetDatabase(&f.db);
    ds.SetTransaction(&f.tr);
    ds.SetSelectSQL(QString::fromUtf8(kSelect));
    for (auto _ : state) {
        ds.Open();
        ds.FetchAll();
        if (ds.RecordCount() != kRows)
            state.SkipWithError("wrong row count");
        ds.Close();
    }
}

void BM_DataSetOpen(benchmark::State &state)
{
    OrdersTable &f = fixture();
    TpFIBDataSet ds;
    ds.SetDatabase(&f.db);
    ds.SetTransaction(&f.tr);
    ds.SetSelectSQL(QString::fromUtf8(kSelect));
    int fetched = 0;
    for (auto _ : state) {
        ds.Open();
        fetched = ds.RecordCount();
        benchmark::DoNotOptimize(ds.FieldByName("CUSTNAME")->AsString());
        ds.Close();
    }
    state.counters["rows_fetched_at_open"] = fetched;
}

} // namespace

BENCHMARK(BM_BareFetchLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DataSetFetchAll)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DataSetOpen)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
