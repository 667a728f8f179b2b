"""For all that must come in time: a slow machine is no fault."""

import time

PATIENCE = 180.0  # seconds


def comes(condition, patience=PATIENCE):
    """Whether the condition comes to hold."""
    end = time.monotonic() + patience
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.05)
    return True
