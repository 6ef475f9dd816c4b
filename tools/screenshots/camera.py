"""Pictures of windows on a headless screen: quiet, small in bytes, and with the same title bar everywhere."""

import os
import subprocess
import tempfile
import time

from desk import wait, xdotool

# A title bar of one calm colour; no handle below the window.
TITLE_BAR = """
border.width: 1
padding.width: 6
padding.height: 4
window.handle.width: 0
window.client.padding.width: 0
window.client.padding.height: 0
window.active.border.color: #8b929a
window.inactive.border.color: #8b929a
window.active.title.bg: flat solid
window.active.title.bg.color: #3b4c5f
window.inactive.title.bg: flat solid
window.inactive.title.bg.color: #7d8893
window.active.label.bg: parentrelative
window.inactive.label.bg: parentrelative
window.active.label.text.color: #ffffff
window.inactive.label.text.color: #e6e9ec
window.*.button.*.bg: parentrelative
window.*.button.*.image.color: #ffffff
window.label.text.justify: center
"""
FONT = '<font place="{}"><name>DejaVu Sans</name><size>10</size><weight>bold</weight><slant>normal</slant></font>'
# What would make two pictures of the same window differ.
GTK_SETTINGS = "[Settings]\ngtk-cursor-blink=0\ngtk-enable-animations=0\n"


def decorate():
    """Gives the windows of this screen their title bars."""
    home = os.environ["HOME"]
    _write(os.path.join(home, ".themes/Calm/openbox-3/themerc"), TITLE_BAR)
    rules = os.path.join(home, "rc.xml")
    fonts = "".join(FONT.format(place) for place in ("ActiveWindow", "InactiveWindow"))
    _write(rules, '<?xml version="1.0"?><openbox_config xmlns="http://openbox.org/3.4/rc">'
                  f"<theme><name>Calm</name><titleLayout>LIMC</titleLayout>{fonts}</theme>"
                  "<placement><policy>Smart</policy><center>yes</center></placement>"
                  "</openbox_config>")
    before = _manager()
    subprocess.Popen(["openbox", "--replace", "--config-file", rules], stderr=subprocess.DEVNULL)
    wait("the window manager", lambda: _manager() not in ("", before))


def _manager():
    return subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], capture_output=True, text=True,
                          check=False).stdout.partition("#")[2].strip()


def calm(home):
    """Keeps the programs of a home from moving by themselves."""
    _write(home.file(".config/gtk-3.0/settings.ini"), GTK_SETTINGS)


def _write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


class Camera:
    """Takes pictures into a folder; with names given, only those."""

    def __init__(self, folder, names):
        self._folder = folder
        self._names = names
        os.makedirs(folder, exist_ok=True)

    def wants(self, *names):
        return not self._names or any(name in self._names for name in names)

    def take(self, name, program, node, scale=1):
        """Of a window, with its title bar and whatever stands over it."""
        if not self.wants(name):
            return
        self._clearStage(program)
        left, top, width, height = (scale * length for length in node.rectangle)
        area = f"{width}x{height}+{max(left, 0)}+{max(top, 0)}"
        with tempfile.NamedTemporaryFile(suffix=".png") as raw:
            self._takeStill(area, raw.name)
            subprocess.run(["convert", raw.name, "+dither", "-colors", "255", "-strip", "-define",
                            "png:compression-level=9", "PNG8:" + os.path.join(self._folder, name + ".png")], check=True)
        print(f"{self._folder}/{name}.png")

    @staticmethod
    def _clearStage(program):
        """The pointer leaves, and with it tooltips and the shine on buttons."""
        size = xdotool("getdisplaygeometry").split()
        xdotool("mousemove", int(size[0]) - 1, int(size[1]) - 1)
        wait("the end of tooltips", lambda: not any(
            node.role in ("tool tip", "window") and node.isShowing and not node.look("menu")
            for node in program.application.children()))

    @staticmethod
    def _takeStill(area, path):
        """A running test never stands still; it is taken as it is after a while."""
        last = b""
        for _ in range(10):
            subprocess.run(["import", "-silent", "-window", "root", "-crop", area, "+repage", path], check=True)
            with open(path, "rb") as file:
                picture = file.read()
            if picture == last:
                return
            last = picture
            time.sleep(0.1)  # for the next frame
