#!/usr/bin/env python3
"""Fails when an #include runs upward, or into the private folder of another library: each one may use only what
stands below it, and nobody else's folders `detail` and `late`.

usage: floors.py SOURCE_DIR
"""
import pathlib
import re
import sys

# Folder: the folders whose headers it may include besides its own. The longest matching folder counts.
FLOORS = {
    "KesCommon": [],
    "KesDriver": ["KesCommon"],
    "KesDevice": ["KesDriver", "KesCommon"],
    "KesCommonView": ["KesCommon"],
    "KesTree": ["KesCommon"],
    "KesTreeManager": ["KesTree", "KesCommonView", "KesCommon"],
    "KesTreeRelay": ["KesTree", "KesCommonView", "KesCommon"],
}
FLOORS["KesMeasure"] = ["KesDevice", "KesDriver", "KesCommon"]
FLOORS["KesMeasureView"] = ["KesMeasure", "KesCommonView", "KesCommon"]
FLOORS["KesDevice/view"] = ["KesDevice", "KesDriver", "KesCommonView", "KesCommon"]
PROGRAMS = [name for name in FLOORS if not name.startswith("KesMeasure")]
for floor in (("text",), ("archive",), ("recovery",), ("views", "model"), ("statusbar",), ("shell",)):
    folders = [f"KesProgram/{name}" for name in floor]
    FLOORS.update({folder: list(PROGRAMS) for folder in folders})
    PROGRAMS += folders
PROGRAMS += ["KesMeasure", "KesMeasureView"]  # beside the shell, which knows nothing of them
FLOORS["KesTestProgram"] = list(PROGRAMS)  # stands on both
PROGRAMS.append("KesTestProgram")

# Models know no widget and views no model, though the folders below would let them.
FORBIDDEN = {
    "KesCommon": r"gtk|gdk",
    "KesDriver": r"gtk|gdk",
    "KesDevice": r"gtk|gdk",
    "KesMeasure": r"gtk|gdk",
    "KesTree": r"gtk|gdk",
    "KesProgram/recovery": r"gtk|gdk|KesCommonView/|KesDevice/",
    "KesProgram/model": r"gtk|gdk|KesDevice/view/|KesTreeManager/|KesTreeRelay/",
}
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]')


def folder_of(path, names):
    """The longest of the names that the path begins with, or None."""
    fitting = [name for name in names if path.startswith(name + "/")]
    return max(fitting, key=len) if fitting else None


def is_private_of_another(target, own, names):
    """Whether the header lies in a folder `detail` or `late` of another library than the including file's."""
    folders = target.split("/")[:-1]
    return {"detail", "late"} & set(folders) and library_of(folder_of(target, names) or folders[0]) != library_of(own)


def library_of(folder):
    """KesProgram is one library of many floors; elsewhere each floor is a library."""
    return "KesProgram" if folder.startswith("KesProgram/") else folder


def check(root):
    names = list(FLOORS)
    problems, files = [], 0
    sources = [path for top in ("platform", "KesProgram", "programs")
               for path in sorted((root / top).rglob("*")) if path.suffix in (".h", ".cpp", ".inl")]
    for path in sources:
        relative = path.relative_to(root).as_posix()
        inside = relative.removeprefix("platform/")
        own = folder_of(inside, names) or relative.rsplit("/", 1)[0]
        allowed = set(FLOORS.get(own, PROGRAMS)) | {own}
        files += 1
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            target = match.group(1)
            used = folder_of(target, names)
            if is_private_of_another(target, own, names):
                problems.append(f"{relative}:{number}: {own} must not include <{target}>, which is private")
            elif (used and used not in allowed) or re.match(r"programs/|\.\./", target):
                if not (relative.startswith("programs/") and target.startswith("programs/")):
                    problems.append(f"{relative}:{number}: {own} must not include <{target}>")
            elif re.match(FORBIDDEN.get(own, r"(?!)"), target):
                problems.append(f"{relative}:{number}: {own} must not include <{target}>")
    return problems, files


def main():
    problems, files = check(pathlib.Path(sys.argv[1]))
    print("\n".join(problems) or f"{files} files, every include runs downward")
    return 1 if problems or not files else 0


if __name__ == "__main__":
    sys.exit(main())
