# What the tests of whole runs begin with. It is sourced with their arguments, VOKCUBE RECOMPUTE
# DATA_DIR WORK_DIR, and enters WORK_DIR, which is made anew. The program compare_sheets stands beside
# RECOMPUTE.
set -euo pipefail
if (($# != 4)); then
  sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0" >&2
  exit 2
fi
vokcube=$(realpath "$1") recompute=$(realpath "$2") data=$(realpath "$3")
compare=$(dirname "$recompute")/compare_sheets
read_sheet=$(dirname "$(realpath "$0")")/read_sheet.py
rm -rf "$4"
mkdir -p "$4"
work=$(realpath "$4")
cd "$work"
export VOKCUBE_REGISTRY=$work/registry.reg
failures=0

fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}
