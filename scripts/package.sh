#!/usr/bin/env bash
# Makes the Debian packages libkelwhich0, libkelwhich-dev and kelwhich in build/package. Usage: scripts/package.sh
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."

umask 022 # the permissions that the packages will have
scripts/setup.sh package
echo "== building into build/package"
# The prefix of packages; it is written into kelwhich.pc.
cmake --fresh --preset release -B build/package -DCMAKE_INSTALL_PREFIX=/usr >/dev/null
cmake --build build/package -- --quiet
rm -f build/package/*.deb
(cd build/package && cpack -G DEB >cpack.log) || {
  cat build/package/cpack.log >&2
  exit 1
}
for package in build/package/*.deb; do
  echo "$package"
done
