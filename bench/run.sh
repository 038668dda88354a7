#!/usr/bin/env bash
# Builds the benchmarks in Release (build-release/) and runs every one of them, five repetitions each.
# Prints each figure as the median of the five and, where a figure has a reference measured in the same
# process, the ratio of the medians against its target. Exits with 1 when a target is missed.
set -euo pipefail
cd "$(dirname "$0")/.."

missing=0
for p in g++ cmake ninja-build qt6-base-dev firebird-dev libfbclient2 firebird3.0-server-core libbenchmark-dev \
         libxlsxwriter-dev; do
  dpkg -s "$p" >/dev/null 2>&1 || missing=1
done
[ "$missing" -eq 0 ] || bash scripts/deps.sh

cmake -S . -B build-release -G Ninja -DCMAKE_BUILD_TYPE=Release -DKELVARION_TESTS=OFF >/dev/null
cmake --build build-release -j2 --target bench_fetch bench_grid bench_deploy bench_journal bench_orders bench_start bench_documents bench_reports kelvarion \
  >/dev/null
export QT_QPA_PLATFORM=offscreen

out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
failed=0

# Runs a benchmark, keeping its aggregates as JSON.
run() {
  local name=$1
  shift
  "./build-release/bench/$name" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
    --benchmark_format=json "$@" >"$out/$name.json" 2>"$out/$name.err" || {
    echo "$name failed:" >&2
    tail -20 "$out/$name.err" >&2
    exit 1
  }
}

# field <bench> <benchmark name> <key>: a value of the median of that benchmark.
field() {
  awk -v want="$2_median" -v key="\"$3\":" '
    $1 == "\"name\":" { n = $2; gsub(/[",]/, "", n); sub(/\/iterations:[0-9]+/, "", n); sub(/\/manual_time/, "", n) }
    n == want && $1 == key { v = $2; sub(/,$/, "", v); print v + 0; exit }' "$out/$1.json"
}

figure() { # <label> <value> <unit>
  printf '  %-58s %12s %s\n' "$1" "$2" "$3"
}

ms() { awk -v v="$1" 'BEGIN { printf "%.1f", v }'; }
mb() { awk -v v="$1" 'BEGIN { printf "%.1f", v / 1024 }'; }

ratio() { # <label> <value> <reference> <target>
  local r
  r=$(awk -v a="$2" -v b="$3" 'BEGIN { printf "%.2f", a / b }')
  local verdict=met
  awk -v r="$r" -v t="$4" 'BEGIN { exit !(r <= t) }' || { verdict="NOT MET"; failed=1; }
  printf '  %-58s %12s × (target ≤ %s ×: %s)\n' "$1" "$r" "$4" "$verdict"
}

echo "Benchmarks, $(date -u '+%Y-%m-%d %H:%M UTC'), medians of 5 (wall time); ratios are of medians from one process"

run bench_fetch
bare=$(field bench_fetch BM_BareFetchLoop real_time)
all=$(field bench_fetch BM_DataSetFetchAll real_time)
echo "bench_fetch: 100,000 rows of a 9-column select"
figure "bare isc_dsql_fetch loop" "$(ms "$bare")" ms
figure "TpFIBDataSet fetch all" "$(ms "$all")" ms
ratio "fetch all / bare loop" "$all" "$bare" 1.2
figure "open (rows fetched: $(field bench_fetch BM_DataSetOpen rows_fetched_at_open))" \
  "$(ms "$(field bench_fetch BM_DataSetOpen real_time)")" µs

run bench_grid
fetch=$(field bench_grid BM_DataSetFetchAll real_time)
scroll=$(field bench_grid BM_FrameScrolledToEnd real_time)
ctrlend=$(field bench_grid BM_FrameCtrlEnd real_time)
echo "bench_grid: a grid frame over 100,000 rows"
figure "first screen (rows fetched: $(field bench_grid BM_FrameFirstScreen rows_fetched))" \
  "$(ms "$(field bench_grid BM_FrameFirstScreen real_time)")" ms
figure "peak memory after the first screen" "$(mb "$(field bench_grid BM_FrameFirstScreen peak_rss_kB)")" MB
figure "dataset fetch all (reference)" "$(ms "$fetch")" ms
figure "scroll bar to the last row" "$(ms "$scroll")" ms
ratio "scroll bar to the end / dataset fetch all" "$scroll" "$fetch" 2
figure "Ctrl+End" "$(ms "$ctrlend")" ms
ratio "Ctrl+End / dataset fetch all" "$ctrlend" "$fetch" 2
figure "peak memory with every row in the grid" "$(mb "$(field bench_grid BM_FrameCtrlEnd peak_rss_kB)")" MB

run bench_deploy
echo "bench_deploy: both scripts into a new database"
figure "deploy ($(field bench_deploy BM_DeployBothScripts statements) statements)" \
  "$(ms "$(field bench_deploy BM_DeployBothScripts real_time)")" ms

run bench_journal
echo "bench_journal: spOrdersOpen in a grid frame over 100,000 orders"
figure "first screen (rows fetched: $(field bench_journal BM_JournalFirstScreen rows_fetched))" \
  "$(ms "$(field bench_journal BM_JournalFirstScreen real_time)")" ms
figure "peak memory with the first screen shown" "$(mb "$(field bench_journal BM_JournalFirstScreen peak_rss_kB)")" MB
figure "Ctrl+End to the last order" "$(ms "$(field bench_journal BM_JournalCtrlEnd real_time)")" ms
figure "peak memory with every order in the grid" "$(mb "$(field bench_journal BM_JournalCtrlEnd peak_rss_kB)")" MB

run bench_orders
echo "bench_orders: the orders journal window over 100,000 orders"
figure "shown to the first screen (rows fetched: $(field bench_orders BM_JournalFirstScreen rows_fetched))" \
  "$(ms "$(field bench_orders BM_JournalFirstScreen real_time)")" ms
figure "filter change to the refreshed screen (target < 100 ms)" \
  "$(ms "$(field bench_orders BM_JournalFilterRefresh real_time)")" ms
figure "peak memory with the journal open" "$(mb "$(field bench_orders BM_JournalFilterRefresh peak_rss_kB)")" MB

run bench_documents
doc=$(field bench_documents BM_OrderDocument/real_time real_time)
echo "bench_documents: one order document of 100 lines, template to saved file"
figure "one document (target < 50 ms)" "$(ms "$doc")" ms
awk -v v="$doc" 'BEGIN { exit !(v < 50) }' || { echo "  one document: target NOT MET"; failed=1; }

run bench_reports
export_ms=$(field bench_reports BM_ReportExport/real_time real_time)
echo "bench_reports: the completed-orders report over 50,000 orders"
figure "run button to the grid shown" "$(ms "$(field bench_reports BM_ReportRunToGrid/real_time real_time)")" ms
figure "export to a saved workbook (target < 2000 ms)" "$(ms "$export_ms")" ms
awk -v v="$export_ms" 'BEGIN { exit !(v < 2000) }' || { echo "  export: target NOT MET"; failed=1; }

run bench_start
echo "bench_start: the program on an existing database"
figure "process start to the login dialog" "$(ms "$(field bench_start BM_StartToLogin real_time)")" ms

exit "$failed"
