#!/usr/bin/env bash
# Shows `kelwhich lsp` to editors, Neovim, Emacs and Kate with the set-ups of docs/editors.md, and to the protocol's
# library of Visual Studio Code; then asks it for long at 1,000 search folders. Usage: scripts/check-editors.sh [REQUESTS]
# REQUESTS (100,000) are the long ones. Needs the network: the library comes from npm, into build/npm.
. "$(dirname "$0")/lib.sh"
scripts/setup.sh editors
lock npm
npm install --prefix build/npm --no-save --no-audit --no-fund --loglevel=error vscode-languageserver-protocol@3.17.5
build release kelwhich_program
here=$PWD
top=$(mktemp -d)
trap 'rm -rf "$top"' EXIT
mkdir -m 700 "$top/bin" "$top/home"
ln -s "$here/build/release/cli/kelwhich" "$top/bin/kelwhich"
export PATH=$top/bin:$PATH HOME=$top/home LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen
export XDG_{CONFIG,STATE,CACHE}_HOME="$HOME" XDG_RUNTIME_DIR=$HOME

cp -r examples/installation "$top/small"
rm -f "$top/small/"*.cdb
(cd "$top/small" && kelwhich store build support.jsonl >/dev/null)

# setup EDITOR LANGUAGE: the block in this language below the editor's heading of the page.
setup() {
  awk -v heading="### $1" -v fence="\`\`\`$2" '/^### / { here = $0 == heading } /^```$/ { copies = 0 } copies
                                                 here && $0 == fence { copies = 1 }' docs/editors.md
}
setup Neovim lua >"$top/init.lua"
setup Emacs elisp >"$top/init.el"

echo "== $(nvim --version | head -n 1)"
(cd "$top/small" && nvim --headless --clean -u "$top/init.lua" -c "luafile $here/scripts/editors/neovim.lua" 2>&1)
echo "== $(emacs --version | head -n 1)"
(cd "$top/small" && emacs -q --batch -f package-initialize -l "$top/init.el" -l "$here/scripts/editors/emacs.el")
echo "== $(kate --version)"
scripts/editors/kate.sh "$top/small" <(setup Kate xml) <(setup Kate json)
echo "== vscode-languageserver-protocol"
(cd "$top/small" && node "$here/scripts/editors/protocol.mjs" "$here/build/npm/node_modules")
echo "== many requests"
scripts/editors/load.py build/release/cli/kelwhich "$@"
