#!/usr/bin/env bash
# Builds the project and runs every test, first optimised, then under
# AddressSanitizer and UndefinedBehaviorSanitizer. Fails on the first failure.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
for preset in default asan; do
    echo "=== preset: $preset"
    cmake --workflow --preset "$preset"
done
