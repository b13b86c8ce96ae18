#!/usr/bin/env bash
# Kills `store build` before each of its system calls, has each of them fail, fills the disk, and runs builds side by
# side. After each, the store must be the old one or the new one to the last byte, a failure must have been told, and the
# next build must succeed and leave nothing but the store. Usage: store-build.sh PROGRAM [EVERY]
# EVERY: of the kills and failures only each EVERY-th is tried.
# Exits with 77 where processes cannot be traced.
set -euo pipefail

program=$(realpath "$1")
here=$(realpath "${BASH_SOURCE[0]%/*}")
top=$(realpath "$(mktemp -d)")
trap 'rm -rf "$top"' EXIT
cd "$top"
unset KELWHICH_INSTALLATION
export LC_ALL=C.UTF-8
if ! strace -o trace true 2>/dev/null; then
  echo "SKIPPED: strace is not installed, or must not trace here"
  exit 77
fi

# Large enough for several writes.
"$here/../../benchmarks/world.py" records 1500 >old.jsonl
"$here/../../benchmarks/world.py" records 1600 >new.jsonl
world() { # world FOLDER: makes an installation with the old store
  mkdir -p "$1/root" "$1/store"
  echo '{"root": "'"$top"'", "supportStore": "store/support.cdb"}' >"$1/installation.json"
  [ ! -f old.cdb ] || cp old.cdb "$1/store/support.cdb"
}
build() { "$program" -i "$1" store build "$2.jsonl"; } # build FOLDER old|new
world first
for name in old new; do
  build first $name >/dev/null
  cp first/store/support.cdb $name.cdb
done

fail() {
  echo "FAILED: $1"
  exit 1
}
# One of the two stores, whole; prints which.
which_store() {
  "$program" store verify "$1/store/support.cdb" >/dev/null || fail "$2: store verify finds damage"
  if cmp -s "$1/store/support.cdb" old.cdb; then echo old; else
    cmp "$1/store/support.cdb" new.cdb >&2 || fail "$2: neither the old store nor the new one"
    echo new
  fi
}
# The next build succeeds and leaves nothing but the store.
recovers() {
  build "$1" old >"$1/out" 2>&1 || fail "$2: the next build fails: $(cat "$1/out")"
  cmp "$1/store/support.cdb" old.cdb || fail "$2: the next build writes something else"
  [ "$(ls -A "$1/store")" = support.cdb ] || fail "$2: the next build leaves $(ls -A "$1/store" | tr '\n' ' ')"
}

# try FOLDER CALL NUMBER HOW: a build whose NUMBERth CALL is killed or fails.
try() {
  local world=$1 case="$4 at $2 $3" status=0 store
  # The shell would tell of each death.
  { strace -qq -o "$world/trace" -e "trace=$2" -e "inject=$2:$4:when=$3" "$program" -i "$world" store build new.jsonl \
    >"$world/out" 2>"$world/err" || status=$?; } 2>/dev/null
  store=$(which_store "$world" "$case")
  if [ "$4" = signal=KILL ]; then
    [ "$status" = 137 ] || fail "$case: not killed but $status"
    [ "$(ls -A "$world/store")" = support.cdb ] || echo "$case" >>"$world/leftovers"
  elif [ "$status" = 0 ]; then
    [ "$store" = new ] || fail "$case: succeeds with the old store"
    [[ $case != error=EIO\ at\ @(pwrite64*|rename*|fsync 1) ]] || fail "$case: not noticed"
  else
    [ "$status" -lt 128 ] || fail "$case: dies with $status"
    [ -s "$world/err" ] || fail "$case: fails without a word"
    echo "$case" >>"$world/failures"
  fi
  echo "$store" >>"$world/stores"
  recovers "$world" "$case"
}

# What to try: each call that a build makes, each time that it makes it.
world count
strace -qq -o trace "$program" -i count store build new.jsonl >/dev/null
awk '
  match($0, /^[a-z_0-9]+\(/) {
    call = substr($0, 1, RLENGTH - 1)
    if (call == "execve") next # starts it; there is nothing before
    number = ++count[call]
    print call, number, "signal=KILL"
    if (call == "rt_sigaction") begun = 1 # before, the C library is only starting
    if (!begun || call ~ /^(exit_group|rt_sigaction|brk)$/) next # these have no errors
    errors = call ~ /^m(map|protect)$/ ? "ENOMEM" : "EIO ENOSPC EINTR"
    n = split(errors, error, " ")
    for (i = 1; i <= n; ++i) print call, number, "error=" error[i]
  }' trace >cases
grep -q 'rename 1 signal=KILL' cases || fail "a build is not traced"
awk -v every="${2:-1}" 'NR % every == 0' cases >sample
mv sample cases

workers=()
for worker in 0 1; do
  world "world$worker"
  (awk -v w=$worker 'NR % 2 == w' cases | while read -r call number how; do try "world$worker" "$call" "$number" "$how"; done) &
  workers+=($!)
done
status=0
for worker in "${workers[@]}"; do wait "$worker" || status=1; done
[ "$status" = 0 ] || exit 1

# The disk is full: a small one of our own where we may mount it, else a limit on the file's size.
full() { # full SAYS: in first/, a build that does not fit
  local status=0
  build first new >out 2>err || status=$?
  if [ "$status" != 2 ] || ! grep -q "$1" err; then fail "full disk: exit code $status, $(cat err)"; fi
  if [ "$(ls -A first/store)" != support.cdb ] || ! cmp first/store/support.cdb small.cdb; then
    fail "full disk: the old store is not as it was"
  fi
}
world first
head -n 100 old.jsonl >small.jsonl
build first small >/dev/null
cp first/store/support.cdb small.cdb
export -f full build fail
export program
if unshare -rm mount -t tmpfs none "$top/first/store" 2>/dev/null; then
  disk=tmpfs
  unshare -rm bash -c 'mount -t tmpfs -o size=300k none first/store && cp small.cdb first/store/support.cdb &&
    full "the disk is full"'
else
  disk=limit
  (ulimit -f 200 && full "ulimit -f")
fi

# Builds side by side: each ends well, and the last one to end decides.
for round in 1 2 3 4 5 6 7 8; do
  builds=()
  for name in old new old new; do
    build first $name >/dev/null &
    builds+=($!)
  done
  for one in "${builds[@]}"; do wait "$one" || fail "builds side by side: one fails in round $round"; done
  which_store first "builds side by side" >/dev/null
  [ "$(ls -A first/store)" = support.cdb ] || fail "builds side by side leave $(ls -A first/store)"
done
# One that takes long is not taken for a leftover.
mkfifo lines
"$program" -i first store build - <lines >/dev/null &
long=$!
exec 8>lines
while [ "$(ls -A first/store | wc -l)" = 1 ]; do sleep 0.01; done
build first old >/dev/null
cat new.jsonl >&8
exec 8>&-
wait "$long" || fail "a long build, while another one ends, fails"
cmp first/store/support.cdb new.cdb || fail "a long build writes something else"
recovers first "a long build"

count() { cat world?/"$1" | wc -l; }
kills=$(grep -c KILL cases)
echo "$kills kills ($(count leftovers) left a file behind), $(grep -c error= cases) errors ($(count failures) told," \
  "the others made no difference), $(grep -c new world?/stores | awk -F: '{s += $2} END {print s}') ended with the new store;" \
  "1 full disk ($disk); 33 builds side by side"
