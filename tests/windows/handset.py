"""The simulated handset and its command line."""
import os
import socket
import subprocess
import sys


class Handset:
    def __init__(self, linux_build, folder, files):
        """Starts a handset that keeps its things in `folder` and holds `files`: contents by path, None for folders.
        Paths may be bytes."""
        self.root = os.path.join(folder, "root")
        self.control = os.path.join(folder, "control")
        fill = os.path.join(folder, "fill")
        os.makedirs(fill)
        for path, content in files.items():
            whole = os.path.join(os.fsencode(fill), os.fsencode(path))
            os.makedirs(whole if content is None else os.path.dirname(whole), exist_ok=True)
            if content is not None:
                with open(whole, "wb") as file:
                    file.write(content)
        self.process = subprocess.Popen(
            [os.path.join(linux_build, "simulated-handset"), "--device-root", self.root,
             "--control", self.control, "--fill", fill], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        if not self.process.stdout.readline().startswith(b"ready"):
            sys.exit("the simulated handset did not start")

    def lines(self, command):
        """Sends a command. Returns the lines of the reply, of which the last is "ok" or "error: ..."."""
        with socket.socket(socket.AF_UNIX) as line:
            line.connect(self.control)
            line.sendall(command.encode() + b"\n")
            answer = b""
            while True:
                lines = answer.decode("latin-1").split("\n")[:-1]
                if lines and (lines[-1] == "ok" or lines[-1].startswith("error:")):
                    return lines
                piece = line.recv(65536)
                if not piece:
                    return ["error: the handset is gone"]
                answer += piece

    def tell(self, command):
        return " ".join(self.lines(command))

    def content(self, path):
        """Returns the bytes of a file, or None when there is none."""
        lines = self.lines("cat " + path)
        return bytes.fromhex(lines[0]) if lines[-1] == "ok" else None

    def count(self, beginning):
        """Returns how many requests since the last "clear-requests" begin with these bytes, in hex."""
        return sum(line.startswith(beginning) for line in self.lines("requests"))
