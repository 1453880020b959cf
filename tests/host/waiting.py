"""Waiting for expected events, and the exceptions raised when they do not occur."""
import time

PATIENCE = 20  # seconds; far more than anything here needs on an idle machine


class Failed(Exception):
    """Something is not as expected."""


class NoWindow(Failed):
    """A window did not appear or did not close. The cause may be the desktop and not the plug-in."""


def until(what, condition, patience=PATIENCE, error=Failed):
    """Waits until the result of `condition` is true and returns the result. Raises `error` when it does not become true
    in time; `what`, a text or a function that returns one, describes the condition."""
    end = time.monotonic() + patience
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise error(f"waited {patience} s in vain: " + (what() if callable(what) else what))
        time.sleep(0.05)


def check(good, problem):
    if not good:
        raise Failed(problem)
