#!/usr/bin/env python3
"""Works on the components over a map with a real keyboard and pointer, on an X server of its own.

usage: components_e2e.py PAVANE_VIEW FOLDER

Opens a map with a model, edits a component in the table, undoes and redoes it, adds, duplicates and
deletes rows, picks a row by a click on its outline, copies it, types a digit that is also a key of the
menu, and saves: after each step the saved file or the clipboard says what came of it.
"""
from desk import WIDTH, Look, Program, run_test, wait_for
from window_e2e import write_map

PINK = (255, 110, 200)  # of selected outlines
MODEL = ["1 0.5 0 1 0 0 0 0.5", "2 1 0.002 0.5 30 90 0.003 0.5", "9 0.25 0.001 1 0 180 0.006 0.5"]


class Session(Program):
    def __init__(self, desk, program, folder):
        self.model, self.screen = folder + "/model.txt", Look(desk, (0, 0, WIDTH, 1000))
        with open(self.model, "w") as out:
            out.write("\n".join([str(len(MODEL)), *MODEL]) + "\n")
        super().__init__(desk, program, folder, "map.fits", "--model", "model.txt")
        self.main()

    def rows(self):
        with open(self.model) as file:
            lines = [l for l in file.read().split("\n") if l and not l.startswith(";")]
        return lines[1:]

    def saved(self, what, rows):
        """Saves with the key and waits until the file has these rows."""
        self.key("ctrl+s")
        wait_for(what, lambda: self.rows() == rows)

    def copied(self, what, text):
        """Copies the selection until the clipboard has the text."""
        def clip():
            self.key("ctrl+c")
            return self.desk.clipboard().decode()
        wait_for(what, lambda: text in clip())

    def selected_outline(self):
        """A place on the screen in the colour of the selected outline, the topmost."""
        shown, = self.screen.pixels()
        at = shown.find(bytes(PINK))
        while at >= 0 and at % 3:
            at = shown.find(bytes(PINK), at + 1)
        return (at // 3 % WIDTH, at // 3 // WIDTH) if at >= 0 else None


def work(desk, program, folder):
    session = Session(desk, program, folder)
    first, second, third = MODEL
    edited = first.replace("0.5", "70.25", 1)
    session.key("F6", "Right")
    session.type("70.25")  # 7 and 0 are keys of the map, but not here
    session.key("Return")
    session.saved("an edit", [edited, second, third])
    session.key("ctrl+z")
    session.saved("its undo", MODEL)
    session.key("ctrl+shift+z")
    session.saved("its redo", [edited, second, third])
    session.key("ctrl+z", "Home", "F2", "Down", "Return")
    session.saved("another kind", ["2" + first[1:], second, third])
    session.key("Insert")
    session.saved("a new row", ["2" + first[1:], second, "1 1 0 1 0 0 0 0.5", third])
    session.key("Up", "ctrl+d", "Delete", "Up", "ctrl+d")
    session.saved("a copy", ["2" + first[1:], second, second, "1 1 0 1 0 0 0 0.5", third])
    session.key("ctrl+z", "ctrl+z", "ctrl+z", "ctrl+z", "ctrl+z")
    session.saved("all of it undone", MODEL)
    session.key("ctrl+Home", "Down", "Down")
    session.copied("the third row", "\n3\t9\n")
    session.key("Up")
    session.copied("the second row", "\n2\tGaussian\n")
    place = wait_for("the outline of the second row", session.selected_outline)
    session.key("Up")
    session.copied("the first row", "\n1\tPoint\n")
    desk.do("mousemove", *place, "click", 1)
    session.key("shift+F6")
    session.copied("the row of the outline that was clicked", "\n2\tGaussian\n")


run_test(write_map, work)
