"""New, Open, Save, Save as, the toolbar's Save, and recent files."""

import texts
from bench import DesktopTest
from desk import click, fill, wait


def read(path):
    with open(path, "rb") as file:
        return file.read()


class FilesTest(DesktopTest):
    def points(self, program):
        return program.field("PlanView.multiples")

    def testSaveAsksForANameOnceSaveAsAndTheToolbarAlways(self):
        one, two = self.file("one.kovc"), self.file("two.kovc")
        program = self.start()
        self.assertEqual(program.fileName(), "[New].kovc")
        self.assertEqual(program.recent(), [])
        program.command("fileSave", "mouse")
        program.chooseFile(self.file("one"))  # completed by the file chooser
        program.waitForFile(one)
        before = read(one)

        fill(self.points(program), "2 4")
        program.command("fileSave", "action")
        wait("new bytes", lambda: read(one) not in (before, b""))
        program.assertNoWindow()

        program.command("fileSaveAs", "action")
        program.chooseFile(two)
        program.waitForFile(two)
        self.assertEqual(read(two), read(one))
        self.assertEqual(program.recent(), [two, one])
        program.command("fileSaveAs", "action")
        program.chooseFile(None)
        self.assertEqual(program.fileName(), two)

        fill(self.points(program), "3")
        click(program.tool("fileSave"))
        program.confirmFile(one)
        question = texts.DIALOGS.get("File.replace", self.language).replace("%s", one)
        program.answer(program.message(question), "yes")
        program.waitForFile(one)
        self.assertNotEqual(read(one), read(two))
        self.close(program)

    def testNewOpenAndRecentFilesAskAboutChanges(self):
        kept, other = self.file("kept.kovc"), self.file("other.kovc")
        program = self.start()
        for path, points in ((other, "3"), (kept, "4 5")):
            fill(self.points(program), points)
            program.command("fileSaveAs", "action")
            program.chooseFile(path)
            program.waitForFile(path)
        self.assertEqual(program.recent(), [kept, other])

        click(program.tool("fileNew"))
        program.waitForFile("[New].kovc")
        self.assertEqual(self.points(program).text, self.number("1.5; 2; 3; 5; 7; 10; 15; 20"))
        # A document that has never been saved counts as changed. Cancelling keeps it.
        program.command("fileOpen", "mouse")
        program.answer(program.unsavedQuestion(), "cancel")
        program.assertNoWindow()
        click(program.tool("fileOpen"))
        program.answer(program.unsavedQuestion(), "no")
        program.chooseFile(kept)
        program.waitForFile(kept)
        self.assertEqual(self.points(program).text, "4; 5")
        fill(self.points(program), "9")
        program.chooseRecent(other)
        program.answer(program.unsavedQuestion(), "cancel")
        self.assertEqual(program.fileName(), kept)
        program.chooseRecent(other)
        program.answer(program.unsavedQuestion(), "no")
        program.waitForFile(other)
        self.assertEqual(self.points(program).text, "3")
        self.assertEqual(program.recent(), [other, kept])
        self.close(program)

        # They outlive the program, which opens the last one again.
        program = self.start()
        self.assertEqual(program.recent(), [other, kept])
        self.assertEqual(program.fileName(), other)
        self.close(program)
