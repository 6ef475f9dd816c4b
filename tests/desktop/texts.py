"""The texts of the programs, read from the tables in the sources: what a test expects to see, and what the
command reference names, are the words that the programs show. Run as a program it checks all of them."""

import os
import pathlib
import re
import sys

SOURCES = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
LANGUAGES = ("en", "ru")

_STRING = r'"(?:[^"\\]|\\.)*"'
_STRINGS = rf"{_STRING}(?:\s*{_STRING})*"
# {"key", "English", "Russian"} or {"key", {"English", "Russian"}}
_ENTRY = re.compile(rf"\{{\s*({_STRING})\s*,\s*\{{?\s*({_STRINGS})\s*,\s*({_STRINGS})\s*\}}")
# inline const char* name() { return choose({"English", "Russian"});
_FUNCTION = re.compile(
    rf"const char\* (\w+)\(\)\s*\{{\s*return [\w:]*choose\(\s*\{{\s*({_STRINGS})\s*,\s*({_STRINGS})\s*\}}"
)
_ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\"}


class Table:
    """The texts of one source file, by key or by the name of the function that returns them."""

    def __init__(self, *path):
        self._path = os.path.join(SOURCES, *path)
        with open(self._path, encoding="utf-8") as source:
            code = source.read()
        self.texts = {}
        for pattern in (_ENTRY, _FUNCTION):
            for name, english, russian in pattern.findall(code):
                self.texts[_join(name) if name[0] == '"' else name] = (_join(english), _join(russian))
        assert self.texts, f"no texts in {self._path}"

    def get(self, key, language):
        assert key in self.texts, f"{self._path} has no text '{key}'"
        return self.texts[key][LANGUAGES.index(language)]

    def title(self, key, language):
        """The first line: the name of a tool button."""
        return self.get(key, language).split("\n")[0]


def _join(literals):
    parts = re.findall(_STRING, literals)
    text = "".join(part[1:-1] for part in parts)
    text = re.sub(r"\\u([0-9A-Fa-f]{4})", lambda match: chr(int(match[1], 16)), text)
    return re.sub(r"\\(.)", lambda match: _ESCAPES[match[1]], text)


PROGRAM = Table("KesProgram", "text", "Program.cpp")
FILES = Table("KesProgram", "text", "FileManagerLocalization.h")
FAULTS = Table("KesProgram", "text", "Fault.h")
WINDOWS = Table("KesProgram", "text", "TreePresentersLocalization.h")
DIALOGS = Table("platform", "KesCommonView", "detail", "CommonViewText.cpp")
DEVICES = Table("platform", "KesDevice", "HardwareManagerText.cpp")
SETTINGS = Table("platform", "KesDevice", "view", "detail", "DeviceViewText.cpp")
TREE = Table("platform", "KesTree", "TreeText.cpp")
RELAY = Table("platform", "KesTreeRelay", "detail", "RelayText.cpp")
COMMON = Table("platform", "KesCommon", "CommonText.cpp")
DRIVER = Table("platform", "KesDriver", "DriverText.cpp")
MEASURE = Table("platform", "KesMeasure", "MeasureText.cpp")
OVERCURRENT = Table("programs", "Overcurrent", "text", "OvercurrentText.cpp")
VOLTAGE_FREQUENCY = Table("programs", "VoltageFrequency", "text", "VoltageFrequencyText.cpp")
TEST_PROGRAM = Table("platform", "KesTestProgram", "TestProgramText.cpp")
SIMULATOR = Table("programs", "Simulator", "SimulatorText.cpp")


def problems():
    """Texts that take other values or have other lines in the other language, or are in the wrong one, and keys
    in the sources that no table has."""
    tables = [table for table in globals().values() if isinstance(table, Table)]
    for key, (english, russian) in (item for table in tables for item in table.texts.items()):
        shapes = [(re.findall(r"%[.\d]*\w+", text), text.count("\n")) for text in (english, russian)]
        # One English text begins with a Cyrillic letter, as old files have it.
        isEnglish = not re.search("[А-Яа-яё]{2}", english)
        if shapes[0] != shapes[1] or not isEnglish or re.fullmatch("[^А-Яа-яё]*[a-z]{3}[^А-Яа-яё]*", russian):
            yield f"{key}: {english!r} / {russian!r}"
    keys = {key for table in tables for key in table.texts}
    prefixes = "|".join({key.split(".")[0] for key in keys if "." in key})
    for path in (path for folder in ("KesProgram", "platform", "programs")
                 for path in pathlib.Path(SOURCES, folder).rglob("*.cpp")):
        used = re.findall(rf'"((?:{prefixes})(?:\.\w+)+)"', path.read_text(encoding="utf-8"))
        yield from (f"{path}: no text '{key}'" for key in used if key not in keys)


if __name__ == "__main__":
    sys.exit("\n".join(problems()) or None)
