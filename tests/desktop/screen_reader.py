"""Listens on the accessibility bus as a screen reader does, and prints a line for each thing that it would say:
what has the focus, and what has a new name."""

from gi.repository import Gio, GLib

REGISTRY = ("org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry")
ACCESSIBLE = "org.a11y.atspi.Accessible"


def call(bus, name, path, interface, method, arguments=None):
    return bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, 5000, None)


def describe(bus, sender, path):
    """The name of an accessible thing, the name of its role and its description."""
    name, description = (call(bus, sender, path, "org.freedesktop.DBus.Properties", "Get",
                              GLib.Variant("(ss)", (ACCESSIBLE, what))).unpack()[0] for what in ("Name", "Description"))
    role = call(bus, sender, path, ACCESSIBLE, "GetRoleName").unpack()[0]
    return f"{name!r} {role!r} {description!r}"


def hear(bus, sender, path, _interface, signal, arguments):
    detail, first, *_ = arguments.unpack()
    wanted = {("StateChanged", "focused"): "focused", ("PropertyChange", "accessible-name"): "named"}
    what = wanted.get((signal, detail))
    if what is None or (what == "focused" and not first):
        return
    try:
        print(what, describe(bus, sender, path))
    except GLib.Error:
        pass  # it has gone meanwhile


def main():
    session = Gio.bus_get_sync(Gio.BusType.SESSION)
    address = call(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress").unpack()[0]
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
    bus.signal_subscribe(None, "org.a11y.atspi.Event.Object", None, None, None, Gio.DBusSignalFlags.NONE, hear)
    for event in ("object:state-changed:focused", "object:property-change:accessible-name"):
        call(bus, *REGISTRY, "RegisterEvent", GLib.Variant("(s)", (event,)))
    print("listening")
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
