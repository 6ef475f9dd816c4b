#!/usr/bin/python3
"""Sessions with programs that know nothing of this project, PyVISA and lxi-tools. Each is written down and has to be
the one in docs/protocol.md; --write puts it there.

usage: transcripts.py KESTO_SIM PROTOCOL_MD [--write]
"""
import difflib
import pathlib
import re
import subprocess
import sys

import pyvisa

from simulator import Simulator

# What stands in the document in place of the address under test.
ADDRESS, SHOWN = "127.7.4.1", "127.0.1.1"
PORT = 5025
STEP = "SEQ:STEP {},{},0,0,0,0,0,0,0,0,0,0,0,50,50,0"
MEASUREMENT = (
    "*IDN?",
    "CURR 1;:SYST:ERR?",
    'SYST:CONT:TAKE "PyVISA";OWN?',
    'SIM:WIRE "overcurrent","pickup=1.2","curve=DT","time=0.3";:SYST:ERR?',
    "OUTP ON;:SYST:STAT?",
    "SEQ:CLE;:" + STEP.format("0.2", "1 A"),
    STEP.format("2 s", "3 A"),
    "SEQ:END ANY,0,1CE;COUN?",
    "SYST:ERR?",
    "INIT;:STAT:OPER:COND?",
)
AFTER = ("SYST:STAT?", "CURR 50;:SYST:ERR:COUN?;NEXT?", "SYST:CONT:REL;:SYST:CONT?", "OUTP?;*ESR?")


class Relative:
    """Device times become those since the first event, and the controller's port a fixed one."""

    def __init__(self):
        self.start = None

    def __call__(self, answer):
        return re.sub(r'"(\d+),(\d+),', self._event, answer)

    def _event(self, match):
        time = int(match[2])
        if self.start is None:
            self.start = time
        return f'"{match[1]},{"T" if time == self.start else f"T+{time - self.start}"},'


def with_pyvisa():
    lines = []
    resource = f"TCPIP::{ADDRESS}::{PORT}::SOCKET"
    device = pyvisa.ResourceManager("@py").open_resource(resource, read_termination="\n", write_termination="\n",
                                                         timeout=5000)
    relative = Relative()

    def exchange(message):
        lines.append("> " + message)
        if "?" in message:
            answer = relative(device.query(message))
            lines.append("< " + re.sub(r'"127\.\d+\.\d+\.\d+:\d+"', '"192.0.2.7:40312"', answer))
        else:
            device.write(message)

    lines.append(resource)
    for message in MEASUREMENT:
        exchange(message)
    while not device.query("SYST:STAT?").endswith("IDLE"):
        pass
    exchange("EVEN:DATA? 1,5")
    for message in AFTER:
        exchange(message)
    device.close()
    return lines


def with_lxi():
    lines = []
    for message in ("*IDN?", "SYST:LIM?", "SYST:PROT?;SIM?;:OUTP?"):
        command = ["lxi", "scpi", "--raw", "--address", ADDRESS, "--port", str(PORT), message]
        result = subprocess.run(command, capture_output=True, text=True, timeout=20, check=True)
        lines.append("$ " + " ".join(command[:-1]) + f' "{message}"')
        lines += result.stdout.splitlines()
    return lines


def place(document, name, lines):
    """The document with the transcript between its markers."""
    begin, end = f"<!-- session: {name} -->\n", "<!-- end of session -->"
    before, rest = document.split(begin)
    after = rest.split(end, 1)[1]
    text = "\n".join(lines).replace(ADDRESS, SHOWN)
    return f"{before}{begin}```\n{text}\n```\n{end}{after}"


def main():
    program, path = sys.argv[1], pathlib.Path(sys.argv[2])
    before = after = path.read_text(encoding="utf-8")
    with Simulator(program, "--listen", f"{ADDRESS}:{PORT}", "--serial", "17") as simulator:
        simulator.listening()
        after = place(after, "PyVISA", with_pyvisa())
        after = place(after, "lxi-tools", with_lxi())
    if "--write" in sys.argv:
        path.write_text(after, encoding="utf-8")
        return 0
    difference = list(difflib.unified_diff(before.splitlines(), after.splitlines(), "document", "device", lineterm=""))
    print("\n".join(difference) or "the transcripts are those of the document")
    return 1 if difference else 0


if __name__ == "__main__":
    sys.exit(main())
