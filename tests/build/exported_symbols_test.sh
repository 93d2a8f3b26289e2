#!/bin/sh
# exported_symbols_test.sh SOURCE COMPILER: a library that loses a symbol is found out, one with a new SONAME is not.
set -eu
check=$1/scripts/exported-symbols
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
# library SONAME FUNCTIONS
library() {
    { echo 'namespace pavane {' && for name in $2; do echo "void $name() {}"; done && echo '}'; } >a.cpp
    "$COMPILER" -shared -fPIC -Wl,-soname,"$1" -Wl,--version-script="$SOURCE/pavane/exports.map" a.cpp -o a.so
}
SOURCE=$1 COMPILER=$2
library liba.so.0 'one two'
"$check" --list list --write a.so | grep -q '^2 symbols of liba.so.0'
library liba.so.0 'one two three'
"$check" --list list a.so | grep -qx '2 symbols listed, 0 lost, 1 new'
library liba.so.0 'one three'
if "$check" --list list a.so >said; then exit 1; fi
grep -q 'pavane::two()' said
if "$check" --list list --write a.so >/dev/null; then exit 1; fi  # the loss stays one
"$check" --list list --debian | grep -q '^ _ZN6pavane3twoEv@Base'
library liba.so.1 'one three'
if "$check" --list list a.so 2>/dev/null; then exit 1; fi  # until the list is made anew
"$check" --list list --write a.so >/dev/null
"$check" --list list a.so | grep -qx '2 symbols listed, 0 lost, 0 new'
