#!/usr/bin/python3
"""Corrected files of every BITPIX, against what NumPy makes of the same visibilities; Astropy reads them, and every
byte that is no visibility or weight stays.
usage: corrected_uvfits.py UV-CORRECT FOLDER     (Debian: python3-astropy)"""
import os
import subprocess
import sys

try:
    import numpy as np
    from astropy.io import fits
except ImportError as missing:
    print("skipped:", missing)
    sys.exit(1 if os.environ.get("CI") else 77)  # the integration has all tools

PROGRAM, FOLDER = sys.argv[1:3]
os.makedirs(FOLDER, exist_ok=True)
random = np.random.default_rng(3)
ANTENNAS, TIMES, IFS, CHANNELS, HANDS, DAY = 4, 5, 2, 3, 4, 2455554.5
TYPES = {8: ">u1", 16: ">i2", 32: ">i4", 64: ">i8", -32: ">f4", -64: ">f8"}
faults = 0


def check(truth, *what):
    global faults
    if not truth:
        faults += 1
        print("FAULT:", *what)


rows = [(t, a, b) for t in range(TIMES) for a in range(1, ANTENNAS + 1) for b in range(1, ANTENNAS + 1) if a < b]
# gains by antenna, IF, hand and time; one that has failed, one that is missing
gains = {(a, f, h, t): (0.5 + random.random()) * np.exp(6j * random.random())
         for a in range(1, ANTENNAS + 1) for f in range(IFS) for h in "RL" for t in range(TIMES)}
states = {key: "solved" for key in gains}
states[2, 1, "R", 3] = "failed"
del gains[4, 0, "L", 0]
with open(f"{FOLDER}/gains.txt", "w") as file:
    file.write(f"# reference day\t{DAY}\n# IFs\t{IFS}\n")
    file.write("\t".join("subarray antenna name IFs hand source".split() + ["start [d]", "end [d]"] +
                         "real imag error weight iterations reference state flagged".split()) + "\n")
    for (a, f, h, t), g in gains.items():
        file.write(f"1\t{a}\tA{a}\t{f + 1}\t{h}\t0\t{(t - .5) / 86400!r}\t{(t + .5) / 86400!r}\t{g.real!r}\t{g.imag!r}"
                   f"\t0\t1\t1\t1\t{states[a, f, h, t]}\t0\n")
with open(f"{FOLDER}/flags.txt", "w") as file:
    file.write(f"# pavane flags 1\n# referenceday {DAY}\nflag\t1\t3\t1\t2\tLR\t0\t{2.5 / 86400!r}\t0\n")
hands = ["RR", "LL", "RL", "LR"]


def expected(data, real):
    """Of visibilities (row, IF, channel, hand, part) in doubles."""
    out = data.copy()
    for i, (t, a, b) in enumerate(rows):
        for f in range(IFS):
            for s, (h, k) in enumerate(hands):
                keys = (a, f, h, t), (b, f, k, t)
                cell = out[i, f, :, s]
                if all(key in gains and states[key] == "solved" for key in keys):
                    g = gains[keys[0]] * np.conj(gains[keys[1]])
                    v = (cell[:, 0] + 1j * cell[:, 1]) / g
                    cell[:, 0], cell[:, 1] = v.real, v.imag
                    cell[:, 2] *= abs(g) ** 2
                else:
                    cell[:, 2] = -abs(cell[:, 2])
                if {a, b} == {1, 3} and f == 1 and h + k == "LR" and t < 3:
                    cell[:, 2] = -abs(cell[:, 2])
    return out


def scaled(bitpix):
    if bitpix == -32:
        return (1, 0), (2.5, 1)
    return {-64: ((1, 0), (1e-3, 4)), 8: ((0.05, -6),), 16: ((1e-3, 0), (2e-3, 1)), 32: ((1e-7, 0),),
            64: ((1e-12, 3),)}[bitpix]


for bitpix, kind in TYPES.items():
    for scale, zero in scaled(bitpix):
        name, out = f"{FOLDER}/in{bitpix}.uvfits", f"{FOLDER}/out{bitpix}.uvfits"
        values = random.normal(size=(len(rows), IFS, CHANNELS, HANDS, 3))
        values = values / abs(values).max()
        values[..., 2] = abs(values[..., 2]) + 0.5
        stored = (values - zero) / scale
        stored = np.round(stored) if bitpix > 0 else stored
        stored = stored.astype(kind)
        # parameters have scales of their own, so that whole numbers can hold them
        parameters = np.array([(0, 256 * a + b, t) for t, a, b in rows], float)
        scales, zeros = [1, 1, 1 / 86400], [0, 0, DAY]
        if bitpix == 8:  # 2.5 a baseline is too coarse: antennas in parameters of their own
            parameters = np.array([(0, a, b, t) for t, a, b in rows], float)
            scales, zeros = [1, 1, 1, 1 / 86400], [0, 0, 0, DAY]
        names = ["UU", "BASELINE", "DATE"] if bitpix != 8 else ["UU", "ANTENNA1", "ANTENNA2", "DATE"]
        header = fits.Header([("SIMPLE", True), ("BITPIX", bitpix), ("NAXIS", 5), ("NAXIS1", 0), ("NAXIS2", 3),
                              ("NAXIS3", HANDS), ("NAXIS4", CHANNELS), ("NAXIS5", IFS), ("GROUPS", True),
                              ("PCOUNT", len(names)), ("GCOUNT", len(rows)), ("BSCALE", float(scale)),
                              ("BZERO", float(zero)), ("CTYPE2", "COMPLEX"), ("CTYPE3", "STOKES"), ("CRVAL3", -1.0),
                              ("CDELT3", -1.0), ("CRPIX3", 1.0), ("CTYPE4", "FREQ"), ("CRVAL4", 8e9), ("CTYPE5", "IF"),
                              ("DATE-OBS", "2010-12-24")])
        for i, each in enumerate(names):
            header[f"PTYPE{i + 1}"], header[f"PSCAL{i + 1}"], header[f"PZERO{i + 1}"] = each, scales[i], zeros[i]
        head = header.tostring(padding=True).encode()
        body = np.concatenate([parameters.astype(kind), stored.reshape(len(rows), -1)], axis=1).astype(kind).tobytes()
        tail = b"\0" * (-len(body) % 2880) + fits.BinTableHDU.from_columns(
            [fits.Column("ANY", "J", array=np.arange(7))]).header.tostring(padding=True).encode() + b"\7" * 2880
        with open(name, "wb") as file:
            file.write(head + body + tail)
        done = subprocess.run([PROGRAM, name, f"{FOLDER}/gains.txt", f"{FOLDER}/flags.txt", out], stderr=subprocess.PIPE,
                              text=True)
        check(done.returncode == 0, bitpix, done.stderr)
        if done.returncode:
            continue
        with open(out, "rb") as file:
            written = file.read()
        check(len(written) == len(head + body + tail), bitpix, "another length")
        check(written[:len(head)] == head and written[len(head) + len(body):] == tail, bitpix, "other bytes have changed")
        numbers = np.frombuffer(written, kind, len(body) * 8 // abs(bitpix), len(head)).reshape(len(rows), -1)
        check((numbers[:, :len(names)] == parameters.astype(kind)).all(), bitpix, "parameters have changed")
        wanted = expected(stored.astype(float) * scale + zero, 1)
        read = (numbers[:, len(names):].astype(float) * scale + zero).reshape(wanted.shape)
        with fits.open(out) as file:  # Astropy does not add the BZERO of groups
            by_astropy = np.asarray(file[0].data.data, float).reshape(wanted.shape) + zero
        check(abs(by_astropy - read).max() <= 1e-6, bitpix, "Astropy reads something else")
        step = scale / 2 * 1.001 if bitpix > 0 else 2e-7 * (abs(zero) + 1) if bitpix == -32 else 1e-12
        negative = wanted[..., 2] < 0
        off = abs(read - wanted)
        check(off.max() <= step, bitpix, scale, "differs by", off.max())
        check((read[..., 2][negative] < 0).all() and (read[..., 2][~negative] > 0).all(), bitpix, "flags")

# gains so small that the corrected values are beyond 16 bits: no file
text = open(f"{FOLDER}/gains.txt").read().split("\n")
small = ["\t".join(w[:8] + ["0.001", "0"] + w[10:]) if len(w := line.split("\t")) == 16 and w[0] == "1" else line
         for line in text]
with open(f"{FOLDER}/small.txt", "w") as file:
    file.write("\n".join(small))
done = subprocess.run([PROGRAM, f"{FOLDER}/in16.uvfits", f"{FOLDER}/small.txt", f"{FOLDER}/flags.txt",
                       f"{FOLDER}/never.uvfits"], stderr=subprocess.PIPE, text=True)
check(done.returncode == 1 and "cannot hold" in done.stderr, "values beyond 16 bits", done.stderr)
check(not os.path.exists(f"{FOLDER}/never.uvfits"), "a file that cannot be right was written")
print("faults:", faults)
sys.exit(1 if faults else 0)
