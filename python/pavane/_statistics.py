"""Numbers of a map and of a part of it."""
from __future__ import annotations

import os
from collections.abc import Sequence
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any

from . import _core
from ._areas import Area, Areas, _areas_of
from ._draw import MapFigure, _map_of
from ._places import _flags

if TYPE_CHECKING:
    import numpy.typing as npt


@dataclass(frozen=True)
class Statistics:
    """What `statistics` finds. NaN stands for what is not known.

    >>> numbers = statistics("jet.fits")
    >>> numbers.unit, numbers.flux_unit, numbers.cells
    ('JY/BEAM', 'Jy', 65536)
    """

    least: float  #: the least finite cell of the map, in `unit`
    peak: float  #: the greatest
    peak_cell: tuple[int, int] | None  #: column and row of the peak, from 0; None without a finite cell
    peak_offset: tuple[float, float]  #: milliarcseconds east and north of the reference pixel
    noise: float  #: 1.4826 times the median deviation from the median, of all cells
    beam_area: float  #: in cells
    cells: int  #: inside
    flux: float  #: of the cells inside, in `flux_unit`
    unit: str  #: of the map
    flux_unit: str  #: "Jy" where the unit and the beam are known


def statistics(
    source: Any,
    inside: str | os.PathLike[str] | Areas | Area | Sequence[Area] | npt.NDArray[Any] | None = None,
    *,
    plane: int | None = None,
    wcs: Any = None,
    header: Any = None,
    mask: Any = None,
) -> Statistics:
    """Range, peak, noise, flux and area of the beam of a map: the numbers of `pavane-view --stats`.

    source  a map as for `draw`, or a figure of one
    inside  where the flux is summed: `Areas`, an `Area` or a list of them, a file of areas, or an
            array of bool; without it the whole map
    plane, wcs, header, mask  as for `draw`; `mask` tells the blank cells

    >>> inner = statistics("jet.fits", Areas([Area.ellipse((128, 128), (20, 12))]))
    >>> inner.flux < statistics("jet.fits").flux
    True
    """
    if isinstance(source, MapFigure):
        if any(given is not None for given in (plane, wcs, header, mask)):
            raise TypeError("plane, wcs, header and mask go with a map; a figure has its own")
        map = source._source
    else:
        map = _map_of(source, plane, wcs, header, mask)
    cells: Any = inside
    if isinstance(cells, (str, os.PathLike, Area, Areas)) or (
        isinstance(cells, (list, tuple)) and all(isinstance(area, Area) for area in cells)
    ):
        cells = _areas_of(cells, map).mask((map.rows, map.columns))
    elif cells is not None:
        cells = _flags(cells, "inside")
        if cells.shape != (map.rows, map.columns):
            raise ValueError(f"inside has the shape {cells.shape}, the map ({map.rows}, {map.columns})")
    found = _core.statistics(map, cells)
    column, row = found["peak_column"], found["peak_row"]
    return Statistics(
        least=found["least"],
        peak=found["peak"],
        peak_cell=None if row < 0 else (column, row),
        peak_offset=(found["peak_x"] * 1e3 + 0.0, found["peak_y"] * 1e3 + 0.0),  # no -0
        noise=found["noise"],
        beam_area=found["beam_cells"],
        cells=found["cells"],
        flux=found["flux"],
        unit=found["unit"],
        flux_unit=found["flux_unit"],
    )
