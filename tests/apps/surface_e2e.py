#!/usr/bin/env python3
"""Turns a map as a surface with a real pointer and keyboard, on an X server of its own.

usage: surface_e2e.py PAVANE_VIEW FOLDER

Opens a cube, shows it as a surface with Ctrl+3, turns it by arrows and by a drag that Escape takes
back, goes home, lets the pointer mark its cell in the map, and goes to the next plane with the
keyboard in the surface: after each step the pixels of both say what came of it. Without Xvfb,
xdotool, openbox or import it says so and ends with 77.
"""
import array
import math
import os
import shutil
import subprocess
import sys

from play_e2e import Session
from window_e2e import NEEDED, Desk, Failure, Program, wait_for

SIDE = 64  # cells of a plane


def write_cube(name):
    cards = [("SIMPLE", "T"), ("BITPIX", -32), ("NAXIS", 3), ("NAXIS1", SIDE), ("NAXIS2", SIDE),
             ("NAXIS3", 3), ("CTYPE3", "'VRAD'"), ("CUNIT3", "'m/s'"), ("CDELT3", 500.0)]
    head = "".join(f"{k:<8}= {str(v):>20}".ljust(80) for k, v in cards) + "END"
    cells = array.array("f", (math.exp(-((c - 24 - 8 * p) ** 2 + (r - 32) ** 2) / 90) * (1 + p)
                              for p in range(3) for r in range(SIDE) for c in range(SIDE)))
    cells.byteswap()
    with open(name, "wb") as out:
        out.write(head.ljust(2880).encode())
        out.write(cells.tobytes().ljust(-len(cells) * 4 // 2880 * -2880, b"\0"))


class Piece(Session):
    """A piece of the window about a place in it."""

    def __init__(self, desk, program, x, y):
        self.desk, self.program = desk, program
        self.middle = program.at(x, y)


def run(desk, program):
    key = program.key
    pane, map_, status = (Piece(desk, program, *at)
                          for at in ((0.75, 0.5), (0.25, 0.45), (0.15, 0.985)))
    desk.do("mousemove", *program.at(0.5, 0.1))
    alone = pane.changed("the map", b"")
    key("ctrl+3")
    first = pane.changed("the surface", alone)
    key("Right", "Right", "Up")
    turned = pane.changed("arrows", first)
    key("Home")
    pane.again("the first view", first)
    key("alt+Left")
    pane.again("the view before", turned)
    key("Home")
    pane.again("the first view again", first)
    x, y = pane.middle
    desk.do("mousemove", x, y, "mousedown", 1, "mousemove", x - 30, y + 5, "mousemove", x - 60, y + 9)
    pane.changed("a drag", first)
    key("Escape")
    desk.do("mouseup", 1, "mousemove", *program.at(0.5, 0.1))
    pane.again("the drag given up", first)
    plain, quiet = map_.changed("the map", b""), status.pixels()
    desk.do("mousemove", x, y)
    map_.changed("the mark of the cell that is pointed at", plain)
    wait_for("the cell in the status line", lambda: status.pixels() != quiet)
    desk.do("mousemove", *program.at(0.5, 0.1))
    map_.again("the map without the mark", plain)
    key("Next")
    pane.changed("the surface of the next plane", first)
    map_.changed("the map of the next plane", plain)
    key("Prior")
    pane.again("the surface of the first plane", first)
    map_.again("the map of the first plane", plain)


def main():
    missing = [name for name in NEEDED + ["import"] if not shutil.which(name)]
    if missing:
        print("skipped: there is no " + ", ".join(missing))
        return 1 if os.environ.get("CI") else 77
    program, folder = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    write_cube(folder + "/map.fits")
    desk = Desk(folder)
    try:
        run(desk, Program(desk, program, folder, "map.fits"))
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
