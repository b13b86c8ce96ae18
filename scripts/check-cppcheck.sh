#!/usr/bin/env bash
# Fails on any finding of cppcheck in our own code, except the tests, whose macros it cannot read. Its style rules are
# left out: they only suggest algorithms in place of loops.
. "$(dirname "$0")/lib.sh"
scripts/setup.sh gates
cppcheck --quiet -j "$(nproc)" --std=c++20 --language=c++ --enable=warning,performance,portability --error-exitcode=1 \
  --suppressions-list=scripts/cppcheck.suppressions --template='{file}:{line}: {message} [{id}]' \
  -DKELWHICH_EXPORT= -DKELWHICH_NO_EXPORT= -I . -I include -I platform/include \
  adaptors analysis cli entry examples fuzz host platform resolver standalone
