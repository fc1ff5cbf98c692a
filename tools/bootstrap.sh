#!/usr/bin/env bash
# Installs what building and testing Zyn needs, if any of it is missing.
# Debian packages only; does nothing on a machine that already has them all.
set -euo pipefail

required=(cmake ninja-build g++ clang libclang-rt-14-dev libgtest-dev libgmock-dev
          libbenchmark-dev zlib1g-dev libssl-dev pkg-config)
required+=(libsystemd-dev dbus-daemon)  # the portal's save dialog (sd-bus) and its test's private bus
required+=(libcli11-dev python3)  # the zyn command and its end-to-end tests
required+=(xvfb zenity xdotool)  # the save dialog's desktop test
required+=(libpng-dev libfreetype-dev libfontconfig-dev libcairo2-dev fonts-dejavu-core)  # canvas: PNG, text, PDF pages, the default font
required+=(libgumbo-dev)  # the HTML5 parser of ExtractHTMLBody and ConvertHTMLBodyToText
required+=(chromium)  # the browser test of the HTML unit
# Only the TGrep benchmark compares with PCRE2; the build goes on without it.
optional=(libpcre2-dev)

missing() {
  for p in "$@"; do dpkg -s "$p" >/dev/null 2>&1 || echo "$p"; done
}

sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
apt_install() {
  "${sudo_cmd[@]}" apt-get update -q >/dev/null
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -q "$@"
}

mapfile -t need < <(missing "${required[@]}")
if [ ${#need[@]} -gt 0 ]; then
  echo "Installing: ${need[*]}"
  apt_install "${need[@]}"
fi

mapfile -t want < <(missing "${optional[@]}")
if [ ${#want[@]} -gt 0 ]; then
  apt_install "${want[@]}" >/dev/null 2>&1 || echo "Optional packages not installed: ${want[*]}"
fi
exit 0
