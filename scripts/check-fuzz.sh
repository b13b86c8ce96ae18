#!/usr/bin/env bash
# Whether fuzzing finds anything: puts the faults of fuzz/planted.patch, one for each target, into a copy of the sources
# and fails unless every target stops at its own. Usage: scripts/check-fuzz.sh [SECONDS]
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."
copy=build/planted
rm -rf "$copy/fuzz/seeds"
mkdir -p "$copy"
git ls-files -z | xargs -0 cp -pu --parents -t "$copy"
patch -d "$copy" -p1 -s <fuzz/planted.patch
trap 'patch -d "$copy" -p1 -s -R <fuzz/planted.patch' EXIT
"$copy/scripts/fuzz.sh" "${1:-60}" | tee "$copy/report" || true
found=$(grep -c ' CRASH$' "$copy/report" || true)
echo "$found of 5 planted faults found"
[ "$found" -eq 5 ]
