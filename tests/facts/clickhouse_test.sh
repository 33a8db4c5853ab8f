#!/bin/bash
# As postgresql_test.sh, with a ClickHouse server.
#
#   clickhouse_test.sh VOKCUBE DATA_DIR WORK_DIR
facts=$(realpath "$(dirname "$0")")
up=$facts/clickhouse-up down=$facts/clickhouse-down wide=12345678901234567890.25
source "$facts/start.sh"
server=clickhouse+http://127.0.0.1:$port/sample
sql() { # STATEMENT [PORT]
  curl --silent --show-error --fail-with-body "http://127.0.0.1:${2-$port}/?database=sample&insert_distributed_sync=1" \
    --data-binary "$1"
}

refused "Table sample.nothing doesn't exist., e.what() = DB::Exception. Tables there: dates, entries" \
  's#<Table name="entries"/>#<Table name="nothing"/>#'
refused 'table lines: there is no column "Code"' 's#column="code" caption#column="Code" caption#'
# The server fails after some rows, in the middle of its answer.
sql "CREATE TABLE many AS entries ENGINE = Log"
for _ in {1..20}; do sql "INSERT INTO many SELECT * FROM entries"; done
sql "CREATE VIEW late AS SELECT date_id, line_id, file_id, opening_key, money_id, units,
  amount + throwIf(rowNumberInAllBlocks() = 300000) AS amount FROM many"
refused 'DB::Exception' 's#<Table name="entries"/>#<Table name="late"/>#'
expect 1 'the address takes no options' build run/csv/schema.xml "$server&readonly=0" server.cub
expect 1 'the address takes no options' build run/csv/schema.xml "$server?password=secret" server.cub
[[ $(< said) != *secret* ]] || fail "the password is shown"

expect 0 "server.cub" build run/csv/schema.xml "$server" server.cub
cmp entries.cub server.cub || fail "the server's cube is another one than that of the files"
sql "CREATE DATABASE books"
sql "CREATE VIEW books.fractions AS SELECT date_id, line_id, file_id, opening_key, money_id, units,
  toFloat64(amount) AS amount FROM sample.entries"
sed -E 's#<Table name="entries"/>#<Table schema="books" name="fractions"/>#' run/csv/schema.xml > schema.xml
expect 0 'the column "amount" holds binary fractions' build schema.xml "$server" server.cub

export VOKCUBE_DATABASE_USER=reader VOKCUBE_DATABASE_PASSWORD=wrong VOKCUBE_DATABASE_SERVER=127.0.0.1
sed -E 's#<Table name="files"/>#<Table name="nothing"/>#' run/csv/schema.xml > schema.xml
expect 1 'were not sent to it: over http they can be read' build schema.xml "$server" server.cub
export VOKCUBE_DATABASE_AUTHENTICATION=basic
expect 1 'Wrong password for user reader' build run/csv/schema.xml "$server" server.cub
VOKCUBE_DATABASE_PASSWORD=right expect 0 "server.cub" build run/csv/schema.xml "$server" server.cub
cmp entries.cub server.cub || fail "a reader gets another cube"
unset VOKCUBE_DATABASE_USER

# The server adds up.
sql "CREATE VIEW narrow AS SELECT * FROM entries WHERE amount < 1000000"
with 's#<Table name="entries"/>#<Table name="narrow"/>#'
build schema.xml "$server" server.cub > said
recorded='--no-source --group' expect 0 grouped.cub build schema.xml "$server" grouped.cub
cmp server.cub grouped.cub || fail "sums of the server give another cube"

# A table whose rows are on two servers.
mkdir other
ln -s ../run/csv other/csv
trap '"$down" run; "$down" other' EXIT
"$up" other $((port + 10))
for at in "$port" $((port + 10)); do sql "CREATE TABLE half AS entries ENGINE = MergeTree ORDER BY tuple()" "$at"; done
sql "CREATE TABLE spread AS entries ENGINE = Distributed(pair, sample, half, line_id)"
sql "INSERT INTO spread SELECT * FROM narrow"
[[ $(sql "SELECT count() FROM half" $((port + 10))) -gt 1000 ]] || fail "the other server has too few rows"
with 's#<Table name="entries"/>#<Table name="spread"/>#'
expect 0 grouped.cub build schema.xml "$server" grouped.cub
cmp server.cub grouped.cub || fail "two servers give another cube"
recorded='--no-source --group' expect 0 grouped.cub build schema.xml "$server" grouped.cub
cmp server.cub grouped.cub || fail "sums of two servers give another cube"
live server.cub || fail "two servers give a live cube other answers"
"$down" other

# TLS.
tls=clickhouse+https://localhost:$((port + 2))/sample
expect 1 'name the authority'\''s file as CaFile' build run/csv/schema.xml "$tls" server.cub
export VOKCUBE_DATABASE_CA_FILE=$PWD/run/localhost.pem
expect 1 'cannot be trusted' build run/csv/schema.xml "${tls/localhost/127.0.0.1}" server.cub
expect 0 server.cub build run/csv/schema.xml "$tls" server.cub
cmp entries.cub server.cub || fail "TLS gives another cube"
unset VOKCUBE_DATABASE_CA_FILE

# Of this server rows come in any order, which shows where they are not put together.
sed -i 's#<Table name="entries"/>#<Table name="narrow"/>#' run/csv/schema.xml
edit='' edited='' grouped=--group
source "$facts/refresh.sh"
sed -i 's#<Table name="narrow"/>#<Table name="entries"/>#' run/csv/schema.xml
recorded=--no-source

sql "CREATE TABLE drops AS files ENGINE = Memory"  # a block for each INSERT
for id in {1..40}; do sql "INSERT INTO drops VALUES ($id, 'Domestic', '$id')"; done
sql "CREATE VIEW slow AS SELECT * FROM drops WHERE sleepEachRow(0.25) = 0"
sed -E 's#<Table name="files"/>#<Table name="slow"/>#' run/csv/schema.xml > schema.xml
waits() { sql "SELECT count() FROM system.processes WHERE query LIKE '%\`slow\` FORMAT TabSep%' AND NOT query LIKE '%count%'"; }
during() { # STATUS WORDS SIGNAL OF: sent to our process or the server once the server works
  local status=0
  env --default-signal=INT "$vokcube" cube build --schema schema.xml --data "$server" --output server.cub \
    > said 2>&1 < /dev/null &
  until [[ $(waits) != 0 ]] || ! kill -0 $! 2> /dev/null; do sleep 0.05; done
  "$3"
  wait $! || status=$?
  ((status == $1)) && [[ $(< said) == *"$2"* ]] || fail "ended with $status, wanted $1 and: $2"
  cmp -s server.cub entries.cub || fail "the old file is another one"
}
interrupt() { kill -INT $!; }
nothing() { :; }
during 130 'cancelled' interrupt
for _ in {1..20}; do [[ $(waits) == 0 ]] && break || sleep 0.1; done
[[ $(waits) == 0 ]] || fail "the server goes on"
VOKCUBE_DATABASE_IDLE_SECONDS=1 during 1 'sent nothing for 1 seconds (IdleSeconds in Qel.ini, section [Database])' nothing
end() { "$facts/clickhouse-down" run; }
during 1 'The database server http://127.0.0.1' end
finish
