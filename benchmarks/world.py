#!/usr/bin/env python3
"""Makes a world to measure in: the same for the same M and N.

Usage: world.py tree FOLDER M    an installation whose search for a plain name must read M folders (a multiple of 5)
       world.py records N        N support records, as JSON Lines, on standard output

A tree's search folders hold three class folders, a private one and a package each, and every folder 20 definitions. A
quarter of a folder's definitions are shared: their names, which begin with "c", are found in one folder of every kind
but the package. The others, which begin with "s", stand alone; those of the package are asked for as area.s... Every
fifth has the second extension. FOLDER/expected lists each name's candidates in the order in which they must be
answered, "NAME PATH" a line, with at least 10,000 records: the record's file or built-in stands behind the definitions
of the name and before the methods.

Record i is the KEL file of the i-th shared name; every thousandth is a built-in instead, every seventh has a second
name, every hundredth redirects to the next one.
"""
import json
import os
import sys

KINDS = ["", "@Alone{0}", "@Shared", "@Both{1}", "private", "+area"]  # of folders; the last one is a package
AREAS = 10  # KEL folders


def spelled(first, i):
    """The i-th name with that first letter. As names are in programs, those that follow each other are not alike."""
    left = i * 2654435761 % 2**32
    word = first
    for _ in range(7):
        left, letter = divmod(left, 26)
        word += chr(ord("a") + letter)
    return word


def record(i):
    name = spelled("c", i)
    if i % 1000 == 999:
        return {"path": name, "builtin": True, "supportFlags": [True] * 6}
    made = {"path": f"kel/area{i % AREAS}/{name}.vk"}
    if i % 7 == 0:
        made["name"] = [name, f"shared{i // 7000}"]
    if i % 100 == 50:
        made.update(redirect=True, symbol=spelled("c", i + 1), unsupportedSymbols=[name])
    elif i % 3 == 0:
        made["supportFlags"] = [True, False, False, True, False, False]
    return made


def definitions(groups, kind, group):
    """The names that a folder defines: five shared ones, then fifteen of its own."""
    first = (group * 5 + kind * 35) % (groups * 5)
    number = (kind * groups + group) * 15
    shared = [] if kind == 5 else [spelled("c", (first + i) % (groups * 5)) for i in range(5)]
    return shared + [spelled("s", number + i) for i in range(20 - len(shared))]


def expected(answers, root, shared):
    """The lines of all names. An answer is its plain definitions, then its methods."""
    def own(name, i):
        plain, methods = answers[name]
        if i is None or i >= 10000:
            return plain + methods
        recorded = record(i)
        return plain + [name if "builtin" in recorded else f"{root}/{recorded['path']}"] + methods

    numbers = {spelled("c", i): i for i in range(shared)}
    for name in answers:
        i = numbers.get(name)
        redirects = i is not None and i < 10000 and "redirect" in record(i)
        for path in (own(spelled("c", i + 1), i + 1) if redirects else []) + own(name, i):
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
        "expected": expected(answers, root, groups * 5),
        "names": (name + "\n" for name in answers),
        "none": [],
        "search-folders": (os.path.join(root, f"s{g}\n") for g in range(groups)),
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
