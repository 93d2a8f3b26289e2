#!/usr/bin/python3
"""Tables of components as other programs write them, against what Astropy reads of the same bytes.
usage: map_components.py COMPONENTS-DUMP FOLDER [FILE ...]   (Debian: python3-astropy); FILEs are compared too"""
import math
import os
import subprocess
import sys

try:
    import numpy as np
    from astropy.io import fits
except ImportError as missing:
    print("skipped:", missing)
    sys.exit(1 if os.environ.get("CI") else 77)  # the integration has all tools

DUMP, FOLDER = sys.argv[1:3]
os.makedirs(FOLDER, exist_ok=True)
random = np.random.default_rng(5)
NAMES = ["FLUX", "DELTAX", "DELTAY", "MAJOR AX", "MINOR AX", "POSANGLE", "TYPE OBJ"]
DEGREES = dict(DEGREES=1, deg=1, arcsec=1 / 3600, mas=1 / 3.6e6, rad=180 / math.pi, ARCMIN=1 / 60)
JANSKYS = dict(JY=1, mJy=1e-3, uJy=1e-6)
KINDS = {"Point": 0, "Gaussian": 1, "102": 2, "103": 3}


def write(name, rows=50, order=NAMES, form="E", angle="DEGREES", flux="JY", spell=str, before=(), scaled=False):
    """Random components, columns in that order, format, units and spelling."""
    at = 1e-6 / DEGREES[angle]
    values = {"FLUX": random.normal(0, 0.1, rows) / JANSKYS[flux], "DELTAX": random.normal(0, at, rows),
              "DELTAY": random.normal(0, at, rows), "MAJOR AX": at * random.uniform(0.1, 1, rows),
              "POSANGLE": random.uniform(-90, 90, rows) / DEGREES[angle],
              "TYPE OBJ": random.integers(0, 4, rows)}
    values["MINOR AX"] = values["MAJOR AX"] * random.uniform(0, 1, rows)
    columns = []
    for key in order:
        unit = flux if key == "FLUX" else "CODE" if key == "TYPE OBJ" else angle
        if scaled and key == "DELTAX":
            columns.append(fits.Column(spell(key), "J", unit, array=random.integers(-9, 9, rows)))
        else:
            columns.append(fits.Column(spell(key), form, unit, array=values[key]))
    cc = fits.BinTableHDU.from_columns(columns)
    cc.header["EXTNAME"] = "AIPS CC"
    if scaled:
        cc.header["TSCAL2"], cc.header["TZERO2"] = at / 9, at / 3
    file = os.path.join(FOLDER, name + ".fits")
    fits.HDUList([fits.PrimaryHDU(np.zeros((1, 1, 4, 4), "f4")), *before, cc]).writeto(file, overwrite=True)
    return file


def expected(file):
    """Rows in the order of NAMES, in Jy and arcseconds, by Astropy, and how exact the stored numbers are."""
    with fits.open(file) as hdus:
        cc = next(h for h in hdus if h.name == "AIPS CC")
        names = {c.name.upper().replace("_", " "): c for c in cc.columns}
        def of(key):
            if key not in names:
                return np.zeros(len(cc.data))
            unit = names[key].unit
            scale = JANSKYS[unit] if key == "FLUX" else 1 if key == "TYPE OBJ" else DEGREES[unit] * 3600
            return np.asarray(cc.data[names[key].name], float) * scale
        single = "E" in names["FLUX"].format + names["DELTAX"].format
        return np.array([of(key) for key in NAMES]).T, 1e-7 if single else 1e-12


def compare(file):
    done = subprocess.run([DUMP, file], capture_output=True, text=True)
    lines = [l.split("\t") for l in done.stdout.split("\n") if l and not l.startswith("note")]
    wanted, exact = expected(file)
    assert done.returncode == 0 and len(lines) == len(wanted) + 1, (file, done.stdout[-300:])
    for line, (flux, x, y, large, small, turn, code) in zip(lines[1:], wanted):
        assert KINDS[line[1]] == code, (file, line)
        got = [float(t) for t in line[2:]]
        at = math.radians(got[4])
        pairs = [(got[0], flux), (got[5] * math.sin(at), x), (got[5] * math.cos(at), y)]
        if code:
            pairs += [(got[1], max(large, small)), (got[1] * got[2], min(large, small)), (got[3], turn / 3600)]
        for value, right in pairs:
            assert abs(value - right) <= exact * max(abs(right), abs(x) + abs(y)) + 1e-16, (file, line, value, right)


other = fits.BinTableHDU.from_columns([fits.Column("X", "3D", array=np.ones((5, 3)))])
FILES = [write("usual"), write("backwards", order=NAMES[::-1]), write("doubles", form="D"),
         write("lower", spell=str.lower, angle="deg"), write("underscores", spell=lambda n: n.replace(" ", "_")),
         write("arcsec", angle="arcsec", flux="mJy"), write("mas", form="D", angle="mas", flux="uJy"),
         write("rad", angle="rad"), write("few", order=NAMES[:3]), write("empty", rows=0),
         write("behind others", before=(other, fits.ImageHDU(np.ones((9, 9))))), write("scaled", scaled=True)]
for file in FILES + sys.argv[3:]:
    compare(file)
print("compared", len(FILES) + len(sys.argv[3:]), "files")
