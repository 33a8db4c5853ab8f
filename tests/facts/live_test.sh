#!/bin/bash
# Live cubes: members in the file, sums in the database. Their answers are those of cube files; what
# changes in the database is seen by the next run and not by one that is under way; what goes wrong is told.
#
#   live_test.sh VOKCUBE DATA_DIR WORK_DIR postgresql|clickhouse LIVE_ANSWERS
source "$(dirname "$0")/../cli/start.sh"
engine=$4 answers=$5
export VOKCUBE_DATABASE_USER=sample VOKCUBE_DATABASE_SERVER=127.0.0.1 LC_ALL=C.UTF-8

mkdir run ledger
"$answers" run "$tests/interop"
cp -r "$data" ledger/csv
# What needs care: quotes, a tab, a backslash and a line end in names, NULL.
printf '901,"\\N ""x"", a\tb\\t","two\nlines",901\n' >> ledger/csv/lines.csv
printf '%s\n' 20220101,901,4,0,1,12.5,3 20220101,901,4,0,1,,1 >> ledger/csv/entries.csv
port=$(free_port) database=postgresql://127.0.0.1 other=
case $engine in
postgresql)
  up() { "$tests/interop/postgresql-up" "$1" "$2"; }
  down() { "$tests/interop/postgresql-down" "$1"; }
  copy() { sql "CREATE TABLE $1 AS SELECT * FROM entries"; }
  slow() { sql "CREATE OR REPLACE VIEW slow AS SELECT entries.* FROM entries, (SELECT pg_sleep($1)) AS pause"; }
  working="SELECT count(*) FROM pg_stat_activity WHERE application_name = 'vokcube' AND wait_event = 'PgSleep'"
  absent='relation "other" does not exist. Tables there: '
  gone='terminating connection due to'
  fractions() {
    copy fractions
    sql "ALTER TABLE fractions ALTER amount TYPE double precision"
  }
  sql() { psql --no-psqlrc --quiet --no-align --tuples-only --set ON_ERROR_STOP=1 --host="$PWD/ledger/postgresql" \
    --port="$port" --username=sample --dbname=sample --command "$1"; }
  ;;
clickhouse)
  database=clickhouse+http://127.0.0.1
  unset VOKCUBE_DATABASE_USER
  up() { "$tests/facts/clickhouse-up" "$1" "$2"; }
  down() { "$tests/facts/clickhouse-down" "$1"; }
  copy() {
    sql "CREATE TABLE $1 AS entries"
    sql "INSERT INTO $1 SELECT * FROM entries"
  }
  slow() {
    sql "DROP TABLE IF EXISTS slow"
    sql "CREATE VIEW slow AS SELECT * FROM entries WHERE sleep($1) = 0"
  }
  working="SELECT count() FROM system.processes WHERE query LIKE '%\`slow\`%' AND NOT query LIKE '%system%'"
  absent="Table sample.other doesn't exist"
  gone='closed the connection without an answer'
  fractions() {
    sql "CREATE VIEW fractions AS SELECT date_id, line_id, file_id, opening_key, money_id, units,
      toFloat64(amount) AS amount FROM entries"
  }
  sql() { curl --silent --show-error --fail-with-body "http://127.0.0.1:$port/?database=sample" --data-binary "$1"; }
  ;;
esac
trap 'down ledger; [[ -z $other ]] || down run' EXIT
trap 'exit 130' INT TERM

other=$(free_port)
up run "$other"
"$answers" run "$tests/interop" "$database:$other/sample" || fail "live answers"
down run
other=

up ledger "$port"
server=$database:$port/sample
live() { "$vokcube" cube build --live --schema "${2-ledger/csv/schema.xml}" --data "$server" --output "${1-live.cub}"; }
expect 0 "which stay in the database" live
expect 0 "stored cells" "$vokcube" cube build --schema ledger/csv/schema.xml --data ledger/csv --output file.cub
for cube in live file other; do
  sed "s/ledger.cub/$cube.cub/" "$data/settings.json" > settings.json
  expect 0 "Imported" "$vokcube" settings import settings.json --settings-folder $cube
done
run() { # CUBE DATA_SOURCE PERIODS OUTPUT
  "$vokcube" run --settings-folder "$1" --data-source "$2" --periods "$3" --output "$4"
}
both() { # DATA_SOURCE PERIODS
  expect 0 "Rows" run live "$1" "$2" live.xlsX
  expect 0 "Rows" run file "$1" "$2" file.xlsX
  sheet live.xlsX > live.csv
  sheet file.xlsX | diff live.csv - || fail "$1, $2: other cells"
}
both Domestic Demo
both Domestic "Months 2024"
both Export "Months 2024"

# with SED: the schema with changes, as schema.xml, and a live cube of it.
with() {
  sed -E "$1" ledger/csv/schema.xml > schema.xml
  expect "${2-0}" "${3-stay in the database}" live other.cub schema.xml
}
# facts NAME: a copy of the facts, and a live cube on it, other.cub.
facts() {
  copy "$1"
  with "s#<Table name=\"entries\"/>#<Table name=\"$1\"/>#"
}
total='SELECT {[Measures].[Amount]} ON 0 FROM [LedgerQEL]'
lines='SELECT {[Measures].[Amount]} ON 0, [QeL].[QeL].Members ON 1 FROM [LedgerQEL]'
ask() { expect "$1" "$2" "$vokcube" mdx other.cub "${3-$total}" "${@:4}"; }

# What is added is in the next answer, exactly; a key without a member is named, wherever it is.
facts more
ask 0 "Amount"
before=$(tail -n 1 said)
sql "INSERT INTO more (date_id, line_id, file_id, opening_key, money_id, amount, units)
  VALUES (20220101, 901, 4, 0, 1, 1234567890123456789012.25, 1), (20220101, 901, 4, 0, 1, -1234567890123456789012.00, 1)"
ask 0 "Amount"
[[ $(tail -n 1 said | tr -d ' ,') == $(awk -v a="${before//[ ,]/}" 'BEGIN { printf "%.2f", a + 0.25 }') ]] ||
  fail "0.25 more than $before"
sql "INSERT INTO more (date_id, line_id, file_id, opening_key, money_id, amount, units)
  VALUES (20220101, 99999, 4, 0, 1, 5, 1), (20220101, 901, 4, 0, 77, 5, 1)"
ask 1 'table more, column line_id: the key "99999" has no member in [QeL] of other.cub. Add it to' \
  "$lines WHERE ([MoneySet].[NIS])"
ask 1 'table more, column money_id: the key "77" has no member in [MoneySet] of other.cub. Add it to'
with 's#<Table name="entries"/>#<Table name="more"/>#' 1 'column line_id: the key "99999" is not in the table of dimension "QeL"'

# Members are those of the tables, or the cube says that they are not.
members="INSERT INTO lines (line_id, code, caption, sort) VALUES (902, '902', 'new', 902)"
sql "$members"
expect 1 "The members of live.cub are older than table lines. Run vokcube cube refresh live.cub." \
  "$vokcube" mdx live.cub "$total"
expect 1 "live.cub are older than table lines. Run vokcube cube refresh" run live Domestic Demo live.xlsX
expect 0 "which stay in the database" "$vokcube" cube refresh live.cub
expect 1 "Leave out --since and --months" "$vokcube" cube refresh live.cub --months 2024-01
expect 0 "facts when its file was made, live" "$vokcube" cube info live.cub
expect 0 "Rows" run live Domestic Demo live.xlsX
expect 0 "Built from $server, refreshed" "$vokcube" cube info live.cub

# What a live cube does not have.
with 's#column="amount" aggregator="sum"#column="line_id" aggregator="distinct-count"#' 1 'cannot be added up'
fractions
with 's#<Table name="entries"/>#<Table name="fractions"/>#' 1 'holds binary fractions (double precision), whose sums may differ'
expect 2 "--live excludes" "$vokcube" cube build --live --schema schema.xml --data "$server" --output other.cub --facts -
expect 1 "is not a database server" "$vokcube" cube build --live --schema schema.xml --data ledger/csv --output other.cub
# While the server works for long.
slow 0
with 's#<Table name="entries"/>#<Table name="slow"/>#'
slow 2
ask 1 "longer than its limit of 1 s" "$total" --timeout 1
waits() { sql "$working"; }
for _ in {1..100}; do [[ $(waits) == 0 ]] && break || sleep 0.1; done
[[ $(waits) == 0 ]] || fail "the server goes on"
status=0
env --default-signal=INT "$vokcube" mdx other.cub "$total" > said 2>&1 < /dev/null &
until [[ $(waits) != 0 ]] || ! kill -0 $! 2> /dev/null; do sleep 0.05; done
kill -INT $!
wait $! || status=$?
((status == 130)) || fail "Ctrl-C ended with $status"
for _ in {1..100}; do [[ $(waits) == 0 ]] && break || sleep 0.1; done
[[ $(waits) == 0 ]] || fail "the server goes on"

# What is committed during a run is in the next one, where the server can show one state for long.
if [[ $engine == postgresql ]]; then
  expect 0 "Rows" run other Domestic Demo before.xlsX
  run other Domestic Demo during.xlsX > said 2>&1 &
  until [[ $(waits) != 0 ]] || ! kill -0 $! 2> /dev/null; do sleep 0.05; done
  sql "INSERT INTO entries SELECT * FROM entries"
  wait $! || fail "a run during a commit"
  expect 0 "Rows" run other Domestic Demo after.xlsX
  cmp <(sheet before.xlsX) <(sheet during.xlsX) || fail "a commit in the middle of a run is seen"
  if [[ $(sheet before.xlsX) == "$(sheet after.xlsX)" ]]; then fail "a commit is not seen by the next run"; fi
fi

# One question for each of many cells is refused.
facts other
ask 1 'more than 1000 questions, one for each of many cells. Build a file with the facts' "WITH MEMBER [Measures].[x] AS
  Count(Filter([Date].[Month].Members * [ActX].[xlFile].[File].Members, [Measures].[Amount] > 0))
  SELECT {[Measures].[x]} ON 0, [QeL].[QeL].Members ON 1 FROM [LedgerQEL]"

# What goes wrong on the server is told in its words, and a workbook from before stays.
if [[ $engine == postgresql ]]; then
  VOKCUBE_DATABASE_USER=nobody ask 1 'role "nobody" does not exist'
  sql "UPDATE other SET amount = 'NaN' WHERE line_id = 901"
  ask 1 'sums of table other, row 1: the sum "NaN" is not a number of at most 38 digits'
fi
sql "ALTER TABLE other DROP COLUMN amount"
ask 1 'table other has no column "amount" any more'
sql "DROP TABLE other"
ask 1 "$absent"
slow 3
with 's#<Table name="entries"/>#<Table name="slow"/>#'
expect 0 "Rows" run live Domestic Demo during.xlsX
cp during.xlsX before.xlsX
status=0
run other Domestic Demo during.xlsX > said 2>&1 &
until [[ $(waits) != 0 ]] || ! kill -0 $! 2> /dev/null; do sleep 0.05; done
down ledger
wait $! || status=$?
((status == 1)) && [[ $(< said) == *"$gone"* ]] || fail "ended with $status, wanted 1 and: $gone"
cmp before.xlsX during.xlsX || fail "the old workbook is another one"
finish
