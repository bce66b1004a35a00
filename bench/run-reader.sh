#!/usr/bin/env bash
# Builds the reading benchmark optimised, without the tests, and runs it over the documents of
# bench/data. Extra arguments go to the benchmark (for example --benchmark_filter=read/).
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTQ_TESTS=OFF >/dev/null
cmake --build build/bench -j2 --target reader_bench
# libbenchmark 1.7 takes the minimum time as a plain number of seconds.
./build/bench/bench/reader_bench --benchmark_min_time=0.5 "$@"
