"""A history in which `batch` answered wrongly, made as short as it still does so."""
import time

from watched.lockstep import Round

SECONDS = 60


def differs(setting, manifest, history):
    """What the last answers differ in when that history happens once more, in a new world; nothing if in nothing."""
    round_ = Round(setting, manifest)
    difference = None
    for step in history:
        changes, names = step
        if changes is None:
            if not round_.opens():
                break
            round_.start()
        elif names and round_.batch:
            difference = difference or round_.ask(names, compares=step is history[-1])
        else:
            round_.change(changes)
    return round_.close() or difference


def without(history, start, size):
    return [step for number, step in enumerate(history) if not start <= number < start + size or step[0] is None]


def shrunk(setting, manifest, history):
    """The shortest history found in some time; nothing when not even the whole one does it again."""
    if not differs(setting, manifest, history):
        return None
    *before, (_, last) = history
    history = [step for changes, names in before for step in [([], [name]) for name in names] or [(changes, [])]]
    history += [([], [name]) for name in last if differs(setting, manifest, [*before, ([], [name])])][:1]
    end = time.monotonic() + SECONDS
    size = len(history) // 2
    while size > 0 and time.monotonic() < end:
        start = 0
        while start < len(history) and time.monotonic() < end:
            shorter = without(history, start, size)
            if len(shorter) < len(history) and differs(setting, manifest, shorter):
                history = shorter
            else:
                start += size
        size //= 2
    return history


def shown(history):
    lines = []
    for changes, names in history:
        lines += ["batch begins"] if changes is None else ["  ".join(map(str, change)) for change in changes]
        lines += ["    asked: " + " ".join(names)] if names else []
    return "\n".join(lines)
