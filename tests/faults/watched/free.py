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

from watched import asking
from watched.moving import FOLDERS, SEARCHED, MovingTree

NAMES = ["f", "g", "C", "p.f", "p.g"]
ASKERS = 3


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
                self.failure = contradiction(self.tree, name, answer, asked, time.monotonic_ns())
                self.answers += 1
                self.crossed += changes != self.tree.count
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
            tree.change_anything()
        time.sleep(rng.choice([0, 0.0005, 0.003]))
    for asker in askers:
        asker.ends = True
        asker.join()
    shutil.rmtree(top)
    print(f"free: {tree.count} changes, {sum(asker.answers for asker in askers)} answers, of which a change crossed "
          f"{sum(asker.crossed for asker in askers)}")
    return next((asker.failure for asker in askers if asker.failure), None)
