#!/usr/bin/env python3
"""What a user of pavane-clean waits for, in a window on an X server of its own, with the real engine.

usage: clean_figures.py BIN FOLDER [SIDE [CELL]]

BIN has pavane-clean, pavane-ms, pavane-view and pavane-simulate of a release build. Prints, for maps
of SIDE squared cells of CELL mas: the longest stretch in which the window did not ask for messages
(with the processor time of it) for each thing done; a round from the key to the shown residual
beside the same commands by hand and a picture by pavane-view; how long after "Stop now" the engine is
gone; an earlier round from the key to the map; the greatest memory of the program.
"""
import os
import shutil
import signal
import statistics
import subprocess
import sys
import time

here = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, here + "/../../tests/apps")
from desk import Desk, Program  # noqa: E402

STOPS = 30
PATIENCE = 600


def wait(test, what):
    end = time.monotonic() + PATIENCE
    while not test():
        if time.monotonic() > end:
            sys.exit("waited in vain for " + what)
        time.sleep(0.002)
    return time.time()


def fields(file):
    found = {}
    with open(file) as lines:
        for line in lines:
            name, _, value = line.rstrip("\n").partition(" ")
            found.setdefault(name, []).append(value)
    return found


def status(pid, name):
    with open(f"/proc/{pid}/status") as lines:
        return next(line.split()[1] for line in lines if line.startswith(name))


def engines(pid):
    """Processes of the engine below a program."""
    found = []
    for each in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{each}/stat") as stat:
                text = stat.read()
            parent = int(text.rsplit(")", 1)[1].split()[1])
            if "wsclean" in text and (parent == pid or pid in ancestors(parent)):
                found.append(int(each))
        except OSError:
            pass
    return found


def ancestors(pid):
    chain = []
    while pid > 1:
        chain.append(pid)
        try:
            with open(f"/proc/{pid}/stat") as stat:
                pid = int(stat.read().rsplit(")", 1)[1].split()[1])
        except OSError:
            break
    return chain


class Stretches:
    """What busy_stretches.c has written."""

    def __init__(self, file):
        self.file = file
        self.read = 0

    def new(self):
        try:
            with open(self.file) as lines:
                every = [tuple(map(float, line.split())) for line in lines]
        except OSError:
            return []
        fresh, self.read = every[self.read:], len(every)
        return fresh

    def rest(self):
        """Until nothing has happened for half a second; all since the last call."""
        every = []
        last = time.monotonic()
        while time.monotonic() - last < 0.5:
            fresh = self.new()
            if [one for one in fresh if one[1] > 8]:
                last = time.monotonic()
            every += fresh
            time.sleep(0.02)
        return every

    def tell(self, what, every=None):
        every = self.rest() if every is None else every
        longest = max(every, key=lambda one: one[1], default=(0, 0, 0))
        print(f"{what:34} longest stretch {longest[1]:7.1f} ms, processor {longest[2]:7.1f} ms")
        return every


def by_hand(study, number, folder, view):
    """The commands of a round, child for child, in a copy of the study, and a picture."""
    shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(study, folder)
    commands = [line.split("\t") for line in fields(f"{study}/rounds/{number:04d}/round.txt")["command"]]
    shutil.rmtree(folder + "/work/new", ignore_errors=True)
    os.makedirs(folder + "/work/new")
    os.makedirs(folder + "/rounds/.new")
    residual = next(words[2] for words in commands if words[0] == "mv" and "residual" in words[2])
    # back to the data as they were
    parent = int(fields(f"{study}/rounds/{number:04d}/round.txt")["parent"][0])
    model = f"rounds/{parent:04d}/model.fits"
    if os.path.exists(folder + "/" + model):
        shutil.copy(folder + "/" + model, folder + "/work/new/p-model.fits")
        subprocess.run(["wsclean", "-reorder", "-temp-dir", "work/new", "-predict", "-pol", "I",
                        "-name", "work/new/p", "work/data.ms"], cwd=folder,
                       stdout=subprocess.DEVNULL, check=True)
    began = time.monotonic()
    for words in commands:
        subprocess.run(words, cwd=folder, check=True, stdout=subprocess.DEVNULL)
    subprocess.run([view, residual, "--batch", "--png", "shown.png"], cwd=folder, check=True,
                   stdout=subprocess.DEVNULL, env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))
    return time.monotonic() - began


def main():
    bin_folder, folder = map(os.path.abspath, sys.argv[1:3])
    side = int(sys.argv[3]) if len(sys.argv) > 3 else 2048
    cell = sys.argv[4] if len(sys.argv) > 4 else "0.05"
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    subprocess.run(["cc", "-O2", "-shared", "-fPIC", "-o", folder + "/busy.so",
                    here + "/busy_stretches.c", "-ldl"], check=True)
    subprocess.run([bin_folder + "/pavane-simulate", "--out", folder, "--size", "64", "--clean", "10",
                    "--hours", "1"], check=True, stdout=subprocess.DEVNULL)
    with open(folder + "/pavane-clean", "w") as script:
        script.write(f'#!/bin/sh\nLD_PRELOAD={folder}/busy.so PAVANE_STRETCHES={folder}/stretches.txt '
                     f'exec {bin_folder}/pavane-clean "$@"\n')
    os.chmod(folder + "/pavane-clean", 0o755)
    desk = Desk(folder)
    try:
        figures(desk, bin_folder, folder, side, cell)
    finally:
        desk.close()


def figures(desk, bin_folder, folder, side, cell):
    stretches = Stretches(folder + "/stretches.txt")
    study = folder + "/observation.pavane"
    rounds = study + "/rounds"

    def count():
        return len([n for n in os.listdir(rounds) if n.isdigit()]) if os.path.isdir(rounds) else 0

    clean = Program(desk, folder + "/pavane-clean", folder, "observation.uvfits", "--size",
                    str(side), "--cell", cell)
    clean.main()
    wait(lambda: count() == 1, "the dirty map")
    stretches.tell("import, dirty map, first show")
    clean.key("2")
    left, top = clean.at(0.25, 0.32)
    right, bottom = clean.at(0.33, 0.42)
    desk.do("mousemove", left, top, "mousedown", 1, "mousemove", right - 9, bottom - 9, "mousemove",
            right, bottom, "mouseup", 1)
    stretches.tell("an area is drawn")
    clean.key("shift+F6")
    clean.type("200")
    clean.key("F6")
    stretches.rest()
    for number in (1, 2):
        began = time.time()
        clean.key("F5")
        made = wait(lambda: count() == number + 1, "a round")
        every = stretches.tell(f"round {number}")
        shown = max([one[0] / 1e3 for one in every if one[1] > 8], default=made)
        hand = by_hand(study, number, folder + "/hand", bin_folder + "/pavane-view")
        print(f"round {number}: key to folder {made - began:.2f} s, to shown {shown - began:.2f} s, "
              f"by hand {hand:.2f} s")
    shutil.rmtree(folder + "/hand")
    # back, and forth
    clean.key("F6", "F6")
    for key in ("Up", "Down", "Up"):
        stretches.rest()
        began = time.time()
        clean.key(key)  # the round of the line is shown at once
        every = stretches.rest()
        shown = max([one[0] / 1e3 for one in every if one[1] > 4], default=began)
        stretches.tell(f"back to a round: {1e3 * (shown - began):.0f} ms", every)
    clean.main()
    clean.key("F6", "F6")  # from the rounds to the row
    clean.type("500000000")
    gone = []
    for _ in range(STOPS):
        stretches.rest()
        clean.key("F5")
        wait(lambda: engines(clean.pid), "the engine")
        time.sleep(0.1 + 0.05 * len(gone))
        clean.key("ctrl+F5")
        began = time.time()
        gone.append(wait(lambda: not engines(clean.pid), "the end of the engine") - began)
        wait(lambda: not os.path.exists(study + "/work/new"), "the end of the round")
    stretches.tell(f"{STOPS} stops")
    print(f"stop: engine gone within {max(gone):.2f} s, median {statistics.median(gone):.2f} s, "
          f"{sum(t < 2.5 for t in gone)} of {STOPS} in 2.5 s; rounds {count()}")
    print(f"memory: {int(status(clean.pid, 'VmHWM')) / 1e3:.0f} MB at most; "
          f"a map is {side * side * 4 / 1e6:.0f} MB")
    os.kill(clean.pid, signal.SIGTERM)


if __name__ == "__main__":
    main()
