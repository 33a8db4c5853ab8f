# Completion of vokcube for bash: subcommands and options are those that --help lists.
_vokcube() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} help names i
  local program=${COMP_WORDS[0]} command=() folder=()
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      --settings-folder) folder=(--settings-folder "${COMP_WORDS[++i]}") ;;
      -*) break ;;
      *) command+=("${COMP_WORDS[i]}") ;;
    esac
  done
  case $before in
    --data-source) names=$("$program" "${folder[@]}" sets DataSourceInfo 2> /dev/null) ;;
    --periods) names=$("$program" "${folder[@]}" sets Periods 2> /dev/null) ;;
    --interval) names=$'month\nquarter\nhalf-year\nyear' ;;
    --settings-folder | --output | --jobs | --log | --schema | --data) return ;;
    *)
      help=$("$program" "${command[@]}" --help 2> /dev/null)
      if [[ $word == -* ]]; then
        names=$(sed -nE 's/^  (-h,)?(--[a-z-]+).*/\2/p' <<< "$help")
      else
        names=$(sed -nE '/^Subcommands:/,/^$/s/^  ([a-z-]+) .*/\1/p' <<< "$help")
      fi
      ;;
  esac
  local IFS=$'\n' name
  COMPREPLY=()
  for name in $(compgen -W "$names" -- "${word//\\/}"); do COMPREPLY+=("$(printf '%q' "$name")"); done
}
complete -o default -F _vokcube vokcube
