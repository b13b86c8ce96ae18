#!/usr/bin/python3
"""Holds the schema of manifests to the verdicts of the corpus, which the loader is held to by InstallationTest.

Usage: schema.py SCHEMA CORPUS. A row that says "schema": "cannot tell" is one that the schema must let pass, or that is
no JSON text at all for it to judge.
"""

import json
import sys

from jsonschema import Draft202012Validator

schema, corpus = (json.load(open(name, encoding="utf-8")) for name in sys.argv[1:])
Draft202012Validator.check_schema(schema)
validator = Draft202012Validator(schema)
wrong = []

if schema["examples"][0].keys() != schema["properties"].keys():
    wrong.append("the example has not every key")
for example in schema["examples"]:
    wrong += [f"example: {error.message}" for error in validator.iter_errors(example)]

for row in corpus:
    manifest = row["manifest"]
    told = "schema" not in row
    try:
        value = json.loads(manifest) if isinstance(manifest, str) else manifest
    except ValueError:
        if told:
            wrong.append(f"{row}: is not JSON, so the schema cannot tell")
        continue
    accepts = validator.is_valid(value)
    if accepts != ("error" not in row if told else True):
        wrong.append(f"{row}: the schema {'accepts' if accepts else 'refuses'} it")

print("\n".join(wrong) or f"{len(corpus)} manifests: the schema and the corpus agree")
sys.exit(bool(wrong))
