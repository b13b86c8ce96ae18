#!/usr/bin/env bash
# Fails on any finding of clang-tidy in our own code, with the settings of .clang-tidy.
# Usage: check-tidy.sh [--quick] [PATTERN]    --quick leaves out the analyzer and the tests
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."
checks=()
pattern=.*
if [ "${1-}" = --quick ]; then
  checks=(-checks='-clang-analyzer-*')
  pattern='^(?!.*/tests/)'
  shift
fi
scripts/configure.sh clang
cmake --build --preset clang --target kelwhich -- --quiet # the generated header
run-clang-tidy -quiet -p build/clang -j "$(nproc)" "${checks[@]}" "${1:-$pattern}" >build/clang/tidy.log 2>&1 || {
  grep -E 'warning:|error:' build/clang/tidy.log | sort -u
  exit 1
}
