#!/usr/bin/python3
"""Runs the commands of documents and compares what they show with what the documents show.

Usage: commands.py PROGRAM DOCUMENT...
A command is an indented line that begins with "$ "; the indented lines after it are its output and its complaints. One
that shows nothing may write anything, but must not fail with 2. All run one after the other in a copy of the example
installation, which the documents call /opt/orvak.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

program = pathlib.Path(sys.argv[1]).resolve()
example = pathlib.Path(__file__).resolve().parents[2] / "examples/installation"


def commands(text):
    """Pairs of a command and the indented lines that follow it."""
    return re.findall(r"(?m)^    \$ (.*)\n((?:(?!    \$ )(?:    .*)?\n)*)", text)


def run(command, folder):
    environment = {key: value for key, value in os.environ.items() if not re.match("KELWHICH|NO_COLOR|FORCE_COLOR", key)}
    environment["KELWHICH_SUGGEST_MS"] = "600000"  # also beside other work
    environment["PATH"] = f"{folder}/bin:{environment['PATH']}"
    done = subprocess.run(["bash", "-c", command], cwd=f"{folder}/world", env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    return done.stdout.replace(f"{folder}/world", "/opt/orvak").rstrip("\n"), done.returncode


count = 0
wrong = 0
for document in sys.argv[2:]:
    with tempfile.TemporaryDirectory() as temporary:
        folder = os.path.realpath(temporary)
        shutil.copytree(example, f"{folder}/world", ignore=shutil.ignore_patterns("*.cdb"))
        os.mkdir(f"{folder}/bin")
        os.symlink(program, f"{folder}/bin/kelwhich")
        run("kelwhich store build support.jsonl", folder)
        pathlib.Path(f"{folder}/world/names.txt").write_text("wave\n\nsum\n", encoding="utf-8")
        for command, lines in commands(pathlib.Path(document).read_text(encoding="utf-8")):
            count += 1
            shown = re.sub("(?m)^    ", "", lines).rstrip()
            output, status = run(command, folder)
            if shown and output != shown or not shown and status == 2:
                wrong += 1
                print(f"{document}: {command}\n--- shown\n{shown}\n--- is ({status})\n{output}\n")
print(f"{count} commands, {wrong} otherwise than shown")
sys.exit(wrong > 0 or count == 0)
