#!/usr/bin/env python3
"""Looks at panels of visibilities in pavane-view with nothing but keys, on an X server of its own.

usage: panels_e2e.py PAVANE_VIEW PAVANE_SIMULATE FOLDER

Goes to closure phases and to amplitude and phase against time, turns pages, goes to other
baselines, to panels and scales, zooms what has the focus and comes back, chooses triangles in
their dialog: after each step the pixels of the plot say what came of it.
"""
import os
import shutil
import subprocess
import sys
import time

from data_e2e import DATA, View
from window_e2e import NEEDED, Desk, Failure, wait_for


class Panels(View):
    def __init__(self, desk, program, folder):
        super().__init__(desk, program, folder, DATA, "--plot", "bandpass", "--panels", "4")
        self.main()
        desk.do("mousemove", 2, 2)  # off the plot, which has a line at the pointer

    def pixels(self):
        left, top, width, height = self.place()
        return subprocess.run(["import", "-window", "root", "-depth", "8", "-crop",
                               f"{width // 2}x{height - 60}+{left + width // 2}+{top + 30}",
                               "rgb:-"], env=self.desk.env, capture_output=True, check=True).stdout

    def press(self, what, *keys, like=None):
        """Waits until the keys have changed the plot and it rests; or is `like` other pixels."""
        self.main()
        before = self.pixels()
        self.key(*keys)
        if like is not None:
            wait_for(what, lambda: self.pixels() == like)
            return like
        wait_for(what, lambda: self.pixels() != before)
        last = [b""]

        def rests():
            last[0], shown = self.pixels(), last[0]
            return shown == last[0]
        wait_for("rest after " + what, rests)
        return last[0]


def walk(view, first):
    """Pages, panels and scales of what is plotted, each there and back."""
    for what, there, back in (("next page", "Next", "Prior"), ("panels before", "shift+n", "n"),
                              ("next panel", "F6", "shift+F6"),
                              ("zoomed x", "plus", "0"), ("moved x", "plus", "7")):
        view.press(what, there)
        view.press("back from " + what, back, like=first)
    scale = view.press("a scale", "Tab")
    zoomed = view.press("the scale zoomed", "plus")
    view.press("the scale panned", "Up")
    view.press("the zoom before", "alt+Left", like=zoomed)
    view.press("the whole scale", "0", like=scale)
    view.press("the panel", "shift+Tab", like=first)


def triangles(view, before):
    """The dialog: given up it leaves the plot and its focus; those that were not marked come."""
    for keys in (["Escape"], ["alt+i", "alt+s", "Return"]):
        view.key("ctrl+r")
        box = view.window("Closure triangles")
        if keys == ["Escape"]:  # the first one may stop the counting there
            wait_for("the dialog given up",
                     lambda: view.key("Escape") or box not in view.desk.windows(view.pid))
        else:
            for key in keys:
                view.key(key)
                time.sleep(0.5)  # a button that a key presses stays down for a moment
            view.gone(box)
        view.main()
        wait_for("the plot after the dialog",
                 lambda: (view.pixels() == before) == (keys == ["Escape"]))


def main():
    missing = [tool for tool in NEEDED + ["import"] if not shutil.which(tool)]
    if missing:
        print("skipped: there is no " + ", ".join(missing))
        return 1 if os.environ.get("CI") else 77
    program, simulate, folder = (os.path.abspath(name) for name in sys.argv[1:4])
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    subprocess.run([simulate, "--out", folder, "--size", "64", "--clean", "10", "--hours", "2"],
                   check=True, stdout=subprocess.DEVNULL)
    desk = Desk(folder)
    try:
        view = Panels(desk, program, folder)
        view.press("closure phases", "alt+3")
        phases = view.press("the focus, from the table", "F6")
        walk(view, phases)
        triangles(view, phases)
        walk(view, view.press("amplitude and phase against time", "alt+2"))
        view.press("amplitude against distance", "alt+1")
        view.key("ctrl+q")
        view.end()
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
