#!/usr/bin/python3
"""Finds links of documents that lead nowhere, and paths in backticks that do not exist. Usage: links.py DOCUMENT...

A text in backticks is a path when it begins with a folder of this repository. Its first word counts, and may be a
pattern.
"""

import pathlib
import re
import sys

root = pathlib.Path(__file__).resolve().parents[2]
folders = "|".join(re.escape(entry.name) for entry in root.iterdir() if entry.is_dir() and entry.name != "build")


def anchors(document):
    """The anchors of a document's headings."""
    headings = re.findall(r"(?m)^#+ (.*)$", document.read_text(encoding="utf-8"))
    return {re.sub(r"[^\w -]", "", heading).strip().lower().replace(" ", "-") for heading in headings}


count = 0
wrong = []
for document in map(pathlib.Path, sys.argv[1:]):
    text = document.read_text(encoding="utf-8")
    for path in re.findall(rf"`((?:{folders})/[^\s`]*)[^`]*`", text):
        count += 1
        if not any(root.glob(path.rstrip("/"))):
            wrong.append(f"{document}: `{path}` does not exist")
    for path, anchor in re.findall(r"\]\((?!https?:)([^)#]*)#?([^)]*)\)", text):
        count += 1
        target = document.parent / path if path else document
        if not target.exists() or anchor and anchor not in anchors(target):
            wrong.append(f"{document}: the link to {path}{'#' * bool(anchor)}{anchor} leads nowhere")
print("\n".join([*wrong, f"{count} paths and links, {len(wrong)} wrong"]))
sys.exit(bool(wrong) or not count)
