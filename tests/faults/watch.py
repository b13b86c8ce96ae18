#!/usr/bin/env python3
"""Holds `kelwhich batch` to what is on the disk while the disk changes. Usage: watch.py PROGRAM [OPTIONS]

    lock-step  after each change, the answers are those of a process that begins anew
    floods     the same, with more changes between two questions than the system's queue of events holds
    watches    the same, in namespaces in which a user may watch few folders, or none at all
    free       changes and questions at the same time: each answer is made of states that its folders had in between

Prints how many changes were made. At the first wrong answer it prints the changes that lead to it, and ends with 1.
What the system does not allow here, such as mounts, is left out and named.
"""
import argparse
import os
import random
import subprocess
import sys

from watched import free, lockstep, namespaces
from watched.changes import WEIGHTS

FLOODED = ["floods", "creations", "renames", "moves", "links", "mounts", "stores"]
FEWER = [("max_inotify_instances", 0), *(("max_inotify_watches", most) for most in (0, 1, 7))]


def report(difference, given):
    print(difference, file=sys.stderr)
    sys.exit(f"watch.py: a wrong answer (--part {given.part[0]} --seed {given.seed} --changes {given.changes})")


def lock_step(given, required, only=None, longest=800, more=""):
    setting = lockstep.Setting(given.program, only=given.only or only)
    rng = random.Random(given.seed)
    while (left := given.changes - sum(setting.made.values())) > 0:
        count = min(left, rng.choice([longest // 16, longest // 2, longest]))
        if found := lockstep.run_round(setting, rng.random(), count):
            round_, difference = found
            report(f"this leads to it:\n{lockstep.shown(round_.history)}\n{difference}", given)
    print(f"{given.part[0]}{more}: {sum(setting.made.values())} changes, {setting.questions} answers, "
          f"{setting.unopened} of them with nothing to compare with")
    print("    " + ", ".join(f"{number} {kind}" for kind, number in sorted(setting.made.items())))
    print("    " + ", ".join(f"{what} {number}" for what, number in setting.stats.items()))
    if not given.only and (missing := [what for what in required if setting.stats[what] == 0]):
        sys.exit(f"watch.py: in {given.part[0]}{more}, this never happened: {', '.join(missing)}")


def floods(given):
    given.changes = max(given.changes // 50, 10)
    lock_step(given, ["changes lost"], FLOODED, longest=64)


def watches(given):
    """Starts this program again under each limit."""
    wrapper = namespaces.wrappers()[-1:]
    if not wrapper or "--user" not in wrapper[0]:
        print("watches: left out, since user namespaces are not allowed here")
        return
    for number, (limit, most) in enumerate(FEWER):
        script = f'echo {most} >/proc/sys/user/{limit} && exec "$@"'
        command = [sys.argv[0], given.program, "--part", "lock-step", "--changes", str(max(given.changes // 20, 20)),
                   "--seed", str(given.seed + number), "--name", f" with {limit} {most}",
                   "--require", lockstep.STATS[-1] if most or "watches" in limit else lockstep.NOTHING]
        done = subprocess.run([*wrapper[0], "sh", "-c", script, "sh", *command],
                              env=os.environ | {namespaces.INSIDE: "yes"})
        if done.returncode != 0:
            sys.exit(done.returncode)


def free_running(given):
    if difference := free.run(lockstep.Setting(given.program), given.seed, given.changes):
        report(difference, given)


def plainly(given):
    lock_step(given, given.require or ["later"] + ["mounts changed"] * namespaces.may_mount(), more=given.name)


PARTS = {"lock-step": plainly, "floods": floods, "watches": watches, "free": free_running}


def main():
    options = argparse.ArgumentParser(allow_abbrev=False)
    options.add_argument("program", type=os.path.realpath)
    options.add_argument("--part", action="append", choices=list(PARTS), help="only this; may be repeated")
    options.add_argument("--changes", type=int, default=1000, help="of each part; floods and watches make fewer")
    options.add_argument("--seed", type=int, default=1)
    options.add_argument("--only", action="append", choices=sorted(WEIGHTS), help="only this kind; may be repeated")
    options.add_argument("--name", default="", help=argparse.SUPPRESS)
    options.add_argument("--require", action="append", help=argparse.SUPPRESS)
    given = options.parse_args()
    namespaces.enter()
    if not namespaces.may_mount():
        print("mounts: left out, since mount namespaces are not allowed here")
    for part in given.part or PARTS:
        PARTS[part](argparse.Namespace(**vars(given) | {"part": [part]}))


if __name__ == "__main__":
    main()
