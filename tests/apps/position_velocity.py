#!/usr/bin/python3
"""Position-velocity maps beside numpy and Astropy on the same cells.
usage: position_velocity.py PAVANE-VIEW FOLDER      (Debian: python3-astropy)"""
import os
import subprocess
import sys
import warnings

try:
    import numpy as np
    from astropy.coordinates import SkyCoord
    from astropy.io import fits
    from astropy.wcs import WCS
except ImportError as missing:
    print("skipped:", missing)
    sys.exit(1 if os.environ.get("CI") else 77)  # the integration has all tools
warnings.simplefilter("ignore")

VIEW, FOLDER = sys.argv[1:3]
os.makedirs(FOLDER, exist_ok=True)
os.chdir(FOLDER)
NX, NY, PLANES = 60, 50, 9
cube = np.random.default_rng(2).normal(size=(PLANES, NY, NX)).astype("f4")
cube[4] = np.nan
cube[:, 20, 30] = np.nan
SKY = dict(CTYPE1="RA---SIN", CTYPE2="DEC--SIN", CRVAL1=187.7, CRVAL2=80.3, CRPIX1=33.0, CRPIX2=25.0, CDELT1=-1e-4, CDELT2=1e-4,
           EQUINOX=2000.0, RADESYS="FK5", BUNIT="Jy/beam", OBJECT="3C 9", CTYPE3="FREQ", CRVAL3=1e9, CRPIX3=2.0, CDELT3=-1e6)
REST = SKY | dict(RESTFRQ=1.002e9)
faults = []


def run(*arguments, status=0):
    done = subprocess.run([VIEW, *arguments, "--batch"], capture_output=True, text=True)
    if done.returncode != status:
        faults.append(f"{arguments}: {done.returncode}, {done.stderr}")
    return done


def along(corners, at):
    """Places (from 0) and directions of a line at distances in cells."""
    corners = np.array(corners, float) - 1
    steps = np.diff(corners, axis=0)
    ends = np.concatenate([[0], np.cumsum(np.hypot(*steps.T))])
    part = np.clip(np.searchsorted(ends, at, side="left") - 1, 0, len(steps) - 1)
    unit = (steps / np.hypot(*steps.T)[:, None])[part]
    return corners[part] + (at - ends[part])[:, None] * unit, unit


def sampled(plane, place, unit, width, across):
    count = max(1, round(width))
    values = []
    for off in (np.arange(count) - (count - 1) / 2) * width / count:
        x, y = (place + off * np.stack([-unit[:, 1], unit[:, 0]], 1)).T
        column, row = np.floor(x).astype(int), np.floor(y).astype(int)
        inside = (x >= 0) & (y >= 0) & (x <= NX - 1) & (y <= NY - 1)
        column, row = np.clip(column, 0, NX - 2), np.clip(row, 0, NY - 2)
        u, v = x - column, y - row
        value = sum(plane[row + r, column + c].astype("f8") * (u if c else 1 - u) * (v if r else 1 - v) for r in (0, 1) for c in (0, 1))
        values.append(np.where(inside, value, np.nan))
    return {"mean": np.mean, "greatest": np.max, "sum": lambda v, axis: np.sum(v, axis) * max(width, 1) / count}[across](values, axis=0)


def write(name, cells, cards):
    image = fits.CompImageHDU(cells, fits.Header(cards), compression_type="GZIP_2", quantize_level=0) if name.startswith("packed") else fits.PrimaryHDU(cells, fits.Header(cards))
    image.writeto(name, overwrite=True)


LINES = (([(3.3, 4.1), (50.7, 41.2)], 1, "mean"), ([(20.1, 10.3), (55.2, 12.7), (40.6, 45.9)], 3.4, "sum"), ([(-4.2, 30.3), (70.1, 8.8)], 4, "greatest"))
LIGHT = 299792.458
PLACES = 1e9 - 1e6 * (np.arange(PLANES) - 1)
# what the second axis is, and the value of each plane in its unit
CASES = (("plain.fits", REST, cube, "VRAD", LIGHT * (1 - PLACES / 1.002e9)), ("packed.fits", REST, cube, "VRAD", LIGHT * (1 - PLACES / 1.002e9)),
         ("turned.fits", REST | dict(CDELT3=1e6, CRPIX3=8.0), cube[::-1], "VRAD", LIGHT * (1 - PLACES[::-1] / 1.002e9)),
         ("hertz.fits", SKY, cube, "FREQ", PLACES), ("one.fits", REST, cube[2:3], "VRAD", LIGHT * (1 - PLACES[:1] / 1.002e9)),
         ("planes.fits", SKY | dict(CTYPE3="TIME"), cube, "PLANE", np.arange(PLANES)),
         ("optical.fits", REST | dict(VELREF=2), cube, "VOPT-F2W", LIGHT * (1.002e9 / PLACES - 1)),
         ("flat.fits", {k: v for k, v in REST.items() if k[:5] not in ("CTYPE", "CDELT") or k[5] == "3"}, cube, "VRAD", LIGHT * (1 - PLACES / 1.002e9)),
         ("oblong.fits", REST | dict(CDELT1=-3e-4), cube, "VRAD", LIGHT * (1 - PLACES / 1.002e9)))
for name, cards, cells, kind, values in CASES:
    write(name, cells, cards)
    for corners, width, across in LINES:
        text = ",".join(str(x) for c in corners for x in c) + (f",{width}" if width > 1 else "")
        run(name, "--pv", text, "--out", "pv.fits", *(["--across", across] if width > 1 else []))
        made = fits.open("pv.fits")[0]
        ends = np.cumsum(np.hypot(*np.diff(np.array(corners), axis=0).T))
        at = np.arange(int(ends[-1] * 2) + 1) / 2
        length = at[-1]
        if sky := name != "flat.fits":  # equal distances on the sky, found on a fine line through the corners
            fine = np.union1d(np.linspace(0, at[-1], 4001), ends[:-1])
            position = SkyCoord.from_pixel(*along(corners, fine)[0].T, WCS(fits.Header(cards)).celestial, origin=0)
            distance = np.concatenate([[0], np.cumsum(position[:-1].separation(position[1:]).arcsec)])
            length = distance[-1]
            if name == "oblong.fits":
                at = np.interp(np.linspace(0, length, len(at)), distance, fine)
        place, unit = along(corners, at)
        wanted = np.array([sampled(plane, place, unit, width, across) for plane in cells])
        found = made.data.reshape(made.data.shape[-2:])
        # where a corner lies between two samples of oblong cells the next ones are a little aside
        if found.shape != wanted.shape or not np.array_equal(np.isnan(found), np.isnan(wanted)):
            faults.append(f"{name} {text}: {found.shape}, not {wanted.shape}, or other blanks")
        elif np.nanquantile(abs(found - wanted), 0.98 if name == "oblong.fits" else 1) > 1e-5:
            faults.append(f"{name} {text}: differs by {np.nanmax(abs(found - wanted))}")
        header = made.header
        offset = header["CRVAL1"] + (len(at) - header["CRPIX1"]) * header["CDELT1"]
        if not abs(offset / length - 1) < 1e-6 or header["CUNIT1"] != ("arcsec" if sky else "pixel"):
            faults.append(f"{name} {text}: {offset} {header['CUNIT1']} long, not {length}")
        if kind == "PLANE":
            axis = header["CRVAL2"] + (np.arange(len(cells)) + 1 - header["CRPIX2"]) * header["CDELT2"]
        else:
            pixels = np.stack([np.zeros(len(cells)), np.arange(len(cells))], 1)
            axis = WCS(header, naxis=2).wcs_pix2world(pixels, 0)[:, 1] / (1 if kind == "FREQ" else 1e3)
        if header["CTYPE2"] != kind or not np.allclose(axis, values[:len(cells)] if name != "one.fits" else LIGHT * (1 - 1.001 / 1.002), 1e-9):
            faults.append(f"{name}: {header['CTYPE2']} {axis}, not {values}")
        if header["BUNIT"] != "Jy/beam" or header["OBJECT"] != "3C 9" or name not in str(header["HISTORY"]):
            faults.append(f"{name}: {repr(header)}")
# a part of the planes, and a picture in one go
run("plain.fits", "--pv", "3,4,50,41", "--planes", "2-6", "--out", "part.fits", "--png", "pv.png", "--levels", "none")
if fits.getdata("part.fits").shape[-2] != 5 or os.path.getsize("pv.png") < 1000:
    faults.append("planes 2-6")
with open("plain.fits", "rb") as whole, open("cut.fits", "wb") as cut:
    cut.write(whole.read()[:40000])
for options, status in (("cut.fits --pv 1,1,9,9", 2), ("plain.fits --pv 200,1,300,9", 2), ("plain.fits --pv 3,3,3,3", 2), ("plain.fits --pv 3,3,3.2,3", 2),
                          ("plain.fits --pv 3,3,9", 1), ("plain.fits --pv 3,3,9,9 --across sum", 1), ("plain.fits --pv 3,3,9,9 --planes 4-99", 2),
                          ("plain.fits --pv 1,1,1e99,1", 2), ("plain.fits --pv 3,3,9,9 --stats", 1)):
    run(*options.split(), "--out", "none.fits", status=status)
    if os.path.exists("none.fits"):
        faults.append(f"{options} leaves a file")
print("\n".join(faults) if faults else "as numpy and Astropy have them")
sys.exit(1 if faults else 0)
