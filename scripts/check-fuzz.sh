#!/usr/bin/env bash
# Whether fuzzing finds anything: puts the faults of fuzz/planted.patch, one for each target, into a copy of the sources
# and fails unless every target stops at its own. Usage: scripts/check-fuzz.sh [SECONDS]
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."
copy=build/planted
mkdir -p "$copy"
rm -rf "$copy/fuzz/seeds"
sed -n 's|^+++ b/||p' fuzz/planted.patch | (cd "$copy" && xargs rm -f) # they may hold the faults already
git ls-files -z | xargs -0 cp -pu --parents -t "$copy"
patch -d "$copy" -p1 -s <fuzz/planted.patch
"$copy/scripts/fuzz.sh" "${1:-60}" | tee "$copy/report" || true
found=$(grep -c ' CRASH$' "$copy/report" || true)
echo "$found of 5 planted faults found"
[ "$found" -eq 5 ]
