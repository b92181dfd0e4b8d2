#!/usr/bin/env bash
# The browser test of the HTML preview: installs Chromium when it is missing (needs root or
# sudo), builds the test binary in build/ (incrementally after scripts/test.sh; TESSALY_BUILD_DIR
# names another build folder) and runs the preview's command-line and browser tests. The pages
# and the screenshot the tests make are kept in BUILD/preview-artifacts.
set -euo pipefail
cd "$(dirname "$0")/.."

build="${TESSALY_BUILD_DIR:-build}"
./scripts/setup.sh chromium fonts-dejavu-core
cmake -S . -B "$build" -G Ninja -DTESSALY_WERROR=ON >/dev/null
cmake --build "$build" -j2 --target tessaly_tests tessaly_cli

export TESSALY_PREVIEW_ARTIFACTS="${TESSALY_PREVIEW_ARTIFACTS:-$PWD/$build/preview-artifacts}"
# Without a browser the tests would be skipped; here that is a failure.
export TESSALY_REQUIRE_BROWSER=1
timeout 170 "./$build/tests/tessaly_tests" --gtest_filter='PreviewBrowserTest.*:PreviewCommandTest.*'
echo "Preview pages and screenshot: $TESSALY_PREVIEW_ARTIFACTS"
