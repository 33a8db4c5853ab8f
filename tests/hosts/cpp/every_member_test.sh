#!/bin/bash
# Installs the shared library with its headers, builds programs on these alone, as the README says,
# and runs them on the example: one in C++, one in C, one in Python.
#
#   every_member_test.sh BUILD SOURCE WORK_DIR VERSION COMPILER [FLAG...]
#
# WORK_DIR is made anew. The flags are what the library's own build needs of its callers.
set -euo pipefail

build=$1 source=$2 work=$3 version=$4 compiler=("${@:5}")
rm -rf "$work"
mkdir -p "$work"
cd "$work"
for part in library development; do
  cmake --install "$build" --prefix "$work/prefix" --component $part > /dev/null
done
lib=$(dirname "$(find prefix -name libvokcubeq17.so)")
"${compiler[@]}" -std=c++20 "$source/tests/hosts/cpp/every_member.cpp" \
  -Iprefix/include/vokcubeq17 -L"$lib" -lvokcubeq17 -Wl,-rpath,"$work/$lib" -o every_member
cc -std=c99 -Wall -Wextra -Werror -pedantic "${compiler[@]:1}" "$source/tests/hosts/c/every_function.c" \
  -Iprefix/include/vokcubeq17 -L"$lib" -lvokcubeq17 -Wl,-rpath,"$work/$lib" -o every_function
if "${compiler[@]}" -std=c++17 -fsyntax-only -include vokcubeq17.h -Iprefix/include/vokcubeq17 -x c++ /dev/null \
  2> said || ! grep -q 'compile with -std=c++20' said; then
  echo "FAILED: a compiler of C++17 is not told what to do" && exit 1
fi

printf 'Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Vok\\Varnel 17]\n"MDBPath"="%s"\n' \
  "$work/settings" > registry.reg
export VOKCUBE_REGISTRY=$work/registry.reg
export SOURCE_DATE_EPOCH=946684799  # workbooks of the same run are the same bytes
data=$source/examples/ledger
"$build/bin/vokcube" cube build --schema "$data/schema.xml" --data "$data" --output ledger.cub > /dev/null
"$build/bin/vokcube" settings import "$data/settings.json" > /dev/null

unset QT_QPA_PLATFORM WAYLAND_DISPLAY DISPLAY
./every_member "$version" "$work/report"
./every_function "$version" "$work/settings" "$work/c-report"

# Python itself is not built with the sanitizers, which must come first and look for the C++ library
# then; and it never gives back all that it takes.
if [[ ${compiler[*]} == *-fsanitize=* ]]; then
  preloaded() { "${compiler[0]}" -print-file-name="$1"; }
  LD_PRELOAD="$(preloaded libasan.so) $(preloaded libstdc++.so)"
  export LD_PRELOAD ASAN_OPTIONS=detect_leaks=0
fi
export VOKCUBE_LIBRARY=$work/$lib/libvokcubeq17.so PYTHONPATH=$source/hosts/python
/usr/bin/python3 "$source/tests/hosts/python/every_call.py" "$version" "$work/settings" "$work/py-report"
unset LD_PRELOAD
