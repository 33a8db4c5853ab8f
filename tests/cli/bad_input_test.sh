#!/bin/bash
# Runs the program as people mistype and machines fail: each line of wrong_inputs.txt, and what needs
# more than a line, is told clearly, ends with its status and leaves no file.
#
#   bad_input_test.sh VOKCUBE DATA_DIR WORK_DIR
source "$(dirname "$0")/start.sh"

# What a terminal would obey, in UTF-8: controls and marks that turn the direction. A line of CSV ends
# with a return.
obeyed='[\x01-\x08\x0b\x0c\x0e-\x1f\x7f]|\r.|\xc2[\x80-\x9f]|\xe2\x80[\xa8-\xae]|\xe2\x81[\xa6-\xa9]'

# expect STATUS WORDS ARGUMENT...: what the program says holds the words, and once, and nothing that a
# terminal obeys or that passes for a failure of its own.
expect() {
  local status=0 wanted=$1 words=$2
  shift 2
  "$vokcube" "$@" > said 2>&1 < /dev/null || status=$?
  if ((status != wanted)) || [[ $words && $(grep -cF -- "$words" said) != 1 ]]; then
    fail "$* ended with $status, wanted $wanted and once: $words"
  fi
  if LC_ALL=C grep -qaP "$obeyed|^1111: forged" said; then
    fail "the names of $* reach the terminal as they are"
  fi
}

# Each line of the table: status, arguments, message, and what the file "input" has. The message is a
# whole line of what is said; "./" is this folder, "@5@" five times x.
try_wrong_inputs() {
  local status arguments message contents words
  while IFS=$'\x1F' read -r status arguments message contents; do
    if [[ $contents =~ @([0-9]+)@ ]]; then
      contents=${contents/"${BASH_REMATCH[0]}"/$(head -c "${BASH_REMATCH[1]}" /dev/zero | tr '\0' x)}
    fi
    printf '%b' "$contents" > input
    eval "words=($arguments)"
    expect "$status" "" "${words[@]}"
    sed "s#$PWD/#./#g" said | grep -qxF -- "$message" || fail "$arguments: nobody says $message"
  done < <(grep -v '^#' "$tests/cli/wrong_inputs.txt" | tr '\t' '\037')
  rm input
}

mkdir -p jet empty folder/CubToQel.mdb
printf '\0\1\0\0Standard Jet DB\0' > jet/CubToQel.mdb
touch empty/CubToQel.mdb file
mkfifo pipe.xlsX
ln -s . here
ln -s c.xlsX link.xlsX
expect 0 "stored cells" cube build --schema "$data/schema.xml" --data "$data" --output ledger.cub
expect 0 "Imported 2 data sources" settings import "$data/settings.json" --settings-folder good
head -c 5000 ledger.cub > short.cub
cp ledger.cub $'no-utf8-\xff.cub'
"$vokcube" language texts own.csv
expect 0 "Wrote" language build own.csv Lang.rs
cp Lang.rs old.rs
expect 0 "no-utf8-�.xlsX" run --settings-folder good --data-source Domestic --periods Demo \
  --output $'no-utf8-\xff' --json

every=$tests/fuzz/corpus/documents/every_field.json
expect 0 "Imported 1 data sources" settings import "$every" --settings-folder every
"$vokcube" settings export every.json --settings-folder every
cmp -s every.json "$every" || fail "a field came back as another"

# A money set of which nothing is said measures as the first; "" is no quantity.
first='{"Measure": "M", "Qty": "Q", "IsCalculated": true}' second='"Qty": ""' third='"Measure": "N"'
full=$(printf ", $first%.0s" {1..10})
for sets in "$first, {$second}, {$third}" \
  "$first, {$second, \"Measure\": \"M\", \"IsCalculated\": true}, {$third, \"Qty\": \"Q\"}$full"; do
  printf '{"dataSources": [{"SetName": "S", "MoneySets": [%s]}], "periods": [{"SetName": "P",
    "Periods": [{"FromDate": "2024-02-01", "UntillDate": "2024-01-31"}]}]}' "$sets" > sets.json
  "$vokcube" settings import - --settings-folder inherit < sets.json 2> note > /dev/null
  grep -qF 'period 1 of period set "P" ends on 2024-01-31, before' note || fail "no note:" "$(< note)"
  "$vokcube" settings export --settings-folder inherit
done > exported
cmp <(head -n $(($(wc -l < exported) / 2)) exported) <(tail -n $(($(wc -l < exported) / 2)) exported) ||
  fail "what is not said of money sets"
rm -r inherit sets.json note exported

# Sets of every name are exported, imported, renamed and deleted one by one.
printf '{"periods": [{"SetName": "%s"}' Q21 > odd.json
for name in A1 A2 pad 'A?' 'Q#1' ' pad ' "it's" '[x' '*' ''; do
  printf ', {"SetName": "%s"}' "$name" >> odd.json
done
printf ']}' >> odd.json
expect 0 'Note: one period set is named "Q#1"' settings import odd.json --settings-folder odd
"$vokcube" settings export odd-again.json --settings-folder odd
for _ in once again; do
  expect 0 "and 11 period sets" settings import odd-again.json --settings-folder again
done
for name in 'A?' 'Q#1' ' pad ' '[x' '*' ''; do
  "$vokcube" settings delete periods "$name" --settings-folder again
done
"$vokcube" settings rename periods "it's" Q20 --settings-folder again
"$vokcube" settings rename periods pad PAD --settings-folder again
left=$("$vokcube" sets Periods --settings-folder again | LC_ALL=C sort | tr '\n' ' ')
if [[ $left != "A1 A2 PAD Q20 Q21 " ]]; then
  fail "other sets than the named ones were changed; left are $left"
fi

# A read error is not the end of the input. A folder can be opened, but not read.
for command in "settings import -" "run --jobs -" "mdx ledger.cub -" \
  "cube build --schema $data/schema.xml --data $data --output ledger.cub --facts -"; do
  # shellcheck disable=SC2086
  vokcube=bash expect 1 '57: Cannot read "standard input": Is a directory' \
    -c 'exec "$@" --settings-folder good < .' bash "$vokcube" $command
done
vokcube=setsid expect 1 '57: Cannot read "/dev/tty": No such device' --wait "$vokcube" \
  cube build --schema "$data/schema.xml" --data "$data" --output ledger.cub --facts /dev/tty

# A lock of the database, or of its folder, that is waited for is told.
hold_database() { sqlite3 good/CubToQel.mdb "BEGIN EXCLUSIVE" ".shell touch locked; sleep 2"; }
hold_folder() { flock good sh -c "touch locked; sleep 2"; }
for hold in hold_database hold_folder; do
  $hold &
  until [[ -e locked ]]; do sleep 0.05; done
  expect 0 "Waiting for the settings database \"$PWD/good/CubToQel.mdb\" (locked by another program)" \
    info --settings-folder good
  wait
  rm locked
done

before=$(find . | sort)

unset QT_QPA_PLATFORM WAYLAND_DISPLAY DISPLAY
run=(run --data-source Domestic --periods Demo --output out)
echo "not a registry" > registry.reg
for command in info "sets Periods" "settings export" "settings import $data/settings.json" "${run[*]}"; do
  # shellcheck disable=SC2086
  expect 1 "The settings folder is not known, as reported above" $command
done
expect 1 "registry.reg" info
expect 0 "Demo" info --settings-folder good
rm registry.reg
HOME='' XDG_DATA_HOME='' PATH=$(dirname "$vokcube"):$PATH vokcube=$(basename "$vokcube") \
  expect 1 "$(dirname "$vokcube")/CubToQel.mdb; make it" info
for home in share home/.local/share; do
  HOME=$PWD/home XDG_DATA_HOME=${share-$PWD/share} \
    expect 1 "$PWD/$home/vokcube/CubToQel.mdb; make it with vokcube settings import, or name" info
  HOME=$PWD/home XDG_DATA_HOME=${share-$PWD/share} expect 0 "[]" sets Periods --json
  [[ -s $home/vokcube/CubToQel.mdb ]] || fail "nobody's settings folder is not made"
  share=
done
rm -r home share
sed 's/ledger.cub/short.cub/' "$data/settings.json" > short.json
expect 0 "Imported" settings import short.json --settings-folder short
sed 's/name="QeL"/name="Lines"/g' "$data/schema.xml" > lacking.xml
expect 0 'no dimension "QeL"' cube build --schema lacking.xml --data "$data" --output lacking.cub
sed 's/ledger.cub/lacking.cub/' "$data/settings.json" > lacking.json
expect 0 "Imported" settings import lacking.json --settings-folder lacking
try_wrong_inputs
rm -r short short.json lacking lacking.*
cat > jobs << 'END'
[{"dataSource": "Nothing", "periods": "Demo", "output": "missing/out"},
 {"dataSource": "Nothing", "periods": "Demo", "output": "out"},
 {"dataSource": "Domestic", "periods": "Demo", "output": "folder"},
 {"dataSource": "Dom#stic", "periods": "Demo", "output": "good/pattern"},
 {"dataSource": "Domestic", "periods": "Demo", "output": "good/out"}]
END
expect 1 '"output":"good/out","workbook":"good/out.xlsX","rows":' run --settings-folder good --jobs jobs
for words in "4 of 5 runs left no workbook" '"cause":"Path/file access error: \"folder\" is a folder' \
  '"cause":"Cannot write \"missing/out.xlsX\": No such file or directory. Check that the folder exists;' \
  '"output":"out","workbook":"","rows":0' '"cause":"The data source is named \"Dom#stic\"; a name may'; do
  [[ $(grep -cF -- "$words" said) == 1 ]] || fail "of five runs nobody tells $words"
done
expect 1 '"cause": "Cann'"'"'t read Settings (Datasource Definition: Nothing' \
  run --settings-folder good --data-source Nothing --periods Demo --output out --json
"$vokcube" run --settings-folder good --jobs jobs > said 2>&1 > /dev/full || true
grep -qF "the runs that had not begun were left out" said || fail "jobs with a full standard output"
rm jobs good/out.xlsX
expect 0 "Ledger" cube members ledger.cub --json
expect 0 "Cube LedgerQEL has all" cube check ledger.cub
sed 's/"Date"/"Dates"/; s/"ActX"/"Acts"/' "$data/schema.xml" > lacking.xml
for words in 'dimension "Date": a query' 'dimension "ActX": the ledger'; do
  expect 0 "$words" cube build --schema lacking.xml --data "$data" --output lacking.cub
  expect 1 "$words" cube check lacking.cub
done
rm lacking.xml lacking.cub
expect 0 "no-utf8-�.cub" cube info $'no-utf8-\xff.cub' --json
expect 0 "1205,&OBS member,," language show Lang.rs
expect 1 "takes no connection" mdx http://127.0.0.1:1/xmla 'select from x'
mkdir alone && cp "$vokcube" alone/
vokcube=alone/vokcube expect 1 "No cube server can be asked: the module libvokcubeq17_http-" \
  mdx http://127.0.0.1:1/xmla 'select from x'
rm -r alone
open=$(mktemp -d)
printf '[Xmla]\nPassword=secret\n' > "$open/Qel.ini"
while read -r folder file told; do
  chmod "$folder" "$open"
  chmod "$file" "$open/Qel.ini"
  expect 1 "takes no connection" cube info http://127.0.0.1:1/ --settings-folder "$open"
  [[ $(grep -cF "Keep them out: chmod 600 $open/Qel.ini" said) == "$told" ]] || fail "rights $folder $file"
done <<< $'755 644 1\n755 640 1\n755 600 0\n700 644 0'
chmod 755 "$open"
install -m 644 /dev/stdin "$open/password" <<< secret
VOKCUBE_XMLA_PASSWORD_FILE=$open/password expect 1 "Keep them out: chmod 600 $open/password" \
  cube info http://127.0.0.1:1/ --settings-folder good
rm -r "$open"
expect 2 'mon\u001bc\n1111: forged' periods fill x --interval $'mon\ec\n1111: forged' --from 2024-01-01
evil=$'\ec\n1111: forged' shown='\u001bc\n1111: forged'
mkdir hostile
cp "$data"/*.csv hostile
sed -i "s/Domestic/\"Domestic\x1bc\n1111: forged\"/" hostile/files.csv
sed "s/LedgerQEL/Ledger\&#x9b;2J\&#10;1111: forgedQEL/; s/\"Amount NIS\"/\"Amount\&#x9b;2J\&#10;1111: forged\"/" \
  "$data/schema.xml" > hostile/schema.xml
sed 's/"Domestic", "Var/"Set\\u001bc\\n1111: forged", "Var/; s/"Demo"/"Set\\u001bc\\n1111: forged"/
  s/Jan 2024/Jan\\u001bc/' \
  "$data/settings.json" > hostile/settings.json
hostile=(--settings-folder hostile)
expect 0 'Ledger\u009b2J\n1111: forgedQEL: ' cube build --schema hostile/schema.xml --data hostile \
  --output hostile/ledger.cub
expect 0 'Ledger\u009b2J\n1111: forgedQEL, ' cube info hostile/ledger.cub
expect 0 'Amount\u009b2J\n1111: forged]"' cube info hostile/ledger.cub --json
expect 0 "Domestic$shown" cube members hostile/ledger.cub
expect 1 "It has: \"Ledger\u009b2J" mdx hostile/ledger.cub --catalog x 'select from x'
expect 1 "[x$shown]\" is not in cube" mdx ledger.cub "select [x$evil] on 0 from LedgerQEL"
expect 0 "Imported" settings import hostile/settings.json "${hostile[@]}"
expect 0 "Set$shown" sets Periods "${hostile[@]}"
expect 0 "  Set$shown: $PWD/ledger.cub" info "${hostile[@]}"
expect 0 '2024-01-31  Jan\u001bc' periods fill "Set$evil" --first 2 --interval month --from 2024-01-01 \
  "${hostile[@]}"
rm -r hostile
everything='[Date].Members * [QeL].[QeL].Members * [ActX].[xlFile].Members * [MoneySet].Members
  * [Opening_Balance].Members'
large="SELECT Filter($everything, [Measures].[Amount] < 1 - 1e15) ON 0 FROM [LedgerQEL]"
expect 1 "longer than its limit of 0.02 s" mdx ledger.cub --timeout 0.02 "$large"
expect 1 "past the limit of 100 tuples" mdx ledger.cub --max-cells 100 "$large"
expect 1 "more than its limit of 1 MB of memory" mdx ledger.cub --memory 1 "$large"
cp -r "$data" rows
(printf 'date_id,line_id,file_id,opening_key,money_id,amount,units\n' &&
  printf '20220101,75,4,0,1,%s,\n' 1,5 2 x) > rows/entries.csv
for words in "entries.csv, line 2: has 8 fields" 'entries.csv, line 4: "x" in column'; do
  expect 1 "$words" cube build --schema "$data/schema.xml" --data rows --output rows/out.cub
done
expect 0 "2 bad rows were left out" cube build --schema "$data/schema.xml" --data rows --output rows/out.cub \
  --bad-rows rows/bad
(($(grep -c 'entries.csv, line [24]: ' rows/bad) == 2)) || fail "the list of bad rows" "$(< rows/bad)"
rm -r rows
expect 0 " 3  2024-03-01  2024-03-31  2024-03" periods fill Run --interval month --from 2024-01-31 \
  --first 1 --last 3 --settings-folder good
expect 0 'Note: the name of period 1, "Jan 2024", is of other dates than 2024-01-01 to 2024-12-31' \
  periods fill Demo --interval year --from 2024-01-01 --last 1 --settings-folder good
expect 1 "first page is cut short" window --settings-folder jet
expect 1 "445: No window can be shown" window --settings-folder good
for command in --version --help "cube info ledger.cub" "sets Periods --settings-folder good"; do
  # shellcheck disable=SC2086
  if "$vokcube" $command 2> said > /dev/full || ! grep -qF "57: Standard output" said; then
    fail "$command with a full standard output"
  fi
done

mkdir gone
if [[ $(cd gone && rmdir ../gone && "$vokcube" info --settings-folder x 2>&1) != "57: "* ]]; then
  fail "in a folder that is gone"
fi

if ! cmp -s Lang.rs old.rs; then
  fail "the language table changed"
fi

# Ctrl-C ends a query that takes long; five seconds are enough to begin it.
many='[Date].Members * [QeL].[QeL].Members * [ActX].[xlFile].Members * [MoneySet].Members'
endless="SELECT Filter($many, Count(Filter($many, Count(Filter($many, 1 > 2)) > 0)) > 0) ON 0"
status=0
timeout --foreground --preserve-status --signal INT 5 env --default-signal=INT \
  "$vokcube" mdx ledger.cub --timeout 60 "$endless FROM [LedgerQEL]" > said 2>&1 || status=$?
if ((status != 130)) || ! grep -qF "stopped before its end" said; then
  fail "Ctrl-C left status $status"
fi

# A terminal shows how far it is, from the first second on.
export vokcube endless="$endless FROM [LedgerQEL]"
script -qec '"$vokcube" mdx ledger.cub --timeout 2.2 "$endless"' /dev/null > said || true
(($(tr '\r' '\n' < said | grep -c '^ *[0-9.]* %  asking the cube' ) > 1)) || fail "no progress:" "$(< said)"
port=$(free_port)
/usr/bin/python3 -c "import socket, time; s = socket.create_server(('127.0.0.1', $port)); time.sleep(60)" &
silent=$!
for command in check info members; do
  script -qec "timeout 2 \"\$vokcube\" cube $command http://127.0.0.1:$port/" /dev/null > said || true
  grep -q "%  looking into http://127.0.0.1:$port/" said || fail "no progress of cube $command"
done
kill "$silent"

if [[ $(find . | sort) != "$before" ]]; then
  fail "files were left:" "$(find . | sort | comm -3 - <(echo "$before"))"
fi
finish
