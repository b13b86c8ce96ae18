"""A tree that is changed without pause, and every state that each of its folders had."""
import os
import posixpath
import time

from watched import world

SEARCHED = ["s0", "s1", "s2", "s0/nested", "linked", "deep/mid/s3", "s4"]
TARGETS = ["s4", "spare"]  # of the link
BELOW = ["", "/@C", "/@f", "/@p", "/private", "/+p", "/+p/@f"]
REAL = [folder + below for folder in dict.fromkeys([*SEARCHED, *TARGETS]) if folder != "linked" for below in BELOW]
FOLDERS = [folder + below for folder in SEARCHED for below in BELOW]
FILES = ["f.vk", "f.vkx", "g.vk", "C.vk"]


class MovingTree:
    """Folders are dictionaries, files are None. Threads: one changes it; any may read `states`."""

    def __init__(self, top, rng):
        self.top = top
        self.rng = rng
        self.tree = {"away": {}}
        self.link = TARGETS[0]
        self.count = 0  # of changes
        for folder in [*REAL, "away"]:
            os.makedirs(self.on_disk(folder), exist_ok=True)
            node = self.tree
            for part in folder.split("/"):
                node = node.setdefault(part, {})
        os.symlink(self.link, self.on_disk("linked"))
        self.states = {folder: [[0, None, frozenset()]] for folder in FOLDERS}  # from, to, files

    def on_disk(self, path):
        return os.path.join(self.top, path)

    def has(self, path):
        folder, name = posixpath.split(path)
        return name in self.at(folder)

    def at(self, path):
        """What is in a folder; nothing where none is."""
        node = self.tree
        for part in path.split("/") if path else []:
            node = {} if node is None else node.get(self.link if part == "linked" else part)
        return {} if node is None else node

    def all(self, is_wanted, folder=""):
        """The paths of what the tree holds, folders or files."""
        for name, below in self.at(folder).items():
            path = posixpath.join(folder, name)
            if is_wanted(below):
                yield path
            yield from self.all(is_wanted, path)

    def change(self, act, *paths):
        """`act` changes the disk; the model is changed already."""
        self.count += 1
        before = time.monotonic_ns()
        ended = []
        for folder, states in self.states.items():
            files = frozenset(name for name, below in self.at(folder).items() if below is None)
            if files != states[-1][2]:
                ended.append(states[-1])
                states.append([before, None, files])
        act(*map(self.on_disk, paths))
        after = time.monotonic_ns()
        for state in ended:
            state[1] = after

    def rename(self, old, new):
        node = self.at(posixpath.dirname(old)).pop(posixpath.basename(old))
        self.at(posixpath.dirname(new))[posixpath.basename(new)] = node
        self.change(os.rename, old, new)

    def change_anything(self):
        self.rng.choice([self.make_or_remove, self.make_or_remove, self.rename_file, self.move_folder,
                         self.lead_elsewhere])()

    def some_folder(self):
        return self.rng.choice(list(self.all(lambda below: below is not None)))

    def make_or_remove(self):
        folder, name = self.some_folder(), self.rng.choice(FILES)
        if self.at(folder).pop(name, "absent") is None:
            self.change(os.remove, f"{folder}/{name}")
        else:
            self.at(folder)[name] = None
            self.change(os.mknod, f"{folder}/{name}")

    def rename_file(self):
        if files := list(self.all(lambda below: below is None)):
            old = self.rng.choice(files)
            new = self.rng.choice([posixpath.dirname(old), self.some_folder()]) + "/" + self.rng.choice(FILES)
            if new != old:
                self.rename(old, new)

    def move_folder(self):
        """Away, or one that is away to its place; also one that lies above a search folder."""
        path = self.rng.choice([*REAL, "deep", "deep/mid"])
        away = [name for name, below in self.at("away").items() if below is not None]
        if self.has(path):
            self.rename(path, f"away/{self.count}")
        elif away and ("/" not in path or self.has(posixpath.dirname(path))):
            self.rename("away/" + self.rng.choice(away), path)

    def lead_elsewhere(self):
        self.link = self.rng.choice(TARGETS)
        self.change(lambda path: world.replace(path, lambda new: os.symlink(self.link, new)), "linked")
