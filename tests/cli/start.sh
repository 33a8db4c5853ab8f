# What the tests of whole programs begin with. It is sourced with their arguments, VOKCUBE DATA_DIR
# WORK_DIR, and enters WORK_DIR, which is made anew. DATA_DIR holds schema.xml, settings.json and the
# tables as CSV. What a command says goes into the file "said".
set -euo pipefail
vokcube=$(realpath "$1") data=$(realpath "$2") tests=$(realpath "$(dirname "$0")/..")
rm -rf "$3"
mkdir -p "$3"
cd "$3"
export VOKCUBE_REGISTRY=$PWD/registry.reg XDG_DATA_HOME=$PWD/share
export SOURCE_DATE_EPOCH=946684799  # workbooks of the same run are the same bytes
failures=0
source "$tests/cli/free_port.sh"

# fail WORDS: what was wrong, and what was said last.
fail() {
  echo "FAILED: $*" >&2
  [[ ! -e said ]] || cat -v said | sed 's/^/  | /' >&2
  failures=$((failures + 1))
}

# expect STATUS WORDS COMMAND...: the command ends so and says so.
expect() {
  local status=0 wanted=$1 words=$2
  shift 2
  "$@" > said 2>&1 < /dev/null || status=$?
  if ((status != wanted)) || [[ $(< said) != *"$words"* ]]; then
    fail "$* ended with $status, wanted $wanted and: $words"
  fi
}

# sheet WORKBOOK: the cells of its sheet "Data" as another program reads them, as CSV.
sheet() { "$tests/end_to_end/read_sheet.py" "$1"; }

# The last command of a test.
finish() {
  echo "$failures failures"
  ((failures == 0))
}
