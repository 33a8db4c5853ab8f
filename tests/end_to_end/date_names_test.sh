#!/bin/bash
# Names the dates of a cube in several ways, its all levels otherwise than usual, and runs a saved
# query on it as users of several countries do: each workbook must hold the cells that the plain
# data give.
#
#   date_names_test.sh VOKCUBE DATA_DIR WORK_DIR
#
# DATA_DIR is an output of the examples' generator.
source "$(dirname "$0")/start.sh"
runs=0

numbers=({1..12})
english=(January February March April May June July August September October November December)
cut=(Jan Feb Mar Apr May Jun Jul Aug Sept Oct Nov Dec)
hebrew=(ינואר פברואר מרץ אפריל מאי יוני יולי אוגוסט ספטמבר אוקטובר נובמבר דצמבר)
russian=(январь февраль март апрель май июнь июль август сентябрь октябрь ноябрь декабрь)

# build NAME ORDER MONTH…: a cube whose years are "22", "23", …, with these names of months, sorted
# by the column ORDER.
build() {
  local name=$1 order=$2
  shift 2
  mkdir "$name"
  cp "$data"/*.csv "$name"
  awk -F, -v OFS=, -v names="$*" 'BEGIN { split(names, month, " ") }
    NR == 1 { print $0, "month_name"; next }
    { number = $4; $2 = sprintf("%02d", $2 % 100); print $0, month[number] }' \
    "$data/dates.csv" > "$name/dates.csv"
  sed "s|column=\"month\" type=\"Integer\"|column=\"month_name\" ordinalColumn=\"$order\"|
    s|allMemberName=\"All\"|& allLevelName=\"Everything\"|" "$data/schema.xml" > "$name/schema.xml"
  "$vokcube" cube build --schema "$name/schema.xml" --data "$name" --output "$name.cub" > /dev/null
  sed "s|ledger.cub|$name.cub|" "$data/settings.json" > "$name/settings.json"
  "$vokcube" settings import "$name/settings.json" --settings-folder "$PWD/$name" > /dev/null
  [[ $("$vokcube" cube members "$name.cub") == $'Domestic\nExport' ]] ||
    fail "$name: the ledgers are" "$("$vokcube" cube members "$name.cub")"
}

# run_as COUNTRY NAME: status of the run, its messages in COUNTRY-NAME.log.
run_as() {
  env -u LC_ALL -u LC_TIME LANG="$1" "$vokcube" run --settings-folder "$PWD/$2" \
    --data-source Domestic --periods Demo --output "$PWD/$1-$2" > "$1-$2.log" 2>&1
}

check() { # NAME COUNTRY…
  local name=$1 country
  shift
  for country in "$@"; do
    runs=$((runs + 1))
    if ! run_as "$country" "$name"; then
      fail "$name as $country:" "$(< "$country-$name.log")"
    elif ! "$read_sheet" "$country-$name.xlsX" | diff expected.csv -; then
      fail "$name as $country: other cells"
    fi
  done
}

refused() { # NAME COUNTRY TEXT…
  local name=$1 country=$2 text
  if run_as "$country" "$name"; then fail "$name as $country: not refused"; fi
  for text in "${@:3}"; do
    grep -qF "$text" "$country-$name.log" || fail "$name as $country: does not say $text"
  done
}

"$recompute" "$data" Domestic Demo > expected.csv
build numbers month "${numbers[@]}"
build english month "${english[@]}"
build cut month "${cut[@]}"
build hebrew month "${hebrew[@]}"
build russian month "${russian[@]}"
build sorted month_name "${english[@]}"
check numbers C en_US.UTF-8 he_IL.UTF-8 ru_RU.UTF-8
check english C en_US.UTF-8 he_IL.UTF-8 ru_RU.UTF-8
check cut C he_IL.UTF-8
check hebrew he_IL.UTF-8
check russian ru_RU.UTF-8
refused hebrew ru_RU.UTF-8 "4444" "יוני/24\"" "in your language or in English"
refused sorted en_US.UTF-8 "4444" " stands after [Date].[22].[1].[February]" "ordinalColumn"
echo "$runs runs, $failures failures"
((failures == 0))
