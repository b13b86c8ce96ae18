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
        self.open = []  # a kind, and what ends what a change of it began

    def next(self, only=None):
        """A kind, and its changes."""
        grave = [(kind, end) for kind, end in self.open if GRAVE & set(end)]
        if grave and self.rng.random() < 0.3:
            self.open.remove(chosen := self.any(*grave))
            return chosen[0], [chosen[1]]
        kinds = [kind for kind in self.kinds if (kind in only if only else kind != "floods")]
        kind = self.rng.choices(kinds, [WEIGHTS[kind] for kind in kinds])[0]
        if kind == "creations" and not only and len(self.everything()) > MOST_FILES:
            kind = "deletions"
        return kind, self.kinds[kind](self)

    def end(self, kind, probability):
        """Ends what an earlier change of the kind began, or returns nothing."""
        opened = [(known, end) for known, end in self.open if known == kind]
        if not opened or (len(opened) < MOST_OPEN and self.rng.random() >= probability):
            return None
        self.open.remove(chosen := self.any(*opened))
        return [chosen[1]]

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
        self.open.append(("moves", ("rename", new, old)))
        return [("rename", old, new)] + [("folder", old), ("file", old + "/f.vk")][: self.any(0, 0, 1, 2)]

    def modes(self):
        if back := self.end("modes", 0.6):
            return back
        path = self.any(self.known_folder(), self.known_folder(), self.known_folder(), self.existing())
        self.open.append(("modes", ("mode", "755", path)))
        return [("mode", self.any("0", "111", "444", "500", "333"), path)]

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
        self.open.append(("stores", build))
        return [self.any(("rename", "data/support.cdb", self.unused("data")), ("damage", "data/support.cdb"))]

    def index(self):
        if self.rng.random() < 0.7:
            return [("index",)]
        self.open.append(("index", ("index",)))
        return [self.any(("remove", "data/search.cdb"), ("damage", "data/search.cdb"))]

    def mounts(self):
        if back := self.end("mounts", 0.5):
            return back
        target = self.any(self.known_folder(), self.known_folder(), self.existing())
        is_file = os.path.isfile(os.path.join(self.top, target))
        source = self.existing(os.path.isfile) if is_file else self.known_folder()
        moved = self.end("mounts", 0.2)
        self.open.append(("mounts", ("unmount", target)))
        if moved:
            return [("move mount", moved[0][1], target)]
        return [self.any(("bind", source, target), ("tmpfs", target))] + [("file", target + "/f.vk")][: self.any(0, 1)]

    def touches(self):
        """What changes no answer."""
        return [self.any(("touch", self.existing()), ("write", self.existing(os.path.isfile)),
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
           "stores": 3, "index": 1, "mounts": 10, "touches": 3, "bursts": 4, "floods": 15}
# What nothing can be opened without: it is mended soon.
GRAVE = {"tree", "tree/host", "tree/packages", "data", "store", "index"}
