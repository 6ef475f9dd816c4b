#!/usr/bin/python3
"""Drives every command of Overcurrent in one language. usage: drive_commands.py PROGRAM LANGUAGE [TEST...]"""

import sys
import unittest

from bench import DesktopTest
from closing import ClosingTest
from files import FilesTest
from hardware import HardwareTest
from runs import RunsTest
from windows import WindowsTest

CASES = (FilesTest, RunsTest, HardwareTest, WindowsTest, ClosingTest)


def main():
    DesktopTest.binary, DesktopTest.language = sys.argv[1:3]
    loader = unittest.TestLoader()
    loader.testNamePatterns = [f"*{name}*" for name in sys.argv[3:]] or None
    suite = unittest.TestSuite(loader.loadTestsFromTestCase(case) for case in CASES)
    result = unittest.TextTestRunner(verbosity=2).run(suite)
    return 0 if result.wasSuccessful() and result.testsRun > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
