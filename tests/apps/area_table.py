#!/usr/bin/python3
"""The table of areas without a window, beside numpy and Astropy on the same cells.
usage: area_table.py PAVANE-VIEW FOLDER      (Debian: python3-astropy)
The cells of each area are those of the mask of a file with that area alone."""
import csv
import io
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
NX, NY, PLANES = 90, 70, 3
BMAJ, BMIN, STEP = 6e-6, 4e-6, 1e-6
random = np.random.default_rng(3)
cube = random.normal(size=(PLANES, NY, NX)).astype("f4") * 0.1
cube[:, 20:40, 30:60] += 2
cube[random.random(cube.shape) < 0.02] = np.nan
AREAS = ["circle(40.3,30.2,12)", "box(50,35,20,11,33)", "polygon(2,2,80,5,40,66)", "circle(500,500,3)",
         "-ellipse(45,30,9,4,20)", "box(85,65,4,4,0)"]
faults = []


def path(name):
    return os.path.join(FOLDER, name)


def run(*arguments, status=0):
    done = subprocess.run([VIEW, path("cube.fits"), "--batch", *arguments], capture_output=True, text=True)
    if done.returncode != status:
        faults.append(f"{arguments}: {done.returncode}, {done.stderr}")
    return done


def regions(name, areas):
    with open(path(name), "w", encoding="ascii") as file:
        file.write("# Region file format: DS9 version 4.1\nimage\n" + "\n".join(areas) + "\n")
    return path(name)


def expect(what, text, value, tolerance=1e-7):
    if np.isnan(value) if text == "" else np.isclose(float(text), value, tolerance, 1e-9):
        return
    faults.append(f"{what}: {text}, not {value}")


def numbers(plane, mask, noise):
    """What a row says, by the titles without their units."""
    cells = plane[mask].astype("f8")
    good = cells[np.isfinite(cells)]
    beam = np.pi / (4 * np.log(2)) * BMAJ * BMIN / STEP**2
    n = good.size / beam
    row = {"Cells": good.size, "Blank": cells.size - good.size, "Sum": good.sum(), "Beams": n,
           "Flux": good.sum() / beam / 1000, "Flux error": noise / 1000 * (n if n < 1 else np.sqrt(n))}
    values = np.where(mask & np.isfinite(plane), plane, np.nan).astype("f8")
    if not good.size:
        return {**row, **dict.fromkeys(("Mean", "Median", "Rms", "Least", "Greatest pixel_x", "Centroid pixel_x"), np.nan)}
    y, x = np.mgrid[1:NY + 1, 1:NX + 1]
    for name, at in (("Least", np.nanargmin(values)), ("Greatest", np.nanargmax(values))):
        row |= {name: values.flat[at], name + " pixel_x": x.flat[at], name + " pixel_y": y.flat[at]}
    total = np.nansum(values)
    row |= {"Mean": good.mean(), "Median": np.median(good), "Rms": good.std()}
    for name, place in (("x", x), ("y", y)):
        row["Centroid pixel_" + name] = np.nansum(values * place) / total if total > 0 else np.nan
    return row


def check(rows, planes, masks, noises):
    if len(rows) != len(planes) * len(masks):
        faults.append(f"{len(rows)} rows of {len(planes)} planes with {len(masks)} masks")
    for i, row in enumerate(rows):
        area, plane = i % len(masks), planes[i // len(masks)]
        expected = numbers(cube[plane], masks[area], noises[plane])
        for title, value in expected.items():
            text = next(t for k, t in row.items() if k.split(" [")[0] == title)
            expect(f"plane {plane} area {area} {title}", text, value, 1e-5 if "error" in title else 1e-4 if "pixel" in title else 1e-7)
        if row["Centroid pixel_x"]:
            at = SkyCoord(row["Centroid right ascension [FK5]"], row["Centroid declination [FK5]"], unit=(u.hourangle, u.deg), frame="fk5")
            here = SkyCoord.from_pixel(expected["Centroid pixel_x"], expected["Centroid pixel_y"], WORLD, origin=1)
            if at.separation(here).deg > STEP * 0.02:
                faults.append(f"plane {plane} area {area}: {at.to_string('hmsdms')} is not {here.to_string('hmsdms')}")


def table(*arguments):
    return list(csv.DictReader(io.StringIO(run(*arguments, "--table", "areas", "--tsv", "-").stdout), delimiter="\t"))


header = fits.Header(dict(CTYPE1="RA---SIN", CTYPE2="DEC--SIN", CTYPE3="FREQ", CRVAL1=187.7, CRVAL2=80.3, CRVAL3=1e9, CRPIX1=33.0,
                          CRPIX2=25.0, CRPIX3=1.0, CDELT1=-STEP, CDELT2=STEP, CDELT3=1e6, BUNIT="mJy/beam", BMAJ=BMAJ, BMIN=BMIN,
                          BPA=20.0, EQUINOX=2000.0, RADESYS="FK5"))
fits.PrimaryHDU(cube, header).writeto(path("cube.fits"), overwrite=True)
WORLD = WCS(header).celestial
file = regions("all.reg", AREAS)
masks = []
for i, area in enumerate(AREAS):
    run("--plane", "0", "--areas", regions("one.reg", [area.lstrip("-")]), "--mask", path("mask.fits"))
    masks.append(fits.getdata(path("mask.fits")).squeeze() > 0)
masks.append(np.any(masks[:4] + masks[5:], axis=0) & ~masks[4])
noises = [1.4826 * np.nanmedian(abs(p - np.nanmedian(p))) for p in cube]
check(table("--plane", "1", "--areas", file), [1], masks, noises)
check(table("--planes", "0-2", "--areas", file), [0, 1, 2], masks, noises)
check(table("--plane", "2"), [2], [np.ones((NY, NX), bool)], noises)
empty = cube[1][masks[5] & np.isfinite(cube[1])]
check(table("--plane", "1", "--areas", file, "--empty-area", "6"), [1], masks, {1: 1.4826 * np.median(abs(empty - np.median(empty)))})
# one number told in two ways
stats = dict(line.split(" ", 1) for line in run("--plane", "1", "--areas", file, "--stats").stdout.splitlines())
if stats["mask_flux"] != table("--plane", "1", "--areas", file)[-1]["Flux [Jy]"] + " Jy":
    faults.append("the flux of all areas is not that of --stats")
run("--plane", "1", "--areas", file, "--table", "areas", "--tsv", "-", "--empty-area", "jet", status=2)
run("--plane", "1", "--areas", file, "--empty-area", "6", status=1)
run("--planes", "0-9", "--areas", file, "--table", "areas", "--tsv", path("none.tsv"), status=2)
if os.path.exists(path("none.tsv")):
    faults.append("a table of planes that are not there was written")
print("\n".join(faults) if faults else "as numpy and Astropy have them")
sys.exit(1 if faults else 0)
