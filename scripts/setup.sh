#!/usr/bin/env bash
# Installs the Debian packages the build needs, when they are missing (needs root or sudo).
set -euo pipefail
packages=(cmake ninja-build g++ pkg-config libpugixml-dev libcurl4-openssl-dev libgtest-dev libcli11-dev
          nlohmann-json3-dev)
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
