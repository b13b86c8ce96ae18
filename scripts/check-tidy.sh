#!/usr/bin/env bash
# Fails on any finding of clang-tidy in our own code, with the settings of .clang-tidy.
# Usage: check-tidy.sh --quick | [PATTERN]
# --quick looks at the library, the stand-alone host and the program, each room as one unit, without the analyzer, in a
# fraction of the time. Not all checks look into a unit (unused using-declarations, for example). PATTERN selects sources
# by their path.
. "$(dirname "$0")/lib.sh"
scripts/setup.sh gates
preset=clang
options=()
if [ "${1-}" = --quick ]; then
  preset=asan # with clang, and rooms as units
  options=(-checks='-clang-analyzer-*,-bugprone-suspicious-include')
  root=$(sed 's/[^[:alnum:]_/]/\\&/g' <<<"$PWD")
  set -- "^$root/(build/asan/)?(?!build|tests|fuzz|benchmarks)"
fi
lock $preset
scripts/configure.sh $preset
cmake build/$preset >/dev/null # the list of sources may have changed since
run-clang-tidy -quiet -p build/$preset -j "$(nproc)" "${options[@]}" "${1:-.*}" >build/$preset/tidy.log 2>&1 || {
  grep -E 'warning:|error:' build/$preset/tidy.log | sort -u
  exit 1
}
