#!/usr/bin/env bash
# Fails when a C++ file is not as clang-format would write it.
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."
git ls-files -z '*.cpp' '*.hpp' | xargs -0 clang-format --dry-run --Werror
