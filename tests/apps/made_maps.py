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
    from astropy.wcs import WCS
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

# two frequencies: the second in another frame, projection and cell, brought over by positions of Astropy
def sky_header(kind, size, **cards):
    header = fits.Header({"CTYPE1": kind[0], "CTYPE2": kind[1], "BUNIT": "JY/BEAM", "BMAJ": 6e-4, "BMIN": 6e-4, "BPA": 0})
    header.update(cards)
    header["NAXIS"], header["NAXIS1"], header["NAXIS2"] = 2, *size
    return header


def keys(taken):
    """The four weights of a cubic convolution with a = -1/2 about a fraction, by its definition."""
    x = np.abs(taken[..., None] - np.arange(-1, 3))
    return np.where(x <= 1, 1.5 * x ** 3 - 2.5 * x ** 2 + 1, np.where(x < 2, -.5 * x ** 3 + 2.5 * x ** 2 - 4 * x + 2, 0))


def cubic(cells, x, y):
    left, below = np.floor(x).astype(int), np.floor(y).astype(int)
    wx, wy, out = keys(x - left), keys(y - below), np.zeros(x.shape)
    inside = (left > 0) & (below > 0) & (left < cells.shape[1] - 2) & (below < cells.shape[0] - 2)
    for j in range(4):
        for i in range(4):
            value = cells[np.where(inside, below - 1 + j, 0), np.where(inside, left - 1 + i, 0)].astype("f8")
            out += wy[..., j] * wx[..., i] * np.where(inside, value, np.nan)
    return out


first_header = sky_header(("RA---SIN", "DEC--SIN"), (160, 120), CRVAL1=187.7, CRVAL2=12.4, CDELT1=-1e-4, CDELT2=1e-4,
                          CRPIX1=80., CRPIX2=60., RADESYS="FK5", EQUINOX=2000., RESTFRQ=5e9)
second_header = sky_header(("GLON-TAN", "GLAT-TAN"), (200, 190), CRVAL1=283.7471, CRVAL2=74.4979, CD1_1=-7e-5, CD1_2=2e-5,
                           CD2_1=2e-5, CD2_2=7e-5, CRPIX1=100., CRPIX2=95., RESTFRQ=1.5e9)
y, x = np.mgrid[:120, :160]
first = (2 * np.exp(-((x - 80) / 20.) ** 2 - ((y - 60) / 15.) ** 2) + random.normal(size=x.shape) * .01).astype("f4")
y2, x2 = np.mgrid[:190, :200]
second = (3 * np.exp(-((x2 - 100) / 30.) ** 2 - ((y2 - 95) / 30.) ** 2) + random.normal(size=x2.shape) * .02).astype("f4")
second[90, 90] = np.nan
fits.writeto(path("first.fits"), first, first_header, overwrite=True)
fits.writeto(path("second.fits"), second, second_header, overwrite=True)
places = WCS(second_header).world_to_pixel(WCS(first_header).pixel_to_world(x, y))
brought = cubic(second, *places)


def compare_pair(what, found, value, least=4000):
    both = np.isfinite(found) & np.isfinite(value)
    # where rounding decides
    if (np.isfinite(found) != np.isfinite(value)).sum() > 3 or both.sum() < least:
        faults.append(f"{what}: {np.isfinite(found).sum()} cells, not {np.isfinite(value).sum()}")
    elif not np.allclose(found[both], value[both], 3e-5, 3e-5):
        faults.append(f"{what}: off by {np.abs(found[both] - value[both]).max()}")


def robust(cells):
    return 1.4826 * np.nanmedian(np.abs(cells - np.nanmedian(cells)))


run("second.fits", "--batch", "--regrid", "--like", "first.fits", "--out", "brought.fits")
with fits.open(path("brought.fits")) as made:
    compare_pair("regrid", np.squeeze(made[0].data), brought)
    again = WCS(made[0].header).celestial.pixel_to_world(100, 20)
    if again.separation(WCS(first_header).pixel_to_world(100, 20)).mas > 1e-3 or made[0].header["RESTFRQ"] != 1.5e9 or \
            "brought onto the cells of first.fits" not in str(made[0].header["HISTORY"]):
        faults.append(f"regrid: {made[0].header!r}")
s1, s2 = robust(first), robust(second)
use = (first > 4 * s1) & (brought > 4 * s2)
relative = np.sqrt((s1 / first) ** 2 + (s2 / brought) ** 2 + 2 * .05 ** 2)
span = np.log(5 / 1.5)
for option, value, error in (
        ("--index", np.log(first / brought) / span, relative / span),
        ("--ratio", first / brought, first / brought * relative),
        ("--difference", first - brought, np.hypot(np.hypot(s1, .05 * first), np.hypot(s2, .05 * brought)))):
    clip = () if option == "--difference" else ("--clip", "4")
    run("first.fits", "--batch", option, "second.fits", "--regrid", *clip, "--calibration", "5", "--out", "out.fits",
        "--errors", "errors.fits")
    where = use if clip else True
    with fits.open(path("out.fits")) as made, fits.open(path("errors.fits")) as errors:
        compare_pair(option, np.squeeze(made[0].data), np.where(where, value, np.nan), 1000)
        compare_pair(option + " errors", np.squeeze(errors[0].data), np.where(where, error, np.nan), 1000)

# a map moved by two columns and minus a row, seen from the other one
moved = np.roll(first, (-1, -2), (0, 1))
fits.writeto(path("moved.fits"), moved, first_header, overwrite=True)
run("first.fits", "--batch", "--difference", "moved.fits", "--shift", "-720,360", "--out", "out.fits")
with fits.open(path("out.fits")) as made:
    if np.nanmax(np.abs(np.squeeze(made[0].data)[2:-2, 3:-3])) > 1e-4 or "-720 mas east" not in str(made[0].header["HISTORY"]):
        faults.append("shift: " + str(made[0].header["HISTORY"]))
# three maps in one file, the last moved, and the picture of them, from it and from the maps
colours = ("--red-range", "0,2", "--green-range", "p:5,99", "--levels", "none", "--png")
run("--batch", "--rgb", "first.fits", "second.fits", "moved.fits", "--regrid", "--shift", "0,0", "--shift=-720,360",
    "--out", "rgb.fits", *colours, "rgb.png")
run("rgb.fits", "--batch", "--levels", "none", "--png", "again.png")
with fits.open(path("rgb.fits")) as made:
    header = made[0].header
    compare_pair("green", made[0].data[1], brought)
    low, high = np.percentile(second[np.isfinite(second)], (5, 99))
    if header["CTYPE3"] != "RGB" or header["RGBMAP3"] != "moved.fits" or \
            abs(header["RGBLOW2"] - low) + abs(header["RGBTOP2"] - high) > .05 * (high - low) or \
            np.nanmax(np.abs((made[0].data[2] - first)[2:-2, 3:-3])) > 1e-4 or \
            open(path("rgb.png"), "rb").read() != open(path("again.png"), "rb").read():
        faults.append(f"rgb: {header!r}, {low}, {high}")
first_header.update(BMAJ=9e-4, RESTFRQ=1e9)
fits.writeto(path("wide.fits"), first, first_header, overwrite=True)

# Stokes planes of one file, and the same as files
first_header.update(BMAJ=6e-4, RESTFRQ=5e9)
stokes_header = fits.Header(first_header, copy=True)
stokes_header.update(CTYPE3="STOKES", CRVAL3=1., CDELT3=1., CRPIX3=1.)
turn = np.radians(3. * x - 40)
q = (.2 * first * np.cos(turn) + random.normal(size=x.shape) * .01).astype("f4")
u = (.2 * first * np.sin(turn) + random.normal(size=x.shape) * .01).astype("f4")
fits.writeto(path("stokes.fits"), np.array([first, q, u]), stokes_header, overwrite=True)
fits.writeto(path("q.fits"), q, first_header, overwrite=True)
fits.writeto(path("u.fits"), u, first_header, overwrite=True)
noise = (robust(q) + robust(u)) / 2
polarised = np.sqrt(np.maximum(q.astype("f8") ** 2 + u.astype("f8") ** 2 - noise ** 2, 0))
strong = polarised > 3 * noise
for kind, value in (("intensity", polarised), ("degree", np.where(first > 3 * robust(first), polarised / first, np.nan)),
                    ("angle", np.degrees(np.arctan2(u, q)) / 2)):
    for source in (("stokes.fits",), ("first.fits", "--stokes-q", "q.fits", "--stokes-u", "u.fits")):
        run(source[0], "--batch", "--polarisation", kind, *source[1:], "--out", "out.fits", "--errors", "errors.fits")
        with fits.open(path("out.fits")) as made:
            compare_pair(f"{kind} of {source[0]}", np.squeeze(made[0].data), np.where(strong, value, np.nan), 1000)
            head = made[0].header
            code = head["CRVAL3"] + (1 - head["CRPIX3"]) * head["CDELT3"] if "CRVAL3" in head else 0
            if source[0] == "stokes.fits" and (code, head["NAXIS3"]) != ({"i": 5, "d": 6, "a": 7}[kind[0]], 1):
                faults.append(f"{kind} is Stokes {code}")

# the mask of an area on other cells, and the shift between the maps over it
with open(path("box.reg"), "w") as file:
    file.write("image\nbox(80,60,60,50,0)\n")
run("first.fits", "--batch", "--areas", "box.reg", "--mask", "mask.fits", "--like", "second.fits")
with fits.open(path("mask.fits")) as made:
    column, row = WCS(first_header).world_to_pixel(WCS(second_header).pixel_to_world(x2, y2))
    inside = (np.abs(column - 79) < 30) & (np.abs(row - 59) < 25)
    edge = (np.abs(np.abs(column - 79) - 30) < 1.1) | (np.abs(np.abs(row - 59) - 25) < 1.1)
    if ((np.squeeze(made[0].data) > 0) != inside)[~edge].any() or inside.sum() < 1000:
        faults.append("mask on other cells")
said = dict(line.split()[:2] for line in
            run("first.fits", "--batch", "--find-shift", "moved.fits", "--areas", "box.reg").stdout.splitlines())
if abs(float(said["shift_east"]) + 720) > 5 or abs(float(said["shift_north"]) - 360) > 5:
    faults.append(f"find-shift: {said}")

# pictures are made, and of what there is not none
run("first.fits", "--batch", "--contours", "second.fits", "--levels", "peak:5,20,60", "--png", "contours.png")
run("stokes.fits", "--plane", "0", "--batch", "--vectors", "degree", "--pdf", "vectors.pdf")
for name in "contours.png", "vectors.pdf":
    if os.path.getsize(path(name)) < 10000:
        faults.append(f"{name} is small")

# what is refused, and leaves no file
fits.writeto(path("blank.fits"), first * np.nan, first_header, overwrite=True)
first_header["CRVAL1"] = 10.
fits.writeto(path("away.fits"), first, first_header, overwrite=True)
with open(path("cube.fits"), "rb") as whole, open(path("cut.fits"), "wb") as cut:
    cut.write(whole.read()[:-200000])
if os.path.exists(path("out.fits")):
    os.remove(path("out.fits"))
rest = ("--batch", "--moment", "0", "--out", "out.fits")
for arguments, status, why in (
        (("cut.fits", *rest, "--planes", "0-11"), 2, "cut.fits: "),
        (("cube.fits", *rest, "--planes", "3-12"), 2, "has 12 planes"),
        (("cube.fits", *rest), 1, "--planes"),
        (("cube.fits", "--batch", "--moment", "0", "--planes", "0-3"), 1, "--out"),
        (("cube.fits", "--batch", "--moment", "3", "--planes", "0-3", "--out", "out.fits"), 1, "--moment knows"),
        (("cube.fits", *rest, "--planes", "0-3", "--clip", "-1"), 1, "--clip wants"),
        (("cube.fits", *rest, "--planes", "0-3", "--stats"), 1, "step of its own"),
        (("cube.fits", *rest, "--planes", "0-3", "--errors", "cube.fits"), 1, "would write over the map"),
        (("source.fits", "--batch", "--smooth", "3600,1400,50", "--plane", "1", "--out", "out.fits"), 2, "larger than"),
        (("source.fits", "--batch", "--smooth", "3600,2880,50", "--out", "out.fits"), 2, "source.fits: "),
        (("source.fits", "--batch", "--smooth", "20,30,0", "--out", "out.fits"), 1, "--smooth wants"),
        (("source.fits", "--batch", "--smooth", "30,20,0", "--out", "out.fits", "--clip", "3"), 1, "does not go with"),
        (("first.fits", "--batch", "--index", "second.fits", "--out", "out.fits"), 2, "--regrid brings"),
        (("first.fits", "--batch", "--index", "wide.fits", "--out", "out.fits"), 2,
         "convolve the first with --smooth 3240,2160,0"),
        (("first.fits", "--batch", "--index", "moved.fits", "--out", "out.fits"), 2, "both maps are at 5e+09 Hz"),
        (("first.fits", "--batch", "--regrid", "--out", "out.fits"), 1, "--like"),
        (("first.fits", "--batch", "--regrid", "--like", "cube.fits", "--out", "cube.fits"), 1, "would write over"),
        (("first.fits", "--batch", "--ratio", "moved.fits", "--shift", "1", "--out", "out.fits"), 1, "--shift wants"),
        (("first.fits", "--batch", "--difference", "moved.fits", "--clip", "3", "--out", "out.fits"), 1, "does not go"),
        (("first.fits", "--batch", "--polarisation", "angle", "--out", "out.fits"), 2, "no plane of Stokes Q"),
        (("first.fits", "--batch", "--polarisation", "angle", "--stokes-q", "q.fits", "--stokes-u", "second.fits",
          "--out", "out.fits"), 2, "has other cells than U"),
        (("first.fits", "--batch", "--contours", "second.fits"), 1, "go with a picture"),
        (("first.fits", "--batch", "--contours", "away.fits", "--png", "out.fits"), 2, "another part of the sky"),
        (("first.fits", "--batch", "--contours", "blank.fits", "--png", "out.fits"), 2, "no cell with a value"),
        (("blank.fits", "--batch", "--difference", "blank.fits", "--out", "out.fits"), 2, "it is not written"),
        (("first.fits", "--batch", "--find-shift", "away.fits"), 2, "different parts of the sky"),
        (("first.fits", "--batch", "--vectors", "length", "--png", "out.fits"), 1, "--vectors knows"),
        (("--batch", "--rgb", "first.fits", "second.fits", "q.fits", "--out", "out.fits"), 2, "--regrid brings"),
        (("rgb.fits", "--batch", "--range", "0,1", "--png", "out.fits"), 2, "is an RGB map"),
        (("first.fits", "--batch", "--red-range", "0,1", "--png", "out.fits"), 2, "is no RGB map"),
        (("cube.fits", "--batch", "--clip", "3"), 1, "--clip goes with")):
    said = run(*arguments, status=status).stderr
    if why not in said or os.path.exists(path("out.fits")):
        faults.append(f"{arguments}: {said}")
print("\n".join(faults) or "ok")
sys.exit(bool(faults))
