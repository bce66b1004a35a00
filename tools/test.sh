#!/usr/bin/env bash
# Builds the project and runs every test, first optimised, then under AddressSanitizer and
# UndefinedBehaviorSanitizer, then under ThreadSanitizer. Fails on the first failure.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
for preset in default asan tsan; do
    echo "=== preset: $preset"
    cmake --workflow --preset "$preset"
done
