#!/usr/bin/python3
"""Gains of the antennas in the file that bench-gains has left beside itself, by the same alternating directions with
NumPy, interval by interval; reading the file and the model's visibilities are not counted.

Prints "gains/solve/numpy <median milliseconds>", and the same of the model's visibilities as "gains/predict/numpy".
"""
import os
import statistics
import sys
import time

import numpy
from astropy.io import fits

ANTENNAS = 17
with fits.open(os.path.dirname(sys.argv[1]) + "/gains.uvfits") as file:
    groups = file[0].data
    cells = groups.data.reshape(len(groups), 4, 2, 3).astype(float)
    baseline = numpy.asarray(groups.par("BASELINE"), int)
    # the second DATE has the seconds
    seconds = numpy.round(groups.par("_DATE") * 86400 if "_DATE" in groups.parnames else
                          numpy.asarray(groups.field(5), float) * 86400).astype(int)
    u, v = groups.par("UU--") * 8.4e9, groups.par("VV--") * 8.4e9
first, second = baseline // 256 - 1, baseline % 256 - 1
data = cells[..., 0] + 1j * cells[..., 1]
weight = cells[..., 2]
generator = numpy.random.default_rng(3)
flux, east, north = generator.uniform(-1e-7, 1e-7, (3, 67))


def predict():
    # as many exponentials as rows, IFs and points
    return sum(f * numpy.exp(2j * numpy.pi * (u4 * e + v4 * n)) for f, e, n in zip(flux, east, north))


u4, v4 = numpy.repeat(u, 4), numpy.repeat(v, 4)
start = time.perf_counter()
predict()
print("gains/predict/numpy", (time.perf_counter() - start) * 1000)
model = numpy.ones_like(data)


def stefcal(cross, power):
    gains = numpy.full(ANTENNAS, 1 + 0j)
    for step in range(1, 501):
        updated = cross @ gains / (power @ (abs(gains) ** 2))
        change = numpy.linalg.norm(updated - gains)
        gains = updated if step % 2 else (gains + updated) / 2
        if step % 2 == 0 and change <= 1e-9 * numpy.linalg.norm(gains):
            break
    return gains * abs(gains[0]) / gains[0]


def solve():
    starts = numpy.flatnonzero(numpy.diff(seconds, prepend=-1))
    for begin, end in zip(starts, numpy.append(starts[1:], len(seconds))):
        a, b = first[begin:end], second[begin:end]
        for f in range(4):
            for hand in range(2):
                w, d, m = (x[begin:end, f, hand] for x in (weight, data, model))
                cross = numpy.zeros((ANTENNAS, ANTENNAS), complex)
                power = numpy.zeros((ANTENNAS, ANTENNAS))
                numpy.add.at(cross, (a, b), w * d * m.conj())
                numpy.add.at(power, (a, b), w * abs(m) ** 2)
                stefcal(cross + cross.conj().T, power + power.T)


times = []
for _ in range(3):
    start = time.perf_counter()
    solve()
    times.append((time.perf_counter() - start) * 1000)
print("gains/solve/numpy", statistics.median(times))
