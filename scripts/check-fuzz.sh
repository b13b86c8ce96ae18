#!/usr/bin/env bash
# Shows that fuzzing finds faults: plants those of fuzz/planted.patch, one for each target, in a copy of the sources, and
# fails unless every target stops at its own. Usage: scripts/check-fuzz.sh [SECONDS]
. "$(dirname "$0")/lib.sh"
scripts/setup.sh gates
copy=build/planted
lock planted
mkdir -p "$copy/build"
scripts/copy_sources.py "$copy"
patch -d "$copy" -p1 -s <fuzz/planted.patch
"$copy/scripts/fuzz.sh" "${1:-60}" | tee "$copy/build/report" || true
found=0
for fault in 'not kept: the answer is the model' 'not kept: the settings make the same again' \
  'what():  basic_string_view::substr' 'not kept: what is built is whole' 'not kept: an escaped word is safe' \
  'not kept: the text of a document is UTF-8'; do
  if grep -q "$fault" "$copy/build/report"; then found=$((found + 1)); else echo "not found: $fault"; fi
done
echo "$found of 6 planted faults found"
[ "$found" -eq 6 ]
