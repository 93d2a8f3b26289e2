#!/usr/bin/python3
"""Times matplotlib on the figures of bench-figures (argument: that program), in processor time.

Prints lines "job/case/who <median milliseconds>".
"""
import io
import statistics
import subprocess
import sys
import tempfile
import time

import matplotlib
import numpy

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402


def figure(cells):
    picture, axes = plt.subplots(figsize=(9, 9), dpi=100)
    image = axes.imshow(cells, origin="lower", cmap="inferno")
    axes.contour(cells, levels=[cells.max() * p / 100 for p in (1, 2, 4, 8, 16, 32, 64)], colors="w", linewidths=1)
    axes.set_xlabel("Right ascension")
    axes.set_ylabel("Declination")
    picture.colorbar(image, label="Jy/beam")
    to = io.BytesIO()
    picture.savefig(to, format="png")
    plt.close(picture)
    return to.getvalue()


def main():
    for side, runs in ((512, 9), (4096, 3)):
        with tempfile.NamedTemporaryFile() as file:
            subprocess.run([sys.argv[1], "map", str(side), file.name], check=True)
            cells = numpy.fromfile(file.name, dtype=numpy.float32).reshape(side, side)
        figure(cells)  # fonts are read once
        times = []
        for _ in range(runs):
            start = time.process_time()
            figure(cells)
            times.append(time.process_time() - start)
        print(f"figure/{side} squared to PNG/matplotlib {statistics.median(times) * 1000:.3f}")


if __name__ == "__main__":
    main()
