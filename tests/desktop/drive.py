#!/usr/bin/python3
"""Drives every command of Overcurrent in one language, or gives the devices of a running test a fault in both.
usage: drive.py PROGRAM en|ru|faults [TEST...]"""

import sys

from bench import main
from closing import ClosingTest
from faults import FaultsTest
from files import FilesTest
from hardware import HardwareTest
from runs import RunsTest
from windows import WindowsTest

COMMANDS = (FilesTest, RunsTest, HardwareTest, WindowsTest, ClosingTest)

if __name__ == "__main__":
    _, program, what, *tests = sys.argv
    sys.exit(main((FaultsTest,), program, ("en", "ru"), tests) if what == "faults" else
             main(COMMANDS, program, (what,), tests))
