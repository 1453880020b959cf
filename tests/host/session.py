#!/usr/bin/env python3
"""session.py BUILD [STAGE...]: tests the plug-in in the folder BUILD in Double Commander with the simulated handset.
Runs all stages, or the named ones. Prints a line for each stage; exit status 0 when all have passed.

BUILD/host keeps the screenshots and the output of the programs."""
import os
import shutil
import signal
import sys
import tempfile
import time

import content
import trees
from children import Children
from commander import Commander
from desktop import Desktop
from phone import Phone
from stage import Stage
from stages import STAGES
from waiting import Failed, NoWindow, check

LIMIT = 480  # seconds for the whole session


class Interrupted(BaseException):
    """The time is up, or a signal asks the session to end."""


def interrupt(number, _):
    raise Interrupted(f"more than {LIMIT} s" if number == signal.SIGALRM else signal.Signals(number).name)


class World:
    """The phone, a folder on the computer and the file manager in their initial state."""

    def __init__(self, desktop, build, folder, logs):
        self.children = Children(logs)
        self.computer = os.path.join(folder, "computer")
        phone = os.path.join(folder, "phone")
        trees.make(os.path.join(phone, "content"), content.ON_PHONE)
        trees.make(self.computer, content.ON_COMPUTER)
        try:
            self.phone = Phone(self.children, os.path.join(build, "simulated-handset"), phone)
            self.commander = Commander(self.children, desktop, folder, os.path.join(build, "quillet.wfx"),
                                       self.computer, self.phone.device_root)
        except BaseException:
            self.close()
            raise

    def close(self):
        self.children.stop_all()


class Session:
    """`keep` is the folder for files that remain after the session, `folder` is for temporary ones."""

    def __init__(self, build, keep, folder):
        self.build = build
        self.folder = folder
        self.logs = os.path.join(keep, "logs")
        os.makedirs(self.logs)
        self.failed = 0
        self.world = None
        self.children = Children(self.logs)
        self.desktop = Desktop(self.children, os.path.join(keep, "photos"))

    def close(self):
        self.forget_world()
        self.children.stop_all()

    def forget_world(self):
        if self.world:
            self.world.close()
        self.world = None

    def attempt(self, label, work):
        """Runs a stage. Raises Failed if it fails, and discards the world then."""
        try:
            if not self.world:
                self.world = World(self.desktop, self.build, tempfile.mkdtemp(dir=self.folder), self.logs)
            stage = Stage(label, self.desktop, self.world)
            work(stage)
            stage.photograph()
            check(not stage.commander.has_ended(), "the stage had been completed")
        except Failed as reason:
            self.desktop.photograph(label + "-failed")
            ended = self.world and self.world.commander.has_ended()
            self.forget_world()
            raise Failed(f"Double Commander ended unexpectedly; {reason}") if ended else reason

    def do(self, number, work):
        name = work.__name__.replace("_", " ")
        label = f"{number:02}-{name.replace(' ', '-')}"
        begin = time.monotonic()
        outcome = "passed"
        try:
            try:
                self.attempt(label, work)
            except NoWindow as reason:
                print(f"   {name}: repeated because of a window: {reason}", flush=True)
                self.attempt(label, work)
                outcome = "passed at the second attempt"
        except Failed as reason:
            self.failed += 1
            outcome = f"FAILED: {reason}"
        print(f"-- {number:2} {name}: {outcome} ({time.monotonic() - begin:.1f} s)", flush=True)


def run(build, names):
    keep = os.path.join(build, "host")
    shutil.rmtree(keep, ignore_errors=True)
    begin = time.monotonic()
    session = None
    with tempfile.TemporaryDirectory(prefix="quillet-host-", ignore_cleanup_errors=True) as folder:
        try:
            session = Session(build, keep, folder)
            for number, work in enumerate(STAGES, 1):
                if not names or work.__name__ in names:
                    session.do(number, work)
            problem = f"{session.failed} stages failed" if session.failed else ""
        except Failed as reason:
            problem = str(reason)
        except Interrupted as reason:
            problem = f"aborted: {reason}"
            if session:
                session.desktop.photograph("broken-off")
        finally:
            signal.alarm(0)
            if session:
                session.close()
    print(f"== Double Commander: {problem or 'passed'}, {time.monotonic() - begin:.0f} s", flush=True)
    return 1 if problem else 0


def main():
    for number in (signal.SIGALRM, signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, interrupt)
    signal.alarm(LIMIT)
    sys.dont_write_bytecode = True
    sys.exit(run(os.path.abspath(sys.argv[1]), sys.argv[2:]))


main()
