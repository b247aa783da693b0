"""The hot-key sheet as a screen reader has it: through the accessibility bus alone.

Arguments: the host program, the pane bundle. The X server, the buses and the home are this test's
own. Exits with 77 where a program or a module that it needs is not installed.
"""

import os
import plistlib
import shutil
import subprocess
import sys
import tempfile

NOT_INSTALLED = 77
PATIENCE = 60  # seconds; only a failing test waits that long

# The server's key codes.
ESCAPE, RETURN, CONTROL, KEY_F, KEY_G, ALT = 9, 36, 37, 41, 42, 64


class Desktop:
    """An X server and a session bus, gone with the test."""

    def __init__(self, folder):
        self.processes = []
        os.environ["XDG_RUNTIME_DIR"] = folder
        os.environ["HOME"] = folder
        os.environ["DISPLAY"] = ":" + self.start("Xvfb", "-displayfd", "1", "-nolisten", "tcp")
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self.start(
            "dbus-daemon", "--session", "--nofork", "--print-address"
        )

    def start(self, *command):
        """Starts a program; its first line says that it is ready."""
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.processes.append(process)
        return process.stdout.readline().decode().strip()

    def end(self):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()


class Reader:
    """Hears what the accessibility bus says and looks at what it shows."""

    def __init__(self, atspi, glib):
        self.atspi = atspi
        self.glib = glib
        self.told = []
        self.listener = atspi.EventListener.new(self.hear)
        for event in (
            "object:property-change:accessible-name",
            "object:property-change:accessible-description",
            "object:state-changed",
            "object:children-changed",
            "window",
        ):
            self.listener.register(event)

    def hear(self, event):
        # Of what has the focus a reader tells each change; other events only wake this up.
        if event.type.endswith("accessible-description") and self.is_(event.source, "FOCUSED"):
            self.told.append(event.source.get_description())

    def wait_for(self, what, find):
        """Lets events come until there is something to find."""
        too_late = []
        limit = self.glib.timeout_add_seconds(PATIENCE, lambda: too_late.append(True))
        context = self.glib.MainContext.default()
        while True:
            try:
                found = find()
            except self.glib.Error:  # it went away while it was looked at
                found = None
            if found:
                break
            if too_late:
                sys.exit(f"In vain waited for {what}; told was {self.told}\n" + self.tree())
            # Looking is slow: let all that has come be heard first.
            context.iteration(True)
            while context.pending():
                context.iteration(False)
        self.glib.source_remove(limit)
        return found

    def children(self, root):
        found = (root.get_child_at_index(i) for i in range(root.get_child_count()))
        return [child for child in found if child]

    def all(self, root):
        yield root
        for child in self.children(root):
            yield from self.all(child)

    def find(self, role, name=None, description=None, root=None):
        for thing in self.all(root or self.atspi.get_desktop(0)):
            if (
                thing.get_role_name() == role
                and name in (None, thing.get_name())
                and description in (None, thing.get_description())
            ):
                return thing
        return None

    def is_(self, thing, state):
        return thing.get_state_set().contains(getattr(self.atspi.StateType, state))

    def tree(self, root=None, depth=0):
        root = root or self.atspi.get_desktop(0)
        line = f"{'  ' * depth}{root.get_role_name()}: {root.get_name()!r}"
        if root.get_description():
            line += f", {root.get_description()!r}"
        if "Text" in root.get_interfaces():
            line += f", text {self.atspi.Text.get_text(root, 0, -1)!r}"
        return "\n".join([line] + [self.tree(child, depth + 1) for child in self.children(root)])

    def press(self, *codes):
        for code in codes:
            self.atspi.generate_keyboard_event(code, None, self.atspi.KeySynthType.PRESS)
        for code in reversed(codes):
            self.atspi.generate_keyboard_event(code, None, self.atspi.KeySynthType.RELEASE)

    def press_and_hear(self, expected, *codes):
        self.told.clear()
        self.press(*codes)
        self.wait_for(f"“{expected}”", lambda: expected in self.told)


DOMAIN = "/Library/Preferences/com.varnit.tarnwell.plist"


def make_home(home):
    """A home in which nobody is asked about the tutorial, which is a sheet as well."""
    os.makedirs(os.path.dirname(home + DOMAIN))
    with open(home + DOMAIN, "wb") as file:
        plistlib.dump({"DontShowTutorialSheet": True}, file)


def stored(home):
    with open(home + DOMAIN, "rb") as file:
        domain = plistlib.load(file)
    return domain["MenuAccKeyCode"], domain["MenuAccMods"]


def check(what, found, expected):
    if found != expected:
        sys.exit(f"{what}: {found!r} instead of {expected!r}")


class Page:
    """The page of the hot key, and its sheet."""

    def __init__(self, reader):
        self.reader = reader
        self.button = reader.wait_for(
            "the button", lambda: reader.find("push button", "Set Hot Key")
        )
        self.window = self.button.get_application()
        page = self.button.get_parent()
        self.label = reader.find(
            "label", description="The key combination that opens the menus", root=page
        )

    def sheet(self):
        """The sheet while it shows; once made it stays in the tree."""
        for window in self.reader.children(self.window):
            if window.get_name() == "Set Hot Key" and self.reader.is_(window, "SHOWING"):
                return window
        return None

    def open_sheet(self):
        self.reader.atspi.Action.do_action(self.button, 0)
        sheet = self.reader.wait_for("the sheet", self.sheet)
        # No window manager does it here.
        self.reader.atspi.Component.grab_focus(sheet)
        field = self.reader.find("text", "Hot key", root=sheet)
        self.reader.wait_for("the focus", lambda: self.reader.is_(field, "FOCUSED"))
        return sheet, field

    def end_sheet_by(self, code):
        self.reader.press(code)
        self.reader.wait_for("the end of the sheet", lambda: self.sheet() is None)


def converse(reader, home):
    default, other = "Control Option Command M", "Control Option F"
    page = Page(reader)
    check("label of a new home", page.label.get_name(), default)
    sheet, field = page.open_sheet()
    check("field of a new sheet", field.get_description(), default)
    print(reader.tree(page.button.get_parent()) + "\n" + reader.tree(sheet))

    reader.press_and_hear(other, CONTROL, ALT, KEY_F)
    reader.press_and_hear("Add Control, Option or Command", KEY_G)
    page.end_sheet_by(RETURN)
    reader.wait_for("the new key on the page", lambda: page.label.get_name() == other)
    check("stored", stored(home), (0x03, 14))

    page.open_sheet()
    reader.press_and_hear("Control G", CONTROL, KEY_G)
    page.end_sheet_by(ESCAPE)
    check("label after cancelling", page.label.get_name(), other)
    check("stored after cancelling", stored(home), (0x03, 14))


def main():
    host, bundle = sys.argv[1:]
    if not all(map(shutil.which, ("Xvfb", "dbus-daemon"))):
        sys.exit(NOT_INSTALLED)
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        desktop = Desktop(folder)
        program = None
        try:
            try:
                import gi

                gi.require_version("Atspi", "2.0")
                from gi.repository import Atspi, GLib
            except (ImportError, ValueError):
                sys.exit(NOT_INSTALLED)
            home, root = folder + "/home", folder + "/root"
            make_home(home)
            os.makedirs(root)
            reader = Reader(Atspi, GLib)
            environment = dict(
                os.environ, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1"
            )
            program = subprocess.Popen(
                [host, "--pane", bundle, "--home", home, "--root", root], env=environment
            )
            converse(reader, home)
        finally:
            if program:
                program.terminate()
                program.wait()
            desktop.end()


if __name__ == "__main__":
    main()
