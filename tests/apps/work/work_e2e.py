#!/usr/bin/env python3
"""Kills pavane-view with several maps, areas, a profile and contours of another map, and brings the
work back with the keyboard: one question, nothing lost.

usage: work_e2e.py PAVANE_VIEW FOLDER
"""
import glob
import math
import os
import signal
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
from desk import Failure, Program, on_sky, run_test, wait_for, write_fits

SIZE = 96


def write_maps(folder):
    for name, x in (("one.fits", 40), ("two.fits", 52)):
        write_fits(f"{folder}/{name}", (SIZE, SIZE),
                   (math.exp(-((c - x) ** 2 + (r - 48) ** 2) / 60) + 1e-4 * ((r * 7 + c * 3) % 5)
                    for r in range(SIZE) for c in range(SIZE)), **on_sky(SIZE, 2.7778e-8))


def copies(folder, ending):
    return glob.glob(f"{folder}/config/pavane-view/autosave-*{ending}")


def read(name):
    with open(name) as file:
        return file.read().split("\n")


def work(desk, program, folder):
    view = Program(desk, program, folder, "one.fits", "two.fits")
    view.main()
    if copies(folder, ""):
        raise Failure("there is a copy before anything was done")
    view.key("2", "Return")  # a rectangle
    wait_for("a copy of the areas", lambda: copies(folder, ".areas"))
    view.key("F8", "ctrl+k")
    view.key("x")
    view.key("plus")

    def is_kept():
        return any("contours=" in text and "[curve]" in text and "view=" in text
                   for text in ("\n".join(read(name)) for name in copies(folder, ".work")))
    wait_for("a copy of the work", is_kept)
    view.process.send_signal(signal.SIGKILL)
    view.process.wait()
    before = read(copies(folder, ".work")[0])

    view = Program(desk, program, folder, "one.fits")
    question = view.window("pavane-view", whole=True)
    if os.environ.get("PAVANE_KEEP_PICTURES"):
        desk.do("windowactivate", "--sync", question)
        os.system(f"DISPLAY={desk.env['DISPLAY']} import -window root {folder}/question.png")
    view.key("alt+y")
    view.gone(question)
    view.main()
    wait_for("one copy, of this process",
             lambda: [str(view.pid) in name for name in copies(folder, ".work")] == [True])
    if os.environ.get("PAVANE_KEEP_PICTURES"):
        os.system(f"DISPLAY={desk.env['DISPLAY']} import -window root {folder}/back.png")
    # all of it but the name of the copy of the areas
    def without_copies(lines):
        return [line for line in lines if not line.startswith("unsaved")]
    wait_for("the work as it was",
             lambda: without_copies(read(copies(folder, ".work")[0])) == without_copies(before))
    if len(copies(folder, ".areas")) != 1 or len(desk.windows(view.pid)) != 1:
        raise Failure("the areas are there twice, or there is a second question")
    view.key("ctrl+q")
    wait_for("the question about unsaved areas", lambda: len(desk.windows(view.pid)) > 1)
    view.key("alt+n")
    view.end()
    if copies(folder, ""):
        raise Failure("a copy is left after a clean end")


if __name__ == "__main__":
    run_test(write_maps, work)
