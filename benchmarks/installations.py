"""The installations that are measured in, and how programs are run. Part of bench.py."""
import json
import os
import subprocess
import sys

HERE = os.path.dirname(os.path.realpath(__file__))


class Wrong(Exception):
    """Something cannot be run, or an answer is wrong."""


def run(*command, **options):
    done = subprocess.run(command, capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise Wrong(f"{' '.join(command)} ends with {done.returncode}: {done.stderr.strip()[-300:]}")
    return done.stdout


class World:
    """An installation of M folders, with stores of N records and a manifest for each."""

    def __init__(self, bench, folders, records):
        self.root = os.path.join(bench.folder, f"m{folders}")
        self.size = folders
        run(sys.executable, f"{HERE}/world.py", "tree", self.root, str(folders))
        with open(f"{self.root}/installation.json", encoding="utf-8") as text:
            manifest = json.load(text)
        for count in records:
            self.write(f"n{count}", manifest | {"supportStore": f"support-{count}.cdb"})
            run(bench.program, "-i", self.manifest(f"n{count}"), "store", "build", bench.records(count))
        self.write("index", manifest | {"supportStore": f"support-{records[0]}.cdb", "searchIndex": "search.idx"})
        self.answers = {}
        with open(f"{self.root}/expected", encoding="utf-8") as lines:
            for name, path in map(str.split, lines):
                self.answers.setdefault(name, []).append(path)
        # Names that other programs find as NAME.vk; `shared` are those of them with several candidates.
        self.plain = [n for n, found in self.answers.items() if found[0].endswith(f"/{n}.vk")]
        self.shared = [n for n in self.plain if n[0] == "c"]

    def write(self, name, manifest):
        with open(self.manifest(name), "w", encoding="utf-8") as out:
            json.dump(manifest, out)

    def manifest(self, name):
        return f"{self.root}/{name}.json"

    def path(self, folders="folders"):
        """The same folders as a PATH, for programs that search one."""
        with open(f"{self.root}/{folders}", encoding="utf-8") as lines:
            return ":".join(lines.read().split())
