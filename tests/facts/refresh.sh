# Months of a cube that are read anew from the server of the test that sources this. A refreshed file is the
# one that a build makes of the tables as they are then, to the byte: the time is 0 for both.
# `edit` is a change of 2023-06 for servers that can do one, and `edited` the words for it; `grouped` is --group
# where no amount is a binary fraction.
export SOURCE_DATE_EPOCH=0
recorded=

# refreshed WORDS OPTION...: from before.cub; the file is to be now.cub.
refreshed() {
  cp before.cub refreshed.cub
  expect 0 "$1" "$vokcube" cube refresh refreshed.cub "${@:2}"
  cmp refreshed.cub now.cub || fail "a refresh with ${*:2} gives another cube than a build"
}
# not_refreshed WORDS OPTION...: before.cub stays as it is.
not_refreshed() {
  cp before.cub refreshed.cub
  expect 1 "$1" "$vokcube" cube refresh refreshed.cub "${@:2}"
  cmp refreshed.cub before.cub || fail "a refused refresh changed the file"
}

# The members of Opening_Balance are those that the facts name.
own_members='s#<Hierarchy (.*) primaryKey="key">#<Hierarchy \1>#; /name="opening"/d
  s#column="key" captionColumn="meaning"#column="opening_key"#'
changes=(
  "INSERT INTO dates (date_id, year, quarter, month) VALUES (20250101, 2025, 1, 1)"
  "INSERT INTO lines (line_id, code, caption, sort) VALUES (902, 'new', 'new', 7), (903, 'idle', 'idle', 8)"
  "INSERT INTO entries (date_id, line_id, file_id, opening_key, money_id, amount, units) VALUES
    (20230501, 77, 4, 0, 1, 0.25, 1), (20241201, 902, 4, 2, 1, 7, NULL), (20250101, 902, 4, 0, 1, -1.5, 2)"
  "INSERT INTO opening (key, meaning) VALUES (2, 'corrections')"
)
schemas=0
for schema in 's/x/x/' "$own_members"; do
  with "$schema"
  build schema.xml "$server" "before $((++schemas)).cub" > said 2>&1 || fail "a build before changes"
done
for change in "${changes[@]}"; do sql "$change"; done
[[ -z $edit ]] || sql "$edit"
schemas=0
for schema in 's/x/x/' "$own_members"; do
  with "$schema"
  cp "before $((++schemas)).cub" before.cub
  build schema.xml "$server" now.cub > said 2>&1 || fail "a build after changes"
  refreshed "read anew: 2023-05, ${edited}2024-12, 2025-01" --since auto
  refreshed 'read anew: 2023-05, 2023-06, 2024-12, 2025-01' --months 2025-01,2023-05,2024-12,2023-06
  refreshed 'read anew: 2023-05, 2023-06' --since 2023-05-31
  refreshed 'read anew: 2022-01, 2022-02' --since 2022-01 $grouped
done
cp refreshed.cub before.cub
refreshed 'stored cells' --since auto
[[ $(< said) != *anew* ]] || fail "unchanged months were read"
sql "INSERT INTO entries (date_id, line_id, file_id, opening_key, money_id, amount, units)
  VALUES (20240601, 77, 4, 0, 1, 5, NULL)"
build schema.xml "$server" now.cub > said 2>&1
SOURCE_DATE_EPOCH=1733034600 "$vokcube" cube refresh refreshed.cub --months 2024-06 > said
[[ $("$vokcube" cube info refreshed.cub) == *"Built from $server, refreshed 2024-12-01T06:30:00Z"* ]] ||
  fail "the time of a refresh"
[[ $("$vokcube" cube info refreshed.cub --json) == *'"refreshed": "2024-12-01T06:30:00Z"'* ]] ||
  fail "the time of a refresh as JSON"

# Killed at any moment, the old file or the new one is there, whole, and the next refresh works.
for delay in 0.0{1..9} 0.1 0.15 0.2 0.3 0.4; do
  cp before.cub refreshed.cub
  timeout --foreground -s KILL $delay "$vokcube" cube refresh refreshed.cub --since auto > /dev/null 2>&1 || :
  cmp -s refreshed.cub before.cub || cmp -s refreshed.cub now.cub || fail "killed after $delay s: neither file"
done
refreshed 'read anew: 2024-06' --since auto
[[ -z $(find . -maxdepth 1 -name '*refreshed.cub*' ! -name refreshed.cub) ]] ||
  fail "a killed refresh left a file"

not_refreshed 'Say which months of refreshed.cub are to be read anew: --since 2024-11, --since auto or --months 2024-11'
not_refreshed 'has no dates of 2031-01' --months 2031-01
not_refreshed 'has no dates from 2031-01 on' --since 2031-01-15
not_refreshed '"2024/06" is neither a month such as 2024-11 nor a date' --since 2024/06
not_refreshed 'a cube is not built from such an address' --since auto --data mysql://db.example/x
cp entries.cub before.cub
not_refreshed 'does not tell which database server its tables are on' --since auto
