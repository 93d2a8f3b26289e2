"""Where areas and components lie: maps, headers and coordinates as users have them."""
from __future__ import annotations

import os
import re
from collections.abc import Mapping
from typing import Any

from . import _core
from ._draw import MapFigure, _cards_of, _cards_of_wcs


def _shape(shape: Any) -> tuple[int, int]:
    """Rows and columns, as numpy counts them."""
    try:
        rows, columns = shape
    except (TypeError, ValueError):
        raise TypeError("shape has to be (rows, columns)") from None
    for length in (rows, columns):
        if isinstance(length, bool) or not hasattr(length, "__index__"):
            raise TypeError("shape has to be two whole numbers, (rows, columns)")
        if not 1 <= int(length) < 2**31:
            raise ValueError(f"a map of {rows} x {columns} cells cannot be")
    return int(rows), int(columns)


def _size_said(source: Any) -> tuple[int, int]:
    """What a header or a WCS says of rows and columns; zeros when it says nothing."""
    if isinstance(source, str):
        found = {key: int(n) for key, n in re.findall(r"(NAXIS[12]) *= *(\d+)", source)}
        return found.get("NAXIS2", 0), found.get("NAXIS1", 0)
    if isinstance(source, Mapping) or hasattr(source, "cards"):
        rows, columns = source.get("NAXIS2", 0), source.get("NAXIS1", 0)
    else:
        rows, columns = (getattr(source, "array_shape", None) or (0, 0))[-2:]
    return int(rows), int(columns)


def _place(map: Any, header: Any, wcs: Any, shape: Any) -> _core.Place | None:
    """None when nothing is said."""
    if sum(given is not None for given in (map, header, wcs)) > 1:
        raise TypeError("map, header and wcs all say where the cells lie: give one of them")
    if isinstance(map, (str, os.PathLike)):
        return _core.Place(_path(map))
    if isinstance(map, MapFigure):
        return _core.Place(map._source)
    if isinstance(map, _core.Map):
        return _core.Place(map)
    if map is not None:
        if not hasattr(map, "header") or not hasattr(map, "shape"):
            raise TypeError(f"map has to be a FITS file, a figure or an HDU, not {type(map).__name__}")
        header = map.header
    source = header if header is not None else wcs
    if source is None:
        return None
    rows, columns = _size_said(source) if shape is None else _shape(shape)
    cards = _cards_of_wcs(wcs) if wcs is not None else _cards_of(header)
    return _core.Place(cards, rows, columns, 0)


def _path(path: Any) -> str:
    if not isinstance(path, (str, os.PathLike)):
        raise TypeError(f"a file's name is wanted, not {type(path).__name__}")
    name = os.fsdecode(path)
    if "\0" in name:  # which would end the name
        raise ValueError("a file's name has no null character")
    return name


def _flags(inside: Any, what: str) -> Any:
    """An array of bytes of two axes over the same memory, non-zero inside."""
    import numpy as np

    if hasattr(inside, "mask") and hasattr(inside, "filled"):
        inside = inside.filled(False)
    array = np.asarray(inside)
    if array.dtype.kind not in "bui" or array.dtype.itemsize != 1:
        raise TypeError(f"{what} has to be an array of bool, not of {array.dtype}")
    if array.ndim != 2:
        raise ValueError(f"{what} has two axes, rows and columns, not {array.ndim}")
    if array.size == 0:
        raise ValueError(f"{what} has no cells")
    _shape(array.shape)
    return array.view(np.uint8)
