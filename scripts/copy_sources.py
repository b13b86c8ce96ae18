#!/usr/bin/env python3
"""Makes a folder a copy of the sources, without what is built. Usage: copy_sources.py FOLDER

Copies the files that git tracks or would add, and deletes others except in the folder's own build/. Equal files keep their
times.
"""
import pathlib
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def copy_sources(folder):
    listed = subprocess.run(["git", "ls-files", "-zco", "--exclude-standard"], cwd=ROOT, capture_output=True, text=True,
                            check=True)
    names = {name for name in listed.stdout.split("\0") if name and (ROOT / name).is_file()}
    for name in names:
        target = folder / name
        if not target.exists() or target.read_bytes() != (ROOT / name).read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / name, target)
    for stale in [p for p in folder.rglob("*") if p.is_file() and "build" not in p.relative_to(folder).parts[:1]]:
        if str(stale.relative_to(folder)) not in names:
            stale.unlink()


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("copy_sources.py: expected one folder")
    copy_sources(pathlib.Path(sys.argv[1]))
