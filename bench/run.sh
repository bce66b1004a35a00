#!/usr/bin/env bash
# Builds the benchmarks optimised, without the tests, and runs one of them:
#   bash bench/run.sh reader   reads each document of bench/data and writes it back; scans it
#   bash bench/run.sh writer   generates text for 1,000 to 1,000,000 records
#   bash bench/run.sh base64   encodes and decodes 64 MiB
#   bash bench/run.sh lookup   saves 1,000 to 40,000 labels in one object and looks each up;
#                              looks up the members of objects of 1 to 16 members
#   bash bench/run.sh peers    tqjson2 side by side with peer JSON libraries, one table a document
#   bash bench/run.sh memory   RSS under producer and consumer threads, a thread per read, and a
#                              100 MB document read and destroyed (a plain program: arguments are
#                              the number of reads and of threads)
# Extra arguments go to the benchmark (for example --benchmark_filter=read/).
set -euo pipefail
cd "$(dirname "$0")/.."
which="${1:?usage: bash bench/run.sh reader|writer|base64|lookup|peers|memory [benchmark arguments]}"
shift
bash tools/install-deps.sh
if [ "$which" = peers ]; then bash bench/install-peers.sh; fi
peers=OFF
if [ "$which" = peers ]; then peers=ON; fi
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTQ_TESTS=OFF -DTQ_BENCH_PEERS=$peers >/dev/null
cmake --build build/bench -j2 --target "${which}_bench"
if [ "$which" = peers ]; then exec python3 bench/peers.py "$@"; fi
if [ "$which" = memory ]; then exec ./build/bench/bench/memory_bench "$@"; fi
# libbenchmark 1.7 takes the minimum time as a plain number of seconds.
"./build/bench/bench/${which}_bench" --benchmark_min_time=0.5 "$@"
