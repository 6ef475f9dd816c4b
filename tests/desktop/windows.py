"""Test object, Report, About and Help."""

import os
import re

import texts
from accessible import EDITABLE
from bench import DesktopTest
from desk import click, fill, find, press, wait

NAMES = {"en": "Setting current Is, A", "ru": "Ток уставки Iуст, А"}
TAGS = {"en": "en-US", "ru": "ru-RU"}


class WindowsTest(DesktopTest):
    def testTheTestObjectRefusesWrongValuesInPlace(self):
        program = self.start()
        title = texts.WINDOWS.get("testObjectWindowTitle", self.language)
        click(program.tool("testObject"))
        window = program.find("frame", title)
        entry = find(window, "text", NAMES[self.language])
        before = entry.text
        program.tool("start").act()
        wait("values that cannot be edited", lambda: not any(text.has(EDITABLE) for text in window.all("text")))
        program.tool("stop").act()
        program.waitForOutcome("Stopped")
        wait("values that can be edited", lambda: entry.has(EDITABLE))

        fill(entry, "abc")
        refusal = texts.TREE.get("Error.notNumber", self.language).replace("%s", "abc")
        wait("the reason beside the value", lambda: any(label.startswith(refusal) for label in window.labels))
        self.assertTrue(entry.description.startswith(refusal), entry.description)
        press("Escape")  # gives the value back and leaves the window open
        wait("the old value", lambda: entry.text == before)
        self.assertIn(window, program.windows())

        fill(entry, "2")
        press("Tab")
        wait("the new value in the main window", lambda: any(
            re.fullmatch("2 (A|А), TMS 1", label) for label in program.window.labels))

        press("Escape")
        program.waitUntilGone(window)
        click(program.button(program.word("Settings.edit")))
        window = program.find("frame", title)
        press("Escape")
        program.waitUntilGone(window)
        program.discard()

    def testTheReportIsOpenedByTheDesktop(self):
        program = self.start()
        report = self.file("Documents/kes/Overcurrent.html")
        click(program.tool("report"))
        chooser = program.find("file chooser")
        wait("an offered name", lambda: any(field.text == "Overcurrent.html" for field in chooser.all("text")))
        program.chooseFile(report)
        wait("an opened report", lambda: self.home.opened() == [report])
        with open(report, encoding="utf-8") as file:
            self.assertIn(program.word("Caption.plan"), file.read())
        program.discard()

    def testHelpIsOpenedByTheDesktop(self):
        program = self.start()
        path = os.path.join(os.path.dirname(self.binary), "Help", TAGS[self.language], "Overcurrent.pdf")
        program.command("help", "action")
        if os.path.exists(path):
            wait("an opened help file", lambda: self.home.opened() == [path])
        else:
            program.answer(program.find("alert"), "ok")
        program.discard()
