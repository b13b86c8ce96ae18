"""Changes and questions in lock step: after each change, `batch` must answer as a process that begins anew."""
import collections
import os
import random
import re
import subprocess
import tempfile

from watched import asking, world
from watched.changes import Changes

MANIFEST_NOTE = ": changed; start kelwhich batch again to use it"


class Setting:
    """What a round needs besides its seed: the program, how it is started, and which kinds of changes are made."""

    def __init__(self, program, options=(), only=None):
        self.program = program
        self.options = list(options)  # of batch
        self.only = only
        self.prefix = asking.unprivileged()
        self.made = collections.Counter()
        self.questions = 0
        self.unopened = 0  # questions for which a new process could not open the installation


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
        self.batch = None
        self.history = []
        self.is_touched = False

    def opens(self):
        return not isinstance(self.ask_anew(["f"]), str)

    def ask_anew(self, names):
        return asking.ask_anew([*self.setting.prefix, self.setting.program, *self.words], names)

    def start(self):
        command = [*self.setting.prefix, self.setting.program, *self.words, "batch", "--json", *self.setting.options]
        self.batch = asking.Batch(command, os.path.join(self.top, "errors"))
        self.batch.ask(["nothing"])  # so that it is open
        self.history.append((None, []))

    def change(self, changes):
        """Those that cannot be made are left out. Returns whether there is another one."""
        self.history += [([change], []) for change in changes]
        made = 0
        for change in changes:
            try:
                world.apply(change, self.top, self.setting.program)
                made += 1
                self.is_touched |= self.batch is not None and change == ("touch", self.manifest)
            except (OSError, subprocess.CalledProcessError):
                pass
        return made > 0

    def ask(self, names, compares=True):
        """What differs from the answers of a process that begins anew, or nothing."""
        self.history.append(([], names))
        asked = [name.format(top=self.top) for name in names]
        try:
            answers = self.batch.ask(asked)
        except asking.Silence as silence:
            return f"batch: {silence}"
        return self.compare(answers, self.ask_anew(asked)) if compares else None

    def compare(self, answers, expected):
        self.setting.questions += len(answers)
        if isinstance(expected, str):
            error = {"message": expected}
            self.setting.unopened += sum(answer.get("error") != error for answer in answers)
            return None
        for answer, right in zip(answers, expected):
            if answer != right:
                return f"batch:      {answer}\na new one:  {right}"
        return None

    def close(self):
        """What it told on standard error that it should not have, or the reverse; else nothing."""
        told = self.batch.close() if self.batch else ""
        world.destroy(self.top)
        if told.count(MANIFEST_NOTE) != int(self.is_touched):
            return f"the manifest was {'' if self.is_touched else 'not '}touched, and this was told:\n{told}"
        return None


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
        before = rng.randrange(60)
        while before > 0 or not round_.opens():
            round_.change(changes.next()[1])
            before -= 1
        round_.start()
        while count > 0:
            kind, made = changes.next(setting.only)
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
    difference = round_.close()
    return (round_, difference) if difference else None
