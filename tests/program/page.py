#!/usr/bin/python3
"""What makes an HTML report safe, and what it says of a name: page.py PAGE NAME places|explanation

Elements are closed in order, ids are unique, links lead to an id of the page, nothing else names a resource, only the
script and the style sheet of the page's policy stand in it, and no text holds a character that could not be seen.
"""

import base64
import hashlib
import sys
import unicodedata
from collections import Counter
from html.parser import HTMLParser

VOID = {"meta", "link", "col", "input"}
UNSEEN = {"Cc", "Cf", "Co", "Zl", "Zp"}


class Page(HTMLParser):
    """`wrong` lists the faults; `rows` are lists of cells, each after its row's class; `explanations` has one a name."""

    def __init__(self, text):
        super().__init__()
        self.open, self.ids, self.links, self.wrong, self.rows = [], [], [], [], []
        self.policy, self.raw, self.explanations, self.name = "", {"script": "", "style": ""}, {}, ""
        self.feed(text)
        self.close()
        self.wrong += [f"not closed: {tag}" for tag in self.open]
        self.wrong += [f"id twice: {id}" for id, times in Counter(self.ids).items() if times > 1]
        self.wrong += [f"leads nowhere: {link}" for link in self.links if link not in self.ids]
        for kind, text in self.raw.items():
            digest = base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()
            if f"{kind}-src 'sha256-{digest}';" not in self.policy:
                self.wrong.append(f"not the {kind} of the policy")

    def places(self):
        """The place of each finding."""
        return [cells[2] for cells in self.rows if cells[0].split()[0] in ("error", "warning", "note")]

    def handle_starttag(self, tag, attributes):
        self.open += [] if tag in VOID else [tag]
        known = dict(attributes)
        if tag == "tr":
            self.rows.append([known.get("class", "none")])
        elif tag in ("td", "th"):
            self.rows[-1] += [""] * int(known.get("colspan", 1))
        elif tag == "article":
            self.name = known["aria-label"]
            self.explanations[self.name] = ""
        for name, value in attributes:
            self.see(value or "")
            if name == "id":
                self.ids.append(value)
            elif name == "href" and value.startswith("#"):
                self.links.append(value[1:])
            elif name in ("src", "srcset", "style", "action", "href") and value != "data:," or name.startswith("on"):
                self.wrong.append(f"{tag} {name}={value}")
            elif value and value.startswith("default-src 'none';"):
                self.policy = value

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.wrong.append(f"closed out of order: {tag}")

    def handle_data(self, data):
        if self.open and self.open[-1] in self.raw:
            self.raw[self.open[-1]] += data
            return
        if "pre" in self.open:
            self.explanations[self.name] += data
        elif "td" in self.open or "th" in self.open:
            self.rows[-1][-1] += data
        self.see(data.replace("\n", ""))

    def see(self, text):
        self.wrong += [f"unseen: {text!r}" for c in text if unicodedata.category(c) in UNSEEN]


if __name__ == "__main__":
    shown = Page(open(sys.argv[1], encoding="utf-8").read())
    head = next(cells for cells in shown.rows if "Name" in cells)
    row = next(cells for cells in shown.rows if cells[1] == sys.argv[2])
    if sys.argv[3] == "places":
        print(*[f"{place}: {cell}" for place, cell in list(zip(head, row))[2:] if cell], sep="\n")
    else:
        print(shown.explanations[sys.argv[2]], end="")
