"""What the desktop wishes for its windows, told by a stand-in for its settings portal."""

import pathlib
import subprocess
import sys

from waiting import PATIENCE


class DesktopWish:
    """For a WindowTest."""

    portal = None

    def tearDown(self):
        if self.portal:
            self.portal.stdin.close()
            self.portal.wait(timeout=PATIENCE)
            self.portal.stdout.close()
        super().tearDown()

    def wish(self, scheme):
        """Tells the desktop's wish: 0 none, 1 dark, 2 light."""
        if not self.portal:
            script = pathlib.Path(__file__).with_name("settings_portal.py")
            self.portal = self.session.start([sys.executable, script, str(scheme)], stdin=subprocess.PIPE,
                                             stdout=subprocess.PIPE, text=True)
            self.assertEqual(self.portal.stdout.readline(), "ready\n")
            return
        self.portal.stdin.write(f"{scheme}\n")
        self.portal.stdin.flush()
