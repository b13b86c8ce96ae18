#!/usr/bin/env bash
# Sets everything up, builds, and runs all tests. Usage: scripts/test.sh [PRESET]
# PRESET is dev (the default), clang, asan (clang too, with its address and undefined-behaviour sanitizers), tsan, or
# nightly (as dev, with all that takes long).
# Running it again is quick: it builds only what changed.
. "$(dirname "$0")/lib.sh"
preset=${1:-dev}
if [ "$preset" = clang ] || [ "$preset" = asan ]; then scripts/setup.sh gates; else scripts/setup.sh test; fi
echo "== building into build/$preset"
build "$preset"
echo "== testing build/$preset"
ctest --preset "$preset" -j "$(nproc)"
