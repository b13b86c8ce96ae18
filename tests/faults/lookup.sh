#!/usr/bin/env bash
# Resolves names, once for every system call that this takes, with that call failing or being the last: the answer is
# complete, or there is none and a line says why. Usage: lookup.sh PROGRAM [EVERY]
# EVERY: of the faults only each EVERY-th is tried.
# Exits with 77 where processes cannot be traced.
set -euo pipefail
unset CDPATH KELWHICH_INSTALLATION
strace -qq -o /dev/null true 2>/dev/null || { echo "skipped: strace is missing or may not trace here"; exit 77; }

program=$(realpath "$1")
every=${2:-1}
example=$(realpath "${BASH_SOURCE[0]%/*}/../../examples/installation")
top=$(realpath "$(mktemp -d)")
trap 'rm -rf "$top"' EXIT
cp -r "$example" "$top/world"
echo '{}' >"$top/installation.json" # never the one that is meant
cd "$top/world"
ln -s ../@Shape mine/@Linked # a link to a folder and a link to a file
ln -s Shape.vk mine/@Shape/wave.vk
"$program" store build support.jsonl >/dev/null
sed 's/"supportStore"/"searchIndex": "search.cdb", &/' installation.json >indexed.json
"$program" -i indexed.json index build >/dev/null

# `faults COMMAND...`: a line CALL K FAULT for each fault to try: the K-th of each kind of system call that the command
# makes on paths and descriptors, failing with each error and killing the program. The C library's other calls are left
# out: those at the start and those that the system never fails (futex) end any program.
faults() {
  strace -qq -f -e trace=%file,%desc -o "$top/trace" -- "$@" <name >/dev/null 2>&1
  sed -nE 's/^[0-9]+ +([a-z0-9_]+)\(.*/\1/p' "$top/trace" | grep -v '^execve$' |
    awk -v every="$every" '{ n = split("error=EIO error=EACCES error=ENOMEM error=EMFILE signal=KILL", fault, " "); ++k[$1]
           for (i = 1; i <= n; ++i) if (++tried % every == 0) print $1, k[$1], fault[i] }'
}

# `try CALL K FAULT`: runs the command under that fault. Prints "whole", "error" or "killed", else "wrong" and the output.
try() {
  local out=$top/out.$BASHPID err=$top/err.$BASHPID status=0 untouched=true
  { strace -qq -f -o /dev/null -e trace="$1" -e inject="$1:$3:when=$2" -- "${command[@]}" <name; } >"$out" 2>"$err" || status=$?
  sed -i -E '/^kelwhich: note: (folders cannot be watched |.* changed; start kelwhich batch again)/d' "$err"
  [ -s "$out" ] && ! cmp -s "$top/expected" "$out" && untouched=false # it may come after the answer
  if [ "$status" = 0 ] && [ ! -s "$err" ] && cmp -s "$top/expected" "$out"; then
    echo whole
  elif $untouched && [ "$status" = 2 ] && grep -q '^kelwhich: ' "$err"; then
    echo error
  elif $untouched && [[ $status == 137 && $3 == signal=* ]]; then
    echo killed
  else
    echo "wrong: ${command[*]}, $3 at call $2 of $1: exit code $status: $(cat "$out" "$err" | tr '\n' '|')"
  fi
}

echo wave >name
# Each name by itself, then one in a snapshot of the disk, then with an index, then in the watched view.
for words in wave units.metric.convert legacy private/helper '--from name' \
  '-i indexed.json wave' '-i indexed.json --from name' batch '-i indexed.json batch'; do
  read -ra command <<<"$program $words"
  "${command[@]}" <name >"$top/expected"
  faults "${command[@]}" >"$top/faults"
  for half in 0 1; do
    awk "NR % 2 == $half" "$top/faults" | while read -r call k fault; do
      try "$call" "$k" "$fault"
    done >"$top/results.$half" &
  done
  wait
  echo "$words: $(wc -l <"$top/faults") faults: $(cut -d: -f1 "$top"/results.? | sort | uniq -c | xargs)"
  cat "$top"/results.? >>"$top/results"
  cat "$top/faults" >>"$top/tried"
done
if [ "$(grep -cxE 'whole|killed|error' "$top/results")" -ne "$(wc -l <"$top/tried")" ] ||
  [ "$(sort -u "$top/results" | wc -l)" -ne 3 ]; then
  grep '^wrong' "$top/results" >&2 || echo "lookup.sh: some fault was never met" >&2
  exit 1
fi
