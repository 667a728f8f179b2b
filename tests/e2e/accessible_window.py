"""Drives a window as a person with a screen reader would: by the roles and names that it tells, and by the actions
that it offers."""

import copy
import functools
import re
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from waiting import PATIENCE  # noqa: E402

TEXT = (Atspi.Role.LABEL, Atspi.Role.STATIC, Atspi.Role.TEXT, Atspi.Role.HEADING, Atspi.Role.ALERT)
BUTTON = (Atspi.Role.PUSH_BUTTON, Atspi.Role.BUTTON_MENU) if hasattr(Atspi.Role, "BUTTON_MENU") else (
    Atspi.Role.PUSH_BUTTON,)
APPLICATION_GONE = 0  # a code of AtspiError

Atspi.set_timeout(60_000, 60_000)  # milliseconds: a busy machine answers late


class NotFound(AssertionError):
    pass


def whole(reading, patience=10.0):
    """Makes a reading of several parts anew when one of them goes meanwhile, as the rows of a growing list do."""
    @functools.wraps(reading)
    def read(*arguments, **options):
        end = time.monotonic() + patience
        while True:
            try:
                return reading(*arguments, **options)
            except GLib.Error as error:
                if error.code == APPLICATION_GONE or time.monotonic() > end:
                    raise
    return read


class AccessibleWindow:
    """The tree of one application. Every look-up is made anew, since a tree changes under one's hands."""

    def __init__(self, process, patience=PATIENCE):
        self._process = process
        self._patience = patience
        self._application = self.wait(self._find_application, "the application in the accessibility tree")

    def wait(self, condition, what, patience=None):
        """The first true value that `condition` gives."""
        end = time.monotonic() + (patience or self._patience)
        while time.monotonic() < end:
            try:
                value = condition()
            except GLib.Error:
                value = None  # what was looked at has just gone
            if value:
                return value
            if self._process.poll() is not None:
                raise NotFound(f"the application ended with {self._process.returncode} while waiting for {what}")
            time.sleep(0.05)
        raise NotFound(f"waited in vain for {what}; there is: {self.summary()}")

    def inside(self, title):
        """The same, limited to the application's window with that title, once it is there."""
        limited = copy.copy(self)
        limited._application = self.expect(title, [Atspi.Role.FRAME, Atspi.Role.WINDOW, Atspi.Role.DIALOG])
        return limited

    def nodes(self, root=None):
        """All parts of the tree, or of the part below `root`, in reading order."""
        pending = [root or self._application]
        while pending:
            node = pending.pop(0)
            if node is None:
                continue  # it has gone since its parent told how many it has
            yield node
            pending = [node.get_child_at_index(i) for i in range(node.get_child_count())] + pending

    @whole
    def find(self, name, roles=None):
        """The first showing part with that name (a text, or a test of one), or None."""
        for node in self.nodes():
            if roles and node.get_role() not in roles:
                continue
            text = node.get_name()
            if (name(text) if callable(name) else text == name) and self.is_showing(node):
                return node
        return None

    def expect(self, name, roles=None, patience=None):
        return self.wait(lambda: self.find(name, roles), f"“{name}”", patience)

    def expect_clock(self, before, seconds):
        """Waits for a text that tells, behind these words, so many seconds or more."""
        def tells(name):
            clock = re.fullmatch(re.escape(before) + r"(\d+):(\d\d)", name)
            return clock is not None and 60 * int(clock[1]) + int(clock[2]) >= seconds
        return self.expect(tells)

    def expect_gone(self, name, roles=None, patience=None):
        self.wait(lambda: self.find(name, roles) is None, f"the end of “{name}”", patience)

    @whole
    def press(self, name, roles=BUTTON, patience=None):
        """Presses a control by its action, once it is there and enabled."""
        def enabled():
            node = self.find(name, roles)
            return node if node and self.has_state(node, Atspi.StateType.ENABLED) else None
        self.act(self.wait(enabled, f"an enabled “{name}”", patience), "Press")

    def press_row(self, name):
        """Presses a row of a list."""
        self.press(name, [Atspi.Role.LIST_ITEM])

    def act(self, node, action):
        names = self.actions(node)
        if action not in names:
            raise NotFound(f"“{node.get_name()}” offers {names}, not {action}")
        node.do_action(names.index(action))

    @staticmethod
    def actions(node):
        return [node.get_action_name(i) for i in range(node.get_n_actions())]

    def choose(self, picker, item):
        """Picks a row of a picker."""
        self.press(picker, [Atspi.Role.COMBO_BOX])
        self.press(item, roles=[Atspi.Role.LIST_ITEM, Atspi.Role.MENU_ITEM])

    def picker_items(self, picker):
        """What a picker offers."""
        others = len(self.names([Atspi.Role.LIST_ITEM]))
        self.press(picker, [Atspi.Role.COMBO_BOX])
        items = self.wait(lambda: self.names([Atspi.Role.LIST_ITEM])[others:], f"the choices of “{picker}”")
        self.press(picker, [Atspi.Role.COMBO_BOX])
        self.wait(lambda: len(self.names([Atspi.Role.LIST_ITEM])) == others, f"the end of “{picker}”")
        return items

    def choose_file(self, path):
        """Answers the open panel."""
        self._answer_panel(path, "Open")

    def save_file(self, path):
        """Answers the save panel. @return the name that it proposed"""
        return self._answer_panel(path, "Save")

    def _answer_panel(self, path, button):
        field = self.expect(self.is_file_name, [Atspi.Role.TEXT])
        proposed = Atspi.Text.get_text(field, 0, -1)
        field.set_text_contents(str(path))
        self.press(button, roles=[Atspi.Role.PUSH_BUTTON])
        self.expect_gone(self.is_file_name, [Atspi.Role.TEXT])
        return proposed

    @staticmethod
    def is_file_name(name):
        return name.startswith("File name")

    @whole
    def menu_items(self, name=None):
        """The items of all open menus, or those with that name; those of a submenu come last."""
        return [node for node in self.showing([Atspi.Role.MENU_ITEM]) if name in (None, node.get_name())]

    @staticmethod
    def has_state(node, state):
        return node.get_state_set().contains(state)

    def is_showing(self, node):
        return self.has_state(node, Atspi.StateType.SHOWING) or node.get_role() == Atspi.Role.APPLICATION

    def texts(self, prefix=""):
        """The names of all showing texts that begin so."""
        return [name for name in self.names(TEXT) if name.startswith(prefix)]

    @whole
    def focused_part(self):
        """The part that has the keyboard, or None."""
        for node in self.nodes():
            if self.has_state(node, Atspi.StateType.FOCUSED) and self.is_showing(node) and node.get_name():
                return node
        return None

    @whole
    def focused(self):
        """The name of the part that has the keyboard, or None."""
        part = self.focused_part()
        return part and part.get_name()

    @whole
    def place(self, name, roles=None):
        """Where a part stands, as (x, y, width, height)."""
        return self.place_of(self.expect(name, roles))

    @staticmethod
    def place_of(node):
        area = node.get_extents(Atspi.CoordType.SCREEN)
        return area.x, area.y, area.width, area.height

    @whole
    def shown_choice(self, picker):
        """What a picker tells as its choice."""
        return self.expect(picker, [Atspi.Role.COMBO_BOX]).get_description()

    @whole
    def showing(self, roles):
        """All showing parts with one of these roles."""
        return [node for node in self.nodes() if node.get_role() in roles and self.is_showing(node)]

    @whole
    def names(self, roles):
        """The names of all showing parts with one of these roles."""
        return [node.get_name() for node in self.showing(roles)]

    @whole
    def rows(self, name):
        """The texts of the list of that name; none if it is not there."""
        rows = self.find(name, [Atspi.Role.LIST])
        return [node.get_name() for node in self.nodes(rows) if node.get_role() in TEXT] if rows else []

    def transcript(self):
        """The rows of the transcript that are in sight."""
        return self.rows("Transcript")

    @whole
    def summary(self):
        return "; ".join(f"{node.get_role_name()} “{node.get_name()[:60]}”" for node in self.nodes()
                         if node.get_name() and self.is_showing(node))

    def _find_application(self):
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            node = desktop.get_child_at_index(i)
            if node and node.get_process_id() == self._process.pid and node.get_child_count() > 0:
                return node
        return None
