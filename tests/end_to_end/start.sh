# What the tests of whole runs begin with. It is sourced with their arguments, VOKCUBE DATA_DIR WORK_DIR,
# and enters WORK_DIR, which is made anew.
set -euo pipefail
vokcube=$(realpath "$1") data=$(realpath "$2")
here=$(dirname "$(realpath "$0")")
recompute=$here/recompute read_sheet=$here/read_sheet.py
rm -rf "$3"
mkdir -p "$3"
work=$(realpath "$3")
cd "$work"
export VOKCUBE_REGISTRY=$work/registry.reg
failures=0

fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}
