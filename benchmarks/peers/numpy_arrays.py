#!/usr/bin/python3
"""Stores and loads 1e7 doubles with numpy; prints "array/<job>/numpy <median milliseconds>"."""
import os
import statistics
import time

import numpy

values = 0.5 * numpy.arange(10_000_000)
name = os.path.join(os.environ.get("TMPDIR", "/tmp"), f"pavane-bench-numpy-{os.getpid()}.npy")


def median(rounds, action):
    times = []
    for _ in range(rounds):
        start = time.perf_counter()
        action()
        times.append(1000 * (time.perf_counter() - start))
    return statistics.median(times)


def store():
    if os.path.exists(name):
        os.remove(name)
    numpy.save(name, values)


print(f"array/store/numpy {median(15, store):.3f}")
print(f"array/load/numpy {median(15, lambda: numpy.load(name)):.3f}")
os.remove(name)
