#!/usr/bin/python3
"""The same maps by numpy, scipy and WCSAxes; each line "maps/<case>/<peer> <median ms>"."""
import statistics
import subprocess
import sys
import tempfile
import time

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np
from astropy.wcs import WCS
from scipy.ndimage import map_coordinates
from scipy.signal import fftconvolve


def median(job, times=3):
    job()
    found = []
    for _ in range(times):
        start = time.perf_counter()
        job()
        found.append(1000 * (time.perf_counter() - start))
    return statistics.median(found)


def tell(case, peer, value):
    print(f"maps/{case}/{peer} {value:.3f}", flush=True)


def moments():
    cube = np.broadcast_to(np.random.default_rng(1).normal(size=(1024, 1024)).astype("f4"), (256, 1024, 1024)).copy()
    v = (10 * np.arange(256, dtype="f4"))[:, None, None]

    def job():
        used = np.where(cube > 1, cube, np.float32(0))
        total = used.sum(axis=0)
        with np.errstate(all="ignore"):
            mean = (used * v).sum(axis=0) / total
            return total * 10, mean, np.sqrt((used * (v - mean) ** 2).sum(axis=0) / total)
    tell("moments 0 1 2 of 1 k x 256", "numpy", median(job))


def file():
    """The same bytes by cat, warm."""
    with tempfile.NamedTemporaryFile(suffix=".fits") as cube:
        plane = np.random.default_rng(1).normal(size=(1024, 1024)).astype(">f4").tobytes()
        for _ in range(256):
            cube.write(plane)
        cube.flush()
        time_of_cat = median(lambda: subprocess.run(f"cat {cube.name} > /dev/null", shell=True, check=True), 5)
    for case in ("moments of a file of 1 GB", "moments of it with the noise"):
        tell(case, "cat", time_of_cat)


def smooth():
    cells = np.random.default_rng(1).normal(size=(4096, 4096)).astype("f4")
    y, x = np.mgrid[-32:33, -32:33]
    kernel = np.exp(-4 * np.log(2) * (x ** 2 / 48 + y ** 2 / 20)).astype("f4")
    tell("larger beam 4 k", "scipy", median(lambda: fftconvolve(cells, kernel, mode="same")))


def sky(names, centre, step):
    wcs = WCS(naxis=2)
    wcs.wcs.ctype, wcs.wcs.crval, wcs.wcs.cdelt = names, centre, [-step, step]
    wcs.wcs.crpix = [512, 512]
    return wcs


first, second = sky(["RA---SIN", "DEC--SIN"], [187.7, 12.4], 1e-3), sky(["GLON-TAN", "GLAT-TAN"], [283.747, 74.498], .9e-3)
rows, columns = np.mgrid[:1024, :1024]
hills = (np.sin(.013 * columns + .4) * np.cos(.017 * rows) + .5 * np.sin(.007 * (rows + columns))).astype("f4")


def regrid():
    def job():
        x, y = first.world_to_pixel(second.pixel_to_world(columns, rows))
        return map_coordinates(hills, [y, x], order=3, cval=np.nan)
    tell("another grid 1 k", "astropy and scipy", median(job))


def contours():
    def job():
        figure = plt.figure(figsize=(10, 10), dpi=100)
        axes = figure.add_subplot(projection=first)
        axes.imshow(hills, origin="lower")
        axes.contour(hills, levels=[-1.1, -.8, -.5, -.2, .1, .4, .7, .9, 1.1, 1.3], colors="k",
                     transform=axes.get_transform(second))
        figure.canvas.draw()
        plt.close(figure)
    tell("contours of another map", "WCSAxes", median(job))


jobs = {"moments": moments, "file": file, "smooth": smooth, "regrid": regrid, "contours": contours}
for name in [a for a in sys.argv[1:] if a in jobs] or jobs:  # the first argument is the program
    jobs[name]()
