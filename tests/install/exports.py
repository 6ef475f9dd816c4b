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
import tempfile
import xml.etree.ElementTree

SETTINGS = """QUIET=YES\nWARNINGS=NO\nHAVE_DOT=NO\nINPUT={}\nRECURSIVE=YES\nEXTRACT_ALL=YES\nEXTRACT_PRIVATE=YES
GENERATE_HTML=NO\nGENERATE_LATEX=NO\nGENERATE_XML=YES\nXML_PROGRAMLISTING=NO\nOUTPUT_DIRECTORY={}
EXTRACT_STATIC=YES\nMACRO_EXPANSION=YES\nEXPAND_ONLY_PREDEF=YES\nPREDEFINED=KES_EXPORT="""


def needs_symbol(member):
    kind, place, text = member.get("kind"), member.find("location"), member.findtext("definition", "")
    if member.find("templateparamlist") is not None or member.get("inline") == "yes" or "constexpr" in text:
        return False
    if kind == "variable":
        is_shared = member.get("static") == "yes" or member.get("id").startswith("namespace")
        return is_shared and "inline" not in text and member.find("initializer") is None
    return kind == "function" and not place.get("bodystart") and not re.search("= *(0|default|delete)$",
                                                                                member.findtext("argsstring"))


def declared(headers):
    """The qualified names of what the headers declare without defining it, and where."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["doxygen", "-"], input=SETTINGS.format(headers, folder), text=True, check=True,
                       stdout=subprocess.DEVNULL)
        for path in sorted(pathlib.Path(folder, "xml").glob("*.xml")):
            for compound in xml.etree.ElementTree.parse(path).iter("compounddef"):
                if compound.find("templateparamlist") is None:
                    yield from ((member.findtext("qualifiedname"), member.find("location").get("file"))
                                for member in compound.iter("memberdef") if needs_symbol(member))


def exported(libraries):
    symbols = subprocess.run(["nm", "-DC", "--defined-only", *libraries], check=True, capture_output=True,
                             text=True).stdout.splitlines()
    names = (line.split(" ", 2)[2] for line in symbols if line.count(" ") >= 2)
    return {re.split(r"(?<!operator)\(|\[abi:|@", name)[0] for name in names}


def main():
    known, wanted = exported(sys.argv[2:]), list(declared(sys.argv[1]))
    problems = [f"{path}: {name} is not exported" for name, path in wanted if name not in known]
    print("\n".join(problems) or f"{len(wanted)} declared functions are exported")
    return 1 if problems or not wanted else 0


if __name__ == "__main__":
    sys.exit(main())
