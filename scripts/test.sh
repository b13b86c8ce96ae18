#!/usr/bin/env bash
# Sets everything up, builds, and runs all tests. Usage: scripts/test.sh [PRESET]
# PRESET is test (the default), dev (the same, built file by file: slower at first, quicker after each change), clang,
# asan (clang too, with its address and undefined-behaviour sanitizers), tsan, or nightly (with all that takes long).
# Running it again is quick: it builds only what changed.
. "$(dirname "$0")/lib.sh"
preset=${1:-test}
if [ "$preset" = clang ] || [ "$preset" = asan ]; then scripts/setup.sh gates; else scripts/setup.sh test; fi
echo "== building into build/$preset"
build "$preset"
echo "== testing build/$preset"
ctest --preset "$preset" -j "$(($(nproc) + 2))" # some only wait for the system
