#!/usr/bin/env python3
"""Asks `kelwhich lsp` for long, while documents and the disk change, and fails when it grows or is wrong.

Usage: load.py PROGRAM [REQUESTS [SEARCH-FOLDERS]]    by default 100,000 in 1,000
Two of three requests are definition or hover; then come completion, a keystroke with a request after it, and another
document that is opened instead of an older one, saved or new. After each thousand requests the disk changes: a file, a
folder, the support store or the manifest; what is answered then is checked as well. What is resident after the first
fifth of the requests may grow by a twentieth, or by 1 MiB if that is more. Looked at are the last three tenths, and the
least counts, since memory that was just freed may still be resident.
"""
import collections
import json
import os
import random
import re
import subprocess
import sys
import tempfile
import time

ROOT = os.path.join(os.path.dirname(os.path.realpath(__file__)), "../..")
sys.path.insert(0, f"{ROOT}/tests/program")
from editor import Editor, uri

OPEN = 5  # documents at once


class World:
    def __init__(self, program, top, folders):
        self.program = program
        self.root = os.path.join(top, "world")
        make = [sys.executable, f"{ROOT}/benchmarks/world.py"]
        subprocess.run([*make, "tree", self.root, str(5 * folders)], check=True)
        with open(f"{self.root}/support.jsonl", "w", encoding="utf-8") as out:
            subprocess.run([*make, "records", "10000"], stdout=out, check=True)
        with open(f"{self.root}/installation.json", encoding="utf-8") as text:
            self.manifest = json.load(text) | {"supportStore": "support.cdb"}
        self.folders = [f"{self.root}/{folder}" for folder in self.manifest["searchPath"]]
        self.write_manifest()
        self.build_store()
        with open(f"{self.root}/expected", encoding="utf-8") as lines:
            self.answers = {}
            for name, path in map(str.split, lines):
                self.answers.setdefault(name, path)
        self.names = [name for name, path in self.answers.items() if path.endswith(f"/{name}.vk")]

    def write_manifest(self):
        with open(f"{self.root}/new.json", "w", encoding="utf-8") as out:
            json.dump(self.manifest, out)
        os.rename(f"{self.root}/new.json", f"{self.root}/installation.json")

    def build_store(self):
        subprocess.run([self.program, "-i", f"{self.root}/installation.json", "store", "build",
                        f"{self.root}/support.jsonl"], check=True, stdout=subprocess.DEVNULL)


class Load:
    def __init__(self, world):
        self.world = world
        self.draw = random.Random(1)
        self.times = []
        self.requests = 0
        self.documents = collections.deque()
        self.lines = []  # of the document opened last
        self.editor = Editor([world.program, "-i", f"{world.root}/installation.json", "lsp"])
        self.editor.start({"rootUri": uri(world.root)})
        for _ in range(OPEN):
            self.open_another()

    def open_another(self):
        """An existing definition, or a new one in a folder of the search path."""
        isNew = self.draw.random() < 0.3
        path = self.world.answers[self.draw.choice(self.world.names)]
        if isNew:
            path = f"{os.path.dirname(path)}/new{self.requests}.vk"
        if len(self.documents) == OPEN:
            self.editor.close(self.documents.popleft())
        if path not in self.documents:
            self.documents.append(path)
            self.lines = self.draw.sample(self.world.names, 100)
            self.editor.open(path, "\n".join(self.lines))

    def ask(self, what, line, character):
        self.requests += 1
        begin = time.perf_counter()
        response = self.editor.ask(what, line, character)
        if what in ("definition", "hover"):
            self.times.append((time.perf_counter() - begin) * 1000)
        if response is None or "result" not in response:
            sys.exit(f"load.py: {what} of {self.lines[line]}: {response}")
        return response["result"]

    def define(self, line):
        found = self.ask("definition", line, 3)
        expected = self.world.answers.get(self.lines[line])
        if (found or {}).get("uri") != (expected and uri(expected)):
            sys.exit(f"load.py: the definition of {self.lines[line]} is {found}, not {expected}")

    def step(self):
        line = self.draw.randrange(len(self.lines))
        kind = self.draw.random()
        if kind < 0.4:
            self.define(line)
        elif kind < 0.65:
            if self.lines[line] not in self.ask("hover", line, 3)["contents"]["value"]:
                sys.exit(f"load.py: the hover of {self.lines[line]} does not name it")
        elif kind < 0.8:
            self.ask("completion", line, 4)
        elif kind < 0.95:
            before, self.lines[line] = self.lines[line], self.draw.choice(self.world.names)
            self.editor.change(line, 0, len(before), self.lines[line])
            self.define(line)
        else:
            self.open_another()
            self.define(0)
        self.editor.messages.clear()  # diagnostics

    def write(self, name):
        """Into the first line."""
        self.editor.change(0, 0, len(self.lines[0]), name)
        self.lines[0] = name
        self.define(0)

    def change_disk(self, kind):
        """One of ten changes, which is taken back at once where it alters an answer."""
        folder = self.draw.choice(self.world.folders)
        if kind == 0:
            self.world.build_store()
        elif kind == 5:
            self.world.write_manifest()
        elif kind % 2 == 0:
            os.rename(folder, folder + "~")
            self.ask("completion", 0, 4)
            os.rename(folder + "~", folder)
        else:
            path = self.world.answers["fresh"] = f"{folder}/fresh.vk"
            os.close(os.open(path, os.O_CREAT | os.O_WRONLY))
            self.write("fresh")
            os.remove(path)
            del self.world.answers["fresh"]
            self.define(0)
            self.write(self.world.names[0])

    def memory(self):
        """What is resident, in KiB."""
        with open(f"/proc/{self.editor.server.pid}/status", encoding="utf-8") as status:
            return int(re.search(r"VmRSS:\s*(\d+)", status.read())[1])

    def run(self, requests):
        """What is resident after each tenth of the requests."""
        resident = []
        changes = 0
        while len(resident) < 10:
            self.step()
            if self.requests // 1000 > changes:
                changes += 1
                self.change_disk(changes % 10)
            if self.requests >= (len(resident) + 1) * requests // 10:
                self.ask("completion", 0, 4)
                resident.append(self.memory())
        return resident


def main(program, requests="100000", folders="1000"):
    with tempfile.TemporaryDirectory() as top:
        load = Load(World(os.path.realpath(program), os.path.realpath(top), int(folders)))
        resident = load.run(int(requests))
        load.editor.stop()
        code = load.editor.end()[1]
    slowest = sorted(load.times)[len(load.times) * 99 // 100]
    grown, most = min(resident[-3:]) - resident[1], max(resident[1] // 20, 1024)
    print(f"{load.requests} requests in {folders} search folders; 99 % of definition and hover within {slowest:.2f} ms")
    print(f"resident after each tenth, in KiB: {' '.join(map(str, resident))}; grown by {grown}, at most {most}")
    return 0 if code == 0 and grown <= most else 1


if __name__ == "__main__":
    if not 2 <= len(sys.argv) <= 4:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
