"""Changes and questions that know nothing of each other: each answer must be made of states that the folders had
between the question and the answer, each folder for itself."""
import json
import os
import posixpath
import random
import shutil
import tempfile
import threading
import time

from watched import asking, world

SEARCHED = ["s0", "s1", "s2", "s0/nested", "linked", "deep/mid/s3", "s4"]
TARGETS = ["s4", "spare"]  # of the link
BELOW = ["", "/@C", "/@f", "/@p", "/private", "/+p", "/+p/@f"]
REAL = [folder + below for folder in [*SEARCHED, "spare"] if folder != "linked" for below in BELOW]
FOLDERS = [folder + below for folder in SEARCHED for below in BELOW]
FILES = ["f.vk", "f.vkx", "g.vk", "C.vk"]
NAMES = ["f", "g", "C", "p.f", "p.g"]
ASKERS = 3


class MovingTree:
    """Threads: one changes it; others read `states` once they had the lock."""

    def __init__(self, top, rng):
        self.top = top
        self.rng = rng
        self.lock = threading.Lock()
        self.count = 0  # of changes
        for folder in [*REAL, "away"]:
            os.makedirs(self.on_disk(folder), exist_ok=True)
        os.symlink(TARGETS[0], self.on_disk("linked"))
        self.states = {folder: [[0, None, self.files(folder)]] for folder in FOLDERS}  # from, to, files

    def on_disk(self, path):
        return os.path.join(self.top, path)

    def files(self, folder):
        """Those in a folder; none where there is no folder."""
        try:
            return {name for name in os.listdir(self.on_disk(folder)) if name in FILES}
        except OSError:
            return set()

    def change(self):
        act, *paths = self.some_change()
        with self.lock:
            before = time.monotonic_ns()
            try:
                act(*map(self.on_disk, paths))
            except OSError:  # a folder or a file is not there
                return
            after = time.monotonic_ns()
            self.count += 1
            for folder, states in self.states.items():
                if (files := self.files(folder)) != states[-1][2]:
                    states[-1][1] = after
                    states.append([before, None, files])

    def some_change(self):
        """What changes the disk, and the paths that it takes."""
        any_of = self.rng.choice
        file = f"{any_of(REAL)}/{any_of(FILES)}"
        kind = any_of(["file", "file", "rename", "move", "link"])
        if kind == "file":
            return (os.remove if os.path.exists(self.on_disk(file)) else os.mknod), file
        if kind == "rename":
            return os.rename, file, f"{any_of([posixpath.dirname(file), any_of(REAL)])}/{any_of(FILES)}"
        if kind == "link":
            target = any_of(TARGETS)
            return lambda path: world.replace(path, lambda new: os.symlink(target, new)), "linked"
        folder = any_of([*REAL, "deep", "deep/mid"])
        if os.path.exists(self.on_disk(folder)):
            return os.rename, folder, f"away/{self.count}"
        away = os.listdir(self.on_disk("away"))
        return (os.rename, "away/" + any_of(away), folder) if away else (os.makedirs, folder)


def wanted(name, folder):
    """The stem of the files that a name finds in a folder; nothing if it does not look there."""
    start = max((start for start in SEARCHED if (folder + "/").startswith(start + "/")), key=len)
    package, _, stem = name.rpartition(".")
    places = ["/+p", f"/+p/@{stem}", "/@p"] if package else ["", "/@C", "/@f", "/@p"]
    return stem if folder[len(start):] in places else None


def contradiction(tree, name, answer, asked, answered):
    """Why an answer holds in no state between the two times; nothing if each folder had one."""
    found = {folder: set() for folder in FOLDERS}
    for candidate in answer["candidates"]:
        folder, file = posixpath.split(os.path.relpath(candidate["path"], tree.top))
        found[folder].add(file)
    for folder, files in found.items():
        stem = wanted(name, folder)
        states = [state for state in tree.states[folder] if state[0] <= answered and (state[1] or answered) >= asked]
        possible = [{file for file in state[2] if file.split(".")[0] == stem} for state in states]
        # Below a link, the disk is asked for a listing first and then for each file: each holds for itself.
        each = folder.startswith("linked") and set.intersection(*possible) <= files <= set.union(*possible)
        if files not in possible and not each:
            return f"{name} was answered with {sorted(files)} in {folder}, where there were {possible}"
    return None


class Asker(threading.Thread):
    def __init__(self, tree, setting, number):
        super().__init__(daemon=True)
        self.tree = tree
        self.rng = random.Random(number)
        command = [setting.program, "-i", tree.on_disk("installation.json"), "batch", "--json"]
        self.batch = asking.Batch(command, tree.on_disk(f"errors{number}"))
        self.answers = self.crossed = 0  # of those that a change crossed
        self.ends = False
        self.failure = None

    def run(self):
        try:
            while not self.ends and not self.failure:
                name = self.rng.choice(NAMES)
                changes, asked = self.tree.count, time.monotonic_ns()
                answer, = self.batch.ask([name])
                answered = time.monotonic_ns()
                with self.tree.lock:  # so that the state that a change makes is known
                    self.crossed += changes != self.tree.count
                self.failure = contradiction(self.tree, name, answer, asked, answered)
                self.answers += 1
            self.batch.close()
        except Exception as error:  # pylint: disable=broad-except
            self.failure = f"{type(error).__name__}: {error}"


def run(setting, seed, changes):
    """Prints counts. Returns what cannot have been, or nothing."""
    rng = random.Random(seed)
    top = os.path.realpath(tempfile.mkdtemp(prefix="watch-"))
    tree = MovingTree(top, rng)
    with open(tree.on_disk("installation.json"), "w", encoding="utf-8") as out:
        json.dump({"searchPath": SEARCHED, "extensions": ["vkx", "vk"]}, out)
    askers = [Asker(tree, setting, number) for number in range(ASKERS)]
    for asker in askers:
        asker.start()
    while tree.count < changes and not any(asker.failure for asker in askers):
        for _ in range(rng.choice([1, 1, 3, 30])):
            tree.change()
        time.sleep(rng.choice([0, 0.0005, 0.003]))
    for asker in askers:
        asker.ends = True
        asker.join()
    shutil.rmtree(top)
    print(f"free: {tree.count} changes, {sum(asker.answers for asker in askers)} answers, of which a change crossed "
          f"{sum(asker.crossed for asker in askers)}")
    return next((asker.failure for asker in askers if asker.failure), None)
