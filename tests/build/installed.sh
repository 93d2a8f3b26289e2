#!/bin/sh
# installed.sh SOURCE BUILD COMPILER "SANITIZER;FLAGS": installs the build, moves it to another prefix and
# uses only what is there: hosts by find_package and by pkg-config, README's lines, the programs.
set -eu
source=$1 build=$2 compiler=$3 flags=$(echo "$4" | tr ';' ' ')
work=$build/installed
stage=$work/moved
rm -rf "$work"
mkdir -p "$work/host" "$work/readme" "$work/run"

cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$stage"
for folder in tessel platform pavane; do
    test -d "$stage/include/pavane-1/$folder"
done
none() { if grep .; then echo "^ should not be there"; exit 1; fi; }
# the headers of the list and no others; the programs and libraries behind them do not show
(cd "$stage/include/pavane-1" && find . -name '*.h' | sed 's|^\./||' | sort) >"$work/there"
{ echo pavane/pavane.h && sed -n 's/^ *\(.*\.h\)$/\1/p' "$source/cmake/PavaneHeaders.cmake"; } |
    sort | diff - "$work/there"
grep -rnE '<(fitsio|wcs|erfa|sys/|unistd|fcntl|Q)' "$stage/include" | none
library=$(find "$stage" -name libpavane.so)
readelf -d "$library" | grep -q 'SONAME.*\[libpavane\.so\.0\]'
PKG_CONFIG_PATH=$(dirname "$library")/pkgconfig
export PKG_CONFIG_PATH PATH="$stage/bin:$PATH" CXX="$compiler" CXXFLAGS="$flags" CMAKE_PREFIX_PATH="$stage"

# what the pages link to is installed too
doc=$(dirname "$(find "$stage" -name LICENSE)")
find "$doc" -name '*.md' | while read -r page; do
    sed '/^```/,/^```/d; /^    /d' "$page" | grep -o '](\([^)#]*\)' | sed 's/^](//; /^http/d; /^$/d' | while read -r link; do
        test -e "$(dirname "$page")/$link" || { echo "$page: no $link"; exit 1; }
    done
done

# built FOLDER: builds it by CMake and runs what it made
built() {
    cmake -S "$1" -B "$1/build" >/dev/null
    cmake --build "$1/build" >/dev/null
    (cd "$1/build" && ./host && find . -maxdepth 1 -name '*.png' -size +1k | grep -q .)
}
cp "$doc"/examples/host/* "$work/host"
built "$work/host"
(cd "$work/host/build" && ./print && pdftotext print.pdf - | grep -q 'Figure 1. Visibility amplitudes')

(cd "$work/host/build" && ./one_round ../host.cpp "it's one.pavane" | grep -q '20 iterations: model 0.878 Jy')

# block LANGUAGE: the lines of README's block of that language
block() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/p" "$doc/README.md" | sed '1d;$d'; }
block cpp >"$work/readme/host.cpp"
block cmake >"$work/readme/CMakeLists.txt"
built "$work/readme"
block sh | sed "s|^g++|$compiler $flags|" >"$work/readme/build.sh"
(cd "$work/readme" && sh -eu build.sh && LD_LIBRARY_PATH=$(dirname "$library") ./host && test -s curve.png)

# the programs, by README's line without a window
cd "$work/run"
pavane-simulate --out . --seed 7 >/dev/null
cp clean.fits MAP.fits
cp "$doc/examples/demo/jet.cma" .
grep '^    pavane-view .*--batch' "$doc/README.md" >view.sh
sh -eu view.sh | grep -q '^mask_cells'
test -s map.png
test -s mask.fits

# no folder of the tree is left in what was installed
grep -aF "$source/pavane/resources/palettes" "$library" "$stage"/bin/* | none
for file in "$library" "$stage"/bin/*; do readelf -d "$file" | grep -E 'R(UN)?PATH' | grep -v 'ORIGIN[^:]*\]'; done | none

# what bash completes: values of an option, also behind "=", its name, and files
complete() {
    bash -c 'program=$1; shift; source "$0/share/bash-completion/completions/$program"
        COMP_WORDS=("$program" "$@") COMP_CWORD=$#
        $(complete -p "$program" | sed "s/.*-F \([^ ]*\).*/\1/"); echo "${COMPREPLY[@]}"' "$stage" "$@"
}
test "$(complete pavane-view --scale s)" = sqrt
test "$(complete pavane-view --plot = b)" = bandpass
test "$(complete pavane-view --sca)" = --scale
test "$(complete pavane-view --areas jet.c)" = jet.cma
test -z "$(complete pavane-view --size 1)"
for program in view clean; do
    test -s "$stage/share/applications/pavane-$program.desktop"
    test -s "$stage/share/icons/hicolor/48x48/apps/pavane-$program.png"
done

# what tells of the programs
for program in pavane-view pavane-clean pavane-simulate; do
    $program --version | grep -qx "$program [0-9.]*"
    $program -h | grep -q '^usage:'
    grep -q '^.TH pavane' "$stage/share/man/man1/$program.1"
done

# a tree that holds this one links the same name
mkdir "$work/tree"
cat >"$work/tree/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(tree C CXX)
add_subdirectory("$source" pavane)
add_executable(host "$source/examples/host/host.cpp")
target_link_libraries(host PRIVATE pavane::pavane)
END
cmake -S "$work/tree" -B "$work/tree/build" >/dev/null
cmake --build "$work/tree/build" --target help | grep -e '-tests' | none
