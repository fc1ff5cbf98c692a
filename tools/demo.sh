#!/usr/bin/env bash
# Builds the library and runs the demo program: bash tools/demo.sh [args...]
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/bootstrap.sh
cmake --preset default >/dev/null
cmake --build --preset default --target zyn_demo
./build/default/demo/zyn_demo "$@"
