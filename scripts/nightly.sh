#!/usr/bin/env bash
# What takes hours: every mutant, an hour of fuzzing, clang-tidy with its analyzer and tests, the tests as they are and
# under the thread sanitizer.
# Ends with `N passed, N failed`.
set -uo pipefail
unset CDPATH
cd "$(dirname "$0")/.."

passed=0
failed=0
step() {
  local name=$1
  shift
  echo "=== $name"
  if "$@"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "=== $name: FAILED"
  fi
}

step "set-up" scripts/setup.sh gates
step "every mutant of the library" scripts/mutate.py
step "an hour of fuzzing" scripts/fuzz.sh 720 # for each of five targets
step "clang-tidy, with its analyzer and tests" scripts/check-tidy.sh
step "the tests" scripts/test.sh
step "the tests with the thread sanitizer" scripts/test.sh tsan
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
