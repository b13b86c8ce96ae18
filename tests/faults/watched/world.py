"""A small installation in which folders are searched in every form that a watch must bear, and changes of it.

A change is a tuple, so that a history can be printed and repeated in another folder.
"""
import json
import os
import shutil
import subprocess

from watched import namespaces

# Below `tree`. Nested ones, one by two paths, one twice, one below a link, and one that begins absent.
SEARCHED = ["mine", "mine/inner", "mine/+p", "host/lib/one", "again", "host/lib/two", "host/deep/mid/low",
            "absent/below", "via/below", "mine", "packages/lib"]
PARENTS = ["host", "host/lib", "host/deep", "host/deep/mid", "absent", "packages", "host/kel"]
FILES = ["f.vk", "f.vkx", "g.vk", "C.vk", "p.vk", "h\u00e4.vk", "note.txt"]
FOLDERS = ["+p", "+q", "@C", "@f", "private", "sub", "inner"]
NAMES = ["f", "g", "C", "p", "h\u00e4", "k", "p.f", "p.g", "q.f", "p.q.f", "p.C", "C.f", "C.C", "p.C.f", "p.h\u00e4",
         "f.g", "private/f", "sub/f", "sub/g.vk", "@C/f", "+p/f", "./g", "inner/f", "{top}/tree/mine/f.vk",
         "{top}/tree/again/f.vk", "{top}/tree/via/below/g.vk", "{top}/tree/host/kel/k.vk",
         "{top}/tree/packages/kel/f.vk"]
FILES_AT_FIRST = ["mine/f.vk", "mine/@C/C.vk", "mine/@C/f.vk", "mine/private/f.vk", "mine/+p/f.vk", "mine/+p/+q/f.vk",
         "mine/+p/@C/C.vk", "mine/inner/f.vk", "mine/sub/f.vk", "host/lib/one/f.vk", "host/lib/one/g.vkx",
         "host/lib/one/+p/@C/f.vk", "host/lib/two/g.vk", "host/lib/two/private/g.vk", "host/deep/mid/low/f.vk",
         "host/deep/mid/low/@f/f.vk", "host/kel/k.vk", "host/kel/f.vk", "packages/lib/g.vk", "packages/kel/f.vk",
         "../other/below/g.vk", "../other/below/@C/g.vk"]
RECORDS = [
    [{"path": "kel/k.vk"}, {"path": "lib/one/f.vk", "supportFlags": [True] * 6}, {"path": "sum", "builtin": True}],
    [{"path": "kel/k.vk", "redirect": True, "symbol": "f"}, {"path": "kel/f.vk", "name": ["f", "g"]}],
    [{"path": "lib/one/f.vk", "redirect": True, "symbol": "g"}, {"path": "lib/two/g.vk", "supportFlags": [True] * 6}],
]


def make(top):
    """The installation, in a new folder."""
    for path in FILES_AT_FIRST:
        path = os.path.join(top, "tree", path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        open(path, "x", encoding="utf-8").close()
    for folder in ["away", "data"]:
        os.makedirs(os.path.join(top, folder))
    os.symlink("host/lib/one", os.path.join(top, "tree/again"))
    os.symlink("../other", os.path.join(top, "tree/via"))
    for number, records in enumerate(RECORDS):
        with open(os.path.join(top, f"records{number}.jsonl"), "w", encoding="utf-8") as out:
            out.writelines(json.dumps(record) + "\n" for record in records)
    settings = {"root": "tree/host", "supportPackageRoot": "tree/packages", "supportStore": "data/support.cdb",
                "searchPath": ["../" + folder for folder in SEARCHED], "kelPath": ["kel", "../packages/kel"],
                "sourceCode": ["lib"], "extensions": ["vkx", "vk"], "builtins": [{"name": "f"}, {"name": "C"}]}
    for manifest, more in [("installation.json", {}), ("indexed.json", {"searchIndex": "data/search.cdb"})]:
        with open(os.path.join(top, manifest), "w", encoding="utf-8") as out:
            json.dump(settings | more, out)


def replace(path, make_it):
    """In one step, so that nobody sees the path absent."""
    make_it(path + ".new")
    os.rename(path + ".new", path)


def remove(path):
    if os.path.isdir(path) and not os.path.islink(path):
        shutil.rmtree(path)
    else:
        os.remove(path)


def touch(path):
    """As the command does: a file is opened as well."""
    if os.path.isfile(path):
        open(path, "a", encoding="utf-8").close()
    os.utime(path)


def flood(folder, count):
    """So many events of a folder, no two in a row alike."""
    a, b = os.path.join(folder, "flood-a"), os.path.join(folder, "flood-b")
    open(a, "x", encoding="utf-8").close()
    for _ in range(count // 4):  # an event for the old name and the new one
        os.rename(a, b)
        os.rename(b, a)
    os.remove(a)


def build(program, top, manifest, words):
    subprocess.run([program, "-i", os.path.join(top, manifest), *words], check=True, cwd=top, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL)


def apply(change, top, program):
    """Errors: OSError, subprocess.CalledProcessError when the change cannot be made."""
    what, *words = change
    at = lambda path: os.path.join(top, path)
    {"file": lambda path: open(at(path), "x", encoding="utf-8").close(),
     "folder": lambda path: os.mkdir(at(path)),
     "folders": lambda path: os.makedirs(at(path), exist_ok=True),
     "remove": lambda path: remove(at(path)),
     "rename": lambda old, new: os.rename(at(old), at(new)),
     "exchange": lambda a, b: namespaces.exchange(at(a), at(b)),
     "link": lambda to, path: replace(at(path), lambda new: os.symlink(to.format(top=top), new)),
     "hard link": lambda old, new: os.link(at(old), at(new)),
     "mode": lambda mode, path: os.chmod(at(path), int(mode, 8)),
     "touch": lambda path: touch(at(path)),
     "damage": lambda path: replace(at(path), lambda new: open(new, "w", encoding="utf-8").write("no such thing")),
     "store": lambda number: build(program, top, "installation.json", ["store", "build", f"records{number}.jsonl"]),
     "index": lambda: build(program, top, "indexed.json", ["index", "build"]),
     "other disk": lambda path: namespaces.mount("none", at(path), b"hugetlbfs"),
     "bind": lambda old, new: namespaces.mount(at(old), at(new), flags=namespaces.BIND),
     "tmpfs": lambda path: namespaces.mount("none", at(path), b"tmpfs"),
     "move mount": lambda old, new: namespaces.mount(at(old), at(new), flags=namespaces.MOVE),
     "unmount": lambda path: namespaces.unmount(at(path)),
     "flood": lambda path, count: flood(at(path), count)}[what](*words)


def destroy(top):
    with open("/proc/self/mounts", encoding="utf-8") as mounts:
        below = [line.split()[1] for line in mounts if line.split()[1].startswith(top + "/")]
    for path in reversed(below):
        namespaces.unmount(path)
    subprocess.run(["chmod", "-R", "u+rwx", top], check=True)
    shutil.rmtree(top)
