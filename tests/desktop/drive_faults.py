#!/usr/bin/python3
"""Gives the devices of a running test a fault. usage: drive_faults.py PROGRAM [TEST...]"""

import sys

from bench import main
from faults import FaultsTest

if __name__ == "__main__":
    sys.exit(main((FaultsTest,), sys.argv[1], ("en", "ru"), sys.argv[2:]))
