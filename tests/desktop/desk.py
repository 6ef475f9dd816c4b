"""Drives a program as a user does: mouse, keyboard and, as a screen reader, AT-SPI.

A `Home` is a throw-away home folder whose desktop opens documents with a program that only notes what it
was given. A `Program` is a running program in such a home. Whatever takes time is waited for with `wait`,
never slept for; the environment variable KES_TIME_SCALE makes the limits longer where a build is slow.
"""

import atexit
import functools
import os
import shutil
import subprocess
import tempfile
import time

from gi.repository import GLib

import accessible
import wayland
from accessible import Node, matches

TIME_SCALE = float(os.environ.get("KES_TIME_SCALE") or 1)
LIMIT = 15.0  # seconds
POLL = 0.02  # seconds
WAYLAND = "WAYLAND_DISPLAY" in os.environ
LOCALES = {"en": "C.UTF-8", "ru": "ru_RU.UTF-8", "zz": "C.UTF-8"}


def wait(what, predicate, limit=LIMIT):
    """The first true value of the predicate; fails when there is none within the limit (seconds)."""
    end = time.monotonic() + limit * TIME_SCALE
    while True:
        try:
            value = predicate()
        except GLib.Error:  # the object has gone meanwhile
            value = None
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what() if callable(what) else what}")
        time.sleep(POLL)


def xdotool(*arguments):
    result = subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True, check=False)
    return result.stdout.strip() if result.returncode == 0 else ""


@functools.cache
def keyboard():
    """There before the first window: without a keyboard none would ever be the active one."""
    return wayland.Keyboard()


def press(*keys):
    """Presses keys, one after the other, in the window that has the focus."""
    for key in keys:
        if WAYLAND:
            keyboard().press(key)
        else:
            xdotool("key", "--clearmodifiers", key)


def write(text):
    """Types an ASCII text, as keyboards do."""
    if WAYLAND:
        keyboard().write(text)
    else:
        xdotool("type", "--clearmodifiers", "--delay", 3, text)


def find(where, role, name=None, hidden=False):
    """As `Node.look`, but waits for it."""
    return wait(lambda: f"{role} '{name}' in {where}", lambda: where.look(role, name, hidden))


def placeOf(node):
    """Its rectangle once it stands still: a window that is just being shown still moves."""
    seen = []

    def isStill():
        seen.append(node.isShowing and node.rectangle)
        return len(seen) > 2 and seen[-1] and seen[-1][2] > 1 and seen[-1] == seen[-2] == seen[-3]

    wait(lambda: f"the place of {node}", isStill)
    return seen[-1]


def click(node):
    """With the mouse, in the middle of it. Wayland does not tell where that is, so there it is the control's
    action."""
    if WAYLAND:
        wait(lambda: f"{node} to be shown and sensitive", lambda: node.isShowing and node.isSensitive)
        node.act()
        return
    left, top, width, height = placeOf(node)
    xdotool("mousemove", left + width // 2, top + height // 2, "click", 1)


def focus(node):
    node.grabFocus()
    wait(lambda: f"the focus on {node}", lambda: node.has(accessible.FOCUSED))


def fill(entry, text):
    """Types a text in place of what the entry holds; ASCII only, as keyboards are."""
    focus(entry)
    press("ctrl+a")
    write(text)
    wait(lambda: f"'{text}' in {entry}", lambda: entry.text == text)


@functools.cache
def russianLocale():
    """The folder of the locale, which GTK's own words follow; few systems have this one ready."""
    folder = tempfile.mkdtemp(prefix="kes-locale.")
    atexit.register(shutil.rmtree, folder, ignore_errors=True)
    made = subprocess.run(["localedef", "-i", "ru_RU", "-f", "UTF-8", os.path.join(folder, LOCALES["ru"])],
                          capture_output=True, text=True, check=False)
    assert os.listdir(folder), f"localedef (package locales) has made no locale: {made.stderr}"
    return folder


class Home:
    """A home folder, new; at a path of its own when one is given. Documents opened from it are noted in
    `opened()`."""

    def __init__(self, path=None):
        if path:
            os.makedirs(path)
        self.path = path or tempfile.mkdtemp(prefix="kes-desk.")
        self._log = self.file("opened.txt")
        opener = self.file("opener.sh")
        self.write(opener, f'#!/bin/sh\nprintf "%s\\n" "$1" >>"{self._log}"\n')
        os.chmod(opener, 0o755)
        self.write(self.file(".local/share/applications/kes-opener.desktop"),
                    f"[Desktop Entry]\nType=Application\nName=Opener\nExec={opener} %f\n"
                    "MimeType=text/html;application/pdf;\n")
        self.write(self.file(".config/mimeapps.list"),
                    "[Default Applications]\ntext/html=kes-opener.desktop\napplication/pdf=kes-opener.desktop\n")
        # File choosers begin in the working folder, not with recent files.
        self.write(self.file(".config/glib-2.0/settings/keyfile"),
                    "[org/gtk/settings/file-chooser]\nstartup-mode='cwd'\n")

    def close(self):
        shutil.rmtree(self.path, ignore_errors=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def file(self, name):
        return os.path.join(self.path, name)

    def opened(self):
        if not os.path.exists(self._log):
            return []
        with open(self._log, encoding="utf-8") as log:
            return log.read().split("\n")[:-1]

    def environment(self, language):
        values = dict(os.environ)
        for name in ("NO_AT_BRIDGE", "LANGUAGE", "GTK_MODULES", "DESKTOP_STARTUP_ID"):
            values.pop(name, None)
        values.update(HOME=self.path, XDG_CACHE_HOME=self.file(".cache"), XDG_CONFIG_HOME=self.file(".config"),
                      XDG_DATA_HOME=self.file(".local/share"), XDG_STATE_HOME=self.file(".local/state"),
                      XDG_DOCUMENTS_DIR=self.file("Documents"),
                      LC_ALL=LOCALES[language], GDK_BACKEND="wayland" if WAYLAND else "x11", GIO_USE_VFS="local", GSETTINGS_BACKEND="keyfile")
        if language == "ru":
            values["LOCPATH"] = russianLocale()
        return values

    @staticmethod
    def write(path, text):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)


class Program:
    """A running program, and what a user does with its main window. Leaving the `with` block kills it when
    it still runs."""

    def __init__(self, binary, home, *arguments, language="en", **environment):
        self.home = home
        self.language = language
        if WAYLAND:
            keyboard()
        self._output = tempfile.TemporaryFile(mode="w+", encoding="utf-8", errors="replace")
        self.process = subprocess.Popen(
            [binary, "--language", language, *map(str, arguments)], env={**home.environment(language), **environment},
            stdin=subprocess.DEVNULL, stdout=self._output, stderr=self._output, cwd=home.path)
        try:
            self.application = wait("the program on the accessibility bus", self._findApplication)
            self.window = wait("the main window", lambda: next(
                (node for node in self.application.children() if node.role == "frame"), None))
            wait("the main window or a box over it", lambda: self.window.has(accessible.ACTIVE) or self.windows())
        except BaseException:
            self.kill()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.kill()

    def _findApplication(self):
        assert not self.isOver, f"the program has ended ({self.process.returncode}):\n{self.output()}"
        for node in Node.desktop().children():
            if node.processId == self.process.pid:
                return node
        return None

    def kill(self):
        if not self.isOver:
            self.process.kill()
        self.process.wait()

    @property
    def isOver(self):
        return self.process.poll() is not None

    def output(self):
        """What the program has written to its standard output and error."""
        self._output.seek(0)
        return self._output.read()

    def waitForEnd(self):
        wait("the end of the program", lambda: self.isOver)
        assert self.process.returncode == 0, f"exit status {self.process.returncode}:\n{self.output()}"

    # -- windows

    def waitForKeyboard(self, node=None):
        """Waits until a window, by default the main one, has the keyboard."""
        node = node or self.window
        wait(lambda: f"the activation of {node}", lambda: node.has(accessible.ACTIVE))

    def windows(self):
        """Those beside the main one."""
        return [node for node in self.application.children() if node != self.window and node.isShowing]

    def find(self, role, name=None):
        """A window beside the main one: "alert" (a message box), "dialog", "file chooser", "frame"."""
        def look():
            for node in self.windows():
                if node.role == role and matches(name, node.name):
                    return node
            return None

        node = wait(f"{role} '{name}'", look)
        self.waitForKeyboard(node)
        return node

    def message(self, text):
        """The message box that shows the text."""
        box = self.find("alert")
        labels = box.labels
        assert text in labels, f"expected '{text}', but the box shows {labels}"
        return box

    def waitUntilGone(self, node):
        wait(lambda: f"the end of {node}", lambda: self.isOver or node not in self.windows())

    def assertNoWindow(self):
        assert not self.windows(), f"unexpected: {self.windows()}"

    # -- commands

    def button(self, name):
        return find(self.window, "push button", name)

    def menuItem(self, menu, item):
        """A command of a menu, whether the menu is open or not."""
        return find(find(self.window, "menu", menu), "menu item", item, hidden=True)

    def choose(self, menu, item, by="mouse"):
        """Chooses a command of a menu by "mouse" or "action"."""
        node = self.menuItem(menu, item)
        if by == "action" or WAYLAND:
            node.act()
            return
        self.waitForKeyboard()
        click(find(self.window, "menu", menu))
        click(node)

    def chooseFile(self, path):
        """Answers the open file chooser with a path in the home folder; None cancels."""
        chooser = self.find("file chooser")
        if path is None:
            press("Escape")
        else:
            self.confirmFile(path)
        self.waitUntilGone(chooser)

    def confirmFile(self, path):
        """As `chooseFile`, but does not wait until the chooser has gone: a question may come first."""
        chooser = self.find("file chooser")
        # The last one of the row of buttons; in a title bar of GTK's own it is the first one.
        accept = chooser.all("push button")[0 if WAYLAND else -1]
        field = wait("the file chooser's field or list", lambda: chooser.look("text") or self._row(chooser, path))
        if field.role == "text":
            fill(field, path)
        else:
            click(field)
        # Not with Enter, which GTK ignores while it reads the folder; nor with a click, which only ends its
        # suggestions.
        wait(lambda: f"{accept} to be sensitive", lambda: accept.isSensitive)
        accept.act()

    def _row(self, chooser, path):
        """The row of a file in the list of files that can be opened."""
        table = chooser.look("table")
        return table and table.cell(os.path.basename(path))
