#!/usr/bin/python3
"""Uses the program as a screen reader does: over the accessibility bus alone.

accessibility_bus_test.py PROGRAM: starts it on an X server and a session bus of its own, goes through the pages of the main
window and of the operational mode, tells each control that can have the focus but has no name, each action without a text and
each picture of a value that assistive tools see nothing of. It does one task, opens the operational mode, chooses a station and
accepts its alarm, and does the same with the windows that menus open: the record, the settings, dialogs and the question before
a removal. Ends with 77, which counts as skipped, where the bus is not installed.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time
import warnings

warnings.simplefilter("ignore", DeprecationWarning)

SKIPPED = 77
PATIENCE = 30.0  # of a wait for what must come; none of it is slept where it comes sooner
ALARM = "+4917012345 --> M,Pump fail"


def missing():
    needed = {"Xvfb": "xvfb", "dbus-run-session": "dbus"}
    absent = [package for program, package in needed.items() if shutil.which(program) is None]
    if not os.path.exists("/usr/share/dbus-1/services/org.a11y.Bus.service"):
        absent.append("at-spi2-core")
    try:
        import gi

        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi  # noqa: F401
    except (ImportError, ValueError):
        absent.append("python3-gi and gir1.2-atspi-2.0")
    return absent


def outside(program):
    """On a display and a session bus of its own."""
    if absent := missing():
        print("skipped: not installed: " + ", ".join(absent))
        return SKIPPED
    with tempfile.TemporaryDirectory() as folder:
        reader, writer = os.pipe()
        # Whoever comes just after the first client has left would find a server that begins anew.
        display = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-noreset", "-screen", "0", "1280x900x24", "-nolisten", "tcp"],
                                   pass_fds=[writer], stderr=subprocess.DEVNULL)
        os.close(writer)
        try:
            number = os.read(reader, 16).decode().strip()
            environment = dict(os.environ, DISPLAY=":" + number, HOME=folder, XDG_RUNTIME_DIR=folder, QT_QPA_PLATFORM="xcb",
                               PYTHONWARNINGS="ignore", XDG_CONFIG_HOME=folder + "/config", XDG_DATA_HOME=folder + "/data", LANG="C.UTF-8",
                               QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_ACCESSIBILITY="1", NO_AT_BRIDGE="0")
            for unwanted in ("WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "AT_SPI_BUS_ADDRESS"):
                environment.pop(unwanted, None)
            return subprocess.call(["dbus-run-session", "--", sys.executable, os.path.abspath(__file__), "--inside", program,
                                    folder], env=environment)
        finally:
            display.terminate()
            display.wait()


class Failure(Exception):
    pass


class Program:
    """The running program, as the bus has it."""

    def __init__(self, program, folder):
        import gi

        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi

        self.atspi = Atspi
        Atspi.init()
        own = os.path.join(folder, "bin")  # the program looks for its list of stations beside itself
        os.mkdir(own)
        shutil.copy(program, own)
        texts = os.path.join(os.path.dirname(program), "language.ini")
        if os.path.exists(texts):
            shutil.copy(texts, own)
        with open(os.path.join(own, "nodes.xml"), "w", encoding="utf-8") as file:
            file.write(list_of_stations())
        self.said = os.path.join(folder, "said")
        with open(self.said, "wb") as said:
            self.process = subprocess.Popen([os.path.join(own, os.path.basename(program)), "-english"], stdout=said, stderr=said)
        self.problems = []
        self.seen = 0

    def end(self):
        self.process.terminate()
        self.process.wait()

    def application(self):
        desktop = self.atspi.get_desktop(0)
        for at in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(at)
            if child is not None and child.get_process_id() == self.process.pid:
                return child
        return None

    def wait(self, what, condition):
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            if (code := self.process.poll()) is not None:
                with open(self.said, encoding="utf-8", errors="replace") as said:
                    last = said.read()[-2000:]
                raise Failure(f"the program ended with {code} while it was waited for: {what}\n{last}")
            try:
                if (found := condition()):
                    return found
            except self.error() as gone:  # it was replaced while it was looked at
                last = gone
            time.sleep(0.05)
        raise Failure("not there: " + what)

    @staticmethod
    def error():
        from gi.repository import GLib

        return GLib.Error

    def windows(self):
        application = self.application()
        if application is None:
            return []
        windows = [application.get_child_at_index(at) for at in range(application.get_child_count())]
        return [window for window in windows if window is not None and self.has(window, "SHOWING")]

    def window(self, part):
        return self.wait("a window that is called " + part,
                         lambda: next((window for window in self.windows() if part in (window.get_name() or "")), None))

    @staticmethod
    def name(node):
        node.clear_cache()
        return node.get_name()

    def has(self, node, state):
        node.clear_cache()  # it is asked for now
        return node.get_state_set().contains(getattr(self.atspi.StateType, state))

    def role(self, node):
        return node.get_role_name()

    def nodes(self, node, depth=0):
        """All that are shown, but of long lists the first ones alone."""
        yield node
        if depth > 30:
            return
        count = node.get_child_count()
        for at in range(min(count, 60)):
            child = node.get_child_at_index(at)
            if child is not None and self.is_shown(child):
                yield from self.nodes(child, depth + 1)

    def is_shown(self, node):
        return self.has(node, "SHOWING") or node.get_role() == self.atspi.Role.APPLICATION

    def menu_item(self, window, name):
        """Of a menu of the window, open or not."""
        bar = next((node for node in self.nodes(window) if self.role(node) == "menu bar"), None)
        waiting = [bar] if bar else []
        while waiting:
            node = waiting.pop(0)
            if self.role(node) in ITEMS and (node.get_name() or "").rstrip(".") == name and self.has(node, "ENABLED"):
                return node
            children = [node.get_child_at_index(at) for at in range(node.get_child_count())]
            waiting += [child for child in children if child is not None]
        return None

    def choose_item(self, window, name):
        """What opens a window that is to be answered answers only then itself."""
        item = self.wait("the entry %s of a menu" % name, lambda: self.menu_item(window, name))
        self.atspi.set_timeout(1000, 0)
        try:
            self.act(item)
        except self.error():
            pass
        finally:
            self.atspi.set_timeout(-1, -1)

    def find(self, window, role, name):
        return next((node for node in self.nodes(window)
                     if self.role(node) == role and name in (node.get_name() or "")), None)

    def act(self, node, wanted=()):
        """Does the first action of these names, or of any."""
        action = node.get_action_iface()
        names = [action.get_action_name(at) for at in range(action.get_n_actions())] if action else []
        for at, name in enumerate(names):
            if not wanted or name in wanted:
                action.do_action(at)
                return
        raise Failure("%s \"%s\" can be asked for: %s" % (self.role(node), node.get_name(), names))

    def examine(self, window, where):
        """Notes what a screen reader could not tell."""
        for node in self.nodes(window):
            self.seen += 1
            name = (node.get_name() or "").strip()
            role = self.role(node)
            about = "%s: %s (in %s)" % (where, role, self.path(node))
            if self.has(node, "FOCUSABLE") and self.has(node, "ENABLED") and not name and role not in UNNAMED_MAY_BE:
                self.problems.append("no name: " + about)
            if role in ACTED_ON and not name:
                self.problems.append("no text: " + about)
            parent = node.get_parent()
            grip = role == "unknown" and parent is not None and self.role(parent) in ("status bar", "split pane")
            if role in ("unknown", "invalid") and not grip:  # what only the mouse sizes by
                self.problems.append("no role: " + about + " \"" + name + "\"")
            action = node.get_action_iface()
            for at in range(action.get_n_actions() if action else 0):
                if not action.get_action_name(at):
                    self.problems.append("an action without a name: " + about)

    def path(self, node):
        parts = []
        while node is not None and len(parts) < 6:
            parts.append("%s \"%s\"" % (self.role(node), (node.get_name() or "")[:30]))
            node = node.get_parent()
        return " < ".join(parts)


# What only holds others, or is told by them: a list's empty cell has no text, nor has a line that has nothing to tell.
UNNAMED_MAY_BE = ("label", "frame", "window", "filler", "panel", "scroll pane", "table cell", "layered pane", "split pane",
                  "dialog")
ACTED_ON = ("push button", "toggle button", "check box", "radio button", "menu item", "check menu item", "radio menu item",
            "page tab", "menu")
ITEMS = ("menu item", "check menu item", "radio menu item")
# Of the main window and of the operational mode: an entry of a menu, a part of the name of the window that it opens, and the
# button that closes that; none for a window that may stay.
MAIN_WINDOWS = (("Settings", "Settings", "Cancel"),)
MODE_WINDOWS = (("Delete", 'Delete the station "', "Cancel"), ("Add several", "Add stations", "Cancel"),
                ("Maintenance", "Station in maintenance", "Cancel"), ("Export", "Export", "Cancel"),
                ("Record: size, age, copy", "What is kept", "Cancel"), ("Where the stations are", "Where the stations are", "Cancel"),
                ("Alarm rules", "Alarm rules", "Cancel"), ("Chattering and silence", "Chattering and silence", "Cancel"),
                ("Sound", "Sound of alarms", "OK"), ("Find in the record", "Record", None))


def list_of_stations():
    def node(key, text, colour=-2147483640):
        return '<i key="%s" text="%s" ForeColor="%d"/>' % (key, text, colour)

    nodes = []
    for name in ("North", "South"):
        nodes.append(node(name, name, 255 if name == "South" else -2147483640))
    entry = ALARM.replace(">", "&gt;")
    nodes += [node("South/meldung", "Notifications", 255), node("South/meldung/" + entry, entry, 255),
              node("South/history/1", "01.02.2026 10:00 : IP9 = 12.5"), node("South/ip/ip1", "DI1 - IP1 = 1")]
    return "<KTR>" + "".join(nodes) + "</KTR>"


def look_at_pages(program, window, where):
    """Goes through the page tabs of a window; asking a tab shows its page."""
    tabs = [node for node in program.nodes(window) if program.role(node) == "page tab"]
    if not tabs:
        program.examine(window, where)
    for tab in tabs:
        name = tab.get_name()
        program.act(tab)
        program.wait("the page " + name, lambda tab=tab: program.name(tab.get_parent()) == program.name(tab))
        program.examine(window, where + ", page " + name)


def look_at_windows(program, window, entries):
    for entry, title, button in entries:
        before = [known.get_name() for known in program.windows()]
        program.choose_item(window, entry)
        opened = program.wait("the window " + title, lambda: next(
            (found for found in program.windows() if title in (found.get_name() or "") and found.get_name() not in before), None))
        look_at_pages(program, opened, title)
        if button:
            program.act(program.wait("%s of %s" % (button, title), lambda: program.find(opened, "push button", button)))
            program.wait("the end of " + title, lambda: all(
                title not in (left.get_name() or "") or left.get_name() in before for left in program.windows()))


def choose(program, item):
    """Or, where it is chosen, no longer."""
    program.act(item, ("Toggle",))


def task(program):
    """Opens the operational mode, chooses the station in alarm and accepts its notification."""
    main = program.window("KTRconfig")
    look_at_pages(program, main, "main window")
    look_at_windows(program, main, MAIN_WINDOWS)
    program.act(program.wait("the operational mode", lambda: program.find(main, "menu item", "Operational Mode")))
    window = program.window("(1!)")  # one alarm waits
    look_at_pages(program, window, "operational mode")
    program.act(program.find(window, "page tab", "Station"))  # of North, which is chosen again itself then
    tree = program.wait("the tree of stations", lambda: program.find(window, "tree", "Stations"))
    station = program.wait("the station South", lambda: program.find(tree, "table cell", "South"))
    other = program.wait("the station North", lambda: program.find(tree, "table cell", "North"))
    program.wait("that North is chosen", lambda: program.has(other, "SELECTED"))
    choose(program, station)
    program.wait("that South is chosen", lambda: program.has(station, "SELECTED"))
    program.wait("that two are chosen", lambda: program.find(window, "label", "2 stations chosen"))
    choose(program, other)
    program.wait("that North is not", lambda: not program.has(other, "SELECTED"))
    tab = program.find(window, "page tab", "Notifications")
    program.act(tab)
    program.wait("its notification", lambda: next(
        (node for node in program.nodes(window) if "Pump fail" in (node.get_name() or "")
         and program.role(node) == "table cell"), None))
    accept = program.wait("a button that accepts it", lambda: next(
        (node for node in program.nodes(window) if program.role(node) == "push button"
         and (node.get_name() or "").startswith("Accept") and program.has(node, "ENABLED")), None))
    program.act(accept)
    program.wait("that no alarm waits any more", lambda: next(
        (found for found in program.windows() if "perational" in (found.get_name() or "")
         and "!" not in found.get_name()), None))
    look_at_windows(program, window, MODE_WINDOWS)


def inside(program, folder):
    running = Program(program, folder)
    try:
        task(running)
    except Failure as failure:
        running.problems.append(str(failure))
        for window in running.windows():
            for node in running.nodes(window):
                print("  %s \"%s\"" % (running.role(node), (node.get_name() or "").replace("\n", " ")[:80]))
    finally:
        running.end()
    print("%d controls looked at" % running.seen)
    for problem in dict.fromkeys(running.problems):
        print(problem)
    return 1 if running.problems or running.seen == 0 else 0


if __name__ == "__main__":
    if sys.argv[1] == "--inside":
        sys.exit(inside(sys.argv[2], sys.argv[3]))
    sys.exit(outside(os.path.abspath(sys.argv[1])))
