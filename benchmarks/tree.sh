#!/usr/bin/env bash
# Makes an installation with M folders of 20 definitions each, the same for the same M, and writes what must be answered
# to FOLDER/expected: a line "NAME PATH" for each candidate, in order. Usage: tree.sh FOLDER M
# M is taken in groups of ten: a search folder with two class folders, a private folder, and packages with a class folder
# and a package of their own. Each folder defines "hot"; its other names are spread so that each is in several folders.
# Every fifth has the second extension; every tenth file has a twin with the other one.
set -euo pipefail
folder=${1:?Usage: tree.sh FOLDER M}
groups=$((${2:?Usage: tree.sh FOLDER M} / 10))
[ "$groups" -gt 0 ] || { echo "tree.sh: M is 10 or more" >&2; exit 2; }
mkdir "$folder"
cd "$folder"

# FOLDER FILE, a definition on each line.
awk -v groups="$groups" 'BEGIN {
  for (g = 0; g < groups; ++g) {
    split("/ /@Own" g "/ /@Shared/ /private/ /+own" g "/ /+own" g "/@Kind/ /+own" g "/+inner/ /+common/ /+common/@Shared/ " \
          "/+common/+inner/", below, " ")
    for (f = 1; f <= 10; ++f) {
      print "s" g below[f], "hot.vk"
      for (i = 1; i < 20; ++i) {
        name = "f" ((g * 10 + f) * 7 + i * 13) % (groups * 40 + 500)
        twin = i % 10 == 0
        if (twin) i++
        print "s" g below[f], name (i % 5 == 0 || twin ? ".vkx" : ".vk")
        if (twin) print "s" g below[f], name ".vk"
      }
    }
  }
}' >definitions
awk '{ print $1 }' definitions | uniq | xargs mkdir -p
tr -d ' ' <definitions | xargs touch

awk -v groups="$groups" 'BEGIN {
  printf "{\"searchPath\": ["
  for (g = 0; g < groups; ++g) printf "%s\"s%d\"", g ? ", " : "", g
  print "]}"
}' >installation.json

# The rules of the search anew, by another road: every definition gets its names and its rank among what a name finds.
# Of the candidates of a plain name, methods stand behind the others; private files are no candidates.
awk -v root="$PWD" '{
  g = substr($1, 2) + 0
  name = $2; sub(/\.vkx?$/, "", name)
  extension = $2 ~ /\.vkx$/ ? 1 : 0
  n = split(substr($1, 1, length($1) - 1), parts, "/")
  packages = ""; class = ""; private = 0
  for (p = 2; p <= n; ++p) {
    if (parts[p] ~ /^\+/) packages = packages substr(parts[p], 2) "."
    else if (parts[p] ~ /^@/) class = substr(parts[p], 2)
    else private = 1
  }
  path = root "/" $1 $2
  order = g " " (class == "" ? "-" : class) " " extension
  if (packages == "" && !private) print name, (class == "" ? 0 : 1), order, path
  if (packages != "" && class == "") print packages name, 0, g, 0, extension, path
  if (class != "") print packages class "." name, 0, g, 1, extension, path
}' definitions | LC_ALL=C sort -k1,1 -k2,2n -k3,3n -k4,4 -k5,5n | awk '{ print $1, $NF }' >expected
rm definitions
