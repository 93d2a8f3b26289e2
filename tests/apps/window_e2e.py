#!/usr/bin/env python3
"""Drives pavane-view with a real pointer and keyboard on an X server of its own.

usage: window_e2e.py PAVANE_VIEW FOLDER

Draws the four shapes, turns one, drags a vertex, undoes, redoes, zooms and zooms back, saves areas
and mask, and compares the mask with the one that the saved areas give in batch. Then it kills the
program in the middle of work and takes the areas back. Every step waits for what it causes: the
copy of the unsaved areas, the title, a file.
"""
import array
import glob
import math
import os
import signal
import struct
import subprocess

from desk import Failure, Program, on_sky, run_test, wait_for, write_fits

SIZE = 256


def write_map(folder):
    """A jet that bends, in a map of SIZE x SIZE cells of 0.1 mas."""
    knots = [(128 - 14 * step, 128 + 2.5 * step * step, 1 + step) for step in range(6)]
    write_fits(folder + "/map.fits", (SIZE, SIZE), (
        sum(math.exp(-((column - x) ** 2 + (row - y) ** 2) / 50) / weight for x, y, weight in knots)
        + 1e-3 * ((row * 7 + column * 13) % 11 - 5) for row in range(SIZE) for column in range(SIZE)),
        **on_sky(SIZE, 2.7778e-8), BMAJ=2.0e-7, BMIN=1.5e-7, BPA=10.0, EQUINOX=2000.0, OBJECT="TEST")


def cells_of(name):
    """The cells of a mask file and how many are set."""
    with open(name, "rb") as file:
        bytes_ = file.read()
    end = bytes_.index(b"END" + b" " * 77)
    data = bytes_[(end // 2880 + 1) * 2880:][:4 * SIZE * SIZE]
    cells = array.array("f", data)
    cells.byteswap()
    return cells, sum(1 for c in cells if c)


def records_of(bytes_):
    """Class name, the shape's numbers and whether it is a polygon that is still open, of each area
    in a stored collection."""
    _, count = struct.unpack_from("<ii", bytes_)
    records, at = [], 8
    for _ in range(count):
        name = bytes_[at:at + 32].split(b"\0")[0].decode()
        style, = struct.unpack_from("<I", bytes_, at + 32)
        at += 32 + 56
        if "Area" in name:
            size = 4 + 16 * struct.unpack_from("<i", bytes_, at)[0]
        else:
            size = 56 if "Rotate" in name or "Ellipse" in name else 44
        records.append((name, bytes_[at:at + size], "Area" in name and not style & 0x40))
        at += size
    return records


class Areas(Program):
    """What the program has done is read from the copy of the unsaved areas."""

    def click(self, x, y, times=1):
        self.desk.do("mousemove", *self.at(x, y))
        self.desk.do("click", "--repeat", times, "--delay", 30, 1)

    def drag(self, start, end, held=None):
        x0, y0 = self.at(*start)
        x1, y1 = self.at(*end)
        if held:
            self.desk.do("keydown", held)
        self.desk.do("mousemove", x0, y0, "mousedown", 1)
        for i in range(1, 9):
            self.desk.do("mousemove", x0 + (x1 - x0) * i // 8, y0 + (y1 - y0) * i // 8)
        self.desk.do("mouseup", 1)
        if held:
            self.desk.do("keyup", held)

    def copy(self):
        names = glob.glob(self.folder + f"/config/pavane-view/autosave-*-{self.pid}.areas")
        if not names:
            return b""
        with open(names[0], "rb") as file:
            return file.read()

    def areas(self):
        """Class names of the areas, without the polygon that is being drawn."""
        copy = self.copy()
        return [name for name, _, is_open in records_of(copy) if not is_open] if copy else []

    def shapes(self):
        """Numbers of the areas, and of the polygon that is being drawn (or None)."""
        records = records_of(self.copy() or struct.pack("<ii", -1, 0))
        return ([numbers for _, numbers, is_open in records if not is_open],
                next((numbers for _, numbers, is_open in records if is_open), None))

    def corners(self):
        """Of the last area, a polygon."""
        return struct.unpack_from("<i", self.shapes()[0][-1])[0]

    def width(self, index):
        """Width of a rectangle in data values."""
        left, _, right, _ = struct.unpack_from("<4d", self.shapes()[0][index])
        return abs(right - left)

    def step(self, key, what, areas, opened=None):
        """Presses a key once and waits for these areas and this open polygon."""
        self.key(key)
        wait_for(what, lambda: self.shapes() == (areas, opened))

    def current(self):
        copy = self.copy()
        return struct.unpack_from("<i", copy)[0] if copy else None

    def await_change(self, before, item, what):
        """Waits until area `item` and no other has changed, and for the pointer to have let go."""
        def others(shapes):
            return shapes[:item] + shapes[item + 1:]
        wait_for(what, lambda: len(self.shapes()[0]) == len(before) and
                 self.shapes()[0][item] != before[item])
        after = self.shapes()[0]
        if others(after) != others(before):
            raise Failure(what + " changed another area")
        return after

    def save_as(self, key, box, name, agree=False):
        self.main()
        self.key(key)
        window = self.window(box)
        self.key("ctrl+a")
        self.type(self.folder + "/" + name)
        self.key("Return")
        self.gone(window)
        if agree:  # to what the format cannot hold
            losses = self.window(box)
            self.key("Return")
            self.gone(losses)
        wait_for(name, lambda: os.path.exists(self.folder + "/" + name))


def without_names(names):
    return [n.replace("ARP", "A").replace("TrackerInAxis", "Tracker") for n in names]


def draw_four(view):
    view.key("2")
    view.drag((0.30, 0.30), (0.42, 0.42))
    wait_for("a rectangle", lambda: len(view.areas()) == 1)
    view.key("3")
    view.drag((0.50, 0.28), (0.66, 0.38))
    wait_for("a turned rectangle", lambda: len(view.areas()) == 2)
    view.key("4")
    view.drag((0.28, 0.55), (0.42, 0.70))
    wait_for("an ellipse", lambda: len(view.areas()) == 3)
    view.key("5")
    for x, y in ((0.50, 0.55), (0.66, 0.52), (0.68, 0.66)):
        view.click(x, y)
    view.desk.do("mousemove", *view.at(0.52, 0.72))
    view.desk.do("click", "--repeat", 2, "--delay", 40, 1)
    wait_for("a polygon", lambda: len(view.areas()) == 4)
    shapes = without_names(view.areas())
    if shapes != ["ARectTracker", "ARotateRectTracker", "AEllipseTracker", "AAreaTracker"]:
        raise Failure("the areas are " + " ".join(shapes))


def first_corners(polygon, count):
    return struct.pack("<i", count) + polygon[4:4 + 16 * count]


def change_and_undo(view):
    """Each step back and forth is known by what it changes; one key is one step."""
    # a vertex of the polygon, which is current
    view.key("1")
    drawn, opened = view.shapes()
    corners = struct.unpack_from("<i", drawn[3])[0]
    if opened or view.current() != 3 or corners != 4:
        raise Failure(f"a polygon of {corners} corners was drawn")
    view.drag((0.66, 0.52), (0.70, 0.47))
    moved = view.await_change(drawn, 3, "a moved vertex")
    if len(moved[3]) != len(drawn[3]):
        raise Failure("a vertex was added instead of moved")
    # the turning handle lies halfway from the centre to the side where values grow
    view.click(0.58, 0.33, times=2)
    wait_for("the turned rectangle to be picked", lambda: view.current() == 1)
    view.drag((0.54, 0.33), (0.55, 0.42), held="shift")
    turned = view.await_change(moved, 1, "a turned rectangle")
    if turned[1][:32] != moved[1][:32]:
        raise Failure("the rectangle was not only turned")
    back = [("ctrl+z", "undo of the turn", moved, None),
            ("ctrl+z", "undo of the vertex", drawn, None)]
    back += [("ctrl+z", f"{n} corners of an open polygon", drawn[:3],
              first_corners(drawn[3], n) if n else None) for n in (4, 3, 2, 1, 0)]
    for step in back:
        view.step(*step)
    for _, what, areas, polygon in back[-2::-1] + [("", "the turn", turned, None)]:
        view.step("ctrl+shift+z", "redo to " + what, areas, polygon)


def zoom_and_back(view, desk):
    """A rectangle drawn on the zoomed map is smaller, one drawn after zooming back is not."""
    def draw():
        count = len(view.areas())
        view.key("2")
        view.drag((0.44, 0.44), (0.47, 0.47))
        wait_for("one more rectangle", lambda: len(view.areas()) == count + 1)
        return view.width(count)

    plain = view.width(0) / 0.12  # of the rectangle drawn first, a window's width
    desk.do("mousemove", *view.at(0.45, 0.5))
    desk.do("keydown", "ctrl")
    desk.do("click", "--repeat", 3, "--delay", 10, 4)
    desk.do("keyup", "ctrl")
    zoomed = draw() / 0.03
    view.key("7")
    back = draw() / 0.03
    if not zoomed < 0.8 * plain or abs(back - plain) > 0.1 * plain:
        raise Failure(f"zooming shows {plain:.3g}, then {zoomed:.3g}, back {back:.3g}")


def copy_picture(view, desk):
    """The key and the line of the menu put the picture of the map where other programs find it."""
    def picture():
        shown = desk.clipboard("-t", "image/png")
        return shown if shown.startswith(b"\x89PNG") else b""
    sizes = []
    for way in (["ctrl+c"], ["alt+e", "p"]):
        subprocess.run(["xclip", "-selection", "clipboard"], env=desk.env, input=b"before",
                       check=True)
        view.main()
        for key in way:
            view.key(key)
        png = wait_for("a picture on the clipboard", picture)
        sizes.append(struct.unpack(">4s2I", png[12:24]))
    width, height = view.place()[2:]
    if len(set(sizes)) != 1 or sizes[0][1] != width or not 0.8 * height < sizes[0][2] < height:
        raise Failure(f"the window is {width} x {height}, the picture {sizes}")


def click_and_delete(view):
    """Near a vertex Del takes that one; a click on the first vertex closes a polygon."""
    count = len(view.areas())
    view.key("5")
    for x, y in ((0.20, 0.72), (0.27, 0.72), (0.27, 0.82), (0.20, 0.82), (0.204, 0.725)):
        view.click(x, y)
    wait_for("a polygon", lambda: len(view.areas()) == count + 1 and view.corners() == 4)
    left, top = view.at(0.27, 0.82)
    view.desk.do("mousemove", left + 4, top + 4, "click", 1)
    view.key("Delete")
    wait_for("a deleted vertex", lambda: len(view.areas()) == count + 1 and view.corners() == 3)
    view.click(0.22, 0.76)
    view.key("Delete")
    wait_for("a deleted polygon", lambda: len(view.areas()) == count)


def compare_masks(program, folder, desk):
    # a region file may run around a shape the other way, which moves cells of its edges
    for areas, share in (("saved.areas", 0), ("saved.cma", 0), ("saved.reg", 0.05)):
        subprocess.run([program, "map.fits", "--batch", "--areas", areas, "--mask", "again.fits"],
                       cwd=folder, env=desk.env, check=True)
        drawn, count = cells_of(folder + "/mask.fits")
        computed, _ = cells_of(folder + "/again.fits")
        different = sum(1 for a, b in zip(drawn, computed) if a != b)
        if count < 500 or different > share * count:
            raise Failure(f"{areas}: {different} cells differ from the {count} of the window")


def session_of_work(desk, program, folder):
    view = Areas(desk, program, folder, "map.fits")
    view.main()
    draw_four(view)
    change_and_undo(view)
    zoom_and_back(view, desk)
    copy_picture(view, desk)
    click_and_delete(view)
    if "*" not in desk.title(view.main()):
        raise Failure("the title does not say that areas are unsaved")
    view.save_as("ctrl+m", "Save mask", "mask.fits")
    view.save_as("ctrl+shift+s", "Save areas", "saved.areas")
    wait_for("a title without a star", lambda: "*" not in desk.title(view.main()))
    if view.copy():
        raise Failure("the copy is still there after saving")
    view.save_as("ctrl+shift+s", "Save areas", "saved.reg")
    view.save_as("ctrl+shift+s", "Save areas", "saved.cma", agree=True)
    compare_masks(program, folder, desk)
    view.main()
    view.key("ctrl+q")
    view.end()


def crash_and_come_back(desk, program, folder):
    view = Areas(desk, program, folder, "map.fits")
    view.main()
    view.key("2")
    view.drag((0.30, 0.30), (0.42, 0.42))
    wait_for("a rectangle", lambda: len(view.areas()) == 1)
    lost = view.copy()
    view.process.send_signal(signal.SIGKILL)
    view.process.wait()

    view = Areas(desk, program, folder, "map.fits")
    question = view.window("pavane-view", whole=True)
    view.key("alt+y")
    view.gone(question)
    wait_for("the areas of the killed session", lambda: view.copy()[8:] == lost[8:])
    # the old copy goes once the new one is written
    wait_for("one copy alone", lambda: len(glob.glob(folder + "/config/pavane-view/autosave-*.areas")) == 1)
    view.main()
    view.key("ctrl+q")
    wait_for("the question about unsaved areas", lambda: len(desk.windows(view.pid)) > 1)
    view.key("alt+n")
    view.end()
    if glob.glob(folder + "/config/pavane-view/autosave-*"):
        raise Failure("a copy is left after a clean end")


def work(desk, program, folder):
    session_of_work(desk, program, folder)
    crash_and_come_back(desk, program, folder)


if __name__ == "__main__":
    run_test(write_map, work)
