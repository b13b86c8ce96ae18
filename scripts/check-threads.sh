#!/usr/bin/env bash
# Runs what asks from many threads under the thread sanitizer, and sees that it reports a planted race.
# `scripts/test.sh tsan` runs all tests so. Usage: scripts/check-threads.sh
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."
scripts/setup.sh test
mkdir -p build
exec 9>build/.tsan.lock # one run at a time in one folder, as for scripts/test.sh
flock 9
scripts/configure.sh tsan
cmake --build --preset tsan --target library_tests standalone_tests -- --quiet
ctest --preset tsan -R '^(Threads|HostSweep|Session|threads)\.'
