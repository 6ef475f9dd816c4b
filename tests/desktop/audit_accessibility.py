#!/usr/bin/python3
"""Goes through every window of a test program as a screen reader does: each control has a name in the language
shown and a role that fits, nothing on the screen is left in another language, and the keyboard reaches
everything. usage: audit_accessibility.py PROGRAM LANGUAGE,... [TEST...]"""

import re
import sys

from gi.repository import GLib

import texts
from accessible import FOCUSABLE, FOCUSED, SELECTED
from bench import DesktopTest, main
from desk import click, fill, find, press, wait

# What a user operates or reads as a whole, and therefore has to be told by name.
NAMED = {"push button", "toggle button", "check box", "radio button", "text", "spin button", "combo box", "slider",
         "menu item", "menu", "check menu item", "table", "table column header", "tree table", "image",
         "progress bar", "frame", "dialog", "alert"}
REACHED = {"push button", "toggle button", "check box", "radio button", "text", "spin button", "table", "link",
           "list item"}
PRESSED = {"push button", "toggle button", "check box", "radio button"}
# Scrolling areas take the focus for the arrow keys only, and panes for moving their border.
PASSED_OVER = {"scroll pane", "split pane"}
# Words that are the same in both languages.
INTERNATIONAL = {"Overcurrent", "VoltageFrequency", "KESTO", "Avahi", "kovc", "kvf", "df", "dt", "TMS", "GPS", "PTP",
                 "IEEE", "IEC", "Sync", "out", "in"}
LATIN = re.compile(r"[A-Za-z]{2,}")
CYRILLIC = re.compile(r"[А-Яа-яЁё]")


class AuditTest(DesktopTest):
    def assertFits(self, node, text):
        """The text is in the language of the program."""
        if self.language == "en":
            self.assertNotRegex(text, CYRILLIC, node)
            return
        text = re.sub(r"/\S+|\[New\]\.\w+", "", text)  # paths, and the name of a new file
        foreign = [word for word in LATIN.findall(text) if word not in INTERNATIONAL]
        self.assertEqual(foreign, [], f"{node} in {self.language}")

    def audit(self, window):
        unnamed, described = [], {}
        for node in window.walk():
            role, name = node.role, node.name
            if role in NAMED and not name:
                unnamed.append((role, node.rectangle))
            if role in NAMED or role in ("label", "statusbar", "notification"):
                for text in (name, node.description):
                    self.assertFits(node, text)
            if role in PRESSED:
                self.assertTrue(node.has(FOCUSABLE), f"{node} is for the mouse only")
            described.setdefault(node.description, []).append(node)
            if name:
                self.assertNotEqual(node.description.split("\n")[0], name, f"{node} is described by its name")
            if node.has(FOCUSABLE):
                self.assertIn(role, REACHED | PASSED_OVER | {"label", "menu item", "panel"}, node)
        self.assertEqual(unnamed, [], f"controls without a name in {window}")
        # Several values may have the same limits.
        repeated = {text: nodes for text, nodes in described.items() if text and "…" not in text and len(nodes) > 1}
        self.assertEqual(repeated, {}, f"one description for several controls of {window}")

    # -- the keyboard

    def focused(self):
        """What has the focus; None for the inside of a combo box, which GTK keeps from the tree. The last one found
        and its neighbours are asked first."""
        for place in sorted(range(len(self.places)), key=lambda place: (place - self.last) % len(self.places)):
            try:
                if self.places[place].has(FOCUSED):
                    self.last = place
                    return self.places[place]
            except GLib.Error:  # it has gone meanwhile
                continue
        return None

    def step(self, key):
        """Presses a key and returns what has the focus then."""
        before = self.focused()
        press(key)
        try:
            wait("another focus", lambda: self.focused() != before, 1)
        except AssertionError:
            pass
        return self.focused()

    def assertReached(self, window):
        """Tab, and the arrow keys within a toolbar, lead to every control."""
        if self.language != "en":
            return  # The keyboard reaches the same controls in every language.
        self.places, self.last = [node for node in window.walk(hidden=True) if node.has(FOCUSABLE)], 0
        reached, hidden = [self.focused()], 0
        while True:
            node = reached[-1]
            while node and "tool bar" in (node.parent.role, node.parent.parent.role):
                node = self.step("Right")
                if node in reached:
                    break
                reached.append(node)
            node = self.step("Tab")
            if node in reached:
                break
            if node:
                reached.append(node)
            hidden += not node
            self.assertLess(hidden, 20, "no focus to be seen")
        lost = [node for node in window.walk() if node.role in REACHED and node.has(FOCUSABLE) and node.isSensitive
                and node not in reached]
        self.assertEqual(lost, [], f"out of reach; reached {reached}")
        # Some of those that the focus went into may have been scrolled away since.
        boxes = [node for node in window.walk(hidden=True) if node.role == "combo box" and node.isSensitive]
        self.assertEqual(hidden, len(boxes))

    # -- window by window

    def testTheMainWindow(self):
        program = self.start("--speed", "1000")
        self.audit(program.window)
        self.assertReached(program.window)
        self.assertEqual(len(program.window.all("statusbar")), 1)
        for key in ("fileNew", "fileOpen", "fileSave", "start", "stop", "closeConnect", "hardware", "testObject",
                    "report"):
            title, _, description = program.text(f"Tool.{key}").partition("\n")
            self.assertEqual((program.tool(key).name, program.tool(key).description), (title, description))

        program.tool("start").act()
        program.waitForOutcome("Passed")
        self.audit(program.window)
        for cells in program.rows():
            for text in cells:
                self.assertFits("a cell of the results", text)
        program.discard()

    def testTheMenusAndAbout(self):
        program = self.start()
        menus = {"File": ("fileNew", "fileOpen", "fileSave", "fileSaveAs", "fileRecents", "exit"),
                 "Help": ("about", "help")}
        for menu, (key, items) in zip(("Menu.file", "Menu.help"), menus.items()):
            node = find(program.window, "menu", program.text(menu))
            names = [child.name for child in node.children() if child.role in ("menu", "menu item")]
            self.assertEqual(names, [program.text(f"Menu.{item}") for item in items], key)

        program.waitForKeyboard()
        press("F10")
        file = find(program.window, "menu", program.text("Menu.file"))
        wait("the open File menu", lambda: file.has(SELECTED) and file.children()[0].isShowing)
        self.audit(file)
        press("Escape", "Escape")
        wait("the closed menu", lambda: not file.children()[0].isShowing)

        program.command("about", "action")
        window = program.find("dialog", texts.DIALOGS.get("About.title", self.language))
        self.assertIn(program.window.name, window.labels)
        self.assertTrue(any(re.fullmatch(r"\d+\.\d+\.\d+", label) for label in window.labels), window.labels)
        self.audit(window)
        self.assertReached(window)
        press("Escape")
        program.waitUntilGone(window)
        program.discard()

    def testTheTestObject(self):
        program = self.start()
        program.tool("testObject").act()
        window = program.find("frame", texts.WINDOWS.get("testObjectWindowTitle", self.language))
        self.audit(window)
        self.assertReached(window)
        fill(window.all("text")[0], "x")
        self.audit(window)
        press("Escape", "Escape")
        program.waitUntilGone(window)
        program.discard()

    def testTheDevices(self):
        program = self.start()
        program.tool("hardware").act()
        window = program.find("frame", texts.SETTINGS.get("Settings.title", self.language))
        find(window, "push button", texts.SETTINGS.get("Search.start", self.language)).act()
        found = texts.SETTINGS.get("Search.found", self.language)
        wait("what was found", lambda: found in window.labels)
        fill(find(window, "text", texts.SETTINGS.get("Add.addressName", self.language)), "1.2.3")
        press("Return")
        wait("the refusal", lambda: window.look("notification"))
        self.audit(window)
        self.assertReached(window)
        press("Escape")
        program.waitUntilGone(window)
        program.discard()

    def testTheBoxesBeginOnTheAnswerThatLosesNothing(self):
        program = self.start()
        program.command("exit", "action")
        box = program.unsavedQuestion()
        self.audit(box)
        self.assertReached(box)
        press("Escape")
        program.waitUntilGone(box)

        program.command("exit", "action")
        box = program.unsavedQuestion()
        self.assertTrue(find(box, "push button", program.caption("cancel")).has(FOCUSED))
        press("Return")
        program.waitUntilGone(box)

        program.tool("start").act()
        wait("the run", lambda: program.tool("stop").isSensitive)
        program.command("exit", "action")
        box = program.message(texts.PROGRAM.get("Message.closeConfirmation", self.language))
        self.audit(box)
        self.assertTrue(find(box, "push button", program.caption("no")).has(FOCUSED))
        press("Return")
        program.waitUntilGone(box)
        click(program.tool("stop"))
        program.waitForOutcome("Stopped")
        program.discard()


if __name__ == "__main__":
    sys.exit(main((AuditTest,), sys.argv[1], sys.argv[2].split(","), sys.argv[3:]))
