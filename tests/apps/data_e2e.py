#!/usr/bin/env python3
"""Works with a file of visibilities in pavane-view with nothing but keys, on an X server of its own.

usage: data_e2e.py PAVANE_VIEW PAVANE_SIMULATE FOLDER

Finds a station, copies a range and reads it back from the clipboard, takes the mark of the station
and looks at the plot, exports the table, makes one frequency group and gives it up.
"""
import os
import shutil
import subprocess
import sys

from window_e2e import NEEDED, Desk, Failure, Program, wait_for

DATA = "observation.uvfits"


class View(Program):
    def main(self):
        return self.window(DATA)

    def save(self, keys, box, name):
        """Saves under a name by the keys of a command."""
        self.main()
        for key in keys:
            self.key(key)
        window = self.window(box)
        self.key("ctrl+a")
        self.desk.do("type", "--delay", 5, self.folder + "/" + name)
        self.key("Return")
        self.gone(window)
        path = self.folder + "/" + name
        wait_for(name, lambda: os.path.exists(path) and os.path.getsize(path))
        with open(path, "rb") as file:
            return file.read()


def clipboard(desk):
    return subprocess.run(["xclip", "-selection", "clipboard", "-o"], env=desk.env,
                          capture_output=True).stdout.decode()


def table(program, folder, env, name):
    """Its lines as cells, as they are written without a window."""
    text = subprocess.run([program, DATA, "--batch", "--table", name, "--tsv", "-"], cwd=folder,
                          env=dict(env, QT_QPA_PLATFORM="offscreen"), capture_output=True,
                          check=True).stdout.decode()
    return [line.split("\t") for line in text.splitlines()]


def find_and_copy(view, desk, stations):
    view.main()
    view.key("ctrl+f")
    box = view.window("Find")
    desk.do("type", "--delay", 5, "PT")
    view.key("Return")
    view.key("Escape")
    view.gone(box)
    view.main()
    view.key("shift+Right", "shift+Right", "ctrl+c")
    row = next(cells for cells in stations if cells[1] == "PT")
    expected = ["\t".join(cells[:4]) for cells in (stations[0], row)]
    wait_for("the copied station", lambda: clipboard(desk).splitlines() == expected)


def mark_and_plot(view):
    """Without the station the plot is another; with it again, the same."""
    pictures = []
    for key in ("", "space", "space"):
        view.main()
        if key:
            view.key(key)
        pictures.append(view.save(["ctrl+shift+p"], "Save picture", f"plot{len(pictures)}.png"))
    if pictures[0] != pictures[2] or pictures[0] == pictures[1]:
        raise Failure("the plot does not follow the mark of a station")


def choose_times(view, desk):
    view.main()
    view.key("ctrl+shift+t")
    box = view.window("Time Intervals")
    desk.do("type", "--delay", 5, "24:50:00")
    view.key("Return")
    view.gone(box)
    late = view.save(["ctrl+shift+p"], "Save picture", "late.png")
    with open(view.folder + "/plot0.png", "rb") as file:
        if late == file.read():
            raise Failure("the plot does not follow the times")


def export(view, stations):
    lines = view.save(["alt+f", "t"], "Save as", "stations.txt").decode().splitlines()
    # the window says in words what its boxes say
    if [line.split("\t")[:len(stations[0])] for line in lines] != stations:
        raise Failure("the exported table is not the one of --table")


def groups(view, desk):
    view.main()
    view.key("ctrl+Prior", "ctrl+1")
    wait_for("a star for unsaved groups", lambda: "*" in desk.title(view.main()))
    view.key("ctrl+q")
    wait_for("the question about groups", lambda: len(desk.windows(view.pid)) > 1)
    view.key("alt+n")
    view.end()


def main():
    missing = [tool for tool in NEEDED if not shutil.which(tool)]
    if missing:
        print("skipped: there is no " + ", ".join(missing))
        return 1 if os.environ.get("CI") else 77  # the integration has all tools
    program, simulate, folder = (os.path.abspath(name) for name in sys.argv[1:4])
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    subprocess.run([simulate, "--out", folder, "--size", "64", "--clean", "10", "--hours", "2"],
                   check=True, stdout=subprocess.DEVNULL)
    desk = Desk(folder)
    try:
        stations = table(program, folder, desk.env, "telescopes")
        view = View(desk, program, folder, DATA)
        find_and_copy(view, desk, stations)
        mark_and_plot(view)
        choose_times(view, desk)
        export(view, stations)
        groups(view, desk)
    except Failure as failure:
        print("failed:", failure)
        subprocess.run(["import", "-window", "root", folder + "/failed.png"], env=desk.env)
        return 1
    finally:
        desk.close()
    print("passed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
