"""Random changes of the world, by kind. Each kind returns one change or several that follow each other at once."""
import os
import posixpath

from watched import namespaces, world
from watched.picking import Picking

MOST_FILES = 220  # then deletions are preferred
MOST_OPEN = 2  # folders that are away at the same time; so with those that are closed or mounted over


class Changes(Picking):
    def __init__(self, rng, top, indexed):
        super().__init__(rng, top)
        self.kinds = {kind: make for kind, make in vars(Changes).items() if kind in WEIGHTS}
        if not indexed:
            del self.kinds["index"]
        if not namespaces.may_mount():
            del self.kinds["mounts"]
        self.open = []  # a kind, a path, and what ends what a change of that kind began there

    def next(self, only=None):
        """A kind, and its changes."""
        kinds = [kind for kind in self.kinds if (kind in only if only else kind != "floods")]
        kind = self.rng.choices(kinds, [WEIGHTS[kind] for kind in kinds])[0]
        if kind == "creations" and not only and len(self.everything()) > MOST_FILES:
            kind = "deletions"
        return kind, self.kinds[kind](self)

    def mend(self):
        """Ends whatever may be in the way of opening the installation, the last first."""
        ends = [change for _, _, end in reversed(self.open) for change in end]
        self.open = []
        return "mending", [*ends, ("store", 0), ("index",)]

    def end(self, kind, probability):
        """Ends what an earlier change of the kind began, or returns nothing."""
        opened = [opened for opened in self.open if opened[0] == kind and self.exists(opened[1])]
        if not opened or (len(opened) < MOST_OPEN and self.rng.random() >= probability):
            return None
        self.open.remove(chosen := self.any(*opened))
        return chosen[2]

    def begin(self, kind, path, changes, *end):
        """`changes`, which `end` ends while there is such a path."""
        self.open.append((kind, path, list(end)))
        return changes

    def creations(self):
        place = self.place()
        if self.rng.random() < 0.6:
            return [("folders", posixpath.dirname(place)), ("file", place)][self.any(0, 1, 1) :]
        name = self.any(*world.FILES)
        return [("folder", place), ("file", f"{place}/{name}")][: self.any(1, 2, 2)]

    def deletions(self):
        return [("remove", self.existing())]

    def renames(self):
        old = self.existing()
        new = self.any(posixpath.dirname(old) + "/" + self.any(*world.FILES, *world.FOLDERS), self.place())
        return [(self.any("rename", "rename", "rename", "exchange"), old, self.any(new, new, self.existing()))]

    def links(self):
        place = self.any(self.place(), "tree/again", "tree/via", self.existing(os.path.islink))
        up = "../" * place.count("/")
        to = self.any(up + self.existing(), up + self.existing_folder(), "{top}/" + self.folder(), "../mine", ".",
                      "nowhere", posixpath.basename(place), up + "other", up + "tree/host/lib/two")
        return [self.any(("link", to, place), ("link", to, place), ("link", to, place), ("remove", place),
                         ("hard link", self.existing(os.path.isfile), place))]

    def moves(self):
        """Folders away, and back."""
        if back := self.end("moves", 0.5):
            return back
        old = self.any("tree", "data", *(self.known_folder() for _ in range(6)))
        new = self.unused("away")
        if self.rng.random() < 0.3:
            return [("rename", old, new), ("rename", new, old)]
        others = [("folder", old), ("file", old + "/f.vk")][: self.any(0, 0, 1, 2)]
        return self.begin("moves", new, [("rename", old, new), *others], ("remove", old), ("rename", new, old))

    def modes(self):
        if back := self.end("modes", 0.6):
            return back
        path = self.any(*(self.known_folder() for _ in range(6)), self.existing(), self.existing(), "data",
                        "data/support.cdb", "data/search.cdb")
        mode = self.any("0", "111", "444", "500", "333")
        return self.begin("modes", path, [("mode", mode, path)], ("mode", "755", path))

    def replacements(self):
        """Files by folders and the reverse, and by others of the same kind."""
        path, new = self.existing(), self.unused("away")
        full = [("folder", new), ("file", new + "/" + self.any(*world.FILES))]
        return [("remove", path), *self.any([("file", path)], [("folder", path), ("file", path + "/f.vk")],
                                            [*full, ("rename", new, path)], [("file", new), ("rename", new, path)])]

    def stores(self):
        build = ("store", self.any(*range(len(world.RECORDS))))
        if self.rng.random() < 0.7:
            return [build]
        change = self.any(("rename", "data/support.cdb", self.unused("data")), ("damage", "data/support.cdb"))
        return self.begin("stores", "data", [change], build)

    def index(self):
        if self.rng.random() < 0.7:
            return [("index",)]
        change = self.any(("remove", "data/search.cdb"), ("damage", "data/search.cdb"))
        return self.begin("index", "data", [change], ("index",))

    def mounts(self):
        if back := self.end("mounts", 0.5):
            return back
        target = self.any(self.known_folder(), self.known_folder(), self.existing())
        is_file = os.path.isfile(os.path.join(self.top, target))
        source = self.existing(os.path.isfile) if is_file else self.known_folder()
        moved = self.end("mounts", 0.2)
        change = ("move mount", moved[0][1], target) if moved else self.any(
            ("bind", source, target), ("bind", source, target), ("tmpfs", target), ("other disk", target))
        changes = [change, ("file", target + "/f.vk")][: self.any(1, 2)]
        return self.begin("mounts", target, changes, ("unmount", target))

    def touches(self):
        """What changes no answer."""
        return [self.any(("touch", self.existing()), ("touch", self.existing(os.path.isfile)),
                         ("touch", self.any("installation.json", "indexed.json", "records0.jsonl")))]

    def bursts(self):
        kinds = self.rng.choices(["creations", "deletions", "renames", "replacements", "links"], k=self.any(2, 5, 20))
        return [change for kind in kinds for change in self.kinds[kind](self)]

    def floods(self):
        """More changes than the queue of events holds, and some among and after them."""
        some = lambda: self.bursts() if self.rng.random() < 0.8 else []
        return [*some(), ("flood", self.known_folder(), queue_size() + 100), *some()]


def queue_size():
    with open("/proc/sys/fs/inotify/max_queued_events", encoding="utf-8") as text:
        return int(text.read())


WEIGHTS = {"creations": 20, "deletions": 10, "renames": 16, "links": 10, "moves": 12, "modes": 10, "replacements": 8,
           "stores": 3, "index": 1, "mounts": 10, "touches": 3, "bursts": 4, "floods": 50}
