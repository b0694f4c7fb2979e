"""A person at the screen: sees what a screen reader reads, types and clicks through the X server."""
import pathlib
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 90  # seconds: with sanitizers beside other work a window takes its time
BETWEEN_LOOKS = 0.02


def xdotool(*arguments):
    return subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True, check=False).stdout


def wait_until(look, what):
    """The first true answer of look(); objects that vanish meanwhile count as no answer."""
    end = time.monotonic() + PATIENCE
    while True:
        try:
            answer = look()
        except GLib.Error:
            answer = None
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(BETWEEN_LOOKS)


def place_of(identifier):
    """Left, top, width and height of a window of the X server."""
    lines = xdotool("getwindowgeometry", "--shell", identifier).splitlines()
    shell = dict(line.split("=", 1) for line in lines if "=" in line)
    return tuple(int(shell.get(key, -1)) for key in ("X", "Y", "WIDTH", "HEIGHT"))


def children(accessible):
    found = (accessible.get_child_at_index(index) for index in range(accessible.get_child_count()))
    return [child for child in found if child is not None]


def descendants(accessible, entries=False):
    """All that is inside; the entries of trees of files, which are many, and come and go, only if they are wanted."""
    for child in children(accessible):
        yield child
        if entries or role_of(child) not in ("tree", "tree table"):
            yield from descendants(child, entries)


def role_of(accessible):
    """Its name; versions of the accessibility library differ in that of a button."""
    name = accessible.get_role_name()
    return "push button" if name == "button" else name


def has_state(accessible, state):
    return accessible.get_state_set().contains(state)


def text_of(accessible):
    return Atspi.Text.get_text(accessible, 0, -1)


def extents(accessible):
    area = Atspi.Component.get_extents(accessible, Atspi.CoordType.SCREEN)
    return area.x, area.y, area.width, area.height


def labels_of(accessible):
    """The names of what labels it."""
    return [relation.get_target(index).get_name() for relation in accessible.get_relation_set()
            if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
            for index in range(relation.get_n_targets())]


class Dialog:
    """One run of `halvane dialog`."""

    def __init__(self, program, *arguments, environment=None, folder=None):
        Atspi.init()
        desktop = Atspi.get_desktop(0)
        desktop.set_cache_mask(Atspi.Cache.NONE)
        self.process = subprocess.Popen([program, "dialog", *map(str, arguments)], env=environment, cwd=folder)
        try:
            self.application = wait_until(lambda: next(
                (a for a in children(desktop) if a.get_process_id() == self.process.pid), None), "the program")
            self.form = self.window("Export to XML")
            self.focus(self.form)
        except BaseException:
            self.close()
            raise

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    # ---- Looking

    def window(self, title):
        return wait_until(lambda: next((w for w in children(self.application) if w.get_name() == title
                                        and has_state(w, Atspi.StateType.SHOWING)), None), f'the window "{title}"')

    def pixels(self):
        """Width and height of the form on the screen, which a screen reader is told without the scale."""
        shown = xdotool("search", "--onlyvisible", "--pid", self.process.pid).split()
        return max(place_of(identifier)[2:] for identifier in shown)

    def find(self, role, name, inside=None, showing=True):
        """Nothing when there is none, or when objects vanish while it looks."""
        try:
            return next((a for a in descendants(inside or self.form) if role_of(a) == role and a.get_name() == name
                         and (not showing or has_state(a, Atspi.StateType.SHOWING))), None)
        except GLib.Error:
            return None

    def box(self, name):
        return wait_until(lambda: self.find("text", name), f'the box "{name}"')

    def content(self, name):
        return text_of(self.box(name))

    def focused(self, inside=None):
        return next((a.get_name() for a in descendants(inside or self.form)
                     if has_state(a, Atspi.StateType.FOCUSED)), None)

    def outcome(self):
        """The lines of the strip."""
        return wait_until(lambda: self.find("text", "Outcome of the export"), "the outcome") and \
            self.content("Outcome of the export").split("\n")

    def wait_for_outcome(self, part):
        wait_until(lambda: any(part in line for line in self.outcome()), f'the outcome "{part}"')
        return self.outcome()

    def message(self, text):
        """The message box with that text, focused."""
        def look():
            return next((w for w in children(self.application) if role_of(w) != "filler"
                         and any(role_of(a) == "label" and a.get_name() == text for a in descendants(w))), None)
        box = wait_until(look, f'the message "{text}"')
        self.focus(box)
        return box

    # ---- Acting

    def focus(self, window):
        """Without a window manager nobody hands the keyboard on: it goes to the window at that place."""
        def take():
            place = extents(window)
            shown = xdotool("search", "--onlyvisible", "--pid", self.process.pid).split()
            for identifier in shown:
                if len(shown) == 1 or place_of(identifier) == place:
                    xdotool("windowfocus", identifier)
                    return has_state(window, Atspi.StateType.ACTIVE)
            return False
        wait_until(take, f'the keyboard for "{window.get_name()}"')

    def key(self, *keys):
        xdotool("key", *keys)

    def click(self, accessible, *then):
        x, y, width, height = extents(accessible)
        xdotool("mousemove", x + width // 2, y + height // 2, "click", "--delay", 1, 1, *then)

    def press(self, name, inside=None):
        self.click(wait_until(lambda: self.find("push button", name, inside), f'the button "{name}"'))

    def fill(self, name, text, inside=None):
        """Goes to the box by a click, types, and sees what it typed."""
        box = wait_until(lambda: self.find("text", name, inside), f'the box "{name}"')
        typing = ("type", "--delay", 1, text) if text else ()
        self.click(box, "key", "--delay", 1, "ctrl+a", "Delete", *typing)
        wait_until(lambda: text_of(box) == text and has_state(box, Atspi.StateType.FOCUSED), f'"{text}" in the box "{name}"')

    def dismiss(self, text):
        """Reads a message box and presses Enter."""
        box = self.message(text)
        buttons = [a.get_name() for a in descendants(box) if role_of(a) == "push button"]
        self.key("Return")
        wait_until(lambda: all(not any(a.get_name() == text for a in descendants(w))
                               for w in children(self.application)), "the end of the message")
        self.focus(self.form)
        return buttons

    def exit_code(self):
        wait_until(lambda: self.process.poll() is not None, "the end of the program")
        return self.process.returncode

    def picture(self, path):
        """What is on the screen, for a person to look at."""
        subprocess.run(["import", "-window", "root", str(pathlib.Path(path))], check=True)
