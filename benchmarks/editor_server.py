"""Measures the editor server as an editor sees it, beside what has no work in it. Part of bench.py."""
import os
import random
import statistics
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "../tests/program"))
from editor import DIAGNOSTICS, Editor, uri
from installations import Wrong


def measure(bench, world, manifest):
    """Goal 12, in a world that holds three class folders and a private one below each search folder."""
    what = f"editor server, {world.size // 5} search folders"
    rounds = 50 if bench.quick else 10000
    names = random.Random(5).sample(world.plain, min(1000, len(world.plain)))
    server, echo = Editor(bench.ask(world, manifest, "lsp")), Editor(["cat"])
    server.start({"rootUri": uri(world.root)})
    server.open(world.answers[world.shared[-1]][0], "\n".join(names))
    asker = Asker(bench, server, echo)
    asker.ask_all(world, names, rounds)
    for kind in ("definition", "hover", "hover after a keystroke"):
        whole, worked = (times[kind][rounds * 99 // 100] for times in (asker.times, asker.worked))
        bench.add("12", f"{what}: {kind}, 99 % of {rounds}, in 2 ms", f"{whole:.0f} us", whole / 2000, 1)
        bench.add("", f"{what}: {kind}, processor time of the server, 99 % of {rounds}", f"{worked:.0f} us",
                  worked / whole, None)
    median = {kind: statistics.median(times) for kind, times in asker.times.items()}
    for kind, other in (("definition", "unknown request"), ("hover", "unknown request"), ("completion", "unknown request"),
                        ("unknown request", "echo by cat")):
        bench.add("", f"{what}: {kind} beside the {other}, medians", f"{median[kind]:.0f} us", median[kind] / median[other],
                  None)
    after_changes(bench, world, asker, what)
    server.stop()
    for process in (server, echo):
        process.end()


class Asker:
    def __init__(self, bench, server, echo):
        self.bench = bench
        self.server = server
        self.echo = echo
        # In microseconds, in order; and the part of them that the server itself worked.
        self.times, self.worked = {}, {}

    def timed(self, kind, ask, *words):
        before = self.processor_time()
        begin = time.perf_counter()
        response = ask(*words)
        self.times.setdefault(kind, []).append((time.perf_counter() - begin) * 1e6)
        self.worked.setdefault(kind, []).append(self.processor_time() - before)
        if response is None:
            raise Wrong(f"{kind}: the server ended")
        return response

    def ask_all(self, world, names, rounds):
        # What the server does once, when it has opened the installation.
        self.server.ask("completion", 0, 4)
        for i in range(rounds):
            line = i * 7 % len(names)
            definition = self.timed("definition", self.server.ask, "definition", line, 3)
            hover = self.timed("hover", self.server.ask, "hover", line, 3)
            expected = world.answers[names[line]]
            if definition["result"]["uri"] != uri(expected[0]) or any(
                    path not in hover["result"]["contents"]["value"] for path in expected):
                raise Wrong(f"the answer of {names[line]} is wrong: {definition} {hover}")
            self.timed("unknown request", self.server.request, "none", definition["result"])
            self.timed("echo by cat", self.ask_echo, "none", definition["result"])
            self.timed("hover after a keystroke", self.ask_after_keystroke, line)
            self.timed("completion", self.server.ask, "completion", line, 4)
        for times in [*self.times.values(), *self.worked.values()]:
            times.sort()

    def processor_time(self):
        """Of the server so far, which waits."""
        with open(f"/proc/{self.server.server.pid}/schedstat", encoding="utf-8") as figures:
            return int(figures.read().split()[0]) / 1000

    def ask_echo(self, method, params):
        self.echo.send({"id": self.server.lastId, "method": method, "params": params})
        return self.echo.receive(lambda message: True)

    def ask_after_keystroke(self, line):
        """A hover over a line that grew by one letter at its end."""
        self.server.change(line, 100, 100, "(")
        return self.server.ask("hover", line, 3)


def after_changes(bench, world, asker, what):
    """From when another file hides the open one, or no longer does, until that is published; and completion after it."""
    server = asker.server
    other = f"{world.root}/s0/{world.shared[-1]}.vk"

    def change(hides):
        if hides:
            os.close(os.open(other, os.O_CREAT | os.O_WRONLY))
        else:
            os.remove(other)
        return server.receive(lambda message: message.get("method") == DIAGNOSTICS and hides == any(
            found["code"] == "hidden" for found in message["params"]["diagnostics"]))

    for i in range(2 if bench.quick else 100):
        server.messages.clear()
        asker.timed("finding", change, i % 2 == 0)
        asker.timed("first completion", server.ask, "completion", 0, 4)
    for kind in ("finding", "first completion"):
        median = statistics.median(asker.times[kind])
        bench.add("", f"{what}: {kind} after a file was made or removed, in unknown requests", f"{median:.0f} us",
                  median / statistics.median(asker.times["unknown request"]), None)
