#!/usr/bin/env python3
"""Cleans and calibrates a simulated observation in pavane-clean with a real pointer and keyboard,
on an X server of its own, with the real engine.

usage: clean_e2e.py PAVANE_CLEAN PAVANE_SIMULATE FOLDER

Opens UVFITS data, draws an area, cleans twice, keeps the area as a set, restores with another beam,
stops a third round, goes back and begins a branch,
flags visibilities in a plot, and closes: the study has the rounds that were asked for, none that was stopped,
no temporary file, and the user's file is as it was.
"""
import hashlib
import os
import re
import shutil
import subprocess
import sys

from desk import Program, run_test, wait_for

ENGINE = "wsclean"


def simulate(folder, program):
    subprocess.run([program, "--out", folder, "--size", "64", "--clean", "10", "--hours", "1"],
                   check=True, stdout=subprocess.DEVNULL)


def digest(file):
    with open(file, "rb") as data:
        return hashlib.sha256(data.read()).hexdigest()


class Study:
    """What lies in the folder of a study."""

    def __init__(self, folder):
        self.folder = folder

    def rounds(self):
        rounds = {}
        base = self.folder + "/rounds"
        for name in sorted(os.listdir(base)) if os.path.isdir(base) else []:
            text = base + "/" + name + "/round.txt"
            if name.isdigit() and os.path.exists(text):
                with open(text) as file:
                    rounds[int(name)] = dict(
                        line.rstrip("\n").split(" ", 1) for line in file if " " in line)
        return rounds

    def wait(self, count):
        half_made = self.folder + "/work/new"  # goes with the end of the work
        wait_for(f"{count} rounds",
                 lambda: len(self.rounds()) == count and not os.path.exists(half_made))
        return self.rounds()


def flag(desk, clean, study):
    """Flags a part of the first baseline in its plot, makes the residual without it, takes it back."""
    before = study.rounds()
    flags = lambda: next(line.split()[1] for line in open(study.folder + "/study.txt")
                         if line.startswith("flags "))
    clean.key("alt+2")
    clean.window("against time")
    clean.key("f")
    x, y, wide, high = (int(line.split("=")[1]) for line in desk.do(
        "getwindowgeometry", "--shell", desk.do("getactivewindow")).split()[1:5])

    def drag():  # has points as soon as the data are read
        desk.do("mousemove", x + wide // 5, y + high // 8, "mousedown", 1)
        desk.do("mousemove", x + wide // 4, y + high // 6)
        desk.do("mousemove", x + wide // 3, y + high // 4, "mouseup", 1, "sleep", 0.4)
        return flags() == "1"
    wait_for("the flags in the study", drag)
    clean.key("F5")
    rounds = study.wait(len(before) + 1)
    last = rounds[max(rounds)]
    assert last["kind"] == "residual" and last["flags"] == "1", last
    assert last["maps"] != before[max(before)]["maps"], "the beam is that of other data"
    clean.window("against time")
    clean.key("ctrl+z")
    wait_for("no flags", lambda: flags() == "0")
    clean.key("ctrl+w")
    clean.window("pavane-clean")


def work(desk, program, folder):
    data = folder + "/observation.uvfits"
    before = digest(data)
    study = Study(folder + "/observation.pavane")
    clean = Program(desk, program, folder, "observation.uvfits", "--size", "256", "--cell", "0.1")
    clean.main()
    study.wait(1)
    # a rectangle about the middle of the map, which fills the left part of the window
    clean.key("2")
    left, top = clean.at(0.22, 0.27)
    right, bottom = clean.at(0.36, 0.47)
    desk.do("mousemove", left, top, "mousedown", 1)
    desk.do("mousemove", (left + right) // 2, (top + bottom) // 2)
    desk.do("mousemove", right, bottom, "mouseup", 1)
    clean.key("F5")
    first = study.wait(2)
    clean.key("F5")
    study.wait(3)
    rounds = study.rounds()
    ids = sorted(rounds)
    assert rounds[ids[1]]["parent"] == str(ids[0]) and rounds[ids[2]]["parent"] == str(ids[1])
    assert float(rounds[ids[2]]["fluxes"].split()[0]) > 0
    marks = {each: digest(f"{study.folder}/rounds/{each:04d}/round.txt") for each in first}
    # the areas as a set, and maps of another beam: nothing is cleaned for that
    clean.key("ctrl+t")
    box = clean.window("CLEAN areas")
    clean.key("alt+n")
    clean.type("core")
    clean.key("alt+k", "Return")
    clean.gone(box)
    wait_for("the set", lambda: os.path.exists(study.folder + "/area-sets"))
    clean.main()
    clean.key("shift+F4")
    box = clean.window("Beam shape")
    clean.key("alt+s", "Home", "Down", "alt+m")
    clean.key("ctrl+a")
    clean.type("1.5")
    clean.key("Return")
    clean.gone(box)
    restored = f"{study.folder}/rounds/{ids[2]:04d}/"
    wait_for("a map with that beam", lambda: [name for name in os.listdir(restored)
                                              if name.startswith("restored-")])
    assert len(study.rounds()) == 3
    clean.main()
    # a round that would take minutes is stopped: nothing of it stays
    clean.key("shift+F6")
    clean.type("500000000")
    clean.key("Return")
    half_made = study.folder + "/work/new"
    wait_for("the engine", lambda: os.path.isdir(half_made) and os.listdir(half_made))
    clean.key("ctrl+F5")
    wait_for("the end of the half-made round", lambda: not os.path.exists(half_made))
    assert len(study.rounds()) == 3, "a round that was stopped stays"
    clean.key("shift+F6")
    clean.type("50")
    # back to the first clean round, and a branch from it
    clean.key("F6", "F6", "F6")
    clean.key("Up", "Return", "F5")
    rounds = study.wait(4)
    assert rounds[max(rounds)]["parent"] == str(ids[1]), "the branch begins elsewhere"
    for each, mark in marks.items():
        assert digest(f"{study.folder}/rounds/{each:04d}/round.txt") == mark, "a round has changed"
    flag(desk, clean, study)
    clean.key("ctrl+q")
    clean.end()
    assert digest(data) == before, "the user's file has changed"
    left_over = [name for _, _, names in os.walk(study.folder) for name in names
                 if re.search(r"\.tmp$|^new", name)]
    assert not left_over, f"temporary files stay: {left_over}"


if not shutil.which(ENGINE) or not os.path.exists(os.path.dirname(sys.argv[1]) + "/pavane-ms"):
    print("skipped: there is no", ENGINE, "or no pavane-ms")
    sys.exit(1 if os.environ.get("CI") else 77)
run_test(simulate, work)
