#!/usr/bin/python3
"""Profiles, spectra, histograms and fits without a window, beside numpy and Astropy on the same cells.
usage: profile_tables.py PAVANE-VIEW FOLDER      (Debian: python3-astropy)"""
import csv
import io
import math
import os
import subprocess
import sys
import warnings

try:
    import numpy as np
    from astropy import units as u
    from astropy.coordinates import SkyCoord
    from astropy.io import fits
    from astropy.wcs import WCS
except ImportError as missing:
    print("skipped:", missing)
    sys.exit(1 if os.environ.get("CI") else 77)  # the integration has all tools
warnings.simplefilter("ignore")

VIEW, FOLDER = sys.argv[1:3]
os.makedirs(FOLDER, exist_ok=True)
NX, NY, PLANES, STEP = 90, 70, 5, 1e-6
random = np.random.default_rng(5)
cube = random.normal(size=(PLANES, NY, NX)).astype("f4") * 0.1
cube[:, 20:40, 30:60] += np.arange(PLANES, dtype="f4")[:, None, None]
cube[:, 50, 12] = np.nan
faults = []


def path(name):
    return os.path.join(FOLDER, name)


def table(*arguments, file="cube.fits", status=0):
    done = subprocess.run([VIEW, path(file), "--batch", *arguments], capture_output=True, text=True)
    if done.returncode != status:
        faults.append(f"{arguments}: {done.returncode}, {done.stderr}")
    return {k: [r[k] for r in rows] for rows in [list(csv.DictReader(io.StringIO(done.stdout), delimiter="\t"))] if rows for k in rows[0]}


def expect(what, texts, values, tolerance=1e-6):
    numbers = np.array([float(t or "nan") for t in texts])
    if numbers.shape != np.shape(values) or not np.allclose(numbers, values, tolerance, 1e-9, equal_nan=True):
        faults.append(f"{what}: {numbers}, not {values}")


def between(x, y):
    """The map by the weights of the four cells about each place; those of no weight do not count."""
    plane, value = np.pad(cube[2].astype("f8"), 1, constant_values=np.nan), 0
    x, y = np.clip(x, -1, NX) + 1, np.clip(y, -1, NY) + 1
    for r in (0, 1):
        for c in (0, 1):
            weight = np.clip(1 - abs(np.floor(x) + c - x), 0, 1) * np.clip(1 - abs(np.floor(y) + r - y), 0, 1)
            cells = plane[np.minimum(np.floor(y).astype(int) + r, NY + 1), np.minimum(np.floor(x).astype(int) + c, NX + 1)]
            value = value + np.where(weight > 1e-9, cells * weight, 0)
    return value


def normal(x):
    return np.array([math.erfc(-v / math.sqrt(2)) / 2 for v in np.atleast_1d(x)])


def profile(corners, width, across):
    """Places each half cell along the corners (pixels from 1) and the map there."""
    corners = np.array(corners, float)
    ends = np.concatenate([[0], np.cumsum(np.hypot(*np.diff(corners, axis=0).T))])
    along = np.append(np.arange(0, ends[-1], 0.5), ends[-1])
    place = np.stack([np.interp(along, ends, corners[:, i]) for i in (0, 1)])
    part = np.clip(np.searchsorted(ends, along, side="left") - 1, 0, len(corners) - 2)
    unit = (np.diff(corners, axis=0) / np.diff(ends)[:, None])[part].T
    count = max(1, round(width))
    offs = (np.arange(count) - (count - 1) / 2) * width / count
    values = np.array([between(place[0] - o * unit[1] - 1, place[1] + o * unit[0] - 1) for o in offs])
    values = {"mean": values.mean, "greatest": values.max, "sum": lambda axis: values.sum(axis) * max(width, 1) / count}[across](axis=0)
    sky = SkyCoord.from_pixel(*place, WORLD, origin=1)
    return along, place, np.concatenate([[0], np.cumsum(sky[:-1].separation(sky[1:]).to_value(u.mas))]), sky, values


header = fits.Header(dict(CTYPE1="RA---SIN", CTYPE2="DEC--SIN", CTYPE3="FREQ", CRVAL1=187.7, CRVAL2=80.3, CRVAL3=1e9, CRPIX1=33.0,
                          CRPIX2=25.0, CRPIX3=1.0, CDELT1=-STEP, CDELT2=STEP, CDELT3=1e6, BUNIT="mJy/beam", BMAJ=6e-6, BMIN=4e-6,
                          BPA=20.0, EQUINOX=2000.0, RADESYS="FK5", RESTFRQ=1.002e9))
fits.PrimaryHDU(cube, header).writeto(path("cube.fits"), overwrite=True)
header["CDELT1"], header["CDELT2"] = -0.5, 0.5  # half the sky
fits.PrimaryHDU(cube[2], header).writeto(path("wide.fits"), overwrite=True)
for file, corners, width, across in (("cube.fits", [(3, 4), (60.5, 41), (60.5, 69)], 1, "mean"), ("cube.fits", [(20, 20), (70, 52.3)], 4, "greatest"),
                                     ("cube.fits", [(20, 60), (70, 10)], 3.5, "sum"), ("cube.fits", [(85, 30), (99, 35)], 1, "mean"),
                                     ("cube.fits", [(11, 45), (14, 55)], 3, "mean"), ("wide.fits", [(2, 3), (80, 60)], 1, "mean")):
    WORLD = WCS(fits.getheader(path(file))).celestial
    text = ",".join(str(x) for c in corners for x in c) + (f",{width}" if width > 1 else "")
    rows = table("--profile", text, *(["--across", across] if width > 1 else []), *(["--plane", "2"] if file == "cube.fits" else []), file=file)
    along, place, distance, sky, values = profile(corners, width, across)
    expect(f"{text} cells", rows["Distance [cells]"], along)
    expect(f"{text} distance", rows["Distance [mas]"], distance, 1e-5)
    for i in (0, 1):
        expect(f"{text} place", rows["pixel_" + "xy"[i]], np.round(place[i], 3), 1e-4)
    expect(f"{text} value", list(rows.values())[-1], values, 1e-5)
    told = SkyCoord(rows["Right ascension [FK5]"], rows["Declination [FK5]"], unit=(u.hourangle, u.deg), frame="fk5")
    if told.separation(sky).max().deg > abs(WORLD.wcs.cdelt[0]) * 0.02:
        faults.append(f"{text}: its places are not those of Astropy")

areas = path("two.reg")
with open(areas, "w", encoding="ascii") as regions:
    regions.write("# Region file format: DS9 version 4.1\nimage\nbox(45.5,30.5,29,19,0) # text={source}\nbox(12,51,4,4,0)\n")
boxes = {"source": np.s_[20:40, 30:60], "Area 2": np.s_[48:53, 9:14]}
velocity = (1 - (1e9 + 1e6 * np.arange(PLANES)) / 1.002e9) * 299792.458
beam = np.pi / (4 * np.log(2)) * 24
for arguments, planes in (((), range(PLANES)), (("--planes", "1-3"), range(1, 4))):
    rows = table("--areas", areas, "--table", "spectrum", "--tsv", "-", *arguments)
    for i, (name, box) in enumerate(boxes.items()):
        part = {k: v[i * len(planes):(i + 1) * len(planes)] for k, v in rows.items()}
        cells = cube[list(planes)][(slice(None), *box)].reshape(len(planes), -1).astype("f8")
        if set(part["Name"]) != {name}:
            faults.append(f"spectrum of {part['Name']}, not {name}")
        for title, values in (("Plane", list(planes)), ("Velocity [km/s]", velocity[list(planes)]), ("Cells", np.isfinite(cells).sum(1)),
                              ("Mean [mJy/beam]", np.nanmean(cells, 1)), ("Flux [Jy]", np.nansum(cells, 1) / beam / 1000),
                              ("Median [mJy/beam]", np.nanmedian(cells, 1)), ("Greatest [mJy/beam]", np.nanmax(cells, 1))):
            expect(f"{name} {title}", part[title], values)
expect("spectrum of the map", table("--table", "spectrum", "--tsv", "-")["Mean [mJy/beam]"], np.nanmean(cube.astype("f8"), axis=(1, 2)))

plane = cube[3][np.isfinite(cube[3])].astype("f8")
sigma = 1.4826 * np.median(abs(plane - np.median(plane)))
for arguments, name, cells in (((), "Whole map", plane), (("--areas", areas), "source", cube[3][boxes["source"]].ravel().astype("f8"))):
    rows = table("--plane", "3", "--table", "histogram", "--tsv", "-", *arguments)
    mine = [i for i, n in enumerate(rows["Name"]) if n == name]
    edges = np.array([float(rows["From [mJy/beam]"][i]) for i in mine] + [float(rows["To [mJy/beam]"][mine[-1]])])
    expect("histogram", [rows["Cells"][i] for i in mine], np.histogram(cells, edges)[0])
    if not 0.1 * sigma < edges[1] - edges[0] < 0.6 * sigma or edges[0] > cells.min() or edges[-1] < cells.max():
        faults.append(f"bins of {edges[1] - edges[0]} for a noise of {sigma}")
    inside = (abs(cells - np.median(plane)) <= sigma).sum() / math.erf(math.sqrt(0.5))
    expect("noise", [rows["Noise"][i] for i in mine], inside * np.diff(normal((edges - np.median(plane)) / sigma)), 1e-4)
# two sources in two areas, and what is left of the map
y, x = np.mgrid[1:NY + 1, 1:NX + 1]
flat = 0.02 * random.normal(size=(NY, NX))
for height, x0, y0, major, minor, angle in (TRUTH := ((5, 25.3, 30.6, 12, 7, 30), (3, 60.2, 40.1, 9, 6, -50))):
    east, north = (x0 - x), (y - y0)
    s, c = np.sin(np.radians(angle)), np.cos(np.radians(angle))
    flat += height * np.exp(-4 * np.log(2) * (((east * s + north * c) / major)**2 + ((east * c - north * s) / minor)**2))
header = fits.getheader(path("cube.fits"))
fits.PrimaryHDU(flat.astype("f4"), header).writeto(path("two.fits"), overwrite=True)
with open(path("both.reg"), "w", encoding="ascii") as regions:
    regions.write("image\nbox(25,30,36,36,0)\nbox(61,40,36,30,0)\nbox(20,60,12,12,0)\n")
rows = table("--areas", path("both.reg"), "--fit", "1", "--empty-area", "3", "--table", "fit", "--tsv", path("fit.tsv"), "--residual", path("left.fits"),
             file="two.fits")
with open(path("fit.tsv"), encoding="utf-8") as file:
    rows = list(csv.DictReader(file, delimiter="\t"))
for row, (height, x0, y0, major, minor, angle) in zip(rows, TRUTH):
    for title, value in (("Peak [mJy/beam]", height), ("pixel_x", x0), ("pixel_y", y0), ("Major axis [mas]", major * STEP * 3600e3),
                         ("Minor axis [mas]", minor * STEP * 3600e3), ("Angle [deg]", angle)):
        error = float(row[title.split(" [")[0] + " error" + (" [" + title.split(" [")[1] if " [" in title else "")])
        # the noise is white: its errors are below those of noise as wide as the beam
        if not abs(float(row[title]) - value) < 3 * error or not error < 0.05 * abs(value):
            faults.append(f"fit: {title} {row[title]} +- {error}, not {value}")
    at = SkyCoord.from_pixel(x0, y0, WCS(header).celestial, origin=1)
    if SkyCoord(row["Right ascension [FK5]"], row["Declination [FK5]"], unit=(u.hourangle, u.deg), frame="fk5").separation(at).deg > STEP * 0.1:
        faults.append("fit: its position is not that of Astropy")
if len(rows) != 2 or abs(fits.getdata(path("left.fits"))).max() > 0.15:
    faults.append(f"{len(rows)} fits leave {abs(fits.getdata(path('left.fits'))).max()}")
for arguments, status in (("--fit 0", 1), ("--fit 1,back", 1), ("--table fit --tsv -", 1), ("--residual r.fits", 1), ("--fit 4", 2), ("--fit 2", 0),
                          ("--fit 2,background,beam", 0), (f"--areas {areas} --fit 2", 2), (f"--areas {areas} --fit 2 --partial", 2)):
    table(*arguments.split(), file="two.fits", status=status)
header["BMAJ"] = 0
fits.PrimaryHDU(np.zeros((9, 9), "f4"), header).writeto(path("flat.fits"), overwrite=True)
table("--fit", "1", file="flat.fits", status=2)
table("--fit", "1,beam", file="flat.fits", status=2)
# wrong use and bad input
for arguments, status in (("--profile 1,1,5", 1), ("--profile 1,1,5,5,0", 1), ("--profile 1,nan,5,5", 1), ("--table profile --tsv -", 1),
                          ("--profile 1,1,9,9 --across sum", 1), ("--profile 3,3,3,3", 2), ("--profile 200,3,300,3", 2), ("--profile 1,1,1e99,1", 2)):
    table("--plane", "0", *arguments.split(), status=status)
table("--table", "spectrum", "--planes", "2-7", "--tsv", "-", status=2)
print("\n".join(faults) if faults else "as numpy and Astropy have them")
sys.exit(1 if faults else 0)
