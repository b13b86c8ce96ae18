#!/usr/bin/env bash
# Runs a session: a file of commands, each with the output, the complaints and the exit code that it must have.
#
#     run.sh PROGRAM SESSION             succeeds when all is as the session says, else shows the difference
#     run.sh PROGRAM SESSION --refresh   shows the difference and writes it into the session, to be checked by hand
#
# A line of a session is one of:
#     # a remark
#     $ a command: run by this shell, one after the other, in a fresh copy of the example installation
#         a line of its standard output
#       ! a line of its standard error
#       = its exit code, when that is not 0
# "$here" is the folder of sessions, "$recordings" that of recordings, "$pages" that of the man page and the completions.
# The copy's parent folder is written as <tmp>, an escape character as <esc>.
set -euo pipefail

program=$(realpath "$1")
session=$(realpath "$2")
here=$(realpath "${BASH_SOURCE[0]%/*}")
# shellcheck disable=SC2034 # for the sessions
recordings=$here/recordings
example=$(realpath "$here/../../examples/installation")

top=$(realpath "$(mktemp -d)")
trap 'rm -rf "$top"' EXIT
mkdir "$top/bin" "$top/tmp" "$top/record"
ln -s "$program" "$top/bin/kelwhich"
PATH=$top/bin:$PATH
unset KELWHICH_INSTALLATION NO_COLOR
export TERM=xterm LC_ALL=C.UTF-8 SHELL=/bin/sh HOME=$top/tmp

cp -r "$example" "$top/tmp/world"
rm -f "$top/tmp/world/"*.cdb
cd "$top/tmp/world"

# `shown PREFIX FILE`: the file's lines after the prefix.
shown() { sed -e "s|$top/tmp|<tmp>|g" -e $'s|\x1b|<esc>|g' -e "s|^|$1|" "$2"; }

# The session is read through its own number, so that no command reads it.
while IFS= read -r line <&9; do
    case $line in
    '$ '*)
        echo "$line"
        status=0
        eval "${line#??}" >"$top/record/out" 2>"$top/record/err" || status=$?
        shown '    ' "$top/record/out"
        shown '  ! ' "$top/record/err"
        [[ $status == 0 ]] || echo "  = $status"
        ;;
    '    '* | '  ! '* | '  = '*) ;;
    *) echo "$line" ;;
    esac
done 9<"$session" >"$top/record/session"

if [[ ${3-} == --refresh ]]; then
    diff -u "$session" "$top/record/session" || cp "$top/record/session" "$session"
else
    diff -u "$session" "$top/record/session"
fi
