#!/usr/bin/python3
"""Histogram, 7 percentiles and noise of 4096 x 4096 floats; prints "play/histogram_4k/numpy <median ms>"."""
import statistics
import time

import numpy

cells = (0.1 * numpy.random.default_rng(1).normal(size=(4096, 4096))).astype(numpy.float32)
times = []
for _ in range(3):
    start = time.perf_counter()
    numpy.histogram(cells, bins=512)
    numpy.percentile(cells, [0.5, 1, 5, 50, 95, 99, 99.5])
    1.4826 * numpy.median(numpy.abs(cells - numpy.median(cells)))
    times.append(1000 * (time.perf_counter() - start))
print(f"play/histogram_4k/numpy {statistics.median(times):.3f}")
