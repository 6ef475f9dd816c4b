#!/usr/bin/python3
"""Writes docs/commands.md from its template, with the names of the commands as the programs' tables have them.
usage: commands.py [--check] FILE; --check only tells whether the file is what would be written."""

import difflib
import os
import re
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "tests", "desktop"))

import texts  # noqa: E402

TABLES = {"Program": texts.PROGRAM, "Settings": texts.SETTINGS, "Measure": texts.MEASURE}
LANGUAGES = {"en": "English", "ru": "Русский"}
NAME = re.compile(r"(?<!!)\[\[(\w+):([\w.]+)\]\]")
KEY = re.compile(r"^const Key \w+\{GDK_KEY_(\w+), ([^}]*)\};", re.MULTILINE)
PICTURE = re.compile(r"!\[\[([\w-]+)\]\]")


def name(match):
    """Both names of a command, such as **New** / **Новый**; the first line of a tooltip."""
    table = TABLES[match[1]]
    names = [table.title(match[2], language) for language in LANGUAGES]
    return " / ".join(f"**{text}**" for text in dict.fromkeys(names))


def picture(match):
    cells = " | ".join(f"![{match[1]}](screenshots/{language}/{match[1]}.png)" for language in LANGUAGES)
    return f"| {' | '.join(LANGUAGES.values())} |\n|---|---|\n| {cells} |"


def generate():
    with open(os.path.join(HERE, "commands.md.in"), encoding="utf-8") as template:
        text = template.read()
    return PICTURE.sub(picture, NAME.sub(name, text)), set(PICTURE.findall(text))


def findWrongPictures(folder, wanted):
    """Pictures that are missing or that the page does not show."""
    for language in LANGUAGES:
        path = os.path.join(folder, "screenshots", language)
        present = {file[:-4] for file in os.listdir(path) if file.endswith(".png")}
        for file in sorted(present ^ wanted):
            yield f"{path}/{file}.png is {'not shown' if file in present else 'missing'}"


def findMissingKeys(text):
    """Keys of commands that have no row in the table of keys."""
    shown = re.findall(r"^\| (\S+) \|", text.split("## Keys")[1].split("\n## ")[0], re.MULTILINE)
    with open(os.path.join(HERE, "../../KesProgram/views/WindowKeys.cpp"), encoding="utf-8") as source:
        for key, modifiers in KEY.findall(source.read()):
            held = ("Ctrl+" if "control" in modifiers else "") + ("Shift+" if "SHIFT" in modifiers else "")
            name = held + (key.upper() if len(key) == 1 else key)
            if name not in shown:
                yield f"the key {name} is missing"


def check(path, text, pictures):
    with open(path, encoding="utf-8") as file:
        present = file.read()
    problems = list(difflib.unified_diff(present.splitlines(), text.splitlines(), path, "generated", lineterm=""))
    problems += findMissingKeys(text)
    problems += findWrongPictures(os.path.dirname(path), pictures)
    print("\n".join(problems) or "The command reference is what the tables say.")
    return 1 if problems else 0


def main():
    path = sys.argv[-1]
    text, pictures = generate()
    if "--check" in sys.argv:
        return check(path, text, pictures)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
