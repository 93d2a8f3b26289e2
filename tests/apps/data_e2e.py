#!/usr/bin/env python3
"""Works with a file of visibilities in pavane-view with nothing but keys, on an X server of its own.

usage: data_e2e.py PAVANE_VIEW PAVANE_SIMULATE FOLDER

Finds a station, copies a range and reads it back from the clipboard, takes the mark of the station
and looks at the plot, exports the table, makes one frequency group and gives it up.
"""
import subprocess

from desk import Failure, Program, run_test, simulated, wait_for

DATA = "observation.uvfits"


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
    view.type("PT")
    view.key("Return")
    view.key("Escape")
    view.gone(box)
    view.main()
    view.key("shift+Right", "shift+Right", "ctrl+c")
    row = next(cells for cells in stations if cells[1] == "PT")
    expected = ["\t".join(cells[:4]) for cells in (stations[0], row)]
    wait_for("the copied station", lambda: desk.clipboard().decode().splitlines() == expected)


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


def choose_times(view):
    view.main()
    view.key("ctrl+shift+t")
    box = view.window("Time Intervals")
    view.type("24:50:00")
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


def work(desk, program, folder):
    stations = table(program, folder, desk.env, "telescopes")
    view = Program(desk, program, folder, DATA)
    find_and_copy(view, desk, stations)
    mark_and_plot(view)
    choose_times(view)
    export(view, stations)
    groups(view, desk)


run_test(simulated, work)
