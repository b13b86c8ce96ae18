#!/usr/bin/env bash
# Shows `kelwhich lsp` to editors: Neovim and Emacs with the set-ups of docs/editors.md, and the protocol's library of
# Visual Studio Code, which also measures it at 1,000 search folders. Usage: scripts/check-editors.sh [REQUESTS]
# REQUESTS (100,000) are those of the measurement. Needs the network: the library comes from npm, into build/npm.
. "$(dirname "$0")/lib.sh"
requests=${1:-100000}
scripts/setup.sh editors
lock npm
npm install --prefix build/npm --no-save --no-audit --no-fund --loglevel=error vscode-languageserver-protocol@3.17.5
build release kelwhich_program
here=$PWD
top=$(mktemp -d)
trap 'rm -rf "$top"' EXIT
mkdir "$top/bin" "$top/home"
ln -s "$here/build/release/cli/kelwhich" "$top/bin/kelwhich"
export PATH=$top/bin:$PATH HOME=$top/home XDG_CONFIG_HOME=$top/home XDG_STATE_HOME=$top/home XDG_CACHE_HOME=$top/home LC_ALL=C.UTF-8

cp -r examples/installation "$top/small"
rm -f "$top/small/"*.cdb
(cd "$top/small" && kelwhich store build support.jsonl >/dev/null)

# 5,000 names in 1,000 folders, each of them in two, with a class folder and a private one in each.
mkdir "$top/large"
cd "$top/large" || exit
mkdir -p host folder{000..999}/{@C,private}
awk 'BEGIN { for (i = 0; i < 10000; ++i) printf "folder%03d/name_%d.vk\n", (i * 37 + int(i / 5000)) % 1000, i % 5000
             for (i = 0; i < 1000; ++i) printf "folder%03d/@C/method_%d.vk\nfolder%03d/private/helper.vk\n", i, i, i }' | xargs touch
printf '{"root": "host", "searchPath": [%s]}\n' "$(printf '"../folder%03d", ' {0..999} | sed 's/, $//')" >installation.json
cd "$here" || exit

# setup LANGUAGE: the block of the page in this language.
setup() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/p" docs/editors.md | sed '1d;$d'; }
setup lua >"$top/init.lua"
setup elisp >"$top/init.el"

echo "== $(nvim --version | head -n 1)"
(cd "$top/small" && nvim --headless --clean -u "$top/init.lua" -c "luafile $here/scripts/editors/neovim.lua" 2>&1)
echo "== $(emacs --version | head -n 1)"
(cd "$top/small" && emacs -q --batch -f package-initialize -l "$top/init.el" -l "$here/scripts/editors/emacs.el")
echo "== vscode-languageserver-protocol"
(cd "$top/small" && node "$here/scripts/editors/protocol.mjs" "$here/build/npm/node_modules" small)
(cd "$top/large" && node "$here/scripts/editors/protocol.mjs" "$here/build/npm/node_modules" large "$requests")
