#!/usr/bin/env bash
# Builds the library and runs the example program that builds a tree through the exports.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target build_tree
./build/default/examples/build_tree "$@"
