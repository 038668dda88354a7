// Deploying the built-in scripts into a new database, as the first start does.
#include "deploy_scripts.h"
#include "fib_database.h"
#include "fib_script.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

void BM_DeployBothScripts(benchmark::State &state)
{
    const QStringList tables = BuiltInScript(DeployScript::Tables);
    const QStringList procedures = BuiltInScript(DeployScript::Procedures);
    int statements = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QTemporaryDir dir;
        TpFIBDatabase db;
        TpFIBTransaction tr;
        db.SQLDialect = 1;
        db.DBName = dir.filePath("database.fdb");
        tr.SetDefaultDatabase(&db);
        db.CreateDatabase();
        TpFIBScripter scriptTables, scriptProcedures;
        for (TpFIBScripter *s : {&scriptTables, &scriptProcedures}) {
            s->SetDatabase(&db);
            s->SetTransaction(&tr);
        }
        scriptTables.SetScript(tables);
        scriptProcedures.SetScript(procedures);
        state.ResumeTiming();

        scriptTables.ExecuteScript(1);
        scriptProcedures.ExecuteScript(1);

        state.PauseTiming();
        statements = scriptTables.StatementsCount() + scriptProcedures.StatementsCount();
        if (tr.Active())
            tr.Commit();
        db.Close();
        state.ResumeTiming();
    }
    state.counters["statements"] = statements;
}

} // namespace

BENCHMARK(BM_DeployBothScripts)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_MAIN();
