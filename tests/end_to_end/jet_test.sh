#!/bin/bash
# Works with settings in genuine Jet databases as they lie there: each run must give the workbook of the
# same settings in a store of our own, the settings must come out as they went in, and nothing may be
# written to the files.
#
#   jet_test.sh VOKCUBE LEDGER WORK_DIR SAMPLES
#
# LEDGER is the folder of the example, SAMPLES that of the files and of last-sets.json, which holds what
# their last sets are.
source "$(dirname "$0")/../cli/start.sh"
samples=$4
mkdir data

# vok STATUS WORDS ARGUMENT...
vok() { expect "$1" "$2" "$vokcube" "${@:3}"; }

# run_last FOLDER: the cells of a run with the last sets of the settings there.
run_last() {
  vok 0 "" run --settings-folder "$1" --data-source Sales --periods P --output "$1/out"
  sheet "$1/out.xlsX"
}

# The cube that the files ask, over their years.
cp "$data"/*.csv data
sed 's/name="LedgerQEL"/name="QEL"/' "$data/schema.xml" > data/schema.xml
sed 's/Domestic/Ledger2/' "$data/files.csv" > data/files.csv
awk -F, -v OFS=, 'NR > 1 { $2 -= 12 } 1' "$data/dates.csv" > data/dates.csv
vok 0 "stored cells" cube build --schema data/schema.xml --data data --output sales.cub

for columns in 28 41 54; do
  mkdir $columns
  cp "$samples/CubToQel-$columns-columns.mdb" $columns/CubToQel.mdb
  touch $columns/CubToQel.ldb  # as if it were open elsewhere
  chmod a-w $columns/*
  # The same settings from another hand; the older files have no quantities.
  cp "$samples/last-sets.json" $columns.json
  ((columns == 54)) || sed -i 's/"Qty": ".*"/"Qty": ""/' $columns.json
  vok 0 "Imported 1 data sources and 1 period sets" settings import $columns.json \
    --settings-folder $columns-own
  run_last $columns-own > $columns-own.csv
  run_last $columns > $columns.csv
  (($(grep -c '[1-9]' $columns.csv) > 50)) || fail "$columns columns: hardly any cells"
  cmp $columns.csv $columns-own.csv || fail "$columns columns: not the cells of our own store"

  vok 0 "" settings export $columns-1.json --settings-folder $columns
  vok 0 "Imported 41 data sources and 41 period sets" settings import $columns/CubToQel.mdb \
    --settings-folder $columns-copy
  vok 0 "" settings export $columns-2.json --settings-folder $columns-copy
  vok 0 "" settings import $columns-2.json --settings-folder $columns-again
  vok 0 "" settings export $columns-3.json --settings-folder $columns-again
  cmp $columns-1.json $columns-2.json &&
    cmp <(sed "s|\"sales.cub\"|\"$PWD/sales.cub\"|" $columns-2.json) $columns-3.json ||
    fail "$columns columns: not the same document"
  cmp "$samples/CubToQel-$columns-columns.mdb" $columns/CubToQel.mdb || fail "it was written to"
done

[[ $("$vokcube" sets Periods --settings-folder 54 | wc -l) == 41 ]] || fail "not 41 sets"
vok 0 "Sales: sales.cub" info --settings-folder 54
vok 1 "settings import \"$PWD/54/CubToQel.mdb\"" settings delete periods P \
  --settings-folder 54
vok 1 "never written" settings import 54.json --settings-folder 54
vok 1 "never written" periods fill P --interval year --settings-folder 54
vok 0 "" settings export from.json --from 54/CubToQel.mdb
cmp 54-1.json from.json || fail "--from is not the same document"
vok 1 '54/CubToQel.mdb": the file there is a database' settings export 54/CubToQel.mdb --settings-folder 54-copy

# A file that cannot be read changes nothing.
head -c 100000 54/CubToQel.mdb > cut.mdb
cp 54-copy/CubToQel.mdb before.mdb
vok 1 "within a page" settings import cut.mdb --settings-folder 54-copy
cmp before.mdb 54-copy/CubToQel.mdb || fail "a file that cannot be read changed the settings"
finish
