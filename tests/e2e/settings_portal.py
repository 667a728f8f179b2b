#!/usr/bin/python3
"""Stands in for the desktop's settings portal: settings_portal.py COLOR_SCHEME

Owns the portal's name on the session bus, says "ready", and takes a new colour scheme (0 none, 1 dark, 2 light) from each
line of its input."""

import sys

from gi.repository import Gio, GLib

PATH = "/org/freedesktop/portal/desktop"
SETTINGS = "org.freedesktop.portal.Settings"
APPEARANCE = "org.freedesktop.appearance"
INTERFACE = f"""
<node>
  <interface name="{SETTINGS}">
    <method name="ReadAll">
      <arg type="as" name="namespaces" direction="in"/>
      <arg type="a{{sa{{sv}}}}" name="value" direction="out"/>
    </method>
    <signal name="SettingChanged">
      <arg type="s" name="namespace"/>
      <arg type="s" name="key"/>
      <arg type="v" name="value"/>
    </signal>
  </interface>
</node>"""


class SettingsPortal:
    def __init__(self, scheme):
        self._scheme = scheme
        self._loop = GLib.MainLoop()
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        self._bus.register_object(PATH, interface, self._answer, None, None)
        Gio.bus_own_name_on_connection(self._bus, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: print("ready", flush=True), None)
        GLib.io_add_watch(sys.stdin, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, self._read)

    def run(self):
        self._loop.run()

    def _answer(self, _bus, _sender, _path, _interface, _method, arguments, invocation):
        wanted = arguments.unpack()[0]
        groups = {APPEARANCE: {"color-scheme": GLib.Variant("u", self._scheme)}} if APPEARANCE in wanted else {}
        invocation.return_value(GLib.Variant("(a{sa{sv}})", (groups,)))

    def _read(self, source, _condition):
        line = source.readline()
        if not line:
            self._loop.quit()
            return False
        self._scheme = int(line)
        value = GLib.Variant("(ssv)", (APPEARANCE, "color-scheme", GLib.Variant("u", self._scheme)))
        self._bus.emit_signal(None, PATH, SETTINGS, "SettingChanged", value)
        return True


if __name__ == "__main__":
    SettingsPortal(int(sys.argv[1])).run()
