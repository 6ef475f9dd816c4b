#!/usr/bin/python3
"""Measures the least size of every window of a test program: with one device and with many, before and after a
run, as it is and zoomed, in both languages. usage: sizes.py PROGRAM [TEST...]"""

import os
import re
import subprocess
import sys

from bench import DesktopTest, main
from desk import find, placeOf, press, wait, xdotool

# By the zoom in steps of 10 %: what a small laptop has without its panel and title bar, and a usual one.
LIMITS = {0: (800, 560), 5: (1280, 800)}
COUNTS = (1, 4, 20)
# The ending of the files of the programs that have some.
ENDINGS = {"kes-overcurrent": ".kovc", "kes-voltage-frequency": ".kvf"}


def leastSize(window):
    """What the window tells the window manager: width and height without the frame."""
    hints = subprocess.run(["xprop", "-id", window, "WM_NORMAL_HINTS"], capture_output=True, text=True,
                           check=True).stdout
    least = re.search(r"minimum size: (\d+) by (\d+)", hints)
    return least and (int(least[1]), int(least[2]))


class SizesTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.tooLarge = []

    def chooseDevices(self, count):
        lines = ["[Hardware]", "Version=1", "SyncMode=PTP", "ControlGroups=false", "StopOnFault=true",
                 "StatusReported=true", f"Kestos={count}"]
        for number in range(1, count + 1):
            lines += [f"[Kesto {number}]", f"Address=127.0.0.{number}", "AuxDC=true", "AuxDCVolts=220"]
        self.home.write(self.home.file(".config/kes/hardware.cfg"), "\n".join(lines))

    def archive(self, ending):
        path = self.file("run" + ending)
        subprocess.run([self.binary, "--language", self.language, "--speed", "1000", "--run", "--save", path,
                        "--quit"], env=self.home.environment(self.language), capture_output=True, check=True)
        return path

    def measure(self, program, what, zoom, node):
        program.waitForKeyboard(node)
        placeOf(node)
        size = wait(f"the least size of {what}", lambda: leastSize(xdotool("getactivewindow")))
        if size[0] > LIMITS[zoom][0] or size[1] > LIMITS[zoom][1]:
            self.tooLarge.append((what, zoom, size))

    def zoom(self, program):
        button = find(program.window, "push button")
        height = placeOf(button)[3]
        program.waitForKeyboard()
        press(*5 * ["ctrl+KP_Add"])
        wait("larger buttons", lambda: placeOf(button)[3] > 1.2 * height)

    def openers(self, program):
        """What opens each window beside the main one, and its role."""
        def tool(key):
            return lambda: program.tool(key).act()

        def command(key):
            return lambda: program.command(key, "action")

        about = {"about": (command("about"), "dialog")}
        if os.path.basename(self.binary) not in ENDINGS:
            return about
        mode = find(program.window, "push button", lambda name: name.endswith("PTP"))
        return {**about, "test object": (tool("testObject"), "frame"), "settings": (tool("hardware"), "frame"),
                "failed start": (tool("start"), "alert"), "question": (command("exit"), "alert"),
                "synchronisation": (mode.act, "alert"), "save": (tool("fileSave"), "file chooser"),
                "report": (tool("report"), "file chooser")}

    def measureAll(self, program, what, zoom, withOthers):
        self.measure(program, what, zoom, program.window)
        for name, (openIt, role) in self.openers(program).items() if withOthers else ():
            openIt()
            node = program.find(role)
            if role == "file chooser":
                # GTK stumbles over one that goes before it has read its folder.
                find(node, "toggle button", os.path.basename(self.home.path))
            self.measure(program, name, zoom, node)
            press("Escape")
            program.waitUntilGone(node)

    def testEveryWindowFits(self):
        ending = ENDINGS.get(os.path.basename(self.binary))
        states = {"before a run": []}
        if ending:
            states["after a run"] = [self.archive(ending)]
        for count in COUNTS:
            self.chooseDevices(count)
            for state, arguments in states.items():
                program = self.start(*arguments)
                for zoom in LIMITS:
                    if zoom:
                        self.zoom(program)
                    withOthers = count == COUNTS[-1] and not arguments
                    self.measureAll(program, f"{count} devices, {state}", zoom, withOthers)
                # At the largest zoom the toolkit must not complain of what has no room.
                self.zoom(program)
                program.kill()
        self.assertEqual(self.tooLarge, [])


if __name__ == "__main__":
    sys.exit(main((SizesTest,), sys.argv[1], ("en", "ru"), sys.argv[2:]))
