#!/usr/bin/python3
"""Takes pictures of every window of Overcurrent in both languages.
usage: take.py normal|small|double FOLDER_OF_PROGRAMS FOLDER_OF_PICTURES [PICTURE...]"""

import os
import shutil
import signal
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "tests", "desktop"))

import texts  # noqa: E402
from bench import Overcurrent  # noqa: E402
from camera import Camera, calm, decorate  # noqa: E402
from desk import Home, click, fill, find, focus, press, wait  # noqa: E402

ARCHIVES = {"en": "Feeder 12, stage I>.kovc", "ru": "Фидер 12, ступень I>.kovc"}
HOME = "/tmp/engineer"  # seen in pictures, so always the same
TOLERANCES = {
    "en": ("Time tolerance, relative, %", "Time tolerance, absolute, ms", "Current tolerance, %"),
    "ru": ("Допуск времени, относительный, %", "Допуск времени, абсолютный, мс", "Допуск тока, %"),
}
FAST = ("--speed", "2000")


class Studio:
    """One language: its home, its programs, its camera."""

    def __init__(self, programs, pictures, language, names):
        self.programs = programs
        self.language = language
        self.camera = Camera(os.path.join(pictures, language), names)

    def start(self, *arguments, binary="kes-overcurrent", **environment):
        # The one before was killed: its work would be offered, in a box that takes the keyboard from all windows.
        shutil.rmtree(self.home.file(".local/state"), ignore_errors=True)
        return Overcurrent(os.path.join(self.programs, binary), self.home, *arguments, language=self.language,
                           **environment)

    def picture(self, name, program, node=None, scale=1):
        self.camera.take(name, program, node or program.window, scale)

    def run(self, *scenes):
        with Home(HOME) as self.home:
            calm(self.home)
            for scene in scenes:
                scene(self)

    def setting(self, key):
        return texts.SETTINGS.get(key, self.language)

    def archive(self, program):
        """Measures and saves; the path of the file."""
        path = self.home.file(ARCHIVES[self.language])
        program.tool("start").act()
        program.waitForOutcome("Passed")
        program.command("fileSave", "action")
        chooser = program.find("file chooser")
        find(chooser, "text").setText(path)
        accept = chooser.all("push button")[-1]
        wait("a name to be taken", lambda: accept.isSensitive)
        accept.act()
        program.waitUntilGone(chooser)
        program.waitForFile(path)
        return path


# Each scene leaves nothing behind but files.

def mainWindow(studio):
    with studio.start(*FAST) as program:
        studio.picture("main-empty", program)
        studio.archive(program)
        studio.picture("main-window", program)
        click(find(program.window, "menu", program.text("Menu.help")))
        wait("the menu", lambda: program.item("about").isShowing)
        studio.picture("menu-help", program)
        press("Escape")
        click(find(program.window, "menu", program.text("Menu.file")))
        recent = find(program.window, "menu", program.text("Menu.fileRecents"))
        click(recent)
        wait("the recent files", lambda: recent.children()[0].isShowing)
        studio.picture("menu-file", program)
        press("Escape", "Escape")


def darkWindow(studio):
    path = studio.home.file(ARCHIVES[studio.language])
    with studio.start(path, *FAST, GTK_THEME="Adwaita:dark") as program:
        program.waitForFile(path)
        wait("the archive", lambda: program.rows())
        studio.picture("main-dark", program)


def failedTest(studio):
    with studio.start(*FAST) as program:
        program.tool("testObject").act()
        window = program.find("frame", texts.WINDOWS.get("testObjectWindowTitle", studio.language))
        for name, value in zip(TOLERANCES[studio.language], ("1.8", "0", "0")):
            fill(find(window, "text", name), value.replace(".", "." if studio.language == "en" else ","))
        press("Tab", "Escape")
        program.waitUntilGone(window)
        program.tool("start").act()
        program.waitForOutcome("Failed")
        studio.picture("main-failed", program)


def runningTest(studio):
    with studio.start("--speed", "15") as program:
        program.tool("start").act()
        program.waitForPoint(5)
        studio.picture("main-running", program)
    with studio.start() as program:
        program.tool("start").act()
        program.waitForPoint(1)
        program.tool("testObject").act()
        window = program.find("frame", texts.WINDOWS.get("testObjectWindowTitle", studio.language))
        studio.picture("test-object-running", program, window)
    with studio.start() as program:
        program.tool("start").act()
        program.waitForPoint(1)
        program.command("exit", "action")
        studio.picture("question-stop", program, program.find("alert"))


def testObject(studio):
    with studio.start() as program:
        program.tool("testObject").act()
        window = program.find("frame", texts.WINDOWS.get("testObjectWindowTitle", studio.language))
        studio.picture("test-object", program, window)
        fill(find(window, "text", TOLERANCES[studio.language][0]), "500")
        studio.picture("test-object-refused", program, window)


def devices(studio):
    with studio.start() as program:
        program.tool("hardware").act()
        window = program.find("frame", studio.setting("Settings.title"))
        address = find(window, "text", studio.setting("Add.addressName"))
        find(window, "push button", studio.setting("Search.start")).act()
        find(window, "label", studio.setting("Search.found"))
        find(window, "push button", studio.setting("Devices.identifyOf").replace("%s", "127.0.0.1")).act()
        wait("its identity", lambda: not window.look("label", studio.setting("Identity.unknown")))
        for device in ("127.0.0.20", "127.0.0.21"):
            fill(address, device)
            press("Return")
            find(window, "label", device)
        click(find(window, "check box", studio.setting("Devices.auxDCOf").replace("%s", "127.0.0.20")))
        mode = find(window, "combo box", studio.setting("Sync.modeName"))
        find(mode, "menu item", texts.DEVICES.get("Sync.PTP.name", studio.language), hidden=True).act()
        wait("the answers of the devices", lambda: not window.look("label", studio.setting("Identity.asking")), 30)
        studio.picture("hardware-settings", program, window)
        fill(address, "192.168.1.256")
        press("Return")
        find(window, "notification")
        studio.picture("hardware-refused", program, window)
        fill(address, "127.0.0.9")
        press("ctrl+a", "BackSpace")
        click(find(window, "push button", studio.setting("Settings.ok")))
        program.waitUntilGone(window)
        studio.picture("main-devices", program)
        name = texts.DEVICES.get("Sync.PTP.shortName", studio.language)
        click(find(program.window, "push button", lambda text: text.endswith(name)))
        studio.picture("sync-info", program, program.find("alert"))


def fileDialogs(studio):
    path = studio.home.file(ARCHIVES[studio.language])
    with studio.start(path) as program:
        program.waitForFile(path)
        program.tool("fileOpen").act()
        studio.picture("file-open", program, program.find("file chooser"))
        press("Escape")
        wait("the end of the dialog", lambda: not program.windows())
        program.tool("fileSave").act()
        chooser = program.find("file chooser")
        studio.picture("file-save", program, chooser)
        find(chooser, "text").setText(path)
        accept = chooser.all("push button")[-1]
        wait("a name to be taken", lambda: accept.isSensitive)
        accept.act()
        studio.picture("question-replace", program, program.find("alert"))


def questions(studio):
    with studio.start() as program:
        fill(program.field("PlanView.multiples"), "2 4 8")
        program.command("exit", "action")
        studio.picture("question-save", program, program.find("alert"))
    with open(studio.home.file("old.kovc"), "wb") as file:
        file.write(b"nothing that could be read")
    with studio.start(studio.home.file("old.kovc")) as program:
        studio.picture("question-repair", program, program.find("alert"))


def about(studio):
    with studio.start() as program:
        program.command("about", "action")
        studio.picture("about", program, program.find("dialog"))


def fault(studio):
    with studio.start(binary="kes-overcurrent-faulty") as program:
        program.tool("start").act()
        program.waitForPoint(1)
        program.process.send_signal(signal.SIGUSR1)
        studio.picture("fault", program, program.find("alert"))


def smallScreen(studio):
    with studio.start(*FAST) as program:
        studio.archive(program)
        studio.picture("small-screen", program)
        program.tool("hardware").act()
        window = program.find("frame", studio.setting("Settings.title"))
        studio.picture("small-hardware-settings", program, window)
        press("Escape")
        program.waitUntilGone(window)
        program.tool("testObject").act()
        window = program.find("frame", texts.WINDOWS.get("testObjectWindowTitle", studio.language))
        studio.picture("small-test-object", program, window)
        press("Escape")
        program.waitUntilGone(window)
        program.tool("fileOpen").act()
        studio.picture("small-file-open", program, program.find("file chooser"))


def doubleScale(studio):
    with studio.start(*FAST, GDK_SCALE="2") as program:
        studio.archive(program)
        studio.picture("double-scale", program, scale=2)


# The devices that are chosen last stay chosen.
SETS = {"normal": (mainWindow, darkWindow, failedTest, runningTest, testObject, fileDialogs, questions, about, fault,
                   devices),
        "small": (smallScreen,), "double": (doubleScale,)}


def main():
    which, programs, pictures, *names = sys.argv[1:]
    decorate()
    for language in texts.LANGUAGES:
        Studio(programs, pictures, language, names).run(*SETS[which])


if __name__ == "__main__":
    main()
