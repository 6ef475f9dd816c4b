"""A home for one trial of the program Overcurrent, and what can be had back from it afterwards."""

import hashlib
import os
import shutil
import subprocess
import tempfile

LIMIT = 30  # seconds, for one run of the program
HUNG = "hung"
MAGIC = b"kes-recovery-copy-1"


def readFile(path):
    """The bytes of a file; None when there is none."""
    try:
        with open(path, "rb") as file:
            return file.read()
    except FileNotFoundError:
        return None


def bytesOfCopy(content):
    """What a recovery copy keeps; None when it is not whole."""
    head, _, body = content.partition(b"\n")
    fields = head.split()
    if len(fields) != 3 or fields[0] != MAGIC or hashlib.sha256(body).hexdigest().encode() != fields[1]:
        return None
    return body[int(fields[2]):]


class Trial:
    """A new home; gone with the `with` block."""

    def __init__(self, program):
        self._program = program
        self.path = tempfile.mkdtemp(prefix="kes-trial.")
        self.archive = self.file("work/kept.kovc")
        self.report = self.file("work/kept.html")
        for folder in ("work", "tmp", "cache", "state"):
            os.mkdir(self.file(folder))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.path, ignore_errors=True)

    def file(self, name):
        return os.path.join(self.path, name)

    @property
    def own(self):
        """The folders with the program's own files, not the toolkit's."""
        return ":".join(map(self.file, ("work/", "tmp/", "cache/kes/", "state/kes/")))

    def environment(self, extra=None):
        return {**os.environ, "HOME": self.path, "XDG_CACHE_HOME": self.file("cache"),
                "XDG_STATE_HOME": self.file("state"), "XDG_CONFIG_HOME": self.file("config"),
                "XDG_DATA_HOME": self.file("share"), "TMPDIR": self.file("tmp"), **(extra or {})}

    def run(self, *arguments, extra=None):
        """The status of a run, negative after a signal, or `HUNG`."""
        with open(self.file("errors"), "wb") as errors:
            try:
                return subprocess.run([self._program, "--language", "en", *arguments], env=self.environment(extra),
                                      cwd=self.path, stdin=subprocess.DEVNULL, stdout=errors, stderr=errors,
                                      timeout=LIMIT, check=False).returncode
            except subprocess.TimeoutExpired:
                return HUNG

    def measure(self, extra=None):
        """An unattended run that is to save an archive and a report."""
        return self.run("--run", "--speed", "5000", "--save", self.archive, "--report", self.report, "--quit",
                        extra=extra)

    @property
    def errors(self):
        return readFile(self.file("errors")).decode(errors="replace")

    def opens(self, content):
        """Whether the program takes the bytes for a whole archive."""
        if not content:
            return False
        path = self.file("opened.kovc")
        with open(path, "wb") as file:
            file.write(content)
        return self.run(path, "--quit") == 0

    def isReportWhole(self):
        return (readFile(self.report) or b"").rstrip().endswith(b"</html>")

    def copies(self):
        """The bytes in recovery copies, by name; None for one that is not whole."""
        found = {}
        for folder, _, names in os.walk(self.file("state/kes")):
            for name in names:
                if name.endswith((".work", ".former")):
                    found[name] = bytesOfCopy(readFile(os.path.join(folder, name)))
        return found
