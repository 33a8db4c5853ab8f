#!/bin/bash
# Does what a new user reads: the commands of docs/your-own-cube.md, the help of every command, and of
# every script.
#
#   first_hour_test.sh VOKCUBE SOURCE_DIR WORK_DIR
source "$(dirname "$0")/../cli/start.sh"
source=$data
PATH=$(dirname "$vokcube"):$PATH
export XDG_CONFIG_DIRS=$PWD VOKCUBE_REGISTRY=

# page_commands FILE FIRST: the block of commands in a page that begins with this line, without it.
page_commands() { sed -n "/^    $2\$/,/^\$/s/^    //p" "$source/docs/$1" | tail -n +2; }

# The smallest cube, as the page has it.
cp -r "$source/examples/smallest" smallest
cd smallest
page_commands your-own-cube.md 'cd examples\/smallest' > commands
(($(grep -c ^vokcube commands) == 3)) || fail "the page's commands are" "$(< commands)"
expect 0 "Rows      3" bash -eux commands
sheet report.xlsX | tail -n +2 | tr -s , | diff - <(printf '%s\n' \
  '"0","1000","Bank",850,980.5,1010,' '"0","4000","Sales: Tea",50,-1250,39,-980.5,56,-1410,' \
  '"0","5000","Rent",400,400,') || fail "the smallest cube's workbook"
expect 0 "Cube BooksQEL has all that saved queries need" vokcube cube check books.cub
cd ..

# help_of COMMAND...: it and those below it end with an example, which the parser takes, and statuses.
help_of() {
  local below
  expect 0 "Exit status: 0 done, 1 failed, 2 wrong" vokcube "$@" --help
  grep -qF "  vokcube $*" <(grep -A1 ^Example: said) || fail "the example of vokcube $*"
  for below in $(sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p' said); do help_of "$@" "$below"; done
}
help_of

# Every script's help is the comment at its head; nothing else is done: there is no other program.
mkdir bare
ln -s "$(command -v dirname)" "$(command -v realpath)" "$(command -v sed)" "$(command -v bash)" bare
for script in "$source"/scripts/*; do
  [[ $script != *.gdb ]] || continue
  PATH=$PWD/bare "$script" --help > said 2>&1 < /dev/null || fail "$script --help"
  diff said <(sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$script") > /dev/null || fail "the help of $script"
done
finish
