# What the fault tests share: a command under strace, with one of its system calls failing or being its last.
# shellcheck shell=bash

# Skips the test (exit code 77) where one process may not trace another.
require_tracing() {
  strace -qq -o /dev/null true 2>/dev/null || { echo "skipped: strace is missing or may not trace here"; exit 77; }
}

# `faults COMMAND...`: a line CALL K FAULT for each fault to try: the K-th of each kind of system call that the command
# makes on paths and descriptors, failing with each error and killing the program. The C library's other calls are left
# out: those at the start and those that the system never fails (futex) end any program.
faults() {
  local trace call count k fault
  trace=$(mktemp)
  strace -qq -f -e trace=%file,%desc -o "$trace" -- "$@" >/dev/null 2>&1
  sed -nE 's/^[0-9]+ +([a-z0-9_]+)\(.*/\1/p' "$trace" | grep -v '^execve$' | sort | uniq -c |
    while read -r count call; do
      for ((k = 1; k <= count; k++)); do
        for fault in error=EIO error=EACCES error=ENOMEM error=EMFILE signal=KILL; do echo "$call $k $fault"; done
      done
    done
  rm "$trace"
}

# `under_fault CALL K FAULT COMMAND...`: runs the command under that fault. Its exit code is that of the command, 137
# when it was killed.
under_fault() {
  strace -qq -f -o /dev/null -e trace="$1" -e inject="$1:$3:when=$2" -- "${@:4}"
}
