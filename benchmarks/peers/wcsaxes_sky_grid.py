"""The grid and labels of the same field by WCSAxes, without an image, into a picture of 1200 x 800."""
import statistics
import time

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
from astropy.wcs import WCS


def field():
    wcs = WCS(naxis=2)
    wcs.wcs.ctype = ["RA---SIN", "DEC--SIN"]
    wcs.wcs.crval = [123, 80]
    wcs.wcs.crpix = [600.5, 400.5]
    wcs.wcs.cdelt = [-0.003, 0.003]
    wcs.wcs.radesys = "FK5"
    wcs.wcs.equinox = 2000
    return wcs


def draw(frame):
    start = time.perf_counter()
    figure = plt.figure(figsize=(12, 8), dpi=100)
    axes = figure.add_subplot(projection=field())
    axes.set_xlim(-0.5, 1199.5)
    axes.set_ylim(-0.5, 799.5)
    if frame:
        axes.coords[0].set_ticks_visible(False)
        axes.coords[0].set_ticklabel_visible(False)
        axes.coords[1].set_ticks_visible(False)
        axes.coords[1].set_ticklabel_visible(False)
        axes.get_coords_overlay(frame).grid(color="grey")
    else:
        axes.coords.grid(color="grey")
        axes.set_xlabel("Right ascension")
        axes.set_ylabel("Declination")
    figure.canvas.draw()
    plt.close(figure)
    return (time.perf_counter() - start) * 1000


for case, frame in (("SIN at 80", None), ("SIN at 80 galactic", "galactic")):
    draw(frame)
    print(f"sky_grid/{case}/WCSAxes {statistics.median(draw(frame) for _ in range(7)):.3f}")
