"""Kills the program Overcurrent at random moments of running, saving and closing, and looks what its next start
offers: exactly what was not saved.

A user at the accessibility bus notes what the window has shown and when. What it has shown for longer than
`LATE` before the kill has to be in the window after the next start, out of the file or, after a question, out of
the copy; and a question comes only for what is not in the file.

usage: kills.py PROGRAM [--rounds COUNT] [--seed NUMBER]
"""

import argparse
import collections
import os
import random
import shutil
import sys
import threading
import time

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "desktop"))

from gi.repository import GLib  # noqa: E402

from bench import Overcurrent  # noqa: E402
from desk import Home, find, wait  # noqa: E402
from trial import Trial, bytesOfCopy, readFile  # noqa: E402

LATE = 1.2  # seconds, from an edit or a result to its copy on the disk
SPEED = "30"  # a test of a few seconds
FORMER = "20"  # the highest multiple of the plan in the file before
QUESTION = "Work of an earlier session has not been saved."


class Over(Exception):
    """The program has been killed meanwhile."""


class Session:
    """A user of a program that is about to be killed. A state of the document is the highest multiple of the plan
    and the number of results."""

    def __init__(self, program, archive, choice):
        self._program = program
        self._archive = archive
        self._choice = choice
        self._field = program.field("PlanView.multiples")
        self._start, self._save, self._exit = program.tool("start"), program.item("fileSave"), program.item("exit")
        self._multiple = 3
        self.shown = []  # (when, state), in their order
        self.saved = None  # the last state that was seen in the file
        self.isSettled = True  # nothing has been done since that
        self.isGivenUp = False

    def use(self, kind):
        """Edits until the kill; what comes in between is "run", "save" or "close"."""
        while not self._program.isOver:
            self._edit(f"1.5 2 {self._multiple}" if kind == "run" else f"2 {self._multiple}")
            if kind == "run":
                self._run()
                kind = "save"
            self._pause(2.5)
            isSaved = self._choice.random() < 0.3
            if isSaved:
                self._keep()
                self._pause(0.6)
            if kind == "close":
                self._close(isSaved)

    def _run(self):
        self._start.act()
        while self.shown[-1][1][1] < 3:
            self._until(lambda: self._rows() > self.shown[-1][1][1])
            self._note(self._rows())
        self._until(lambda: self._start.isSensitive)
        self._keep()

    def _close(self, isSaved):
        self._exit.act()
        if not isSaved:
            box = self._until(lambda: next(iter(self._program.windows()), None))
            self._pause(1.5)
            button = self._until(lambda: box.look("push button", self._program.caption("no")))
            self.isGivenUp = True
            button.act()
        self._pause(5)

    def _edit(self, text):
        self.isSettled = False
        self._field.setText(text)
        self._until(lambda: self._field.text == text)
        self._note(0)
        self._multiple += 1

    def _note(self, rows):
        multiple = self.shown[-1][1][0] if rows else self._multiple
        self.shown.append((time.monotonic(), (multiple, rows)))

    def _keep(self):
        before = readFile(self._archive)
        self._save.act()
        self._until(lambda: isArchive(readFile(self._archive)) and readFile(self._archive) != before)
        self.saved = self.shown[-1][1]
        self.isSettled = True

    def _rows(self):
        table = self._program.window.look("table", self._program.word("Results.title"))
        return len(table.cells()) if table else 0

    def _pause(self, longest):
        end = time.monotonic() + self._choice.random() * longest
        self._until(lambda: time.monotonic() > end)

    def _until(self, predicate):
        while not self._program.isOver:
            value = predicate()
            if value:
                return value
            time.sleep(0.01)
        raise Over


def isArchive(content):
    """Whether the bytes are whole: a ZIP in full blocks behind a signature that is longer than the one it replaces."""
    return content is not None and len(content) % 10240 == 11 and b"PK\x05\x06" in content[-10240:]


def stateOf(program):
    multiple = program.field("PlanView.multiples").text.replace(";", " ").split()[-1]
    return 0 if multiple == FORMER else int(multiple), len(program.rows())


def boxOf(program, seconds):
    """The box over the main window, or None when none comes."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        boxes = program.windows()
        if boxes:
            return boxes[0]
        time.sleep(0.02)
    return None


def nextStart(binary, home, archive):
    """(the state out of the file, or None when it is broken; whether a copy was offered; the state in the end)."""
    with Overcurrent(binary, home, archive) as program:
        inFile, isBroken, isOffered = None, False, False
        while box := boxOf(program, 1.5):
            isQuestion = any(QUESTION in label for label in box.labels)
            if isQuestion and not isOffered:
                inFile = stateOf(program)
            isOffered = isOffered or isQuestion
            isBroken = isBroken or not isQuestion
            buttons = [program.caption(key) for key in (("yes",) if isQuestion else ("no", "ok"))]
            find(box, "push button", lambda name: name in buttons).act()
            program.waitUntilGone(box)
            if isQuestion:
                break
        wait("the document", lambda: program.field("PlanView.multiples").text)
        time.sleep(0.2)
        final = stateOf(program)
        return None if isBroken else inFile or final, isOffered, final


def problem(session, killedAt, binary, home, archive):
    """What is wrong after the kill, or None, and what has happened."""
    for folder, _, names in os.walk(home.file(".local/state")):
        for name in names:
            if name.endswith((".work", ".former")) and bytesOfCopy(readFile(os.path.join(folder, name))) is None:
                return f"the copy {name} is not whole", []
    inFile, isOffered, final = nextStart(binary, home, archive)
    hasResults = any(rows for _, (_, rows) in session.shown)
    happened = [name for name, has in (("offered", isOffered), ("with results", hasResults),
                                       ("saved before", session.saved), ("file broken", inFile is None)) if has]
    states = [state for _, state in session.shown]
    due = [index for index, (when, _) in enumerate(session.shown) if when <= killedAt - LATE]
    if session.saved:
        due.append(len(states) - 1 - states[::-1].index(session.saved))
    story = f"shown {session.shown}, saved {session.saved}, killed {killedAt}, in the file {inFile}, now {final}"
    if isOffered and inFile == final:
        return "offered although it is in the file: " + story, happened
    if isOffered and session.isSettled and session.saved:
        return "offered although all was saved: " + story, happened
    if due and not session.isGivenUp and final < states[max(due)]:
        return "lost: " + story, happened
    return None, happened


def play(binary, former, choice, kind):
    with Home() as home:
        archive = home.file("kept.kovc")
        shutil.copy(former, archive)
        with Overcurrent(binary, home, archive, "--speed", SPEED) as program:
            session = Session(program, archive, choice)
            moment = []

            def kill():
                moment.append(time.monotonic())
                program.process.kill()

            timer = threading.Timer(0.3 + choice.random() * 5, kill)
            timer.start()
            try:
                session.use(kind)
            except Over:
                pass
            except (GLib.Error, AssertionError, AttributeError, TypeError):
                # The kill has come between a question and its answer, or the program has closed.
                if not moment and not session.isGivenUp:
                    raise
            timer.cancel()
            timer.join()
            program.process.wait()
        killedAt = moment[0] if moment else time.monotonic()
        return problem(session, killedAt, binary, home, archive)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--rounds", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    choice = random.Random(arguments.seed)
    counts = collections.Counter()
    with Trial(arguments.program) as trial:
        assert trial.run("--save", trial.archive, "--quit") == 0, trial.errors
        for number in range(arguments.rounds):
            kind = ("run", "save", "close")[number % 3]
            failure, happened = play(arguments.program, trial.archive, choice, kind)
            counts["rounds"] += 1
            counts.update(happened)
            counts["wrong"] += failure is not None
            if failure:
                print(f"FAILED: round {number}, {kind}: {failure}", flush=True)
    print(", ".join(f"{name} {counts[name]}" for name in ("rounds", "with results", "saved before", "file broken", "offered", "wrong")))
    return 1 if counts["wrong"] else 0


if __name__ == "__main__":
    sys.exit(main())
