#!/usr/bin/python3
"""Talks with `kelwhich lsp` as an editor does, and prints what it answers.

lsp.py STEP...                   each step is one of:
start [PARAMS]                   initialize, with these parameters besides, and initialized
open FILE TEXT                   opens a document; the next steps are about the one opened last
definition LINE:CHARACTER        the same for declaration, hover and completion
request METHOD PARAMS
cancel METHOD PARAMS             the same, and a cancellation at once
notify METHOD PARAMS
respond                          with null, to the request that the server sent last
bytes TEXT                       as they are; Python's escapes
shell COMMAND
diagnostics                      prints the next ones that are published
wait                             prints the next message of any kind
stop                             shutdown and exit
PARAMS are JSON, in which @FILE@ is a file's URI.
"""

import json
import os
import re
import subprocess
import sys
from urllib.parse import unquote

from editor import DIAGNOSTICS, Editor, uri


def shown(text):
    """A URI of a file as its path here."""
    return unquote(text).removeprefix("file://" + os.getcwd() + "/")


def place(entry):
    span = entry["range"]
    return "{}:{}-{}:{}".format(*(span[end][key] for end in ("start", "end") for key in ("line", "character")))


def show(title, message):
    result = message.get("result", message)
    if message.get("method") == DIAGNOSTICS:
        params = message["params"]
        lines = [f"{place(found)} {found['severity']} {found.get('code')}: {found['message']}"
                 + "".join(" @ " + shown(other["location"]["uri"]) for other in found.get("relatedInformation", []))
                 for found in params["diagnostics"]]
        print(f"{title}: {shown(params['uri'])}: {len(lines)}", *lines, sep="\n  ")
    elif "error" in message:
        id = f", id {json.dumps(message['id'])}" if title == "wait" else ""
        print(f"{title}: error {message['error']['code']}{id}: {message['error']['message']}")
    elif title == "hover" and result:
        print(f"{title}: {place(result)} {result['contents']['kind']}", *result["contents"]["value"].split("\n"), sep="\n  ")
    elif title == "completion":
        print(f"{title}: incomplete {result['isIncomplete']}", *(
            f"{place(item['textEdit'])} {item['textEdit']['newText']}: {item['kind']}, {item['detail']}" for item in result["items"]),
            sep="\n  ")
    elif isinstance(result, list):
        print(f"{title}:", *(shown(entry.get("location", entry)["uri"]) + f" {entry.get('name', '')}" for entry in result), sep="\n  ")
    elif isinstance(result, dict) and "uri" in result:
        print(f"{title}: {shown(result['uri'])} {place(result)}")
    elif isinstance(result, str):
        print(result, end="")
    else:
        print(f"{title}: {json.dumps(result)}")


def params(text):
    return json.loads(re.sub("@(.*?)@", lambda match: uri(match[1]), text or "{}"))


editor = Editor(["kelwhich", *os.environ.get("options", "").split(), "lsp"])
for step in sys.argv[1:]:
    word, _, rest = step.partition(" ")
    first, _, second = rest.partition(" ")
    if word == "start":
        response = editor.start(params(rest))
        if "result" not in response:
            show(word, response)
    elif word == "open":
        editor.open(first, second.replace("\\n", "\n"))
    elif word == "request":
        show(first, editor.request(first, params(second)))
    elif word == "cancel":
        show(first, editor.request(first, params(second), lambda lastId: editor.frame(
            {"method": "$/cancelRequest", "params": {"id": lastId}})))
    elif word == "respond":
        editor.send({"id": message["id"], "result": None})
    elif word == "notify":
        editor.send({"method": first, "params": params(second)})
    elif word == "bytes":
        editor.write(rest.encode().decode("unicode_escape").encode("latin-1"))
    elif word == "shell":
        subprocess.run(rest, shell=True, check=True)
    elif word == "diagnostics":
        show(word, editor.receive(lambda message: message.get("method") == DIAGNOSTICS))
    elif word == "wait":
        message = editor.receive(lambda message: True)
        print("the server ended") if message is None else show(word, message)
    elif word == "stop":
        editor.stop()
    else:
        show(word, editor.ask(word, *map(int, rest.split(":"))))
rest, code = editor.end()
for message in rest:
    if message.get("method") != DIAGNOSTICS:  # they may come or not
        show("sent", message)
sys.exit(code)
