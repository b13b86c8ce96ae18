#!/usr/bin/env bash
# Fails on any finding of clang-tidy in our own code, with the settings of .clang-tidy.
# Usage: check-tidy.sh [--quick] [PATTERN]    --quick leaves the analyzer out, which takes half of the time
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."
checks=()
if [ "${1-}" = --quick ]; then
  checks=(-checks='-clang-analyzer-*')
  shift
fi
scripts/configure.sh clang
cmake --build --preset clang --target kelwhich -- --quiet # the generated header
run-clang-tidy -quiet -p build/clang -j "$(nproc)" "${checks[@]}" "${1:-.*}" >build/clang/tidy.log 2>&1 || {
  grep -E 'warning:|error:' build/clang/tidy.log | sort -u
  exit 1
}
