# What the tests of the command line begin with. It is sourced with their arguments, VOKCUBE DATA_DIR
# WORK_DIR, and enters WORK_DIR, which is made anew. DATA_DIR holds schema.xml, settings.json and the
# tables as CSV. What a command says goes into the file "said".
set -euo pipefail
vokcube=$(realpath "$1") data=$(realpath "$2")
rm -rf "$3"
mkdir -p "$3"
cd "$3"
export VOKCUBE_REGISTRY=$PWD/registry.reg
failures=0

# fail WORDS: what was wrong, and what was said last.
fail() {
  echo "FAILED: $*" >&2
  [[ ! -e said ]] || cat -v said | sed 's/^/  | /' >&2
  failures=$((failures + 1))
}

# The last command of a test.
finish() {
  echo "$failures failures"
  ((failures == 0))
}
