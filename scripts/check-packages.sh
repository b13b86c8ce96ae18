#!/usr/bin/env bash
# Makes the Debian packages and tries them on a clean root: installs, runs the program, builds and runs a consumer.
# Needs root (for the clean root's chroot) and the network. Usage: scripts/check-packages.sh
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."

[ "$(id -u)" -eq 0 ] || { echo "check-packages.sh: a clean root needs root" >&2; exit 2; }
scripts/package.sh
scripts/setup.sh gates

root=$(mktemp -d)
# Nothing may be mounted below what is removed.
trap 'umount "$root/proc" 2>/dev/null || true; mountpoint -q "$root/proc" || rm -rf --one-file-system "$root"' EXIT
echo "== a clean Debian 12 in $root"
debootstrap --variant=minbase bookworm "$root" >"$root.log" 2>&1 || { cat "$root.log" >&2; rm -f "$root.log"; exit 1; }
rm -f "$root.log"
# As this machine reaches its packages, so does the clean root.
rm -rf "$root"/etc/apt/sources.list*
cp -rL /etc/apt/. "$root/etc/apt/"
cp -L /etc/resolv.conf "$root/etc/resolv.conf"
mkdir "$root/packages"
cp build/package/*.deb "$root/packages/"
cp -r examples "$root/packages/"
mount -t proc proc "$root/proc"

chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 bash -euc '
  quiet() { "$@" >/tmp/log 2>&1 || { cat /tmp/log >&2; exit 1; }; }
  cd /packages
  quiet apt-get update -q

  echo "== the program alone"
  quiet apt-get install -qy --no-install-recommends ./kelwhich_*.deb
  cp -r /usr/share/doc/kelwhich/examples/installation /tmp/world
  kelwhich store build -i /tmp/world /tmp/world/support.jsonl
  kelwhich -i /tmp/world sum legacy

  echo "== the library, and a consumer of it"
  quiet apt-get install -qy --no-install-recommends ./libkelwhich0_*.deb ./libkelwhich-dev_*.deb g++ pkgconf
  g++ -std=c++20 examples/embedding/load_gateway.cpp -o /tmp/load_gateway $(pkg-config --cflags --libs kelwhich-standalone)
  /tmp/load_gateway libkelwhich.so.0 /tmp/world legacy | tee /tmp/answer
  [ "$(head -n 1 /tmp/answer)" = "KELPath /tmp/world/host/kel/modern.vk" ]
'
echo "== the packages work on a clean root"
