#!/usr/bin/env python3
"""Goes through the planes of a cube with real keys, on an X server of its own.

usage: plane_e2e.py PAVANE_VIEW FOLDER

Page Down and Page Up, a number typed in its field (reached by F6), one that is none, the slider and
"Play" (reached by Tab), Alt+Left and Alt+Right: after each step map, title and status line show
that plane.
"""
from desk import Look, Program, on_sky, run_test, wait_for, write_fits

SIDE, PLANES = 64, 12


def write_cube(folder):
    """Plane p has a bright square at column 4 p."""
    write_fits(folder + "/map.fits", (SIDE, SIDE, PLANES), (
        1.0 + plane if abs(column - 4 * plane - 6) < 4 and abs(row - 32) < 12 else row / 640
        for plane in range(PLANES) for row in range(SIDE) for column in range(SIDE)),
        **on_sky(SIDE, 1e-6), CTYPE3="VRAD", CUNIT3="m/s", CRVAL3=-3000.0, CRPIX3=1, CDELT3=500.0)


def work(desk, program, folder):
    view = Program(desk, program, folder, "map.fits")
    left, top, width, height = view.place()
    # the plot, its title, and the bar with the status line below
    look = Look(desk, (left + width // 4, top + height // 4, width // 2, height // 2),
                (left + width // 4, top + 60, width // 2, 40), (left, top + height - 55, width, 55))
    desk.do("mousemove", left + width // 2, top + 5)  # the status tells of no pointer
    wait_for("a map, its title and the status", look.is_drawn)  # a window is there before they are
    first = look.changed("the cube")

    def again(what, shown, *keys):
        """Map and title as they were; the status may say how they came about."""
        view.key(*keys)
        look.again(what, shown, 2)

    def changed(what, before, *keys):
        view.key(*keys)
        return look.changed(what, before)

    second = changed("Page Down", first, "Next")
    changed("Page Down again", second, "Next")
    again("Page Up", second, "Prior")
    again("Page Up again", first, "Prior")
    again("Page Up on the first plane", first, "Prior")
    # the first key, all of the map, ends the step of the views that paging made: how long ago it
    # was does not matter then
    tenth = changed("the number of a plane", first, "0", "F6", "1", "0", "Return")
    again("a number that is none", tenth, "F6", "x", "Return")
    again("the view before it", first, "alt+Left")
    again("the view after it", tenth, "alt+Right")
    last = changed("an arrow on the slider", tenth, "F6", "shift+Tab", "Right")
    again("Home on the slider", first, "Home")
    again("End on the slider", last, "End")
    view.key("shift+Tab", "space")
    wait_for("a plane that plays", lambda: look.pixels()[:2] != last[:2])
    again("a number that stops it, reached round by Tab", tenth, "shift+Tab", "1", "0", "Return")


run_test(write_cube, work)
