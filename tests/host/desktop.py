"""A private X screen with a window manager, and access to it as a person has: keys, clipboard, windows, screenshots."""
import os
import re
import subprocess

from waiting import PATIENCE, check, until

SIZE = "1100x720"


def run(words, text=None):
    """Runs one of the small X programs. Returns its output, or "" when it fails or hangs."""
    try:
        done = subprocess.run(words, input=text, capture_output=True, text=True, errors="replace", check=False,
                              timeout=PATIENCE)
    except subprocess.TimeoutExpired:
        return ""
    return done.stdout if done.returncode == 0 else ""


class Desktop:
    def __init__(self, children, photo_folder):
        self.photo_folder = photo_folder
        os.makedirs(photo_folder, exist_ok=True)
        read_end, write_end = os.pipe()
        children.start(["Xvfb", "-displayfd", str(write_end), "-screen", "0", SIZE + "x24", "-nolisten", "tcp",
                        "-noreset"], pass_fds=[write_end])
        os.close(write_end)
        with os.fdopen(read_end) as number:
            display = number.readline().strip()
        check(display, "Xvfb did not start")
        os.environ["DISPLAY"] = ":" + display
        children.start(["openbox", "--sm-disable", "--config-file", self._window_rules(children.log_folder)])
        until("openbox is up", lambda: "window id" in run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]))

    @staticmethod
    def _window_rules(folder):
        """Writes a configuration without key bindings, so that the window manager passes every key to the program."""
        path = os.path.join(folder, "openbox.xml")
        with open(path, "w") as file:
            file.write('<openbox_config xmlns="http://openbox.org/3.4/rc"><focus><focusNew>yes</focusNew></focus>'
                       '<theme><name>Clearlooks</name></theme><keyboard/></openbox_config>')
        return path

    def active(self):
        """Returns the number of the active window, or 0 when there is none."""
        return self._windows("_NET_ACTIVE_WINDOW")[0]

    def windows(self):
        """Returns the number of the active window, then the numbers of all visible windows."""
        return self._windows("_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST")

    @staticmethod
    def _windows(*properties):
        listed = re.findall("0x[0-9a-f]+", run(["xprop", "-root", *properties]))
        return [int(number, 16) for number in listed] or [0]

    def title(self, window):
        """Returns a window's title, or "" when the window is gone."""
        return run(["xdotool", "getwindowname", str(window)]).strip() if window else ""

    def keys(self, *names):
        """Presses keys one after the other. Alt is held for a while, because a busy program checks its state late and
        would ignore it."""
        words = []
        for name in names:
            key = name.removeprefix("alt+")
            words += ["key", name] if key == name else ["keydown", "alt", "key", key, "sleep", "0.5", "keyup", "alt"]
        run(["xdotool", *words])

    def type(self, text):
        run(["xdotool", "type", text])

    def put_into_clipboard(self, text):
        # xclip stays in the background to hold the clipboard; it must not keep our pipes open.
        subprocess.run(["xclip", "-selection", "clipboard"], input=text.encode(), check=True, timeout=PATIENCE,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def clipboard(self):
        return run(["xclip", "-o", "-selection", "clipboard"])

    def _screen(self):
        return subprocess.run(["import", "-window", "root", "ppm:-"], capture_output=True, check=False).stdout

    def photograph(self, name):
        """Saves a screenshot once the screen has stopped changing, or after a few attempts if it never stops."""
        picture = self._screen()
        for _ in range(3):
            before, picture = picture, self._screen()
            if picture == before:
                break
        subprocess.run(["convert", "ppm:-", "+dither", "-colors", "64", os.path.join(self.photo_folder, name + ".png")],
                       input=picture, check=False)
