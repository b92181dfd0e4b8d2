#!/usr/bin/env bash
# Builds the library and the tessaly command, then converts the bundled sample ECU document and
# checks that the result is byte for byte the sample itself.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
cmake -S . -B build -G Ninja -DTESSALY_BUILD_TESTS=OFF >/dev/null
cmake --build build -j2 --target tessaly_cli
sample=examples/engine-ecu.xml
out=$(mktemp -d)/engine-ecu.xml
./build/src/cli/tessaly convert "$sample" "$out"
cmp "$sample" "$out" && echo "$sample: loaded and saved back byte for byte"
