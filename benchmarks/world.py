#!/usr/bin/env python3
"""Makes a world to measure in: the same for the same M and N.

Usage: world.py tree FOLDER M    an installation whose search for a plain name must read M folders (a multiple of 5)
       world.py records N        N support records, as JSON Lines, on standard output

A tree's search folders hold three class folders, a private one and a package each, and every folder 20 definitions. A
quarter of a folder's definitions are shared: their names, c0, c1, ..., are found in one folder of every kind but the
package. The others, s0, s1, ..., stand alone, or in the package as area.s0, ... Every fifth has the second extension.
FOLDER/expected tells each name's files in the order in which they must be answered, "NAME PATH" a line, for the first
10,000 records: the file of a KEL record stands behind the definitions of the name and before the methods.

Record i is the KEL file of the name c<i>; every thousandth is a built-in instead, every seventh has a second name,
every hundredth redirects to the next one.
"""
import json
import os
import sys

KINDS = ["", "@Alone{0}", "@Shared", "@Both{1}", "private", "+area"]  # of folders; the last one is a package
AREAS = 10  # KEL folders


def record(i):
    if i % 1000 == 999:
        return {"path": f"c{i}", "builtin": True, "supportFlags": [True] * 6}
    made = {"path": f"kel/area{i % AREAS}/c{i}.vk"}
    if i % 7 == 0:
        made["name"] = [f"c{i}", f"shared{i // 7000}"]
    if i % 100 == 50:
        made.update(redirect=True, symbol=f"c{i + 1}", unsupportedSymbols=[f"c{i}"])
    elif i % 3 == 0:
        made["supportFlags"] = [True, False, False, True, False, False]
    return made


def definitions(groups, kind, group):
    """The names that a folder defines: five shared ones, then fifteen of its own."""
    first = (group * 5 + kind * 35) % (groups * 5)
    number = (kind * groups + group) * 15
    shared = [] if kind == 5 else [f"c{(first + i) % (groups * 5)}" for i in range(5)]
    return shared + [f"s{number + i}" for i in range(20 - len(shared))]


def expected(answers, root):
    """The lines of all names. An answer is its plain definitions, then its methods."""
    def own(name):
        plain, methods = answers.get(name, ([], []))
        i = int(name[1:]) if name[0] == "c" else 10000
        kel = [] if i >= 10000 else [name if "builtin" in record(i) else f"{root}/{record(i)['path']}"]
        return plain + kel + methods

    for name in answers:
        i = int(name[1:]) if name[0] == "c" else 0
        redirected = own(record(i)["symbol"]) if name[0] == "c" and record(i).get("redirect") else []
        for path in redirected + own(name):
            yield f"{name} {path}\n"


def make_tree(root, folders):
    groups = folders // 5
    answers = {}
    searched = []
    for group in range(groups):
        for kind, form in enumerate(KINDS):
            folder = os.path.join(root, f"s{group}", form.format(group, group % 7)).rstrip("/")
            os.makedirs(folder)
            searched.append(folder + "\n")
            for i, name in enumerate(definitions(groups, kind, group)):
                path = f"{folder}/{name}.{'vkx' if i % 5 == 0 else 'vk'}"
                os.close(os.open(path, os.O_CREAT | os.O_WRONLY, 0o755))
                if kind != 4:
                    asked = f"area.{name}" if kind == 5 else name
                    answers.setdefault(asked, ([], []))[0 if kind in (0, 5) else 1].append(path)
    manifest = {"searchPath": [f"s{g}" for g in range(groups)], "kelPath": [f"kel/area{a}" for a in range(AREAS)]}
    for file, lines in {
        "installation.json": [json.dumps(manifest)],
        "expected": expected(answers, root),
        "names": (name + "\n" for name in answers),
        "folders": [f for f in searched if "/+" not in f],  # that the search for a plain name reads
        "all-folders": searched,  # that a fixed view reads
    }.items():
        with open(os.path.join(root, file), "w", encoding="utf-8") as out:
            out.writelines(lines)


def main(words):
    if len(words) == 3 and words[0] == "tree" and int(words[2]) > 0 and int(words[2]) % 5 == 0:
        os.mkdir(words[1])
        make_tree(os.path.realpath(words[1]), int(words[2]))
    elif len(words) == 2 and words[0] == "records":
        sys.stdout.writelines(json.dumps(record(i)) + "\n" for i in range(int(words[1])))
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(sys.argv[1:])
