"""Questions to `kelwhich batch`, which runs on, and to processes that begin with the question."""
import json
import os
import select
import shutil
import subprocess

PATIENCE = 120  # seconds for an answer


class Silence(Exception):
    """The program ended, or does not answer."""


def unprivileged():
    """A prefix to a command that takes the rights of root to read everything from it."""
    command = ["setpriv", "--inh-caps=-all", "--bounding-set=-all"]
    if os.geteuid() != 0 or not shutil.which(command[0]):
        return []
    return command if subprocess.run([*command, "true"], stderr=subprocess.DEVNULL).returncode == 0 else []


class Batch:
    """One `kelwhich batch`."""

    def __init__(self, command, errors):
        self.errors = errors  # the path of a file
        self.rest = b""
        with open(errors, "wb") as err:
            self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=err,
                                            bufsize=0)

    def send(self, names):
        self.process.stdin.write("".join(name + "\n" for name in names).encode())

    def receive(self):
        while b"\n" not in self.rest:
            if not select.select([self.process.stdout], [], [], PATIENCE)[0]:
                raise Silence(f"no answer in {PATIENCE} seconds")
            block = os.read(self.process.stdout.fileno(), 1 << 16)
            if not block:
                raise Silence(f"ended with {self.process.wait()}: {self.told()}")
            self.rest += block
        line, self.rest = self.rest.split(b"\n", 1)
        answer = json.loads(line)
        del answer["schema"]
        return answer

    def ask(self, names):
        self.send(names)
        return [self.receive() for _ in names]

    def told(self):
        with open(self.errors, encoding="utf-8") as text:
            return text.read()

    def close(self):
        """Ends it; what it wrote to standard error."""
        self.process.stdin.close()
        self.process.wait(PATIENCE)
        self.process.stdout.close()
        return self.told()


def ask_anew(command, names):
    """What a process that begins now answers to each name; or one text: why it cannot open the installation."""
    done = subprocess.run([*command, "--json", "--", *names], capture_output=True, text=True, timeout=PATIENCE)
    errors = [json.loads(line) for line in done.stderr.splitlines()]
    answers = {error["query"]: {"query": error["query"], "error": {"message": error["error"]["message"]}}
               for error in errors if "query" in error}
    if done.stdout:
        answers |= {answer["query"]: answer for answer in json.loads(done.stdout)["answers"]}
    if not answers:
        if not errors:
            raise Silence(f"a process that begins anew ended with {done.returncode}")
        return errors[-1]["error"]["message"]
    return [answers[name] for name in names]
