#!/usr/bin/python3
"""A Gaussian of six parameters fitted to 40 x 40 cells with noise by scipy.optimize.curve_fit, which is told where to
begin; prints "fits/40x40/scipy <median ms>" and, of the same fit, "fits/40x40_beam/scipy"."""
import statistics
import time

import numpy
from scipy.optimize import curve_fit

y, x = numpy.mgrid[0:40, 0:40].astype(float)


def gaussian(_, height, x0, y0, xx, xy, yy):
    dx, dy = x - x0, y - y0
    return (height * numpy.exp(-(xx * dx * dx + 2 * xy * dx * dy + yy * dy * dy))).ravel()


cells = gaussian(None, 1, 19.3, 20.8, 0.02, 0.005, 0.04) + 0.02 * numpy.random.default_rng(1).normal(size=1600)
peak = cells.argmax()
times = []
for _ in range(51):
    start = time.perf_counter()
    curve_fit(gaussian, x.ravel(), cells, (cells[peak], peak % 40, peak // 40, 0.03, 0, 0.03))
    times.append(1000 * (time.perf_counter() - start))
for case in ("40x40", "40x40_beam"):
    print(f"fits/{case}/scipy {statistics.median(times):.3f}")
