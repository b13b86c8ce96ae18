#!/usr/bin/env bash
# Compares what a shared library exports with the list that is checked in. Usage: exports.sh LIBRARY LIST [--refresh]
set -euo pipefail
export LC_ALL=C

# Without inline functions, which every user has too and which compilers keep or not.
exported() {
  nm --dynamic --demangle --defined-only "$1" | grep -v ' W ' | sed -E 's/^[0-9a-f]+ . //' | sort -u
}

if [ ! -s "$1" ]; then
  echo "exports.sh: there is no library $1" >&2
  exit 1
fi
if [ "${3:-}" = --refresh ]; then
  exported "$1" >"$2"
fi
diff --unified=0 "$2" <(exported "$1") || {
  echo "exports.sh: $1 exports other symbols than $2 lists; if that is meant: exports.sh LIBRARY LIST --refresh" >&2
  exit 1
}
