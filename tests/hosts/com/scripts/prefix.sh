# A Wine prefix of its own for the scripts, and the example's data beside it. Sourced with the folder
# of the component's programs in $1 and in $2 their architecture, or "both" for a prefix of both widths;
# leaves the working directory in a temporary folder that goes when the script ends.
programs=$(realpath "$1")
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
root=$(realpath "$here/../../../..")

case $2 in
  i686) wine=$root/scripts/wine32 WINEARCH=win32 ;;
  both) wine=$root/scripts/wine32 WINEARCH=win64 ;;
  *) wine=wine WINEARCH=win64 ;;
esac
export WINEARCH
work=$(mktemp -d)
export WINEPREFIX=$work/prefix WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d"
export LC_ALL=C.UTF-8  # Wine finds files of any name
export SOURCE_DATE_EPOCH=946684799  # workbooks of the same run are the same bytes
unset DISPLAY  # without a screen message boxes end at once
trap 'wineserver -k || true; rm -rf "$work"' EXIT
cd "$work"

fail() {
  echo "FAIL $*" >&2
  exit 1
}

# A Windows path of a file here.
outside() { printf 'Z:%s' "$(realpath -m "$1")" | tr / '\\'; }

# The settings and the cube come from the command line of this system.
vokcube=${VOKCUBE:-$root/build/release/bin/vokcube}
[[ -x $vokcube ]] || fail "no program $vokcube"

make_example() {
  mkdir -p settings none
  "$vokcube" cube build --schema "$root/examples/ledger/schema.xml" --data "$root/examples/ledger" \
    --output ledger.cub
  "$vokcube" settings import "$root/examples/ledger/settings.json" --settings-folder "$work/settings"
  "$vokcube" settings import "$here/failing-sets.json" --settings-folder "$work/settings"
} > /dev/null

# Asks the component what a file of calls and answers says, as a host program; the answers must be the
# same. They are left in $ANSWERS where that is set.
ask() {
  local name=$1
  sed 's/ -> .*//' "$here/$name.calls.txt" > calls.txt
  timeout 120 "$wine" cscript //nologo "$(outside "$here/ask.vbs")" calls.txt "${@:2}" > told.txt ||
    fail "$name: status $?"
  # Folders and widths differ from run to run.
  sed "s/\r//; s|$work|HERE|g; s/$(outside . | sed 's/\\/\\\\/g')/HERE/g; s/\(32\|64\)-bit/NN-bit/g" told.txt > answers.txt
  [[ -z ${ANSWERS-} ]] || install -D -m 644 answers.txt "$ANSWERS/$name.calls.txt"
  diff "$here/$name.calls.txt" answers.txt > different.txt || fail "$name: $(head -20 different.txt)"
}

register() { timeout 60 "$wine" regsvr32 /s "$@" || fail "regsvr32 $*"; }

timeout 120 "$wine" wineboot -i > /dev/null 2>&1 || fail "no Wine prefix"
