"""Changes and questions in lock step: after each change, `batch` must answer as a process that begins anew."""
import collections
import os
import random
import re
import subprocess
import tempfile

from watched import asking, world
from watched.changes import Changes

MOST_UNOPENED = 5
# What `batch --stats` counts, and what it tells where nothing can be watched.
STATS = ["listed at the start", "later", "changes lost", "mounts changed", "links", "other disks", "unreadable",
         "beyond the limit"]
NOTHING = "folders cannot be watched"


class Setting:
    """What a round needs besides its seed: the program, and which kinds of changes are made."""

    def __init__(self, program, only=None):
        self.program = program
        self.only = only
        self.prefix = asking.unprivileged()
        self.made = collections.Counter()
        self.stats = collections.Counter()
        self.questions = 0
        self.unopened = 0  # answers of which neither a new process nor `batch --live` could give any


class Round:
    """One world with one `batch` over it. Its history: changes, names that were asked for, and when `batch` began."""

    def __init__(self, setting, manifest):
        self.setting = setting
        self.top = os.path.realpath(tempfile.mkdtemp(prefix="watch-"))
        world.make(self.top)
        self.manifest = manifest
        self.words = ["-i", os.path.join(self.top, manifest)]
        for change in [("store", 0), *([("index",)] if manifest == "indexed.json" else [])]:
            world.apply(change, self.top, setting.program)
        self.batch = self.live = None
        self.history = []
        self.unopened = 0  # times in a row that no new process could open the installation

    def opens(self):
        return not isinstance(self.ask_anew(["f"]), str)

    def ask_anew(self, names):
        return asking.ask_anew([*self.setting.prefix, self.setting.program, *self.words], names)

    def start(self):
        command = [*self.setting.prefix, self.setting.program, *self.words, "batch", "--json"]
        self.batch = asking.Batch([*command, "--stats"], os.path.join(self.top, "errors"))
        self.live = asking.Batch([*command, "--live"], os.path.join(self.top, "live-errors"))
        self.batch.ask(["nothing"])  # so that it is open
        self.live.ask(["nothing"])
        self.history.append((None, []))

    def change(self, changes):
        """Those that cannot be made are left out. Returns whether there is another one."""
        self.history += [([change], []) for change in changes]
        made = 0
        for change in changes:
            try:
                world.apply(change, self.top, self.setting.program)
                made += 1
            except (OSError, subprocess.CalledProcessError):
                pass
        return made > 0

    def ask(self, names):
        """What differs from the answers of a process that begins anew, or nothing."""
        self.history.append(([], names))
        asked = [name.format(top=self.top) for name in names]
        try:
            answers = self.batch.ask(asked)
        except asking.Silence as silence:
            return f"batch: {silence}"
        self.setting.questions += len(answers)
        expected = self.ask_anew(asked)
        if isinstance(expected, str):
            self.unopened += 1
            return self.compare_with_live(answers, asked, expected)
        self.unopened = 0
        differing = [pair for pair in zip(answers, expected) if pair[0] != pair[1]]
        return "batch:      {}\na new one:  {}".format(*differing[0]) if differing else None

    def compare_with_live(self, answers, asked, error):
        """For when no new process could open the installation. Those that have it open need no support packages, for
        example, but the store and the index."""
        for answer, right in zip(answers, self.live.ask(asked)):
            self.setting.unopened += "error" in right
            is_wrong = answer != right if "error" not in right else "/data/" in error and "error" not in answer
            if is_wrong:
                return f"batch:  {answer}\nlive:   {right}\na new one cannot open it: {error}"
        return None

    def close(self):
        told = self.batch.close() if self.batch else ""
        if self.live:
            self.live.close()
        world.destroy(self.top)
        for what in STATS:
            self.setting.stats[what] += sum(map(int, re.findall(what + r" (\d+)", told)))
        self.setting.stats[NOTHING] += told.count(NOTHING)


def shown(history):
    lines = []
    for changes, names in history:
        lines += ["batch begins"] if changes is None else ["  ".join(map(str, change)) for change in changes]
        lines += ["    asked: " + " ".join(names)] if names else []
    return "\n".join(lines)


def names_near(rng, changes):
    """Names that the changes may concern, and others."""
    words = [str(word) for change in changes for word in change[1:]]
    parts = {part.split(".")[0].lstrip("+@") for word in words for part in word.split("/")}
    parts -= {"", "tree", "host", "packages"}
    near = [name for name in world.NAMES if parts & set(re.split("[./+@]+", name))]
    chosen = rng.sample(near, min(3, len(near))) + rng.sample(world.NAMES, 3)
    return list(dict.fromkeys(chosen))


def run_round(setting, seed, count):
    """Some changes in a new world. Returns what differs and the history, or nothing."""
    rng = random.Random(seed)
    round_ = Round(setting, rng.choice(["installation.json", "indexed.json"]))
    changes = Changes(rng, round_.top, round_.manifest == "indexed.json")
    done = False
    try:
        for _ in range(rng.randrange(60)):
            round_.change(changes.next()[1])
        if not round_.opens():
            round_.change(changes.mend()[1])
        if not round_.opens():
            round_.close()
            return None
        round_.start()
        while count > 0 and round_.unopened < 2 * MOST_UNOPENED:
            kind, made = changes.mend() if round_.unopened == MOST_UNOPENED else changes.next(setting.only)
            if not round_.change(made):
                continue
            count -= 1
            setting.made[kind] += 1
            if difference := round_.ask(names_near(rng, made)):
                return round_, difference
        done = True
    finally:
        if not done and round_.batch:
            round_.batch.process.kill()
            round_.live.process.kill()
    round_.close()
    return None
