"""The models screen in the window: its rows, what they tell, and their buttons."""

from accessible_window import BUTTON, Atspi, whole
from window_test import WINDOW

TALL = (1200, 1500)  # all rows are in the window, though not on the display


class ModelsScreen:
    """For a WindowTest."""

    def start_on_models(self):
        self.accept_policies()
        return self.start_again_on_models()

    def start_again_on_models(self):
        window = self.start()
        window.expect("Choose File…")
        window.press_row("Models Settings")
        window.expect("Models", [Atspi.Role.LIST])
        self.session.resize(WINDOW, *TALL)
        window.expect("Tiny", [Atspi.Role.LIST_ITEM])
        return window

    @whole
    def words(self, window, model):
        """What the row of a model tells, behind its name."""
        return [node.get_name() for node in self.parts(window, model) if node.get_name()][2:]

    @whole
    def parts(self, window, model):
        """The row of a model and all in it that is shown."""
        return [node for row in window.showing([Atspi.Role.LIST_ITEM]) if row.get_name() == model
                for node in window.nodes(row) if window.is_showing(node)]

    @whole
    def press(self, window, model, button):
        """Presses a button of the row of a model."""
        def find():
            return [node for node in self.parts(window, model)
                    if node.get_role() in BUTTON and node.get_name() == button]
        window.act(window.wait(find, f"“{button}” of “{model}”")[0], "Press")

    def expect_status(self, window, model, status):
        self.eventually(lambda: status in self.words(window, model), f"{model} to be “{status}”")
