#!/usr/bin/python3
"""Stands in for the desktop portal's settings on the session bus, so that a desktop of one's own can ask for less motion
or for the dark appearance.

    settings_portal.py NAMESPACE KEY VALUE [NAMESPACE KEY VALUE...]

VALUE is written as GVariant text: `true`, `uint32 1`. Prints "ready" when it can be asked, and serves until it is ended.
"""

import sys

from gi.repository import Gio, GLib

INTERFACE = """
<node><interface name="org.freedesktop.portal.Settings">
  <method name="Read">
    <arg type="s" name="namespace" direction="in"/><arg type="s" name="key" direction="in"/>
    <arg type="v" name="value" direction="out"/>
  </method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>"""


def main():
    words = sys.argv[1:]
    values = {(space, key): GLib.Variant.parse(None, text, None, None)
              for space, key, text in zip(words[0::3], words[1::3], words[2::3])}

    def answer(_connection, _sender, _path, _interface, _method, parameters, invocation):
        value = values.get(parameters.unpack())
        if value is None:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "Requested setting not found")
        else:
            invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", value),)))

    def register(connection, _name):
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        connection.register_object("/org/freedesktop/portal/desktop", interface, answer, None, None)

    Gio.bus_own_name(Gio.BusType.SESSION, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE, register,
                     lambda *_: print("ready", flush=True), None)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
