"""The texts of the programs, read from the tables in the sources: what a test expects to see, and what the
command reference names, are the words that the programs show."""

import os
import re

SOURCES = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
LANGUAGES = ("en", "ru")

_STRING = r'"(?:[^"\\]|\\.)*"'
_STRINGS = rf"{_STRING}(?:\s*{_STRING})*"
# {"key", "English", "Russian"} or {"key", {"English", "Russian"}}
_ENTRY = re.compile(rf"\{{\s*({_STRING})\s*,\s*\{{?\s*({_STRINGS})\s*,\s*({_STRINGS})\s*\}}")
# inline const char* name() { static constexpr ... text{"English", "Russian"}
_FUNCTION = re.compile(rf"const char\* (\w+)\(\)\s*\{{[^}}]*?text\{{\s*({_STRINGS})\s*,\s*({_STRINGS})\s*\}}")
_ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\"}


class Table:
    """The texts of one source file, by key or by the name of the function that returns them."""

    def __init__(self, *path):
        self._path = os.path.join(SOURCES, *path)
        with open(self._path, encoding="utf-8") as source:
            code = source.read()
        self._texts = {}
        for pattern in (_ENTRY, _FUNCTION):
            for name, english, russian in pattern.findall(code):
                self._texts[_join(name) if name[0] == '"' else name] = (_join(english), _join(russian))
        assert self._texts, f"no texts in {self._path}"

    def get(self, key, language):
        assert key in self._texts, f"{self._path} has no text '{key}'"
        return self._texts[key][LANGUAGES.index(language)]

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
DIALOGS = Table("platform", "KesCommonView", "CommonViewText.cpp")
DEVICES = Table("platform", "KesDevice", "HardwareManagerText.cpp")
SETTINGS = Table("platform", "KesDevice", "view", "DeviceViewText.cpp")
TREE = Table("platform", "KesTree", "TreeText.cpp")
OVERCURRENT = Table("programs", "Overcurrent", "text", "OvercurrentText.cpp")
