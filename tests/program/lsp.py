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
close                            of standard input
stop                             shutdown and exit
PARAMS are JSON, in which @FILE@ is a file's URI.
"""

import json
import os
import re
import select
import subprocess
import sys
import time
from urllib.parse import quote, unquote

PATIENCE = 60  # seconds
DIAGNOSTICS = "textDocument/publishDiagnostics"


def uri(path):
    return "file://" + quote(os.path.abspath(path))


def shown(text):
    """A URI of a file as its path here."""
    return unquote(text).removeprefix("file://" + os.getcwd() + "/")


class Editor:
    def __init__(self, command):
        self.server = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.input = b""
        self.messages = []
        self.lastId = 0
        self.document = None

    def frame(self, message):
        body = json.dumps({"jsonrpc": "2.0", **message}).encode()
        return b"Content-Length: %d\r\n\r\n" % len(body) + body

    def write(self, data):
        try:
            self.server.stdin.write(data)
            self.server.stdin.flush()
        except BrokenPipeError:
            print("the server is gone")

    def send(self, message):
        self.write(self.frame(message))

    def receive(self, wanted):
        """The first message that is wanted; None at the end. Others stay."""
        deadline = time.monotonic() + PATIENCE
        while True:
            for message in self.messages:
                if wanted(message):
                    self.messages.remove(message)
                    return message
            head = re.match(rb"Content-Length: (\d+)\r\n\r\n", self.input)
            if head and len(self.input) >= head.end() + int(head[1]):
                end = head.end() + int(head[1])
                self.messages.append(json.loads(self.input[head.end():end]))
                self.input = self.input[end:]
                continue
            if not select.select([self.server.stdout], [], [], deadline - time.monotonic())[0]:
                sys.exit("lsp.py: no answer")
            data = os.read(self.server.stdout.fileno(), 1 << 16)
            if not data:
                return None
            self.input += data

    def request(self, method, params, more=lambda lastId: b""):
        self.lastId += 1
        self.write(self.frame({"id": self.lastId, "method": method, "params": params}) + more(self.lastId))
        return self.receive(lambda message: message.get("id") == self.lastId and "method" not in message)

    def start(self, more):
        wanted = {"processId": None, "rootUri": uri("."), "capabilities": {}, **params(more)}
        response = self.request("initialize", wanted)
        self.send({"method": "initialized", "params": {}})
        return response

    def open(self, path, text):
        self.document = {"uri": uri(path)}
        item = {**self.document, "languageId": "host", "version": 1, "text": text.replace("\\n", "\n")}
        self.send({"method": "textDocument/didOpen", "params": {"textDocument": item}})

    def ask(self, what, place):
        line, character = map(int, place.split(":"))
        position = {"line": line, "character": character}
        return self.request("textDocument/" + what, {"textDocument": self.document, "position": position})

    def end(self):
        self.server.stdin.close()
        while (message := self.receive(lambda message: True)) is not None:
            if message.get("method") != DIAGNOSTICS:  # they may come or not
                show("sent", message)
        return self.server.wait(PATIENCE)


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
        print(f"{title}: error {message['error']['code']}: {message['error']['message']}")
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
        response = editor.start(rest)
        if "result" not in response:
            show(word, response)
    elif word == "open":
        editor.open(first, second)
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
    elif word == "close":
        editor.server.stdin.close()
    elif word == "stop":
        editor.request("shutdown", None)
        editor.send({"method": "exit", "params": None})
    else:
        show(word, editor.ask(word, rest))
sys.exit(editor.end())
