#!/bin/bash
# Runs every data source with every period set of a folder of data through the real program and has
# two other programs read the workbooks: each cell must be what a plain recomputation gives.
#
#   end_to_end_test.sh VOKCUBE DATA_DIR WORK_DIR
#
# DATA_DIR is an output of the examples' generator.
source "$(dirname "$0")/../cli/start.sh"
recompute=$tests/end_to_end/recompute

# All workbooks at once: starting the program is what takes long.
convert_with_libreoffice() {
  local profile=${PWD//%/%25}
  HOME=$PWD soffice --headless "-env:UserInstallation=file://${profile// /%20}/office" \
    --convert-to 'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,true,true,false' \
    --outdir office-csv "$@" > said 2>&1 || fail "LibreOffice"
}

# Texts that a reader may take for something else.
cp -r "$data" data
sed -i 's/\tStock: Tea\t/\t=1+1\t/; s/\tStock: Honey\t/\t12\/31\/2024\t/; s/\tStock: White wine\t/\tTRUE\t/
  s/\tStock: Rice\t/\t  _x0041_ <a \&> 😀 \t/' data/lines.csv
"$vokcube" cube build --schema data/schema.xml --data data --output ledger.cub
"$vokcube" settings import data/settings.json --settings-folder settings

number=0 jobs=()
while IFS=$'\t' read -r source periods; do
  number=$((number + 1))
  "$recompute" data "$source" "$periods" > "pair$number.csv"
  job='{"dataSource": "%s", "periods": "%s", "output": "pair%s"}'
  # shellcheck disable=SC2059
  jobs+=("$(printf "$job, ${job/pair/again}" "$source" "$periods" $number "$source" "$periods" $number)")
done < <("$recompute" data)
(
  IFS=,
  echo "[${jobs[*]}]"
) > jobs.json
expect 0 "" "$vokcube" run --settings-folder settings --jobs jobs.json --log runs.log
[[ $(grep -c '^{"dataSource":"[DE].*"code":0,"cause":""}$' said) == $((2 * number)) &&
  $(grep -cE '^20[-0-9T:]+ 0 "[DE].* rows, [0-9]+ ms$' runs.log) == $((2 * number)) ]] ||
  fail "a line for each run"
for ((i = 1; i <= number; ++i)); do
  cmp "pair$i.xlsX" "again$i.xlsX" || fail "a run beside others"
done
for text in '=1+1' '12/31/2024' 'TRUE' '  _x0041_ <a &> 😀 '; do
  grep -qF "\"$text\"" pair1.csv || fail "no line \"$text\""
done

convert_with_libreoffice pair*.xlsX
for book in pair*.xlsX; do
  name=${book%.xlsX}
  sheet "$book" | diff "$name.csv" - || fail "$book as openpyxl reads it"
  diff "$name.csv" "office-csv/$name.csv" || fail "$book as LibreOffice reads it"
done
((number > 0)) || fail "no settings to run"

# The first money sets are dollars and euros by their names: January in the one, February in the other.
sqlite3 -csv :memory: ".import data/entries.csv e" ".import data/files.csv f" ".import data/money.csv m" \
  "SELECT printf('%.2f', sum(amount)) FROM e JOIN f USING (file_id) JOIN m USING (money_id)
    WHERE ledger = 'Export' AND opening_key = 1 AND
      (code, substr(date_id, 1, 6)) IN (VALUES ('USD', '202401'), ('EUR', '202402'))
    GROUP BY code ORDER BY code DESC" > of_money
sheet pair4.xlsX |
  awk -F, 'NR > 1 { usd += $(NF - 22); eur += $(NF - 20) } END { printf "%.2f\n%.2f\n", usd, eur }' |
  diff of_money - || fail "the money of Export, Months 2024"

# The windows' language says from which side a sheet is read, the country on which paper it is printed.
IFS=$'\t' read -r source periods < <("$recompute" data)
printf '[Qel]\r\nQelUILanguage=1\r\n' > settings/Qel.ini
for country in en_US.UTF-8:1 he_IL.UTF-8:9; do
  expect 0 "" env "LC_ALL=${country%:*}" "$vokcube" run --settings-folder settings --data-source "$source" \
    --periods "$periods" --output hebrew
  python3 -m zipfile -e hebrew.xlsX parts
  grep -q "rightToLeft=\"1\".*paperSize=\"${country#*:}\"" parts/xl/worksheets/sheet1.xml || fail "$country"
done
grep -q "<dc:title>$source, $periods</dc:title>.*>1999-12-31T23:59:59Z<" parts/docProps/core.xml || fail "properties"
finish
