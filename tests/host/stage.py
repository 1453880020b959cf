"""What every stage uses: the file manager, and the contents of the phone and the computer."""
import os

import trees
from waiting import until


class Stage:
    def __init__(self, label, desktop, world):
        self.label = label
        self.desktop = desktop
        self.commander = world.commander
        self.phone = world.phone
        self.computer = world.computer

    def photograph(self, detail=""):
        self.desktop.photograph("-".join(filter(None, (self.label, detail))))

    def path(self, name):
        """Returns the full path of a folder in the session's folder on the computer."""
        return os.path.join(self.computer, name)

    def local(self, folder):
        """Returns the contents of a folder on the computer."""
        return trees.contents_of(self.path(folder))

    def wait_for_phone(self, folder, expected):
        until(lambda: f"{folder} on the phone: " + trees.differences(self.phone.tree(folder), expected),
              lambda: self.phone.tree(folder) == expected)

    def wait_for_local(self, folder, expected):
        until(lambda: f"{folder} on the computer: " + trees.differences(self.local(folder), expected),
              lambda: self.local(folder) == expected)

    def answer(self, title, *keys, text=""):
        """Waits for a window, types `text` into it, presses the keys and waits until the window has closed."""
        window = self.commander.wait_for_window(title)
        self.desktop.type(text)
        self.commander.answer(window, *keys)

    def start_copying(self, here, there, *names, command="Copy", latency=0):
        """Marks entries in one folder and starts to copy or move them to another. From then on the phone takes
        `latency` microseconds for each response."""
        self.commander.open_both(here, there)
        self.commander.mark(*names)
        self.commander.command(command)
        self.commander.wait_for_window(r"^(Copy|Move) file")
        self.phone.tell(f"latency {latency}")
        self.answer(r"^(Copy|Move) file", "Return")
