#!/usr/bin/python3
"""Drives every command of Overcurrent in one language. usage: drive_commands.py PROGRAM LANGUAGE [TEST...]"""

import sys

from bench import main
from closing import ClosingTest
from files import FilesTest
from hardware import HardwareTest
from runs import RunsTest
from windows import WindowsTest

CASES = (FilesTest, RunsTest, HardwareTest, WindowsTest, ClosingTest)

if __name__ == "__main__":
    sys.exit(main(CASES, sys.argv[1], sys.argv[2:3], sys.argv[3:]))
