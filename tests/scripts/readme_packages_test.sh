#!/bin/bash
# The README's table of packages must name those that the scripts install, and no others.
#
#   readme_packages_test.sh SOURCE_DIR
set -euo pipefail
cd "$1"

in_readme() {
  sed -n '/^| package /,/^$/p' README.md | sed '1,2d' | cut -d '|' -f 2 | tr -s ', ' '\n' |
    sed '/^$/d' | sort
}

diff <(in_readme) <(scripts/install-packages --list | sort)
