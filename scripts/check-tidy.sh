#!/usr/bin/env bash
# Fails on any finding of clang-tidy in our own code, with the settings of .clang-tidy.
# Usage: check-tidy.sh [--quick] [PATTERN]
# --quick leaves out the analyzer, the tests, and sources that did not change in the last 30 commits or since; for a header
# that did, one source that includes it is checked. Where the history is shorter, all sources are. PATTERN selects sources
# by their path.
. "$(dirname "$0")/lib.sh"
scripts/setup.sh gates
lock clang
scripts/configure.sh clang
cmake build/clang >/dev/null # the list of sources may have changed since
commands=build/clang
checks=()
pattern='.*'
if [ "${1-}" = --quick ]; then
  shift
  checks=(-checks='-clang-analyzer-*')
  pattern='^(?!.*/tests/)'
  commands=build/clang/changed
  mkdir -p $commands
  scripts/changed_sources.py build/clang/compile_commands.json 30 >$commands/compile_commands.json
fi
run-clang-tidy -quiet -p $commands -j "$(nproc)" "${checks[@]}" "${1:-$pattern}" >build/clang/tidy.log 2>&1 || {
  grep -E 'warning:|error:' build/clang/tidy.log | sort -u
  exit 1
}
