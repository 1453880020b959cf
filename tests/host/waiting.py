"""Waiting for what has to happen, and what is raised when it does not."""
import time

PATIENCE = 20  # seconds: far more than anything here needs on a machine with nothing else to do


class Failed(Exception):
    """Something is not as it has to be."""


class NoWindow(Failed):
    """A window did not come up or did not go away: the desktop's doing, perhaps, and not ours."""


def until(what, condition, patience=PATIENCE, error=Failed):
    """Gives what `condition` gives as soon as that counts as true; raises `error` when it never does, with
    `what` (a text, or what gives one then)."""
    end = time.monotonic() + patience
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise error(f"in vain for {patience} s: " + (what() if callable(what) else what))
        time.sleep(0.05)


def check(good, problem):
    if not good:
        raise Failed(problem)
