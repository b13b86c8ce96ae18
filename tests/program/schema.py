#!/usr/bin/python3
"""Holds JSON documents on standard input to a definition of the schema.

Usage: schema.py SCHEMA DEFINITION [--as-reader]. A field that the schema does not document is an error, which it is not
to a reader of the documents, since they may grow.
"""

import json
import sys

from jsonschema import Draft202012Validator


def closed(part):
    """The same schema, in which every object that has documented properties has no others."""
    if isinstance(part, list):
        return [closed(element) for element in part]
    if not isinstance(part, dict):
        return part
    result = {key: closed(value) for key, value in part.items()}
    if part.get("type") == "object":
        result["additionalProperties"] = False
    return result


def documents(text):
    decoder = json.JSONDecoder()
    while text := text.strip():
        document, end = decoder.raw_decode(text)
        yield document
        text = text[end:]


schema = json.load(open(sys.argv[1], encoding="utf-8"))
Draft202012Validator.check_schema(schema)
if "--as-reader" not in sys.argv:
    schema = closed(schema)
definition = {"$ref": f"#/$defs/{sys.argv[2]}"}
wrong = [] if definition in schema.pop("anyOf") else ["of no kind that the schema lists"]
validator = Draft202012Validator({**schema, **definition})
count = 0
for document in documents(sys.stdin.read()):
    count += 1
    wrong += [f"{error.json_path}: {error.message}" for error in validator.iter_errors(document)]
print("\n".join(wrong) or f"{count} as the schema says")
sys.exit(bool(wrong) or count == 0)
