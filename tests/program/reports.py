#!/usr/bin/python3
"""Holds reports in all formats to the formats, and to hostile names.

reports.py make FOLDER          makes the files of NAMES, which the doctor reports for their extension
reports.py check FORMAT=FILE... each file is valid
reports.py names FOLDER FORMAT=FILE... and reports each of NAMES
"""

import json
import os
import re
import sys
import xml.etree.ElementTree as xml
from urllib.parse import unquote

from page import Page

# The name of a file below FOLDER without its extension, and how people see it; None: as it is.
NAMES = {
    b"line\nend\ttab\rreturn\x01\x1b[31m\x7f": r"line\u{A}end\u{9}tab\u{D}return\u{1}\u{1B}[31m\u{7F}",
    b"+p</script><script>alert(1)<!-- ]]>&amp;<b title='x\" onclick=x>": None,
    b"%0A%25::error title=x,file=y,line=1::z": None,
    "\u202e\u2066right\u200b\ufeff\ufffe\uffff\u0085\u2028".encode():
        r"\u{202E}\u{2066}right\u{200B}\u{FEFF}\u{FFFE}\u{FFFF}\u{85}\u{2028}",
    b"\xff\xc0\x80": r"\x{FF}\x{C0}\x{80}",
    br"back\slash \u{1} {{names}} @style@ ${x}": r"back\\slash \\u{1} {{names}} @style@ ${x}",
    "\u00e9\u65e5\u672c\U0001f600".encode(): None,
    b"n" * 252: None,
}

SEVERITIES = {"info", "minor", "major", "critical", "blocker"}  # GitLab's
COUNTS = {"tests", "failures", "errors", "skipped"}
# What JUnit reports consist of, the part that all readers know: the attributes and the children of each element.
JUNIT = {
    "testsuites": ({"name"} | COUNTS - {"skipped"}, {"testsuite"}),
    "testsuite": ({"name"} | COUNTS, {"testcase"}),
    "testcase": ({"name", "classname"}, {"failure", "skipped", "system-out"}),
    "failure": ({"type", "message"}, set()),
    "skipped": ({"message"}, set()),
    "system-out": (set(), set()),
}
# A command of GitHub: in a property ":" and "," are syntax.
GITHUB = re.compile(r"::(error|warning|notice) title=kelwhich [a-z0-9-]+,file=([^:,\x00-\x1f]*)(,line=\d+,col=\d+)?::[^\x00-\x1f]*")


def expect(condition, *words):
    if not condition:
        sys.exit(" ".join(map(str, words)))


def places(form, file):
    """The places of the findings, as people see them or as they are."""
    text = open(file, encoding="utf-8", newline="").read()
    if form == "json":
        return [entry["path"].removeprefix(os.getcwd() + "/") for entry in json.loads(text)["findings"]]
    if form == "gitlab":
        entries = json.loads(text)
        for entry in entries:
            words = [entry["description"], entry["check_name"], entry["fingerprint"], entry["location"]["path"]]
            expect(all(isinstance(word, str) and word for word in words), "not a text:", entry)
            expect(entry["severity"] in SEVERITIES and entry["location"]["lines"]["begin"] >= 1, "no severity or line:", entry)
            expect(not words[-1].startswith("./"), "not relative to the repository:", entry)
        return [entry["location"]["path"] for entry in entries]
    if form == "sarif":
        (run,) = json.loads(text)["runs"]
        artifacts = [result["locations"][0]["physicalLocation"]["artifactLocation"] for result in run["results"]]
        for result, artifact in zip(run["results"], artifacts):
            expect(run["tool"]["driver"]["rules"][result["ruleIndex"]]["id"] == result["ruleId"], "wrong rule:", result)
            isAbsolute = artifact["uri"].startswith("file:///")
            expect(isAbsolute or artifact["uriBaseId"] in run["originalUriBaseIds"], "no base:", artifact)
            expect(re.fullmatch(r"(file://)?([\w.~/-]|%[0-9A-F]{2})+", artifact["uri"], re.ASCII), "no URI:", artifact)
        return [unquote(artifact["uri"], errors="surrogateescape") for artifact in artifacts]
    if form == "junit":
        elements = list(xml.fromstring(text.encode()).iter())
        expect(elements[0].tag == "testsuites", "no test suites")
        for element in elements:
            attributes, children = JUNIT[element.tag]
            expect(set(element.attrib) == attributes and {child.tag for child in element} <= children, "not JUnit:", element)
            expect(all(element.get(count, "0").isdigit() for count in COUNTS), "no count:", element.attrib)
        cases = [case for case in elements if case.tag == "testcase" and len(case)]
        expect(all(len(case) == 1 for case in cases), "two outcomes")
        return [case.get("name") for case in cases]
    if form == "github":
        lines = [line for line in text.split("\n")[:-1] if not line.startswith("kelwhich: ")]
        expect(all(GITHUB.fullmatch(line) for line in lines), "not a command:", lines)
        return [unquote(GITHUB.fullmatch(line)[2]) for line in lines]
    page = Page(text)
    expect(not page.wrong, file, *page.wrong)
    return page.places()


def spelled(form, name, shown):
    """The name in a format: programs get it as it is, but in JSON where it is not UTF-8."""
    decoded = name.decode(errors="surrogateescape")
    isUTF8 = decoded.encode(errors="replace") == name
    return decoded if form == "sarif" or form in ("json", "gitlab") and isUTF8 else shown or decoded


def check(arguments, folder=None):
    counts = []
    for argument in arguments:
        form, file = argument.split("=")
        found = places(form, file)
        for name, shown in NAMES.items() if folder else ():
            place = f"{folder}/{spelled(form, name, shown)}.VK"
            expect(found.count(place) == 1, form, "lacks", ascii(place), ascii(found))
        counts.append(f"{form} {len(found)}")
    print("findings: " + ", ".join(counts))


if sys.argv[1] == "make":
    for name in NAMES:
        path = os.path.join(sys.argv[2].encode(), name + b".VK")
        os.makedirs(os.path.dirname(path), exist_ok=True)
        open(path, "w").close()
else:
    check([argument for argument in sys.argv[2:] if "=" in argument], sys.argv[2] if sys.argv[1] == "names" else None)
