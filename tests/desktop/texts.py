"""The texts of the programs, read from the tables in the sources: what a test expects to see, and what the
command reference names, are the words that the programs show. Run as a program it checks all of them; with
"table" it prints the table that a translator fills, with "artificial" one in letters that no other text has."""

import html
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
    """Texts that take other values or have other lines in the other language, are in the wrong one, or in Russian are
    those of another English text of their table."""
    seen = {}
    for key, (english, russian) in TEXTS.items():
        if seen.setdefault((key.split(".")[0], russian), english) != english:
            yield f"{key}: {russian!r} is also the Russian text of another one"
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


# Texts that old files and other programs know by their bytes.
FIXED = ("Program.", "Fault.", "FileManager.", "TreePresenters.", "Driver.Fault.")
MISPRINTS = {
    "any": r"\.\.\.|\s-\s|\bx I|(?<!=)\"",
    "en": r"[«»]|\d,\d|[А-Яа-яё]{2}",
    "ru": r"[“”]|\bI[ns]\b|(?<![\w.=])\d+\.\d+(?![\d.])|\b(?:отключен|подключен|включен|введен|изменен|еще|ее|счет|отчет|"
          r"подъем|расчет|прием|объем|причем|идет)\b",
}


def pages():
    """The help pages as their readers see them, with their languages, and what the desktop's menu and its software
    catalogue show."""
    for path in sorted(pathlib.Path(SOURCES, "data", "help").glob("*.html")):
        page = re.sub(r'<p class="formula">.*?</p>|<[^>]*>', " ", path.read_text(encoding="utf-8"), flags=re.S)
        language = path.name.split(".")[1][:2]
        page = html.unescape(page)
        for key, pair in TEXTS.items():
            if key.startswith(FIXED):
                page = page.replace(pair[LANGUAGES.index(language)].split("\n")[0], " ")
        yield path.name, language, page
    for path in sorted(pathlib.Path(SOURCES, "data", "desktop").glob("*.metainfo.xml")):
        for tag, text in re.findall(r"<((?:summary|p)\b[^>]*)>(.*?)</", path.read_text(encoding="utf-8"), re.S):
            yield path.name, "ru" if '"ru"' in tag else "en", text
    for path in sorted(pathlib.Path(SOURCES, "data", "desktop").glob("*.desktop")):
        for line in path.read_text(encoding="utf-8").split("\n"):
            if re.match(r"(GenericName|Comment|Keywords)\b", line):
                yield path.name, "ru" if "[ru]" in line else "en", line.split("=", 1)[1]


def read():
    """All that users read: where it stands, language, text."""
    for key, pair in TEXTS.items():
        if not key.startswith(FIXED):
            yield from ((key, language, text) for language, text in zip(LANGUAGES, pair))
    yield from pages()


def misprints():
    for place, language, text in read():
        for misprint in re.finditer(f"{MISPRINTS['any']}|{MISPRINTS[language]}", text):
            yield f"{place}: '{misprint[0]}' in '{text[max(0, misprint.start() - 30):misprint.end() + 30]}'"


def glossary():
    """Rows of the page: English word, Russian words, words that are not used."""
    for line in pathlib.Path(SOURCES, "docs", "glossary.md").read_text(encoding="utf-8").split("\n"):
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if len(cells) == 4 and cells[0] not in ("English", "---"):
            yield cells[0], cells[1].split(", "), [word for word in cells[3].split(", ") if word]


def _hasStems(words, text):
    """Whether the Russian text has every word, in any of its forms."""
    return all(re.search(rf"\b{re.escape(word[:max(2, len(word) - 3)])}", text, re.IGNORECASE) for word in words.split())


def glossaryProblems():
    everything = list(read())
    english = {key: pair[0] for key, pair in TEXTS.items()}
    # What is part of a longer word of the glossary has been looked at when its own turn comes.
    for word, russians, unused in sorted(glossary(), key=lambda row: -len(row[0])):
        pattern = re.compile(rf"\b{word}\b", re.IGNORECASE)

        def isTranslated(text):
            return any(_hasStems(one, text) for one in russians)

        for language, isFound in (("en", pattern.search), ("ru", isTranslated)):
            if not any(isFound(text) for _, other, text in everything if other == language):
                yield f"glossary: nobody reads '{word}' in {language}"
        for key, (_, russian) in TEXTS.items():
            if pattern.search(english[key]) and not isTranslated(russian):
                yield f"{key}: '{word}' is not {russians} in '{russian}'"
            english[key] = pattern.sub("", english[key])
        for place, _, text in everything:
            yield from (f"{place}: '{one}' is not used" for one in unused
                        if re.search(rf"\b{one}(?!\w)", text, re.IGNORECASE))


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
        sys.exit("\n".join((*formProblems(), *keyProblems(), *misprints(), *glossaryProblems())) or None)
