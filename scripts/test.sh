#!/usr/bin/env bash
# Builds everything (warnings are errors) and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
cmake -S . -B build -G Ninja -DTESSALY_WERROR=ON
cmake --build build -j2
ctest --test-dir build -j2 --output-on-failure
