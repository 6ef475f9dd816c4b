"""The texts of the programs, read from the tables in the sources: what a test expects to see, and what the
command reference names, are the words that the programs show. Run as a program it checks all of them; with
"table" it prints the table that a translator fills, with "artificial" one in letters that no other text has."""

import os
import pathlib
import re
import sys

SOURCES = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
LANGUAGES = ("en", "ru")
# A language made for the tests: English in Greek letters.
ARTIFICIAL = "zz"

_STRING = r'"(?:[^"\\]|\\.)*"'
_STRINGS = rf"{_STRING}(?:\s*{_STRING})*"
_TABLE = re.compile(r'Kes::TextTable table\("(\w+)"')
# {"key", "English", "Russian"} and Text("key", "English", "Russian")
_TEXT = re.compile(rf'(?:\{{|\bText\()\s*"([\w.]+)"\s*,\s*({_STRINGS})\s*,\s*({_STRINGS})\s*[}})]')
_ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\"}
_GREEK = str.maketrans("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ",
                       "αβψδεφγηιξκλμνοπϟρστθωςχυζΑΒΨΔΕΦΓΗΙΞΚΛΜΝΟΠϞΡΣΤΘΩςΧΥΖ")


def sources():
    for folder in ("KesProgram", "platform", "programs"):
        for path in sorted(pathlib.Path(SOURCES, folder).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                yield path


def _code(path):
    return re.sub(r"///.*", "", path.read_text(encoding="utf-8"))


def _read():
    """All texts by key, that of a table's name first."""
    texts = {}
    for path in sources():
        code = _code(path)
        table = _TABLE.search(code)
        for key, *pair in _TEXT.findall(code):
            if table or re.match(r"[A-Z]\w*\.", key):
                key = f"{table[1]}.{key}" if table else key
                assert key not in texts, f"{path}: the key '{key}' is given twice"
                texts[key] = tuple(_join(literals) for literals in pair)
    return texts


def _join(literals):
    text = "".join(part[1:-1] for part in re.findall(_STRING, literals))
    text = re.sub(r"\\u([0-9A-Fa-f]{4})", lambda match: chr(int(match[1], 16)), text)
    return re.sub(r"\\(.)", lambda match: _ESCAPES[match[1]], text)


def artificial(text):
    """Formats stay what they are."""
    parts = re.split(r"(%[-+.\d]*(?:zu|lu|[a-zA-Z]))", text)
    return "".join(part if i % 2 else part.translate(_GREEK) for i, part in enumerate(parts))


TEXTS = _read()


class Table:
    """The texts whose keys begin with one word."""

    def __init__(self, name):
        self.texts = {key[len(name) + 1:]: pair for key, pair in TEXTS.items() if key.startswith(name + ".")}
        assert self.texts, f"no texts of {name}"

    def get(self, key, language):
        assert key in self.texts, f"no text '{key}'"
        if language == ARTIFICIAL:
            return artificial(self.texts[key][0])
        return self.texts[key][LANGUAGES.index(language)]

    def title(self, key, language):
        """The first line: the name of a tool button."""
        return self.get(key, language).split("\n")[0]


PROGRAM = Table("Program")
FILES = Table("FileManager")
FAULTS = Table("Fault")
WINDOWS = Table("TreePresenters")
DIALOGS = Table("CommonView")
DEVICES = Table("HardwareManager")
SETTINGS = Table("DeviceView")
TREE = Table("Tree")
MEASURE = Table("Measure")
OVERCURRENT = Table("Overcurrent")
TEST_PROGRAM = Table("TestProgram")


def formProblems():
    """Texts that take other values or have other lines in the other language, or are in the wrong one."""
    for key, (english, russian) in TEXTS.items():
        shapes = [(re.findall(r"%[.\d]*\w+", text), text.count("\n")) for text in (english, russian)]
        # One English text begins with a Cyrillic letter, as old files have it.
        isEnglish = not re.search("[А-Яа-яё]{2}", english)
        if shapes[0] != shapes[1] or not isEnglish or re.fullmatch("[^А-Яа-яё]*[a-z]{3}[^А-Яа-яё]*", russian):
            yield f"{key}: {english!r} / {russian!r}"


def keyProblems():
    """Keys in the sources that no table has."""
    keys = {key.split(".", 1)[1] for key in TEXTS} | set(TEXTS)
    prefixes = "|".join({key.split(".")[0] for key in keys if "." in key})
    for path in sources():
        used = re.findall(rf'"((?:{prefixes})(?:\.\w+)+)"', _code(path))
        yield from (f"{path}: no text '{key}'" for key in used if key not in keys)


def printTable(translate):
    """As lines of a `lng::Translation`."""
    for key, (english, _) in TEXTS.items():
        text = translate(english)
        for plain, escaped in (("\\", "\\\\"), ('"', '\\"'), ("\n", "\\n")):
            text = text.replace(plain, escaped)
        print(f'    {{"{key}", "{text}"}},')


if __name__ == "__main__":
    if sys.argv[1:]:
        printTable(artificial if sys.argv[1] == "artificial" else str)
    else:
        sys.exit("\n".join((*formProblems(), *keyProblems())) or None)
