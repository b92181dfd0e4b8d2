#!/usr/bin/env bash
# Builds the library and the tessaly command, then shows the bundled sample ECU document: its
# summary (tessaly info), a check that loading it drops or repairs nothing (tessaly check), and
# a conversion that gives it back byte for byte. Exits non-zero when any of these fails.
# TESSALY_BUILD_DIR names the build folder (default: build).
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
build="${TESSALY_BUILD_DIR:-build}"
cmake -S . -B "$build" -G Ninja -DTESSALY_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j2 --target tessaly_cli
tessaly="$build/src/cli/tessaly"
sample=examples/engine-ecu.xml

echo
"$tessaly" info "$sample"
echo
"$tessaly" check "$sample"
echo
out="$(mktemp -d)"
trap 'rm -rf "$out"' EXIT
"$tessaly" convert "$sample" "$out/engine-ecu.xml" 2>/dev/null
cmp "$sample" "$out/engine-ecu.xml"
echo "$sample: converted back byte for byte"
