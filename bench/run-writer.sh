#!/usr/bin/env bash
# Builds the writer benchmark optimised, without the tests, and runs it. Extra arguments go to
# the benchmark (for example --benchmark_filter=minificado).
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTQ_TESTS=OFF >/dev/null
cmake --build build/bench -j2 --target writer_bench
# libbenchmark 1.7 takes the minimum time as a plain number of seconds.
./build/bench/bench/writer_bench --benchmark_min_time=0.2 "$@"
