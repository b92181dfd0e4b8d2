#!/usr/bin/env bash
# Rebuilds the fuzzers' seed corpus (fuzz/corpus) from the documents the unit tests parse.
#
#   fuzz/collect-seeds.sh BUILD_DIR      (BUILD_DIR holds a built tests/tessaly_tests)
#
# The tests run once with fuzz/seed_capture.cpp preloaded, which records every parsed buffer.
# Whole ECU documents go to corpus/import as they are; the fragments the tests parse (a Datas,
# Requests, Devices, AutoIdents or ds:Categories element, or one item of those) are placed in an
# ECU document frame first. Parameter documents go to corpus/global_parameters, documents whose
# root holds Function rows to corpus/functions.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:?usage: fuzz/collect-seeds.sh BUILD_DIR}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

c++ -std=c++20 -shared -fPIC -O1 fuzz/seed_capture.cpp -o "$work/seed_capture.so" -ldl
mkdir "$work/raw"
TESSALY_SEED_DIR="$work/raw" LD_PRELOAD="$work/seed_capture.so" "$build/tests/tessaly_tests" >/dev/null 2>&1 || true

for kind in import global_parameters functions; do
  rm -rf "fuzz/corpus/$kind"
  mkdir -p "fuzz/corpus/$kind"
done

frame() {
  printf '%s' "<?xml version='1.0' encoding=\"UTF-8\"?>"$'\r\n'"<xml xmlns:tsl=\"http://www.tessaly.org/2002/ECU\">"$'\n'
  printf '%s' "<tsl:Target Name=\"Engine\" xmlns=\"http://www.tessaly.org/2002/ECU\" xmlns:ds=\"http://www.tessaly.org/2002/screens\">"$'\n'
  printf '%s' "<Function Name=\"Injection\" Address=\"122\"/>"$'\n'"<Language Name=\"English\" Reference=\"1\"/>"$'\n'
  printf '%s' "$1"
  printf '%s' "</tsl:Target></xml>"$'\r\n'
}

for f in "$work"/raw/*; do
  name=$(basename "$f")
  # The first element name of the document (after any declaration or instruction).
  root=$(tr -d '\0' <"$f" | head -c 400 | grep -o '<[A-Za-z_][A-Za-z0-9_:.-]*' | head -1 | cut -c2- || true)
  body=$(cat "$f")
  case "$root" in
    xml)
      if grep -q 'tsl:Target' "$f"; then cp "$f" "fuzz/corpus/import/$name"
      elif grep -q '<Protocols\|<Failures\|<DeviceTypes' "$f"; then cp "$f" "fuzz/corpus/global_parameters/$name"
      elif grep -q '<Function' "$f"; then cp "$f" "fuzz/corpus/functions/$name"
      fi ;;
    Datas|Requests|Devices|AutoIdents|ds:Categories) frame "$body" >"fuzz/corpus/import/$name" ;;
    Data) frame "<Datas>"$'\n'"$body</Datas>" >"fuzz/corpus/import/$name" ;;
    Request) frame "<Requests>"$'\n'"$body</Requests>" >"fuzz/corpus/import/$name" ;;
    Device) frame "<Devices>"$'\n'"$body</Devices>" >"fuzz/corpus/import/$name" ;;
    AutoIdent) frame "<AutoIdents>"$'\n'"$body</AutoIdents>" >"fuzz/corpus/import/$name" ;;
    Category) frame "<ds:Categories>"$'\n'"$body</ds:Categories>" >"fuzz/corpus/import/$name" ;;
    Screen) frame "<ds:Categories>"$'\n'"<Category Name=\"C\">$body</Category></ds:Categories>" >"fuzz/corpus/import/$name" ;;
    *)
      if grep -q '<Function' "$f"; then cp "$f" "fuzz/corpus/functions/$name"; fi ;;
  esac
done
for kind in import global_parameters functions; do
  echo "fuzz/corpus/$kind: $(ls "fuzz/corpus/$kind" | wc -l) documents"
done
