"""The map that the pages draw: a jet of the sky that never was, with noise, as FITS."""
from __future__ import annotations

import math
import os

import numpy as np
import numpy.typing as npt


def cells(size: int = 256) -> npt.NDArray[np.float32]:
    """The jet, Jy/beam."""
    y, x = np.mgrid[:size, :size] / size - 0.5
    whole = np.random.default_rng(3).normal(scale=2e-4, size=(size, size))
    for i in range(9):
        along = 0.03 + 0.045 * i
        a, b = along * math.cos(0.6) * -1, along * math.sin(0.6) + 0.02 * math.sin(i)
        whole += 0.6 * 0.62**i * np.exp(-((x - a) ** 2 + (y - b) ** 2) / (0.0004 + 0.0002 * i))
    jet: npt.NDArray[np.float32] = (whole + np.exp(-(x**2 + y**2) / 0.0004)).astype(np.float32)
    return jet


def header(size: int = 256) -> dict[str, str | float]:
    """Where its cells lie: steps of 50 microarcseconds."""
    step = 5e-5 / 3600
    return {
        "CTYPE1": "RA---SIN", "CRVAL1": 187.7059, "CRPIX1": size / 2 + 1, "CDELT1": -step,
        "CTYPE2": "DEC--SIN", "CRVAL2": 12.3911, "CRPIX2": size / 2 + 1, "CDELT2": step,
        "BUNIT": "JY/BEAM", "OBJECT": "JET", "BMAJ": 9 * step, "BMIN": 7 * step, "BPA": 30.0,
    }


def write(path: str | os.PathLike[str], plane: npt.NDArray[np.float32] | None = None) -> None:
    """The jet, or another plane of cells, as a FITS file."""
    data = cells() if plane is None else plane
    rows, columns = data.shape
    facts: dict[str, str | float | bool] = {"SIMPLE": True, "BITPIX": -32, "NAXIS": 2, "NAXIS1": columns,
                                            "NAXIS2": rows, **header(columns)}
    cards = []
    for key, value in facts.items():
        text = f"'{value:8}'" if isinstance(value, str) else f"{'T' if value is True else value:>20}".upper()
        cards.append(f"{key:8}= {text}".ljust(80))
    head = "".join([*cards, "END".ljust(80)]).encode()
    body = data.astype(">f4").tobytes()
    with open(path, "wb") as file:
        file.write(head.ljust(-(-len(head) // 2880) * 2880))
        file.write(body.ljust(-(-len(body) // 2880) * 2880, b"\0"))
