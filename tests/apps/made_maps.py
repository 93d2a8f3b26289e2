#!/usr/bin/python3
"""Maps made of a cube without a window, beside numpy on the same cells.
usage: made_maps.py PAVANE-VIEW FOLDER      (Debian: python3-astropy)"""
import os
import subprocess
import sys
import warnings

try:
    import numpy as np
    from astropy.io import fits
except ImportError as missing:
    print("skipped:", missing)
    sys.exit(1 if os.environ.get("CI") else 77)  # the integration has all tools
warnings.simplefilter("ignore")

VIEW, FOLDER = sys.argv[1:3]
os.makedirs(FOLDER, exist_ok=True)
NX, NY, PLANES, FIRST, LAST = 300, 130, 12, 2, 9
random = np.random.default_rng(5)
cube = random.normal(size=(PLANES, NY, NX)).astype("f4") * 0.1
for plane in range(PLANES):
    cube[plane, 30:70, 40:200] += 3 * np.exp(-((plane - 5.5) / 1.5) ** 2)
cube[random.random(cube.shape) < 0.03] = np.nan
cube[4] = np.nan
faults = []


def path(name):
    return os.path.join(FOLDER, name)


def write(name, packed=False):
    header = fits.Header()
    for key, value in (("BUNIT", "JY/BEAM"), ("CTYPE1", "RA---SIN"), ("CTYPE2", "DEC--SIN"), ("CTYPE3", "FREQ"),
                       ("CRVAL1", 187.7), ("CRVAL2", 12.4), ("CRVAL3", 1.42e9), ("CDELT1", -1e-4),
                       ("CDELT2", 1e-4), ("CDELT3", 1e5), ("CRPIX1", 9.), ("CRPIX2", 9.), ("CRPIX3", 3.),
                       ("RESTFRQ", 1.420405752e9), ("BMAJ", 6e-4), ("BMIN", 4e-4), ("BPA", 20.)):
        header[key] = value
    if packed:
        hdus = [fits.PrimaryHDU(), fits.CompImageHDU(cube, header, compression_type="GZIP_1",
                                                      quantize_level=0)]
    else:
        hdus = [fits.PrimaryHDU(cube, header)]
    fits.HDUList(hdus).writeto(path(name), overwrite=True)


def run(*arguments, status=0):
    done = subprocess.run([VIEW, *arguments], capture_output=True, text=True, cwd=FOLDER)
    if done.returncode != status:
        faults.append(f"{arguments}: {done.returncode}, {done.stderr}")
    return done


def wanted(clip):
    """Moments of the planes, and the error of the first, in doubles."""
    planes = np.arange(FIRST, LAST + 1)
    speed = 299792.458
    v = speed * (1 - (1.42e9 + (planes - 2) * 1e5) / 1.420405752e9)[:, None, None]
    w = speed * 1e5 / 1.420405752e9
    part = cube[FIRST:LAST + 1].astype("f8")
    noise = np.array([1.4826 * np.nanmedian(np.abs(p - np.nanmedian(p))) if np.isfinite(p).any() else 0
                      for p in part])[:, None, None]
    used = np.isfinite(part) & (part > clip * noise if clip else True)
    part = np.where(used, part, 0)
    none = ~used.any(axis=0)
    total = np.where(none, np.nan, part.sum(axis=0) * w)
    error = np.where(none, np.nan, w * np.sqrt((used * noise ** 2).sum(axis=0)))
    mean = np.where(total > clip * error, (part * v).sum(axis=0) * w / total, np.nan)
    square = (part * (v - mean) ** 2).sum(axis=0) * w / total
    greatest = np.where(none, np.nan, np.where(used, part, -np.inf).max(axis=0))
    return {"0": total, "1": mean, "2": np.where(square >= 0, np.sqrt(square), np.nan), "max": greatest}, error


def compare(what, found, value):
    found = np.squeeze(found).astype("f8")
    # where rounding decides whether there is a value
    both = np.isfinite(found) & np.isfinite(value)
    if (np.isfinite(found) != np.isfinite(value)).sum() > 2 or both.sum() < 1000:
        faults.append(f"{what}: {np.isfinite(found).sum()} cells, not {np.isfinite(value).sum()}")
    elif not np.allclose(found[both], value[both], 2e-5, 1e-4):
        faults.append(f"{what}: off by {np.abs(found[both] - value[both]).max()}")


warnings.filterwarnings("ignore")
np.seterr(all="ignore")
write("cube.fits")
write("packed.fits", True)
for clip in (0, 3):
    maps, error = wanted(clip)
    for moment, value in maps.items():
        for cube_file in ("cube.fits", "packed.fits")[:2 if clip else 1]:
            run(cube_file, "--batch", "--moment", moment, "--planes", f"{FIRST}-{LAST}", "--clip", str(clip),
                "--out", "out.fits", "--errors", "errors.fits")
            with fits.open(path("out.fits")) as made, fits.open(path("errors.fits")) as errors:
                compare(f"{cube_file}: moment {moment}, clip {clip}", made[0].data, value)
                unit = {"0": "JY/BEAM.km/s", "max": "JY/BEAM"}.get(moment, "km/s")
                history = str(made[0].header["HISTORY"])
                if made[0].header["BUNIT"] != unit or f"planes 2-9 (from 0) of {cube_file}" not in history:
                    faults.append(f"{moment}: {made[0].header['BUNIT']}, {history}")
                if moment == "0":
                    compare(f"error, clip {clip}", errors[0].data, error)

# a source of the shape of the beam becomes one of the new beam; cells are 360 mas wide
with fits.open(path("cube.fits")) as file:
    header = file[0].header
offset_y, offset_x = np.mgrid[:NY, :NX].astype("f8") * 360
offset_x, offset_y = -(offset_x - 150 * 360), offset_y - 60 * 360


def source(major, minor, angle):
    east, north = np.sin(np.radians(angle)), np.cos(np.radians(angle))
    along, across = (offset_x * east + offset_y * north) / major, (offset_x * north - offset_y * east) / minor
    return np.exp(-4 * np.log(2) * (along ** 2 + across ** 2))


source_map = source(2160, 1440, 20).astype("f4")
source_map[5, 5] = np.nan
fits.writeto(path("source.fits"), np.array([np.zeros_like(source_map), source_map]), header, overwrite=True)
said = run("source.fits", "--batch", "--smooth", "3600,2880,50", "--plane", "1", "--out", "smooth.fits")
with fits.open(path("smooth.fits")) as made:
    found, cards = np.squeeze(made[0].data), made[0].header
    if np.nanmax(np.abs(found - source(3600, 2880, 50))) > 1e-5 or not np.isnan(found[5, 5]):
        faults.append("smooth: another map")
    if not np.allclose([cards["BMAJ"], cards["BMIN"], cards["BPA"]], [1e-3, 8e-4, 50]) or \
            cards["BUNIT"] != "JY/BEAM" or "plane 1, from 0" not in str(cards["HISTORY"]):
        faults.append(f"smooth: {cards!r}")
if "cells lie within a beam" not in said.stderr or "factor 3.33333" not in said.stdout:
    faults.append(f"smooth: {said}")

# what is refused, and leaves no file
with open(path("cube.fits"), "rb") as whole, open(path("cut.fits"), "wb") as cut:
    cut.write(whole.read()[:-200000])
os.remove(path("out.fits"))
rest = ("--batch", "--moment", "0", "--out", "out.fits")
for arguments, status, why in (
        (("cut.fits", *rest, "--planes", "0-11"), 2, "cut.fits: "),
        (("cube.fits", *rest, "--planes", "3-12"), 2, "has 12 planes"),
        (("cube.fits", *rest), 1, "--planes"),
        (("cube.fits", "--batch", "--moment", "0", "--planes", "0-3"), 1, "--out"),
        (("cube.fits", "--batch", "--moment", "3", "--planes", "0-3", "--out", "out.fits"), 1, "--moment knows"),
        (("cube.fits", *rest, "--planes", "0-3", "--clip", "-1"), 1, "--clip wants"),
        (("cube.fits", *rest, "--planes", "0-3", "--png", "a.png"), 1, "step of its own"),
        (("cube.fits", *rest, "--planes", "0-3", "--errors", "cube.fits"), 1, "would write over the map"),
        (("source.fits", "--batch", "--smooth", "3600,1400,50", "--plane", "1", "--out", "out.fits"), 2, "larger than"),
        (("source.fits", "--batch", "--smooth", "3600,2880,50", "--out", "out.fits"), 2, "source.fits: "),
        (("source.fits", "--batch", "--smooth", "20,30,0", "--out", "out.fits"), 1, "--smooth wants"),
        (("source.fits", "--batch", "--smooth", "30,20,0", "--out", "out.fits", "--clip", "3"), 1, "does not go with"),
        (("cube.fits", "--batch", "--clip", "3"), 1, "--clip goes with")):
    said = run(*arguments, status=status).stderr
    if why not in said or os.path.exists(path("out.fits")):
        faults.append(f"{arguments}: {said}")
print("\n".join(faults) or "ok")
sys.exit(bool(faults))
