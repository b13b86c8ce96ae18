#!/usr/bin/env bash
# Configures build/PRESET unless it is configured already. Deletes it first when it was configured for another path, as
# in a clone that was moved or copied. Usage: scripts/configure.sh PRESET
. "$(dirname "$0")/lib.sh"

cache=build/$1/CMakeCache.txt
home=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$cache" 2>/dev/null || true)
if [ -f "build/$1/build.ninja" ] && [ "$home" = "$(pwd -P)" ]; then
  exit 0
fi
rm -rf "build/$1"
cmake --preset "$1" >/dev/null
