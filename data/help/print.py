#!/usr/bin/env python3
"""Prints a help file as PDF, with the sections that several programs share ("include FILE" in a comment).

The bytes are the same for the same sources wherever they lie: the printer names pictures after their addresses, so
they are handed over as part of the text.

usage: print.py WEASYPRINT SOURCE.html TARGET.pdf
"""
import base64
import os
import pathlib
import re
import subprocess
import sys


def main():
    printer, source, target = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])

    def embedded(match):
        return f'src="data:image/png;base64,{base64.b64encode((source.parent / match[1]).read_bytes()).decode()}"'

    text = re.sub(r"<!-- include (\S+) -->\n", lambda match: (source.parent / match[1]).read_text(encoding="utf-8"),
                  source.read_text(encoding="utf-8"))
    text = re.sub(r'src="([^":]+\.png)"', embedded, text)
    target.parent.mkdir(parents=True, exist_ok=True)
    subprocess.run([printer, "-q", "-u", source.resolve().as_uri(), "-", str(target)], input=text.encode(), check=True,
                   env={**os.environ, "SOURCE_DATE_EPOCH": "0"})


if __name__ == "__main__":
    main()
