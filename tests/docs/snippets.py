#!/usr/bin/env python3
"""Writes each C++ snippet of Markdown files to a source file of its own, and prints the sources' names.

Usage: snippets.py FOLDER FILE.md...
Snippets are the blocks fenced as ```cpp and the indented ones that begin with an #include. A snippet without a `main`
is the body of a function, but for the #include lines that it begins with.
"""
import pathlib
import re
import sys

SNIPPET = re.compile(r"(?m)^```cpp\n((?:(?!```$).*\n)*)|^((?:    #include.*\n)(?:(?:    .*)?\n)*)")
folder = pathlib.Path(sys.argv[1])
folder.mkdir(parents=True, exist_ok=True)

for file in map(pathlib.Path, sys.argv[2:]):
    text = file.read_text(encoding="utf-8")
    for count, match in enumerate(SNIPPET.finditer(text), 1):
        line = text.count("\n", 0, match.start(match.lastindex)) + 1
        code = re.sub("(?m)^    ", "", match[2]) if match[2] else match[1]
        head = re.match(r"(#include.*\n|\n)*", code)[0]
        body = f'#line {line + head.count(chr(10))} "{file}"\n{code[len(head):]}'
        if "int main(" not in code:
            body = f"void snippet();\nvoid snippet() {{\n{body}}}\n"
        source = folder / f"{file.stem}.{count}.cpp"
        made = f'#line {line} "{file}"\n{head}{body}'
        if not source.exists() or source.read_text(encoding="utf-8") != made:  # or it is compiled again
            source.write_text(made, encoding="utf-8")
        print(source)
