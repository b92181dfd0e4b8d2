#!/usr/bin/env bash
# Installs the Debian packages the build needs, and the extra packages named as arguments, when
# they are missing (needs root or sudo). The CI jobs name their own tools this way, e.g.
#   scripts/setup.sh clang-14 libclang-rt-14-dev valgrind
set -euo pipefail
packages=(cmake ninja-build g++ pkg-config libpugixml-dev libcurl4-openssl-dev libgtest-dev libcli11-dev
          nlohmann-json3-dev python3-jsonschema libxml2-dev "$@")
missing=()
for p in "${packages[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
[ "${#missing[@]}" -eq 0 ] && exit 0
echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq "${missing[@]}"
