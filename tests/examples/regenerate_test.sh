#!/bin/bash
# The committed example must be, byte for byte, what the generator makes by default.
#
#   regenerate_test.sh GENERATOR COMMITTED_DIR WORK_DIR
set -euo pipefail
rm -rf "$3"
"$1" --output "$3"
diff -r "$2" "$3"
