"""A desktop for tests that work in pavane-view with a real pointer and keyboard: an X server of its
own with a window manager, the program in it, what pieces of the screen show, and the maps that are
opened. Every step waits for what it causes.
"""
import array
import os
import shutil
import subprocess
import sys
import time

TOOLS = ["Xvfb", "xdotool", "openbox", "xprop", "xclip", "import"]
PATIENCE = 15.0
GESTURE = 0.7  # keys that follow each other faster than in half a second are one step of the views
WIDTH = 1400  # of the screen


class Failure(Exception):
    pass


def wait_for(what, test):
    """Polls until test() is true and returns its value."""
    end = time.monotonic() + PATIENCE
    while True:
        value = test()
        if value:
            return value
        if time.monotonic() > end:
            raise Failure("waited in vain for " + what)
        time.sleep(0.02)


def write_fits(name, sides, values, **cards):
    """A file of 32-bit floats with these lengths of axes, the fastest first."""
    head = [("SIMPLE", "T"), ("BITPIX", -32), ("NAXIS", len(sides)),
            *((f"NAXIS{i}", side) for i, side in enumerate(sides, 1)), *cards.items()]
    text = "".join(f"{k:<8}= {(repr(v.ljust(8)) if isinstance(v, str) and v != 'T' else v)!s:>20}".ljust(80)
                   for k, v in head) + "END".ljust(80)
    cells = array.array("f", values)
    cells.byteswap()
    data = cells.tobytes()
    with open(name, "wb") as out:
        out.write(text.ljust(-(-len(text) // 2880) * 2880).encode())
        out.write(data.ljust(-(-len(data) // 2880) * 2880, b"\0"))


def on_sky(side, step, **cards):
    """Cards of a map of the sky with cells of `step` degrees."""
    return dict(CTYPE1="RA---SIN", CRVAL1=187.70593, CRPIX1=side // 2, CDELT1=-step,
                CTYPE2="DEC--SIN", CRVAL2=12.39112, CRPIX2=side // 2 + 1, CDELT2=step,
                BUNIT="JY/BEAM", **cards)


class Desk:
    """An X server with a window manager."""

    def __init__(self, folder):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{WIDTH}x1000x24", "-nolisten", "tcp",
             "-noreset"],  # else the end of its first client throws out those that connect meanwhile
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise Failure("the X server does not start")
        self.env = dict(os.environ, DISPLAY=":" + number, XDG_CONFIG_HOME=folder + "/config",
                        HOME=folder, LC_ALL="C.UTF-8", DBUS_SESSION_BUS_ADDRESS="disabled:")
        for name in ("WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_SCALE_FACTOR"):
            self.env.pop(name, None)
        self.manager = subprocess.Popen(["openbox"], env=self.env, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        try:
            wait_for("the window manager", self.is_managed)
        except Failure:
            self.close()  # a server that lives on holds the output of the test open
            raise

    def is_managed(self):
        if self.manager.poll() is not None:
            raise Failure(f"the window manager ends with {self.manager.returncode}")
        return b"window id" in subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"],
                                              env=self.env, capture_output=True).stdout

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()

    def do(self, *words):
        done = subprocess.run(["xdotool", *map(str, words)], env=self.env, capture_output=True)
        return done.stdout.decode().strip() if done.returncode == 0 else ""

    def windows(self, pid):
        return self.do("search", "--onlyvisible", "--pid", pid, "--name", ".").split()

    def title(self, window):
        return self.do("getwindowname", window)

    def clipboard(self, *kind):
        return subprocess.run(["xclip", "-selection", "clipboard", *kind, "-o"], env=self.env,
                              capture_output=True).stdout


class Program:
    """A running pavane-view and its main window, which shows a file."""

    def __init__(self, desk, program, folder, file, *arguments):
        self.desk, self.folder, self.file = desk, folder, file
        self.errors = open(folder + "/stderr.txt", "a+")
        self.process = subprocess.Popen([program, file, *arguments], env=desk.env, cwd=folder,
                                        stderr=self.errors)
        self.pid = self.process.pid

    def window(self, title, whole=False):
        """Waits for a window whose title holds the text, or is it, and takes the keyboard to it."""
        def find():
            if self.process.poll() is not None:
                self.errors.seek(0)
                raise Failure("the program ended: " + self.errors.read()[-2000:])
            for window in self.desk.windows(self.pid):
                shown = self.desk.title(window)
                if title == shown if whole else title in shown:
                    return window
            return ""
        window = wait_for(f"a window titled '{title}'", find)
        wait_for("the keyboard in " + title, lambda: self.desk.do(
            "windowactivate", "--sync", window, "getactivewindow") and
            self.desk.do("getactivewindow") == window)
        return window

    def gone(self, window):
        wait_for("a box to close", lambda: window not in self.desk.windows(self.pid))

    def main(self):
        return self.window(self.file)

    def place(self):
        """Left, top, width and height of the main window's contents."""
        lines = self.desk.do("getwindowgeometry", "--shell", self.main()).split("\n")
        values = dict(line.split("=") for line in lines if "=" in line)
        return [int(values[k]) for k in ("X", "Y", "WIDTH", "HEIGHT")]

    def at(self, x, y):
        """Screen place of a fraction of the window, from its left and top."""
        left, top, width, height = self.place()
        return round(left + x * width), round(top + y * height)

    def key(self, *keys):
        self.desk.do("key", *keys)

    def type(self, text):
        self.desk.do("type", "--delay", 10, text)

    def save(self, keys, box, name):
        """Saves under a name by the keys of a command; the bytes of the file."""
        self.main()
        for key in keys:
            self.key(key)
        window = self.window(box)
        self.key("ctrl+a")
        self.type(self.folder + "/" + name)
        self.key("Return")
        self.gone(window)
        path = self.folder + "/" + name
        wait_for(name, lambda: os.path.exists(path) and os.path.getsize(path))
        with open(path, "rb") as file:
            return file.read()

    def end(self):
        self.process.wait(PATIENCE)
        if self.process.returncode:
            self.errors.seek(0)
            raise Failure(f"exit status {self.process.returncode}: {self.errors.read()[-2000:]}")


class Look:
    """What pieces of the screen show: left, top, width and height of each."""

    def __init__(self, desk, *pieces):
        self.desk, self.pieces = desk, pieces

    def pixels(self):
        return [subprocess.run(["import", "-window", "root", "-depth", "8", "-crop",
                                "{2}x{3}+{0}+{1}".format(*piece), "rgb:-"],
                               env=self.desk.env, capture_output=True, check=True).stdout
                for piece in self.pieces]

    def is_drawn(self):
        """Each piece has more than one colour."""
        return all(len(set(zip(shown[::3], shown[1::3], shown[2::3]))) > 1 for shown in self.pixels())

    def changed(self, what, before=None):
        """Waits until each piece shows something else than before and stays so; what it is then."""
        last = [before]

        def rests():
            last[0], shown = self.pixels(), last[0]
            return shown == last[0] and (not before or all(a != b for a, b in zip(shown, before)))
        wait_for(what, rests)
        return last[0]

    def again(self, what, shown, pieces=None):
        """Waits until all pieces, or the first ones, are so again."""
        wait_for(what, lambda: self.pixels()[:pieces] == shown[:pieces])
        return shown


def piece_about(place, side):
    """A square about a place."""
    return place[0] - side // 2, place[1] - side // 2, side, side


def simulated(folder, simulate):
    """Makes observation.uvfits and maps of it."""
    subprocess.run([simulate, "--out", folder, "--size", "64", "--clean", "10", "--hours", "2"],
                   check=True, stdout=subprocess.DEVNULL)


def run_test(prepare, work):
    """With the arguments PROGRAM... FOLDER: prepare(folder, *others), then work(desk, program,
    folder). Ends with 77 where a tool is missing."""
    missing = [tool for tool in TOOLS if not shutil.which(tool)]
    if missing:
        print("skipped: there is no " + ", ".join(missing))
        sys.exit(1 if os.environ.get("CI") else 77)  # the integration has all tools
    program, *others, folder = map(os.path.abspath, sys.argv[1:])
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    prepare(folder, *others)
    desk = Desk(folder)
    try:
        work(desk, program, folder)
    except Failure as failure:
        print("failed:", failure)
        subprocess.run(["import", "-window", "root", folder + "/failed.png"], env=desk.env)
        sys.exit(1)
    finally:
        desk.close()
    print("passed")
