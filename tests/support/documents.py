#!/usr/bin/env python3
"""Fails when a document or the comment of a header shows code that is not compiled, or names threads that are
not there.

- A block of C++ or CMake in a page stands behind a comment such as `<!-- snippet: examples/a.cpp [name] -->`, and
  is what lies in that file between two lines that say `[name]` after `//!` or `#!`. With --write the pages get what
  lies there now.
- A block of code in a comment of a header stands word by word in a source file.
- Each installed header says from which threads it may be used.
- `docs/threads.md` has the names of all threads, and no others.
- A path of the tree that a page names exists.

usage: documents.py [--write] SOURCE_DIR
"""
import os
import pathlib
import re
import sys
import textwrap

MARKER = re.compile(r"<!-- snippet: (\S+) \[(\w+)\] -->$")
REGION = re.compile(r"^\s*(?://|#)! \[(\w+)\]$")
COMMENTED = re.compile(r"^\s*///?( {5,}\S.*)?$")
THREAD = re.compile(r'(?:Worker(?:::tryStart)?\(|_worker\(|_jobs\.run\(|_inBackground\(\w+, |start\()"(Kes\w+)"')
LONGEST_NAME = 15  # what Linux keeps of a thread's name


def region(path, name):
    lines, inside, found = path.read_text(encoding="utf-8").splitlines(), False, []
    for line in lines:
        match = REGION.match(line)
        if match and match[1] == name:
            inside = not inside
        elif inside and not match:
            found.append(line)
    return textwrap.dedent("\n".join(found)).strip("\n")


def check_page(root, page, write):
    """Problems of one page."""
    lines, out, position = page.read_text(encoding="utf-8").splitlines(), [], 0
    while position < len(lines):
        line = lines[position]
        out.append(line)
        position += 1
        fence = re.match(r"\s*```(cpp|cmake)$", line)
        if not fence:
            continue
        end = lines.index("```", position)
        shown = "\n".join(lines[position:end])
        marker = MARKER.match(out[-2]) if len(out) > 1 else None
        current = region(root / "docs" / marker[1], marker[2]) if marker else ""
        if not current:
            yield f"{page.relative_to(root)}:{position}: a block of code that is quoted from no file"
            current = shown
        elif current != shown and not write:
            yield f"{page.relative_to(root)}:{position}: not what {marker[1]} has; see documents.py --write"
        out += current.splitlines()
        position = end
    if write:
        page.write_text("\n".join(out) + "\n", encoding="utf-8")


def comment_blocks(text):
    """The blocks of code in the comments of a header, each with its line."""
    block, begin = [], 0
    for number, line in enumerate(text.splitlines() + [""], 1):
        match = re.match(r"^\s*///( {5,}\S.*)$", line) or (block and re.match(r"^\s*///()$", line))
        if match:
            begin = begin if block else number
            block.append(match[1])
        elif block:
            yield begin, textwrap.dedent("\n".join(block))
            block = []


def words(text):
    return " ".join(text.split())


def check_header_blocks(root, files):
    sources = " ".join(words((root / name).read_text(encoding="utf-8")) for name in files if name.endswith(".cpp"))
    for name in files:
        if not name.endswith(".h"):
            continue
        for line, block in comment_blocks((root / name).read_text(encoding="utf-8")):
            if words(block) not in sources:
                yield f"{name}:{line}: code that stands in no source file"


def check_thread_rules(root, files):
    """"A value" and "Not synchronised" are rules, too."""
    for name in files:
        if re.match(r"(KesProgram|platform)/(?!.*/(detail|late)/).*\.h$", name):
            comments = re.findall(r"///.*", (root / name).read_text(encoding="utf-8"))
            if not re.search(r"\bthread|\bA value\b|\b[Nn]ot synchronised\b", "\n".join(comments)):
                yield f"{name}: a header that names no thread"


def check_threads(root, files):
    named = {}
    for name in files:
        if name.endswith(".cpp") and name.split("/")[0] in ("KesProgram", "platform", "programs"):
            text = re.sub(r"\s+", " ", (root / name).read_text(encoding="utf-8"))
            named.update((thread[:LONGEST_NAME], name) for thread in THREAD.findall(text))
    table = (root / "docs/threads.md").read_text(encoding="utf-8").split("\n\n")[1]
    told = set(re.findall(r"`(Kes\w+)`", "\n".join(row.split("|")[2] for row in table.splitlines())))
    for thread in sorted(set(named) - told):
        yield f"docs/threads.md lacks the thread {thread} of {named[thread]}"
    for thread in sorted(told - set(named)):
        yield f"docs/threads.md names {thread}, which is nowhere"


def check_paths(root, page, files):
    """A path may stand for a header and its source together, or for a folder."""
    known = set(files) | {name.rsplit(".", 1)[0] for name in files}
    known |= {str(folder) for name in files for folder in pathlib.PurePath(name).parents}
    folders = {name.split("/")[0] for name in files if "/" in name}
    for path in re.findall(r"`([\w.-]+/[\w./-]*)`", page.read_text(encoding="utf-8")):
        if path.split("/")[0] in folders and path.rstrip("/") not in known:
            yield f"{page.relative_to(root)}: there is no {path}"


def find_files(root):
    """All but what lies hidden or has been built."""
    for folder, folders, names in os.walk(root):
        folders[:] = sorted(name for name in folders if not name.startswith(".") and name not in ("build", "out"))
        yield from (str((pathlib.Path(folder) / name).relative_to(root)) for name in sorted(names))


def main():
    arguments = sys.argv[1:]
    write = "--write" in arguments
    root = pathlib.Path([a for a in arguments if a != "--write"][0])
    files = list(find_files(root))
    pages = [root / name for name in files if re.fullmatch(r"[A-Z]+\.md|docs/[\w-]+\.md", name)]
    problems = [problem for page in pages for problem in check_page(root, page, write)]
    problems += [problem for page in pages for problem in check_paths(root, page, files)]
    problems += [*check_header_blocks(root, files), *check_thread_rules(root, files),
                 *check_threads(root, files)]
    print("\n".join(problems) or f"{len(files)} files looked at")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
