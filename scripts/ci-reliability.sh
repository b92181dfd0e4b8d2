#!/usr/bin/env bash
# The reliability jobs of the continuous integration (see docs/reliability.md):
#   1. the reliability tests' thread test under ThreadSanitizer (clang-14);
#   2. a short run of each libFuzzer harness (clang-14, AddressSanitizer and
#      UndefinedBehaviorSanitizer) from its seed corpus and the hostile documents;
#   3. valgrind memcheck over the command line converting the sample and hostile documents.
# Installs clang-14, its runtime and valgrind with apt-get when they are missing (needs root or
# sudo, through scripts/setup.sh). Environment: TESSALY_FUZZ_SECONDS (default 45) is the length
# of the import harness's run; the three others run half as long.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
fuzz_seconds=${TESSALY_FUZZ_SECONDS:-45}
jobs=2

step() { echo "== $* ($(date +%T))"; }

step "Tools"
./scripts/setup.sh clang-14 libclang-rt-14-dev valgrind

step "Thread test under ThreadSanitizer"
cmake -S . -B build-tsan -G Ninja -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DTESSALY_SANITIZE=thread -DTESSALY_BUILD_CLI=OFF -DTESSALY_BUILD_BENCHMARKS=OFF -DTESSALY_WERROR=ON >/dev/null
cmake --build build-tsan -j"$jobs" --target tessaly_reliability_tests
TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 \
  ./build-tsan/tests/tessaly_reliability_tests --gtest_filter='ThreadsTest.*'

step "Fuzz harnesses under AddressSanitizer and UndefinedBehaviorSanitizer"
cmake -S . -B build-fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DTESSALY_BUILD_FUZZERS=ON -DTESSALY_SANITIZE=address,undefined -DTESSALY_BUILD_TESTS=OFF \
  -DTESSALY_BUILD_CLI=OFF -DTESSALY_BUILD_BENCHMARKS=OFF -DTESSALY_WERROR=ON >/dev/null
cmake --build build-fuzz -j"$jobs" --target fuzz_import fuzz_round_trip fuzz_global_parameters fuzz_functions
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
fuzz() {
  local harness=$1 seconds=$2
  shift 2
  mkdir -p "$work/$harness"
  # New inputs go to the scratch directory; the seed directories are only read. Each run first
  # replays every seed, then mutates; a crash, a leak, an input slower than one second or a
  # process above 2 GB fails the job and leaves the input in $work for the log.
  (cd "$work" && "$root/build-fuzz/fuzz/$harness" -max_total_time="$seconds" -timeout=1 -rss_limit_mb=2048 \
    -max_len=16384 -print_final_stats=1 "$work/$harness" "$@" 2>"$work/$harness.log") || {
    tail -60 "$work/$harness.log"
    ls "$work"/crash-* "$work"/leak-* "$work"/timeout-* "$work"/oom-* 2>/dev/null || true
    exit 1
  }
  grep -E '^stat::number_of_executed_units|^stat::peak_rss_mb' "$work/$harness.log" | sed "s/^/$harness /"
}
fuzz fuzz_import "$fuzz_seconds" "$root/fuzz/corpus/import" "$root/fuzz/regressions/import" \
  "$root/tests/documents/hostile"
fuzz fuzz_round_trip "$((fuzz_seconds / 2))" "$root/fuzz/corpus/import" "$root/fuzz/regressions/import" \
  "$root/tests/documents/hostile"
fuzz fuzz_global_parameters "$((fuzz_seconds / 2))" "$root/fuzz/corpus/global_parameters"
fuzz fuzz_functions "$((fuzz_seconds / 2))" "$root/fuzz/corpus/functions"

step "valgrind memcheck over the command line"
if [ ! -x build/src/cli/tessaly ]; then
  cmake -S . -B build -G Ninja >/dev/null
  cmake --build build -j"$jobs" --target tessaly_cli
fi
documents=()
for f in examples/*.xml tests/documents/hostile/*.xml; do
  [ -f "$f" ] && documents+=("$f")
done
# A handful of whole documents from the seed corpus, the largest first.
while IFS= read -r f; do documents+=("$f"); done < <(ls -S fuzz/corpus/import/* | head -10)
for f in "${documents[@]}"; do
  # The command may refuse a hostile document (status 1); only memcheck's own status fails the job.
  status=0
  valgrind -q --error-exitcode=99 --leak-check=full --errors-for-leak-kinds=definite,indirect \
    ./build/src/cli/tessaly convert --force "$f" "$work/out.xml" >/dev/null 2>"$work/valgrind.log" || status=$?
  if [ "$status" -eq 99 ] || grep -q '^==[0-9]*==' "$work/valgrind.log"; then
    echo "memcheck found errors converting $f:"
    cat "$work/valgrind.log"
    exit 1
  fi
done
echo "memcheck: ${#documents[@]} documents converted without errors or leaks"
step "Done"
