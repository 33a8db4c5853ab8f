#!/bin/bash
# Installs the shared library with its headers, builds a program on these alone, as the README says,
# and runs it on the example.
#
#   every_member_test.sh BUILD SOURCE WORK_DIR VERSION COMPILER [FLAG...]
#
# WORK_DIR is made anew. The flags are what the library's own build needs of its callers.
set -euo pipefail

build=$1 source=$2 work=$3 version=$4 compiler=("${@:5}")
rm -rf "$work"
mkdir -p "$work"
cd "$work"
cmake --install "$build" --prefix "$work/prefix" --component library > /dev/null
lib=$(dirname "$(find prefix -name libvokcubeq17.so)")
"${compiler[@]}" -std=c++20 "$source/tests/hosts/cpp/every_member.cpp" \
  -Iprefix/include/vokcubeq17 -L"$lib" -lvokcubeq17 -Wl,-rpath,"$work/$lib" -o every_member

printf 'Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Vok\\Varnel 17]\n"MDBPath"="%s"\n' \
  "$work/settings" > registry.reg
export VOKCUBE_REGISTRY=$work/registry.reg
data=$source/examples/ledger
"$build/bin/vokcube" cube build --schema "$data/schema.xml" --data "$data" --output ledger.cub > /dev/null
"$build/bin/vokcube" settings import "$data/settings.json" > /dev/null

unset QT_QPA_PLATFORM WAYLAND_DISPLAY DISPLAY
./every_member "$version" "$work/report"
