#!/usr/bin/env bash
# Kills `store build` before each of its system calls, has each of them fail, and runs two side by side. After each,
# the store must be the old one or the new one to the last byte, a failure must have been reported, and the next build
# must succeed and leave nothing but the store. Usage: store-build.sh PROGRAM [EVERY]
# EVERY: of the kills and failures only each EVERY-th is tried.
# Exits with 77 where processes cannot be traced.
set -euo pipefail
strace -qq -o /dev/null true 2>/dev/null || { echo "skipped: strace is missing or may not trace here"; exit 77; }

program=$(realpath "$1")
records=$(realpath "${BASH_SOURCE[0]%/*}/../../benchmarks/world.py")
top=$(realpath "$(mktemp -d)")
trap 'rm -rf "$top"' EXIT
cd "$top"
unset KELWHICH_INSTALLATION
export LC_ALL=C.UTF-8

# Large enough for several writes.
"$records" records 1500 >old.jsonl
"$records" records 1600 >new.jsonl
world() { # world FOLDER: makes an installation with the old store
  mkdir -p "$1/store"
  echo '{"root": "'"$top"'", "supportStore": "store/support.cdb"}' >"$1/installation.json"
  [ ! -f old.cdb ] || cp old.cdb "$1/store/support.cdb"
}
build() { "$program" -i "$1" store build "$2"; } # build FOLDER RECORDS
world first
for name in old new; do
  build first $name.jsonl >/dev/null
  cp first/store/support.cdb $name.cdb
done

fail() {
  echo "FAILED: $1"
  exit 1
}
# Prints which of the two stores it is, whole.
which_store() {
  "$program" store verify "$1/store/support.cdb" >/dev/null || fail "$2: store verify finds damage"
  if cmp -s "$1/store/support.cdb" old.cdb; then echo old; else
    cmp "$1/store/support.cdb" new.cdb >&2 || fail "$2: neither the old store nor the new one"
    echo new
  fi
}
# The next build succeeds and leaves nothing but the store.
recovers() {
  build "$1" old.jsonl >"$1/out" 2>&1 || fail "$2: the next build fails: $(cat "$1/out")"
  cmp "$1/store/support.cdb" old.cdb || fail "$2: the next build writes something else"
  [ "$(ls -A "$1/store")" = support.cdb ] || fail "$2: the next build leaves $(ls -A "$1/store" | tr '\n' ' ')"
}

# try FOLDER CALL NUMBER HOW: a build whose NUMBERth CALL is killed or fails.
try() {
  local world=$1 case="$4 at $2 $3" status=0 store
  # The shell would report each death.
  { strace -qq -o /dev/null -e "trace=$2" -e "inject=$2:$4:when=$3" "$program" -i "$world" store build new.jsonl \
    >"$world/out" 2>"$world/err" || status=$?; } 2>/dev/null
  store=$(which_store "$world" "$case")
  if [ "$4" = signal=KILL ]; then
    [ "$status" = 137 ] || fail "$case: not killed but $status"
  elif [ "$status" = 0 ]; then
    [ "$store" = new ] || fail "$case: succeeds with the old store"
    [[ $case != error=E@(IO|NOSPC)\ at\ @(pwrite64*|rename*|fsync 1) ]] || fail "$case: not noticed"
  else
    [ "$status" -lt 128 ] || fail "$case: dies with $status"
    [ -s "$world/err" ] || fail "$case: fails without a word"
    [[ $case != error=ENOSPC\ at\ pwrite64* ]] || grep -q 'is as it was: .*; the disk is full' "$world/err" ||
      fail "$case: says $(cat "$world/err")"
  fi
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
    n = split(call ~ /^m(map|protect)$/ ? "ENOMEM" : "EIO ENOSPC EINTR", error, " ")
    for (i = 1; i <= n; ++i) print call, number, "error=" error[i]
  }' trace >cases
grep -q 'rename 1 signal=KILL' cases || fail "a build is not traced"
grep -q 'flock(.*LOCK_NB' trace || fail "a build locks nothing"
! grep -q 'flock(.*LOCK_EX)' trace || fail "a build waits for a lock, which may be another user's"
awk -v every="${2:-1}" 'NR % every == 0' cases >sample
workers=()
for worker in 0 1; do
  world "world$worker"
  (awk -v w=$worker 'NR % 2 == w' sample | while read -r case; do
    # shellcheck disable=SC2086 # three words
    try "world$worker" $case
  done) &
  workers+=($!)
done
for worker in "${workers[@]}"; do wait "$worker" || status=1; done
[ -z "${status-}" ] || exit 1

# A build while another one takes long, which is not taken for a leftover: a pipe takes less than these bytes, so that one
# has begun when they are written.
world first
mkfifo lines
build first - <lines >/dev/null &
exec 8>lines
head -c 150000 new.jsonl >&8
[ "$(ls -A first/store | wc -l)" = 2 ] || fail "a long build has no file of its own"
build first old.jsonl >/dev/null
tail -c +150001 new.jsonl >&8
exec 8>&-
wait $! || fail "a long build, while another one ends, fails"
cmp first/store/support.cdb new.cdb || fail "a long build writes something else"
recovers first "a long build"

# A build whose new file another process locks first goes on with another one.
strace -qq -o /dev/null -e trace=flock -e inject=flock:error=EAGAIN:when=1 "$program" -i first store build new.jsonl \
  >/dev/null || fail "a build whose file is locked fails"
cmp first/store/support.cdb new.cdb || fail "a build whose file is locked writes something else"
[ "$(ls -A first/store)" = support.cdb ] || fail "a build whose file is locked leaves $(ls -A first/store)"

echo "$(grep -c KILL sample) kills, $(grep -c error= sample) errors"
