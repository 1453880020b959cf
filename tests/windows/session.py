#!/usr/bin/env python3
"""session.py WIDTH WINE BUILD LINUX_BUILD [PROGRAM ARGS...]: runs the checks of one Windows edition (32 or 64), or just
PROGRAM, under Wine.

WINE is the folder with the Wine prefixes, BUILD holds the Windows products, LINUX_BUILD the simulated handset, which
is on COM6. The programs request actions outside Windows with lines that begin with '@' (see checks.h). Exit status 0
when everything passed. The screenshot of the banner stays in BUILD."""
import fcntl
import os
import queue
import shutil
import subprocess
import sys
import tempfile
import threading
import time

import programs
from handset import Handset

HERE = os.path.dirname(os.path.abspath(__file__))
WIDTH, WINE, BUILD, LINUX_BUILD, *PROGRAM = sys.argv[1:]
PREFIX = os.path.join(WINE, "prefix" + WIDTH)
PLUGIN = os.path.join(BUILD, "quillet.wfx" if WIDTH == "32" else "quillet.wfx64")
BACKGROUND = (0x30, 0x60, 0x90)
LIMIT = 400  # seconds for one program; far more than any needs


def wine(*words):
    return [os.path.join(HERE, "wine.sh"), WIDTH, WINE, *words]


def windows_path(path):
    return "Z:" + path.replace("/", "\\")


def connect(handset):
    """Makes a handset the one on COM6."""
    port = os.path.join(PREFIX, "dosdevices", "com6")
    if os.path.islink(port):
        os.remove(port)
    os.symlink(os.path.join(handset.root, "dev/ttyUSB0"), port)


def lines_of(process):
    """Yields the lines that a program prints until it ends. Wine's services, which the program may have started,
    continue and keep the output open."""
    lines = queue.Queue()

    def read():
        for raw in process.stdout:
            lines.put(raw.decode("latin-1").rstrip("\r\n"))

    threading.Thread(target=read, daemon=True).start()
    while True:
        try:
            yield lines.get(timeout=0.2)
        except queue.Empty:
            if process.poll() is not None:
                return


def pixels(file):
    """Returns the picture's width and height, and a function that returns the colour at a position."""
    data = subprocess.run(["convert", file, "-depth", "8", "ppm:-"], check=True, capture_output=True).stdout
    words = data.split(maxsplit=4)
    width, height = int(words[1]), int(words[2])
    body = data[len(data) - 3 * width * height:]
    return width, height, lambda x, y: tuple(body[3 * (y * width + x):3 * (y * width + x) + 3])


def look_at_banner(left, top):
    """Takes a screenshot. Returns "ok", or what is wrong with the banner at that position."""
    photograph = os.path.join(BUILD, "splash.png")
    subprocess.run(["import", "-window", "root", photograph], check=True)
    width, height, colour = pixels(photograph)
    art_width, art_height, art = pixels(os.path.join(HERE, "../../resources/banner.bmp"))
    matches = total = 0
    for y in range(0, 145, 3):
        for x in range(0, art_width, 3):
            expected = BACKGROUND if art(x, y) == (255, 255, 255) else art(x, y)
            matches += max(abs(a - b) for a, b in zip(colour(left + x, top + y), expected)) <= 8
            total += 1
    if matches < 0.98 * total:
        return f"the banner is not the picture with white transparent: {matches} of {total} points match"
    # The version text is black on a transparent background.
    black = [x for x in range(440, art_width) for y in range(150, 172)
             if max(colour(left + x, top + y)) < 40]
    if not black:
        return "the banner has no version text"
    if not 525 <= max(black) <= 530:
        return f"the version text ends at x = {max(black)}"
    if colour(left + 535, top + 155) != BACKGROUND:
        return "the background beside the version text is not transparent"
    return "ok"


class Session:
    def __init__(self, folder):
        self.folder = folder
        self.handsets = []
        self.handset = self.attach("first", {"notes.txt": b"hello\n", "brew/mod": None})
        self.failures = 0

    def attach(self, name, files):
        """Starts a handset with these files and makes it the one on COM6."""
        handset = Handset(LINUX_BUILD, os.path.join(self.folder, name), files)
        self.handsets.append(handset)
        connect(handset)
        return handset

    def answer(self, request):
        word, _, rest = request.partition(" ")
        if word == "handset":
            return self.handset.tell(rest)
        if word == "banner":
            return look_at_banner(*(int(number) for number in rest.split()))
        return "error: unknown request " + request

    def run(self, title, words, environment=None, status=0):
        """Runs a program in the session's folder, answers its requests and checks its exit status."""
        print(f"-- {title} ({WIDTH} bits)", flush=True)
        process = subprocess.Popen(["timeout", str(LIMIT), *wine(*words)], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, cwd=self.folder,
                                   env={**os.environ, **(environment or {})})
        output = ""
        for line in lines_of(process):
            if line.startswith("@"):
                process.stdin.write(self.answer(line[1:]).encode("latin-1") + b"\n")
                process.stdin.flush()
                continue
            output += line + "\n"
            print("   " + line, flush=True)
        code = process.wait()
        if code != status:
            self.fail(f"{title}: exit status {code} instead of {status}")
        return output

    def fail(self, text):
        self.failures += 1
        print("FAILED " + text, flush=True)

    def expect(self, good, text):
        if not good:
            self.fail(text)

    def program(self, name):
        return os.path.join(BUILD, "checks", name)

    def checks(self):
        self.run("automation", [self.program("automation-checks.exe")])
        self.run("platform", [self.program("platform-checks.exe")])
        # A program prefers a library in its own folder, if WINEDLLOVERRIDES allows it.
        shutil.copy(self.program("platform-checks.exe"), self.program("incomplete"))
        self.run("incomplete SetupAPI", [self.program("incomplete/platform-checks.exe"), "incomplete"],
                 {"WINEDLLOVERRIDES": "mscoree,mshtml=;setupapi=n"})
        self.modules()
        self.run("file manager", [self.program("host-checks.exe"), windows_path(PLUGIN)])
        self.programs()

    def programs(self):
        """The command-line programs: wfxhost for both editions, and all that users of the 64-bit ones do."""
        what = programs.Programs(self, wine, windows_path, BUILD, PLUGIN)
        what.quick()
        if WIDTH == "64":
            what.thorough()

    def modules(self):
        """Hosts and the library as separate modules. WINEPATH names the folders of the compiler's libraries for the
        programs that need them."""
        compiler = ("i686" if WIDTH == "32" else "x86_64") + "-w64-mingw32-g++-posix"
        folders = [BUILD]
        for name in ("libstdc++-6.dll", "libwinpthread-1.dll"):
            file = subprocess.run([compiler, "-print-file-name=" + name], check=True, capture_output=True,
                                  text=True).stdout.strip()
            folders.append(os.path.dirname(os.path.realpath(file)))
        where = {"WINEPATH": ";".join(windows_path(folder) for folder in folders)}
        for name in ("edge-checks-static", "edge-checks-shared", "bare-host"):
            self.run(name, [self.program(name + ".exe")], where)


def prepare():
    """Creates the prefix with fonts, unless it exists."""
    done = os.path.join(PREFIX, ".done")
    if os.path.exists(done):
        return
    shutil.rmtree(PREFIX, ignore_errors=True)
    environment = {name: value for name, value in os.environ.items() if name != "DISPLAY"}
    # Wine's remaining processes must not keep this script's output open.
    subprocess.run(wine("wineboot", "-i"), env=environment, check=True, stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    subprocess.run(wine("wineserver", "-w"), check=True)
    fonts = "/usr/share/fonts/truetype/dejavu"
    for name in os.listdir(fonts):
        shutil.copy(os.path.join(fonts, name), os.path.join(PREFIX, "drive_c/windows/Fonts"))
    open(done, "w").close()


def start_screen(folder):
    """Starts the X server with a background of one colour and sets DISPLAY."""
    read_end, write_end = os.pipe()
    with open(os.path.join(folder, "xvfb.log"), "w") as log:
        screen = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1024x768x24",
                                   "-nolisten", "tcp", "-noreset"], pass_fds=[write_end], stderr=log)
    os.close(write_end)
    number = os.read(read_end, 20).decode().strip()
    if not number:
        sys.exit("Xvfb did not start")
    os.environ["DISPLAY"] = ":" + number
    subprocess.run(["xsetroot", "-solid", "#%02x%02x%02x" % BACKGROUND], check=True)
    return screen


def main():
    os.makedirs(WINE, exist_ok=True)
    with open(PREFIX + ".lock", "w") as lock, tempfile.TemporaryDirectory() as folder:
        fcntl.flock(lock, fcntl.LOCK_EX)  # one server per prefix
        begin = time.monotonic()
        # Wine decodes names of files and arguments by the locale, and its server's first process decides for all.
        os.environ["LC_ALL"] = "C.UTF-8"
        prepare()
        screen = start_screen(folder)
        session = None
        port = os.path.join(PREFIX, "dosdevices", "com6")
        try:
            session = Session(folder)
            # The server runs for the whole session, because it holds the registry keys of the ports.
            subprocess.run(wine("wineserver", "-p"), check=False, stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            if PROGRAM:
                session.run(os.path.basename(PROGRAM[0]), PROGRAM)
            else:
                session.checks()
        finally:
            subprocess.run(wine("wineserver", "-k"), check=False)
            if session:
                for handset in session.handsets:
                    handset.process.terminate()
            screen.terminate()
            if os.path.islink(port):
                os.remove(port)
        seconds = int(time.monotonic() - begin)
        print(f"== {WIDTH} bits: {session.failures} failed, {seconds} s", flush=True)
    sys.exit(1 if session.failures else 0)


main()
