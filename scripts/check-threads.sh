#!/usr/bin/env bash
# Runs the tests that have threads under the thread sanitizer, and sees that it reports a planted race.
# `scripts/test.sh tsan` runs all tests so. Usage: scripts/check-threads.sh
. "$(dirname "$0")/lib.sh"
scripts/setup.sh test
build tsan library_thread_tests host_thread_tests
tests=build/tsan/tests
$tests/library_thread_tests --gtest_brief=1
$tests/host_thread_tests --gtest_brief=1
if $tests/library_thread_tests --gtest_also_run_disabled_tests --gtest_filter=Threads.DISABLED_PlantedRace \
  >build/tsan/planted.log 2>&1 || ! grep -q 'WARNING: ThreadSanitizer: data race' build/tsan/planted.log; then
  echo "check-threads.sh: the sanitizer does not report the planted race:" >&2
  cat build/tsan/planted.log >&2
  exit 1
fi
