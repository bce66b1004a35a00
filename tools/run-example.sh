#!/usr/bin/env bash
# Builds the library and runs the example program, which builds a document through the exports
# and writes it as indented JSON: to standard output, or to the file given as argument.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target write_document
./build/default/examples/write_document "$@"
