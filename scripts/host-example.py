#!/usr/bin/python3
"""Plays a practice-management host driving Quillmere Pad over D-Bus.

The first call starts the program through its D-Bus activation file; then
the host sets its properties, opens a template, hands over company IDs,
asks for the merge, brings the window to the front and waits until the
program ends (ExitDocMerge). Needs python3-dbus and python3-gi.

    /usr/bin/python3 scripts/host-example.py --database demo.qmd \\
        --work-folder ~/.local/share/QuillmereHost/ --template letter.qmt --ids 1,2,3
"""
import argparse
import os
import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

SERVICE = "org.quillmere.QuillmerePad"
PATH = "/clsDocMerge"
INTERFACE = "org.quillmere.clsDocMerge"
HOST_NAME = "org.quillmere.HostExample"
# The opening calls and the merge may wait for the user to answer one of
# the program's questions.
USER_TIMEOUT = 3600
ERRORS_PATH = "/hostErrors"


class HostErrors(dbus.service.Object):
    """The host's error object: the program pushes its procedure tags here."""

    @dbus.service.method("org.quillmere.errorClass", in_signature="s")
    def enterProcedure(self, tag):
        print(f"  [errors] enter {tag}")

    @dbus.service.method("org.quillmere.errorClass")
    def leaveProcedure(self):
        print("  [errors] leave")

    @dbus.service.method("org.quillmere.errorClass", in_signature="is")
    def reportError(self, number, text):
        print(f"  [errors] error {number}: {text}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--database", required=True, help="the practice's client database")
    parser.add_argument("--work-folder", required=True, help="the application working folder")
    parser.add_argument("--template", help="a template to open (none: a new company template)")
    parser.add_argument("--ids", default="1,2,3", help="company IDs to merge, comma-separated")
    parser.add_argument("--province", type=int, default=3)
    parser.add_argument("--user", type=int, default=0)
    parser.add_argument("--quit-after", type=float, metavar="SECONDS",
                        help="end the session with Quit instead of waiting for the user")
    args = parser.parse_args()

    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    keep_name = dbus.service.BusName(HOST_NAME, bus)
    errors = HostErrors(bus, ERRORS_PATH)
    loop = GLib.MainLoop()

    def exited():
        print("ExitDocMerge: the program has ended")
        loop.quit()

    bus.add_signal_receiver(exited, "ExitDocMerge", INTERFACE, None, PATH)

    # 1. Creating the object: the first call starts the program.
    merge = bus.get_object(SERVICE, PATH)
    props = dbus.Interface(merge, "org.freedesktop.DBus.Properties")
    doc_merge = dbus.Interface(merge, INTERFACE)
    print("currentProvince before any put:", props.Get(INTERFACE, "currentProvince"))

    # 2. The values start-up reads, all before the opening call.
    props.Set(INTERFACE, "errorClass",
              dbus.Struct((HOST_NAME, dbus.ObjectPath(ERRORS_PATH)), signature="so"))
    props.Set(INTERFACE, "AppWorkingDataFolder", os.path.join(args.work_folder, ""))
    props.Set(INTERFACE, "currentProvince", dbus.Int16(args.province))
    props.Set(INTERFACE, "userID", dbus.Int32(args.user))
    props.Set(INTERFACE, "DatabaseLocation", os.path.abspath(args.database))
    print("DatabaseLocation reads back:", repr(str(props.Get(INTERFACE, "DatabaseLocation"))))

    # 3. Exactly one opening call.
    if args.template:
        doc_merge.openExistingMergeDocument(os.path.abspath(args.template), dbus.Int16(7),
                                            timeout=USER_TIMEOUT)
    else:
        doc_merge.openNewMergeDocument(dbus.Int16(1), timeout=USER_TIMEOUT)

    # 4. The records: companies go in as IDListArray.
    ids = [int(i) for i in args.ids.split(",") if i.strip()]
    try:
        props.Set(INTERFACE, "IDListArray",
                  dbus.Array([dbus.Int32(i) for i in ids], signature="i", variant_level=1))
    except dbus.DBusException as e:
        print(f"IDListArray refused: {e.get_dbus_name()}: {e.get_dbus_message()}")
        return 1
    print("IDList now:", [list(map(str, row)) for row in props.Get(INTERFACE, "IDList")])

    # 5. Merge at once and show the window.
    try:
        doc_merge.performMerge(timeout=USER_TIMEOUT)
    except dbus.DBusException as e:
        print(f"performMerge: {e.get_dbus_name()}: {e.get_dbus_message()}")
    doc_merge.bringQuillmerePadToTop()

    # 6. Wait for the end, or end the session ourselves.
    if args.quit_after is not None:
        GLib.timeout_add(int(args.quit_after * 1000), lambda: doc_merge.Quit() and False)
    print("Waiting for ExitDocMerge ...")
    loop.run()
    del keep_name, errors
    return 0


if __name__ == "__main__":
    sys.exit(main())
