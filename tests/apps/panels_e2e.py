#!/usr/bin/env python3
"""Looks at panels of visibilities in pavane-view with nothing but keys, on an X server of its own.

usage: panels_e2e.py PAVANE_VIEW PAVANE_SIMULATE FOLDER

Goes to closure phases and to amplitude and phase against time, turns pages, goes to other
baselines, to panels and scales, zooms what has the focus and comes back, chooses triangles in
their dialog: after each step the pixels of the plot say what came of it.
"""
import time

from desk import GESTURE, Look, Program, run_test, simulated, wait_for


class Panels(Program):
    def __init__(self, desk, program, folder):
        super().__init__(desk, program, folder, "observation.uvfits", "--plot", "bandpass",
                         "--panels", "4")
        left, top, width, height = self.place()
        self.plot = Look(desk, (left + width // 2, top + 30, width // 2, height - 60))
        desk.do("mousemove", 2, 2)  # off the plot, which has a line at the pointer

    def press(self, what, *keys, like=None):
        """Waits until the keys have changed the plot and it rests; or is `like` other pixels."""
        self.main()
        before = self.plot.pixels()
        self.key(*keys)
        return self.plot.again(what, like) if like else self.plot.changed(what, before)


def walk(view, first):
    """Pages, panels and scales of what is plotted, each there and back."""
    for what, there, back in (("next page", "Next", "Prior"), ("panels before", "shift+n", "n"),
                              ("next panel", "F6", "shift+F6"),
                              ("zoomed x", "plus", "0"), ("moved x", "plus", "7")):
        view.press(what, there)
        view.press("back from " + what, back, like=first)
    scale = view.press("a scale", "Tab")
    zoomed = view.press("the scale zoomed", "plus")
    time.sleep(GESTURE)
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
            view.key(*keys)
            view.gone(box)
        view.main()
        wait_for("the plot after the dialog",
                 lambda: (view.plot.pixels() == before) == (keys == ["Escape"]))


def work(desk, program, folder):
    view = Panels(desk, program, folder)
    view.press("closure phases", "alt+3")
    phases = view.press("the focus, from the table", "F6")
    walk(view, phases)
    triangles(view, phases)
    walk(view, view.press("amplitude and phase against time", "alt+2"))
    view.press("amplitude against distance", "alt+1")
    view.key("ctrl+q")
    view.end()


run_test(simulated, work)
