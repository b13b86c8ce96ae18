#!/usr/bin/env bash
# Shows that Kate, set up as in docs/editors.md, starts `kelwhich lsp` and opens a document, by what the two say to each
# other: no screen is needed. Usage: kate.sh EXAMPLE HIGHLIGHTING SETTINGS, with a $HOME of its own.
set -euo pipefail
unset CDPATH
cd "$1"
talk=$(mktemp -d)
trap 'kill "$kate"; rm -rf "$talk"' EXIT

install -D -m 644 "$2" "$HOME/.local/share/org.kde.syntax-highlighting/syntax/vk.xml"
install -D -m 644 "$3" "$XDG_CONFIG_HOME/kate/lspclient/settings.json"
cat >"$XDG_CONFIG_HOME/katerc" <<END
[Kate Plugins]
lspclientplugin=true
[lspclient]
AllowedServerCommandLines=$talk/kelwhich lsp
END
cat >"$talk/kelwhich" <<END
#!/usr/bin/env bash
tee "$talk/asked" | "$(command -v kelwhich)" "\$@" | tee "$talk/answered"
END
chmod +x "$talk/kelwhich"

# shows WHAT FILE TEXT...: waits until the file has each text.
shows() {
  local what=$1 file=$talk/$2 deadline=$((SECONDS + 20)) text
  shift 2
  for text; do
    until grep -qsF -- "$text" "$file"; do
      [ $SECONDS -lt $deadline ] || { echo "NOT: $what"; cat "$talk/kate" >&2; exit 1; }
      sleep 0.05
    done
  done
  echo "ok: $what"
}
PATH=$talk:$PATH kate --startanon host/library/data/combine.vk >"$talk/kate" 2>&1 &
kate=$!
shows "starts the server in the folder of the manifest" asked '"initialize"' "\"rootUri\": \"file://$PWD\""
shows "opens the document" asked '"textDocument/didOpen"' 'combine.vk"'
touch mine/combine.vk
shows "gets a warning when the shell makes a file that hides it" answered '"hidden"'
rm mine/combine.vk
