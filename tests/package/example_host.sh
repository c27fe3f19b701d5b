#!/usr/bin/env bash
# The package as a host project sees it: installed from the build folder into a prefix of its own,
# found there by pkg-config and by CMake, the example host (examples/host) configured and built
# against that prefix only, then run offscreen on a copy of the demo database.
#   example_host.sh BUILD_DIR EXAMPLE_SOURCE_DIR DEMO_DB [CXX_FLAGS]
# CXX_FLAGS are the build's own (the sanitizers' in the sanitizer build), given to the example too.
# Everything happens in BUILD_DIR/package-test (the same paths every run, so that ccache serves
# the example's second build).
set -euo pipefail
build=$(realpath "$1")
example=$(realpath "$2")
demo=$(realpath "$3")
flags=${4:-}
work=$build/package-test
prefix=$work/prefix
rm -rf "$prefix" "$work/run" "$work/pc"
mkdir -p "$work/run" "$work/pc"

step() { echo "== $*"; }
# The prefix's own copy of a library, not the build folder's.
from_prefix() {
  local lib
  lib=$(ldd "$1" | awk '/libframes\.so/ {print $3}')
  case "$lib" in
    "$prefix"/*) echo "$1 -> $lib" ;;
    *) echo "FAIL: $1 loads libframes from '$lib', not from $prefix"; exit 1 ;;
  esac
}

launcher=()
if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] && command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cxx=(c++)
if command -v ccache >/dev/null; then cxx=(ccache c++); fi

step "install into $prefix"
cmake --install "$build" --prefix "$prefix" > "$work/install.log"
for f in lib/libframes.so lib/cmake/Frames/FramesConfig.cmake lib/cmake/Frames/FramesConfigVersion.cmake \
         lib/pkgconfig/frames.pc include/frames/frames/core/AbsEditFrame.h include/frames/frames/core/Host.h \
         include/frames/platform/db/DataSet.h include/frames/frames/designer/TBank_LF.h \
         share/frames/forms/lookup/TBank_LF.json; do
  [ -e "$prefix/$f" ] || { echo "FAIL: $f is not installed"; exit 1; }
done
plugin=$(find "$prefix" -path '*/plugins/designer/libframes_designer.so')
[ -n "$plugin" ] || { echo "FAIL: the designer plugin is not installed"; exit 1; }
from_prefix "$plugin"
if [ -e "$prefix/include/frames/platform/db/FbCommon.h" ]; then
  echo "FAIL: the data layer's private Firebird header is installed"; exit 1
fi

step "pkg-config"
export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
pkg-config --exact-version="$(sed -n 's/^Version: //p' "$prefix/lib/pkgconfig/frames.pc")" frames
cat > "$work/pc/count.cpp" <<'CPP'
#include <frames/core/Registry.h>
#include <cstdio>
int main() { std::printf("%d\n", int(frames_registry()->classNames().size())); }
CPP
# shellcheck disable=SC2046
"${cxx[@]}" -std=c++20 -fPIC $flags "$work/pc/count.cpp" -o "$work/pc/count" $(pkg-config --cflags --libs frames)
count=$(LD_LIBRARY_PATH=$prefix/lib "$work/pc/count")
echo "a program built with pkg-config alone sees $count frame classes"
[ "$count" -gt 100 ] || { echo "FAIL: too few frame classes"; exit 1; }

step "configure and build the example against $prefix"
cmake -S "$example" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Release "-DCMAKE_PREFIX_PATH=$prefix" \
  -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF "-DCMAKE_CXX_FLAGS=$flags" "${launcher[@]}" > "$work/configure.log" \
  || { cat "$work/configure.log"; exit 1; }
grep -q "Frames_DIR:PATH=$prefix/" "$work/build/CMakeCache.txt" \
  || { echo "FAIL: the example found the package elsewhere"; grep Frames_DIR "$work/build/CMakeCache.txt"; exit 1; }
cmake --build "$work/build"
from_prefix "$work/build/frames_example_host"

step "run the example offscreen on a copy of the demo database"
cp "$demo" "$work/run/demo.fdb"
chmod u+w "$work/run/demo.fdb"
FRAMES_EXAMPLE_PROFILE=$work/run/profile QT_QPA_PLATFORM=offscreen \
  "$work/build/frames_example_host" --database "$work/run/demo.fdb" --check
