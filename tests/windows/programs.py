"""wfxhost.exe and qdiag.exe, run as their users do."""
import json
import os
import subprocess
import threading
import time

LIMIT = 120  # seconds for one call; far more than any needs
# One character of the code page, and some that are not in it.
NAME = "grün 日本.txt"
FOLDER = "Ordner ж"
LARGE = bytes((i * 13 + i // 255) % 256 for i in range(70000))
EVERY_BYTE = bytes(range(256)) * 40 + b"\r\n\n\x1a end"
TREE = {f"tree/{i}/file": b"x" for i in range(10)}


class Programs:
    def __init__(self, session, wine, windows_path, build, plugin):
        self.session = session
        self.wine = wine
        self.windows_path = windows_path
        self.build = build
        self.plugin = plugin
        self.folder = os.path.join(session.folder, "programs")
        os.makedirs(self.folder)
        self.handset = session.handset

    # --- Running

    def start(self, program, words, launcher=(), stdin=subprocess.DEVNULL):
        """Starts a program in a folder of its own. Its output goes to a file, because Wine's services may keep a pipe
        open."""
        file = os.path.join(self.build, program + ".exe")
        if program == "wfxhost":
            words = ["--plugin", self.windows_path(self.plugin), *words]
        with open(self.path("../output"), "wb") as output:
            return subprocess.Popen(["timeout", str(LIMIT), *self.wine(*launcher, file, *words)], stdin=stdin,
                                    stdout=output, stderr=subprocess.STDOUT, cwd=self.folder)

    def finish(self, process, title, status, says):
        """Waits for the end of a program and checks status and output. Returns the output's bytes."""
        code = process.wait()
        with open(self.path("../output"), "rb") as file:
            output = file.read()
        text = output.decode("utf-8", "backslashreplace").replace("\r\n", "\n")
        if code != status or says not in text:
            self.session.fail(f"{title}: exit status {code} instead of {status}, or it does not say {says!r}:\n{text}")
        return output

    def run(self, program, words, status=0, says="", given=None):
        """`given`: what the program reads from a pipe as its standard input."""
        process = self.start(program, words, stdin=subprocess.DEVNULL if given is None else subprocess.PIPE)
        if given is not None:
            threading.Thread(target=lambda: (process.stdin.write(given), process.stdin.close())).start()
        return self.finish(process, f"{program} {words}", status, says)

    def expect_all(self, program, steps):
        for words, status, says in steps:
            self.run(program, words, status, says)

    def interrupt(self, program, words, request, status, says):
        """Runs a program in a console and presses Ctrl-C there when the handset has received several requests that
        begin with `request`."""
        self.handset.tell("clear-requests")
        self.handset.tell("latency 30000")
        launcher = [os.path.join(self.build, "checks", "console-run.exe")]
        process = self.start(program, words, launcher, stdin=subprocess.PIPE)
        while self.handset.count(request) < 3 and process.poll() is None:
            time.sleep(0.02)
        process.stdin.write(b"\n")
        process.stdin.close()
        output = self.finish(process, f"Ctrl-C: {program} {words}", status, says)
        self.handset.tell("latency 0")
        return output

    def screen(self, words, says):
        """Runs wfxhost in a console and checks what is to be seen there."""
        launcher = [os.path.join(self.build, "checks", "console-run.exe"), "--screen"]
        self.finish(self.start("wfxhost", words, launcher), f"console: {words}", 0, says)

    # --- Files

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, content):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "wb") as file:
            file.write(content)

    def expect_content(self, name, content):
        found = None
        if os.path.exists(self.path(name)):
            with open(self.path(name), "rb") as file:
                found = file.read()
        self.session.expect(found == content, f"{name} holds {found and found[:60]} instead of {content and content[:60]}")

    def expect_on_phone(self, path, content):
        found = self.handset.content(path)
        self.session.expect(found == content, f"{path} on the phone holds {found and found[:60]}")

    # --- Checks

    def quick(self):
        self.write("local.bin", LARGE)
        self.expect_all("wfxhost", [
            (["ls"], 0, "notes.txt"),
            (["put", "local.bin", "brew"], 0, "70000 bytes in "),
            (["get", "brew/local.bin", "back.bin"], 0, "70000 bytes in "),
            (["ln", "brew/local.bin", "l"], 0, ""),
            (["cd", "brew"], 0, "/brew"),
            (["mv", "brew/local.bin", "moved.bin"], 0, ""),
        ])
        self.expect_content("back.bin", LARGE)
        self.expect_on_phone("/moved.bin", LARGE)
        self.expect_all("wfxhost", [
            (["rm", "moved.bin"], 0, ""),
            (["get", "moved.bin"], 1, "the phone has no file"),
            (["dance"], 2, "unknown command"),
        ])
        self.handset.tell("unplug")
        self.run("wfxhost", ["ls"], 3, "handset")

    def thorough(self):
        self.handset = self.session.attach("second", {
            **TREE, b"odd/\xff\xfe": b"1", "odd/aux.txt": b"2", "odd/a:b": b"3", "odd/line\nfeed": b"4",
            "odd/fine": b"5", "large.bin": LARGE * 3})
        for check in (self.names, self.streams, self.trees, self.console, self.diagnostics, self.interruptions):
            print(f"-- programs: {check.__name__}", flush=True)
            check()

    def names(self):
        self.write(f"{FOLDER}/{NAME}", LARGE)
        self.expect_all("wfxhost", [
            (["mkdir", FOLDER], 0, ""),
            (["put", f"{FOLDER}\\{NAME}", FOLDER], 0, "100 %  70.0 kB of 70.0 kB"),
            (["get", f"{FOLDER}/{NAME}"], 0, "70000 bytes in "),
            (["get", f"{FOLDER}/*.txt", f"{FOLDER}\\back ж.txt"], 0, ""),
            (["put", f"{FOLDER}\\*ck*.txt", "odd"], 0, ""),
            (["ls", "-1", FOLDER], 0, NAME + "\n"),
            (["find", "-name", "grün*"], 0, f"/{FOLDER}/{NAME}\n"),
            (["get", "odd/aux.txt"], 1, "this system cannot store a file with that name"),
            (["get", "odd/*", "."], 1, "4 of 6 files not copied"),
        ])
        self.expect_on_phone(f"/{FOLDER}/{NAME}", LARGE)
        self.expect_on_phone("/odd/back ж.txt", LARGE)
        for name in (NAME, f"{FOLDER}/back ж.txt", "back ж.txt"):
            self.expect_content(name, LARGE)
        self.expect_content("fine", b"5")
        entries = json.loads(self.run("wfxhost", ["ls", "--json", "odd"]))
        names = {entry["name"].encode("utf-8" if entry["utf8"] else "latin-1") for entry in entries}
        wanted = {b"\xff\xfe", b"aux.txt", b"a:b", b"line\nfeed", b"fine", "back ж.txt".encode()}
        self.session.expect(names == wanted, f"ls --json: {names}")
        zeros = self.run("wfxhost", ["find", "odd", "-type", "f", "-print0"])
        self.session.expect(set(zeros.split(b"\0")) == {b"/odd/" + name for name in wanted} | {b""},
                            f"find -print0: {zeros}")

    def streams(self):
        self.run("wfxhost", ["put", "-", "bytes"], 0, f"{len(EVERY_BYTE)} bytes in ", given=EVERY_BYTE)
        self.expect_on_phone("/bytes", EVERY_BYTE)
        for words in (["cat", "bytes"], ["get", "bytes", "-"]):
            self.session.expect(self.run("wfxhost", words) == EVERY_BYTE, f"{words} changed bytes")

    def trees(self):
        self.expect_all("wfxhost", [
            (["du", "-s", "tree"], 0, "10\t/tree\n"),
            (["get", "-r", "tree"], 0, "10 files, 11 folders, 10 bytes in "),
            (["put", "-r", "tree", "copy"], 0, "10 files, 11 folders, 10 bytes in "),
            (["put", "-ru", "tree\\.", "copy"], 0, "10 files, 11 folders, 0 up to date"),
            (["put", "-ru", "tree", "copy"], 0, "0 files, 11 folders, 10 up to date"),
            (["rm", "-r", "copy"], 0, ""),
            (["ls", "copy"], 1, "no file or folder"),
        ])
        self.expect_content("tree/9/file", b"x")
        copied = json.loads(self.run("wfxhost", ["get", "-rf", "--json", "tree"]))
        self.session.expect(len(copied["files"]) == 10 and copied["files"][0]["state"] == "copied", f"{copied}")

    def console(self):
        self.screen(["ls", "-1", FOLDER], NAME)
        self.screen(["get", "-f", "large.bin"], "####] 100 %  210.0 kB of 210.0 kB")

    def diagnostics(self):
        # The list of serial ports, which the checks before may have left in any state.
        subprocess.run(self.wine("reg", "add", r"HKLM\HARDWARE\DEVICEMAP\SERIALCOMM", "/v", r"\Device\VSerial6",
                                 "/d", "COM6", "/f"), check=True, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.expect_all("qdiag", [
            (["ports"], 0, "COM6    a handset answers"),
            (["info"], 0, "esn                   0x80345678"),
            (["info", "--port", "9"], 3, "there is no port COM9"),
            (["dance"], 2, "unknown command"),
            (["nv", "backup", "grün.txt", "--items", "0-200"], 0, "3 items kept in grün.txt"),
            (["nv", "write", "71", "010203"], 0, "NV item 71 written: 3 bytes, then zeros"),
            (["nv", "restore", "grün.txt"], 1, "not confirmed: nothing was written"),
            (["nv", "restore", "grün.txt", "--yes"], 0, "1 of 3 items differ\nrestored and read back"),
            (["nv", "read", "71", "8"], 0, "7175696C6C657400"),
            (["log", "--seconds", "0"], 0, "packets shown: 0"),
        ])
        facts = json.loads(self.run("qdiag", ["info", "--json"]))
        self.session.expect(facts["port"] == "COM6", f"qdiag info --json: {facts}")
        self.write("QMSL_auto_start_log.txt", b"")
        self.run("qdiag", ["nv", "read", "71"])
        os.remove(self.path("QMSL_auto_start_log.txt"))
        os.rename(self.path("QMSL_Log.txt"), self.path("日本.log"))
        self.run("qdiag", ["replay", "日本.log"], 0, "Response, ")

    def interruptions(self):
        before = sorted(os.listdir(self.folder))
        self.write("long.bin", LARGE * 3)
        for program, words, request, status, says in (
                ("wfxhost", ["get", "large.bin", "new.bin"], "4B 13 04", 1, 'interrupted: "new.bin" was not copied'),
                ("wfxhost", ["put", "long.bin", "new.bin"], "4B 13 05", 1, "interrupted"),
                ("wfxhost", ["rm", "-r", "tree"], "4B 13 08", 1, "stopped, interrupted; not everything was deleted"),
                ("wfxhost", ["find"], "4B 13 0C", 1, "interrupted"),
                ("qdiag", ["nv", "backup", "new.txt"], "26", 1, "interrupted: no backup was written"),
                ("qdiag", ["log", "0x1098"], "73", 0, "packets shown: 0")):
            self.interrupt(program, words, request, status, says)
        left = sorted(name for name in os.listdir(self.folder) if name != "long.bin")
        self.session.expect(left == before, f"{left} instead of {before} after Ctrl-C")
        self.expect_on_phone("/new.bin", None)
        self.expect_on_phone("/tree/0/file", b"x")
        self.expect_on_phone("/tree/9/file", None)
