#!/usr/bin/env bash
# What takes too long for each change, with what .ci/run does of it. Ends with `N passed, N failed`.
#   every mutant            each is compiled, linked and tested: half an hour for the library. Those of analysis/, of the
#                           stand-alone host and of the program are sampled, since the program's sessions, which take
#                           half a minute, test these. .ci/run tries none.
#   fuzzing                 finds more the longer it runs: two minutes a target here, ten seconds in .ci/run.
#   clang-tidy              the analyzer, the tests and each source by itself take most of its time; .ci/run looks at the
#                           rooms of the library, the stand-alone host and the program as units, without the analyzer.
#   the preset nightly      500,000 random worlds instead of 50,000, every fault of a system call instead of a sample, and
#                           every header compiled alone: each repeats what a part of it shows, over more cases.
#   the changing disk       100,000 random changes of an installation between questions, and as many beside them: .ci/run
#                           makes some hundred.
#   the thread sanitizer    .ci/run runs only the tests that have threads.
#   a clean root            debootstrap downloads a whole Debian; .ci/run unpacks the packages and builds a consumer.
#   reports                 Chromium and a validator from npm; .ci/run checks the formats by what it has itself.
#   editors                 Neovim, Emacs, Kate, a library from npm, and 100,000 requests; .ci/run talks to the server by a
#                           script of its own.
. "$(dirname "$0")/lib.sh"
. scripts/gates.sh

gate "set-up" scripts/setup.sh gates
gate "the tests in full" scripts/test.sh nightly
gate "answers while the disk changes" tests/faults/watch.py build/nightly/cli/kelwhich --changes 100000
gate "the tests with the thread sanitizer" scripts/test.sh tsan
gate "clang-tidy, with its analyzer and tests" scripts/check-tidy.sh
gate "coverage of the stand-alone host and the program" scripts/coverage.sh standalone cli
gate "packages on a clean root" scripts/check-packages.sh --clean-root
gate "reports, by the programs that they are for" scripts/check-reports.sh
gate "the server, by editors" scripts/check-editors.sh
gate "fuzzing" scripts/fuzz.sh 120
gate "every mutant of the library" scripts/mutate.py
gate "mutants of the other rooms" scripts/mutate.py --sample 50 analysis standalone cli

finish_gates
