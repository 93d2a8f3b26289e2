#!/usr/bin/env python3
"""Plays with the colours of a map with a real pointer and keyboard, on an X server of its own.

usage: play_e2e.py PAVANE_VIEW FOLDER

Drags with the right button, takes the drag back through the views and forward again, gives one up
with Escape, opens the dialog with its key, moves a handle by arrows, chooses a range by a button's
key, and cancels: after each step the pixels of the map say what came of it. Without Xvfb, xdotool,
openbox or import it says so and ends with 77.
"""
import os
import shutil
import subprocess
import sys

from window_e2e import NEEDED, Desk, Failure, Program, wait_for, write_map

SIDE = 160  # of the piece of the map that is looked at


class Session:
    def __init__(self, desk, program, folder):
        self.desk = desk
        self.program = Program(desk, program, folder, "map.fits")
        self.main = self.program.window("map.fits")
        left, top, width, height = self.program.place()
        self.middle = left + width // 2, top + height // 2

    def pixels(self):
        x, y = self.middle
        return subprocess.run(["import", "-window", "root", "-depth", "8", "-crop",
                               f"{SIDE}x{SIDE}+{x - SIDE // 2}+{y - SIDE // 2}", "rgb:-"],
                              env=self.desk.env, capture_output=True, check=True).stdout

    def changed(self, what, before):
        """Waits until the pixels are others and stay so; what they are then."""
        wait_for(what, lambda: self.pixels() != before)
        last = [b""]

        def rests():
            last[0], shown = self.pixels(), last[0]
            return shown == last[0]
        wait_for("rest after " + what, rests)
        return last[0]

    def again(self, what, pixels):
        wait_for(what, lambda: self.pixels() == pixels)

    def drag(self, x, y, end):
        """From beside the middle with the right button; `end`: what ends it."""
        x0, y0 = self.middle[0] - SIDE, self.middle[1]
        self.desk.do("mousemove", x0, y0, "mousedown", 3)
        for i in range(1, 6):
            self.desk.do("mousemove", x0 + x * i // 5, y0 + y * i // 5)
        end()


def run(session):
    desk, key = session.desk, session.program.key
    desk.do("mousemove", session.middle[0] - SIDE, session.middle[1])
    key("0")
    plain = session.changed("the map", b"")
    session.drag(50, -60, lambda: None)
    played = session.changed("a drag of the right button", plain)
    key("Escape")
    session.again("the drag given up", plain)
    desk.do("mouseup", 3)
    session.drag(50, -60, lambda: desk.do("mouseup", 3))
    session.again("the same drag", played)
    key("alt+Left")
    session.again("the view before it", plain)
    key("alt+Right")
    session.again("the view after it", played)
    key("p")
    dialog = session.program.window("Colours", True)
    desk.do("windowmove", "--sync", dialog, 720, 620)  # off what is looked at
    key("Tab", "Left", "Left", "Left", "Left", "Left", "Left")  # the high end, from the low one
    moved = session.changed("arrows on a handle", played)
    key("alt+z")
    session.changed("the range of zscale", moved)
    key("Escape")
    session.again("what was before the dialog", played)


def main():
    missing = [name for name in NEEDED + ["import"] if not shutil.which(name)]
    if missing:
        print("skipped: there is no " + ", ".join(missing))
        return 1 if os.environ.get("CI") else 77
    program, folder = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    write_map(folder + "/map.fits")
    desk = Desk(folder)
    try:
        run(Session(desk, program, folder))
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
