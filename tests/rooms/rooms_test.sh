#!/bin/bash
# Each line of CASES is "seen|unseen ROOM HEADER INCLUDE_PATH": a source with that #include alone must
# compile or must not find the header. The header is there: a renamed one may not pass as unseen.
#
#   rooms_test.sh CASES SOURCE_DIR COMPILER
set -euo pipefail
cases=$1 source=$2 compiler=$3
failed=0
errors=$(mktemp)
trap 'rm -f "$errors"' EXIT
while read -r verdict room header path; do
  [[ -f $source/$header ]] || { echo "$header does not exist"; failed=1; }
  found=seen
  IFS=: read -ra folders <<< "$path"
  "$compiler" -std=c++20 -fsyntax-only "${folders[@]/#/-I}" -x c++ - <<< "#include \"$header\"" \
    > /dev/null 2> "$errors" || found=unseen
  [[ $found == "$verdict" ]] || { echo "$room: $header is $found"; head -5 "$errors"; failed=1; }
  [[ $found == seen ]] || grep -q "$header: No such file" "$errors" || { cat "$errors"; failed=1; }
done < "$cases"
exit $failed
