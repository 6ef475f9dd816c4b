"""Closing: the questions that come before it, and every way to ask for it."""

import os
import signal

import texts
from bench import DesktopTest
from desk import fill, press


class ClosingTest(DesktopTest):
    def ways(self):
        return (("Alt+F4", lambda program: (program.waitForKeyboard(), press("alt+F4"))),
                ("the menu", lambda program: program.command("exit", "mouse")),
                ("the end of the session", lambda program: program.process.send_signal(signal.SIGTERM)))

    def cancel(self, program, box):
        press("Escape")
        program.waitUntilGone(box)
        self.assertFalse(program.isOver)

    def testTheSaveQuestionKeepsTheWindowOrSaves(self):
        program = self.start()
        fill(program.field("PlanView.multiples"), "2")
        for name, close in self.ways():
            with self.subTest(name):
                close(program)
                self.cancel(program, program.unsavedQuestion())
        program.command("exit", "action")
        program.answer(program.unsavedQuestion(), "yes")
        program.chooseFile(self.file("kept.kovc"))
        program.waitForEnd()
        self.assertTrue(os.path.exists(self.file("kept.kovc")))

    def testARunningTestIsNotCutShortWithoutAsking(self):
        program = self.start()
        program.tool("start").act()
        program.waitForPoint(1)
        question = texts.PROGRAM.get("Message.closeConfirmation", self.language)
        for name, close in self.ways()[:-1]:
            with self.subTest(name):
                close(program)
                program.answer(program.message(question), "no")
                self.assertTrue(program.tool("stop").isSensitive)

        # The key of Stop means Stop before it means anything to the box, which has nothing left to ask then.
        program.command("exit", "action")
        box = program.message(question)
        press("Escape")
        program.waitForOutcome("Stopped")
        program.waitUntilGone(box)
        self.assertFalse(program.isOver)

        program.tool("start").act()
        program.waitForPoint(1)
        program.command("exit", "action")
        program.answer(program.message(question), "yes")
        # The test has stopped; now it is about the file.
        self.cancel(program, program.unsavedQuestion())
        program.waitForOutcome("Stopped")

        # The end of the session does not ask: the outputs are off by then.
        program.tool("start").act()
        program.waitForPoint(1)
        program.process.send_signal(signal.SIGTERM)
        self.cancel(program, program.unsavedQuestion())
        program.waitForOutcome("Stopped")

        program.discard()
