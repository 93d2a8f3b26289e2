"""Plots: curves, times, units, histograms, and what is refused."""
import pickle
import unittest
import warnings

import numpy as np

import pavane


def dark(fig):
    return int((fig.pixels.min(axis=2) < 100).sum())


class Series(np.ndarray):
    """Has a method of the name that masked arrays have for their mask, as those of pandas."""

    def mask(self):
        raise AssertionError


class Plots(unittest.TestCase):
    def test_scales_and_inputs(self):
        x, y = np.array([1.0, 10.0, 100.0]), np.array([3.0, np.nan, 1.0])
        times = np.datetime64("2026-01-03T22:00") + np.arange(3) * np.timedelta64(90, "m")
        for fig in (
            pavane.plot(x, y), pavane.plot([1, 2, 3]), pavane.plot(x, np.stack([y, y + 1], axis=1)),
            pavane.plot(x, y, x_scale="log", y_scale="reversed", grid=True, label="both"),
            pavane.points(times, y, y_errors=[0.1, 0.2, 0.3], marker="*"),
            pavane.plot(times, y, x_range=(times[0], times[2])),
            pavane.plot([0, 60, 120], y, x_scale="time", x_title="Time", y_title="Flux [%sJy]", title="A night"),
            pavane.plot(x, y, x_range=(0.0, 50.0)), pavane.histogram(np.arange(100) % 17, bins=17),
            pavane.plot(np.ma.masked_array(x, [0, 1, 0]), y), pavane.points(x, x, y_errors=0.5),
            pavane.plot([t.astype("M8[us]").item() for t in times], y),
        ):
            self.assertGreater(dark(fig), 300)
            again = pickle.loads(pickle.dumps(fig))
            self.assertTrue(np.array_equal(again.pixels, fig.pixels))

    def test_masked_values_are_gaps(self):
        y = np.array([1.0, 50.0, 2.0])
        gap = pavane.plot([0.0, 1.0, 2.0], np.ma.masked_array(y, [0, 1, 0])).pixels
        self.assertTrue(np.array_equal(gap, pavane.plot([0.0, 1.0, 2.0], [1.0, np.nan, 2.0]).pixels))

        self.assertTrue(np.array_equal(pavane.plot(y.view(Series)).pixels, pavane.plot(y).pixels))

    def test_places_of_times(self):
        times = np.datetime64("2026-01-03T22:00") + np.arange(3) * np.timedelta64(90, "m")
        fig = pavane.plot(times, [1.0, 2.0, 3.0])
        wanted = fig.to_pixel([79200.0, 84600.0, 90000.0], 2.0)
        self.assertTrue(np.array_equal(fig.to_pixel(times, 2.0), wanted))
        self.assertEqual(fig.to_pixel(times[1].item(), 2.0)[0], wanted[0][1])
        with self.assertRaises(TypeError):
            pavane.plot([1.0, 2.0]).to_pixel(times[0], 1.0)

    def test_values_live_as_long_as_the_plot(self):
        x = np.linspace(0, 1, 1000)
        fig = pavane.plot(x, x**2)
        wanted = pavane.plot(x.copy(), x**2).pixels.copy()
        del x
        self.assertTrue(np.array_equal(fig.pixels, wanted))

    def test_astropy(self):
        try:
            from astropy import units
            from astropy.time import Time
        except ImportError:
            self.skipTest("no astropy")
        days = Time("2026-01-03T00:00:00", scale="utc") + np.arange(3) * units.hour
        fig = pavane.plot(days, [1, 2, 3] * units.mJy)
        self.assertEqual((fig._x.text(), fig._y.text()), ("UTC from 2026-01-03", "[mJy]"))
        fig.points(days, [0.001, 0.002, 0.003] * units.Jy)
        self.assertEqual(fig._items[1][1][1].tolist(), [1.0, 2.0, 3.0])
        self.assertEqual(fig.to_pixel(days[1], 2 * units.mJy), fig.to_pixel(3600.0, 0.002 * units.Jy))
        with self.assertRaises(units.UnitConversionError):
            fig.points(days, [1, 2, 3] * units.K)
        since = pavane.points(days - days[0], [1, 2, 3], x_errors=2 * units.min)
        self.assertEqual(since._items[0][1][0].tolist(), [0.0, 3600.0, 7200.0])
        self.assertEqual(since._items[0][1][-2].tolist(), [120.0] * 3)

    def test_refused(self):
        good = [1.0, 2.0, 3.0]
        cases = [
            ((good, good[:2]), {}, ValueError), ((good, "abc"), {}, TypeError), ((good, [1j] * 3), {}, TypeError),
            ((np.zeros((2, 2, 2)),), {}, ValueError), ((good, good), {"style": "~"}, ValueError),
            ((good, good), {"width": -1}, ValueError), ((good, good), {"x_scale": 7}, ValueError),
            ((good, good), {"y_scale": "time"}, ValueError), ((good, good), {"color": "red"}, ValueError),
            ((good, good), {"x_range": (3, 1)}, ValueError), ((good, good), {"x_range": 3}, TypeError),
            ((good, good), {"y_range": (0, float("nan"))}, ValueError), ((good, good), {"size": (1, 1)}, ValueError),
            ((good, good), {"x_scale": "log", "x_range": (0, 10)}, ValueError), ((), {}, TypeError),
            ((good, np.array(["2026-01-01"] * 3, "M8[s]")), {}, TypeError),
            ((np.array(["2026-01-01"] * 3, "M8[s]"), good), {"x_scale": "log"}, ValueError),
        ]
        for arguments, options, error in cases:
            with self.subTest(arguments=str(arguments), options=options), self.assertRaises(error), \
                    warnings.catch_warnings():
                warnings.simplefilter("ignore")
                pavane.plot(*arguments, **options)
        for values, options in (([np.nan], {}), ([1, 2], {"bins": 0}), ([1, 2], {"range": (2, 1)}),
                                ([1, 2], {"range": (0, np.nan)}), ([1e308, -1e308], {})):
            with self.assertRaises(ValueError):
                pavane.histogram(values, **options)
        with self.assertRaises(ValueError):
            pavane.points(good, good, y_errors=[0.1, -0.1, 0.1])
        with self.assertWarns(pavane.PavaneWarning):
            pavane.plot([0.0, 1.0, 10.0], good, x_scale="log")


if __name__ == "__main__":
    unittest.main()
