#!/bin/bash
# Runs every data source with every period set of a folder of data through the real program and has
# two other programs read the workbooks: each cell must be what a plain recomputation gives.
#
#   end_to_end_test.sh VOKCUBE RECOMPUTE DATA_DIR WORK_DIR
#
# DATA_DIR holds schema.xml, settings.json and the tables as CSV.
source "$(dirname "$0")/start.sh"
mkdir settings

# All workbooks at once: starting the program is what takes long.
convert_with_libreoffice() {
  local profile=${work//%/%25}
  HOME=$work soffice --headless "-env:UserInstallation=file://${profile// /%20}/office" \
    --convert-to 'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,true,false' \
    --outdir "$work/office-csv" "$@" > office.log 2>&1 || fail "LibreOffice: see $work/office.log"
}

# One pair of settings; on success its workbook is at NAME.xlsX and the cells expected at NAME.csv.
run_pair() {
  local name=$1 source=$2 periods=$3 expected=0 status=0
  "$recompute" "$data" "$source" "$periods" > "$name.csv" || expected=$?
  if ((expected != 0 && expected != 3)); then
    fail "$source, $periods: cannot recompute"
    return
  fi
  "$vokcube" run --settings-folder "$work/settings" --data-source "$source" --periods "$periods" \
    --output "$work/$name" > "$name.log" 2>&1 || status=$?
  # A run without a workbook says so by its status.
  local wanted=0
  [[ -s $name.csv ]] || wanted=3
  ((expected != 3)) || wanted=1
  if ((status != wanted)); then
    fail "$source, $periods: the run ended with $status:" "$(tail -n 3 "$name.log")"
  elif [[ -s $name.csv && ! -f $name.xlsX ]]; then
    fail "$source, $periods: no workbook"
  elif [[ ! -s $name.csv && -f $name.xlsX ]]; then
    fail "$source, $periods: a workbook where none should be"
  fi
}

"$vokcube" cube build --schema "$data/schema.xml" --data "$data" \
  --output "$(sed -n 's/.*"CubeFile": *"\([^"]*\)".*/\1/p' "$data/settings.json" | head -n 1)"
"$vokcube" settings import "$data/settings.json" --settings-folder "$work/settings"

number=0
while IFS=$'\t' read -r source periods; do
  number=$((number + 1))
  run_pair "pair$number" "$source" "$periods"
done < <("$recompute" "$data")
((number > 0)) || fail "no pairs of settings in $data/settings.json"

shopt -s nullglob
books=(pair*.xlsX)
if ((${#books[@]} > 0)); then convert_with_libreoffice "${books[@]}"; fi
for book in "${books[@]}"; do
  name=${book%.xlsX}
  "$read_sheet" "$book" > "$name.openpyxl.csv" || fail "openpyxl cannot read $book"
  "$compare" "$name.csv" "$name.openpyxl.csv" || fail "$book as openpyxl reads it"
  "$compare" "$name.csv" "office-csv/$name.csv" 15 || fail "$book as LibreOffice reads it"
  # A comparison that finds nothing must be able to find something.
  sed '2s/"0"/"1"/' "$name.csv" > "$name.changed.csv"
  if "$compare" "$name.changed.csv" "$name.openpyxl.csv" > /dev/null; then
    fail "$book: a changed cell went unnoticed"
  fi
done
echo "$number runs, ${#books[@]} workbooks, $failures failures"
((failures == 0))
