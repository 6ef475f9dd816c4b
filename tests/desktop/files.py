"""New, Open, Save, Save as, the toolbar's Save, and recent files."""

import texts
from bench import DesktopTest
from desk import click, fill, press, wait


class FilesTest(DesktopTest):
    def edit(self, program, text):
        fill(program.field("PlanView.multiples"), text)

    def read(self, path):
        with open(path, "rb") as file:
            return file.read()

    def waitForChange(self, path, before):
        wait(f"new bytes in {path}", lambda: self.read(path) not in (before, b""))

    def testSaveAsksForANameOnceAndSaveAsAlways(self):
        program = self.start()
        self.assertEqual(program.fileName(), "[New].kovc")
        self.assertEqual(program.recent(), [])

        program.command("fileSave", "mouse")
        program.chooseFile(self.file("one"))
        one = self.file("one.kovc")  # completed by the file chooser
        program.waitForFile(one)
        before = self.read(one)

        self.edit(program, "2 4")
        program.command("fileSave", "keyboard")
        self.waitForChange(one, before)
        program.assertNoWindow()

        program.command("fileSaveAs", "keyboard")
        program.chooseFile(self.file("two.kovc"))
        program.waitForFile(self.file("two.kovc"))
        self.assertEqual(self.read(self.file("two.kovc")), self.read(one))
        self.assertEqual(program.recent(), [self.file("two.kovc"), one])

        program.command("fileSaveAs", "action")
        program.chooseFile(None)
        self.assertEqual(program.fileName(), self.file("two.kovc"))
        self.close(program)

    def testTheToolbarsSaveAlwaysAsks(self):
        program = self.start()
        click(program.tool("fileSave"))
        program.chooseFile(self.file("one.kovc"))
        program.waitForFile(self.file("one.kovc"))

        click(program.tool("fileSave"))
        program.chooseFile(self.file("two.kovc"))
        program.waitForFile(self.file("two.kovc"))

        before = self.read(self.file("one.kovc"))
        self.edit(program, "3")
        program.tool("fileSave").act()
        program.confirmFile(self.file("one.kovc"))
        question = texts.DIALOGS.get("File.replace", self.language).replace("%s", self.file("one.kovc"))
        program.answer(program.message(question), "yes")
        program.waitForFile(self.file("one.kovc"))
        self.assertNotEqual(self.read(self.file("one.kovc")), before)
        self.close(program)

    def testNewAndOpenAskAboutChanges(self):
        program = self.start()
        self.edit(program, "4 5")
        program.command("fileSave", "action")
        program.chooseFile(self.file("kept.kovc"))
        program.waitForFile(self.file("kept.kovc"))

        click(program.tool("fileNew"))
        program.waitForFile("[New].kovc")
        self.assertEqual(program.field("PlanView.multiples").text, self.number("1.5; 2; 3; 5; 7; 10; 15; 20"))

        # A document that has never been saved counts as changed. Cancelling keeps it.
        program.command("fileOpen", "mouse")
        program.answer(program.unsavedQuestion(), "cancel")
        program.assertNoWindow()
        self.edit(program, "6 7")
        program.command("fileNew", "keyboard")
        box = program.unsavedQuestion()
        press("Escape")
        program.waitUntilGone(box)
        self.assertEqual(program.field("PlanView.multiples").text, "6 7")

        click(program.tool("fileOpen"))
        program.answer(program.unsavedQuestion(), "no")
        program.chooseFile(self.file("kept.kovc"))
        program.waitForFile(self.file("kept.kovc"))
        self.assertEqual(program.field("PlanView.multiples").text, "4; 5")

        program.command("fileOpen", "keyboard")
        program.chooseFile(None)
        self.assertEqual(program.fileName(), self.file("kept.kovc"))
        self.close(program)

    def testRecentFilesAreListedNewestFirstAndOpened(self):
        program = self.start()
        for name, points in (("a.kovc", "2"), ("b.kovc", "3"), ("c.kovc", "4")):
            self.edit(program, points)
            program.command("fileSaveAs", "action")
            program.chooseFile(self.file(name))
            program.waitForFile(self.file(name))
        self.assertEqual(program.recent(), [self.file(name) for name in ("c.kovc", "b.kovc", "a.kovc")])

        program.chooseRecent(self.file("a.kovc"))
        program.waitForFile(self.file("a.kovc"))
        self.assertEqual(program.field("PlanView.multiples").text, "2")
        self.assertEqual(program.recent()[0], self.file("a.kovc"))

        self.edit(program, "9")
        program.chooseRecent(self.file("b.kovc"))
        program.answer(program.unsavedQuestion(), "cancel")
        self.assertEqual(program.fileName(), self.file("a.kovc"))
        program.chooseRecent(self.file("b.kovc"))
        program.answer(program.unsavedQuestion(), "no")
        program.waitForFile(self.file("b.kovc"))
        recent = program.recent()
        self.close(program)

        # They outlive the program, which opens the last one again.
        program = self.start()
        self.assertEqual(program.recent(), recent)
        self.assertEqual(program.fileName(), self.file("b.kovc"))
        self.close(program)
