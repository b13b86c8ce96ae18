#!/usr/bin/env bash
# Holds each room to the headers that it may include. Usage: doors.sh [ROOT]
set -euo pipefail
unset CDPATH
cd "${1:-$(dirname "$0")/..}"

status=0
# door FOLDER PATTERN: every quoted include of the folder's own files begins with one of the alternatives.
door() {
  local files stray
  mapfile -t files < <(find "$1" -maxdepth "${depth:-9}" -name '*.?pp')
  if [ ${#files[@]} -eq 0 ]; then
    echo "doors.sh: $1 has no source files" >&2
    status=1
    return
  fi
  stray=$(grep -HnE '^ *# *include *["<]' "${files[@]}" |
    grep -vE "include *([\"<]($2)|<[a-z_0-9]+(\.h)?>|<(boost|range|sys|linux|fmt|nlohmann)/)" || true)
  if [ -n "$stray" ]; then
    printf '%s may include only "(%s)...":\n%s\n' "$1" "$2" "$stray" >&2
    status=1
  fi
}

# rooms HOUSE OUTSIDE ROOM...: each room may include itself, the rooms before it, and what is OUTSIDE the house; what
# lies in no room may include them all.
rooms() {
  local house=$1 open=$2 room
  shift 2
  for room; do
    open+="|$house/$room/"
    door "$house/$room" "$open"
  done
  depth=1 door "$house" "$open|$house/"
  for room in "$house"/*/; do # that no room is without a door
    [[ $open == *"|$room"* ]] || { echo "doors.sh: $room has no door" >&2; status=1; }
  done
}

host='cmddistributor/|fl/|foundation/|matrix/|orvak/|rux/|tessapp/|tessgen/datalists|zelt/'
door include 'tessgen/kelwhich/'
door platform "$host"
door resolver "resolver/|host/KeyedHash|host/Paths|tessgen/kelwhich/|fl/filesystem|tessapp/util/|tessapp/internal/screener/meta/SupportEntry"
door host "host/|tessgen/kelwhich/|$host"
door adaptors "adaptors/|host/|tessgen/kelwhich/|$host"
door analysis "analysis/|host/Paths|tessgen/kelwhich/"
door entry "tessgen/kelwhich/|$host"
rooms standalone "host/KeyedHash|host/Paths|standalone/Session\.hpp|$host" \
  text files json manifest database search store index watch services doctor
rooms cli 'analysis/|standalone/|tessapp/|tessgen/kelwhich/' output reports options pages recording installation explanation locking checking lsp commands

# Public headers know only the standard library and each other.
if grep -rnE '^ *# *include *<' include | grep -vE '<[a-z_]+>'; then
  echo "a public header includes more than the standard library" >&2
  status=1
fi
exit "$status"
