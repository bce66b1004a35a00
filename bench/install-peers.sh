#!/usr/bin/env bash
# Installs the peer JSON libraries that peers_bench measures tqjson2 against (Debian packages).
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh libcjson-dev libjansson-dev libjson-c-dev rapidjson-dev libsimdjson-dev
