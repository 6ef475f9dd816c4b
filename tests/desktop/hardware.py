"""The window in which devices are chosen, and what the status bar shows of them."""

import texts
from bench import DesktopTest
from desk import click, fill, find, wait

DEFAULT = "127.0.0.1"


class HardwareTest(DesktopTest):
    def text(self, key):
        return texts.SETTINGS.get(key, self.language).replace("%s", DEFAULT)

    def testTheAuxiliarySupplyAndSynchronisationAreChosenAndShown(self):
        program = self.start()

        def mode(key):
            return f"{program.text('Status.syncTitle')} {texts.DEVICES.get(f'Sync.{key}.shortName', self.language)}"

        self.assertFalse(program.button(mode("None")).isSensitive)
        click(program.tool("hardware"))
        window = program.find("frame", self.text("Settings.title"))
        click(find(window, "check box", self.text("Devices.auxDCOf")))
        volts = find(window, "text", self.text("Devices.voltsOf"))
        wait("the voltage to be asked for", lambda: volts.isSensitive)
        fill(volts, "9999")
        find(window, "push button", self.text("Settings.ok")).act()
        find(window, "notification", self.text("Settings.wrongValues"))
        fill(volts, "110")
        modes = find(window, "combo box", self.text("Sync.modeName"))
        find(modes, "menu item", texts.DEVICES.get("Sync.GPS.name", self.language), hidden=True).act()
        wait("the chosen mode", lambda: find(window, "push button", self.text("Sync.info")).isSensitive)
        click(find(window, "push button", self.text("Settings.ok")))
        program.waitUntilGone(window)

        find(program.window, "icon", texts.DEVICES.get("auxDC.enabled", self.language))
        click(program.button(mode("GPS")))
        program.answer(program.message(texts.DEVICES.get("Sync.GPS.info", self.language)), "ok")
        program.discard()
