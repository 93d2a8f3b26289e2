#!/usr/bin/env python3
"""Goes through the planes of a cube with real keys, on an X server of its own.

usage: plane_e2e.py PAVANE_VIEW FOLDER

Page Down and Page Up, a number typed in its field (reached by F6), one that is none, Alt+Left and
Alt+Right: after each step map, title and status line show that plane. Without Xvfb, xdotool,
openbox or import it says so and ends with 77.
"""
import array
import os
import shutil
import subprocess
import sys

from window_e2e import NEEDED, Desk, Failure, Program, wait_for

SIDE, PLANES = 64, 12


def write_cube(name):
    """Plane p has a bright square at column 4 p."""
    cards = [("SIMPLE", "T"), ("BITPIX", -32), ("NAXIS", 3), ("NAXIS1", SIDE), ("NAXIS2", SIDE),
             ("NAXIS3", PLANES), ("CTYPE1", "'RA---SIN'"), ("CRVAL1", 187.7), ("CRPIX1", 32),
             ("CDELT1", -1e-6), ("CTYPE2", "'DEC--SIN'"), ("CRVAL2", 12.4), ("CRPIX2", 32),
             ("CDELT2", 1e-6), ("CTYPE3", "'VRAD    '"), ("CUNIT3", "'m/s     '"),
             ("CRVAL3", -3000.0), ("CRPIX3", 1), ("CDELT3", 500.0), ("BUNIT", "'JY/BEAM '")]
    head = "".join(f"{k:<8}= {str(v):>20}".ljust(80) for k, v in cards) + "END".ljust(80)
    cells = array.array("f", (
        1.0 + plane if abs(column - 4 * plane - 6) < 4 and abs(row - 32) < 12 else row / 640
        for plane in range(PLANES) for row in range(SIDE) for column in range(SIDE)))
    cells.byteswap()
    data = cells.tobytes()
    with open(name, "wb") as out:
        out.write(head.ljust(-(-len(head) // 2880) * 2880).encode())
        out.write(data.ljust(-(-len(data) // 2880) * 2880, b"\0"))


class Session:
    def __init__(self, desk, program, folder):
        self.desk = desk
        self.program = Program(desk, program, folder, "map.fits")
        self.main = self.program.window("map.fits")
        left, top, width, height = self.program.place()
        # the plot, its title, and the bar with the status line below
        self.parts = [(left + width // 4, top + height // 4, width // 2, height // 2),
                      (left + width // 4, top + 60, width // 2, 40),
                      (left, top + height - 55, width, 55)]
        desk.do("mousemove", left + width // 2, top + 5)  # the status tells of no pointer

    def pixels(self):
        shots = [subprocess.run(["import", "-window", "root", "-depth", "8", "-crop",
                                 "{2}x{3}+{0}+{1}".format(*part), "rgb:-"],
                                env=self.desk.env, capture_output=True, check=True).stdout
                 for part in self.parts]
        return shots

    def changed(self, what, before):
        """Waits until each part shows something else than before and stays so."""
        last = [before]

        def rests():
            last[0], shown = self.pixels(), last[0]
            return shown == last[0] and all(a != b for a, b in zip(shown, before))
        wait_for(what, rests)
        return last[0]

    def again(self, what, parts):
        """Map and title as they were; the status may say how they came about."""
        wait_for(what, lambda: self.pixels()[:2] == parts[:2])


def run(session):
    key = session.program.key
    first = session.changed("the cube", [b""] * 3)
    key("Next")
    second = session.changed("Page Down", first)
    key("Next")
    session.changed("Page Down again", second)
    key("Prior")
    session.again("Page Up", second)
    key("Prior")
    session.again("Page Up again", first)
    key("Prior")
    session.again("Page Up on the first plane", first)
    key("F6")
    key("1", "0", "Return")
    tenth = session.changed("the number of a plane", first)
    key("F6")
    key("x", "Return")
    session.again("a number that is none", tenth)
    key("alt+Left")
    session.again("the view before it", first)
    key("alt+Right")
    session.again("the view after it", tenth)


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
