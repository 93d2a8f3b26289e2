#!/usr/bin/python3
"""Maps and region files as other programs write them, against what Astropy makes of the same bytes.
usage: other_programs.py PAVANE-VIEW FOLDER      (Debian: python3-astropy)
Every map has one bright cell and one outline of many corners, written in ICRS by Astropy: the numbers of
--stats and each cell of the mask have to be what the header means. Every region file holds the same areas
in another frame or format: each has to give the mask of the same areas in pixels."""
import concurrent.futures
import os
import subprocess
import sys
import warnings

try:
    import numpy as np
    from astropy import units as u
    from astropy.coordinates import (FK4, FK5, ICRS, BarycentricMeanEcliptic, Galactic, SkyCoord)
    from astropy.io import fits
    from astropy.wcs import WCS
    from astropy.wcs.utils import wcs_to_celestial_frame
except ImportError as missing:
    print("skipped:", missing)
    sys.exit(1 if os.environ.get("CI") else 77)  # the integration has all tools
warnings.simplefilter("ignore")

VIEW, FOLDER = sys.argv[1:3]
os.makedirs(FOLDER, exist_ok=True)
NX, NY, PEAK = 72, 60, (45, 33)  # cells, and the bright one: column, row
BMAJ, BMIN = 8e-7, 4e-7
STEP = 2e-7  # degrees: 0.72 mas
random = np.random.default_rng(5)
sky = (random.normal(size=(NY, NX)) * 0.01).astype("f4")
sky[PEAK[1], PEAK[0]] = 5
faults = []


def outline():
    """Corners (column, row) of a star: an outline off by 0.01 cells has some on other cells."""
    angle = np.sort(random.uniform(0, 2 * np.pi, 150))
    return np.array([36.4, 29.7]) + random.uniform(9, 27, 150)[:, None] * np.c_[np.cos(angle), np.sin(angle)]


STAR = outline()
BASE = dict(CTYPE1="RA---SIN", CTYPE2="DEC--SIN", CRVAL1=187.70593, CRVAL2=12.39112, CRPIX1=33.0,
            CRPIX2=25.0, BUNIT="Jy/beam", BMAJ=BMAJ, BMIN=BMIN, BPA=20.0, EQUINOX=2000.0)
STEPS = dict(CDELT1=-STEP, CDELT2=STEP)


def matrix(key, angle, sx=-STEP, sy=STEP):
    c, s = np.cos(np.radians(angle)), np.sin(np.radians(angle))
    return {key + "1_1": sx * c, key + "1_2": -sy * s, key + "2_1": sx * s, key + "2_2": sy * c}


def by_astropy(angle):
    return dict(WCS(fits.Header({**BASE, **matrix("CD", angle)})).to_header().items())


GALACTIC = dict(CTYPE1="GLON-TAN", CTYPE2="GLAT-TAN", CRVAL1=121.17, CRVAL2=-21.57)
ECLIPTIC = dict(CTYPE1="ELON-TAN", CTYPE2="ELAT-TAN", CRVAL1=120.0, CRVAL2=30.0)
COARSE = dict(CDELT1=-3e-4, CDELT2=3e-4)  # FK4 is the same to some milliarcseconds only
MAPS = {
    "plain": STEPS,
    "rising": dict(CDELT1=STEP, CDELT2=STEP),
    "downward": dict(CDELT1=-STEP, CDELT2=-STEP),
    **{f"crota_{a}": {**STEPS, "CROTA2": float(a)} for a in (15, 180, 270)},
    "crota_of_longitude": {**STEPS, "CROTA1": 40.0},
    **{f"cd_{a}": matrix("CD", a) for a in (90, 180, 200)},
    **{f"pc_{a}": {**STEPS, **matrix("PC", a, 1, 1)} for a in (15, 180)},
    "pc_scaled": {**matrix("PC", 70), "CDELT1": 1.0, "CDELT2": 1.0},
    "pc_alone": matrix("PC", 0),
    "pc_negative": dict(CDELT1=STEP, CDELT2=STEP, PC1_1=-1.0),
    "pc_beside_crota": {**STEPS, "CROTA2": 30.0, "PC1_1": 1.0},
    "cd_stray": {**matrix("CD", 0), "CDELT1": 1.0, "CDELT2": 1.0, "CROTA2": 45.0},
    "cd_mirrored": matrix("CD", 35, STEP, STEP),
    "cd_oblong": matrix("CD", -50, -3 * STEP, STEP),
    "cd_skew": {**matrix("CD", 10), "CD1_2": 0.7 * STEP},
    "by_astropy": by_astropy(25),
    "arcsec": dict(CDELT1=-STEP * 3600, CDELT2=STEP * 3600, CUNIT1="arcsec", CUNIT2="arcsec",
                   CRVAL1=187.70593 * 3600, CRVAL2=12.39112 * 3600),
    "latitude_first": dict(CTYPE1="DEC--SIN", CTYPE2="RA---SIN", CRVAL1=12.39112, CRVAL2=187.70593,
                           CDELT1=STEP, CDELT2=-STEP),
    "latitude_first_turned": {**matrix("CD", 20, STEP, STEP), "CTYPE1": "DEC--TAN", "CTYPE2": "RA---TAN",
                              "CRVAL1": 12.39112, "CRVAL2": 187.70593},
    "wide_car": dict(CDELT1=-0.5, CDELT2=0.5, CTYPE1="RA---CAR", CTYPE2="DEC--CAR"),
    "wide_ait": dict(CDELT1=-0.5, CDELT2=0.5, CTYPE1="RA---AIT", CTYPE2="DEC--AIT"),
    "pole": {**STEPS, "CRVAL2": 89.9999999},
    "icrs": {**STEPS, "RADESYS": "ICRS"},
    "icrs_by_default": {**STEPS, "EQUINOX": None},
    "radecsys": {**STEPS, "EQUINOX": None, "RADECSYS": "FK5"},
    "fk5_1975": {**STEPS, "EQUINOX": 1975.0, "RADESYS": "FK5"},
    "fk5_by_default": {**STEPS, "EQUINOX": 2010.5},
    "fk4": {**COARSE, "RADESYS": "FK4", "EQUINOX": None},
    "fk4_by_default": {**COARSE, "EQUINOX": 1950.0, "DATE-OBS": "1998-03-01"},
    "epoch_alone": {**COARSE, "EQUINOX": None, "EPOCH": 1950.0},
    "galactic": {**STEPS, **GALACTIC},
    "galactic_turned": {**matrix("CD", 62), **GALACTIC},
    "ecliptic": {**STEPS, **ECLIPTIC},
    "ecliptic_1950": {**STEPS, **ECLIPTIC, "EQUINOX": 1950.0, "RADESYS": "FK5"},
}
NO_SKY = {
    "nothing": {},
    "linear": dict(CTYPE1="VELO", CTYPE2="OFFSET", CRVAL1=1e3, CDELT1=200.0, CDELT2=0.1, BUNIT="K"),
}


def path(name):
    return os.path.join(FOLDER, name)


def write_map(name, cards):
    hdu = fits.PrimaryHDU(sky)
    for key, value in cards.items():
        if value is not None:
            hdu.header[key] = value
    hdu.writeto(path(name + ".fits"), overwrite=True)
    return WCS(hdu.header)


def frame_of(wcs):
    """Astropy takes ecliptic headers for equatorial ones."""
    if wcs.wcs.lngtyp != "ELON":
        return wcs_to_celestial_frame(wcs)
    return BarycentricMeanEcliptic(equinox=f"J{wcs.wcs.equinox}")


def to_sky(wcs, cells):
    world = wcs.wcs_pix2world(np.atleast_2d(cells), 0)
    return SkyCoord(world[:, wcs.wcs.lng], world[:, wcs.wcs.lat], unit="deg", frame=frame_of(wcs))


def numbers(points):
    return ",".join(f"{v:.15f}" for v in np.ravel(points))


def degrees_of(position):
    return np.c_[position.spherical.lon.deg, position.spherical.lat.deg]


def run(name, map_name, areas):
    """The numbers and the mask that the program gives."""
    mask = path(name + ".mask.fits")
    done = subprocess.run([VIEW, "--batch", "--stats", "--areas", areas, "--mask", mask, path(map_name + ".fits")],
                          capture_output=True, text=True, timeout=120)
    if done.returncode:
        return None, f"status {done.returncode}: {done.stderr.strip()}"
    stats = dict(line.split(" ", 2)[:2] for line in done.stdout.splitlines())
    return {key: float(value) for key, value in stats.items()}, fits.getdata(mask).squeeze() != 0


def expect(what, got, wanted, relative=1e-6, absolute=0.0):
    if not abs(got - wanted) <= relative * abs(wanted) + absolute:
        faults.append(f"{what}: {got!r} instead of {wanted!r}")


def same_mask(what, mask, wanted, few=0):
    if isinstance(mask, str):
        faults.append(f"{what}: {mask}")
    elif (mask != wanted).sum() > few:
        faults.append(f"{what}: {(mask != wanted).sum()} of {wanted.sum()} cells differ")


def check_map(name, wcs, wanted):
    position = to_sky(wcs, STAR).icrs
    regions = path(name + ".reg")
    with open(regions, "w") as file:
        file.write(f"icrs\npolygon({numbers(degrees_of(position))})\n")
    stats, mask = run(name, name, regions)
    same_mask(name, mask, wanted, 2 if name.startswith(("fk4", "epoch")) else 0)
    if stats is None:
        return
    offset = wcs.pixel_scale_matrix @ (np.array(PEAK) + 1 - wcs.wcs.crpix) * 3.6e6
    for key, axis in (("peak_x", wcs.wcs.lng), ("peak_y", wcs.wcs.lat)):
        expect(f"{name} {key}", stats.get(key, np.nan), offset[axis])
    beam = np.pi / 4 / np.log(2) * BMAJ * BMIN / abs(np.linalg.det(wcs.pixel_scale_matrix))
    expect(f"{name} mask_flux", stats["mask_flux"], sky[mask].sum(dtype=float) / beam)


# areas as (kind, column, row, full sizes, degrees from +x, which is west on a map with north up)
AREAS = [("box", 15.3, 14.7, 16.5, 9.2, 0.0), ("box", 50.1, 15.2, 20.0, 7.0, 33.0), ("ellipse", 18.2, 42.3, 21.0, 9.4, -20.0),
         ("ellipse", 52.3, 43.6, 12.9, 12.9, 0.0)]
TRIANGLE = np.array([[33.3, 20.2], [41.7, 52.4], [30.2, 47.1]])
FRAMES = {"icrs": ICRS(), "fk5": FK5(), "fk4": FK4(equinox="B1950"), "galactic": Galactic(),
          "ecliptic": BarycentricMeanEcliptic(equinox="J2000")}
CASA = {"icrs": "ICRS", "fk5": "J2000", "fk4": "B1950", "galactic": "GALACTIC", "ecliptic": "ECLIPTIC"}


def region_text(kind, wcs, frame):
    """The areas in a frame, or in pixels without one. An angle counts from the frame's own west."""
    shapes = []
    for shape, x, y, width, height, angle in AREAS:
        centre = np.array([[x, y]])
        if frame:
            here = to_sky(wcs, centre)
            there = here.transform_to(FRAMES[frame])
            north = SkyCoord(there.spherical.lon, there.spherical.lat + 1e-4 * u.deg, frame=FRAMES[frame])
            angle -= here.position_angle(north.transform_to(here.frame))[0].wrap_at("180d").deg
            centre = degrees_of(there)
            width, height = width * STEP, height * STEP
        shapes.append((shape, centre, width, height, angle))
    corners = degrees_of(to_sky(wcs, TRIANGLE).transform_to(FRAMES[frame])) if frame else TRIANGLE
    text = []
    for shape, centre, width, height, angle in shapes:
        half = 1.0 if shape == "box" else 0.5
        sizes = (width * half, height * half)
        if kind == "reg":
            text.append(f"{shape}({numbers(centre + (not frame))},{numbers(sizes)},{angle:.9f})")
        else:
            unit = "deg" if frame else "pix"
            place = ", ".join(f"{v:.15f}{unit}" for v in centre[0])
            size = ", ".join(f"{v:.15f}{unit}" for v in sizes)
            name = "rotbox" if shape == "box" else "ellipse"
            text.append(f"{name}[[{place}], [{size}], {angle - (90 if shape == 'ellipse' else 0):.9f}deg]")
    if kind == "reg":
        return "\n".join([frame or "image", *text, f"polygon({numbers(corners + (not frame))})", ""])
    unit = "deg" if frame else "pix"
    text.append("poly[" + ", ".join(f"[{x:.15f}{unit}, {y:.15f}{unit}]" for x, y in corners) + "]")
    return "\n".join(["#CRTFv0", f"global coord={CASA.get(frame, 'J2000')}", *text, ""])


def check_regions(map_name, wcs, kind, frame, wanted):
    name = f"{map_name}_in_{frame}.{kind}"
    text = region_text(kind, wcs, None if frame == "IMAGE" else frame)
    if frame == "IMAGE":  # whose writers put "deg" behind pixels
        text = text.replace("pix", "deg").replace("J2000", "IMAGE")
    with open(path(name), "w") as file:
        file.write(text)
    _, mask = run(name, map_name, path(name))
    same_mask(name, mask, wanted, 2 if frame == "fk4" else 0)


def main():
    worlds = {name: write_map(name, {**BASE, **cards}) for name, cards in MAPS.items()}
    with open(path("star.reg"), "w") as file:
        file.write(f"image\npolygon({numbers(STAR + 1)})\n")
    with open(path("areas.reg"), "w") as file:
        file.write(region_text("reg", None, None))
    _, star = run("star", "plain", path("star.reg"))
    _, areas = run("areas", "plain", path("areas.reg"))
    # FK4 shows its milliarcseconds only where cells are as fine
    fine = [(m, k, f) for m in ("plain", "galactic") for k in ("reg", "crtf") for f in FRAMES if f != "fk4"]
    fine += [("fk5_1975", "reg", "icrs"), ("ecliptic", "crtf", "galactic"), ("plain", "crtf", "IMAGE")]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        jobs = [pool.submit(check_map, name, wcs, star) for name, wcs in worlds.items()]
        jobs += [pool.submit(check_regions, m, worlds[m], k, f, areas) for m, k, f in fine]
        for job in jobs:
            job.result()
    for name, cards in NO_SKY.items():
        write_map(name, cards)
        stats, _ = run(name, name, path("star.reg"))
        expect(f"{name} peak_column", stats.get("peak_column", np.nan), PEAK[0])
        expect(f"{name} peak_row", stats.get("peak_row", np.nan), PEAK[1])
    print("\n".join(faults) if faults else f"{len(worlds) + len(NO_SKY)} maps, {len(fine)} region files: as Astropy has them")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
