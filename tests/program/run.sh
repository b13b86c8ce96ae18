#!/usr/bin/env bash
# Runs a session: a transcript of commands with the output, errors and exit code that each must have.
#
#     run.sh PROGRAM SESSION             prints the difference and fails if there is any
#     run.sh PROGRAM SESSION --refresh   prints the difference and writes it into the session: check it by hand
#
# Lines of a session:
#     # a remark
#     $ a command: run by this shell, one after the other, in a fresh copy of the example installation
#         a line of its standard output
#       ! a line of its standard error
#       2 the last such line, when the exit code is not 0 but, for example, 2
#       = 2 the same without any line on standard error
# "$here" is the folder of sessions, "$recordings" of recordings, "$pages" of the man page and the completions.
# `as_user WORDS...` runs the program as one whom rights concern, unlike root; `valid DEFINITION` is schema.py.
# The store is built. <tmp> stands for the parent folder of the copy, <esc> for an escape character.
set -euo pipefail

program=$(realpath "$1")
session=$(realpath "$2")
here=$(realpath "${BASH_SOURCE[0]%/*}")
# shellcheck disable=SC2034 # for the sessions
recordings=$here/recordings
example=$(realpath "$here/../../examples/installation")

umask 022
top=$(realpath "$(mktemp -d)")
trap 'rm -rf "$top"' EXIT
chmod 755 "$top"
mkdir "$top/bin" "$top/tmp" "$top/record"
ln -s "$program" "$top/bin/kelwhich"
PATH=$top/bin:$PATH
unset KELWHICH_INSTALLATION KELWHICH_PROGRESS_MS NO_COLOR FORCE_COLOR
export KELWHICH_SUGGEST_MS=600000 TERM=xterm LC_ALL=C.UTF-8 SHELL=/bin/sh HOME=$top/tmp

cp -r "$example" "$top/tmp/world"
rm -f "$top/tmp/world/"*.cdb
cd "$top/tmp/world"
kelwhich store build support.jsonl >/dev/null

as_user() {
    local user=()
    [[ $(id -u) != 0 ]] || user=(setpriv --reuid=65534 --regid=65534 --clear-groups)
    [[ -e $top/program ]] || cp "$program" "$top/program"
    "${user[@]}" "$top/program" "$@"
}
valid() { python3 "$here/schema.py" "$here/../../cli/kelwhich.schema.json" "$@"; }

# shown PREFIX FILE: prints the file's lines after the prefix.
shown() { sed -e "s|$top/tmp|<tmp>|g" -e $'s|\x1b|<esc>|g' -e "s|^|$1|" "$2"; }

# The session has its own descriptor, so that no command reads it.
while IFS= read -r line <&9; do
    case $line in
    '$ '*)
        echo "$line"
        status=0
        eval "${line#??}" >"$top/record/out" 2>"$top/record/err" || status=$?
        shown '    ' "$top/record/out"
        last=!
        [[ $status == 0 ]] || last=$status
        shown '  ! ' "$top/record/err" | sed "\$s/^  !/  $last/"
        [[ $status == 0 || -s $top/record/err ]] || echo "  = $status"
        ;;
    '    '* | '  '[=0-9!]*) ;;
    *) echo "$line" ;;
    esac
done 9<"$session" >"$top/record/session"

if [[ ${3-} == --refresh ]]; then
    diff -u "$session" "$top/record/session" || cp "$top/record/session" "$session"
else
    diff -u "$session" "$top/record/session"
fi
