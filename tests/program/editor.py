"""An editor's end of a talk with a server of the Language Server Protocol."""

import json
import os
import re
import select
import subprocess
import sys
import time
from urllib.parse import quote

PATIENCE = 60  # seconds
DIAGNOSTICS = "textDocument/publishDiagnostics"


def uri(path):
    return "file://" + quote(os.path.abspath(path))


class Editor:
    def __init__(self, command):
        self.server = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.input = b""
        self.messages = []
        self.lastId = 0
        self.document = None
        self.version = 0

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
                sys.exit("the server does not answer")
            data = os.read(self.server.stdout.fileno(), 1 << 16)
            if not data:
                return None
            self.input += data

    def request(self, method, params, more=lambda lastId: b""):
        """The response. `more` are bytes that follow the request at once."""
        self.lastId += 1
        self.write(self.frame({"id": self.lastId, "method": method, "params": params}) + more(self.lastId))
        return self.receive(lambda message: message.get("id") == self.lastId and "method" not in message)

    def start(self, more):
        """initialize, with these parameters besides, and initialized. Returns the response to the first."""
        wanted = {"processId": None, "rootUri": uri("."), "capabilities": {}, **more}
        response = self.request("initialize", wanted)
        self.send({"method": "initialized", "params": {}})
        return response

    def open(self, path, text):
        self.document = {"uri": uri(path)}
        self.version = 1
        item = {**self.document, "languageId": "host", "version": 1, "text": text}
        self.send({"method": "textDocument/didOpen", "params": {"textDocument": item}})

    def change(self, line, begin, end, text):
        """Replaces a part of a line."""
        self.version += 1
        span = {"start": {"line": line, "character": begin}, "end": {"line": line, "character": end}}
        self.send({"method": "textDocument/didChange", "params": {
            "textDocument": {**self.document, "version": self.version}, "contentChanges": [{"range": span, "text": text}]}})

    def close(self, path):
        self.send({"method": "textDocument/didClose", "params": {"textDocument": {"uri": uri(path)}}})

    def ask(self, what, line, character):
        position = {"line": line, "character": character}
        return self.request("textDocument/" + what, {"textDocument": self.document, "position": position})

    def stop(self):
        self.request("shutdown", None)
        self.send({"method": "exit", "params": None})

    def end(self):
        """What it sent besides, and its exit code."""
        self.server.stdin.close()
        rest = []
        while (message := self.receive(lambda message: True)) is not None:
            rest.append(message)
        return rest, self.server.wait(PATIENCE)
