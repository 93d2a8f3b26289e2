#!/usr/bin/env python3
"""Writes the palettes of pavane/resources/palettes (JASC-PAL text, 256 colours).

Entries 0..225 are map colours, 226..235 the working colours, 236..255 black. The map colours follow
a curve through a few anchors in OKLab (B. Ottosson, "A perceptual color space for image processing",
2020) with lightness after his toe function, which spreads the dark end as CIELAB does. The curve is
cut into steps of equal length, so that equal differences of value look equally different.
Lightness grows all along the sequential palettes, and still does for the eyes of protanopes and
deuteranopes (H. Brettel, F. Vienot and J. D. Mollon 1997 as simplified by F. Vienot et al. 1999);
the script checks that and says how even the steps are.

usage: make_palettes.py [folder]
"""
import math
import pathlib
import sys

MAP_COLOURS = 226
WORKING = [(255, 255, 255), (0, 0, 0), (128, 128, 128), (192, 192, 192), (255, 255, 0),
           (0, 255, 255), (255, 0, 255), (255, 0, 0), (0, 255, 0), (0, 0, 255)]
FINE = 4000  # samples of a curve before it is cut into equal steps

# Anchors: lightness, chroma, hue in degrees. All lie inside the gamut of sRGB.
PALETTES = {
    # dark blue through teal and green to yellow: the hues that colour-blind eyes keep apart
    "defpal": [(0.16, 0.070, 275), (0.32, 0.120, 262), (0.47, 0.105, 235), (0.60, 0.100, 190),
               (0.73, 0.130, 155), (0.85, 0.150, 122), (0.96, 0.140, 106)],
    "grey": [(0.0, 0.0, 0), (1.0, 0.0, 0)],
    # black through red and orange to white
    "heat": [(0.0, 0.0, 25), (0.22, 0.085, 27), (0.42, 0.160, 29), (0.58, 0.185, 39), (0.74, 0.160, 62),
             (0.88, 0.120, 90), (1.0, 0.0, 100)],
    # blue and orange-red away from white, equally dark at both ends
    "diverging": [(0.34, 0.130, 262), (0.62, 0.120, 250), (0.97, 0.0, 250),
                  (0.62, 0.140, 45), (0.34, 0.105, 35)],
}


K1, K2 = 0.206, 0.03
K3 = (1 + K1) / (1 + K2)


def toe(l):
    x = K3 * l - K1
    return (x + math.sqrt(x * x + 4 * K2 * K3 * l)) / 2


def linear_from_oklab(lab):
    l, a, b = (lab[0] * lab[0] + K1 * lab[0]) / (K3 * (lab[0] + K2)), lab[1], lab[2]
    l_ = (l + 0.3963377774 * a + 0.2158037573 * b) ** 3
    m_ = (l - 0.1055613458 * a - 0.0638541728 * b) ** 3
    s_ = (l - 0.0894841775 * a - 1.2914855480 * b) ** 3
    return (4.0767416621 * l_ - 3.3077115913 * m_ + 0.2309699292 * s_,
            -1.2684380046 * l_ + 2.6097574011 * m_ - 0.3413193965 * s_,
            -0.0041960863 * l_ - 0.7034186147 * m_ + 1.7076147010 * s_)


def oklab_from_linear(rgb):
    r, g, b = rgb
    l_ = math.cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b)
    m_ = math.cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b)
    s_ = math.cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b)
    return (toe(0.2104542553 * l_ + 0.7936177850 * m_ - 0.0040720468 * s_),
            1.9779984951 * l_ - 2.4285922050 * m_ + 0.4505937099 * s_,
            0.0259040371 * l_ + 0.7827717662 * m_ - 0.8086757660 * s_)


def byte_from_linear(v):
    v = min(max(v, 0.0), 1.0)
    v = 12.92 * v if v <= 0.0031308 else 1.055 * v ** (1 / 2.4) - 0.055
    return round(255 * v)


def linear_from_byte(c):
    c /= 255
    return c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4


def seen(colour, kind):
    """The linear colour as a dichromat sees it (Vienot et al. 1999)."""
    r, g, b = (linear_from_byte(c) for c in colour)
    l = 17.8824 * r + 43.5161 * g + 4.11935 * b
    m = 3.45565 * r + 27.1554 * g + 3.86714 * b
    s = 0.0299566 * r + 0.184309 * g + 1.46709 * b
    if kind == "protan":
        l = 2.02344 * m - 2.52581 * s
    else:
        m = 0.494207 * l + 1.24827 * s
    return (0.080944 * l - 0.130504 * m + 0.116721 * s,
            -0.0102485 * l + 0.0540194 * m - 0.113615 * s,
            -0.000365294 * l - 0.00412163 * m + 0.693513 * s)


def oklab(colour):
    return oklab_from_linear(tuple(linear_from_byte(c) for c in colour))


def curve(anchors):
    """Fine samples of a smooth curve (a centripetal one of Catmull and Rom) through the anchors."""
    points = [(toe(l), c * math.cos(math.radians(h)), c * math.sin(math.radians(h))) for l, c, h in anchors]
    ends = [tuple(2 * p - q for p, q in zip(points[0], points[1]))] + points
    ends.append(tuple(2 * p - q for p, q in zip(points[-1], points[-2])))
    samples = []
    for i in range(1, len(ends) - 2):
        group = ends[i - 1:i + 3]
        knots = [0.0]
        for p, q in zip(group, group[1:]):
            knots.append(knots[-1] + math.sqrt(max(math.dist(p, q), 1e-9)))
        for k in range(FINE + (i == len(ends) - 3)):
            t = knots[1] + (knots[2] - knots[1]) * k / FINE

            def mix(p, q, a, b):
                return tuple(x + (y - x) * (t - a) / (b - a) for x, y in zip(p, q))
            a1, a2, a3 = (mix(group[j], group[j + 1], knots[j], knots[j + 1]) for j in range(3))
            b1, b2 = mix(a1, a2, knots[0], knots[2]), mix(a2, a3, knots[1], knots[3])
            samples.append(mix(b1, b2, knots[1], knots[2]))
    return samples


def equal_steps(samples, count):
    lengths = [0.0]
    for p, q in zip(samples, samples[1:]):
        lengths.append(lengths[-1] + math.dist(p, q))
    chosen, at = [], 0
    for i in range(count):
        wanted = lengths[-1] * i / (count - 1)
        while at + 2 < len(lengths) and lengths[at + 1] < wanted:
            at += 1
        part = (wanted - lengths[at]) / (lengths[at + 1] - lengths[at])
        chosen.append(tuple(a + (b - a) * part for a, b in zip(samples[at], samples[at + 1])))
    return chosen


def make(name, anchors):
    if name == "diverging":  # both halves get the same number of steps
        half = equal_steps(curve(anchors[:3]), MAP_COLOURS // 2)
        labs = half + equal_steps(curve(anchors[2:]), MAP_COLOURS // 2)
    else:
        labs = equal_steps(curve(anchors), MAP_COLOURS)
    worst = max(max(-min(rgb), max(rgb) - 1) for rgb in map(linear_from_oklab, labs))
    colours = [tuple(byte_from_linear(v) for v in linear_from_oklab(lab)) for lab in labs]
    # bytes are coarse, dark ones most: judge steps over sixteen colours
    exact = [oklab(c) for c in colours]
    steps = [math.dist(exact[i], exact[i + 16]) for i in range(len(exact) - 16)]
    if name == "diverging":  # across the middle the path turns back
        middle = MAP_COLOURS // 2
        del steps[middle - 16:middle]
    report = f"{name}: out of gamut by {max(worst, 0):.4f}, steps {min(steps):.4f}..{max(steps):.4f}"
    if name != "diverging":
        for kind in ("protan", "deutan"):
            light = [oklab_from_linear(seen(c, kind))[0] for c in colours]
            rises = [light[i + 4] - light[i] for i in range(len(light) - 4)]
            report += f", {kind} lightness rises {min(rises):.4f}..{max(rises):.4f}"
            if min(rises) <= 0:
                sys.exit(report + ": lightness must rise")
    if worst > 0.01 or max(steps) > 1.25 * min(steps):
        sys.exit(report + ": uneven, or out of gamut")
    print(report)
    return colours


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else
                          pathlib.Path(__file__).parent.parent / "pavane/resources/palettes")
    folder.mkdir(parents=True, exist_ok=True)
    for name, anchors in PALETTES.items():
        entries = make(name, anchors) + WORKING
        entries += [(0, 0, 0)] * (256 - len(entries))
        lines = ["JASC-PAL", "0100", "256"] + ["%d %d %d" % entry for entry in entries]
        (folder / f"{name}.pal").write_bytes("".join(line + "\r\n" for line in lines).encode())


if __name__ == "__main__":
    main()
