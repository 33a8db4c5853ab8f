# What the tests of database servers begin with, beside tests/cli/start.sh, which it sources. The tables of
# DATA_DIR lie in run/csv, with rows that need care, among them an amount of `wide`, and entries.cub is made of
# them. The program `up` has started a server of them at `port`; `down` ends it.
source "$(dirname "${BASH_SOURCE[0]}")/../cli/start.sh"

mkdir run
cp -r "$data" run/csv
# Quotes, a tab, a backslash and a line end in names, NULL.
printf '901,"\\N ""x"", a\tb\\t","two\nlines",901\n' >> run/csv/lines.csv
printf '%s\n' "20220101,901,4,0,1,$wide,3" 20220101,901,4,0,1,,1 >> run/csv/entries.csv
port=$(free_port)
trap '"$down" run' EXIT
trap 'exit 130' INT TERM
"$up" run "$port"

# Without the name of the server in it, a cube is that of the files, to the byte.
recorded=--no-source
build() { # SCHEMA DATA OUTPUT
  "$vokcube" cube build --schema "$1" --data "$2" --output "$3" $recorded
}
# with SED: run/csv/schema.xml with changes, as schema.xml
with() { sed -E "$1" run/csv/schema.xml > schema.xml; }
# live CUBE: a live cube of schema.xml answers as the file does.
live() {
  local answer='SELECT {[Measures].Members} ON 0, [Date].[Month].Members * [QeL].[QeL].Members ON 1 FROM [LedgerQEL]'
  expect 0 "stay in the database" "$vokcube" cube build --live --schema schema.xml --data "$server" --output live.cub
  "$vokcube" mdx "$1" "$answer" > file.txt
  "$vokcube" mdx live.cub "$answer" | cmp - file.txt
}
# refused WORDS SED: what a schema so changed is refused with.
refused() {
  with "$2"
  expect 1 "$1" build schema.xml "$server" server.cub
  [[ ! -e server.cub ]] || fail "a refused build left a file"
}
expect 0 "entries.cub" build run/csv/schema.xml run/csv entries.cub
