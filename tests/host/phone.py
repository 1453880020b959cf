"""The simulated handset, what is told to it and what it holds."""
import os
import socket
import subprocess
import tempfile

from trees import contents_of
from waiting import Failed, check

# The second and third byte of a request to the phone's file system, by what it asks for.
COMMANDS = {2: "open", 3: "close", 4: "read", 5: "write", 6: "link", 7: "readlink", 8: "unlink", 9: "mkdir",
            10: "rmdir", 11: "opendir", 12: "readdir", 13: "closedir", 14: "rename", 15: "stat", 19: "statfs"}


class Phone:
    """A handset that is plugged in behind `device_root` and holds a copy of the folder "content" in `folder`."""

    def __init__(self, children, program, folder):
        self.folder = folder
        self.device_root = os.path.join(folder, "device-root")
        self.control = os.path.join(folder, "control")
        self.process = children.start([program, "--device-root", self.device_root, "--control", self.control,
                                       "--fill", os.path.join(folder, "content")], stdout=subprocess.PIPE)
        check(self.process.stdout.readline().startswith(b"ready"), "the simulated handset does not start")

    def tell(self, command):
        """Gives the lines of the answer, without the closing "ok"."""
        with socket.socket(socket.AF_UNIX) as line:
            line.settimeout(20)
            line.connect(self.control)
            line.sendall(command.encode() + b"\n")
            answer = b""
            while not answer.endswith(b"\n") or not answer.split(b"\n")[-2].startswith((b"ok", b"error:")):
                piece = line.recv(65536)
                check(piece, "the simulated handset is gone")
                answer += piece
        lines = answer.decode("utf-8", "replace").split("\n")[:-1]
        if lines[-1] != "ok":
            raise Failed(f"the handset answers {command!r} with {lines[-1]!r}")
        return lines[:-1]

    def names(self, path=""):
        """The paths of all that lies below a folder, with a "/" at the end of folders."""
        entries = (line.split("\t") for line in self.tell("list " + path))
        return [name + "/" if kind == "folder" else name for name, kind, _ in entries]

    def names_at_the_root(self):
        return {path.split("/")[1] for path in self.names()}

    def tree(self, path):
        """What lies below a folder of the phone, as contents_of has it."""
        with tempfile.TemporaryDirectory(dir=self.folder) as folder:
            self.tell(f"export {path} {folder}/copy")
            return contents_of(os.path.join(folder, "copy"))

    def requests(self):
        """What was asked of the file system since the last call of forget_requests: pairs of the command's
        name and the text in it (a path, mostly)."""
        result = []
        for line in self.tell("requests"):
            request = bytes.fromhex(line)
            if request[:2] == b"\x4b\x13":
                name = COMMANDS.get(request[2] | request[3] << 8, "other")
                result.append((name, request[4:].decode("latin-1")))
        return result

    def has_been_asked(self, name, path=""):
        """True when such a request with the path in it has come since the last call of forget_requests."""
        return any(name == asked and path in text for asked, text in self.requests())

    def forget_requests(self):
        self.tell("clear-requests")
