#!/usr/bin/env bash
# Makes the Debian packages and tries them on a clean root: installs, runs the program, builds and runs a consumer.
# Needs root (for the clean root's chroot) and the network. Usage: scripts/check-packages.sh
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."

[ "$(id -u)" -eq 0 ] || { echo "check-packages.sh: a clean root needs root" >&2; exit 2; }
umask 022
scripts/setup.sh gates
scripts/package.sh

top=$(mktemp -d -p "${TMPDIR:-/var/tmp}")
root=$top/root
# A debootstrap that was killed may leave these mounted; nothing may be mounted below what is removed.
trap 'umount -q "$root/proc" "$root/sys" || true; rm -rf --one-file-system "$top"' EXIT
echo "== a clean Debian 12 in $root"
debootstrap --variant=minbase bookworm "$root" "${KELWHICH_MIRROR:-http://deb.debian.org/debian}" >"$top/log" 2>&1 || {
  cat "$top/log" >&2
  exit 1
}
# Only how this machine's apt reaches its packages (proxies, certificates), not what else it is told to do.
apt-config dump | grep '^Acquire::' >"$root/etc/apt/apt.conf.d/90acquire" || true
cp -L /etc/resolv.conf "$root/etc/resolv.conf"
mkdir "$root/packages"
cp build/package/*.deb "$root/packages/"
cp -r examples "$root/packages/"

proxies=()
for name in http_proxy https_proxy no_proxy; do
  [ -z "${!name:-}" ] || proxies+=("$name=${!name}")
done
chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 \
  "${proxies[@]}" bash -euo pipefail -c '
  quiet() { "$@" >/tmp/log 2>&1 || { cat /tmp/log >&2; exit 1; }; }
  cd /packages
  quiet apt-get update -q

  echo "== the program alone"
  quiet apt-get install -qy --no-install-recommends ./kelwhich_*.deb
  cp -r /usr/share/doc/kelwhich/examples/installation /tmp/world
  kelwhich store build -i /tmp/world /tmp/world/support.jsonl
  kelwhich -i /tmp/world sum legacy | tee /tmp/answer
  grep -q "^  1  KEL built-in  *supported  sum$" /tmp/answer

  ls -l /usr/share/man/man1/kelwhich.1 /usr/share/zsh/vendor-completions/_kelwhich \
    /usr/share/fish/vendor_completions.d/kelwhich.fish /usr/share/kelwhich/*.schema.json
  (source /usr/share/bash-completion/completions/kelwhich && complete -p kelwhich)

  echo "== the library, and a consumer of it"
  quiet apt-get install -qy --no-install-recommends ./libkelwhich0_*.deb ./libkelwhich-dev_*.deb g++ pkgconf
  flags="$(pkg-config --cflags --libs kelwhich kelwhich-standalone)"
  g++ -std=c++20 examples/embedding/own_resolver.cpp -o /tmp/own_resolver $flags
  /tmp/own_resolver /tmp/world /tmp/world/packages/kel/encode.vk encode | tee /tmp/answer
  [ "$(cat /tmp/answer)" = "0 /tmp/world/packages/kel/encode.vk" ]
  g++ -std=c++20 examples/embedding/load_gateway.cpp -o /tmp/load_gateway $(pkg-config --cflags --libs kelwhich-standalone)
  /tmp/load_gateway libkelwhich.so.0 /tmp/world legacy | tee /tmp/answer
  [ "$(head -n 1 /tmp/answer)" = "KELPath /tmp/world/host/kel/modern.vk" ]
'
echo "== the packages work on a clean root"
