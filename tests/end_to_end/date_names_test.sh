#!/bin/bash
# Names the dates of a cube in several ways, its all levels otherwise than usual, and runs a saved
# query on it as users of several countries do: each workbook must hold the cells that the plain
# data give.
#
#   date_names_test.sh VOKCUBE DATA_DIR WORK_DIR
#
# DATA_DIR is an output of the examples' generator.
source "$(dirname "$0")/../cli/start.sh"

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

# run_as STATUS WORDS COUNTRY NAME
run_as() {
  expect "$1" "$2" env -u LC_ALL -u LC_TIME LANG="$3" "$vokcube" run --settings-folder "$PWD/$4" \
    --data-source Domestic --periods Demo --output "$PWD/$3-$4"
}

check() { # NAME COUNTRY…
  local name=$1 country
  for country in "${@:2}"; do
    run_as 0 "" "$country" "$name"
    sheet "$country-$name.xlsX" | diff expected.csv - || fail "$name as $country: other cells"
  done
}

refused() { # NAME COUNTRY TEXT…
  local text
  for text in "${@:3}"; do run_as 1 "$text" "$2" "$1"; done
}

"$tests/end_to_end/recompute" "$data" Domestic Demo > expected.csv
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
finish
