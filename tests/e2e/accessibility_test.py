#!/usr/bin/python3
"""What the window tells assistive technology: each control has a role, a name and, where it acts, an action."""

from accessible_window import Atspi, whole
from window_test import FIRST_LINES, WindowTest, main

Role = Atspi.Role
ACTING = (Role.PUSH_BUTTON, Role.LINK, Role.COMBO_BOX, Role.LIST_ITEM, Role.CHECK_BOX, Role.MENU_ITEM)
NAMELESS = (Role.FILLER, Role.PANEL, Role.SEPARATOR)
SECTIONS = [(Role.LIST, "Sections")] + [(Role.LIST_ITEM, name) for name in (
    "Transcript Audio From File", "Record Audio to Transcript", "Record Meeting (System Audio)", "Batch Processing",
    "History", "Models Settings", "Help")]
FORM = [(Role.PUSH_BUTTON, "Choose File…"), (Role.COMBO_BOX, "Model"), (Role.COMBO_BOX, "Language")]
TRANSCRIBE = [(Role.PUSH_BUTTON, "Transcribe")]
TRANSCRIPT = [
    (Role.PUSH_BUTTON, "Previous match"), (Role.PUSH_BUTTON, "Next match"), (Role.LIST, "Transcript"),
    (Role.PUSH_BUTTON, "Open Full View"), (Role.CHECK_BOX, "Strip “- ”"), (Role.PUSH_BUTTON, "Show Logs"),
    (Role.PUSH_BUTTON, "Export"), (Role.PUSH_BUTTON, "Copy Output"), (Role.PUSH_BUTTON, "Clear Output")]
EXPORTS = [(Role.MENU_ITEM, name) for name in (
    "TXT", "SRT", "VTT", "CSV", "DOCX", "PDF", "Markdown (.md)", "HTML", "JSON", "Download to Downloads")]


def acts(window, node):
    """A row of a list acts, unless it only holds together what acts."""
    return node.get_role() in ACTING and not (node.get_role() == Role.LIST_ITEM and has_button(window, node))


def has_button(window, node):
    return any(part.get_role() == Role.PUSH_BUTTON for part in window.nodes(node))


class AccessibilityTest(WindowTest):
    @whole
    def offenders(self, window):
        """The parts in sight that somebody who does not see them could not use."""
        found = []
        for node in window.nodes():
            role, name = node.get_role(), node.get_name()
            if not window.is_showing(node) or role in (Role.APPLICATION, *NAMELESS):
                continue
            if role in (Role.UNKNOWN, Role.INVALID):
                found.append(f"“{name}” has no role")
            if not name:
                found.append(f"a {node.get_role_name()} has no name")
            if acts(window, node) and "Press" not in window.actions(node):
                found.append(f"the {node.get_role_name()} “{name}” cannot be pressed")
            if acts(window, node) and not window.has_state(node, Atspi.StateType.FOCUSABLE):
                found.append(f"the {node.get_role_name()} “{name}” cannot get the focus")
        return found

    def check(self, window, controls):
        """No offenders, and exactly these controls, in this order."""
        self.assertEqual(self.offenders(window), [])
        self.assertEqual(self.controls(window), controls)

    @whole
    def controls(self, window):
        roles = (*ACTING, Role.LIST, Role.PROGRESS_BAR)
        return [(node.get_role(), node.get_name()) for node in window.showing(roles)]

    def test_the_agreement(self):
        window = self.start()
        window.expect("Quit")
        self.check(window, [(Role.LINK, "Read the Privacy Policy"), (Role.LINK, "Read the Terms of Service"),
                            (Role.PUSH_BUTTON, "Quit"), (Role.PUSH_BUTTON, "I Agree and Continue")])

    def test_the_file_screen_before_a_run(self):
        window = self.start_on_file_screen()
        self.check(window, SECTIONS + FORM + TRANSCRIBE)
        self.assertEqual(window.shown_choice("Model"), "Tiny")
        self.assertEqual(window.shown_choice("Language"), "Auto-detect (auto)")
        self.assertEqual(window.names([Role.HEADING])[1:], ["Transcript Audio From File", "Audio File"])

    def test_the_file_screen_without_a_model(self):
        self.accept_policies()
        window = self.start()
        window.expect("Choose File…")
        self.check(window, SECTIONS + [FORM[0], FORM[2]] + TRANSCRIBE)

    def test_the_file_screen_during_and_after_a_run(self):
        window = self.start_on_file_screen(32)
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect(FIRST_LINES[0])
        self.check(window, SECTIONS + FORM + [
            (Role.PUSH_BUTTON, "Transcribing…"), (Role.PROGRESS_BAR, "Progress"), (Role.PUSH_BUTTON, "Stop"),
            *TRANSCRIPT])
        window.expect("Done")
        self.check(window, SECTIONS + FORM + TRANSCRIBE + TRANSCRIPT)
        window.press("Export")
        window.wait(lambda: len(window.menu_items()) == len(EXPORTS), "the menu")
        self.check(window, SECTIONS + FORM + TRANSCRIBE + TRANSCRIPT + EXPORTS)

    def test_the_file_screen_with_an_error(self):
        self.accept_policies()
        self.models_folder().mkdir(parents=True)
        (self.models_folder() / "ggml-tiny.bin").write_text("This is no model.\n")
        window = self.start()
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect("Copy Error")
        self.check(window, SECTIONS + FORM + TRANSCRIBE + [(Role.PUSH_BUTTON, "Copy Error")])
        self.assertEqual(len(window.names([Role.ALERT])), 1, "the error is an alert")

    def test_the_choices_of_a_picker(self):
        window = self.start_on_file_screen()
        window.press("Language", [Role.COMBO_BOX])
        window.expect("Afrikaans (af)")
        self.assertEqual(self.offenders(window), [])

    def test_the_microphone_section(self):
        window = self.start_on_file_screen()
        window.press_row("Record Audio to Transcript")
        window.expect("Not recording")
        self.check(window, SECTIONS + [
            (Role.PUSH_BUTTON, "Record"), (Role.PROGRESS_BAR, "Level"), (Role.PUSH_BUTTON, "Play Recording"),
            (Role.PUSH_BUTTON, "Save Audio"), *FORM[1:], *TRANSCRIBE])
        self.assertEqual(window.names([Role.HEADING])[1:], ["Record From Microphone", "Microphone", "No recording yet"])

    def test_the_models_section(self):
        self.provide_model(name="ggml-large-v3-turbo.bin")
        self.accept_policies()
        window = self.start()
        window.expect("Choose File…")
        window.press_row("Models Settings")
        window.expect("Saved as ggml-large-v3-turbo.bin in Application Support.")
        self.check(window, SECTIONS + [
            (Role.LIST, "Models"),
            (Role.LIST_ITEM, "Large V3 Turbo"), (Role.PUSH_BUTTON, "Reveal in Finder"),
            (Role.PUSH_BUTTON, "Delete Local Copy"),
            (Role.LIST_ITEM, "Large V3"), (Role.PUSH_BUTTON, "Download Model"),
            (Role.LIST_ITEM, "Medium"), (Role.PUSH_BUTTON, "Download Model"),
            (Role.LIST_ITEM, "Base")])  # and more below the edge of the window
        self.assertEqual(window.names([Role.HEADING])[1:], ["Models", "Large V3 Turbo", "Large V3", "Medium", "Base"])
        self.assertEqual([node.get_description() for node in window.showing([Role.PUSH_BUTTON])],
                         ["Large V3 Turbo", "Large V3 Turbo", "Large V3", "Medium"])

    def test_the_history_section(self):
        window = self.start_on_file_screen()
        self.transcribe(window, self.media.speech("talk.wav", 100))
        window.expect("Done")
        window.press_row("History")
        window.expect("Open Full View")
        self.check(window, SECTIONS + [
            (Role.PUSH_BUTTON, "Reload"), (Role.LIST, "Transcriptions"), (Role.LIST_ITEM, "talk.wav"),
            (Role.PUSH_BUTTON, "Export"), (Role.PUSH_BUTTON, "Open Full View"), (Role.PUSH_BUTTON, "Delete"),
            (Role.LIST, "Transcript")])
        self.assertEqual(window.names([Role.HEADING])[1:], ["History", "talk.wav"])
        window.press("Delete")
        window.expect("Delete this history entry?")
        window.wait(lambda: len(window.names([Role.PUSH_BUTTON])) == 6, "the buttons of the dialog")
        self.assertEqual(self.offenders(window), [])
        self.assertEqual(window.names([Role.PUSH_BUTTON])[-2:], ["Cancel", "Delete"])

    def test_the_help_section_with_its_text_and_its_links(self):
        window = self.start_on_file_screen()
        window.press_row("Help")
        window.expect("Key links")
        links = ["Terms of Service", "Privacy Policy"]
        self.check(window, SECTIONS + [(Role.LINK, name) for name in links])
        self.assertEqual(window.texts()[-4:], [
            "Help",
            "If you run into any issues, please email me at support@sorvanta.invalid and include as many details as you "
            "can (what you did, what happened, screenshots if possible). That helps me fix the problem faster and "
            "support you better.",
            "For model issues, include which model and language you used.",
            "Key links",
        ])
        before = len(self.session.opened_addresses())
        for count, link in enumerate(links, before + 1):
            window.press(link, [Role.LINK])
            self.eventually(lambda: len(self.session.opened_addresses()) == count, f"the address of “{link}”")
        self.assertEqual(self.session.opened_addresses()[before:], [
            "https://www.sorvanta.invalid/sorvanta-mac-os-app-terms-of-service/",
            "https://www.sorvanta.invalid/sorvanta-mac-os-app-privacy-policy/",
        ])


if __name__ == "__main__":
    main()
