#!/usr/bin/env bash
# Writes each C++ snippet of Markdown files to a source file of its own, and prints the sources' names. Snippets are
# the blocks fenced as ```cpp and the indented ones that begin with an #include. A snippet without a `main` is the body
# of a function, but for the #include lines that it begins with. Usage: snippets.sh FOLDER FILE.md...
set -euo pipefail
folder=$1
shift
mkdir -p "$folder"

for file in "$@"; do
  awk -v file="$file" -v stem="$folder/$(basename "$file" .md)" '
    function begin(line) { code = ""; first = line }
    function end(  head, body, name) {
      match(code, /^(#include[^\n]*\n|\n)*/)
      head = substr(code, 1, RLENGTH)
      body = sprintf("#line %d \"%s\"\n%s", first + gsub(/\n/, "\n", head), file, substr(code, RLENGTH + 1))
      if (code !~ /int main\(/) body = "void snippet();\nvoid snippet() {\n" body "}\n"
      name = stem "." ++count ".cpp"
      printf "#line %d \"%s\"\n%s%s", first, file, head, body > (name ".new")
      print name
      inside = ""
    }
    inside == "fence" && /^```/ { end(); next }
    inside == "indent" && /^[^ ]/ { end() }
    inside { sub(/^    /, inside == "indent" ? "" : "&"); code = code $0 "\n"; next }
    /^```cpp$/ { inside = "fence"; begin(NR + 1); next }
    /^    #include/ { inside = "indent"; begin(NR); sub(/^    /, ""); code = $0 "\n" }
    END {
      if (inside == "fence") { print file ": the last ```cpp is not closed" > "/dev/stderr"; exit 1 }
      if (inside) end()
    }' "$file"
done | while read -r name; do
  if cmp -s "$name.new" "$name"; then rm "$name.new"; else mv "$name.new" "$name"; fi # or it is compiled again
  echo "$name"
done
