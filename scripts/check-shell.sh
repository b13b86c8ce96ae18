#!/usr/bin/env bash
# Fails on any finding of shellcheck in our scripts; .shellcheckrc says what is left out.
. "$(dirname "$0")/lib.sh"
scripts/setup.sh gates
git ls-files -z '*.sh' .ci/run | xargs -0 shellcheck --external-sources
