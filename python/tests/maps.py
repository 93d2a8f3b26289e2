"""Maps for tests, written without astropy."""
import numpy as np


def header_of(cells):
    rows, columns = cells.shape
    return {
        "SIMPLE": True, "BITPIX": -32, "NAXIS": 2, "NAXIS1": columns, "NAXIS2": rows,
        "CTYPE1": "RA---SIN", "CRVAL1": 187.7, "CRPIX1": columns / 2, "CDELT1": -1e-6, "CUNIT1": "deg",
        "CTYPE2": "DEC--SIN", "CRVAL2": 12.4, "CRPIX2": rows / 2, "CDELT2": 1e-6, "CUNIT2": "deg",
        "BUNIT": "JY/BEAM", "OBJECT": "MADE", "BMAJ": 4e-6, "BMIN": 3e-6, "BPA": 20.0,
    }


def card(key, value):
    text = f"'{value:8}'" if isinstance(value, str) else f"{'T' if value is True else value:>20}"
    return f"{key:8}= {text}".ljust(80)


def write_map(file, cells):
    cards = "".join(card(key, value) for key, value in header_of(cells).items()) + "END".ljust(80)
    data = cells.astype(">f4").tobytes()
    whole = cards.encode().ljust(-(-len(cards) // 2880) * 2880) + data
    file.write_bytes(whole.ljust(-(-len(whole) // 2880) * 2880, b"\0"))
