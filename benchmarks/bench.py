#!/usr/bin/env python3
"""Measures the program beside others, and prints one table: goal, figure, ratio, met or not. See scripts/bench.sh.

Usage: bench.py BUILD [MEASURE...] [--quick] [--write]    BUILD is the folder of the release build
MEASURE is one of MEASURES below; without one, all are run.
--quick runs few rounds in small worlds: whether everything can be run and is answered rightly, not how fast.
--write puts the table and the plot into docs/performance.md; of single measures only their rows.
Ends with 0 whether goals are met or not; with 2 when something cannot be run or an answer is wrong.
"""
import glob
import json
import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

import calls
import document
import editor_server
import instructions
import watched
from installations import HERE, World, Wrong, run

MEASURES = ("fresh", "counted_as_searched", "store", "many", "warm", "watched_view", "editor_server", "gates", "others")
IN_SEARCHED = {"watched_view", "editor_server"}  # need only the world with the most search folders


class Bench:
    def __init__(self, build, folder, quick):
        self.folder = folder
        self.quick = quick
        self.rounds = 5 if quick else 51
        # Copies, as an installer makes them: the start depends on how a file's pages lie in memory.
        self.tools = os.path.join(folder, "bin")
        os.mkdir(self.tools)
        for program in [f"{build}/cli/kelwhich", *glob.glob(f"{glob.escape(build)}/benchmarks/bench_*")]:
            if not os.path.exists(program):
                raise Wrong(f"there is no {program}: build it first")
            shutil.copy(program, self.tools)
        self.program = f"{self.tools}/kelwhich"
        self.rows = []
        self.points = {}  # for the plot
        self.has_index = "index build" in subprocess.run(
            [self.program, "index", "build", "--help"], capture_output=True, text=True, check=False).stdout

    def records(self, count):
        path = f"{self.folder}/records-{count}.jsonl"
        if not os.path.exists(path):
            with open(path, "w", encoding="utf-8") as out:
                subprocess.run([sys.executable, f"{HERE}/world.py", "records", str(count)], stdout=out, check=True)
        return path

    def make_worlds(self, areAll):
        """All, or only the one with the most search folders."""
        sizes, self.counts = ((10, 60, 100), (10000, 20000, 30000)) if self.quick else (
            (10, 100, 1000), (10000, 100000, 1000000))
        worlds = [World(self, size, self.counts) for size in sizes if areAll]
        if areAll:
            self.small, self.middle, self.large = worlds
        searched = (4, 14, 22) if self.quick else (10, 100, 1000)
        self.searched = {count: World(self, 5 * count, self.counts[:2]) for count in searched[0 if areAll else -1:]}
        time.sleep(2.5)  # folders younger than two seconds are not taken into an index
        for world in (*worlds, *self.searched.values()):
            if self.has_index:
                run(self.program, "-i", world.manifest("index"), "index", "build")
            self.check_answers(world)

    def check_answers(self, world):
        """All names from one snapshot, and some by a process of their own."""
        for manifest in [f"n{self.counts[0]}"] + (["index"] if self.has_index else []):
            questions = [(["--from", f"{world.root}/names"], world.answers)]
            questions += [([name], {name: world.answers[name]})
                          for name in random.Random(1).sample(list(world.answers), 10)]
            for words, expected in questions:
                got = {}
                for line in run(*self.ask(world, manifest, *words)).splitlines():
                    if line.startswith("  "):
                        got[name].append(line.split()[-1])
                    elif line:
                        name = line
                        got[name] = []
                if got != expected:
                    wrong = next((n for n in expected if got.get(n) != expected[n]), "a name too many")
                    raise Wrong(f"the answer of {wrong} is wrong: {got.get(wrong)}, not {expected.get(wrong)}")

    def beside(self, *commands, words=("-",), rounds=None, environment=None):
        """Runs the commands round after round; each one's median time in microseconds, and its memory in KiB."""
        with open(f"{self.folder}/words", "w", encoding="utf-8") as out:
            out.writelines(word + "\n" for word in words)
        line = [f"{self.tools}/bench_side_by_side", str(rounds or self.rounds), f"{self.folder}/words"]
        for i, command in enumerate(commands):
            line += (["---"] if i else []) + list(command)
        results = []
        for row in run(*line, env=os.environ | (environment or {})).splitlines():
            median, peak, own, code = row.split()
            results.append((float(median), int(peak), int(own)))
            if int(code) != 0:
                raise Wrong(f"{commands[len(results) - 1]} ends with {code}")
        return results

    def add(self, goal, what, figure, ratio, limit):
        met = "" if limit is None else "met" if ratio <= limit else "not met"
        self.rows.append((goal, what, figure, f"{ratio:.3g}", "" if limit is None else f"{limit:g}", met))
        print("  ".join(str(cell) for cell in self.rows[-1]), flush=True)

    def skip(self, goal, what, why):
        self.rows.append((goal, what, f"not run: {why}", "", "", ""))
        print("  ".join(self.rows[-1]), flush=True)

    def ask(self, world, manifest, *words):
        return [self.program, "-i", world.manifest(manifest), *words]

    def listing(self, world, folders="folders"):
        return [f"{self.tools}/bench_listing", f"{world.root}/{folders}"]

    def calls(self, world, folders):
        return [f"{self.tools}/bench_status", world.root, f"{world.root}/{folders}"]

    @property
    def empty(self):
        return [f"{self.tools}/bench_empty"]

    def fresh(self):
        """Goals 1 and 2: one question in a fresh process."""
        which = shutil.which("which.gnu")
        first = f"n{self.counts[0]}"
        limits = {self.small: (0.60, 1.15, None, None), self.middle: (None, None, 1.3, 0.65),
                  self.large: (None, None, 1.2, 2.0)}
        for world, (by_empty, by_which, by_listing, index_by_empty) in limits.items():
            goal, name, m = ("2" if world is self.large else "1"), world.shared[-1], f"M={world.size}"
            programs = [self.ask(world, first, name), self.empty, self.listing(world)]
            programs += [[which, "-a", f"{name}.vk"]] if which else []
            programs += [self.ask(world, "index", name)] if self.has_index else []
            times = [time for time, _, _ in self.beside(*programs, environment={"PATH": world.path()})]
            asked, empty, listed = times[:3]
            self.point("M", world.size, {"one question": asked, "one listing": listed, "an empty program": empty})
            if by_empty:
                self.add(goal, f"{m}: one question beside E", f"{asked:.0f} us", asked / empty, by_empty)
                if which:
                    self.add(goal, f"{m}: beside GNU which -a", f"{times[3]:.0f} us", asked / times[3], by_which)
                else:
                    self.skip(goal, f"{m}: beside GNU which -a", "install gnu-which")
            if by_listing:
                self.add(goal, f"{m}: one question beside one listing", f"{asked:.0f} us", asked / listed, by_listing)
            if which:
                self.point("M", world.size, {"which -a": times[3]})
            if index_by_empty and self.has_index:
                self.add(goal, f"{m}: with the index, beside E", f"{times[-1]:.0f} us", times[-1] / empty,
                         index_by_empty)
            elif index_by_empty:
                self.skip(goal, f"{m}: with the index, beside E", "there is no index yet")
            if self.has_index:
                self.point("M", world.size, {"with the index": times[-1]})
        self.never_asked(which)

    def counted_as_searched(self):
        """Goal 11: the same in S search folders, each with three class folders and a private one."""
        which = shutil.which("which.gnu")
        limits = ((0.65, None, None), (2, 0.85, None), (15, 5, 1.35))
        for (count, world), (by_empty, index_by_empty, by_calls) in zip(self.searched.items(), limits):
            name, s = world.shared[-1], f"S={count}"
            programs = [self.ask(world, f"n{self.counts[0]}", name), self.ask(world, "index", name), self.empty,
                        [self.program, "--version"], self.calls(world, "none"), self.calls(world, "folders")]
            programs += [[which, "-a", f"{name}.vk"]] if which else []
            asked, known, empty, start, none, calls, *other = (
                time for time, _, _ in self.beside(*programs, environment={"PATH": world.path("search-folders")}))
            self.add("11", f"{s}: one question beside E", f"{asked:.0f} us", asked / empty, by_empty)
            self.add("11", f"{s}: with the index, beside E", f"{known:.0f} us", known / empty, index_by_empty)
            if by_calls:
                self.add("11", f"{s}: with the index, beyond the start, beside the bare calls",
                         f"{known - start:.0f} us", (known - start) / (calls - none), by_calls)
                if other:
                    self.add("11", f"{s}: with the index, beside GNU which -a over the search folders alone",
                             f"{known:.0f} us", known / other[0], None)

    def never_asked(self, which):
        what = f"M={self.large.size}: with the index, beside GNU which -a, names never asked before"
        if not which or not self.has_index:
            self.skip("2", what, "there is no index yet" if which else "install gnu-which")
            return
        asked, other = self.beside(self.ask(self.large, "index", "%W"), [which, "-a", "%W.vk"],
                                   words=self.large.shared[:self.rounds + 1], environment={"PATH": self.large.path()})
        self.add("2", what, f"{asked[0]:.0f} us", asked[0] / other[0], 0.5)

    def store(self):
        """Goals 3 and 8: what records cost."""
        name = self.small.shared[-1]
        asked = [self.ask(self.small, f"n{count}", name) for count in self.counts]
        results = self.beside(*asked, self.ask(self.small, "installation", name), self.empty)
        times = [time for time, _, _ in results]
        for count, elapsed in zip(self.counts, times):
            self.point("N", count, {"one question": elapsed, "an empty program": times[4]})
        self.add("3", f"N={self.counts[2]} beside N={self.counts[0]}", f"{times[2]:.0f} us", times[2] / times[0], 1.15)
        self.add("3", f"the look-up among N={self.counts[2]}, in E", f"{times[2] - times[3]:.0f} us",
                 (times[2] - times[3]) / times[4], 0.10)
        few, many = self.beside(*(self.ask(self.large, f"n{count}", name) for count in (self.counts[0], self.counts[2])),
                                rounds=1)
        self.add("8", f"M={self.large.size}, N={self.counts[0]}: peak, of 16 MB", f"{few[1]} KiB", few[1] / 16384, 1)
        self.add("8", f"N={self.counts[2]}: memory of its own beyond N={self.counts[0]}, of 64 KiB",
                 f"{many[2] - few[2]} KiB", max(0, many[2] - few[2]) / 64, 1)

    def many(self):
        """Goal 4: many names from a file, from start to end."""
        world = self.large
        names = random.Random(2).sample(world.plain, 1000)
        path = f"{self.folder}/names"
        with open(path, "w", encoding="utf-8") as out:
            out.writelines(name + "\n" for name in names)
        with open(path + ".vk", "w", encoding="utf-8") as out:
            out.writelines(name + ".vk\n" for name in names)
        what = f"--from, {len(names)} names, M={world.size}"
        asked, listed, *index = (time for time, _, _ in self.beside(
            self.ask(world, f"n{self.counts[0]}", "--from", path), self.listing(world, "all-folders"),
            *([self.ask(world, "index", "--from", path)] if self.has_index else [])))
        self.add("4", f"{what}: beside one listing", f"{asked:.0f} us", asked / listed, 1.5)
        if index:
            self.add("4", f"{what}, with the index: beside one listing", f"{index[0]:.0f} us", index[0] / listed, 1.5)
        if not shutil.which("zsh"):
            self.skip("4", f"{what}: beside zsh whence -a", "install zsh")
            return
        zsh = [shutil.which("zsh"), "-fc", f'path=(${{(s.:.)SEARCHED}}); whence -a -- "${{(@f)$(<{path}.vk)}}"']
        asked, whence = self.beside(self.ask(world, f"n{self.counts[0]}", "--from", path), zsh,
                                    rounds=min(self.rounds, 31), environment={"SEARCHED": world.path()})
        self.add("4", f"{what}: beside zsh whence -a", f"{asked[0]:.0f} us", asked[0] / whence[0], 0.02)

    def warm(self):
        """Goals 5 and 6: names in a session with a snapshot, by Google Benchmark."""
        tool = f"{self.tools}/bench_session"
        if not os.path.exists(tool):
            self.skip("5, 6", "names in a fixed session", "install libbenchmark-dev")
            return
        low, middle, high = (f"n{count}" for count in self.counts)
        sessions = {(self.large, middle): {}, (self.small, middle): {}, (self.large, low): {}, (self.large, high): {}}
        for _ in range(2 if self.quick else 31):
            for (world, manifest), times in sessions.items():
                text = run(tool, world.manifest(manifest), self.shuffled(world), "--benchmark_filter=first|missing",
                           "--benchmark_format=json", "--benchmark_min_time=0.02")
                for figure in json.loads(text)["benchmarks"]:
                    times.setdefault(figure["name"], []).append(figure["cpu_time"] / 1000)
        first = {key: statistics.median(times["first"]) for key, times in sessions.items()}
        base = first[self.large, middle]
        missing = statistics.median(sessions[self.large, middle]["missing"])
        again = self.asked_again(middle)
        self.add("5", f"a name for the first time, M={self.large.size}, N={self.counts[1]}, in 2.0 us",
                 f"{base:.2f} us", base / 2, 1)
        self.add("5", "a name asked again, in 0.2 us", f"{again:.3f} us", again / 0.2, 1)
        self.add("6", f"M={self.large.size} beside M={self.small.size}", f"{base:.2f} us",
                 base / first[self.small, middle], 2)
        self.add("6", f"N={self.counts[2]} beside N={self.counts[0]}", f"{first[self.large, high]:.2f} us",
                 first[self.large, high] / first[self.large, low], 3)
        self.add("6", "a missing name beside a found one", f"{missing:.2f} us", missing / base, 1)
        self.beside_oxc_resolver(base, again)

    def shuffled(self, world):
        path = f"{world.root}/shuffled"
        if not os.path.exists(path):
            with open(f"{world.root}/names", encoding="utf-8") as lines:
                names = lines.readlines()
            random.Random(3).shuffle(names)
            with open(path, "w", encoding="utf-8") as out:
                out.writelines(names)
        return path

    def asked_again(self, manifest):
        """What one more name costs the program that it has resolved before, reading its line included."""
        paths = []
        for times in (1, 401):
            paths.append(f"{self.folder}/again{times}")
            with open(paths[-1], "w", encoding="utf-8") as out:
                out.write("".join(f"{name}\n" for name in self.large.shared[:500]) * times)
        once, often = self.beside(*(self.ask(self.large, manifest, "-q", "--from", path) for path in paths))
        return (often[0] - once[0]) / (400 * min(500, len(self.large.shared)))

    def beside_oxc_resolver(self, first, again):
        what = "beside oxc-resolver, which is given the folder"
        modules = os.environ.get("KELWHICH_NODE_MODULES", "")
        if not shutil.which("node") or not os.path.isdir(f"{modules}/oxc-resolver"):
            self.skip("5", what, "install nodejs and npm, then scripts/bench.sh --npm")
            return
        given = float(run("node", f"{HERE}/oxc_resolver.cjs", modules, self.large.root, f"{self.large.root}/expected"))
        self.add("5", f"{what}: first", f"{given:.2f} us", first / given, 1.5)
        self.add("5", f"{what}: again", f"{given:.2f} us", again / given, 0.15)

    def gates(self):
        """Goals 7 and 9: counts, which are the same in each run."""
        if not shutil.which("strace"):
            self.skip("7", "system calls", "install strace")
        else:
            for world in (self.middle, self.large):
                made, most, _ = calls.one_question(self.program, world.manifest(f"n{self.counts[0]}"), world.root)
                self.add("7", f"M={world.size}: system calls of one question", str(made), made / most, 1)
                if self.has_index:
                    made, _, most = calls.one_question(self.program, world.manifest("index"), world.root)
                    self.add("7", f"M={world.size}: with the index", str(made), made / most, 1)
            made = calls.asked_again(self.program, self.middle.manifest(f"n{self.counts[0]}"), self.middle.root,
                                     self.folder)
            self.add("7", "system calls of a name asked again", str(made), made, 0)
        measured = instructions.measure(f"{self.tools}/bench_resolve")
        if isinstance(measured, str):
            self.skip("9", "instructions of resolve", measured)
        else:
            for what, (count, baseline) in measured.items():
                ratio = count / baseline if baseline else 1 + count
                self.add("9", f"{what}, beside what is written down", str(count), ratio, instructions.GROWTH)

    def watched_view(self):
        watched.measure(self, list(self.searched.values())[-1], f"n{self.counts[1]}")

    def editor_server(self):
        editor_server.measure(self, list(self.searched.values())[-1], f"n{self.counts[1]}")

    def others(self):
        """The time that other programs take for one name; no goals."""
        world, name = self.large, self.large.shared[-1]
        finder = ("import sys\nfrom importlib.machinery import FileFinder, SourceFileLoader\n"
                  "[FileFinder(f, (SourceFileLoader, ['.vk'])).find_spec(sys.argv[2])"
                  " for f in open(sys.argv[1]).read().split()]")
        for package, program, words in (
                ("fd-find", "fdfind", ["--no-ignore", f"^{name}\\.vk$", world.root]),
                ("zsh", "zsh", ["-fc", f"path=(${{(s.:.)SEARCHED}}); whence -a {name}.vk"]),
                ("python3", "python3", ["-c", finder, f"{world.root}/folders", name])):
            what = f"M={world.size}: {program}, in questions"
            if not shutil.which(program):
                self.skip("", what, f"install {package}")
                continue
            asked, other = self.beside(self.ask(world, f"n{self.counts[0]}", name), [shutil.which(program), *words],
                                       rounds=min(self.rounds, 31), environment={"SEARCHED": world.path()})
            self.add("", what, f"{other[0]:.0f} us", other[0] / asked[0], None)

    def point(self, axis, at, values):
        for name, value in values.items():
            self.points.setdefault(axis, {}).setdefault(name, []).append((at, value))

    def table(self):
        head = ("goal", "what", "figure", "ratio", "at most", "")
        rows = [head, tuple("---" for _ in head)] + self.rows
        return "".join(f"| {' | '.join(row)} |\n" for row in rows)


def main(words):
    options = [word for word in words if word.startswith("--")]
    build, *chosen = [word for word in words if not word.startswith("--")] or [None]
    if build is None or not set(chosen) <= set(MEASURES) or not set(options) <= {"--quick", "--write"}:
        sys.exit(__doc__)
    with tempfile.TemporaryDirectory() as folder:
        try:
            bench = Bench(build, os.path.realpath(folder), "--quick" in options)
            bench.make_worlds(not chosen or not set(chosen) <= IN_SEARCHED)
            for measure in MEASURES:
                if measure in chosen or not chosen:
                    getattr(bench, measure)()
            if "--write" in options:
                document.write(bench.table(), None if chosen else bench.points)
        except Wrong as error:
            print(f"bench.py: {error}", file=sys.stderr)
            return 2
        print("\n" + bench.table(), end="")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
