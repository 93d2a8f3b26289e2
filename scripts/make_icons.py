#!/usr/bin/env python3
"""Makes apps/desktop/icons: the icons of the programs as SVG and as PNG of 16 to 256 pixels, from the same shapes.

Written here for pavane; needs Python alone, and its output is kept in the repository.
    scripts/make_icons.py [FOLDER]
"""
import math
import os
import struct
import sys
import zlib

SIDE = 256  # units of the drawing
SIZES = (16, 22, 24, 32, 48, 64, 128, 256)
SAMPLES = 4  # a side, for each pixel
NIGHT, DEEP, GREEN, AMBER, PALE, WHITE = '#101c38', '#2b5c9e', '#35a39a', '#f0b541', '#fff2cf', '#ffffff'


def ellipse(colour, x, y, a, b, degrees):
    cos, sin = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))

    def holds(px, py):
        dx, dy = px - x, py - y
        return ((dx * cos + dy * sin) / a) ** 2 + ((dy * cos - dx * sin) / b) ** 2 <= 1
    return holds, colour, f'<ellipse cx="{x}" cy="{y}" rx="{a}" ry="{b}" transform="rotate({degrees} {x} {y})"'


def square(colour, left, top, right, bottom, radius):
    def holds(px, py):
        dx = max(left + radius - px, px - right + radius, 0)
        dy = max(top + radius - py, py - bottom + radius, 0)
        return left <= px <= right and top <= py <= bottom and dx * dx + dy * dy <= radius * radius
    return holds, colour, (f'<rect x="{left}" y="{top}" width="{right - left}" height="{bottom - top}" '
                           f'rx="{radius}"')


def line(colour, width, x1, y1, x2, y2):
    def holds(px, py):
        dx, dy = x2 - x1, y2 - y1
        at = min(max(((px - x1) * dx + (py - y1) * dy) / (dx * dx + dy * dy), 0), 1)
        return math.hypot(px - x1 - at * dx, py - y1 - at * dy) <= width / 2
    return holds, colour, (f'<line x1="{x1}" y1="{y1}" x2="{x2}" y2="{y2}" stroke="{colour}" '
                           f'stroke-width="{width}" stroke-linecap="round"')


def jet():
    """A map of a jet: its core at the lower left, a knot at the upper right."""
    return [square(NIGHT, 8, 8, 248, 248, 44),
            ellipse(DEEP, 128, 130, 112, 54, -38), ellipse(GREEN, 112, 143, 78, 38, -38),
            ellipse(GREEN, 190, 82, 26, 20, -38), ellipse(AMBER, 98, 154, 48, 26, -38),
            ellipse(AMBER, 190, 82, 14, 10, -38), ellipse(PALE, 86, 163, 22, 15, -38)]


def outline(width, corners):
    ends = list(zip(corners, corners[1:] + corners[:1]))
    return [line(WHITE, width, *a, *b) for a, b in ends]


def view(pixels):
    """An area is marked round the core; its corners show where there is room for them."""
    corners = [(40, 160), (90, 100), (164, 130), (112, 214)]
    marks = [square(WHITE, x - 10, y - 10, x + 10, y + 10, 0) for x, y in corners] if pixels >= 32 else []
    return jet() + outline(max(7, 1.1 * SIDE / pixels), corners) + marks


def clean(pixels):
    """The components that CLEAN has found."""
    arm, width = (17, 9) if pixels >= 32 else (26, 1.4 * SIDE / pixels)
    places = [(86, 163), (132, 122), (190, 82)] if pixels >= 32 else [(86, 163), (184, 86)]
    return jet() + [line(NIGHT if x == 86 else WHITE, width, x - dx * arm, y - dy * arm, x + dx * arm, y + dy * arm)
                    for x, y in places for dx, dy in ((1, 0), (0, 1))]


def svg(shapes):
    parts = ''.join(f'  {text}{"" if "stroke=" in text else f" fill={chr(34)}{colour}{chr(34)}"}/>\n'
                    for _, colour, text in shapes)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{SIDE}" height="{SIDE}" '
            f'viewBox="0 0 {SIDE} {SIDE}">\n{parts}</svg>\n')


def png(shapes, pixels):
    """Red, green, blue and coverage of each pixel are means over its samples."""
    unit = SIDE / pixels / SAMPLES
    painted = [(holds, bytes.fromhex(colour[1:])) for holds, colour, _ in reversed(shapes)]
    rows = bytearray()
    for row in range(pixels):
        rows.append(0)
        for column in range(pixels):
            sums, covered = [0, 0, 0], 0
            for sample in range(SAMPLES * SAMPLES):
                x = (column * SAMPLES + sample % SAMPLES + 0.5) * unit
                y = (row * SAMPLES + sample // SAMPLES + 0.5) * unit
                colour = next((c for holds, c in painted if holds(x, y)), None)
                if colour:
                    covered += 1
                    sums = [s + c for s, c in zip(sums, colour)]
            rows += bytes(round(s / covered) if covered else 0 for s in sums)
            rows.append(round(255 * covered / SAMPLES ** 2))
    chunk = lambda kind, data: (struct.pack('>I', len(data)) + kind + data +
                                struct.pack('>I', zlib.crc32(kind + data)))
    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', pixels, pixels, 8, 6, 0, 0, 0)) +
            chunk(b'IDAT', zlib.compress(bytes(rows), 9)) + chunk(b'IEND', b''))


folder = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), '../apps/desktop/icons')
for name, draw in ('pavane-view', view), ('pavane-clean', clean):
    for pixels in SIZES:
        os.makedirs(f'{folder}/{pixels}x{pixels}', exist_ok=True)
        with open(f'{folder}/{pixels}x{pixels}/{name}.png', 'wb') as file:
            file.write(png(draw(pixels), pixels))
    os.makedirs(f'{folder}/scalable', exist_ok=True)
    with open(f'{folder}/scalable/{name}.svg', 'w', encoding='ascii') as file:
        file.write(svg(draw(SIDE)))
