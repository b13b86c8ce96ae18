#!/usr/bin/env bash
# What takes hours: every mutant, an hour of fuzzing, clang-tidy with its analyzer and tests, the tests as they are and
# under the thread sanitizer.
# Ends with `N passed, N failed`.
set -uo pipefail
unset CDPATH
cd "$(dirname "$0")/.."

. scripts/gates.sh

gate "set-up" scripts/setup.sh gates
gate "every mutant of the library" scripts/mutate.py
gate "an hour of fuzzing" scripts/fuzz.sh 720 # for each of five targets
gate "clang-tidy, with its analyzer and tests" scripts/check-tidy.sh
gate "the tests" scripts/test.sh
gate "the tests with the thread sanitizer" scripts/test.sh tsan
tell_gates
