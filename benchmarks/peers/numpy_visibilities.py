#!/usr/bin/python3
"""Visibilities of 1000 mixed components at 10 000 points with NumPy and SciPy, component by component.

Prints "visibilities/mixed/numpy <median milliseconds>".
"""
import statistics
import time

import numpy
from scipy.special import j0, j1

generator = numpy.random.default_rng(5)
u, v = generator.uniform(-4e8, 4e8, (2, 10_000))
RADIANS = 4.84813681109536e-6


def amplitude(kind, x, width):
    if kind == 2:
        return numpy.exp(-x * x * 0.25 / numpy.log(2))
    if kind == 3:
        return 2 * j1(x) / x
    if kind == 4:
        return j0(x)
    if kind == 5:
        return 3 * (numpy.sin(x) - x * numpy.cos(x)) / x**3
    if kind == 6:
        return numpy.sin(x) / x
    if kind == 7:
        return 2 * (j1(x) - (1 - width) * j1((1 - width) * x)) / (width * x)
    return 1.0


def model_visibilities(model):
    total = numpy.zeros(u.size, complex)
    for kind, flux, size, ratio, inclination, angle, distance, width in model:
        phase = 2 * numpy.pi * distance * RADIANS * (numpy.sin(angle) * u + numpy.cos(angle) * v)
        small = (numpy.cos(inclination) * u - numpy.sin(inclination) * v) * ratio
        large = numpy.sin(inclination) * u + numpy.cos(inclination) * v
        x = numpy.pi * size * RADIANS * numpy.sqrt(small * small + large * large)
        total += flux * amplitude(kind, x, width) * numpy.exp(1j * phase)
    return total


items = [(1 + i % 7, generator.uniform(0.01, 1), 10 ** generator.uniform(-5, -2.3),
          generator.uniform(0.3, 1), generator.uniform(-1.5, 1.5), generator.uniform(-3.1, 3.1),
          generator.uniform(0, 0.05), generator.uniform(0.1, 0.9)) for i in range(1000)]
times = []
for _ in range(3):
    start = time.perf_counter()
    model_visibilities(items)
    times.append(1000 * (time.perf_counter() - start))
print(f"visibilities/mixed/numpy {statistics.median(times):.3f}")
