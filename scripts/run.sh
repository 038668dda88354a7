#!/usr/bin/env bash
# Installs, builds and starts the program.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKELVARION_TESTS=OFF -DKELVARION_BENCH=OFF
cmake --build build -j2
if [ -x build/app/kelvarion ]; then
  exec build/app/kelvarion "$@"
fi
echo "Программа не собрана." >&2; exit 1
