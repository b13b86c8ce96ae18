#!/usr/bin/env bash
# Fails when a C++ file is not as clang-format would write it.
. "$(dirname "$0")/lib.sh"
scripts/setup.sh gates
git ls-files -z '*.cpp' '*.hpp' | xargs -0 clang-format --dry-run --Werror
