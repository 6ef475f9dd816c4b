"""A fault of a device during a test. The program is one whose bench can be given a fault."""

import signal

import texts
from bench import DesktopTest
from desk import find, focus, press, wait


class FaultsTest(DesktopTest):
    def testAFaultIsToldOnceAndStaysAnsweredWhileItLasts(self):
        program = self.start()
        program.tool("start").act()
        program.waitForPoint(1)
        program.process.send_signal(signal.SIGUSR1)
        box = program.find("alert")
        label = find(box, "label", lambda text: "\n" in text)
        title, fault = label.text.split("\n")
        device = find(program.window, "label", lambda text: text.startswith(("KESTO", "КЕСТО"))).text
        self.assertTrue(title.startswith(f"{program.text('Message.hardwareFault')} {device}"), title)
        self.assertEqual(fault, f"IA - {texts.FAULTS.get('Overload', self.language)}")
        text = label.text

        focus(label)
        press("ctrl+a", "ctrl+c")
        self.assertNotIn("The faults are over.", program.output(), "answered too late for this test")
        program.answer(box, "ok")
        program.waitForOutcome("Fault")
        wait("the end of the faults", lambda: "The faults are over." in program.output())
        program.assertNoWindow()

        points = program.field("PlanView.multiples")
        focus(points)
        press("ctrl+a", "ctrl+v")
        wait("the pasted text", lambda: points.text == text)
        program.discard()
