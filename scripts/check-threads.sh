#!/usr/bin/env bash
# Runs what asks from many threads under the thread sanitizer, and sees that it reports a planted race.
# `scripts/test.sh tsan` runs all tests so. Usage: scripts/check-threads.sh
. "$(dirname "$0")/lib.sh"
scripts/setup.sh test
build tsan library_tests standalone_tests
ctest --preset tsan -R '^(Threads|HostSweep|Session|threads)\.'
