"""Controls Double Commander as a person does: keys go to the active window, and names in the panels are read through
the clipboard."""
import os
import re

import settings
from waiting import PATIENCE, Failed, NoWindow, check, until

HOMES = ("HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME")  # so that the user's own are not used
PHONE = "wfx://Phone"
OPEN_PHONE = "ChangeDir activepath={phone}"
OPEN_LOCAL = "ChangeDir activepath={local}"
NOTHING = "(nothing)"  # the clipboard's content before something is copied into it


class Commander:
    def __init__(self, children, desktop, folder, plugin, local, device_root):
        self.children = children
        self.desktop = desktop
        self.local = local
        self.was_left = False
        self.log = os.path.join(folder, "operations.log")
        profile = os.path.join(folder, "profile")
        settings.write(profile, plugin, PHONE.removeprefix("wfx://"), local, self.log)
        self.process = children.start(
            ["doublecmd", "--no-splash", "--config-dir=" + profile],
            {**{name: folder for name in HOMES}, "LC_ALL": "C.UTF-8", "LANGUAGE": "en",
             "DBUS_SESSION_BUS_ADDRESS": "disabled:", "QUILLET_DEVICE_ROOT": device_root}, cwd=folder)
        self.main = until("Double Commander appears", self._main_window, patience=60, error=NoWindow)
        self.place()

    def _main_window(self):
        window = self.desktop.active()
        return window if self.desktop.title(window).startswith("Double Commander") else 0

    def has_ended(self):
        """Returns True when the program has ended although leave was not called."""
        return not self.was_left and self.process.poll() is not None

    def leave(self):
        """Ends the program as a person does. Returns its exit status."""
        self.press(settings.key_of("Exit"))
        self.was_left = True
        until("Double Commander ends", lambda: self.process.poll() is not None)
        return self.process.returncode

    def log_text(self):
        """Returns the program's log: its operations and the plug-in's lines."""
        if not os.path.exists(self.log):
            return ""
        with open(self.log, errors="replace") as file:
            return file.read()

    # --- Windows and keys

    def press(self, *keys):
        """Waits until the main window is active and presses keys."""
        self.wait_until_alone()
        self.desktop.keys(*keys)

    def insist(self, keys, what, condition):
        """Presses keys repeatedly until they take effect, because the program loses some keys while the focus moves.
        Only for keys that may be pressed more than once."""
        for _ in range(PATIENCE // 2):
            self.press(*keys)
            try:
                return until(what, condition, patience=2)
            except Failed as error:
                problem = error
        raise problem

    def command(self, name):
        self.press(settings.key_of(name))

    def wait_for_window(self, title, patience=PATIENCE):
        """Waits until a window other than the main one with a matching title is active. Returns its number."""
        def is_up():
            window = self.desktop.active()
            return window if window != self.main and re.search(title, self.desktop.title(window)) else 0
        try:
            return until(f"the window {title!r}", is_up, patience, NoWindow)
        except NoWindow as error:
            raise NoWindow(f"{error}; the active window is {self.desktop.title(self.desktop.active())!r}") from None

    def answer(self, window, *keys):
        """Presses keys in a window and waits until it has closed."""
        self.desktop.keys(*keys)
        until("the window closes", lambda: window not in self.desktop.windows(), error=NoWindow)

    def wait_until_alone(self):
        """Waits until the main window is the only one and active, so that no question and no operation is open."""
        until("the main window is active and the only one",
              lambda: self.desktop.windows() == [self.main, self.main], error=NoWindow)

    def type_command(self, text):
        """Types a command into the command line below the panels."""
        self.command("FocusCmdLine")
        self.desktop.type(text)
        self.press("Return")
        self.press("Escape")

    # --- Panels. The functions read the active panel and move its cursor to the first line.

    def _copied(self, *keys, instead=NOTHING):
        """Presses the keys, copies the selected names into the clipboard, which holds `instead` before, and returns the
        lines."""
        self.desktop.put_into_clipboard(instead)
        self.insist((*keys, settings.key_of("CopyFullNamesToClip")), "names are in the clipboard",
                    lambda: self.desktop.clipboard() not in (instead, ""))
        return self.desktop.clipboard().splitlines()

    def place(self):
        """Returns the folder that the panel shows."""
        return self._copied(settings.key_of("MarkUnmarkAll"), "Home")[0].rstrip("/")

    def names(self):
        """Returns the names in the panel in its order."""
        place = self.place()
        copied = self._copied(settings.key_of("MarkMarkAll"))
        self.command("MarkUnmarkAll")
        return [path.removeprefix(place + "/") for path in copied if path.rstrip("/") != place]

    def wait_for_names(self, *names):
        """Waits until the panel shows these names, in any order."""
        until(lambda: f"the panel shows {sorted(names)}; it shows {sorted(self.names())}",
              lambda: sorted(self.names()) == sorted(names))

    def wait_for_place(self, place):
        until(lambda: f"the panel shows {place}; it shows {self.place()}", lambda: self.place() == place)

    def swap(self):
        """Activates the other panel."""
        self.press("Tab")
        self.place()

    def open(self, place):
        """Shows a folder of the phone or of the computer: opens the root by a key and enters folder by folder."""
        root, command = (PHONE, OPEN_PHONE) if place.startswith(PHONE) else (self.local, OPEN_LOCAL)
        self.insist([settings.key_of(command)], f"the panel shows {root}", lambda: self.place() == root)
        for name in place.removeprefix(root).split("/")[1:]:
            root += "/" + name
            self.enter(name, root)

    def enter(self, name, place):
        """Presses Enter on an entry and waits until the panel shows `place`."""
        self.point_at(name)
        self.press("Return")
        self.wait_for_place(place)

    def open_both(self, here, there):
        """Shows one folder in the active panel and one in the other."""
        self.open(here)
        self.swap()
        self.open(there)
        self.swap()

    def point_at(self, name):
        """Puts the cursor on an entry."""
        until(f"{name} is in the panel", lambda: name in self.names())
        place, names = self.place(), self.names()
        copied = self._copied("Home", *["Down"] * (names.index(name) + 1))
        check(copied == [f"{place}/{name}"], f"the cursor is on {copied}")

    def mark(self, *names):
        """Marks entries."""
        until(f"{names} are in the panel", lambda: set(names) <= set(self.names()))
        place = self.place()
        marked = self._copied(settings.key_of("LoadSelectionFromClip"), instead="\n".join(names))
        check(sorted(marked) == sorted(f"{place}/{name}" for name in names), f"marked are {marked}")
