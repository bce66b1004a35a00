#!/usr/bin/env bash
# Builds the tqjson tool and runs it: with no arguments it formats the sample document
# examples/store.json to standard output; otherwise the arguments are the tool's own
# (bash tools/run-tqjson.sh get examples/store.json store/items/3/name).
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target tqjson >/dev/null
if [ $# -eq 0 ]; then set -- format examples/store.json; fi
exec ./build/default/tools/tqjson/tqjson "$@"
