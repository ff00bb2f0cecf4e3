"""What the tests see of the desktop and do on it: processes, accessible controls, the pointer."""

import os
import subprocess
import time
from fnmatch import fnmatchcase

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

PATIENCE = 60  # seconds: a busy machine is slow
HOME = os.environ["HOME"]
Atspi.set_timeout(PATIENCE * 1000, PATIENCE * 1000)  # what is late must not be done twice


def wait_for(what, condition):
    """Answers what the condition answers as soon as that is true."""
    deadline = time.monotonic() + PATIENCE
    while True:
        try:
            answer = condition()
        except GLib.Error:  # what was asked has just gone, or is busy
            answer = None
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {PATIENCE} s in vain for: {what}")
        time.sleep(0.05)


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def is_served(name):
    """True when a service of the session bus runs; the question does not start it."""
    return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
        "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner",
        GLib.Variant("(s)", (name,)), None, Gio.DBusCallFlags.NONE, -1).unpack()[0]


def xdotool(*words):
    subprocess.run(["xdotool", *map(str, words)], check=True)


class Program:
    """A program with a window. Its processes end with the test."""

    running = []

    def __init__(self, test, command, **environment):
        self.log_path = os.path.join(HOME, f"log-{time.monotonic_ns()}")
        with open(self.log_path, "wb") as log:
            self.process = subprocess.Popen(command, stdout=log, stderr=log,
                                            env={**os.environ, **environment})
        self.command = command
        Program.running.append(self)
        test.addCleanup(self.close)

    def close(self):
        self.process.kill()
        self.process.wait()
        Program.running.remove(self)

    def log(self):
        with open(self.log_path, errors="replace") as log:
            return f"--- {self.command}\n{log.read()[-4000:]}"

    def accessible(self):
        for child in children(Atspi.get_desktop(0)):
            if child.get_process_id() == self.process.pid:
                return child
        return None

    def find_all(self, role, name):
        """The controls on the screen with this role and a name like this one."""
        root = self.accessible()
        return [each for each in (shown(root) if root else ())
                if each.get_role_name() == role and fnmatchcase(each.get_name(), name)]

    def find(self, role, name):
        return wait_for(f"{role} '{name}'", lambda: self.find_all(role, name))[0]

    def press(self, role, name):
        wait_for(f"{role} '{name}' to be pressed", lambda: any(
            has_state(each, Atspi.StateType.SENSITIVE) and each.do_action(0)
            for each in self.find_all(role, name)[:1]))

    def conversion(self):
        """The ffmpeg that converts: its process id and the words that it was called with."""
        found = subprocess.run(["pgrep", "-P", str(self.process.pid), "-f", " -progress "],
                               stdout=subprocess.PIPE, text=True, check=False).stdout.split()
        if not found:
            return None
        with open(f"/proc/{found[0]}/cmdline", "rb") as file:
            return int(found[0]), file.read().split(b"\0")


def is_stopped(process_id):
    return output_of("ps", "-o", "stat=", "-p", str(process_id)).startswith("T")


def is_gone(process_id):
    return not os.path.exists(f"/proc/{process_id}")


def children(node):
    node.clear_cache()  # nobody reads the events that keep it fresh
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            yield child


def has_state(node, state):
    node.clear_cache()
    return node.get_state_set().contains(state)


def shown(node):
    """All that is on the screen, parents first."""
    for child in children(node):
        if has_state(child, Atspi.StateType.SHOWING):
            yield child
            yield from shown(child)


# What no control should call itself.
ROLES_OF_NOTHING = {"filler", "invalid", "panel", "unknown"}
PRESSED = {"push button", "toggle button", "check box", "radio button", "page tab", "menu item"}


def is_control(node):
    return node.get_role_name() in PRESSED or has_state(node, Atspi.StateType.FOCUSABLE)


def says_what_it_is(node):
    if node.get_role_name() == "combo box":  # its name is what is chosen
        return any(each.get_relation_type() == Atspi.RelationType.LABELLED_BY
                   for each in node.get_relation_set())
    return node.get_name() and node.get_role_name() not in ROLES_OF_NOTHING


def is_tab_stop(node):
    return has_state(node, Atspi.StateType.FOCUSABLE) and has_state(
        node, Atspi.StateType.SENSITIVE) and node.get_role_name() not in ("list item", "menu item")


def key_of(node):
    return node.get_role_name(), node.get_name(), place_of(node)


def focus_of(program):
    return next((key_of(each) for each in shown(program.accessible())
                 if has_state(each, Atspi.StateType.FOCUSED)), None)


def place_of(node):
    node.clear_cache()
    area = node.get_extents(Atspi.CoordType.SCREEN)
    return area.x, area.y, area.width, area.height


def middle_of(node):
    x, y, width, height = place_of(node)
    return x + width // 2, y + height // 2


def window_of(program):
    """The program's main window as the window manager knows it."""
    # The search fails when a window goes while it looks.
    return wait_for("a window", lambda: subprocess.run(
        ["xdotool", "search", "--all", "--onlyvisible", "--pid", str(program.process.pid),
         "--name", "^Reelvane |Thunar$"],
        stdout=subprocess.PIPE, text=True, check=False).stdout.split())[0]


def place_window(program, x, y):
    xdotool("windowmove", window_of(program), x, y)
    frame = program.find("frame", "*")
    wait_for("the window at its place", lambda: abs(place_of(frame)[0] - x) < 10)


def is_active(program):
    return output_of("xprop", "-root", "_NET_ACTIVE_WINDOW").split()[-1] == hex(
        int(window_of(program)))


def activate(program):
    xdotool("windowactivate", window_of(program))
    wait_for("the window active", lambda: is_active(program))
