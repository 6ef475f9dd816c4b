"""The window in which devices are chosen, and what the status bar shows of them."""

import texts
from bench import DesktopTest
from desk import click, fill, find, focus, press, wait

DEFAULT = "127.0.0.1"
ABSENT = "127.8.5.9"


class HardwareTest(DesktopTest):
    def text(self, key, *values):
        text = texts.SETTINGS.get(key, self.language)
        for value in values:
            text = text.replace("%s", value, 1)
        return text

    def open(self, program):
        click(program.tool("hardware"))
        return program.find("frame", self.text("Settings.title"))

    def add(self, window, address):
        fill(find(window, "text", self.text("Add.addressName")), address)
        find(window, "push button", self.text("Add.add")).act()

    def confirm(self, program, window):
        click(find(window, "push button", self.text("Settings.ok")))
        program.waitUntilGone(window)

    def devices(self, program):
        return [label for label in program.window.labels if label.count(".") == 3 and label[0].isdigit()]

    def testAddressesAreRefusedInPlaceAndDevicesOrdered(self):
        program = self.start()
        window = self.open(program)
        self.add(window, DEFAULT)
        find(window, "notification", self.text("Add.taken", DEFAULT))
        self.add(window, ABSENT)
        wait("the refusal to go", lambda: not window.look("notification", self.text("Add.taken", DEFAULT)))
        click(find(window, "push button", self.text("Devices.up", ABSENT)))
        find(window, "push button", self.text("Devices.down", ABSENT))
        self.confirm(program, window)
        wait("both devices", lambda: self.devices(program) == [ABSENT, DEFAULT])

        window = self.open(program)
        find(window, "push button", self.text("Devices.remove", DEFAULT)).act()
        self.confirm(program, window)
        wait("one device", lambda: self.devices(program) == [ABSENT])
        focus(program.tool("start"))
        press("space")
        box = program.find("alert")
        self.assertTrue(any(ABSENT in label for label in box.labels), box.labels)
        program.answer(box, "ok")
        wait("the start command", lambda: program.tool("start").isSensitive)
        program.discard()

    def testTheAuxiliarySupplyAndSynchronisationAreChosenAndShown(self):
        program = self.start()

        def mode(key):
            return f"{program.text('Status.syncTitle')} {texts.DEVICES.get(f'Sync.{key}.shortName', self.language)}"

        self.assertFalse(program.button(mode("None")).isSensitive)
        window = self.open(program)
        click(find(window, "check box", self.text("Devices.auxDCOf", DEFAULT)))
        volts = find(window, "text", self.text("Devices.voltsOf", DEFAULT))
        wait("the voltage to be asked for", lambda: volts.isSensitive)
        fill(volts, "9999")
        find(window, "push button", self.text("Settings.ok")).act()
        find(window, "notification", self.text("Settings.wrongValues"))
        fill(volts, "110")
        modes = find(window, "combo box", self.text("Sync.modeName"))
        find(modes, "menu item", texts.DEVICES.get("Sync.GPS.name", self.language), hidden=True).act()
        wait("the chosen mode", lambda: find(window, "push button", self.text("Sync.info")).isSensitive)
        self.confirm(program, window)

        find(program.window, "icon", texts.DEVICES.get("auxDC.enabled", self.language))
        click(program.button(mode("GPS")))
        program.answer(program.message(texts.DEVICES.get("Sync.GPS.info", self.language)), "ok")
        program.discard()
