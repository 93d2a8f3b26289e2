#!/usr/bin/env python3
"""Masks and visibilities of the Python module beside its peers, in processor time (medians, milliseconds):

    PYTHONPATH=build/release/python benchmarks/python_values.py

A polygon of 4 points to an array of bool, 2048 squared, beside matplotlib.path and regions; visibilities of 1000
components at 1e4 points, beside numpy and, with the time that a program of C++ takes as an argument, beside that.
"""
import statistics
import sys
import time

import numpy as np

import pavane

SIZE = 2048
CORNERS = [(200.3, 300.7), (1800.2, 250.1), (1700.9, 1900.4), (350.6, 1500.8)]


def median(call, runs):
    call()
    times = []
    for _ in range(runs):
        start = time.process_time()
        call()
        times.append(time.process_time() - start)
    return statistics.median(times) * 1e3


def by_matplotlib():
    from matplotlib.path import Path

    y, x = np.mgrid[:SIZE, :SIZE]
    return Path(CORNERS).contains_points(np.column_stack((x.ravel(), y.ravel()))).reshape(SIZE, SIZE)


def by_regions():
    from regions import PixCoord, PolygonPixelRegion

    region = PolygonPixelRegion(PixCoord(*np.transpose(CORNERS)))
    return region.to_mask("center").to_image((SIZE, SIZE)) > 0


def masks():
    areas = pavane.Areas([pavane.Area.polygon(CORNERS)])
    mine = median(lambda: areas.mask((SIZE, SIZE)), 41)
    packed = median(lambda: areas.mask((SIZE, SIZE), packed=True), 41)
    centres = median(lambda: areas.mask((SIZE, SIZE), rule="centres"), 41)
    print(f"mask {mine:.2f}, as bits {packed:.3f}, of centres {centres:.2f}")
    same = areas.mask((SIZE, SIZE), rule="centres")
    for name, call in (("matplotlib.path", by_matplotlib), ("regions", by_regions)):
        try:
            differ = int((call() != same).sum())
            other = median(call, 3)
        except ImportError:
            print(f"no {name}")
            continue
        print(f"{name} {other:.1f}: ratio {mine / other:.4f}; {differ} cells differ from rule='centres'")


def visibilities():
    random = np.random.default_rng(5)
    count, points = 1000, 10000
    model = pavane.Components(flux=random.uniform(0, 1, count), distance=random.uniform(0, 0.01, count),
                              angle=random.uniform(0, 360, count), major=random.uniform(1e-5, 5e-3, count),
                              kind=1 + np.arange(count) % 2)
    u, v = random.uniform(-5e8, 5e8, (2, points))
    mine = median(lambda: model.visibilities(u, v), 15)
    print(f"visibilities {mine:.1f}" + (f": ratio {mine / float(sys.argv[1]):.3f}" if sys.argv[1:] else ""))
    # the rows for a program of C++ that is to sum the same
    model_rows = np.array([list(row) for row in model.table], dtype=float)
    model_rows.tofile("/tmp/pavane-model.f8")
    np.concatenate((u, v)).tofile("/tmp/pavane-uv.f8")


masks()
visibilities()
