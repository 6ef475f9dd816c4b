#!/usr/bin/env python3
"""Fails when an installed header declares a function that no installed library gives to other programs.

A function needs no symbol of a library when it is pure, defaulted or deleted, a template or has its body in the
header. All others have to be exported: by KES_EXPORT at their class or at themselves. Of functions with one
name, one that is exported is enough.

usage: exports.py HEADER_DIR LIBRARY...
"""
import pathlib
import re
import subprocess
import sys

COMMENT = re.compile(r'//[^\n]*|/\*.*?\*/|^\s*#[^\n]*(?:\\\n[^\n]*)*|"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])+\'',
                     re.S | re.M)
SCOPE = re.compile(r"(?:inline\s+)?namespace\s+([\w:]*)$|(?:class|struct|union)\s+(?:KES_EXPORT\s+)?(\w+)(?:\s*final)?"
                   r"(?:\s*:[^:].*)?$", re.S)
NO_SYMBOL = re.compile(r"^(template|using|typedef|friend|enum|static_assert)\b|^extern\b.*\(|=\s*(0|default|delete)$|\bconstexpr\b")
FUNCTION = re.compile(r"(operator\s*\(\)|operator\s*[^\s\w(]+|operator\s+[\w:]+|~?\b[A-Za-z_]\w*)\s*\(")
VARIABLE = re.compile(r"^(?:KES_EXPORT\s+)?(?:static|extern)\s(?!.*\binline\b).*?(\w+)$", re.S)


def without_arguments(text):
    """The text without what stands in angle brackets, and without the brackets of `alignas`."""
    text = re.sub(r"\balignas\s*\([^)]*\)", "", text)
    before = None
    while before != text:
        before, text = text, re.sub(r"(?<!operator)<[^<>]*>", "", text)
    return text


def declared(text):
    """The qualified names of what the header declares without defining it."""
    text = COMMENT.sub(" ", text)
    scopes, begin, position, skipped = [], 0, 0, 0
    has_body = False
    while position < len(text):
        character = text[position]
        position += 1
        if skipped:
            skipped += {"{": 1, "}": -1}.get(character, 0)
            # A body ends its declaration; the braces of an initialiser do not.
            if not skipped and not re.match(r"\s*[,;{=)]", text[position:]):
                begin, has_body = position, False
        elif character == "{":
            statement = text[begin:position - 1].strip()
            statement = re.sub(r"^(public|protected|private)\s*:", "", statement).strip()
            scope = SCOPE.match(re.sub(r"^template\s*<.*?>\s*(?=class|struct)", "", statement, flags=re.S))
            if scope:
                is_template = statement.startswith("template")
                scopes.append(None if is_template else scope.group(1) or scope.group(2) or "(anonymous)")
                begin = position
            else:
                skipped, has_body = 1, True
        elif character == "}":
            scopes.pop()
            begin = position
        elif character == ";":
            statement = re.sub(r"\b(public|protected|private)\s*:(?!:)", "", text[begin:position - 1]).strip()
            begin, was_body, has_body = position, has_body, False
            if was_body or None in scopes or NO_SYMBOL.search(statement):
                continue
            name, *value = re.split(r"(?<!operator)(?<![=!<>])=(?!=)", without_arguments(statement), maxsplit=1)
            found = FUNCTION.search(name) or (not value and VARIABLE.match(name))
            if found:
                yield "::".join([*scopes, re.sub(r"operator\s*(?=\W)", "operator", found.group(1))])


def exported(libraries):
    symbols = subprocess.run(["nm", "-DC", "--defined-only", *libraries], check=True, capture_output=True,
                             text=True).stdout.splitlines()
    names = (line.split(" ", 2)[2] for line in symbols if line.count(" ") >= 2)
    return {re.split(r"(?<!operator)\(|\[abi:|@", name)[0] for name in names}


def main():
    root = pathlib.Path(sys.argv[1])
    known = exported(sys.argv[2:])
    wanted = [(path, name) for path in sorted(root.rglob("*.h")) for name in declared(path.read_text(encoding="utf-8"))]
    problems = [f"{path.relative_to(root)}: {name} is not exported" for path, name in wanted if name not in known]
    print("\n".join(problems) or f"{len(wanted)} declared functions are exported")
    return 1 if problems or not wanted else 0


if __name__ == "__main__":
    sys.exit(main())
