"""Drives a window as a person with a screen reader would: by the roles and names that it tells, and by the actions
that it offers."""

import copy
import re
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

TEXT = (Atspi.Role.LABEL, Atspi.Role.STATIC, Atspi.Role.TEXT, Atspi.Role.HEADING, Atspi.Role.ALERT)
BUTTON = (Atspi.Role.PUSH_BUTTON, Atspi.Role.BUTTON_MENU) if hasattr(Atspi.Role, "BUTTON_MENU") else (
    Atspi.Role.PUSH_BUTTON,)


class NotFound(AssertionError):
    pass


class AccessibleWindow:
    """The tree of one application. Every look-up is made anew, since a tree changes under one's hands."""

    def __init__(self, process, patience=20.0):
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

    def comes(self, condition, patience):
        """Whether the condition comes to hold."""
        try:
            self.wait(condition, "what may not come", patience)
        except NotFound:
            return False
        return True

    def inside(self, title):
        """The same, limited to the application's window with that title, once it is there."""
        limited = copy.copy(self)
        limited._application = self.expect(title, [Atspi.Role.FRAME, Atspi.Role.WINDOW, Atspi.Role.DIALOG])
        return limited

    def nodes(self):
        """All showing parts of the tree, in reading order."""
        pending = [self._application]
        while pending:
            node = pending.pop(0)
            if node is None:
                continue
            yield node
            try:
                pending = [node.get_child_at_index(i) for i in range(node.get_child_count())] + pending
            except GLib.Error:
                continue

    def find(self, name, roles=None):
        """The first showing part with that name (a text, or a test of one), or None."""
        for node in self.nodes():
            try:
                if roles and node.get_role() not in roles:
                    continue
                text = node.get_name()
                if (name(text) if callable(name) else text == name) and self.is_showing(node):
                    return node
            except GLib.Error:
                continue
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

    def press(self, name, roles=BUTTON, patience=None):
        """Presses a control by its action, once it is there and enabled."""
        def enabled():
            node = self.find(name, roles)
            return node if node and self.has_state(node, Atspi.StateType.ENABLED) else None
        node = self.wait(enabled, f"an enabled “{name}”", patience)
        self.act(node, "Press")
        return node

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
        self.act(self.expect(picker, [Atspi.Role.COMBO_BOX]), "Press")
        self.press(item, roles=[Atspi.Role.LIST_ITEM, Atspi.Role.MENU_ITEM])

    def picker_items(self, picker):
        """What a picker offers."""
        node = self.expect(picker, [Atspi.Role.COMBO_BOX])
        others = len(self.names([Atspi.Role.LIST_ITEM]))
        self.act(node, "Press")
        items = self.wait(lambda: self.names([Atspi.Role.LIST_ITEM])[others:], f"the choices of “{picker}”")
        self.act(node, "Press")
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
        self.wait(lambda: self.find(self.is_file_name, [Atspi.Role.TEXT]) is None, "the end of the panel")
        return proposed

    @staticmethod
    def is_file_name(name):
        return name.startswith("File name")

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

    def focused(self):
        """The name of the part that has the keyboard, or None."""
        for node in self.nodes():
            try:
                if self.has_state(node, Atspi.StateType.FOCUSED) and self.is_showing(node) and node.get_name():
                    return node.get_name()
            except GLib.Error:
                continue
        return None

    def place(self, name):
        """Where a part stands, as (x, y, width, height)."""
        area = self.expect(name).get_extents(Atspi.CoordType.SCREEN)
        return area.x, area.y, area.width, area.height

    def shown_choice(self, picker):
        """What a picker tells as its choice."""
        return self.expect(picker, [Atspi.Role.COMBO_BOX]).get_description()

    def showing(self, roles):
        """All showing parts with one of these roles."""
        found = []
        for node in self.nodes():
            try:
                if node.get_role() in roles and self.is_showing(node):
                    found.append(node)
            except GLib.Error:
                continue
        return found

    def names(self, roles):
        """The names of all showing parts with one of these roles."""
        return [node.get_name() for node in self.showing(roles)]

    def transcript(self):
        """The rows of the transcript that are in sight."""
        rows = self.find("Transcript", [Atspi.Role.LIST])
        if not rows:
            return []
        found = []
        pending = [rows]
        while pending:
            node = pending.pop(0)
            pending = [node.get_child_at_index(i) for i in range(node.get_child_count())] + pending
            if node.get_role() in TEXT:
                found.append(node.get_name())
        return found

    def summary(self):
        lines = []
        for node in self.nodes():
            try:
                if node.get_name() and self.is_showing(node):
                    lines.append(f"{node.get_role_name()} “{node.get_name()[:60]}”")
            except GLib.Error:
                continue
        return "; ".join(lines)

    def _find_application(self):
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            node = desktop.get_child_at_index(i)
            if node and node.get_process_id() == self._process.pid and node.get_child_count() > 0:
                return node
        return None
