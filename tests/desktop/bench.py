"""What the tests of the program Overcurrent have in common: a home, programs in it, and the places in the
window where a user looks."""

import re
import sys
import unittest

import texts
from desk import WAYLAND, Home, Program, click, find, wait


class Overcurrent(Program):
    """The program Overcurrent."""

    def tool(self, key):
        """A tool button by the key of its text."""
        return self.button(texts.PROGRAM.title(f"Tool.{key}", self.language))

    def command(self, key, by="mouse"):
        """Chooses "file..." or a help command by the key of its text."""
        self.choose(*self._menu(key), by)

    def item(self, key):
        return self.menuItem(*self._menu(key))

    def _menu(self, key):
        menu = "Menu.help" if key in ("about", "help") else "Menu.file"
        return self.text(menu), self.text(f"Menu.{key}")

    def text(self, key):
        return texts.PROGRAM.get(key, self.language)

    def word(self, key):
        tables = (texts.OVERCURRENT, texts.TEST_PROGRAM, texts.MEASURE)
        table = next((table for table in tables if key in table.texts), texts.MEASURE)
        return table.get(key, self.language)

    def answer(self, box, key):
        """Presses a button of a message box, by the key of its text, with the mouse."""
        click(find(box, "push button", self.caption(key)))
        self.waitUntilGone(box)

    def caption(self, key):
        return texts.DIALOGS.get(f"Button.{key}", self.language).replace("_", "")

    def fileName(self):
        """What the status bar says about the file."""
        caption = self.text("Menu.file") + ": "
        area = find(self.window, "panel", lambda name: name.startswith(caption))
        return area.name[len(caption):]

    def waitForFile(self, path):
        wait(f"'{path}' in the status bar", lambda: self.fileName() == path)

    def recent(self):
        """The recent files, from the top; without one there is nothing to open."""
        menu = find(find(self.window, "menu bar"), "menu", self.text("Menu.fileRecents"), hidden=True)
        assert menu.isSensitive == bool(menu.children()), menu
        return [node.name for node in menu.walk(hidden=True) if node.role == "menu item"]

    def chooseRecent(self, path):
        if WAYLAND:
            find(self.window, "menu item", path, hidden=True).act()
            return
        click(find(self.window, "menu", self.text("Menu.file")))
        click(find(self.window, "menu", self.text("Menu.fileRecents")))
        click(find(self.window, "menu item", path))

    def field(self, *keys):
        """A field of the plan by the keys of its name's parts."""
        return find(self.window, "text", ", ".join(self.word(key) for key in keys))

    def reads(self, text):
        """Whether some label or status area of the window begins with the text."""
        return any(node.name.startswith(text) for node in self.window.walk() if node.role in ("label", "statusbar"))

    def waitForText(self, text, limit=30):
        wait(f"'{text}' in the window", lambda: self.reads(text), limit)

    def waitForPoint(self, number):
        """Waits until the test is at a point of its plan, counted from 1."""
        self.waitForText(self.word("State.point").split("%zu")[0] + f"{number} ")

    def waitForOutcome(self, key):
        text = self.word(f"Outcome.{key}")
        wait(f"the outcome '{text}'", lambda: any(text in label for label in self.window.labels), 60)

    def rows(self):
        """The rows of the results that have been measured."""
        rows = find(self.window, "table", self.word("Results.title")).rows
        return [row for row in rows if row[-1] != self.word("State.planned")]

    def unsavedQuestion(self):
        return self.message(texts.FILES.get("saveDialog", self.language).replace("%s", self.fileName()))

    def discard(self):
        """Closes the program and answers that changes need not be saved."""
        self.command("exit", "action")
        self.answer(self.unsavedQuestion(), "no")
        self.waitForEnd()


class DesktopTest(unittest.TestCase):
    """A test in a home of its own, in one language."""

    binary = None
    language = "en"

    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.close)

    def start(self, *arguments, **environment):
        """A program that the test is to close."""
        program = Overcurrent(self.binary, self.home, *arguments, language=self.language, **environment)
        self.addCleanup(self._end, program)
        return program

    def _end(self, program):
        if not program.isOver:
            print(f"Left open by {self.id()}:", program.window, program.windows())
            program.kill()
        output = program.output()
        complaints = [line for line in output.split("\n")
                      if re.search(r"CRITICAL|WARNING \*\*|Sanitizer", line) and "Kes-WARNING" not in line]
        self.assertEqual(complaints, [], output)

    def close(self, program):
        """Where nothing is to be asked."""
        program.command("exit", "action")
        program.waitForEnd()

    def file(self, name):
        return self.home.file(name)

    def number(self, text):
        """A number, or several, as the screen shows it in the language."""
        return text.replace(".", ",") if self.language == "ru" else text


def run(suite):
    return unittest.TextTestRunner(verbosity=2).run(suite)


def main(cases, binary, languages, names):
    """Runs the tests, or those whose names hold one of the given ones. Returns an exit status.

    Keys and clicks pass a window manager and can get lost on a busy machine, so a test that fails is tried
    once more. One that only passes then stands in the output as "FLAKY" with its name; a second such test is a
    failure, here as in the whole of ./test, which counts these lines."""
    DesktopTest.binary = binary
    loader = unittest.TestLoader()
    loader.testNamePatterns = [f"*{name}*" for name in names] or None
    passed = True
    flaky = 0
    for DesktopTest.language in languages:
        print(f"Language: {DesktopTest.language}", file=sys.stderr)
        first = run(unittest.TestSuite(loader.loadTestsFromTestCase(case) for case in cases))
        passed = passed and first.testsRun > 0
        failed = [test for test, _ in first.failures + first.errors]
        if failed:
            print("Once more:", ", ".join(test.id() for test in failed), file=sys.stderr)
            again = run(unittest.TestSuite(type(test)(test._testMethodName) for test in failed))
            passed = again.wasSuccessful() and passed
            lost = {test.id() for test, _ in again.failures + again.errors}
            for name in sorted({test.id() for test in failed} - lost):
                flaky += 1
                print(f"FLAKY {name} ({DesktopTest.language})", flush=True)
    return 0 if passed and flaky <= 1 else 1
