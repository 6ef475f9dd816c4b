"""Start, Stop, Power off, and what a running test keeps from being used."""

from accessible import FOCUSED
from bench import DesktopTest
from desk import click, fill, find, focus, press, wait

FILE_COMMANDS = ("fileNew", "fileOpen", "fileSave", "fileSaveAs")


class RunsTest(DesktopTest):
    def sensitivity(self, program):
        """Of the file commands of menu and toolbar, and of Start and Stop."""
        return ([program.item(key).isSensitive for key in FILE_COMMANDS],
                [program.tool(key).isSensitive for key in FILE_COMMANDS[:3]],
                [program.tool(key).isSensitive for key in ("start", "stop")])

    def testStopEndsARunningTest(self):
        program = self.start()
        idle = ([True] * 4, [True] * 3, [True, False])
        self.assertEqual(self.sensitivity(program), idle)

        click(program.tool("start"))
        program.waitForPoint(1)
        wait("the commands of a running test", lambda: self.sensitivity(program) == (
            [False, False, True, True], [False, False, True], [False, True]))
        self.assertTrue(find(program.window, "progress bar"))
        self.assertFalse(program.field("PlanView.multiples").isSensitive)

        click(program.tool("stop"))
        program.waitForOutcome("Stopped")
        wait("the commands of an idle program", lambda: self.sensitivity(program) == idle)
        self.assertIsNone(program.window.look("progress bar"))
        self.assertEqual(program.rows(), [])

        # By the keyboard alone: from Start it goes to Stop.
        focus(program.tool("start"))
        press("space")
        program.waitForPoint(1)
        wait("the keyboard at Stop", lambda: program.tool("stop").has(FOCUSED))
        press("Escape")
        program.waitForOutcome("Stopped")
        program.discard()

    def testACompleteRunShowsWhatItMeasured(self):
        program = self.start("--speed", "1000")
        focus(program.tool("start"))
        press("space")
        program.waitForOutcome("Passed")
        rows = program.rows()
        self.assertEqual([row[2] for row in rows], self.number("1.50 2.00 3.00 5.00 7.00 10.00 15.00 20.00").split())
        for row in rows:
            self.assertIn(program.word("State.passed"), row[-1])
        self.assertTrue(program.reads(program.word("Simulated.notice")))

        # The file keeps what was measured.
        program.command("fileSave", "action")
        program.chooseFile(self.file("measured.kovc"))
        program.waitForFile(self.file("measured.kovc"))
        program.command("fileNew", "action")
        wait("an empty table", lambda: program.rows() == [])
        program.chooseRecent(self.file("measured.kovc"))
        program.answer(program.unsavedQuestion(), "no")
        wait("the results", lambda: program.rows() == rows)
        self.close(program)

    def testAPlanThatMakesNoSenseIsRefused(self):
        program = self.start()
        fill(program.field("PlanView.multiples"), "0.5 2")
        reason = program.word("Plan.belowSetting").replace("%s", self.number("0.5"))
        program.waitForText(reason)
        click(program.tool("start"))
        program.answer(program.message(program.word("Run.refused").replace("%s", reason)), "ok")
        self.assertTrue(program.tool("start").isSensitive)
        self.assertFalse(program.tool("stop").isSensitive)
        program.discard()
