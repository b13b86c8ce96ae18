# For .ci/run and nightly.sh, which read this file: runs gates one after the other, whatever becomes of each.
# shellcheck shell=bash
passed=0
failed=0

# The seconds of processor time that all commands of this shell have taken so far.
processor_seconds() {
  local stat
  read -ra stat </proc/$$/stat
  echo $(((stat[15] + stat[16]) / $(getconf CLK_TCK)))
}

# gate NAME COMMAND...
gate() {
  local name=$1 result=FAILED begin=$SECONDS processor
  shift
  processor=$(processor_seconds)
  echo "=== $name"
  if "$@"; then
    passed=$((passed + 1))
    result=passed
  else
    failed=$((failed + 1))
  fi
  echo "=== $name: $result ($((SECONDS - begin)) s, $(($(processor_seconds) - processor)) s of processor time)"
}

# Prints the line at the end; fails unless all passed.
finish_gates() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}
