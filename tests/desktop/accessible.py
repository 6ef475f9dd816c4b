"""The accessible objects of programs, asked for over AT-SPI's own bus.

Nothing but the role is kept between two questions: what a `Node` tells is what the program says at this moment.
A question to an object that has gone raises GLib.Error.
"""

import functools

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

INTERFACE = "org.a11y.atspi."
TIMEOUT = 5000  # milliseconds, for one question

# The numbers of the states that are asked for.
ACTIVE, EDITABLE, FOCUSABLE, FOCUSED, SELECTED, SENSITIVE, SHOWING, VISIBLE = 1, 7, 11, 12, 23, 24, 25, 30

# Not looked into: single controls, and tables, whose contents are asked for with `rows`.
LEAVES = {"animation", "check box", "icon", "image", "label", "notification", "progress bar", "push button",
          "scroll bar", "separator", "table", "text", "tree table"}


class Bus:
    """The connection to the accessibility bus of the session, which starts with the first question."""

    _connection = None

    @classmethod
    def call(cls, name, path, interface, method, arguments=None):
        return cls._get().call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                    TIMEOUT, None).unpack()

    @classmethod
    def processId(cls, name):
        return cls.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                        "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))[0]

    @classmethod
    def _get(cls):
        if not cls._connection:
            session = Gio.bus_get_sync(Gio.BusType.SESSION, None)
            address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                        Gio.DBusCallFlags.NONE, -1, None).unpack()[0]
            flags = Gio.DBusConnectionFlags
            cls._connection = Gio.DBusConnection.new_for_address_sync(
                address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)
        return cls._connection


class Node:
    """An accessible object."""

    def __init__(self, bus, path):
        self._bus = bus
        self._path = path

    @staticmethod
    def desktop():
        """Its children are the programs."""
        return Node("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")

    def __eq__(self, other):
        return isinstance(other, Node) and (self._bus, self._path) == (other._bus, other._path)

    def __hash__(self):
        return hash((self._bus, self._path))

    def __repr__(self):
        try:
            return f"{self.role} '{self.name}'"
        except GLib.Error:
            return "an object that has gone"

    def _call(self, interface, method, signature=None, *arguments):
        packed = GLib.Variant(f"({signature})", arguments) if signature else None
        return Bus.call(self._bus, self._path, INTERFACE + interface, method, packed)

    def _get(self, interface, name):
        return Bus.call(self._bus, self._path, "org.freedesktop.DBus.Properties", "Get",
                        GLib.Variant("(ss)", (INTERFACE + interface, name)))[0]

    # -- what it is

    @property
    def processId(self):
        return Bus.processId(self._bus)

    @property
    def name(self):
        return self._get("Accessible", "Name")

    @functools.cached_property
    def role(self):
        return self._call("Accessible", "GetRoleName")[0]

    @property
    def description(self):
        return self._get("Accessible", "Description")

    def has(self, *states):
        low, high = self._call("Accessible", "GetState")[0]
        present = low | high << 32
        return all(present >> state & 1 for state in states)

    @property
    def isShowing(self):
        return self.has(SHOWING, VISIBLE)

    @property
    def isSensitive(self):
        return self.has(SENSITIVE)

    @property
    def parent(self):
        return Node(*self._get("Accessible", "Parent"))

    def children(self):
        return [Node(*child) for child in self._call("Accessible", "GetChildren")[0]]

    def walk(self, hidden=False):
        """This object and all inside it, from top to bottom, without the cells of tables."""
        try:
            # The toolkit says of a viewport that has been scrolled by more than its own height that it is gone.
            if not hidden and not self.isShowing and self.role != "viewport":
                return
            children = [] if self.role in LEAVES else self.children()
        except GLib.Error:  # it has gone meanwhile
            return
        yield self
        for child in children:
            yield from child.walk(hidden)

    def look(self, role, name=None, hidden=False):
        """The first object inside it with the role and the name, or None. A function may stand for a name."""
        for node in self.walk(hidden):
            try:
                if node.role == role and matches(name, node.name):
                    return node
            except GLib.Error:
                continue
        return None

    def all(self, role):
        return [node for node in self.walk() if node.role == role]

    # -- what it holds

    @property
    def text(self):
        return self._call("Text", "GetText", "ii", 0, -1)[0]

    @property
    def labels(self):
        """What can be read in it, from top to bottom."""
        return [node.text for node in self.all("label")]

    def cells(self):
        """The cells of a table, row by row."""
        columns = range(self._get("Table", "NColumns"))
        return [[Node(*self._call("Table", "GetAccessibleAt", "ii", row, column)[0]) for column in columns]
                for row in range(self._get("Table", "NRows"))]

    @property
    def rows(self):
        """The texts in a table, row by row."""
        return [[cell.name for cell in row] for row in self.cells()]

    def cell(self, name):
        """The first cell of a table with the name, or with a part of that name, or None."""
        for row in self.cells():
            for cell in row:
                if name in (part.name for part in [cell, *cell.children()]):
                    return cell
        return None

    # -- what assistive technology does to it

    def act(self, action=0):
        assert self._call("Action", "DoAction", "i", action)[0], f"{self} refuses its action"

    def setText(self, text):
        assert self._call("EditableText", "SetTextContents", "s", text)[0], f"{self} refuses a text"

    def grabFocus(self):
        assert self._call("Component", "GrabFocus")[0], f"{self} refuses the focus"

    @property
    def rectangle(self):
        """On the screen, in pixels: left, top, width, height."""
        return self._call("Component", "GetExtents", "u", 0)[0]


def matches(wanted, name):
    return wanted is None or (wanted(name) if callable(wanted) else wanted == name)
