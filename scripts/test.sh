#!/usr/bin/env bash
# Installs, builds everything and runs every test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j2
# The server program for the tests' private servers, before the suites that need it run in parallel.
bash scripts/firebird_server.sh build/firebird-server
export QT_QPA_PLATFORM=offscreen
ctest --test-dir build --output-on-failure -j2
