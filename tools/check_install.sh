#!/usr/bin/env bash
# Installs a configured build tree into a scratch prefix and builds a small
# consumer against it twice: with find_package(Zyn) and with pkg-config.
set -euo pipefail
build=${1:-build/default}
prefix=$(mktemp -d)
work=$(mktemp -d)
trap 'rm -rf "$prefix" "$work"' EXIT

cmake --install "$build" --prefix "$prefix" >/dev/null

cat >"$work/main.cpp" <<'CPP'
#include <cstdio>
#include "zyn/base/marks.h"
#include "zyn/base/zynbase.h"
#include "zyn/html/htmlpage.h"
#include "zyn/package.h"
int main() {
  Initialize();
  // A mark exercises the drawing libraries (text through FreeType).
  const auto mark = Zyn_zynbase::CreateMarkAsBitmap(65, 0, 0xFFFFFF, 4);
  const bool ok = Zyn_zynbase::ResolveCSVDelimiter(u';') == Zyn_zynbase::csvSemicolon &&
                  GetPackageInfoTable()->UnitCount == 10 && mark->Width() == 15 &&
                  Zyn_htmlsupport::ConvertHTMLBodyToText(u"<p>a</p>b", u'|') == u"a||b";
  Finalize();
  std::puts(ok ? "consumer ok" : "consumer FAILED");
  return ok ? 0 : 1;
}
CPP
cat >"$work/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(consumer CXX)
find_package(Zyn REQUIRED)
add_executable(shared_consumer main.cpp)
target_link_libraries(shared_consumer PRIVATE Zyn::zyn)
add_executable(static_consumer main.cpp)
target_link_libraries(static_consumer PRIVATE Zyn::zyn_static)
CMAKE
cmake -S "$work" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/build" >/dev/null
LD_LIBRARY_PATH="$prefix/lib" "$work/build/shared_consumer"
"$work/build/static_consumer"

export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
g++ -o "$work/pc_consumer" "$work/main.cpp" $(pkg-config --cflags --libs zyn)
LD_LIBRARY_PATH="$prefix/lib" "$work/pc_consumer"
