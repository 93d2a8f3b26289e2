#!/usr/bin/python3
"""Every cell of the tables of an observation against what Astropy reads of the same file.
usage: uv_tables.py UVDATA-DUMP PAVANE-SIMULATE FOLDER [FILE or FOLDER ...]     (Debian: python3-astropy)
The files are those that pavane-simulate writes into FOLDER and all that are named."""
import os
import subprocess
import sys
import warnings
from decimal import ROUND_HALF_EVEN, Decimal
from glob import glob

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../tessel"))
try:
    import numpy as np
    import uvfits_reader
except ImportError as missing:
    print("skipped:", missing)
    sys.exit(1 if os.environ.get("CI") else 77)  # the integration has all tools
warnings.simplefilter("ignore")

TITLES = {
    "telescopes": "Name|No.|Subarray|X [m]|Y [m]|Z [m]|Mount|Axis offset [m]",
    "baselines": "First|Second|Subarray|Length [km]|Visibilities",
    "sources": "No.|Name|RA|Dec|Equinox",
    "stokes": "Code|Name",
    "frequencies": "Selection|IF|Frequency [MHz]|Channel width [MHz]|Bandwidth [MHz]|Channels|Sideband",
    "scans": "Source|Subarray|Selection|Start|End|Length [s]|First visibility|Last visibility"}


def clock(value, unit, decimals):
    """hh:mm:ss of a number, in exact arithmetic."""
    if not np.isfinite(value):
        return ""
    left = (Decimal(float(value)) * unit).quantize(Decimal(1).scaleb(-decimals), ROUND_HALF_EVEN)
    return f"{int(left // 3600):02}:{int(left // 60 % 60):02}:{left % 60:0{decimals + 3}.{decimals}f}"


def right_ascension(degrees):
    text = clock(degrees % 360, 240, 6)
    return text if text[:2] != "24" else "00" + text[2:]


def declination(degrees):
    text = clock(abs(degrees), 3600, 5)
    return text and ("-" if degrees < 0 and text.strip("0:.") else "+") + text


class Time(float):
    """A time in days that a text of tenths of a second shows; the last may be rounded otherwise."""
    def shows(self, text):
        day, time = text.split("/")
        seconds = sum(float(x) * f for x, f in zip(time.split(":"), (3600, 60, 1)))
        return abs(float(day) * 86400 + seconds - self * 86400) < 0.0501 and len(time) == 10 and seconds < 86400


class Scaled:
    """A number of the file in millionths, to the last bit of its precision."""
    def __init__(self, value):
        self.value = value

    def shows(self, text):
        kind = type(self.value) if isinstance(self.value, np.floating) else float
        return np.isnan(self.value) if text == "" else kind(Decimal(text).scaleb(6)) == self.value


class Length(float):
    """Seconds, of which milliseconds are known."""
    def shows(self, text):
        return abs(float(text) - self) < 6e-4


def expected(path):
    rows = {name: [] for name in TITLES}
    names, sources, channels = {}, {}, 0
    lines = uvfits_reader.lines_of(path)
    index = any(x[0] == "scan" for x in lines)
    for kind, *x in lines:
        if kind == "header":
            channels = x[3]
        elif kind == "telescope":
            names[x[2], x[1]] = x[0]
            rows["telescopes"].append(x)
        elif kind == "frequency":
            rows["frequencies"].append([*x[:2], *map(Scaled, x[2:5]), channels, x[5]])
        elif kind == "stokes":
            rows["stokes"].append(x)
        elif kind == "source":
            sources[x[0]] = x[1]
            rows["sources"].append([*x[:2], right_ascension(x[2]), declination(x[3]), x[4] or np.nan])
        elif kind == "baseline":
            sub, a, b, length, count = x
            rows["baselines"].append([names.get((sub, i), str(i)) for i in (a, b)] + [sub, length, count, a, b])
        elif kind == ("scan" if index else "found"):
            id, sub, selection, start, end, first, last = x
            # without a table the object is the source, whatever the index calls it
            name = sources.get(id, str(id)) if has_sources(path) else next(iter(sources.values()))
            rows["scans"].append([name, sub, selection, Time(start), Time(end), Length((end - start) * 86400), first,
                                  last, id])
    return rows


def has_sources(path):
    with uvfits_reader.fits.open(path) as file:
        return "AIPS SU" in [hdu.name for hdu in file]


def equal(text, value):
    return value.shows(text) if hasattr(value, "shows") else uvfits_reader.same(text, value)


def faults_of(path):
    run = subprocess.run([DUMP, path], capture_output=True)
    if run.returncode:
        return [run.stderr.decode()[:2000]]
    tables = {}
    for block in run.stdout.decode().split("== ")[1:]:
        name, *lines = block[:-1].split("\n")
        tables[name] = [line.split("\t") for line in lines]
    faults = []
    for name, rows in expected(path).items():
        titles, *mine = tables[name]
        if "|".join(titles[1:]).find(TITLES[name]) != 0 or titles[0]:
            faults.append(f"{name}: titles {titles}")
        if len(mine) != len(rows):
            faults.append(f"{name}: {len(mine)} rows, not {len(rows)}")
        for i, (a, b) in enumerate(zip(mine, rows)):
            b = [i + 1, *b]
            if len(a) != len(titles) or len(b) != len(a) or not all(map(equal, a, b)):
                faults.append(f"{name}: {a}, not {[getattr(x, 'value', x) for x in b]}")
    return faults[:6]


DUMP, SIMULATE, FOLDER = sys.argv[1:4]
OPTIONS = {"plain": [], "two": ["--subarrays", "2"], "many": ["--sources", "3", "--unsorted"],
           "all": ["--subarrays", "2", "--sources", "4", "--unsorted"]}
for name, options in OPTIONS.items():
    subprocess.run([SIMULATE, "--size", "64", "--clean", "1", "--hours", "0.5", "--out", os.path.join(FOLDER, name),
                    *options], check=True, stdout=subprocess.DEVNULL)
files = [x for name in OPTIONS for x in glob(os.path.join(FOLDER, name, "*.uvfits"))]
for given in sys.argv[4:]:
    if given.startswith("?"):  # real files, which not every machine has
        given = given[1:]
        if not os.path.exists(given):
            continue
    files += sorted(glob(os.path.join(given, "*.uvf*"))) if os.path.isdir(given) else [given]
wrong = 0
for path in files:
    found = faults_of(path)
    wrong += bool(found)
    if found:
        print(path, *found, sep="\n  ")
print(f"{len(files)} files, {wrong} with other tables")
sys.exit(1 if wrong or not files else 0)
