"""The table of scripts/proof.sh: each row is run in a copy of the sources, as they are and with a fault planted."""
import argparse
import dataclasses
import os
import re
import signal
import subprocess
import sys

from copy_sources import ROOT, copy_sources

COPY = ROOT / "build" / "proof"
DOCUMENT = ROOT / "docs" / "reliability.md"
MARKS = ("<!-- the table of scripts/proof.sh --write -->\n", "<!-- its end -->\n")

options = argparse.ArgumentParser(prog="proof.sh", allow_abbrev=False)
options.add_argument("words", nargs="*", help="choose the rows that hold all of them")
options.add_argument("--check", action="store_true", help="run nothing: see whether each fault can still be planted")
options.add_argument("--quick", action="store_true", help="leave mutation out and fuzz for seconds")
options.add_argument("--write", action="store_true", help="put the table into docs/reliability.md as well")
GIVEN = options.parse_args()
FUZZING = 5 if GIVEN.quick else 60  # seconds for each target
BUILD_LIMIT = 3600  # seconds


@dataclasses.dataclass
class Row:
    what: str
    build: str  # a shell command; fails only when something does not compile
    run: str
    figure: str  # matches the numbers to be added up; without a group, the line that is shown
    fault: str  # in words
    limit: int  # seconds that the command may take, some ten times what it does
    path: str = ""  # where it is planted
    old: str = ""
    new: str = ""
    prints: str = ""  # what the command must print of the fault, where it could fail for other reasons
    may_hang: bool = False  # the fault is also caught when the command runs into its limit
    caught_by: str = ""  # instead of these: a command that plants faults itself, and succeeds when they are caught


def unit(program, tests, preset="dev"):
    return {"build": f"scripts/configure.sh {preset} && cmake --build --preset {preset} --target {program} -- --quiet",
            "run": f"build/{preset}/tests/{program} --gtest_brief=1 --gtest_filter='{tests}'"}


def faults(script):
    return {"build": "scripts/configure.sh dev && cmake --build --preset dev --target kelwhich_program -- --quiet",
            "run": f"tests/faults/{script}.sh build/dev/cli/kelwhich"}


def watch(options):
    return {**faults("watch"), "run": f"tests/faults/watch.py build/dev/cli/kelwhich {options}", "limit": 1800,
            "path": "standalone/watch/FolderWatch.cpp", "prints": "a wrong answer"}


DEAD = "".join(f"if (name.size() == {size}) {{\n return false;\n}}\n" for size in range(100000, 100020))
ROWS = [
    Row("failing allocations of the library", **unit("library_tests", "FaultSweep.OfEveryAllocation"),
        figure=r"sweep: (\d+) failing", fault="a cache keeps what failed", limit=300,
        path="adaptors/Memoize.hpp", old="        cache.erase(place);\n", new=""),
    Row("failing allocations of the stand-alone host", **unit("standalone_tests", "HostSweep.OfEveryAllocation"),
        figure=r"sweep: (\d+) failing", fault="memory that is out is answered with an empty list", limit=600,
        path="standalone/Session.cpp",
        old="    auto places = NameSearch(installation, overlay.empty() ? now.files() : withOverlay).find(name);",
        new="    std::vector<FoundPlace> places;\n    try {\n"
            "        places = NameSearch(installation, overlay.empty() ? now.files() : withOverlay).find(name);\n    }"
            " catch (const std::bad_alloc&) {\n    }"),
    Row("failing questions to collaborators and host", **unit("library_tests", "FaultSweep.OfEveryQuestion"),
        figure=r"sweep: (\d+) failing", fault="a question that fails is answered with no", limit=300,
        path="adaptors/CachedFileSystemAdaptor.cpp", old="{ return inner_->exists(path); }",
        new="{ try { return inner_->exists(path); } catch (...) { return false; } }"),
    Row("random worlds compared with the model", **unit("library_tests", "*RandomWorlds.*"),
        figure=r"worlds: (\d+) as", fault="a class without a name is none", limit=1200,
        path="host/Paths.cpp", old="if (name.empty() || name.front() != u'@')",
        new="if (name.size() < 2 || name.front() != u'@')"),
    Row("meetings of six threads in the library", **unit("library_thread_tests", "Threads.*", "tsan"),
        figure=r"threads: (\d+) meetings", fault="a cache without its lock", limit=300,
        path="adaptors/Memoize.hpp", old="    const std::lock_guard guard(lock);\n",
        new="    static_cast<void>(lock);\n"),
    Row("meetings of six threads in one session", **unit("host_thread_tests", "HostSweep.*", "tsan"),
        figure=r"threads: (\d+) meetings", fault="a view of the disk without its lock", limit=300, may_hang=True,
        path="standalone/files/CachingFileTree.cpp", old="    const std::lock_guard guard(lock_);\n", new=""),
    Row("meetings of six threads in the watched view", **unit("host_thread_tests", "HostSweep.*Watched*", "tsan"),
        figure=r"threads: (\d+) meetings", fault="the view without its lock", limit=300, may_hang=True,
        path="standalone/watch/WatchedView.cpp",
        old="    const std::lock_guard guard(lock_);\n    ++counts_.questions;\n", new="    ++counts_.questions;\n"),
    Row("faults of system calls in look-ups", **faults("lookup"),
        figure=r"(\d+) faults:", fault="a listing that breaks off is taken for whole", limit=1800,
        path="standalone/files/RealFileTree.cpp",
        old="size < 0 && errno != ENOENT", new="size < 0 && errno == 0", prints=r"wrong: .* of getdents64: exit code 0"),
    Row("kills and errors of system calls in store builds", **faults("store-build"),
        figure=r"(\d+) (?:kills|errors)", fault="the disk's refusal to keep the new store goes unseen", limit=1800,
        path="standalone/files/AtomicFile.cpp", old="fsync(descriptor_.get()) != 0", new="fsync(descriptor_.get()) > 0",
        prints=r"FAILED: error=\w+ at fsync 1: "),
    Row("changes between two questions", **watch("--part lock-step --changes 2000"), figure=r"(\d+) changes",
        fault="a kind of event is ignored", old="IN_MOVED_FROM | IN_MOVED_TO", new="IN_MOVED_FROM"),
    Row("folders moved away and back", **watch("--part lock-step --only moves --changes 500"), figure=r"(\d+) changes",
        fault="the folders above are not watched", old="folder.above != nullptr)", new="folder.above == &folder)"),
    Row("mounts made, moved and removed", **watch("--part lock-step --only mounts --changes 500"),
        figure=r"(\d+) changes", fault="a mount is ignored", old="changes.areMountsOther = true;", new=""),
    Row("queues of changes that overflow", **watch("--part floods --changes 3000"), figure=r"changes lost (\d+)",
        fault="an overflow is ignored", old="changes.isQueueLost = true;", new=""),
    Row("folders beyond the limit of watches", **watch("--part watches --changes 2000"),
        figure=r"beyond the limit (\d+)", fault="such a folder is taken for watched",
        old="        return NotWatched::limit;\n", new="        return std::nullopt;\n"),
    Row("answers that changes cross", **watch("--part free --changes 10000"), figure=r"crossed (\d+)",
        fault="files that appear are ignored", old="IN_CREATE | IN_DELETE |", new="IN_DELETE |"),
    Row("requests of an editor that leave memory where it was", **faults("lookup") |
        {"run": "scripts/editors/load.py build/dev/cli/kelwhich 20000 100"}, figure=r"(\d+) requests", limit=600,
        fault="bytes that were handled are kept", path="cli/lsp/Frames.cpp",
        old="begin_ > bytes_.size() / 2", new="begin_ > bytes_.size()", prints=r"grown by \d{4}"),
    Row("inputs fuzzed", build="true", run=f"scripts/fuzz.sh {FUZZING}", figure=r"(\d+) inputs",
        fault="one for each target", limit=7200, caught_by="scripts/check-fuzz.sh"),
    Row("coverage of the library", build="true", run="scripts/coverage.sh",
        figure=r"(?m)^(.*\d % \(.*)$", fault="branches that no test takes", limit=3600, path="resolver/Predicates.cpp",
        old="bool isPlainName(const std::u16string& name) {\n",
        new=f"bool isPlainName(const std::u16string& name) {{\n    if (name.size() >= 100000) {{\n{DEAD}    }}\n",
        prints=r"(?m)^resolver/Predicates\.cpp:\d+: not reached: "),
    Row("lines of the public types' layout", build="true", run="scripts/check-abi.sh && wc -l tests/abi/layout.txt",
        figure=r"(\d+) tests", fault="a member more in a result", limit=600, path="include/tessgen/kelwhich/WhichResult.hpp",
        old="    WhichResultType type;\n", new="    bool planted;\n    WhichResultType type;\n",
        prints=r"(?m)^\+.*\bplanted$"),
    Row("mutants killed", build="true", run="scripts/mutate.py", figure=r"(?m)^mutants: (.*killed.*)$",
        fault="each mutant is one", limit=8 * 3600),
]


def shell(command, limit, folder=COPY):
    """The exit code and what is printed; no exit code when the limit ends the command and all that it started."""
    with subprocess.Popen(["bash", "-c", f"exec 2>&1; {command}"], cwd=folder, stdout=subprocess.PIPE, text=True,
                          errors="replace", start_new_session=True) as process:
        try:
            output, _ = process.communicate(timeout=limit)
            return process.returncode, output
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            return None, process.communicate()[0] + f"\nproof.sh: ended after {limit} seconds\n"
        except BaseException:  # an interrupted proof leaves nothing running
            os.killpg(process.pid, signal.SIGKILL)
            raise


def figure_of(row, output):
    found = re.findall(row.figure, output)
    if found and all(text.isdigit() for text in found):
        return f"{sum(map(int, found)):,}"
    return found[-1].strip() if found else ""


def caught(row):
    """Whether the row's own command reports the planted fault."""
    if row.caught_by:
        return "yes" if shell(row.caught_by, row.limit, ROOT)[0] == 0 else "NO"
    if not row.path:  # mutants are faults themselves
        return "yes"
    path = COPY / row.path
    text = path.read_text()
    path.write_text(text.replace(row.old, row.new))
    try:
        status, output = shell(row.build, BUILD_LIMIT)
        if status != 0:
            return "NOT PLANTED: it does not compile"
        status, output = shell(row.run, row.limit)
        if (row.may_hang if status is None else status != 0 and re.search(row.prints, output)):
            return "yes"
        sys.stderr.write(output[-3000:])
        return "NO"
    finally:
        path.write_text(text)


def prove(row):
    script = row.run.split()[0]
    if script.startswith("scripts/") and not (ROOT / script).exists():
        return ["", "not run: no " + script, "", ""]
    if GIVEN.quick and row.run.startswith("scripts/mutate"):
        return ["", "not run: --quick", row.fault, ""]
    status, output = shell(row.build, BUILD_LIMIT)
    if status == 0:
        status, output = shell(row.run, row.limit)
    figure = figure_of(row, output)
    if status != 0 or not figure:
        sys.stderr.write(output[-3000:])
        return [figure, "FAILED", row.fault, ""]
    return [figure, "passed", row.fault, caught(row)]


def write(lines):
    """Writes the rows into the document; rows that were not run stay as they are."""
    what = lambda line: line.split(" | ")[0]
    text = DOCUMENT.read_text()
    before, rest = text.split(MARKS[0])
    table, after = rest.split(MARKS[1])
    rows = {what(line): line for line in table.splitlines()[2:] + lines[2:] if line}
    known = [rows["| " + row.what] for row in ROWS if "| " + row.what in rows]
    DOCUMENT.write_text(before + MARKS[0] + "\n" + "\n".join(lines[:2] + known) + "\n\n" + MARKS[1] + after)


def unplantable():
    """The faults that can no longer be planted, since the sources lack the text."""
    stale = [f"{row.path}: not there once: {row.old}" for row in ROWS
             if row.path and (ROOT / row.path).read_text().count(row.old) != 1]
    status, output = shell("patch --dry-run -p1 <fuzz/planted.patch", 60, ROOT)
    return stale + ([f"fuzz/planted.patch does not apply: {output}"] if status != 0 else [])


def main():
    chosen = [row for row in ROWS if all(word in row.what for word in GIVEN.words)]
    if not chosen:
        options.error("no row holds all of: " + " ".join(GIVEN.words))
    if stale := unplantable():
        sys.exit("\n".join(stale) + "\nproof.sh: faults that cannot be planted; bring them to what the sources are now")
    if GIVEN.check:
        return
    COPY.mkdir(parents=True, exist_ok=True)
    copy_sources(COPY)
    lines = ["| what | how many | result | planted fault | caught |", "|---|---|---|---|---|"]
    for row in chosen:
        lines.append("| " + " | ".join([row.what, *prove(row)]) + " |")
        print(lines[-1] if len(lines) > 3 else "\n".join(lines), flush=True)
    if GIVEN.write:
        write(lines)
    bad = [line for line in lines[2:] if re.search(r"\| (FAILED|NO|NOT PLANTED|not run: no)", line)]
    if bad:
        sys.exit("proof.sh: " + str(len(bad)) + " of the rows prove nothing")


if __name__ == "__main__":
    main()
