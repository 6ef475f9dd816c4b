"""A keyboard for a Wayland compositor: a client of its own that speaks the protocols of wl_seat and
zwp_virtual_keyboard_v1. With a layout as keyboards have it; one made for a few keys would not move the focus,
since GTK finds its bindings by the layout."""

import array
import os
import socket
import struct
import tempfile
import time

LAYOUT = """xkb_keymap { xkb_keycodes { include "evdev+aliases(qwerty)" }; xkb_types { include "complete" };
xkb_compatibility { include "complete" }; xkb_symbols { include "pc+us+inet(evdev)" }; };"""

# The codes of the keys of each row begin with the one given.
ROWS = {2: ("1234567890-=", "!@#$%^&*()_+"), 16: ("qwertyuiop[]", "QWERTYUIOP{}"), 30: ("asdfghjkl;'`", 'ASDFGHJKL:"~'),
        43: ("\\zxcvbnm,./", "|ZXCVBNM<>?"), 57: (" ", " ")}
PLAIN, SHIFTED = ({character: first + place for first, row in ROWS.items() for place, character in enumerate(row[level])}
                  for level in (0, 1))
NAMED = {"Escape": 1, "BackSpace": 14, "Tab": 15, "Return": 28, "space": 57, "Home": 102, "Up": 103, "Page_Up": 104,
         "Left": 105, "Right": 106, "End": 107, "Down": 108, "Page_Down": 109, "Delete": 111,
         **{f"F{number}": 58 + number for number in range(1, 11)}, "F11": 87, "F12": 88}
# The key and its bit in the state of the modifiers.
MODIFIERS = {"shift": (42, 1), "ctrl": (29, 4), "alt": (56, 8)}


class Keyboard:
    """Its keys go to the window that has the focus."""

    def __init__(self):
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.connect(os.path.join(os.environ["XDG_RUNTIME_DIR"], os.environ["WAYLAND_DISPLAY"]))
        self._last = 1  # the display
        registry = self._new(1, 1)
        globals_ = self._sync(registry)
        seat = self._bind(registry, *globals_["wl_seat"])
        manager = self._bind(registry, *globals_["zwp_virtual_keyboard_manager_v1"])
        self._last += 1
        self._keyboard = self._last
        self._send(manager, 0, struct.pack("II", seat, self._keyboard))
        with tempfile.TemporaryFile() as file:
            file.write(LAYOUT.encode() + b"\0")
            file.flush()
            self._send(self._keyboard, 0, struct.pack("II", 1, file.tell()), file.fileno())
        self._sync()

    def press(self, keys):
        """A key, with the names of modifiers in front of it: "ctrl+a"."""
        *modifiers, key = keys.split("+")
        self._stroke(modifiers, NAMED.get(key) or PLAIN[key])

    def write(self, text):
        for character in text:
            shifted = character in SHIFTED and character not in PLAIN
            self._stroke(["shift"] if shifted else [], (SHIFTED if shifted else PLAIN)[character])

    def _stroke(self, modifiers, code):
        held = [MODIFIERS[name] for name in modifiers]
        for modifier, _ in held:
            self._key(modifier, 1)
        self._modify(sum(bit for _, bit in held))
        self._key(code, 1)
        self._key(code, 0)
        for modifier, _ in held:
            self._key(modifier, 0)
        self._modify(0)
        self._sync()

    def _key(self, code, state):
        self._send(self._keyboard, 1, struct.pack("III", int(time.monotonic() * 1000) & 0xFFFFFFFF, code, state))

    def _modify(self, bits):
        self._send(self._keyboard, 2, struct.pack("IIII", bits, 0, 0, 0))

    # -- the wire: the receiver, the operation and the length in bytes, then the arguments

    def _send(self, receiver, operation, arguments, *descriptors):
        message = struct.pack("II", receiver, (8 + len(arguments)) << 16 | operation) + arguments
        ancillary = [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", descriptors))] if descriptors else []
        self._socket.sendmsg([message], ancillary)

    def _new(self, receiver, operation):
        self._last += 1
        self._send(receiver, operation, struct.pack("I", self._last))
        return self._last

    def _bind(self, registry, name, interface, version):
        text = interface.encode() + b"\0"
        self._last += 1
        self._send(registry, 0, struct.pack("II", name, len(text)) + text.ljust(-len(text) % 4 + len(text), b"\0") +
                   struct.pack("II", version, self._last))
        return self._last

    def _sync(self, registry=None):
        """Until the compositor has dealt with everything; what the registry has told, by its interface."""
        found = {}
        callback = self._new(1, 0)
        while True:
            receiver, operation, arguments = self._receive()
            if receiver == callback:
                return found
            assert (receiver, operation) != (1, 0), f"the compositor refuses: {arguments}"
            if receiver == registry:
                name, length = struct.unpack_from("II", arguments)
                interface = arguments[8:7 + length].decode()
                found[interface] = (name, interface, 1)

    def _receive(self):
        receiver, size = struct.unpack("II", self._read(8))
        return receiver, size & 0xFFFF, self._read((size >> 16) - 8)

    def _read(self, count):
        data = b""
        while len(data) < count:
            part = self._socket.recv(count - len(data))
            assert part, "the compositor has gone"
            data += part
        return data
