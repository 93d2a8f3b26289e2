#!/usr/bin/python3
"""The visibilities that pavane-simulate writes, read by Astropy: tables, model, gains, subarrays, order.
usage: simulate_uvfits.py PAVANE-SIMULATE UVFITS-DUMP FOLDER      (Debian: python3-astropy)"""
import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../tessel"))
try:
    import numpy as np
    from astropy.io import fits
    import uvfits_reader
except ImportError as missing:
    print("skipped:", missing)
    sys.exit(1 if os.environ.get("CI") else 77)  # the integration has all tools

SIMULATE, DUMP, FOLDER = sys.argv[1:4]
os.makedirs(FOLDER, exist_ok=True)
CODES = "SC HN NL FD LA PT KP OV BR MK".split()
GAINS = "# a comment\nPT 2 R 0 0.5 -40\nPT 2 R 0.5 1.5 60\nMK * * 0 2 10\nMK 1 * 0 3 0\nMK * L 0 1 90 # hand\n\n"
faults = []


def check(isRight, what):
    if not isRight:
        faults.append(what)


def run(name, *options):
    out = os.path.join(FOLDER, name)
    subprocess.run([SIMULATE, "--size", "64", "--clean", "1", "--hours", "0.5", "--out", out, *options], check=True,
                   stdout=subprocess.DEVNULL)
    path = os.path.join(out, "observation.uvfits")
    found = uvfits_reader.differences(subprocess.run([DUMP, path], capture_output=True, text=True).stdout, path)
    check(not found, f"{name}: {found}")
    file = fits.open(path)
    file.verify("exception")
    return file


def model(folder, u, v):
    """Visibilities of the points and Gaussians of a list of components, by their formula."""
    lines = [x for x in open(os.path.join(FOLDER, folder, "model.txt")) if not x.startswith(";")][1:]
    total = 0
    for kind, flux, major, ratio, inclination, angle, distance, _ in (map(float, x.split()) for x in lines):
        second = np.pi / 180 / 3600
        x, y = (distance * f(np.radians(angle)) * second for f in (np.sin, np.cos))
        s, c = np.sin(np.radians(inclination)), np.cos(np.radians(inclination))
        size = np.hypot((u * s + v * c) * major, (u * c - v * s) * major * ratio) * second
        shape = np.exp(-(np.pi * size) ** 2 / 4 / np.log(2)) if kind == 2 else 1
        total = total + flux * shape * np.exp(2j * np.pi * (u * x + v * y))
    return total


def parts(file):
    """First and second telescope, hours from the start, source, and values (group, IF, hand) of a file."""
    par = uvfits_reader.parameters(file[0])
    data = file[0].data.data[:, 0, 0, :, 0, :, :]
    hours = (par["DATE"] - par["DATE"].min()) * 24
    source = par.get("SOURCE", par["DATE"] * 0 + 1).astype(int)
    return par, (par["BASELINE"] // 256).astype(int), (np.floor(par["BASELINE"]) % 256).astype(int), hours, source, \
        data[..., 0] + 1j * data[..., 1]


plain = run("plain", "--noise", "0")
par, first, second, hours, source, values = parts(plain)
names = [x.name for x in plain[1:]]
check(names == ["AIPS NX", "AIPS FQ", "AIPS AN"] and len(plain["AIPS AN"].data) == 10, f"tables {names}")
hertz = plain[0].header["CRVAL4"] + plain["AIPS FQ"].data["IF FREQ"][0]
expected = model("plain", np.outer(par["UU"], hertz), np.outer(par["VV"], hertz))
worst = np.abs(values - expected[..., None]).max()
check(worst < 2e-4, f"visibilities are {worst} from the model")  # u and v have seven digits in the file
check(len(plain["AIPS NX"].data) == 1 and plain["AIPS NX"].data["END VIS"][0] == len(values), "one scan of all")
station = plain["AIPS AN"].data["STABXYZ"]
length = np.linalg.norm(station[second - 1] - station[first - 1], axis=1)
uvw = np.linalg.norm([par["UU"], par["VV"], par["WW"]], axis=0) * uvfits_reader.LIGHT
check(np.allclose(length, uvw, rtol=1e-6), "baselines are as long as u, v, w")

with open(os.path.join(FOLDER, "gains.txt"), "w") as file:
    file.write(GAINS)
gained = parts(run("gains", "--noise", "0", "--gains", os.path.join(FOLDER, "gains.txt")))[-1]
g = np.ones((len(values), 4, 2, 2), complex)  # group, IF, hand, end of the baseline
time = hours / 0.5
for end, numbers in enumerate((first, second)):
    pt, mk = numbers == CODES.index("PT") + 1, numbers == CODES.index("MK") + 1
    g[pt, 1, 0, end] = ((0.5 + time) * np.exp(1j * np.radians(-40 + 100 * time)))[pt]
    g[mk, 1:, 0, end], g[mk, 1:, 1, end] = 2 * np.exp(1j * np.radians(10)), 1j
    g[mk, 0, :, end] = 3
worst = np.abs(gained - values * g[..., 0] * g[..., 1].conj()).max()
check(worst < 1e-5, f"gains are off by {worst}")

mixed = run("mixed", "--sources", "3", "--subarrays", "2", "--noise", "0.1")
mixed_parts = parts(mixed)
par, first, second, hours, source, values = mixed_parts
subarray = np.round(par["BASELINE"] % 1 * 100).astype(int) + 1
check(((first - 1) % 2 + 1 == subarray).all() and ((second - 1) % 2 + 1 == subarray).all(), "stations of subarrays")
check([len(x.data) for x in mixed[1:] if x.name == "AIPS AN"] == [5, 5], "two antenna tables")
check([x.strip() for x in mixed["AIPS SU"].data["SOURCE"]] == ["SIMULATED", "POINT1", "POINT2"], "sources")
point = values[source > 1]
check(abs(point.mean() - 1) < 0.02 and 0.09 < point.real.std() / 2 ** 0.5 < 0.11, "points of 1 Jy and their noise")
for row in mixed["AIPS NX"].data:
    span = slice(row["START VIS"] - 1, row["END VIS"])
    mine = subarray[span] == row["SUBARRAY"]
    check((source[span][mine] == row["SOURCE ID"]).all() and mine[0] and mine[-1], f"scan {row}")

shuffled = run("unsorted", "--sources", "3", "--subarrays", "2", "--noise", "0.1", "--unsorted")
check("AIPS NX" not in [x.name for x in shuffled], "no index of what is in no order")
check((np.diff(uvfits_reader.parameters(shuffled[0])["DATE"]) < 0).any(), "no order")
groups = [sorted(map(str, np.c_[first, second, hours, source, values.reshape(len(values), -1)].round(5)))
          for _, first, second, hours, source, values in (mixed_parts, parts(shuffled))]
check(groups[0] == groups[1], "the same groups")
print("\n".join(faults) or "all as simulated")
sys.exit(1 if faults else 0)
