#!/usr/bin/env python3
"""Works on two maps in one window of pavane-view with nothing but keys, on an X server of its own.

usage: several_e2e.py PAVANE_VIEW FOLDER

Opens two maps with one command, links their areas, marks one, reads its numbers on both maps in the
table, looks at both side by side, blinks, reads a profile, and exports areas, its numbers and a picture.
"""
import math
import os

from desk import Look, Program, on_sky, run_test, wait_for, write_fits


def value(x, y, side, cell, peak):
    return (peak * math.exp(-((x - side / 2) ** 2 + (y - side / 2) ** 2) * (cell / 2.8e-8) ** 2 / 200)
            + 1e-3 * ((x * 7 + y * 13) % 11 - 5))


LOW, HIGH = (128, 2.8e-8, 1.0), (200, 1.4e-8, 0.4)  # side, cell in degrees, peak


def write_map(folder, name, side, cell, peak):
    write_fits(f"{folder}/{name}", (side, side), (
        value(x, y, side, cell, peak) for y in range(side) for x in range(side)),
        **on_sky(side, cell), BMAJ=2.0e-7, BMIN=1.5e-7, BPA=10.0, OBJECT="TEST")


def prepare(folder):
    write_map(folder, "low.fits", *LOW)
    write_map(folder, "high.fits", *HIGH)


class Maps(Program):
    def __init__(self, desk, program, folder):
        super().__init__(desk, program, folder, "low.fits", "high.fits")
        left, top, width, height = self.place()
        self.map = Look(desk, (left + 150, top + 120, width - 300, height // 2))

    def shows(self, file):
        self.file = file
        return self.main()

    def table(self):
        """The rows of the table of areas, by their title."""
        self.key("ctrl+a", "ctrl+shift+c")
        self.key("ctrl+c")
        text = wait_for("the table on the clipboard", lambda: self.desk.clipboard().decode())
        lines = [line.split("\t") for line in text.rstrip("\n").split("\n")]
        return dict(zip(lines[0], lines[1])) if len(lines) > 1 else {}


def work(desk, program, folder):
    view = Maps(desk, program, folder)
    view.shows("low.fits")
    view.key("alt+m", "p", "a")  # Maps > Linked maps > Areas
    first = view.map.changed("the map")
    view.key("4", "Return", "1")  # an ellipse in the middle
    view.map.changed("the area", first)
    view.shows("low.fits*")
    view.key("F7")
    low = view.map.changed("the table")
    rows = {"low": wait_for("numbers of the lower map", view.table)}
    view.key("Escape", "b")
    view.shows("high.fits")
    view.map.changed("the other map", low)
    view.key("F6")
    rows["high"] = wait_for("numbers of the higher map", lambda: (
        lambda row: row if row != rows["low"] else None)(view.table()))
    # the same ellipse on cells of half the size
    cells = [int(rows[of]["Cells"].replace("\u202f", "")) for of in ("low", "high")]
    assert 3.6 < cells[1] / cells[0] < 4.4, cells
    view.key("Escape", "ctrl+alt+2")
    both = view.map.changed("both side by side")
    view.key("plus")
    view.map.changed("both zoomed", both)
    view.key("ctrl+alt+1", "0", "ctrl+b")
    one = view.map.pixels()
    wait_for("a blink", lambda: view.map.pixels() != one)
    view.key("ctrl+b", "b")
    for file in ("low.fits*", "high.fits"):
        if view.desk.windows(view.pid) and any(file in desk.title(w) for w in desk.windows(view.pid)):
            view.file = file
    if "low" not in view.file:
        view.key("b")
    view.shows("low.fits*")
    view.save(["ctrl+s"], "Save areas", "marked.reg")
    view.shows("low.fits")
    view.key("shift+F8")
    line = view.window("Line of the profile")
    view.key("ctrl+a")
    view.type("20,64,108,64")
    view.key("Return")
    view.gone(line)
    tsv = view.save(["alt+s", "n"], "Save the numbers of the curve", "profile.tsv").decode()
    names, *rows = [row.split("\t") for row in tsv.rstrip("\n").split("\n") if not row.startswith("#")]
    x, v = (next(i for i, name in enumerate(names) if name.startswith(start)) for start in ("pixel_x", "Value"))
    assert len(rows) == 2 * 88 + 1, len(rows)
    for row in rows[::2]:  # those on centres of cells
        column = round(float(row[x])) - 1
        assert abs(float(row[v]) - value(column, 63, *LOW)) < 1e-6, row
    view.key("Escape", "F8")
    view.save(["ctrl+shift+p"], "Save picture", "picture.png")
    assert os.path.getsize(folder + "/picture.png") > 5000
    view.key("ctrl+q")
    view.end()


run_test(prepare, work)
