#!/usr/bin/env bash
# Holds each folder to the headers that it may include. Usage: doors.sh [ROOT]
set -euo pipefail
unset CDPATH
cd "${1:-$(dirname "$0")/..}"

status=0
# door FOLDER PATTERN: every quoted include of the folder's files begins with one of the alternatives.
door() {
  local stray
  if [ -z "$(find "$1" -name '*.?pp')" ]; then
    echo "doors.sh: $1 has no source files" >&2
    status=1
  fi
  stray=$(grep -rnE '^ *# *include *["<]' "$1" --include='*.?pp' |
    grep -vE "include *([\"<]($2)|<[a-z_0-9]+(\.h)?>|<(boost|range|sys|linux|fmt|nlohmann)/)" || true)
  if [ -n "$stray" ]; then
    printf '%s may include only "(%s)...":\n%s\n' "$1" "$2" "$stray" >&2
    status=1
  fi
}

host='cmddistributor/|fl/|foundation/|matrix/|orvak/|rux/|tessapp/|tessgen/datalists|zelt/'
door include 'tessgen/kelwhich/'
door platform "$host"
door resolver "resolver/|host/Paths|tessgen/kelwhich/|fl/filesystem|tessapp/util/|tessapp/internal/screener/meta/SupportEntry"
door host "host/|tessgen/kelwhich/|$host"
door adaptors "adaptors/|host/|tessgen/kelwhich/|$host"
door entry "tessgen/kelwhich/|$host"
door standalone "standalone/|host/Paths|$host"
door cli 'cli/|standalone/|tessapp/|tessgen/kelwhich/'

# Public headers know only the standard library and each other.
if grep -rnE '^ *# *include *<' include | grep -vE '<[a-z_]+>'; then
  echo "a public header includes more than the standard library" >&2
  status=1
fi
exit "$status"
