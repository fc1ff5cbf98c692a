#!/usr/bin/env bash
# Builds everything with warnings as errors and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/bootstrap.sh
cmake --preset ci
cmake --build --preset ci
ctest --preset ci
