#!/usr/bin/python3
"""The agreement, before it was given and after."""

from accessible_window import Atspi
from window_test import WindowTest, main

AGREE = "I Agree and Continue"


class AgreementTest(WindowTest):
    def assert_nothing_is_stored(self):
        self.assertFalse(self.store_folder().exists(), "no folder for the history")
        self.assertFalse((self.session.data / "Sorvanta").exists(), "no folder for models")

    def test_a_first_start_shows_only_the_agreement_and_makes_no_folder(self):
        window = self.start()
        window.expect(AGREE)
        self.assertEqual(window.texts(), [
            "Welcome to Sorvanta",
            "To continue, please review and accept the Terms of Service and Privacy Policy.",
            "Your data stays on your device. We still need your agreement before enabling the app.",
        ])
        self.assertEqual(window.names([Atspi.Role.PUSH_BUTTON]), ["Quit", AGREE])
        self.assertEqual(window.names([Atspi.Role.LINK]), ["Read the Privacy Policy", "Read the Terms of Service"])
        self.assertEqual(window.names([Atspi.Role.LIST, Atspi.Role.LIST_ITEM, Atspi.Role.COMBO_BOX]), [])
        self.assert_nothing_is_stored()

    def test_quit_ends_the_program_and_stores_nothing(self):
        window = self.start()
        window.press("Quit")
        self.assertEqual(self.exit_code(), 0)
        self.assert_nothing_is_stored()
        self.start().expect(AGREE)

    def test_agreeing_shows_the_frame_at_once_and_is_not_asked_for_again(self):
        window = self.start()
        window.press(AGREE)
        window.expect("Choose File…")
        self.assertIsNone(window.find(AGREE))
        self.assertEqual(window.names([Atspi.Role.LIST_ITEM]), [
            "Transcript Audio From File", "Record Audio to Transcript", "Record Meeting (System Audio)",
            "Batch Processing", "History", "Models Settings", "Help",
        ])
        self.assertTrue(self.store_folder().is_dir())
        window.press_row("Help")
        window.expect("Key links")
        self.program.terminate()
        self.exit_code()

        window = self.start()
        window.expect("Choose File…")
        self.assertIsNone(window.find(AGREE))
        self.assertIsNone(window.find("Key links"), "it starts on the file screen")

    def test_the_links_hand_their_addresses_to_the_browser(self):
        window = self.start()
        before = self.session.opened_addresses()
        for link in ("Read the Privacy Policy", "Read the Terms of Service"):
            count = len(self.session.opened_addresses())
            window.press(link, [Atspi.Role.LINK])
            self.eventually(lambda: len(self.session.opened_addresses()) > count, f"the address of “{link}”")
        self.assertEqual(self.session.opened_addresses()[len(before):], [
            "https://www.sorvanta.invalid/sorvanta-mac-os-app-privacy-policy/",
            "https://www.sorvanta.invalid/sorvanta-mac-os-app-terms-of-service/",
        ])
        window.expect(AGREE)
        self.assert_nothing_is_stored()


if __name__ == "__main__":
    main()
