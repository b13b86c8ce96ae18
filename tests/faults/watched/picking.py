"""Random paths of the world, relative to its top."""
import os
import posixpath

from watched import world


class Picking:
    def __init__(self, rng, top):
        self.rng = rng
        self.top = top
        self.number = 0

    def any(self, *choices):
        return self.rng.choice(choices)

    def unused(self, folder):
        self.number += 1
        return f"{folder}/{self.number}"

    def folder(self):
        """One that may not exist; so the next."""
        path = "tree/" + self.any(*world.SEARCHED, *world.PARENTS)
        while self.rng.random() < 0.4:
            path += "/" + self.any(*world.FOLDERS)
        return self.any(path, path, path, "other", "other/below") if self.rng.random() < 0.1 else path

    def place(self):
        return self.folder() + "/" + self.any(*world.FILES, *world.FOLDERS)

    def exists(self, path):
        return os.path.lexists(os.path.join(self.top, path))

    def everything(self):
        found = []
        for start in ("tree", "other"):
            for folder, folders, files in os.walk(os.path.join(self.top, start)):
                below = os.path.relpath(folder, self.top)
                found += [posixpath.join(below, name) for name in folders + files]
        return sorted(set(found) - {"tree/host", "tree/packages"})  # without these nothing can be opened

    def existing(self, is_wanted=lambda path: True):
        found = [path for path in self.everything() if is_wanted(os.path.join(self.top, path))]
        return self.any(*found) if found else "tree/mine"

    def existing_folder(self):
        return self.existing(lambda path: os.path.isdir(path) and not os.path.islink(path))

    def known_folder(self):
        """Rather one that many names need."""
        return self.any("tree/" + self.any(*world.SEARCHED, *world.PARENTS), self.existing_folder())
