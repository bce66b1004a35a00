#!/usr/bin/env bash
# Measures line, function and branch coverage of src/ by the default test suite: a Debug build
# with --coverage (the coverage preset), all its tests, then gcovr's summary. Old counts are
# removed first, so each run measures one pass of the suite.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh gcovr
if [ -d build/coverage ]; then find build/coverage -name '*.gcda' -delete; fi
cmake --workflow --preset coverage
gcovr -r . --filter src/ --gcov-ignore-parse-errors -s build/coverage "$@"
