# What the campaigns share: the program, a sample world, the commands that are tried, and the judge.
#
# A campaign sources this file, counts its trials in `trials`, whose name is `trials_are`, and calls
# `report` at its end; TERM and INT end it after the trial at hand, with its counts too.
# It begins with `world NAME [GENERATOR OPTION...]`, which makes
# out/campaigns/NAME anew and enters it:
#   start/   where every command begins: the old version of each file, and what is needed for the new
#   trial/   a copy of it, in which one command runs
#   known/   for each command: what its target holds before it (NAME.old), after it (NAME.new) and
#            after the command that comes next (NAME.next); what it prints, which files there are
#   faults   a line for each fault; the first 20 trials are kept in faults.d/
set -uo pipefail
renice -n "${NICE:-19}" $$ > /dev/null
export LC_ALL=C.UTF-8 SOURCE_DATE_EPOCH=946684799 PGUSER=sample
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM VOKCUBE_REGISTRY

root=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
build=$root/build/campaigns
vokcube=${VOKCUBE:-$build/bin/vokcube}  # an installed one, if you like
misbehave=$build/tests/campaigns/misbehave
generate=$build/examples/vok_examples_generate

# NAME | KIND TARGET | ARGUMENTS. A target is a file, the settings in a folder, or the output alone.
commands=(
  'run-two-passes|file two.xlsX|run --data-source Domestic --periods Demo --output two'
  'run-one-pass|file one.xlsX|run --data-source Domestic --periods "Months 2024" --output one'
  'run-first|file first.xlsX|run --data-source Domestic --periods Demo --output first'
  'jobs|file two.xlsX|run --jobs jobs.json --quiet'
  'cube-build|file built.cub|cube build --schema new/schema.xml --data new --output built.cub'
  'cube-first|file first.cub|cube build --schema new/schema.xml --data new --output first.cub'
  'cube-refresh|file month.cub|cube refresh month.cub --since auto'
  'import|settings settings|settings import new.json'
  'import-first|settings fresh|settings import new.json'
  'delete|settings settings|settings delete periods "Months 2024"'
  'fill|settings settings|periods fill Demo --interval month --from 2023-01-31'
  'export|file export.json|settings export export.json'
  'language|file Lang.rs|language build texts.csv Lang.rs'
  'texts|file own.csv|language texts own.csv'
  'sets|output -|sets Periods --json'
  'info|output -|info --json'
  'cube-info|output -|cube info ledger.cub --json'
  'cube-check|output -|cube check ledger.cub'
  'measures|output -|cube measures ledger.cub --all'
  'members|output -|cube members ledger.cub --kind obs'
  'mdx|output -|mdx ledger.cub --format csv "SELECT {[Measures].[Amount]} ON COLUMNS, [QeL].[Line].MEMBERS ON ROWS FROM [LedgerQEL]"'
  'print|output -|settings export'
  'language-show|output -|language show Lang.rs'
)

# Takes one row of the table apart.
choose() {
  local target
  IFS='|' read -r name target arguments <<< "$1"
  read -r kind target <<< "$target"
  path=$target
  folder=settings
  [[ $kind == settings ]] && folder=$path
  eval "words=($arguments)"
  program=("$vokcube" --settings-folder "$folder" "${words[@]}")
  next=("${program[@]}")
  [[ $kind == settings ]] && next=("$vokcube" --settings-folder "$folder" settings import new.json)
  return 0
}

# The rows of the named commands; of all of them, except those of a kind, when none is named.
rows() {
  local without=$1 row wanted
  shift
  for row in "${commands[@]}"; do
    (($# > 0)) || [[ $row == *"|$without "* ]] || echo "$row"
    for wanted in "$@"; do [[ $row == "$wanted|"* ]] && echo "$row"; done
  done
}

# One word for what the target of the chosen command holds.
content() {
  case $kind in
    output) echo none ;;
    file) if [[ -e $path ]]; then sum < "$path"; else echo absent; fi ;;
    settings)
      if [[ ! -e $path/CubToQel.mdb ]]; then
        echo absent
      elif "$vokcube" --settings-folder "$path" settings export > ../exported 2> ../export-failed; then
        sum < ../exported
      else
        echo unusable
      fi
      ;;
  esac
}

sum() { sha1sum | cut -d ' ' -f 1; }
files() { find . -path '*/Log' -prune -o -type f -print | sort; }
printed() { sed -E 's/[0-9]+ ms/T ms/g' "$1"; }
begin_trial() {
  rm -rf trial
  cp -a start trial
}

build_programs() {
  "$root/scripts/install-packages" campaigns || exit
  [[ -e $build/build.ninja ]] || cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DVOKCUBE_TESTS=ON -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache)" > /dev/null || exit
  cmake --build "$build" --target vokcube vok_examples_generate misbehave > "$build/log" ||
    { cat "$build/log"; exit 1; }
}

# Everything that the commands need, and the old version of everything that they write.
make_start() {
  mkdir -p start && cd start || exit
  "$generate" --output new "$@" > /dev/null
  "$generate" --output old --seed 71 "$@" > /dev/null
  cp new/settings.json new.json
  sed 's/"Jan 2024"/"January"/; s/"2023-01-01"/"2023-02-01"/' new.json > old.json
  "$vokcube" cube build --schema new/schema.xml --data new --output ledger.cub
  "$vokcube" cube build --schema old/schema.xml --data old --output built.cub
  make_month
  "$vokcube" settings import old.json --settings-folder settings
  "$vokcube" settings export export.json --settings-folder settings
  "$vokcube" language texts own.csv
  "$vokcube" language build own.csv Lang.rs
  cp "$root/languages/texts.csv" .
  echo "number,1 old" > own.csv
  for output in one two; do
    echo "{\"dataSource\": \"Domestic\", \"periods\": \"Demo\", \"output\": \"$output\"}"
  done | paste -sd, | sed 's/.*/[&]/' > jobs.json
  echo "{}" > export.json
  local output
  for output in one two; do
    "$vokcube" run --settings-folder settings --data-source Export --periods Demo --output $output
  done
  cd ..
}

# A cube whose tables are on a database server, where a month has changed since.
make_month() {
  local port=$((20000 + RANDOM % 10000))
  mkdir "$work/server"
  ln -s ../start/new "$work/server/csv"
  "$root/tests/interop/postgresql-up" "$work/server" "$port" || exit
  "$vokcube" cube build --schema new/schema.xml --output month.cub --data "postgresql://127.0.0.1:$port/sample"
  psql --quiet --host="$work/server/postgresql" --port="$port" --dbname=sample \
    --command 'INSERT INTO entries SELECT * FROM entries WHERE date_id = (SELECT max(date_id) FROM entries)'
}

# What the chosen command does when nothing disturbs it.
know() {
  begin_trial
  cd trial || exit
  content > "../known/$name.old"
  if ! "${program[@]}" > ../out 2> ../err; then
    echo "$name does not work undisturbed:" >&2
    cat ../err >&2
    exit 1
  fi
  printed ../out > "../known/$name.out"
  content > "../known/$name.new"
  files > "../known/$name.files"
  "${next[@]}" > /dev/null
  content > "../known/$name.next"
  files > "../known/$name.next-files"
  [[ $kind == output ]] || ! cmp -s "../known/$name.old" "../known/$name.new" ||
    { echo "$name changes nothing" >&2; exit 1; }
  cd ..
}

# One line for each system call that the chosen command makes after it was loaded: the call's name
# and the how manieth of that name in its thread it is; not where the loader has one of the same number,
# which would fail first.
trace() {
  begin_trial
  cd trial || exit
  strace -f -qq -o ../trace "${program[@]}" > /dev/null 2>&1
  cd ..
  awk '$2 !~ /^[a-z_0-9]+\(/ { next }
    { call = substr($2, 1, index($2, "(") - 1); n = ++count[$1, call] }
    !loaded { of_loader[call, n] }
    loaded && !((call, n) in of_loader) { print call, n }
    call == "munmap" { loaded = 1 }' trace | sort -u > "known/$name.calls"
}

world() {
  work=${OUT:-$root/out/campaigns}/$1
  shift
  build_programs
  rm -rf "$work"
  mkdir -p "$work/known" "$work/faults.d" && cd "$work" || exit
  trap '[[ ! -e $work/server ]] || "$root/tests/interop/postgresql-down" "$work/server"' EXIT
  export VOKCUBE_REGISTRY=$work/registry.reg
  : > faults
  mkfifo pause
  (make_start "$@") > start.log 2>&1 || { cat start.log; exit 1; }
  # A whole state between the old and the new one: a database with nothing in it yet.
  echo "{}" > none.json
  "$vokcube" settings import none.json --settings-folder made > /dev/null
  "$vokcube" settings export --settings-folder made | sum > known/import-first.between
}

# Waits without a process of its own.
pause() { read -r -t "$1" <> "$work/pause" || true; }

fault_count=0
# fault CLASS TEXT: of the trial at hand.
fault() {
  echo "$name: $1: $2: $(tr '\n' ' ' < "$work/err" | cut -c 1-300)" >> "$work/faults"
  fault_count=$((fault_count + 1))
  tally "fault $name $1"
  ((fault_count > 20)) || cp -a "$work/trial" "$work/faults.d/$fault_count"
}

declare -A tallies=()
tally() { tallies[$1]=$((${tallies[$1]-0} + 1)); }

# Which version the target is in: old, new, between the two where that is a whole state, or lost.
state() {
  local is version
  is=$(content)
  for version in "../known/$name."{old,new,between*}; do
    [[ -e $version && $is == $(< "$version") ]] || continue
    version=${version##*.}
    echo "${version%-*}"
    return
  done
  [[ $is == unusable ]] && { echo unusable; return; }
  [[ $is == absent ]] && { echo gone; return; }
  echo half
}

# The counts, and exit status 1 when there was a fault.
trials=0
report() {
  local key
  for key in "${!tallies[@]}"; do printf '%-44s %6d\n' "$key" "${tallies[$key]}"; done | sort
  echo "$trials $trials_are${1-}: $fault_count faults; see $work/faults"
  ((fault_count == 0))
}

# end STATUS: a campaign that is stopped reports what it did until then.
end() {
  trap '' TERM INT
  report " until it was stopped"
  exit "$1"
}
trap 'end 143' TERM
trap 'end 130' INT
