"""Starts kesto-sim and reads where it listens."""
import os
import signal
import socket
import subprocess


class Simulator:
    """A running kesto-sim; ends with the block that uses it."""

    def __init__(self, program, *options, language="C"):
        environment = dict(os.environ, LC_ALL=language)
        self.process = subprocess.Popen([program, *options], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                        env=environment)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.communicate()

    def listening(self):
        """The next line of its output: device, serial number, address, port."""
        name, serial, place = self.process.stdout.readline().split()
        address, port = place.split(":")
        return name, serial, address, int(port)

    def end(self, number=signal.SIGTERM):
        """Its exit code and what is left of its output and its errors."""
        self.process.send_signal(number)
        out, errors = self.process.communicate(timeout=5)
        return self.process.returncode, out, errors


class Client:
    """Talks lines to a device."""

    def __init__(self, address, port):
        self.socket = socket.create_connection((address, port), timeout=10)
        self.file = self.socket.makefile("rw", encoding="utf-8", newline="\n")

    def send(self, line):
        self.file.write(line + "\n")
        self.file.flush()

    def ask(self, line):
        self.send(line)
        return self.file.readline().rstrip("\n")

    def end(self):
        self.socket.close()
        self.file.close()

    def tell(self, command):
        return self.ask(command + ";:SYST:ERR?")
