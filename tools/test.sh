#!/usr/bin/env bash
# Builds the project and runs every test, first optimised, then under AddressSanitizer and
# UndefinedBehaviorSanitizer, then under ThreadSanitizer, then cross-built for Windows x64 and run
# under wine; then builds the fuzz targets (clang,
# libFuzzer), replays their regressions and corpora, and fuzzes each for a bounded time
# (TQ_FUZZ_SECONDS, 30 by default). Fails on the first failure or finding.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh --windows
for preset in default asan tsan windows; do
    echo "=== preset: $preset"
    cmake --workflow --preset "$preset"
done

echo "=== preset: fuzz"
cmake --workflow --preset fuzz
# Each target starts from a copy of its corpus, so the repository's corpora stay as committed, and
# runs in a folder of its own, where it writes its files; a finding stops the run and its input
# stays in build/fuzz/runs/<target>/.
for target in read_text read_file escape_decoding api_script; do
    run="build/fuzz/runs/$target"
    rm -rf "$run"
    mkdir -p "$run/corpus"
    cp fuzz/corpus/"$target"/* "$run/corpus/"
    echo "=== fuzzing $target for ${TQ_FUZZ_SECONDS:-30} s"
    if ! (cd "$run" && ../../fuzz/fuzz_"$target" -max_total_time="${TQ_FUZZ_SECONDS:-30}" \
        -timeout=10 -print_final_stats=1 -artifact_prefix=./ corpus >log.txt 2>&1); then
        tail -n 80 "$run/log.txt"
        echo "finding in $target: the input is in $run/, the log in $run/log.txt"
        exit 1
    fi
    grep -E '^(Done|stat::average_exec_per_sec)' "$run/log.txt"
done
