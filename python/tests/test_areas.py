"""Areas: their masks beside `regions` and a slow reference, files, regions, what is refused."""
import copy
import os
import pickle
import tempfile
import threading
import unittest
import warnings
from pathlib import Path

import numpy as np

import pavane
from maps import header_of, write_map
from pavane import Area, Areas, PavaneWarning

try:
    import regions
    from astropy import units
    from astropy.coordinates import SkyCoord
except ImportError:
    regions = None


def random_areas(count, seed):
    random = np.random.default_rng(seed)
    for i in range(count):
        center, size, angle = random.uniform(-5, 75, 2), random.uniform(0.2, 60, 2), random.uniform(-200, 200)
        if i % 4 == 3:
            vertices = random.uniform(-20, 90, (random.integers(3, 20), 2))
            yield Area.polygon(np.round(2 * vertices) / 2 if i % 8 == 3 else vertices)
        else:
            yield [lambda: Area.rectangle(center, size), lambda: Area.rectangle(center, size, angle),
                   lambda: Area.ellipse(center, size, angle)][i % 4]()


def holds(area, x, y):
    """The rule of centres, plainly."""
    if area.kind == "polygon":
        crossings = 0
        for (ax, ay), (bx, by) in zip(area.vertices, np.roll(area.vertices, 1, axis=0)):
            if (ay > y) != (by > y) and x < (bx - ax) * (y - ay) / (by - ay) + ax:
                crossings += 1
        return crossings % 2 == 1
    turn = np.radians(area.angle)
    dx, dy = np.array((x, y)) - area.center
    u, v = dx * np.cos(turn) + dy * np.sin(turn), dy * np.cos(turn) - dx * np.sin(turn)
    half = area.size / 2
    if area.kind == "ellipse":
        return (u / half[0]) ** 2 + (v / half[1]) ** 2 < 1
    return abs(u) < half[0] and abs(v) < half[1]


def edge(mask):
    """The cells of a mask, and those beside them."""
    wide = np.pad(mask, 1)
    return sum(wide[1 + i:wide.shape[0] - 1 + i, 1 + j:wide.shape[1] - 1 + j].astype(int)
               for i in (-1, 0, 1) for j in (-1, 0, 1)) > 0


class Masks(unittest.TestCase):
    shape = 61, 70

    def test_centres_are_those_of_a_slow_reference_and_of_regions(self):
        for number, area in enumerate(random_areas(80, 3)):
            mask = Areas([area]).mask(self.shape, rule="centres")
            self.assertEqual((mask.dtype, mask.shape), (np.bool_, self.shape))
            if number < 16:
                slow = [[holds(area, x, y) for x in range(self.shape[1])] for y in range(self.shape[0])]
                np.testing.assert_array_equal(mask, slow, str(area))
            if regions:
                theirs = Areas([area]).to_regions()[0].to_mask("center").to_image(self.shape)
                expected = np.zeros(self.shape, bool) if theirs is None else theirs > 0
                np.testing.assert_array_equal(mask, expected, str(area))

    def test_outlines_add_no_more_than_two_cells(self):
        for area in random_areas(80, 4):
            areas = Areas([area])
            if area.kind != "polygon" and area.size.min() > 3:  # no gaps between centres
                make = Area.ellipse if area.kind == "ellipse" else Area.rectangle
                inside = Areas([make(area.center + 100, area.size, area.angle)])
                outline, centres = inside.mask((300, 300)), inside.mask((300, 300), rule="centres")
                self.assertFalse((outline & ~edge(edge(centres))).any(), str(area))
            bits = areas.mask(self.shape, packed=True)
            self.assertFalse(bits.flags.owndata)
            np.testing.assert_array_equal(
                np.unpackbits(bits, axis=1, count=self.shape[1], bitorder="little"), areas.mask(self.shape))

    def test_never_clean_areas_and_none_at_all(self):
        inner, outer = Area.rectangle((30, 30), (4, 4), never_clean=True), Area.rectangle((30, 30), (20, 20))
        self.assertTrue(Areas().mask((3, 4)).all())
        for rule, own, hole in (("outline", 441, 25), ("centres", 361, 9)):
            self.assertEqual(Areas([inner, outer]).mask(self.shape, rule=rule).sum(), own - hole)
            self.assertEqual((~Areas([inner]).mask(self.shape, rule=rule)).sum(), hole)

    def test_masks_come_back_from_their_areas(self):
        random = np.random.default_rng(5)
        masks = [random.random((rows, columns)) < share for rows, columns, share in
                 ((1, 1, 2), (1, 90, 0.5), (70, 1, 0.5), (40, 67, 0.1), (40, 67, 0.6), (33, 64, 0.95),
                  (9, 9, -1), (9, 9, 2))]
        masks += [np.eye(12, dtype=bool), masks[3][::-1, ::2], np.asfortranarray(masks[4])]
        for mask in masks:
            areas = Areas.from_mask(mask)
            for rule in ("outline", "centres"):
                np.testing.assert_array_equal(areas.mask(mask.shape, rule=rule), mask)
        masked = np.ma.masked_array([[True, True]], [[False, True]])
        self.assertEqual(Areas.from_mask(masked).mask((1, 2)).tolist(), [[True, False]])

    def test_threads_fill_the_same(self):
        areas, found = Areas(random_areas(40, 6)), []
        threads = [threading.Thread(target=lambda: found.append(areas.mask((500, 600)))) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertTrue(all((mask == found[0]).all() for mask in found) and len(found) == 4)


class Files(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.map = self.folder / "map.fits"
        cells = np.zeros((61, 70), np.float32)
        write_map(self.map, cells)
        self.header = header_of(cells)
        self.areas = Areas([Area.rectangle((30, 20), (8, 5)), Area.ellipse((40, 25), (12, 5), 30, name="jet A", color="red"),
                            Area.polygon([(5, 5), (20, 8), (9, 30)]),
                            Area.rectangle((50, 40), (9, 6), -20, never_clean=True)])

    def test_every_form_keeps_the_mask(self):
        shape = 61, 70
        for name, place in (("a.reg", {}), ("a.crtf", {}), ("sky.reg", {"map": self.map}),
                            ("sky.crtf", {"header": self.header}), ("a.areas", {"map": pavane.draw(self.map)}),
                            ("a.cma", {})):
            areas = self.areas[:3] if name == "a.cma" else self.areas
            file = self.folder / name
            with warnings.catch_warnings(record=True) as noted:
                warnings.simplefilter("always")
                areas.write(file, sky=name.startswith("sky"), **place)
            self.assertEqual(len(noted) > 0, name == "a.cma")
            again = Areas.read(file, **place)
            np.testing.assert_array_equal(again.mask(shape), areas.mask(shape), name)
            self.assertEqual(again.never_clean.tolist(), areas.never_clean.tolist())
            labels = ["", ""] if name == "a.cma" else ["jet A", "#ff0000"]
            self.assertEqual([again[1].name, again[1].color or ""], labels, name)
        drawn = pavane.draw(self.map, areas=self.folder / "a.reg").pixels
        plain = [area.labelled() for area in self.areas]
        self.assertTrue(np.any(drawn != pavane.draw(self.map, areas=plain).pixels))
        self.assertTrue(np.array_equal(drawn, pavane.draw(self.map, areas=self.areas).pixels))

    def test_windows_hold_rectangles_in_mas_from_the_reference_position(self):
        file = self.folder / "a.win"
        with self.assertRaises(ValueError):
            self.areas.write(file, map=self.map)
        self.assertFalse(file.exists())
        boxes = self.areas[:1]
        boxes.write(file, map=self.map)
        east, north = ([(edge + 1 - self.header[f"CRPIX{i}"]) * self.header[f"CDELT{i}"] * 3.6e6 for edge in edges]
                       for i, edges in ((1, (34, 26)), (2, (17.5, 22.5))))
        edges = [float(number) for number in file.read_text().splitlines()[-1].split()]
        np.testing.assert_allclose(edges, east + north, rtol=1e-9)
        again = Areas.read(file, header=self.header)
        np.testing.assert_array_equal(again.mask((61, 70)), boxes.mask((61, 70)))

    def test_what_is_not_taken_is_told_with_its_line(self):
        file = self.folder / "odd.reg"
        file.write_text("# Region file format: DS9\nimage\ncircle(10,10,3)\nannulus(1,2,3,4)\nfk5\n"
                        "circle(187.7,12.4,1\")\nimage\nbox(nan,3,4,5)\n")
        with self.assertWarns(PavaneWarning) as noted:
            self.assertEqual(len(Areas.read(file)), 1)
        lines = " ".join(str(w.message) for w in noted.warnings)
        for line in ("odd.reg: line 4", "line 6", "line 8"):
            self.assertIn(line, lines)

    def test_files_are_refused_with_a_reason(self):
        damaged = self.folder / "bad.reg"
        damaged.write_bytes(b"\0\1\2 no region")
        lost = self.folder / "lost.reg"
        lost.write_text("# Region file format: DS9\nfk5\ncircle(187.7,12.4,1\")\nannulus(1,2,3,4)\n")
        for call, error in ((lambda: Areas.read(self.folder / "none.reg"), FileNotFoundError),
                            (lambda: Areas.read(damaged), pavane.FormatError),
                            (lambda: Areas.read(lost), pavane.FormatError),
                            (lambda: Areas.read(self.folder), OSError),
                            (lambda: Areas.read(3), TypeError),
                            (lambda: self.areas.write(self.folder / "no" / "a.reg"), OSError),
                            (lambda: self.areas.write(self.folder / "a.txt"), ValueError),
                            (lambda: self.areas.write(self.folder / "a.areas"), ValueError),
                            (lambda: self.areas.write(self.folder / "a.reg", sky=True), TypeError),
                            (lambda: self.areas.write(self.folder / "a.cma"), ValueError)):
            self.assertRaises(error, call)
        self.assertEqual(sorted(os.listdir(self.folder)), ["bad.reg", "lost.reg", "map.fits"])
        with self.assertWarns(PavaneWarning):
            self.areas.write(self.folder / "a.cma", partial=True)


class Values(unittest.TestCase):
    def test_are_lists_of_plain_values(self):
        areas = Areas(random_areas(9, 8))
        for again in (pickle.loads(pickle.dumps(areas)), copy.deepcopy(areas), Areas(list(areas))):
            self.assertEqual(again, areas)
        self.assertEqual((areas.centers.shape, areas.sizes.shape, len(areas.angles)), ((9, 2), (9, 2), 9))
        self.assertEqual(len(set(areas)), 9)
        self.assertEqual(areas[2:4].kinds.tolist(), ["ellipse", "polygon"])
        del areas[0]
        areas[0] = Area.ellipse((1, 2), (3, 4))
        self.assertEqual(areas.centers[0].tolist(), [1, 2])
        with self.assertRaises(ValueError):
            areas[2].vertices[0, 0] = 5
        state = areas.__reduce__()[1]
        self.assertRaises(ValueError, areas.__reduce__()[0], 99, state[1])
        before_names = [one[:9] for one in state[1]]
        self.assertEqual(areas.__reduce__()[0](1, before_names), areas)
        self.assertRaises(ValueError, areas[0].labelled, "a", "no colour")
        self.assertRaises(TypeError, areas[0].labelled, 3)
        self.assertEqual(areas[0].labelled(" a\nb ").name, "a b")

    @unittest.skipUnless(regions, "no regions")
    def test_go_to_regions_and_back(self):
        areas = Areas([*random_areas(9, 9), Area.ellipse((1, 2), (3, 4), never_clean=True, name="a", color="#010203")])
        back = Areas.from_regions(areas.to_regions())
        self.assertEqual((back[9].name, back[9].color), ("a", "#010203"))
        np.testing.assert_allclose(back.centers, areas.centers)
        self.assertEqual(back.never_clean.tolist(), areas.never_clean.tolist())
        np.testing.assert_array_equal(back.mask((80, 80)), areas.mask((80, 80)))
        with self.assertWarns(PavaneWarning):
            self.assertEqual(len(Areas.from_regions([regions.PointPixelRegion(regions.PixCoord(1, 2))])), 0)
        sky = regions.CircleSkyRegion(SkyCoord(1, 2, unit="deg"), 1 * units.deg)
        self.assertRaises(TypeError, Areas.from_regions, [sky])

    def test_bad_input_is_refused(self):
        one = Areas([Area.rectangle((3, 3), (2, 2))])
        for error, call in (
            (ValueError, lambda: Area.rectangle((0, 0), (0, 1))), (ValueError, lambda: Area.ellipse((0, np.nan), (1, 1))),
            (ValueError, lambda: Area.polygon([(0, 0), (1, 1)])), (ValueError, lambda: Area.polygon([(0, 0), (2**31, 0), (1, 9)])),
            (ValueError, lambda: Area.polygon([(0, 0), (np.inf, 0), (1, 9)])), (TypeError, lambda: Area.rectangle(3, (1, 1))),
            (TypeError, lambda: Area()), (TypeError, lambda: Areas([(1, 2)])), (TypeError, lambda: one.append("area")),
            (ValueError, lambda: one.mask((0, 5))), (TypeError, lambda: one.mask(5)), (TypeError, lambda: one.mask((2.5, 5))),
            (ValueError, lambda: one.mask((5, 2**31))), (ValueError, lambda: one.mask((5, 5), rule="inside")),
            (ValueError, lambda: Areas.from_mask(np.zeros(3, bool))), (ValueError, lambda: Areas.from_mask(np.zeros((0, 3), bool))),
            (TypeError, lambda: Areas.from_mask(np.zeros((3, 3)))), (TypeError, lambda: Areas.from_mask("mask")),
        ):
            self.assertRaises(error, call)


if __name__ == "__main__":
    unittest.main()
