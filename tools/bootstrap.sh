#!/usr/bin/env bash
# Installs what building and testing Zyn needs, if any of it is missing.
# Debian packages only; does nothing on a machine that already has them all.
set -euo pipefail

packages=(cmake ninja-build g++ clang libclang-rt-14-dev libgtest-dev libgmock-dev
          libbenchmark-dev zlib1g-dev libssl-dev libpcre2-dev pkg-config)

missing=()
for p in "${packages[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
"${sudo_cmd[@]}" apt-get update -q
DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -q "${missing[@]}"
