"""Figures of maps: those of the program, arrays read in place, what is refused."""
import io
import gc
import os
import pickle
import re
import subprocess
import tempfile
import unittest
import warnings
from pathlib import Path

import numpy as np

import pavane
from maps import header_of, write_map

VIEWER = os.environ.get("PAVANE_VIEW", "")
MAPS = sorted(Path(os.environ.get("PAVANE_MAPS", "/nowhere")).glob("*.fits"))


def cells(rows=48, columns=40):
    y, x = np.mgrid[:rows, :columns]
    noise = np.random.default_rng(7).normal(scale=0.002, size=(rows, columns))
    return (np.exp(-((x - 20) ** 2 + (y - 25) ** 2) / 20) + noise).astype(np.float32)


def dateless(whole):
    """The bytes of a file without the second that a page was made in."""
    return re.sub(rb"\(D:\d+Z\)", b"", whole)


class AsTheProgram(unittest.TestCase):
    looks = (
        ([], {}),
        (["--levels", "peak:-1,1,2,4,...", "--scale", "sqrt", "--size", "500x400"],
         {"levels": "peak:-1,1,2,4,...", "scale": "sqrt", "size": (500, 400)}),
        (["--levels", "sigma:-3,3,6", "--scale", "log", "--palette", "heat", "--aspect", "free"],
         {"levels": "sigma:-3,3,6", "scale": "log", "palette": "heat", "aspect": "free"}),
        (["--levels", "none", "--scale", "equal", "--range", "p:1,99", "--contrast", "1.5,0.4"],
         {"levels": "none", "scale": "equal", "range": "p:1,99", "contrast": (1.5, 0.4)}),
        (["--range", "-0.001,0.5", "--palette", "grey"], {"range": (-0.001, 0.5), "palette": "grey"}),
        (["--sky-grid", "lines,galactic"], {"sky_grid": "lines,galactic"}),
    )

    @unittest.skipUnless(VIEWER, "no pavane-view is named")
    def test_every_picture_is_that_of_pavane_view(self):
        with tempfile.TemporaryDirectory() as folder:
            made = Path(folder) / "made.fits"
            write_map(made, cells())
            files = [made, *MAPS] if os.environ.get("PAVANE_LONG") else [made, *MAPS[:1]]
            for file in files:
                for options, look in self.looks if file == made else self.looks[1:3]:
                    for ending in ("png", "svg", "pdf") if not options else ("png",):
                        theirs = Path(folder) / f"theirs.{ending}"
                        mine = Path(folder) / f"mine.{ending}"
                        subprocess.run([VIEWER, file, "--batch", f"--{ending}", theirs, *options],
                                       check=True, stderr=subprocess.DEVNULL)
                        fig = pavane.draw(file, **look)
                        fig.save(mine)
                        wanted = dateless(theirs.read_bytes())
                        self.assertEqual(dateless(mine.read_bytes()), wanted, (file, options, ending))
                        self.assertEqual(dateless(fig.to_bytes(ending)), wanted)

    def test_a_file_and_its_cells_give_the_same(self):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "made.fits"
            write_map(file, cells())
            whole = pavane.draw(file).pixels
            stored = np.memmap(file, ">f4", "r", 2880 * (file.stat().st_size // 2880 - 3), (48, 40))
            for array in (cells(), stored):
                fig = pavane.draw(array, header=header_of(cells()))
                self.assertTrue(np.array_equal(fig.pixels, whole))
                self.assertIs(fig.array, array)
            again = pickle.loads(pickle.dumps(pavane.draw(file)))
            self.assertTrue(np.array_equal(again.pixels, whole))


class Arrays(unittest.TestCase):
    def test_cells_are_read_where_they_are(self):
        plain = (cells() * 1000).round()
        wanted = pavane.draw(plain.astype(np.float64)).pixels
        wide = np.zeros((96, 80), np.float32)
        wide[::2, ::2] = plain
        unaligned = np.frombuffer(b"\0" + plain.tobytes(), np.uint8)[1:].view(np.float32).reshape(plain.shape)
        frozen = plain.copy()
        frozen.flags.writeable = False
        cases = {
            "float32": plain, "big": plain.astype(">f4"), "big double": plain.astype(">f8"),
            "int16": plain.astype(np.int16), "big int32": plain.astype(">i4"),
            "columns first": np.asfortranarray(plain), "steps": wide[::2, ::2],
            "reversed": plain[::-1, ::-1].copy()[::-1, ::-1], "unaligned": unaligned, "frozen": frozen,
            "memoryview": memoryview(plain),
        }
        for name, array in cases.items():
            fig = pavane.draw(array)
            self.assertTrue(np.array_equal(fig.pixels, wanted), name)
            self.assertIs(fig.array, array, name)
        hole = plain.copy()
        hole[3:9, 5:11] = np.nan
        masked = np.ma.masked_array(plain, np.isnan(hole))
        self.assertTrue(np.array_equal(pavane.draw(masked).pixels, pavane.draw(hole).pixels))
        self.assertTrue(np.array_equal(pavane.draw(plain, mask=np.isnan(hole)).pixels, pavane.draw(hole).pixels))
        cube = np.stack([plain, hole])
        self.assertTrue(np.array_equal(pavane.draw(cube, plane=1).pixels, pavane.draw(hole).pixels))
        header = {**header_of(plain), "NAXIS": 3, "NAXIS3": 2, "CTYPE3": "FREQ",
                  "CRVAL3": 1e9, "CRPIX3": 1.0, "CDELT3": 4e9}
        one = pavane.draw(cube[1], header=header, plane=1)
        self.assertTrue(np.array_equal(one.pixels, pavane.draw(cube, header=header, plane=1).pixels))

    def test_pixels_and_cells_outlive_what_they_came_from(self):
        array = cells()
        fig = pavane.draw(array)
        pixels = fig.pixels
        before = pixels.copy()
        self.assertFalse(pixels.flags.owndata)
        self.assertFalse(pixels.flags.writeable)
        array[20:24, 20:24] = 5
        fig.refresh()
        self.assertFalse(np.array_equal(fig.pixels, before))
        del array
        gc.collect()
        again = fig.pixels
        del fig
        gc.collect()
        self.assertTrue(np.array_equal(pixels, before))
        self.assertEqual(again.shape, (900, 1000, 3))

    def test_an_array_that_was_resized_is_refused(self):
        array = cells()
        fig = pavane.draw(array)
        array.resize((10, 10), refcheck=False)
        with self.assertRaisesRegex(ValueError, "resized"):
            fig.pixels


class Refused(unittest.TestCase):
    def test_what_is_no_map(self):
        good = cells()
        cases = [
            (np.float32(1), {}, (TypeError, ValueError)), (np.zeros(4), {}, ValueError),
            (np.zeros((2, 3, 3)), {}, ValueError), (np.zeros((2, 3, 3)), {"plane": 2}, ValueError),
            (np.zeros((0, 4)), {}, ValueError), (good.astype(complex), {}, TypeError),
            (good.astype(object), {}, TypeError), (np.zeros((3, 3), "f4,f4"), {}, TypeError),
            ([[1, 2], [3, 4]], {}, TypeError), (None, {}, TypeError), (3, {}, TypeError),
            (good, {"plane": -1}, ValueError), (good, {"plane": 1.5}, TypeError),
            (good, {"plane": 1}, ValueError), (good, {"size": (0, 100)}, ValueError),
            (good, {"size": (40000, 100)}, ValueError), (good, {"size": 5}, TypeError),
            (good, {"levels": "sigma:x"}, ValueError), (good, {"levels": "many"}, ValueError),
            (good, {"levels": [1, float("nan")]}, ValueError), (good, {"levels": 3}, TypeError),
            (good, {"levels": list(range(300))}, ValueError),
            (good, {"palette": "no such one"}, ValueError), (good, {"palette": []}, ValueError),
            (good, {"palette": ["#12345"]}, ValueError), (good, {"palette": 3}, TypeError),
            (good, {"scale": "cubic"}, ValueError), (good, {"scale": 7}, TypeError),
            (good, {"range": (2, 1)}, ValueError), (good, {"range": (0, float("nan"))}, ValueError),
            (good, {"range": "p:1"}, ValueError), (good, {"range": "p:-1,101"}, ValueError),
            (good, {"contrast": (1, 0.5, -1)}, ValueError), (good, {"aspect": "wide"}, ValueError),
            (good, {"ratio": 9}, ValueError), (good, {"ratio": 1.5}, TypeError),
            (good, {"header": {"CDELT1": 0, "CTYPE1": "RA---SIN"}}, pavane.FormatError),
            (good, {"header": {"CDELT2": float("nan")}}, pavane.FormatError),
            (good, {"header": {"CD1_1": 0.0, "CD2_2": 1.0}}, pavane.FormatError),
            (good, {"header": {"PC1_1": 0.0}}, pavane.FormatError),
            (good, {"sky_grid": "lines"}, ValueError),
            (good, {"sky_grid": "dots"}, ValueError),
            (good, {"sky_grid": 1}, TypeError),
            (good, {"header": {"CRPIX1": float("inf")}}, pavane.FormatError),
            (good, {"levels": b"peak:1"}, TypeError), ("a\0b", {}, ValueError), (good, {"areas": "a\0b"}, ValueError),
            (good, {"title": "\ud800"}, ValueError), (good, {"levels": "\ud800"}, ValueError), (good, {"header": 3}, TypeError),
            (good, {"header": {"NAXIS": 2, "NAXIS1": 3, "NAXIS2": 3}}, pavane.FormatError), (good, {"wcs": 3}, TypeError),
            (good, {"mask": np.zeros((2, 2), bool)}, ValueError), (good, {"mask": good}, TypeError),
            (good, {"areas": 3}, TypeError), (good, {"model": np.zeros((2, 7))}, ValueError),
            (good, {"model": np.full((1, 8), 99.0)}, ValueError), (good, {"title": 3}, TypeError),
            ("/nowhere/a.fits", {}, FileNotFoundError), ("/nowhere/\udcff", {}, FileNotFoundError), ("/tmp", {}, IsADirectoryError),
            ("/dev/null", {}, pavane.FormatError), (__file__, {}, pavane.FormatError),
        ]
        for source, options, error in cases:
            with self.subTest(source=str(source)[:40], options=options), self.assertRaises(error):
                pavane.draw(source, **options)

    def test_what_cannot_be_written(self):
        fig = pavane.draw(cells())
        for target, error in (("/nowhere/a.png", FileNotFoundError), ("/tmp/a.gif", ValueError),
                              ("/tmp/a\0.png", ValueError),
                              ("/proc/a.pdf", OSError), (7, TypeError)):
            with self.subTest(target=target), self.assertRaises(error) as caught:
                fig.save(target)
            if isinstance(caught.exception, OSError):
                self.assertEqual(caught.exception.filename, target)

    def test_odd_cells_are_drawn(self):
        for array in (np.full((5, 5), np.nan), np.zeros((3, 3)), np.array([[np.inf, -np.inf]]),
                      np.broadcast_to(np.float32(2), (4, 4)), np.ones((1, 1)), np.ones((3, 3), bool),
                      np.ma.masked_all((4, 4))):
            with warnings.catch_warnings():
                warnings.simplefilter("ignore")
                self.assertEqual(pavane.draw(array, size=(100, 80)).pixels.shape, (80, 100, 3))


class Shown(unittest.TestCase):
    def test_what_lies_over_a_map_is_taken_by_its_names(self):
        head = header_of(cells())
        table = np.array([(0.001, 1.0, 2)], [("major", "f8"), ("flux", "f8"), ("kind", "i4")])
        area = pavane.Area.ellipse((20, 25), (9, 5))
        for many, one in (({"model": pavane.Components(table)}, {"model": table}),
                          ({"areas": pavane.Areas([area])}, {"areas": area}),
                          ({"areas": pavane.Areas([area])}, {"areas": [area]})):
            self.assertTrue(np.array_equal(*(pavane.draw(cells(), header=head, **over).pixels for over in (many, one))))
        untitled = pavane.draw(cells(), header=head, title="")
        self.assertFalse(np.array_equal(untitled.pixels, pavane.draw(cells(), header=head).pixels))

    def test_notebooks_get_the_size_beside_the_picture(self):
        fig = pavane.draw(cells(), size=(200, 100), ratio=2)
        data, metadata = fig._repr_mimebundle_()
        self.assertEqual(metadata["image/png"], {"width": 200, "height": 100})
        self.assertEqual(int.from_bytes(data["image/png"][16:20], "big"), 400)
        self.assertTrue(fig._repr_svg_().startswith("<svg"))  # nbconvert fails on a declaration
        out = io.BytesIO()
        fig.save(out, format="pdf")
        self.assertTrue(out.getvalue().startswith(b"%PDF"))

    def test_places_there_and_back(self):
        fig = pavane.draw(cells(), header=header_of(cells()))
        longitude, latitude = fig.to_world(*fig.to_pixel(187.7, 12.4))
        self.assertAlmostEqual(longitude, 187.7, 9)
        self.assertAlmostEqual(latitude, 12.4, 9)
        column, row = fig.to_pixel([0.0, 1.0], 0.0, offsets=True)
        self.assertLess(column[1], column[0])  # east is left
        self.assertTrue(np.isnan(fig.to_pixel(10.0, -80.0)[0]))
        for x_scale, y_scale in (("linear", "log"), ("reversed", "linear"), ("log", "reversed")):
            plot = pavane.plot([1.0, 2.0, 8.0], [1.0, 3.0, 9.0], x_scale=x_scale, y_scale=y_scale)
            x, y = plot.to_world(*plot.to_pixel(2.5, 4.0))
            self.assertAlmostEqual(x, 2.5, 9)
            self.assertAlmostEqual(y, 4.0, 9)


if __name__ == "__main__":
    unittest.main()
