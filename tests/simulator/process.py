#!/usr/bin/env python3
"""kesto-sim as a process: what it says, whom it serves, how it ends, and that it starts again at once.

usage: process.py KESTO_SIM
"""
import signal
import subprocess
import sys
import time

from simulator import Client, Simulator

GOOD = '0,"No error"'
ADDRESS = "127.7.3.1"


def equal(found, expected):
    if found != expected:
        raise AssertionError(f"{found!r} instead of {expected!r}")


def run(program, *options, language="C.UTF-8"):
    result = subprocess.run([program, *options], capture_output=True, text=True, timeout=10,
                            env={"LC_ALL": language}, check=False)
    return result.returncode, result.stdout, result.stderr


def await_answer(client, query, answer):
    end = time.monotonic() + 10
    while client.ask(query) != answer:
        assert time.monotonic() < end, query


def check_options(program):
    equal(run(program, "--version")[0], 0)
    assert "usage" in run(program, "--help")[1].lower(), "English help"
    for option in ("--listen", "--devices", "--type", "--serial", "--speed", "--wire", "--log", "--version"):
        assert option in run(program, "--help")[1], option
    wrong = (["--devices", "0"], ["--devices", "x"], ["--listen", "here"], ["--listen", "127.0.0.1:70000"],
             ["--listen", "127.0.0.254", "--devices", "3"], ["--speed", "-1"], ["--speed", "1e6"],
             ["--listen", "0.0.0.0:0", "--announce"], ["--type", "70000"], ["--foo"], ["foo"],
             ["--listen", ADDRESS + ":0", "--wire", "valve"],
             ["--listen", ADDRESS + ":0", "--wire", "overcurrent:curve=XX"])
    for options in wrong:
        code, out, errors = run(program, *options)
        equal((code, out), (2, ""))
        assert errors.strip(), options
    told = {("--foo",): "All options: --help", ("--type",): "--type needs a value",
            ("--devices", "0"): "--devices: “0” is not possible; possible: 1 to 250.",
            ("--type", "70000"): "possible: 1 to 65535.", ("--speed", "-1"): "possible: 0.001 to 100000.",
            ("--listen", "127.0.0.1:70000"): "possible: 0 to 65535."}
    for options, words in told.items():
        assert words in run(program, *options)[2], run(program, *options)
    assert "127.0.0.254" not in run(program, "--listen", "?")[2]
    russian = run(program, "--speed", "-1", language="ru_RU.UTF-8")[2]
    assert "недопустимое" in russian, russian


def check_many(program):
    """Each device at an address of its own; the second port is taken away from another one."""
    options = ("--listen", ADDRESS + ":0", "--devices", "3", "--type", "2", "--serial", "41", "--speed", "10",
               "--wire", "overcurrent:pickup=2,curve=DT,time=0.3")
    with Simulator(program, *options, language="ru_RU.UTF-8") as simulator:
        places = [simulator.listening() for _ in range(3)]
        equal([place[:3] for place in places], [("KESTO-2", f"{41 + i:05}", f"127.7.3.{1 + i}") for i in range(3)])
        for name, serial, address, port in places:
            client = Client(address, port)
            equal(client.ask("*IDN?"), f"KES,{name},{serial},1.0.0")
            equal(client.ask("SIM:SPE?"), "10")
            # It talks to programs, whatever the language of its user is.
            equal(client.tell('SYST:CONT:TAKE "x";:CURR 4'), '102,"Device error;The outputs are not switched on."')
            equal(client.tell("OUTP ON;:CURR 4"), GOOD)
            await_answer(client, "INP:STAT?", "3")
        code, out, errors = simulator.end(signal.SIGINT)
        equal((code, out, errors), (0, "", ""))


def check_end_and_restart(program):
    port = 0
    for number in (signal.SIGTERM, signal.SIGHUP):
        with Simulator(program, "--listen", f"{ADDRESS}:{port}", "--log") as simulator:
            *_, port = simulator.listening()
            equal(run(program, "--listen", f"{ADDRESS}:{port}")[0], 1)
            first, second = Client(ADDRESS, port), Client(ADDRESS, port)
            equal(first.tell('SYST:CONT:TAKE "first";:OUTP ON'), GOOD)
            first.end()
            await_answer(second, "SYST:CONT:OWN?;:OUTP?", '"","";0')
            code, _, errors = simulator.end(number)
            equal(code, 0)
            assert "2 < \"\",\"\";0" in errors and "1 > SYST:CONT:TAKE" in errors, errors
            equal(second.file.readline(), "")


def check_warning(program):
    with Simulator(program, "--listen", "0.0.0.0:0") as simulator:
        simulator.listening()
        assert "no passwords" in simulator.end()[2]


def main():
    program = sys.argv[1]
    for check in (check_options, check_many, check_end_and_restart, check_warning):
        check(program)
        print(check.__name__)


if __name__ == "__main__":
    main()
