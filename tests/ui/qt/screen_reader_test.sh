#!/bin/bash
# Reads the main window out as a screen reader does, over the bus of the desktop's accessibility
# tools: every part that takes the keyboard has a name and says what it is.
#
#   screen_reader_test.sh VOKCUBE
set -euo pipefail
if [[ ${2-} != --on-a-screen ]]; then
  folder=$(mktemp -d)
  trap 'rm -rf "$folder"' EXIT
  export XDG_CONFIG_HOME=$folder XDG_RUNTIME_DIR=$folder SETTINGS=$folder
  export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_QPA_PLATFORM=xcb
  timeout 200 xvfb-run -a -s "-screen 0 1366x768x24" dbus-run-session -- "$0" "$1" --on-a-screen
  exit
fi

# ask DESTINATION PATH METHOD [ARGUMENT...]: its answer, as gdbus writes it
ask() { gdbus call --address "$bus" --dest "$1" --object-path "$2" --method "org.$3" "${@:4}"; }
# The parts of a part, a line each: "DESTINATION PATH".
parts_of() {
  ask "$1" "$2" a11y.atspi.Accessible.GetChildren |
    { grep -oE "'[^']+', (objectpath )?'/[^']*'" || true; } | sed "s/', .*'\//  \//; s/'//g"
}
role_of() { ask "$1" "$2" a11y.atspi.Accessible.GetRoleName | sed "s/^('//; s/',)$//"; }
name_of() {
  ask "$1" "$2" freedesktop.DBus.Properties.Get org.a11y.atspi.Accessible Name |
    sed -E "s/^\(<['\"]//; s/['\"]>,\)$//"
}
# Every part below one that takes the keyboard: "ROLE: NAME".
read_out() {
  local role part parts
  role=$(role_of "$1" "$2")
  case $role in
    text | 'combo box' | 'check box' | 'push button' | table | list)
      echo "$role: $(name_of "$1" "$2")"
      return
      ;;
    menu*) return ;;
  esac
  mapfile -t parts < <(parts_of "$1" "$2")
  for part in "${parts[@]}"; do read_out ${part/ / }; done
}

bus=$(gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus \
  --method org.a11y.Bus.GetAddress | sed "s/^('//; s/',)$//")
"$1" --settings-folder "$SETTINGS" window &
window=$!
trap 'kill "$window"' EXIT
root=(org.a11y.atspi.Registry /org/a11y/atspi/accessible/root)
for ((look = 0; look < 300; ++look)); do
  program=$(parts_of "${root[@]}")
  [[ -z $program ]] || [[ -z $(parts_of $program) ]] || break
  sleep 0.2
done
told=$(read_out $program)
echo "$told"
for part in 'combo box: Data source' 'text: Host database \*' 'push button: Run query' \
  'text: From 12' 'check box: Opening balance 1' 'push button: Workbook Choose a file' 'push button: Data source Delete'; do
  grep -qx "$part" <<< "$told" || { echo "not told: $part" >&2; exit 1; }
done
if grep -E ': *$' <<< "$told"; then
  echo "the parts above have no name" >&2
  exit 1
fi
