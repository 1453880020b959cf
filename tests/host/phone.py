"""The simulated handset: its commands and its contents."""
import os
import socket
import subprocess
import tempfile

from trees import contents_of
from waiting import Failed, check

# The names of file-system commands by the command number in the request's third and fourth bytes.
COMMANDS = {2: "open", 3: "close", 4: "read", 5: "write", 6: "link", 7: "readlink", 8: "unlink", 9: "mkdir",
            10: "rmdir", 11: "opendir", 12: "readdir", 13: "closedir", 14: "rename", 15: "stat", 19: "statfs"}
FREE_BLOCKS = 6000  # of 512 bytes


class Phone:
    """A handset that is plugged in under `device_root` and holds a copy of the folder "content" in `folder`."""

    def __init__(self, children, program, folder):
        self.folder = folder
        self.device_root = os.path.join(folder, "device-root")
        self.control = os.path.join(folder, "control")
        self.process = children.start([program, "--device-root", self.device_root, "--control", self.control,
                                       "--fill", os.path.join(folder, "content"), "--free", str(FREE_BLOCKS)],
                                      stdout=subprocess.PIPE)
        check(self.process.stdout.readline().startswith(b"ready"), "the simulated handset did not start")

    def tell(self, command):
        """Sends a command. Returns the lines of the reply without the final "ok"."""
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
            raise Failed(f"the handset replied to {command!r} with {lines[-1]!r}")
        return lines[:-1]

    def names(self, path=""):
        """Returns the paths of everything below a folder; paths of folders end with "/"."""
        entries = (line.split("\t") for line in self.tell("list " + path))
        return [name + "/" if kind == "folder" else name for name, kind, _ in entries]

    def names_at_the_root(self):
        return {path.split("/")[1] for path in self.names()}

    def tree(self, path):
        """Returns the contents of a folder on the phone in the form of contents_of."""
        with tempfile.TemporaryDirectory(dir=self.folder) as folder:
            self.tell(f"export {path} {folder}/copy")
            return contents_of(os.path.join(folder, "copy"))

    def requests(self):
        """Returns the file-system requests since the last call of forget_requests: pairs of the command's name and the
        text in the request (mostly a path)."""
        result = []
        for line in self.tell("requests"):
            request = bytes.fromhex(line)
            if request[:2] == b"\x4b\x13":
                name = COMMANDS.get(request[2] | request[3] << 8, "other")
                result.append((name, request[4:].decode("latin-1")))
        return result

    def has_been_asked(self, name, path=""):
        """Returns True when such a request, containing `path`, has arrived since the last call of forget_requests."""
        return any(name == asked and path in text for asked, text in self.requests())

    def forget_requests(self):
        self.tell("clear-requests")
