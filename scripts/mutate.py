#!/usr/bin/env python3
"""Changes sources one place at a time and sees whether the tests notice.

Each mutant is compiled by itself, linked with the tests' objects and tested until the first failure: the library's by
its own tests, those of analysis/, standalone/ and cli/ by the tests of each and then by the program's sessions. A
survivor of the library must stand in tests/mutation-survivors.txt, below the reason why no test can or need see it.
Exit codes: 0 enough are killed, every survivor is explained and, of all mutants, nothing else; 1 not so; 2 the tests
fail without a mutant.
"""
import argparse
import concurrent.futures
import fcntl
import json
import os
import pathlib
import queue
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "mutants"
LIBRARY = ("resolver", "entry", "host", "adaptors")
# The programs that test the sources of a folder, in this order.
TESTED_BY = {folder: ("tests/library_tests",) for folder in LIBRARY} | {
    "analysis": ("tests/library_tests", "cli/kelwhich"), "standalone": ("tests/standalone_tests", "cli/kelwhich"),
    "cli": ("tests/program_tests", "cli/kelwhich")}
DEMANDED = 90  # percent of the library's mutants that compile
DEMANDED_ELSEWHERE = 75
SURVIVORS = ROOT / "tests" / "mutation-survivors.txt"

SWAPS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&", "+": "-", "-": "+",
         "true": "false", "false": "true"}
TOKEN = re.compile(r"""(?P<comment>//[^\n]*) | (?P<directive>^\#[^\n]*)
    | (?P<skipped>^(?:template|using|namespace)\b[^\n]*)
    | (?P<text>u?"(?:\\.|[^"\\])*") | (?P<unit>u?'(?:\\.|[^'\\])+')
    | (?P<word>(?<=[ (\[{,!])(?:true|false)\b) | (?P<number>(?<=[ (\[{])\d+U?\b)
    | (?P<operator>(?<=\ )(?:==|!=|<=|>=|<|>|&&|\|\||\+|-)(?=\ ))
    | (?P<negation>(?<=[ (\[])!(?=[\w(]))
    """, re.X | re.M)
# A statement by itself, from after the one before to its ";".
STATEMENT = re.compile(r"""(?<=[;{}\n])[ ]+
    (?P<body>return [^;]+ | (?:\+\+|--)?[\w.\->:\[\]*]+(?:\([^;{]*\)|[ ]\+?=[ ][^;{]+|(?=;)));""", re.X)
NO_CALL = re.compile(r"^(?:return|throw|using|const|auto|constexpr|break|continue|default|case|case\b.*|struct|enum)\b")


class Mutant:
    def __init__(self, path, text, begin, end, replacement):
        self.path, self.begin = path, begin
        self.content = text[:begin] + replacement + text[end:]
        self.line = text.count("\n", 0, begin) + 1
        first = text.rfind("\n", 0, begin) + 1
        last = text.find("\n", end)
        self.old = " ".join(text[first:last].split())
        self.new = " ".join((text[first:begin] + replacement + text[end:last]).split())

    def key(self):
        return f"{self.path}: {self.old} => {self.new}"

    def __str__(self):
        return f"{self.path}:{self.line}\n    - {self.old}\n    + {self.new}"


def replacement_of(match):
    kind, token = match.lastgroup, match.group()
    if kind in ("operator", "word"):
        return SWAPS[token]
    if kind == "negation":
        return ""
    if kind == "number":
        number = int(token.rstrip("U"))
        return "0" if number == 1 else str(number + 1)
    if kind == "text": # another last character, or one where there is none
        return token[: max(token.index('"') + 1, len(token) - 2)] + '?"'
    if kind == "unit":
        return token[: token.index("'")] + "'?'"
    return None  # comments and the like


def mutants_of(path):
    text = (ROOT / path).read_text()
    quiet = []  # comments, directives: nothing in them counts
    for match in TOKEN.finditer(text):
        if match.lastgroup in ("comment", "directive", "skipped"):
            quiet.append(match.span())
        elif (replacement := replacement_of(match)) is not None:
            yield Mutant(path, text, *match.span(), replacement)
    for match in STATEMENT.finditer(text):
        begin, end = match.span("body")
        body = match.group("body")
        if any(a <= begin < b for a, b in quiet) or text[text.rfind("\n", 0, begin) + 1 :].lstrip().startswith("for ("):
            continue
        if body.startswith("return "):
            if body not in ("return {}", "return true", "return false", "return std::nullopt"):
                yield Mutant(path, text, begin, end, "return {}")
        elif not NO_CALL.match(body):
            yield Mutant(path, text, begin, end, "")


def folder_of(path):
    return path.split("/")[0]


class Program:
    """A program's link, with any of its objects in place of the built ones, and how it tests."""

    def __init__(self, name):
        self.name = name
        commands = run(["ninja", "-C", BUILD, "-t", "commands", "-s", name]).stdout
        self.link = [*shlex.split(commands.split("&&")[1]), "-fuse-ld=gold"]

    def linked(self, objects, folder):
        """Links with each new object in place of the built one, or before the archive that holds that."""
        link = list(self.link)
        for built, new in objects.items():
            if built in link:
                link[link.index(built)] = str(new)
            elif (archive := self.archive_of(built)) is not None:
                link.insert(archive, str(new))
        program = folder / pathlib.Path(self.name).name
        link[link.index("-o") + 1] = str(program)
        run(link, cwd=BUILD)
        return program

    def archive_of(self, built):
        library = re.sub(r"CMakeFiles/(\w+)\.dir/.*", r"lib\1.a", built)
        return self.link.index(library) if library in self.link else None

    def holds(self, built):
        return built in self.link or self.archive_of(built) is not None

    def passes(self, program):
        if self.name != "cli/kelwhich":
            return succeeds([program, "--gtest_fail_fast", "--gtest_brief=1"])
        environment = os.environ | {"pages": str(BUILD / "cli" / "generated")}
        sessions = [session for session in sorted(ROOT.glob("tests/program/*.session"))
                    if session.stem != "memory"]  # it needs a static program
        documents = [ROOT / "README.md", *sorted(ROOT.glob("docs/*.md"))]
        return (all(succeeds([ROOT / "tests/program/run.sh", program, session], env=environment) for session in sessions)
                and succeeds([ROOT / "tests/docs/commands.py", program, *documents]))


class Tests:
    """The programs that test the folders."""

    def __init__(self, folders, worlds):
        cache = {"CMAKE_BUILD_TYPE": "Debug", "CMAKE_CXX_FLAGS_DEBUG": "-O1 -D_GLIBCXX_ASSERTIONS",
                 "KELWHICH_RANDOM_WORLDS": worlds, "KELWHICH_STATIC_PROGRAM": "OFF"}
        run(["cmake", "-G", "Ninja", "-S", ROOT, "-B", BUILD, *[f"-D{name}={value}" for name, value in cache.items()]])
        names = sorted({name for folder in folders for name in TESTED_BY[folder]})
        pages = ["kelwhich_page_files"] if "cli/kelwhich" in names else []
        run(["cmake", "--build", BUILD, "--target", *names, *pages, "--", "--quiet"])
        self.programs = {name: Program(name) for name in names}
        self.compile = {}
        for entry in json.loads((BUILD / "compile_commands.json").read_text()):
            source = os.path.relpath(entry["file"], ROOT)
            command = shlex.split(entry["command"])
            command = command[command[0].endswith("ccache") :]
            if folder_of(source) in folders and self.programs_with(source, command):
                self.compile[source] = command
        self.includers = {source: self.included(command) for source, command in self.compile.items()}

    def programs_with(self, source, command):
        built = command[command.index("-o") + 1]
        return any(self.programs[name].holds(built) for name in TESTED_BY[folder_of(source)])

    @staticmethod
    def included(command):
        listed = run([*command[: command.index("-o")], "-MM", command[-1]], cwd=BUILD).stdout
        return {os.path.relpath(name, ROOT) for name in listed.replace("\\\n", " ").split()[1:]}

    def broken(self):
        """The programs that fail without a mutant."""
        return [name for name, program in self.programs.items() if not program.passes(BUILD / name)]

    def outcome(self, mutant, folder):
        """`not compiled`, `not linked` into any program, `killed` or `survived`."""
        changed = folder / mutant.path
        changed.parent.mkdir(parents=True, exist_ok=True)
        changed.write_text(mutant.content)
        try:
            objects = {}
            for source in [s for s in self.compile if mutant.path in self.includers[s]]:
                command = self.compile[source]
                built = folder / (source.replace("/", "_") + ".o")
                given = changed if source == mutant.path else ROOT / source
                anew = [command[0], f"-I{folder}", *command[1 : command.index("-o")], "-w", "-O0", "-o", built]
                if subprocess.run([*anew, "-c", given], cwd=BUILD, capture_output=True).returncode != 0:
                    return "not compiled"
                objects[command[command.index("-o") + 1]] = built
            if not objects:
                return "not linked"
            for name in TESTED_BY[folder_of(mutant.path)]:
                program = self.programs[name]
                if not program.passes(program.linked(objects, folder)):
                    return "killed"
            return "survived"
        finally:
            changed.unlink()


def succeeds(command, **options):
    """Fails what takes three minutes of processor time, since a mutant may run for ever; or ten minutes, since it may
    wait. The tests take up to 80 s with a header of the library changed, since the sources with it are not optimised."""
    def limit():
        resource.setrlimit(resource.RLIMIT_AS, (2 << 30, 2 << 30))
        resource.setrlimit(resource.RLIMIT_CPU, (180, 180))

    try:
        return subprocess.run([str(part) for part in command], capture_output=True, timeout=600, preexec_fn=limit,
                              **options).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def run(command, **options):
    done = subprocess.run([str(part) for part in command], capture_output=True, text=True, **options)
    if done.returncode != 0:
        sys.exit(f"mutate.py: {command[0]} failed:\n{done.stdout}{done.stderr}")
    return done


def sources_of(name):
    """The source itself, or those below a folder."""
    if (ROOT / name).is_dir():
        return sorted(str(path.relative_to(ROOT)) for path in (ROOT / name).rglob("*.?pp"))
    return [name]


def explained():
    lines = SURVIVORS.read_text().splitlines() if SURVIVORS.exists() else []
    return {line for line in lines if line and not line.startswith("#")}


def main():
    options = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    options.add_argument("paths", nargs="*", help="sources or folders to mutate (default: all of the library's)")
    options.add_argument("--sample", type=int, help="how many mutants to try (default: all)")
    options.add_argument("--seed", type=int, default=1, help="which ones, and in which order")
    options.add_argument("--worlds", type=int, default=2000, help="random worlds a mutant is asked about")
    options.add_argument("--jobs", type=int, default=2)
    options.add_argument("--progress", action="store_true", help="report every 20 mutants on standard error")
    options.add_argument("--list", action="store_true", help="only list the mutants")
    given = options.parse_args()

    paths = [path for name in given.paths or LIBRARY for path in sources_of(name)]
    folders = {folder_of(path) for path in paths}
    demanded = DEMANDED if folders <= set(LIBRARY) else DEMANDED_ELSEWHERE
    mutants = [mutant for path in paths for mutant in mutants_of(path)]
    random.Random(given.seed).shuffle(mutants)
    mutants = mutants[: given.sample]
    if given.list:
        print(*mutants, f"{len(mutants)} mutants", sep="\n")
        return 0
    run([ROOT / "scripts" / "setup.sh", "gates"])
    BUILD.mkdir(parents=True, exist_ok=True)
    alone = open(BUILD.parent / ".mutants.lock", "w", encoding="utf-8")  # one run at a time in one folder
    fcntl.flock(alone, fcntl.LOCK_EX)
    tests = Tests(folders, given.worlds)
    if broken := tests.broken():
        print("mutate.py: fails without a mutant: " + ", ".join(broken), file=sys.stderr)
        return 2

    free = queue.Queue()
    for job in range(given.jobs):
        folder = BUILD / f"mutant{job}"
        shutil.rmtree(folder, ignore_errors=True)  # a run that was killed leaves its change
        free.put(folder)

    def attempt(mutant):
        folder = free.get()
        try:
            return mutant, tests.outcome(mutant, folder)
        finally:
            free.put(folder)

    counts = {"killed": 0, "survived": 0, "not compiled": 0, "not linked": 0}
    known, unexplained, survivors = explained(), 0, set()
    with concurrent.futures.ThreadPoolExecutor(given.jobs) as pool:
        for mutant, outcome in pool.map(attempt, mutants):
            counts[outcome] += 1
            if given.progress and sum(counts.values()) % 20 == 0:
                print(counts, file=sys.stderr, flush=True)
            if outcome == "survived":
                unexplained += folder_of(mutant.path) in LIBRARY and mutant.key() not in known
                print("survived" + (", explained" if mutant.key() in known else ""), mutant, flush=True)
                survivors.add(mutant.key())
    stale = set() if given.paths or given.sample else known - survivors
    for key in sorted(stale):
        print(f"{SURVIVORS.relative_to(ROOT)}: no longer survives: {key}")
    tried = counts["killed"] + counts["survived"]
    percent = 100 * counts["killed"] / tried if tried else 0
    print(f"mutants: {counts['killed']} of {tried} killed ({percent:.1f} %), {counts['survived']} survived, "
          f"{unexplained} of them unexplained, {counts['not compiled']} not compiled, "
          f"{counts['not linked']} not linked")
    return 0 if percent >= demanded and unexplained == 0 and not stale else 1


if __name__ == "__main__":
    sys.exit(main())
