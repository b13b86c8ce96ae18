"""What makes an HTML report safe.

Elements are closed in order, ids are unique, links lead to an id of the page, nothing else names a resource, only the
script and the style sheet of the page's policy stand in it, and no text holds a character that could not be seen.
"""

import base64
import hashlib
import unicodedata
from collections import Counter
from html.parser import HTMLParser

VOID = {"meta", "link", "col", "input"}
UNSEEN = {"Cc", "Cf", "Co", "Zl", "Zp"}


class Page(HTMLParser):
    """`wrong` lists the faults, `places` the text of each finding's place."""

    def __init__(self, text):
        super().__init__()
        self.open, self.ids, self.links, self.wrong, self.places = [], [], [], [], []
        self.policy, self.raw, self.row = "", {"script": "", "style": ""}, ""
        self.feed(text)
        self.close()
        self.wrong += [f"not closed: {tag}" for tag in self.open]
        self.wrong += [f"id twice: {id}" for id, times in Counter(self.ids).items() if times > 1]
        self.wrong += [f"leads nowhere: {link}" for link in self.links if link not in self.ids]
        for kind, text in self.raw.items():
            digest = base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()
            if f"{kind}-src 'sha256-{digest}';" not in self.policy:
                self.wrong.append(f"not the {kind} of the policy")

    def handle_starttag(self, tag, attributes):
        self.open += [] if tag in VOID else [tag]
        self.row = dict(attributes).get("class") if tag == "tr" else self.row
        if tag == "td" and ("class", "path") in attributes and self.row.split()[:1] in (["error"], ["warning"], ["note"]):
            self.places.append("")
            self.row = "place"
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
        self.row = "" if self.row == "place" else self.row

    def handle_data(self, data):
        if self.open and self.open[-1] in self.raw:
            self.raw[self.open[-1]] += data
            return
        if self.row == "place":
            self.places[-1] += data
        self.see(data.replace("\n", ""))

    def see(self, text):
        self.wrong += [f"unseen: {text!r}" for c in text if unicodedata.category(c) in UNSEEN]
