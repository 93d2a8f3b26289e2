#!/usr/bin/env python3
"""Plays with the colours of a map with a real pointer and keyboard, on an X server of its own.

usage: play_e2e.py PAVANE_VIEW FOLDER

Drags with the right button, takes the drag back through the views and forward again, gives one up
with Escape, opens the dialog with its key, moves a handle by arrows, chooses a range by a button's
key, and cancels: after each step the pixels of the map say what came of it.
"""
from desk import Look, Program, piece_about, run_test
from window_e2e import write_map

SIDE = 160  # of the piece of the map that is looked at


def work(desk, program, folder):
    view = Program(desk, program, folder, "map.fits")
    x, y = view.at(0.5, 0.5)
    look = Look(desk, piece_about((x, y), SIDE))

    def drag(*end):
        """From beside the middle with the right button."""
        desk.do("mousemove", x - SIDE, y, "mousedown", 3)
        for i in range(1, 6):
            desk.do("mousemove", x - SIDE + 10 * i, y - 12 * i)
        desk.do(*end)

    desk.do("mousemove", x - SIDE, y)
    view.key("0")
    plain = look.changed("the map")
    drag()
    played = look.changed("a drag of the right button", plain)
    view.key("Escape")
    look.again("the drag given up", plain)
    desk.do("mouseup", 3)
    drag("mouseup", 3)
    look.again("the same drag", played)
    view.key("alt+Left")
    look.again("the view before it", plain)
    view.key("alt+Right")
    look.again("the view after it", played)
    view.key("p")
    dialog = view.window("Colours", True)
    desk.do("windowmove", "--sync", dialog, 720, 620)  # off what is looked at
    view.key("Tab", *["Left"] * 6)  # the high end, from the low one
    moved = look.changed("arrows on a handle", played)
    view.key("alt+z")
    look.changed("the range of zscale", moved)
    view.key("Escape")
    look.again("what was before the dialog", played)


if __name__ == "__main__":
    run_test(write_map, work)
