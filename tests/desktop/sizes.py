#!/usr/bin/python3
"""Measures the least size of every window of a test program: with one device and with many, before and after a
run, in both languages, and zoomed. usage: sizes.py PROGRAM..."""

import re
import subprocess
import sys

import texts
from bench import DesktopTest, main
from desk import find, press, wait

SMALL = (800, 560)  # a small laptop's screen without its panel and title bar
ZOOMED = (1280, 800)  # at 150 %


def leastSize(window):
    """What the window tells the window manager: width and height without the frame."""
    hints = subprocess.run(["xprop", "-id", window, "WM_NORMAL_HINTS"], capture_output=True, text=True,
                           check=True).stdout
    least = re.search(r"minimum size: (\d+) by (\d+)", hints)
    assert least, hints
    return int(least[1]), int(least[2])


class SizesTest(DesktopTest):
    def chooseDevices(self, count):
        lines = ["[Hardware]", "Version=1", "SyncMode=PTP", "ControlGroups=false", "StopOnFault=true",
                 "StatusReported=true", f"Kestos={count}"]
        for number in range(1, count + 1):
            lines += [f"[Kesto {number}]", f"Address=127.0.0.{number}", "AuxDC=true", "AuxDCVolts=220"]
        self.home.write(self.home.file(".config/kes/hardware.cfg"), "\n".join(lines))

    def measure(self, program, what, node=None):
        title = (node or program.window).name
        size = leastSize(program.windowId(re.escape(title)))
        print(f"{self.language} {what}: {size[0]} x {size[1]}")
        if size[0] > self.limit[0] or size[1] > self.limit[1]:
            self.tooLarge.append((what, size))

    def testTheLeastSizes(self):
        self.tooLarge, self.limit = [], SMALL
        for count in (1, 4, 20):
            self.chooseDevices(count)
            program = self.start("--speed", "1000")
            self.measure(program, f"main window, {count} devices")
            program.tool("start").act()
            program.waitForOutcome("Passed")
            self.measure(program, f"main window after a run, {count} devices")
            if count < 20:
                program.discard()
        for self.limit in (SMALL, ZOOMED):
            if self.limit == ZOOMED:
                program.waitForKeyboard()
                press(*5 * ["ctrl+KP_Add"])
                wait("150 %", lambda: True)
            self.measure(program, "main window")
        program.discard()
        self.assertEqual(self.tooLarge, [])


if __name__ == "__main__":
    sys.exit(main((SizesTest,), sys.argv[1], ("en", "ru"), sys.argv[2:]))
