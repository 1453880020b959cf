"""What every stage of the session has at hand: the file manager, and eyes on both sides of it."""
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
        """A folder of the computer, by its path from the folder that belongs to the session."""
        return os.path.join(self.computer, name)

    def local(self, folder):
        """What a folder of the computer holds."""
        return trees.contents_of(self.path(folder))

    def wait_for_phone(self, folder, expected):
        until(lambda: f"{folder} on the phone: " + trees.differences(self.phone.tree(folder), expected),
              lambda: self.phone.tree(folder) == expected)

    def wait_for_local(self, folder, expected):
        until(lambda: f"{folder} on the computer: " + trees.differences(self.local(folder), expected),
              lambda: self.local(folder) == expected)

    def answer(self, title, *keys, text=""):
        """Waits for a window, types the text into it, presses the keys, and waits until it has closed."""
        window = self.commander.wait_for_window(title)
        self.desktop.type(text)
        self.commander.answer(window, *keys)

    def start_copying(self, here, there, *names, command="Copy", latency=0):
        """Marks entries in one folder and starts to copy (or to move) them to another. `latency`: microseconds
        that the phone takes for each answer from then on."""
        self.commander.open_both(here, there)
        self.commander.mark(*names)
        self.commander.command(command)
        self.commander.wait_for_window(r"^(Copy|Move) file")
        self.phone.tell(f"latency {latency}")
        self.answer(r"^(Copy|Move) file", "Return")
