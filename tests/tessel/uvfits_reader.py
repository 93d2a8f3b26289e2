"""What Astropy reads of a file of visibilities, in the lines that uvfits-dump prints of it."""
import datetime
import re

import numpy as np
from astropy.io import fits

NAMES = {-8: "YX", -7: "XY", -6: "YY", -5: "XX", -4: "LR", -3: "RL", -2: "LL", -1: "RR", 1: "I", 2: "Q", 3: "U",
         4: "V"}
MOUNTS = ("ALTAZ", "EQUATORIAL", "ORBITING")
LIGHT = 299792458.0


def essence(name):
    return re.sub("[^A-Z0-9]", "", name.upper())


def columns(hdu):
    """Columns by name, each with a row an item; nothing of those of length 0."""
    found = {}
    for column in hdu.columns:
        if not column.format.startswith("0"):
            found[essence(column.name)] = np.asarray(hdu.data[column.name])
    return found


def text(value):
    return str(value).split("\0")[0].strip()


def day_of(date):
    try:
        if "/" in date:
            d, m, y = date.split("/")
            date = f"19{y}-{m}-{d}"
        return datetime.date.fromisoformat(date[:10]).toordinal() + 1721424.5
    except ValueError:
        return None


def equinox_of(value):
    try:
        return float(str(value).strip().lstrip("JB"))
    except ValueError:
        return 0.0


def axes_of(header):
    axes = {}
    for i in range(2, header["NAXIS"] + 1):
        name = header.get(f"CTYPE{i}", "").strip().split("-")[0]
        if not name and header[f"NAXIS{i}"] > 1:
            name = "IF"
        axes.setdefault(name, (i, header[f"NAXIS{i}"], header.get(f"CRVAL{i}"), header.get(f"CDELT{i}", 1.0),
                               header.get(f"CRPIX{i}", 1.0)))
    return axes


def parameters(hdu):
    """Of each kind the sum of its parameters in double precision, u, v, w in seconds."""
    header, sums, first = hdu.header, {}, {}
    for i in range(header["PCOUNT"]):
        name = header[f"PTYPE{i + 1}"].strip()
        kind = name[:2] if re.match("(UU|VV|WW)(-|$)", name) else name.lstrip("_") if name == "_DATE" else name
        if first.setdefault(kind, name) != name and kind != "DATE":
            continue
        unit = LIGHT if name[2:4] == "-M" else axes_of(header)["FREQ"][2] if name[2:4] == "-L" else 1.0
        sums[kind] = sums.get(kind, 0) + np.asarray(hdu.data.par(i), "f8") / (unit if kind in ("UU", "VV", "WW") else 1)
    return sums


def scans_of(time, subarray, source, selection):
    """The rule, said slowly: one time after the other."""
    found = []
    for sub in np.unique(subarray):
        groups = np.flatnonzero(subarray == sub)
        groups = groups[np.argsort(time[groups], kind="stable")]
        steps = np.round(np.diff(np.unique(time[groups])) * 864000) / 10
        steps, counts = np.unique(steps[steps > 0], return_counts=True)
        pause = max(60, 3 * (steps[np.argmax(counts)] if len(steps) else 0)) + 0.05
        scan = None
        for g in groups:
            if scan and scan[:1] + scan[2:3] == [source[g], selection[g]] and (time[g] - scan[4]) * 86400 <= pause:
                scan[4:] = [time[g], min(scan[5], g + 1), max(scan[6], g + 1)]
            else:
                scan = [source[g], sub, selection[g], time[g], time[g], g + 1, g + 1]
                found.append(scan)
    return sorted(found, key=lambda s: (s[3], s[1]))


def lines_of(path):
    with fits.open(path) as file:
        return list(lines(file))


def lines(file):
    header, axes, tables = file[0].header, axes_of(file[0].header), {}
    for hdu in file[1:]:
        tables.setdefault(hdu.name, []).append(hdu)
    antennas, indices = tables.get("AIPS AN", []), tables.get("AIPS NX", [])
    groups, channels, ifs = header["GCOUNT"], axes["FREQ"][1], axes.get("IF", (0, 1))[1]
    par = parameters(file[0])
    day = day_of(antennas[0].header.get("RDATE", "")) if antennas else None
    day = day or day_of(header.get("DATE-OBS", "")) or np.floor(par["DATE"][0] - 0.5) + 0.5
    yield ["header", text(header.get("OBJECT", "")), day, groups, channels, ifs]
    places = {}
    for number, hdu in enumerate(antennas):
        sub, table = hdu.header.get("EXTVER", number + 1), columns(hdu)
        for i in range(len(hdu.data)):
            places[sub, table["NOSTA"][i]] = table["STABXYZ"][i].astype("f8")
            mount = table["MNTSTA"][i]
            yield ["telescope", text(table["ANNAME"][i]), table["NOSTA"][i], sub, *table["STABXYZ"][i],
                   MOUNTS[mount] if 0 <= mount < 3 else mount, table["STAXOF"][i]]
    reference, width, pixel = axes["FREQ"][2:]
    selections = {}
    for hdu in tables.get("AIPS FQ", []):
        table = columns(hdu)
        of = {key: table[key].reshape(len(hdu.data), -1)
              for key in ("IFFREQ", "CHWIDTH", "TOTALBANDWIDTH", "SIDEBAND")}
        for i, id in enumerate((table["FRQSEL"] if "FRQSEL" in table else table["FREQID"]).reshape(-1)):
            selections[id] = [reference + of["IFFREQ"][i], of["CHWIDTH"][i], of["TOTALBANDWIDTH"][i], of["SIDEBAND"][i]]
    if not selections:
        side = -1 if width < 0 else 1
        selections[1] = [[x] * ifs for x in (reference, width, abs(width) * channels, side)]
    for id, values in selections.items():
        for i, row in enumerate(zip(*values)):
            yield ["frequency", id, i + 1, *row]
    _, polarisations, code, step, origin = axes["STOKES"]
    codes = [int(round(code + (i + 1 - origin) * step)) for i in range(polarisations)]
    yield from (["stokes", c, NAMES.get(c, "")] for c in codes)
    sources = []
    for hdu in tables.get("AIPS SU", []):
        t = columns(hdu)
        sources = [[t["IDNO"][i], text(t["SOURCE"][i]), t["RAEPO"][i], t["DECEPO"][i], equinox_of(t["EPOCH"][i])]
                   for i in range(len(hdu.data))]
    equinox = equinox_of(header.get("EQUINOX", 0)) or equinox_of(header.get("EPOCH", 0))
    sources = sources or [[1, text(header.get("OBJECT", "")), axes["RA"][2], axes["DEC"][2], equinox]]
    yield from (["source", *s] for s in sources)
    for hdu in indices:
        t = columns(hdu)
        for i in range(len(hdu.data)):
            middle, half = float(t["TIME"][i]), float(t["TIMEINTERVAL"][i]) / 2
            yield ["scan", t["SOURCEID"][i], t["SUBARRAY"][i], t["FREQID"][i], middle - half, middle + half,
                   t["STARTVIS"][i], t["ENDVIS"][i]]
    base = par.get("BASELINE", np.zeros(groups))
    wide = base >= 65536
    first = np.where(wide, (base - 65536) // 2048, base // 256).astype(int)
    second = np.where(wide, (base - 65536) % 2048, np.floor(base) % 256).astype(int)
    sub = np.where(wide, 1, np.round((base - np.floor(base)) * 100) + 1).astype(int)
    if "ANTENNA1" in par:
        first, second = np.round(par["ANTENNA1"]).astype(int), np.round(par["ANTENNA2"]).astype(int)
        sub = np.round(par.get("SUBARRAY", sub)).astype(int)
    rows, counts = np.unique(np.c_[sub, first, second], axis=0, return_counts=True)
    for (s, a, b), count in zip(rows, counts):
        known = (s, a) in places and (s, b) in places
        yield ["baseline", s, a, b, np.linalg.norm(places[s, a] - places[s, b]) / 1000 if known else np.nan, count]
    one = np.ones(groups)
    source = np.round(par.get("SOURCE", one * sources[0][0])).astype(int)
    selection = np.round(par.get("FREQSEL", one * next(iter(selections)))).astype(int)
    time = par["DATE"] - day
    yield from (["found", *scan] for scan in scans_of(time, sub, source, selection))
    # (group, IF, channel, polarisation, complex) of whatever order the file has
    data = np.asarray(file[0].data.data, "f8")
    if header["BITPIX"] > 0:
        data = data + header.get("BZERO", 0)  # which Astropy forgets in groups
    data = data.astype("f4")
    order = [header["NAXIS"] + 1 - axes[n][0] for n in ("IF", "FREQ", "STOKES", "COMPLEX") if n in axes]
    rest = [i for i in range(1, data.ndim) if i not in order]
    data = data.transpose(0, *rest, *order).reshape(groups, ifs, channels, polarisations, -1)
    if data.shape[-1] == 2:
        data = np.concatenate([data, np.ones_like(data[..., :1])], axis=-1)
    bad, flagged = ~np.isfinite(data).all(axis=-1), ~(data[..., 2] > 0)
    shown = ~bad & ~flagged & np.isin(codes, (1, -1, -2, -5, -6))
    channel = np.arange(channels) + 1 - pixel
    hertz = np.array([[np.asarray(selections[k][0])[i] + channel * float(selections[k][1][i]) for i in range(ifs)]
                      for k in selection])
    waves = (np.hypot(par["UU"], par["VV"])[:, None, None] * hertz)[..., None] + np.zeros(polarisations)
    amplitude = np.hypot(data[..., 0].astype("f8"), data[..., 1])
    spans = [f(x[shown]) if shown.any() else d for x in (waves, amplitude) for f, d in ((np.min, 1), (np.max, 0))]
    yield ["totals", bad.size, flagged.sum(), bad.sum(), *spans]
    number, place = np.arange(groups) + 1.0, np.arange(bad[0].size).reshape(bad[0].shape) + 1
    with np.errstate(invalid="ignore"):
        cells = (place * (data.astype("f8") @ [1, 2, 3])).sum()
    yield ["sums", (number * (par["UU"] + 2 * par["VV"] + 3 * par["WW"])).sum(), (number * time).sum(), cells]


def same(mine, theirs):
    """Texts as they are, single precision to the last bit, others but for the rounding of days."""
    if isinstance(theirs, str):
        return mine == theirs
    if isinstance(theirs, np.float32):
        return np.float32(mine or "nan") == theirs or (mine in ("", "nan") and np.isnan(theirs))
    value = float(mine or "nan")
    return bool(np.isclose(value, theirs, rtol=1e-9, atol=1e-9, equal_nan=True))


def differences(dump, path):
    """What the two readers do not agree on, as lines of text."""
    mine = [line.split("\t") for line in dump.splitlines() if not line.startswith("note\t")]
    theirs = lines_of(path)
    found = [f"{len(mine)} lines against {len(theirs)}"] if len(mine) != len(theirs) else []
    for a, b in zip(mine, theirs):
        if len(a) != len(b) or not all(map(same, a, b)):
            found.append(f"{a}\n    against {[str(x) for x in b]}")
    return found[:6]
