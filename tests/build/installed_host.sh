#!/bin/sh
# installed_host.sh SOURCE BUILD COMPILER "SANITIZER;FLAGS": installs the build into a folder of its own,
# then builds and runs examples/host against it, once by find_package and once by pkg-config.
set -eu
source=$1 build=$2 compiler=$3 flags=$(echo "$4" | tr ';' ' ')
stage=$build/stage
rm -rf "$stage" "$build/host-cmake" "$build/host-pc"

cmake --install "$build" --prefix "$stage" >/dev/null
for folder in tessel platform pavane; do
    test -d "$stage/include/pavane-1/$folder"
done
! find "$stage/include" -path '*platform/qt*' -name '*.h' | grep .

cmake -S "$source/examples/host" -B "$build/host-cmake" -DCMAKE_PREFIX_PATH="$stage" \
      -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" >/dev/null
cmake --build "$build/host-cmake" >/dev/null
(cd "$build/host-cmake" && ./host && test -s host.png)

mkdir -p "$build/host-pc"
pc=$(find "$stage" -name pavane.pc)
# shellcheck disable=SC2046,SC2086
"$compiler" -std=c++20 $flags "$source/examples/host/host.cpp" -o "$build/host-pc/host" \
    $(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --cflags --libs pavane) \
    "-Wl,-rpath,$(dirname "$(dirname "$pc")")"
(cd "$build/host-pc" && ./host && test -s host.png)
