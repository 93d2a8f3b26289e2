#!/usr/bin/python3
"""Files of visibilities in the spellings of many programs, against what Astropy reads of the same bytes.
usage: uvfits_variants.py UVFITS-DUMP FOLDER [FILE ...]     (Debian: python3-astropy); FILEs are compared too"""
import os
import subprocess
import sys
import warnings

try:
    import numpy as np
    from astropy.io import fits
    import uvfits_reader
except ImportError as missing:
    print("skipped:", missing)
    sys.exit(1 if os.environ.get("CI") else 77)  # the integration has all tools
warnings.simplefilter("ignore")

DUMP, FOLDER = sys.argv[1:3]
os.makedirs(FOLDER, exist_ok=True)
random = np.random.default_rng(11)
DAY, STATIONS, WIDTH = 2455554.5, 5, 5e5
AXES = dict(COMPLEX=(3, 1, 1), STOKES=(4, -1, -1), FREQ=(2, 8.4e9, WIDTH), IF=(3, 1, 1), RA=(1, 187.7, 1),
            DEC=(1, 12.4, 1))


def rows(sources=1, selections=1, subarrays=1, step=12.0, pauses=(0, 300)):
    """Times, subarrays, telescopes, sources and selections of groups in the order of time."""
    made = []
    for sub in range(1, subarrays + 1):
        for scan in range(6):
            source, selection = scan % sources + 1, scan % selections + 1
            start = scan * 800 + pauses[scan % len(pauses)] + 7 * sub
            for t in np.arange(20) * step + start:
                made += [(t / 86400, sub, a, b, source, selection) for a in range(1, STATIONS + 1)
                         for b in range(a, STATIONS + 1) if (a + b) % 4]
    return np.array(sorted(made))


def column(name, form, values, unit=""):
    return fits.Column(name, form, unit or None, array=values)


def table(name, columns, version=1, **cards):
    hdu = fits.BinTableHDU.from_columns(columns)
    hdu.header["EXTNAME"], hdu.header["EXTVER"] = name, version
    for key, value in cards.items():
        hdu.header[key] = value
    return hdu


def antennas(version=1, names=None, wide="D", numbers=None, **cards):
    n = STATIONS
    xyz = random.normal(size=(n, 3)) * 4e6
    return table("AIPS AN", [
        column("ANNAME", "8A", names or [f"S{version}{i}" for i in range(n)]), column("STABXYZ", "3" + wide, xyz, "METERS"),
        column("ORBPARM", "0D", np.zeros((n, 0))), column("NOSTA", "1J", numbers or np.arange(1, n + 1)),
        column("MNTSTA", "J", [0, 1, 2, 5, -1]), column("STAXOF", "1E", random.normal(size=n), "METERS"),
        column("POLTYA", "1A", ["R"] * n), column("POLCALA", "0E", np.zeros((n, 0)))],
        version, **{"ARRAYX": 0.0, "RDATE": "2010-12-24", **cards})


def frequencies(ifs=3, selections=1, vector=True, id="FRQSEL"):
    n = (str(ifs) if vector else "")
    values = lambda scale, kind: (random.integers(1, 9, (selections, ifs)) * scale).astype(kind).reshape(
        selections, *([ifs] if vector else []))
    return table("AIPS FQ", [
        column("SIDEBAND", n + "J", values(1, "i4") * 0 + 1), column(id, "1J", np.arange(1, selections + 1)),
        column("TOTAL BANDWIDTH", n + "E", values(16e6, "f4")), column("IF FREQ", n + "D", values(7.9375e6, "f8"), "HZ"),
        column("CH WIDTH", n + "E", values(WIDTH, "f4"))], NO_IF=ifs)


def sources(n=3, epoch=True):
    equinox = column("EPOCH", "1D", [2000.0] * n) if epoch else column("EPOCH", "8A", ["J2000"] * n)
    return table("AIPS SU", [
        column("ID. NO.", "1J", np.arange(1, n + 1)), column("SOURCE", "16A", [f"J{i}+{i}" for i in range(n)]),
        column("QUAL", "1J", np.zeros(n)), column("RAEPO", "1D", random.uniform(0, 360, n)),
        column("DECEPO", "1D", random.uniform(-90, 90, n)), equinox])


def index(groups, time="1E", swapped=False):
    n = 4
    end = np.linspace(0, groups, n + 1).astype(int)
    made = [column("TIME", time, random.uniform(0, 1, n), "DAYS"), column("TIME INTERVAL", "1E", random.uniform(0, 0.1, n)),
            column("SOURCE ID", "1J", np.arange(n)), column("SUBARRAY", "1J", np.ones(n)),
            column("FREQ ID", "1J", np.ones(n)), column("START VIS", "1J", end[:-1] + 1), column("END VIS", "1J", end[1:])]
    return table("AIPS NX", made[:4] + made[5:] + made[4:5] if swapped else made)


def write(name, tables, at=None, uv=("UU--", "VV--", "WW--"), dates=((DAY, 0), (0, 1)), baseline="256",
          order=tuple(AXES), axes=(), bitpix=-32, extra=(), shuffle=False, patches=(), **cards):
    """dates: of each DATE its PZERO and which part it holds: 0 the day, 1 the rest; cards: of the header."""
    at = rows() if at is None else at
    if shuffle:
        at = at[random.permutation(len(at))]
    time, sub, a, b, source, selection = at.T
    n, axes = len(at), {**AXES, **dict(axes)}
    shape = tuple(axes[x][0] for x in reversed(order))
    par = [(x, random.normal(size=n) * (1e-2 if not x.endswith("-L") else 1e7), 0) for x in uv]
    parts = [(DAY, time)] if len(dates) == 1 else [(DAY, np.floor(time * 8) / 8), (0, time % 0.125)]
    day = [("DATE", parts[part][1] + parts[part][0], zero) for zero, part in dates]
    base = {"256": 256 * a + b + (sub - 1) / 100, "2048": 2048 * a + b + 65536}.get(baseline)
    par += [("BASELINE", base, 0)] if base is not None else []
    par = par[:1] + day[:1] + par[1:] + day[1:]
    columns = {"SOURCE": source, "FREQSEL": selection, "INTTIM": time * 0 + 12, "ANTENNA1": a, "ANTENNA2": b,
               "SUBARRAY": sub, "CORR-ID": sub, "TAU1": time}
    par += [(x, columns[x], 0) for x in extra]
    cells = random.normal(size=(n, *shape)).astype("f4")
    cells[random.integers(0, n, 40)] *= -1
    if bitpix < 0:
        cells.reshape(-1)[random.integers(0, cells.size, 9)] = [np.nan, np.inf, -np.inf] * 3
    scale = [1.0] * len(par)
    if bitpix > 0:  # whole numbers that cover what each has
        scale = [np.ptp(v) / 60000 or 1.0 for _, v, _ in par]
        scale = [1.0 if p == "BASELINE" or p in columns else s for s, (p, _, _) in zip(scale, par)]
        par = [(p, v, v.mean() if p not in ("BASELINE", *columns) else 0) for p, v, _ in par]
        cards = {**cards, "BSCALE": 1e-3, "BZERO": 0.25}
    kind = {-32: "f4", 16: "i2", -64: "f8", 32: "i4"}[bitpix]
    stored = [((v - z) / s).round().astype(kind) if bitpix > 0 else (v - z).astype(kind) for (_, v, z), s in zip(par, scale)]
    raw = ((cells - 0.25) * 1000).round().astype(kind) if bitpix > 0 else cells.astype(kind)
    record = np.zeros(n, [("p", ">" + kind, len(par)), ("c", ">" + kind, shape)])
    record["p"], record["c"] = np.array(stored).T, raw
    header = fits.Header()
    lengths = [0] + [axes[x][0] for x in order]
    for key, value in [("SIMPLE", True), ("BITPIX", bitpix), ("NAXIS", len(lengths)),
                       *((f"NAXIS{i + 1}", x) for i, x in enumerate(lengths)), ("EXTEND", True), ("GROUPS", True),
                       ("PCOUNT", len(par)), ("GCOUNT", n), ("OBJECT", "3C 345"), ("EPOCH", 2000.0)]:
        header[key] = value
    for i, x in enumerate(order):
        if not x.startswith("?"):
            header[f"CTYPE{i + 2}"] = x
        header[f"CRVAL{i + 2}"], header[f"CDELT{i + 2}"], header[f"CRPIX{i + 2}"] = axes[x][1], axes[x][2], 1.0
    for i, (x, _, zero) in enumerate(par):
        header[f"PTYPE{i + 1}"], header[f"PSCAL{i + 1}"], header[f"PZERO{i + 1}"] = x, scale[i], float(zero)
    for key, value in cards.items():
        header[key.replace("_", "-")] = value
    data = record.tobytes()
    with open(os.path.join(FOLDER, name + ".uvfits"), "wb") as file:
        file.write(header.tostring().encode() + data + bytes(-len(data) % 2880))
        for hdu in tables:
            hdu.writeto(os.path.join(FOLDER, "table.fits"), overwrite=True)
            with open(os.path.join(FOLDER, "table.fits"), "rb") as written:
                made = written.read()[2880:]
            for before, after in patches:
                made = made.replace(before.encode(), after.encode())
            file.write(made)


mixed = rows(3, 2, 2)
many = [antennas(1), antennas(2), frequencies(selections=2), sources()]
origins = ("INTTIM", "SOURCE", "FREQSEL")
two = dict(tables=many, at=mixed, extra=origins)
one = dict(tables=[antennas(), frequencies()])
write("aips", [antennas(), frequencies(), index(300)], extra=("INTTIM",))
write("aips_multi", [*many, index(len(mixed), "1D", True)], mixed, extra=origins)
write("unsorted", shuffle=True, **two)
write("whole_numbers", bitpix=16, at=mixed[mixed[:, 1] == 1], tables=many, extra=origins)
write("long_numbers", bitpix=32, at=mixed[mixed[:, 1] == 1], tables=many, extra=origins)
write("double", bitpix=-64, **two)
write("one_date", dates=((DAY, 0),), **one)
write("date_of_zero", dates=((0, 0), (0, 1)), **one)
write("date_turned", dates=((0, 1), (DAY - 3, 0)), **one)
write("casa", [antennas(names=["ea01\0xy", "ea02", "ea 3", "", "ea05"], RDATE="2010-12-24T00:00:00.0"), frequencies(), sources()],
      uv=("UU---SIN", "VV---SIN", "WW---SIN"), extra=("SOURCE", "FREQSEL", "INTTIM"), OBJECT="MULTI")
write("antennas", baseline="", extra=("SUBARRAY", "ANTENNA1", "ANTENNA2", *origins), tables=many, at=mixed)
write("antennas_beside", baseline="2048", extra=("ANTENNA1", "ANTENNA2", "SUBARRAY"), tables=many, at=mixed)
write("wide_baselines", baseline="2048", **one)
write("wavelengths", uv=("UU-L-SIN", "VV-L-SIN", "WW-L-SIN"), **one)
write("fitld", uv=("UU-L", "VV-L", "WW-L"), extra=("CORR-ID", *origins), tables=many, at=mixed)
write("metres", uv=("UU-M", "VV-M", "WW-M"), **one)
write("difmap", uv=("UU", "VV", "WW"), EPOCH=1950.0, **one)
write("no_weights", axes=dict(COMPLEX=(2, 1, 1)), **one)
write("circular_one", axes=dict(STOKES=(1, -2, 1)), **one)
write("linear", axes=dict(STOKES=(4, -5, -1)), **one)
write("stokes", axes=dict(STOKES=(3, 1, 1)), **one)
write("no_if", tables=[antennas(), frequencies(1)], order=("COMPLEX", "STOKES", "FREQ", "RA", "DEC"))
write("if_without_name", order=("COMPLEX", "STOKES", "FREQ", "?", "RA", "DEC"), axes={"?": (3, 1, 1)}, **one)
write("one_if_without_name", tables=[antennas(), frequencies(1)], order=("COMPLEX", "STOKES", "FREQ", "?", "RA", "DEC"),
      axes={"?": (1, 1, 1)}, EQUINOX="J2000")
write("freq_first", order=("COMPLEX", "FREQ", "STOKES", "IF", "RA", "DEC"), **one)
write("if_first", order=("COMPLEX", "IF", "STOKES", "FREQ", "DEC", "RA"), **one)
write("complex_last", order=("STOKES", "FREQ", "IF", "COMPLEX", "RA", "DEC"), **one)
write("no_fq", tables=[antennas()], axes=dict(IF=(1, 1, 1), FREQ=(16, 4.6e9, -WIDTH)))
write("no_tables", tables=[], axes=dict(IF=(1, 1, 1)), DATE_OBS="24/12/96")
write("no_dates", tables=[], axes=dict(IF=(1, 1, 1)))
write("fq_scalar", tables=[antennas(), frequencies(1, vector=False, id="FREQID")], axes=dict(IF=(1, 1, 1)))
write("epoch_text", tables=[antennas(), frequencies(), sources(epoch=False)], extra=origins, at=rows(3), EPOCH="J2000")
write("array_place", tables=[antennas(ARRAYX=-1601185.4, ARRAYY=-5041977.5, ARRAYZ=3554875.9, XYZHAND="LEFT"), frequencies()])
write("reversed", tables=[antennas(numbers=[5, 4, 3, 2, 1]), frequencies()], RDATE="2010-12-")
write("single_places", tables=[antennas(wide="E"), frequencies()])
write("date_cut", tables=[antennas(RDATE="2010-12-"), frequencies()], DATE_OBS="2010-12-24")
write("slow", at=rows(step=35.0, pauses=(0, 90, 100, 110)), **one)
write("unknown_telescopes", tables=[antennas(numbers=[1, 2, 3, 40, 50]), frequencies()])
write("old_tables", patches=[("'BINTABLE'", "'A3DTABLE'")], **one)
write("forms", patches=[("'1J      '", "' 1J     '"), ("'1E      '", "'E       '"), ("'8A      '", "'8A8     '")], **one)
write("names", patches=[("'ID. NO. '", "'ID_NO   '"), ("'IF FREQ '", "'IF_FREQ '"), ("'NOSTA   '", "'nosta   '")], **two)

files = sys.argv[3:] or sorted(os.path.join(FOLDER, f) for f in os.listdir(FOLDER) if f.endswith(".uvfits"))
wrong = 0
for path in files:
    run = subprocess.run([DUMP, path], capture_output=True, text=True)
    found = uvfits_reader.differences(run.stdout, path) if not run.returncode else [run.stdout + run.stderr[:2000]]
    wrong += bool(found)
    if found:
        print(os.path.basename(path), *found, sep="\n  ")
print(f"{len(files)} files, {wrong} read otherwise")
sys.exit(1 if wrong else 0)
