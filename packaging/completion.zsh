#compdef vokcube
# Completion of vokcube for zsh: subcommands and options are those that --help lists.
local -a command folder names
local help i
for ((i = 2; i < CURRENT; ++i)); do
  case $words[i] in
    --settings-folder) folder=(--settings-folder $words[++i]) ;;
    -*) break ;;
    *) command+=($words[i]) ;;
  esac
done
case $words[CURRENT-1] in
  --data-source) names=(${(f)"$($words[1] $folder sets DataSourceInfo 2> /dev/null)"}) ;;
  --periods) names=(${(f)"$($words[1] $folder sets Periods 2> /dev/null)"}) ;;
  --interval) names=(month quarter half-year year) ;;
  --settings-folder | --output | --jobs | --log | --schema | --data) _files && return ;;
  *)
    help=$($words[1] $command --help 2> /dev/null)
    if [[ $words[CURRENT] == -* ]]; then
      names=(${(f)"$(sed -nE 's/^  (-h,)?(--[a-z-]+).*/\2/p' <<< $help)"})
    else
      names=(${(f)"$(sed -nE '/^Subcommands:/,/^$/s/^  ([a-z-]+) .*/\1/p' <<< $help)"})
    fi
    ;;
esac
if ((${#names})); then compadd -a names; else _files; fi
