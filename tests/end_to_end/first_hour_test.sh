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

# From a journal to a workbook in two commands: journal FOLDER GUESSED CELLS.
journal() {
  local folder=$1 guessed=$2 cells=$3 word
  expect 0 "Saved the data source \"$folder\"" vokcube cube new "$folder" input
  for word in $guessed; do grep -qF "column \"$word\"" said || fail "$folder has no $word"; done
  expect 0 "Rows" bash -ec "$(sed -n 's/^  vokcube/vokcube/p' said)"
  [[ $(sheet report.xlsX | tail -n +2 | tr -s ,) == "$cells" ]] || fail "$folder:" "$(sheet report.xlsX)"
}
printf '%s\r\n' 'Beleg;Buchungsdatum;Konto;Buchungstext;Betrag;Menge' '1;31.01.2024;4000;"Erlöse; Tee";-1.250,50;50' \
  '2;01.02.2024;4000;"Erlöse; Tee";-980,00;' '3;1.2.2024;1000;Kasse;2.230,50;' '' | iconv -t UTF-16 > input
journal tee "Buchungsdatum Konto Betrag Menge Buchungstext" \
  $'"0","1000","Kasse",2230.5,\n"0","4000","Erlöse; Tee",50,-1250.5,-980,'
printf '%s\n' when,code,much,company 2023-12-31,500,10.5,Shop 2023-11-30,500,1,Shop 2023-11-01,600,2,Shop \
  2023-11-02,600,2,Shop > input
journal shop "when code much company" $'"0","500",1,10.5\n"0","600",4,'
expect 1 'shop is there already; name a new folder' vokcube cube new shop input
rm -r shop
expect 1 'There is a saved set named "shop" already' vokcube cube new shop input
printf '%s\n' date,account,debit,credit,company 2024-01-{30,31},500,10.50,,It\'s 2024-01-{30,31},600,,10.50,Ours > input
expect 0 'though they hold amounts: credit; see --amount' vokcube cube new both input
expect 0 $'both ledger 1\nboth Ours' vokcube sets DataSourceInfo
printf 'date;account;amount\n2/1/2024;5;1.250\n' > input
expect 0 'a decimal comma, dates as m/d/yyyy' vokcube cube new us input --dates m/d/yyyy --decimal ,
printf '%s\n' date,account,amount,ledger 2024-01-31,500,{1\,Shop,2\,SHOP,4\,shop,8\,Shop,16\,Shop,32\,SHOP} > input
expect 0 'Saved the data source "fold SHOP"' vokcube cube new fold input
expect 0 'Rows      1' vokcube run --data-source 'fold ledger 2' --periods 'fold 2024' --output report
[[ $(sheet report.xlsX | tail -n +2 | tr -s ,) == '"0","500",25,' ]] || fail "Shop:" "$(sheet report.xlsX)"
printf 'a,b\nx,y\n' > input
expect 1 'Which column of the journal holds the date cannot be told; name it with --date. Its columns: a, b' \
  vokcube cube new other input
printf 'when,account,amount\n2024-01-31,500,1\n' > input
printf -v long '%0140d' 0
expect 1 'column CubeFile' vokcube cube new "far/$long/$long/other" input
[[ ! -e other && ! -e far ]] || fail "a folder was left"

# help_of COMMAND...: it and those below it end with an example, which the parser takes, and statuses.
help_of() {
  local below
  expect 0 "Exit status: 0 done, 1 failed, 2 wrong" vokcube "$@" --help
  grep -qF "  vokcube $*" <(grep -A1 ^Example: said) || fail "the example of vokcube $*"
  for below in $(sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p' said); do help_of "$@" "$below"; done
}
help_of

# Every number that a failure can have is explained.
for code in $(sed -n 's/^inline constexpr int32_t k.* = \(-\?[0-9]*\);.*/\1/p' "$source/platform/failure.h"); do
  grep -qE "^\|( [^|]*,)? $code(,[^|]*)? \|" "$source/docs/operations.md" || fail "nobody explains $code"
done

# Every script's help is the comment at its head; nothing else is done: there is no other program.
mkdir bare
ln -s "$(command -v dirname)" "$(command -v realpath)" "$(command -v sed)" "$(command -v bash)" bare
for script in "$source"/scripts/*; do
  [[ $script != *.gdb ]] || continue
  PATH=$PWD/bare "$script" --help > said 2>&1 < /dev/null || fail "$script --help"
  diff said <(sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$script") > /dev/null || fail "the help of $script"
done
finish
