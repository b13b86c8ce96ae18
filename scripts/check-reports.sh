#!/usr/bin/env bash
# Shows reports to the programs that they are for: SARIF to its validator, HTML to Chromium and axe-core. JUnit, GitLab
# and GitHub have their formats checked by the test program.reports.
# Usage: scripts/check-reports.sh [PICTURES]
# PICTURES is a folder for screenshots. Needs the network: the clients come from npm, into build/npm.
. "$(dirname "$0")/lib.sh"
pictures=${1+$(realpath "$1")}
scripts/setup.sh browser
lock npm
npm install --prefix build/npm --no-save --no-audit --no-fund --loglevel=error \
  puppeteer-core@24.43.1 axe-core@4.14.1 @microsoft/sarif-multitool@5.7.0
build release kelwhich_program
kelwhich=$PWD/build/release/cli/kelwhich
here=$PWD
top=$(mktemp -d)
trap 'rm -rf "$top"' EXIT

# reports FOLDER: writes both reports of its installation.
reports() {
  cd "$1" || exit
  "$kelwhich" store build support.jsonl >/dev/null
  for command in check doctor; do # 1: something is found; 3: a name that is not UTF-8 is skipped
    "$kelwhich" $command --report html=$command.html --report sarif=$command.sarif >/dev/null 2>&1 || [[ $? == [13] ]]
  done
  cd "$here" || exit
}

# The example, with names that are meant to break a format.
cp -r examples/installation "$top/small"
rm -f "$top/small/support.cdb"
tests/program/reports.py make "$top/small/mine"
for file in "$top"/small/mine/*.VK; do cp "$file" "${file%.VK}.vk"; done
reports "$top/small"

# 10,000 names in 20 folders, every fifth in two of them.
mkdir -p "$top/large/host"
cd "$top/large" || exit
for folder in {00..19}; do mkdir "folder$folder"; done
awk 'BEGIN { for (i = 0; i < 10000; ++i) { printf "folder%02d/name_%04d.vk\n", i % 20, i
                                           if (i % 5 == 0) printf "folder%02d/name_%04d.vk\n", (i + 7) % 20, i } }' | xargs touch
printf '{"root": "host", "supportStore": "support.cdb", "searchPath": [%s]}\n' \
  "$(printf '"../folder%02d", ' {0..19} | sed 's/, $//')" >installation.json
: >support.jsonl
cd "$here" || exit
reports "$top/large"

echo "== SARIF, by @microsoft/sarif-multitool"
# It exits with 0 whatever it finds. It wants one thing that there is not: an address of the project (SARIF2005).
validator=build/npm/node_modules/@microsoft/sarif-multitool-linux/Sarif.Multitool
chmod u+x "$validator"
for report in "$top"/{small,large}/{check,doctor}.sarif; do
  DOTNET_SYSTEM_GLOBALIZATION_INVARIANT=1 "$validator" validate "$report" >"$top/log"
  grep -q 'warning SARIF2005' "$top/log" || { cat "$top/log"; echo "check-reports.sh: $report was not read" >&2; exit 1; }
  if grep -E '(error|warning) [A-Z]' "$top/log" | grep -v SARIF2005; then exit 1; fi
  echo "ok: ${report#"$top"/}"
done

echo "== HTML, in $(chromium --version 2>/dev/null)"
tests/program/reports.py check html="$top/large/check.html" html="$top/small/check.html"
[ -z "$pictures" ] || mkdir -p "$pictures"
node scripts/check_html.mjs build/npm/node_modules "$top/small/check.html" "$top/large/check.html" ${pictures:+"$pictures"}
