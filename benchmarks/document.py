"""Puts figures into docs/performance.md. Part of bench.py."""
import os

import plot

DOCUMENTS = os.path.join(os.path.dirname(os.path.realpath(__file__)), "../docs")
MARKS = ("<!-- table -->\n", "<!-- end of table -->\n")


def write(table, points):
    """The whole table and a plot of the points; or without points only the rows that the table has."""
    path = os.path.join(DOCUMENTS, "performance.md")
    with open(path, encoding="utf-8") as text:
        before, rest = text.read().split(MARKS[0])
        old, after = rest.split(MARKS[1])
    if points is None:
        known = {cells_of(line): line for line in old.strip().splitlines() + table.splitlines()}
        table = "".join(line + "\n" for line in known.values())
    else:
        with open(os.path.join(DOCUMENTS, "performance.svg"), "w", encoding="utf-8") as out:
            out.write(plot.svg(points))
    with open(path, "w", encoding="utf-8") as out:
        out.write(f"{before}{MARKS[0]}\n{table}\n{MARKS[1]}{after}")


def cells_of(line):
    """What a row is about: its goal and what."""
    return tuple(line.split(" | ")[:2])
