#!/usr/bin/env python3
"""Turns a map as a surface with a real pointer and keyboard, on an X server of its own.

usage: surface_e2e.py PAVANE_VIEW FOLDER

Opens a cube, shows it as a surface with Ctrl+3, turns it by arrows and by a drag that Escape takes
back, goes home, lets the pointer mark its cell in the map, and goes to the next plane with the
keyboard in the surface: after each step the pixels of both say what came of it.
"""
import math
import time

from desk import GESTURE, Look, Program, piece_about, run_test, wait_for, write_fits

SIDE = 64  # cells of a plane


def write_cube(folder):
    write_fits(folder + "/map.fits", (SIDE, SIDE, 3), (
        math.exp(-((c - 24 - 8 * p) ** 2 + (r - 32) ** 2) / 90) * (1 + p)
        for p in range(3) for r in range(SIDE) for c in range(SIDE)),
        CTYPE3="VRAD", CUNIT3="m/s", CDELT3=500.0)


def work(desk, program, folder):
    view = Program(desk, program, folder, "map.fits")
    key = view.key
    pane, map_, status = (Look(desk, piece_about(view.at(*at), 160))
                          for at in ((0.75, 0.5), (0.25, 0.45), (0.15, 0.985)))
    away = "mousemove", *view.at(0.5, 0.1)
    desk.do(*away)
    alone = pane.changed("the map")
    key("ctrl+3")
    first = pane.changed("the surface", alone)
    key("Right", "Right", "Up")
    turned = pane.changed("arrows", first)
    time.sleep(GESTURE)
    key("Home")
    pane.again("the first view", first)
    key("alt+Left")
    pane.again("the view before", turned)
    key("Home")
    pane.again("the first view again", first)
    x, y = view.at(0.75, 0.5)
    desk.do("mousemove", x, y, "mousedown", 1, "mousemove", x - 30, y + 5, "mousemove", x - 60, y + 9)
    pane.changed("a drag", first)
    key("Escape")
    desk.do("mouseup", 1, *away)
    pane.again("the drag given up", first)
    plain, quiet = map_.changed("the map"), status.pixels()
    desk.do("mousemove", x, y)
    map_.changed("the mark of the cell that is pointed at", plain)
    wait_for("the cell in the status line", lambda: status.pixels() != quiet)
    desk.do(*away)
    map_.again("the map without the mark", plain)
    key("Next")
    pane.changed("the surface of the next plane", first)
    map_.changed("the map of the next plane", plain)
    key("Prior")
    pane.again("the surface of the first plane", first)
    map_.again("the map of the first plane", plain)


run_test(write_cube, work)
