"""Programs that run during the session. All of them end with it, however it ends."""
import os
import signal
import subprocess


class Children:
    def __init__(self, log_folder):
        self.log_folder = log_folder
        self.running = []

    def start(self, words, environment=None, **options):
        """Starts a program in a process group of its own. Its output goes into the log folder, unless `options` (of
        subprocess.Popen) say otherwise."""
        log = os.path.join(self.log_folder, os.path.basename(words[0]) + ".log")
        with open(log, "ab") as file:
            options.setdefault("stdout", file)
            # The child is killed if this process is killed.
            child = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", *words], stdin=subprocess.DEVNULL,
                                     stderr=file, start_new_session=True,
                                     env={**os.environ, **(environment or {})}, **options)
        self.running.append(child)
        return child

    def stop(self, child):
        """Ends a program and everything that it started."""
        self.running.remove(child)
        for end in (signal.SIGTERM, signal.SIGKILL):
            try:
                os.killpg(child.pid, end)
                child.wait(timeout=5)
            except ProcessLookupError:
                break
            except subprocess.TimeoutExpired:
                continue
        child.wait()
        if child.stdout:
            child.stdout.close()

    def stop_all(self):
        for child in reversed(list(self.running)):
            self.stop(child)
