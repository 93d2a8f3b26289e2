#!/usr/bin/python3
"""Sum, mean, median, std, min and max of 10 000 areas of 400 cells on 4096 x 4096 floats, each of its box with its
mask; prints "area_numbers/table_10000/numpy <median ms>"."""
import statistics
import time

import numpy

cells = (0.1 * numpy.random.default_rng(1).normal(size=(4096, 4096))).astype(numpy.float32)
corners = [(int(40.96 * (i // 100) + 10), int(40.96 * (i % 100) + 10)) for i in range(10000)]
masks = [numpy.ones((20, 20), bool) for _ in corners]
times = []
for _ in range(3):
    start = time.perf_counter()
    for (y, x), mask in zip(corners, masks):
        values = cells[y:y + 20, x:x + 20][mask]
        row = values.sum(), values.mean(), numpy.median(values), values.std(), values.min(), values.max()
    times.append(1000 * (time.perf_counter() - start))
print(f"area_numbers/table_10000/numpy {statistics.median(times):.3f}")
