"""Models beside numpy, their files and maps; numbers of maps beside those of the program."""
import os
import pickle
import subprocess
import tempfile
import unittest
from pathlib import Path

import numpy as np

import pavane
from maps import header_of, write_map
from pavane import Area, Areas, Components, PavaneWarning

VIEWER = os.environ.get("PAVANE_VIEW", "")
ARCSECOND = np.pi / 180 / 3600


def model(count=200):
    random = np.random.default_rng(2)
    return Components(kind=1 + np.arange(count) % 2, flux=random.uniform(-1, 1, count),
                      major=random.uniform(0, 0.01, count) * (np.arange(count) % 2),
                      ratio=random.uniform(0.1, 1, count), inclination=random.uniform(-180, 180, count),
                      angle=random.uniform(0, 360, count), distance=random.uniform(0, 0.05, count))


def plain(table, u, v):
    """Points and Gaussians, the textbook's way."""
    total = np.zeros(u.shape, complex)
    for c in table:
        angle, turn = np.radians(c["angle"]), np.radians(c["inclination"])
        east, north = (c["distance"] * ARCSECOND * f(angle) for f in (np.sin, np.cos))
        major = c["major"] * ARCSECOND * (c["kind"] == 2)
        along = u * np.sin(turn) + v * np.cos(turn)
        across = u * np.cos(turn) - v * np.sin(turn)
        size = (major * along) ** 2 + (major * c["ratio"] * across) ** 2
        total += c["flux"] * np.exp(-np.pi**2 / (4 * np.log(2)) * size + 2j * np.pi * (u * east + v * north))
    return total


class Models(unittest.TestCase):
    def test_visibilities_are_those_of_numpy_for_arrays_of_any_kind(self):
        table = model()
        u, v = np.random.default_rng(3).uniform(-1e7, 1e7, (2, 600))
        odd = np.zeros(600, [("x", "i1"), ("u", "f8")])
        odd["u"] = u
        for a, b in ((u, v), (u[::-3], v[::-3]), (odd["u"], v), (u.astype(">f8"), v), (u.reshape(20, 30), v.reshape(20, 30)),
                     (u, 0.0), (np.full(5, 1000), np.arange(5)), (u[:0], v[:0])):
            sums = table.visibilities(a, b)
            a, b = np.broadcast_arrays(np.asarray(a, float), np.asarray(b, float))
            self.assertEqual((sums.shape, sums.dtype), (a.shape, np.complex128))
            np.testing.assert_allclose(sums, plain(table, a, b), atol=1e-9)
        self.assertEqual(table.visibilities(0, 0).shape, ())

    def test_maps_hold_the_flux_where_it_is(self):
        shape = 64, 50
        spot = Components(flux=[2.0], distance=[0.3], angle=[90])  # to the east: to the left
        cells = spot.to_map(shape, cell=0.1)
        self.assertEqual((cells.dtype, cells.shape), (np.float32, shape))
        np.testing.assert_allclose(cells[32, 22], 2, rtol=1e-5)
        self.assertAlmostEqual(cells.sum(), 2, 5)
        header = header_of(cells)  # cells of 3.6 mas, the reference at column and row N / 2 from 1
        near = Components(flux=[1.0], distance=[7.2e-3]).to_map(header=header)
        np.testing.assert_allclose(near[33, 24], 1, rtol=1e-4)
        for single in ((1, 50), (64, 1), (1, 1)):
            self.assertAlmostEqual(float(Components(flux=[1.0]).to_map(single, cell=(0.1, 0.2)).sum()), 1, 5)
        wide = model().to_map((128, 128), cell=0.001)
        self.assertAlmostEqual(float(wide.sum()), model()["flux"].sum(), 2)

    def test_files_and_pickles_hold_them(self):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "a.mod"
            table = Components(np.round(np.array([list(c) for c in model(9).table]), 3))
            table.write(file)
            self.assertEqual(Components.read(file), table)
            with self.assertWarns(PavaneWarning):
                Components(flux=[1.23456789]).write(file)
            file.write_text("2\n1 1 0 1 0 0 0 0.5\n1 nan 0 1 0 0 0 0.5\n")
            with self.assertRaisesRegex(pavane.FormatError, "3"):
                Components.read(file)
            self.assertRaises(FileNotFoundError, Components.read, Path(folder) / "none")
            self.assertRaises(OSError, table.write, Path(folder) / "no" / "a.mod")
        self.assertEqual(pickle.loads(pickle.dumps(table)), table)
        self.assertEqual(Components(table.table), table)
        self.assertEqual(len(table[2:5]), 3)
        table.table["flux"] = 0  # in place
        self.assertEqual(np.abs(table.visibilities([0, 1], [0, 1])).max(), 0)
        self.assertEqual(len(Components()), 0)

    def test_bad_input_is_refused(self):
        one = Components(flux=[1.0])
        nan = one.table.copy()
        nan["flux"] = np.nan
        for error, call in (
            (TypeError, lambda: Components(fluxes=[1])), (ValueError, lambda: Components(flux=[np.nan])),
            (ValueError, lambda: Components(kind=[1.5])), (ValueError, lambda: Components(kind=[8])),
            (ValueError, lambda: Components([[1, 2, 3]])), (ValueError, lambda: Components(flux=[1, 2], angle=[1, 2, 3])),
            (TypeError, lambda: Components(flux=["a"])), (TypeError, lambda: Components(flux=[1j])),
            (TypeError, lambda: one.visibilities([1j], [0])), (ValueError, lambda: one.visibilities([1, 2], [1, 2, 3])),
            (ValueError, lambda: one.to_map((0, 5), cell=1)), (ValueError, lambda: one.to_map((5, 5), cell=0)),
            (ValueError, lambda: one.to_map((5, 5), cell=np.nan)), (TypeError, lambda: one.to_map((5, 5))),
            (TypeError, lambda: one.to_map(cell=1)), (ValueError, lambda: one.to_map((5, 5), header={"CTYPE1": "X"})),
        ):
            self.assertRaises(error, call)
        try:
            from astropy import units

            self.assertEqual(Components(flux=[100] * units.mJy, major=1 * units.mas).table[["flux", "major"]].tolist(),
                             [(0.1, 1e-3)])
            self.assertRaises(units.UnitConversionError, one.visibilities, [1] * units.m, [1])
        except ImportError:
            pass
        one.table["flux"] = np.nan
        self.assertRaises(ValueError, one.visibilities, [0], [0])


class Numbers(unittest.TestCase):
    def test_are_those_of_the_program(self):
        y, x = np.mgrid[:60, :50]
        cells = np.exp(-((x - 20) ** 2 + (y - 30) ** 2) / 30) + np.random.default_rng(1).normal(0, 0.01, (60, 50))
        cells = cells.astype(np.float32)
        cells[3, 4] = np.nan
        with tempfile.TemporaryDirectory() as folder:
            file, region = Path(folder) / "map.fits", Path(folder) / "a.reg"
            write_map(file, cells)
            areas = Areas([Area.ellipse((21, 30), (14, 10), 20)])
            areas.write(region)
            found = pavane.statistics(file, areas)
            self.assertEqual(pavane.statistics(pavane.draw(file), region), found)
            self.assertEqual(pavane.statistics(cells, areas.mask((60, 50)), header=header_of(cells)), found)
            if VIEWER:
                run = subprocess.run([VIEWER, file, "--batch", "--areas", region, "--stats"], check=True,
                                     capture_output=True, text=True)
                told = {line.split()[0]: line.split()[1:] for line in run.stdout.splitlines()}
                for key, value in (("peak", found.peak), ("peak_x", found.peak_offset[0]), ("noise", found.noise),
                                   ("mask_cells", found.cells), ("mask_flux", found.flux)):
                    self.assertAlmostEqual(float(told[key][0]) / value, 1, 8, key)
                self.assertEqual(told["mask_flux"][1], found.flux_unit)
        self.assertEqual(found.peak, float(np.nanmax(cells)))
        self.assertEqual(found.peak_cell, tuple(np.unravel_index(np.nanargmax(cells), cells.shape))[::-1])
        self.assertEqual(found.cells, areas.mask((60, 50)).sum())
        np.testing.assert_allclose(found.flux, cells[areas.mask((60, 50))].sum(dtype=float) / found.beam_area, rtol=1e-12)
        whole = pavane.statistics(np.full((3, 4), np.nan))
        self.assertTrue(np.isnan(whole.peak) and whole.peak_cell is None and whole.cells == 12)
        for inside, error in ((np.ones((2, 2), bool), ValueError), (np.ones((60, 50)), TypeError)):
            self.assertRaises(error, pavane.statistics, cells, inside)


if __name__ == "__main__":
    unittest.main()
