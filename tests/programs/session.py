"""Stands for a desktop's session manager: waits for a client, and tells it that the session is to end.

usage: session.py
"""

import sys

import gi
gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

INTERFACES = Gio.DBusNodeInfo.new_for_xml("""
<node>
  <interface name="org.gnome.SessionManager">
    <method name="RegisterClient">
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="o" direction="out"/>
    </method>
    <property name="SessionIsActive" type="b" access="read"/>
  </interface>
  <interface name="org.gnome.SessionManager.ClientPrivate">
    <method name="EndSessionResponse"><arg type="b" direction="in"/><arg type="s" direction="in"/></method>
    <signal name="QueryEndSession"><arg type="u"/></signal>
  </interface>
</node>""").interfaces
MANAGER = "/org/gnome/SessionManager"
CLIENT = MANAGER + "/Client1"


isAsked = False


def askClient(bus):
    global isAsked
    isAsked = True
    bus.emit_signal(None, CLIENT, INTERFACES[1].name, "QueryEndSession", GLib.Variant("(u)", (0,)))
    return False


def onCall(bus, _sender, _path, _interface, method, arguments, invocation):
    if method == "RegisterClient":
        # The desktop's own services are clients too.
        isProgram = arguments[0] == "kes.Program"
        invocation.return_value(GLib.Variant("(o)", (CLIENT if isProgram else MANAGER + "/Other",)))
        if isProgram:
            # It subscribes when it has the answer.
            GLib.timeout_add(300, askClient, bus)
        return
    invocation.return_value(None)
    if isAsked:
        print("answered", flush=True)
        loop.quit()


def onBus(bus, _name):
    bus.register_object(MANAGER, INTERFACES[0], onCall, lambda *_: GLib.Variant("b", True), None)
    bus.register_object(CLIENT, INTERFACES[1], onCall, None, None)
    print("ready", flush=True)


loop = GLib.MainLoop()
Gio.bus_own_name(Gio.BusType.SESSION, INTERFACES[0].name, Gio.BusNameOwnerFlags.NONE, onBus, None,
                 lambda *_: sys.exit("the name is taken"))
GLib.timeout_add_seconds(20, lambda: sys.exit("nobody has answered"))
loop.run()
