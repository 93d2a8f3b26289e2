#!/usr/bin/python3
"""Times contourpy on the maps of bench-contours (argument: that program).

Prints lines "job/case/who <median milliseconds>".
"""
import statistics
import subprocess
import sys
import tempfile
import time

import contourpy
import numpy


def levels():
    made = [-0.009, 0.009]
    while len(made) < 10:
        made.append(made[-1] * 1.7)
    return sorted(made)


def trace(cells):
    generator = contourpy.contour_generator(z=cells, name="serial")
    return [generator.lines(level) for level in levels()]


def median_milliseconds(cells):
    times = []
    while len(times) < 3 or (sum(times) < 2 and len(times) < 50):
        start = time.perf_counter()
        trace(cells)
        times.append(time.perf_counter() - start)
    return statistics.median(times) * 1000


def main():
    for size in (1024, 4096):
        for noisy, name in enumerate(("smooth", "noisy")):
            with tempfile.NamedTemporaryFile() as file:
                subprocess.run([sys.argv[1], "--write-map", file.name, str(size), str(noisy)],
                               check=True)
                cells = numpy.fromfile(file.name, dtype=numpy.float32).reshape(size, size)
            print(f"contours/{size // 1024}k-{name}/contourpy {median_milliseconds(cells):.3f}")


if __name__ == "__main__":
    main()
