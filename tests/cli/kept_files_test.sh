#!/bin/bash
# The file at an output path stays there until the new one is whole, however the program ends;
# and no temporary file stays for long.
#
#   kept_files_test.sh VOKCUBE DATA_DIR WORK_DIR
source "$(dirname "$0")/start.sh"

# kept FILE: it is as it was, and has no temporary beside it.
kept() {
  cmp -s "$1" "$1.before" || fail "$1 has changed"
  if compgen -G '.vokcube-*' > /dev/null; then fail "left: $(echo .vokcube-*)"; fi
}

# interrupt SIGNAL STATUS WORDS COMMAND...: sent once the command has its temporary file, here or in a folder
# that it makes.
interrupt() {
  local status=0 signal=$1 wanted=$2 words=$3 caught=()
  shift 3
  [[ $signal == KILL ]] || caught=("--default-signal=$signal")
  env "${caught[@]}" "$@" > said 2>&1 < /dev/null &
  local running=$!
  until compgen -G ".vokcube-$running-*" > /dev/null || compgen -G "*/*/.vokcube-$running-*" > /dev/null ||
    ! kill -0 "$running" 2> /dev/null; do
    sleep 0.01
  done
  kill "-$signal" "$running" || true
  wait "$running" 2> /dev/null || status=$?
  if ((status != wanted)) || [[ $(< said) != *"$words"* ]]; then
    fail "SIG$signal in $*: status $status, wanted $wanted and: $words"
  fi
}

mkdir data
cp "$data"/schema.xml "$data"/*.csv data
build=("$vokcube" cube build --schema data/schema.xml --data)
run=("$vokcube" run --settings-folder settings --data-source Domestic --output report.XLSX --periods)
expect 0 "stored cells" "${build[@]}" data --output ledger.cub
import=("$vokcube" settings import "$data/settings.json" --settings-folder settings)
for kilobytes in 1 20; do
  expect 1 "was not made" bash -c "ulimit -f $kilobytes"' && exec "$@"' bash "${import[@]}"
  [[ -z $(ls -A settings) ]] || fail "left: $(ls -A settings)"
done
expect 0 "Imported" "${import[@]}"
expect 0 "1950" "$vokcube" periods fill Never --interval year --from 1950-01-01 --last 1 \
  --settings-folder settings
mkdir many none
cp "$data"/*.csv many
cp "$data"/*.csv none
for _ in {1..30}; do tail -n +2 "$data/entries.csv"; done >> many/entries.csv
head -n 1 "$data/entries.csv" > none/entries.csv
head -n 200000 many/entries.csv > journal.csv

expect 3 "No workbook: no period meets the cube's dates 20" "${run[@]}" Never
[[ ! -e report.xlsX ]] || fail "a run without facts left a workbook"
expect 0 "Rows" "${run[@]}" Demo
cp report.xlsX report.xlsX.before
cp ledger.cub ledger.cub.before

old="report.xlsX is that of an earlier run"
expect 3 "$old" "${run[@]}" Never
kept report.xlsX
expect 1 "$old" "${run[@]}" Nothing
kept report.xlsX
expect 1 "$old" env VOKCUBE_REGISTRY=none.reg "$vokcube" run --settings-folder missing \
  --data-source Domestic --output report --periods Demo
kept report.xlsX
chmod 0444 settings/Log/*
chmod 0555 settings settings/Log
as_nobody=()
((EUID != 0)) || as_nobody=(setpriv --reuid=65534 --regid=65534 --clear-groups)
chmod 0777 . report.xlsX
expect 1 "choose another settings folder" "${as_nobody[@]}" "${run[@]}" Demo
chmod 0755 settings settings/Log
chmod 0644 settings/Log/*
kept report.xlsX
expect 1 "File too large" bash -c 'ulimit -f 16 && exec "$@"' bash "${run[@]}" Demo
kept report.xlsX
expect 1 "File too large" bash -c 'ulimit -f 16 && exec "$@"' bash \
  "${build[@]}" data --output ledger.cub
kept ledger.cub

for signal in INT TERM HUP; do
  interrupt "$signal" 130 "nothing was written; $old" "${run[@]}" Demo
  kept report.xlsX
  interrupt "$signal" $((128 + $(kill -l "$signal"))) "" "${build[@]}" many --output ledger.cub
  kept ledger.cub
  interrupt "$signal" 130 "no folder was made" "$vokcube" cube new made/books journal.csv --settings-folder settings
  [[ ! -e made ]] || fail "SIG$signal left $(find made)"
done
interrupt KILL 137 "" "${build[@]}" many --output ledger.cub
cmp -s ledger.cub ledger.cub.before || fail "ledger.cub has changed"
interrupt KILL 137 "" "${run[@]}" Demo
expect 0 "Rows" "${run[@]}" Demo
kept report.xlsX
expect 0 "Rows" bash -c 'trap "" HUP; "$@" & sleep 0.1; kill -HUP $!; wait $!' bash "${run[@]}" Demo

# Facts that memory is not to hold, and facts that can be read only once.
expect 0 "stored cells" "${build[@]}" many --output many.cub
mkdir temp
on_disk=("${build[@]}" many --memory 16 --temp temp --output)
(cd temp && interrupt KILL 137 "" "$vokcube" cube build --schema ../data/schema.xml --data ../many --output ledger.cub)
compgen -G 'temp/.vokcube-*' > /dev/null || fail "a killed build left nothing to remove"
expect 0 "stored cells" "${on_disk[@]}" spilled.cub
cmp many.cub spilled.cub || fail "facts from the disk make another cube"
expect 1 "File too large" bash -c 'ulimit -f 16 && exec "$@"' bash "${on_disk[@]}" ledger.cub
kept ledger.cub
if compgen -G 'temp/.vokcube-*' > /dev/null; then fail "left: $(echo temp/.vokcube-*)"; fi
expect 0 "stored cells" "${build[@]}" data --output piped.cub --facts <(gzip < data/entries.csv)
cmp ledger.cub piped.cub || fail "facts from a pipe make another cube"

# Two runs at once leave the workbook of one of them.
expect 0 "Rows" "${run[@]}" "Months 2024"
cp report.xlsX months
for _ in {1..5}; do
  "${run[@]}" "Months 2024" > /dev/null 2>&1 &
  expect 0 "" "${run[@]}" Demo
  wait
  cmp -s report.xlsX report.xlsX.before || cmp -s report.xlsX months || fail "neither run's workbook"
done

cp settings/CubToQel.mdb settings.before
expect 1 "Nothing was changed" bash -c 'ulimit -f 16 && exec "$@"' bash "${import[@]}"
chmod 0444 settings/CubToQel.mdb
expect 0 "Demo" "${as_nobody[@]}" "$vokcube" settings export --settings-folder settings
expect 1 "must not be written" "${as_nobody[@]}" "$vokcube" settings delete periods Demo \
  --settings-folder settings
chmod 0644 settings/CubToQel.mdb
for file in settings/CubToQel.mdb data/schema.xml data/entries.csv; do
  expect 1 "the file there is not a cube" "${build[@]}" data --output "$file"
done
cmp -s settings/CubToQel.mdb settings.before && cmp -s data/schema.xml "$data/schema.xml" ||
  fail "a file that is not a cube was replaced"
expect 1 "facts there and would have none" "${build[@]}" none --output ledger.cub
kept ledger.cub
head -c 5000 ledger.cub > damaged.cub
: > empty.cub
for file in damaged.cub empty.cub new.cub; do
  expect 0 "0 facts" "${build[@]}" none --output "$file"
done
expect 0 "0 facts" "${build[@]}" none --output ledger.cub --allow-empty
finish
