"""Measures the watched view: beside a snapshot, beside `batch --live`, and beside watchman. Part of bench.py."""
import json
import os
import random
import shutil
import socket
import statistics
import subprocess
import time

from installations import Wrong, run


def measure(bench, world, manifest):
    """Goal 10, in a world that holds three class folders and a private one below each search folder."""
    what = f"watched view, {world.size // 5} search folders"
    figures = figures_of(bench, world, manifest)
    question, start = figures["watched-question"], figures["watched-start"]
    allowed = 1.5 * figures["snapshot-question"] + 2 * figures["system-call"]
    bench.add("10", f"{what}: a question, beside 1.5 of a snapshot's and two system calls", f"{question:.2f} us",
              question / allowed, 1)
    bench.add("10", f"{what}: the start beside a snapshot's", f"{start:.0f} us", start / figures["snapshot-start"], 1.3)
    bench.add("10", f"{what}: folders listed for a question after one changed", f"{figures['listed-again']:g}",
              figures["listed-again"], 1)
    more = figures["changed-question"] - figures["unchanged-question"]
    bench.add("", f"{what}: the same in time, in listings of that folder", f"{more:.1f} us", more / figures["listing"],
              None)
    beside_live(bench, world, manifest, what)
    beside_watchman(bench, world, question, what)


def figures_of(bench, world, manifest):
    text = run(f"{bench.tools}/bench_watched", world.manifest(manifest), bench.shuffled(world),
               f"{world.root}/folders", "2" if bench.quick else "31")
    return {name: float(figure) for name, figure in map(str.split, text.splitlines())}


def beside_live(bench, world, manifest, what):
    names = random.Random(4).sample(world.plain, 20 if bench.quick else 1000)
    times, answers = [], []
    for option in ([], ["--live"]):
        begin = time.perf_counter()
        answers.append(run(*bench.ask(world, manifest, "batch", *option), input="\n".join(names) + "\n"))
        times.append(time.perf_counter() - begin)
    if answers[0] != answers[1]:
        raise Wrong("batch answers otherwise than batch --live")
    bench.add("10", f"{what}: batch of {len(names)} names beside --live", f"{times[0] * 1e3:.0f} ms",
              times[0] / times[1], None if bench.quick else 0.02)


def beside_watchman(bench, world, question, what):
    """Its shortest question: what changed since the last one. It writes a file, and waits until it is told of that."""
    what += ": a question beside watchman's, whether anything changed"
    if not shutil.which("watchman"):
        bench.skip("10", what, "install watchman")
        return
    state = os.path.join(bench.folder, "watchman")
    options = ["watchman", f"--sockname={state}.sock", f"--statefile={state}.state", f"--logfile={state}.log",
               f"--pidfile={state}.pid"]
    run(*options, "watch", world.root)
    try:
        with socket.socket(socket.AF_UNIX) as server:
            server.connect(f"{state}.sock")
            replies = server.makefile("rb")

            def ask(*request):
                server.sendall(json.dumps(request).encode() + b"\n")
                reply = json.loads(replies.readline())
                if "error" in reply:
                    raise Wrong(f"watchman: {reply['error']}")
                return reply

            clock = ask("clock", world.root, {"sync_timeout": 60000})["clock"]
            times = []
            for _ in range(20 if bench.quick else 300):
                begin = time.perf_counter()
                clock = ask("query", world.root, {"since": clock, "fields": ["name"]})["clock"]
                times.append(time.perf_counter() - begin)
    finally:
        subprocess.run([*options, "shutdown-server"], capture_output=True, check=False)
    median = statistics.median(times) * 1e6
    bench.add("10", what, f"{median:.0f} us", question / median, 1)
