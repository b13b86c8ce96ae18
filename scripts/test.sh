#!/usr/bin/env bash
# Sets everything up, builds, and runs all tests. Usage: scripts/test.sh [PRESET]
# PRESET is dev (the default), clang, asan (clang too, with its address and undefined-behaviour sanitizers) or tsan.
# Can be run again at once: only what changed is built anew.
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."
preset=${1:-dev}
mkdir -p build
exec 9>"build/.$preset.lock" # one run at a time in one folder
flock 9

if [ "$preset" = clang ] || [ "$preset" = asan ]; then scripts/setup.sh gates; else scripts/setup.sh test; fi
echo "== building into build/$preset"
scripts/configure.sh "$preset"
cmake --build --preset "$preset" -- --quiet
echo "== testing build/$preset"
ctest --preset "$preset" -j "$(nproc)"
