"""Models of brightness components."""
from __future__ import annotations

import os
import warnings
from collections.abc import Iterator
from typing import TYPE_CHECKING, Any

import numpy as np

from . import _core
from ._areas import _warn
from ._draw import _in_unit
from ._places import _path, _place, _shape

if TYPE_CHECKING:
    import numpy.typing as npt

PICKLE_FORMAT = 1
COLUMNS = ("kind", "flux", "major", "ratio", "inclination", "angle", "distance", "width")
_TYPE = np.dtype([(name, "i4" if name == "kind" else "f8") for name in COLUMNS], align=True)
_DEFAULTS = (1, 1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.5)


class Components:
    """A model of a source: a structured array of components, `table`, which may be changed in place.

    kind         1 point, 2 Gaussian, 3 uniform disk, 4 thin ring, 5 sphere, 6 strip, 7 wide ring
    flux         in the unit of the data, usually Jy
    major        the large axis, arcseconds; of a Gaussian the full width at half maximum
    ratio        small axis over large axis
    inclination  position angle of the large axis, degrees
    angle        direction of the component from the centre of the map, degrees, north through east
    distance     from there, arcseconds
    width        of a wide ring, as a fraction of its radius

    >>> model = Components(flux=[1.0, 0.3], distance=[0, 0.002], angle=[0, 45])
    >>> model["flux"].sum()
    1.3
    """

    def __init__(self, table: Any = None, **columns: npt.ArrayLike) -> None:
        """`table`: a structured array with some of the columns, rows of eight numbers, or other
        Components; or columns by their names, the others with their defaults. A Quantity becomes
        Jy, arcseconds or degrees.

        >>> len(Components([[1, 1.0, 0, 1, 0, 0, 0, 0.5]]))
        1
        """
        if table is not None and columns:
            raise TypeError("give a table or columns, not both")
        self._table = _of_columns(columns) if table is None else _of_table(table)

    @property
    def table(self) -> npt.NDArray[Any]:
        """The structured array of the columns.

        >>> Components(flux=[1.0]).table.dtype.names[:3]
        ('kind', 'flux', 'major')
        """
        return self._table

    @classmethod
    def read(cls, path: str | os.PathLike[str]) -> Components:
        """Reads a text of components, or the table of components that a CLEAN leaves in a FITS map.

        >>> Components(flux=[1.0, 0.5]).write("jet.mod")
        >>> len(Components.read("jet.mod"))
        2
        """
        file = _path(path)
        rows, lines = _core.read_model(file, _is_fits(file))
        _warn(file, lines)
        model = cls()
        model._table = _new(len(rows))
        for i, name in enumerate(COLUMNS):
            model._table[name] = rows[:, i]  # kinds that are foreign here too: they count as points
        return model

    def write(self, path: str | os.PathLike[str]) -> None:
        """Writes the text of components, whole or not at all. It holds six digits; what they lose
        comes as PavaneWarning.

        >>> Components(flux=[1.0]).write("core.mod")
        """
        file = _path(path)
        _warn(file, _core.write_model(file, self._columns()))

    def visibilities(self, u: npt.ArrayLike, v: npt.ArrayLike) -> npt.NDArray[np.complex128]:
        """The model's complex visibilities at (u, v) in wavelengths, an array of their shape.

        >>> Components(flux=[1.0]).visibilities([0, 1e8], [0, 0])
        array([1.+0.j, 1.+0.j])
        """
        us, vs = np.broadcast_arrays(_numbers(u, "u"), _numbers(v, "v"))
        sums = _core.model_visibilities(self._columns(), us.reshape(-1), vs.reshape(-1))
        return sums.reshape(us.shape)

    def to_map(
        self,
        shape: tuple[int, ...] | None = None,
        *,
        cell: npt.ArrayLike | None = None,
        map: Any = None,
        header: Any = None,
        wcs: Any = None,
    ) -> npt.NDArray[np.float32]:
        """A map of the model, flux per cell, north up and east at the left.

        shape  (rows, columns)
        cell   the size of a cell in arcseconds, or (width, height); the model's centre lies then at
               the middle of cell [rows // 2, columns // 2], or
        map, header, wcs  the map that it is to lie on, as for `Areas.read`: the model's centre is
               its reference pixel

        >>> Components(flux=[1.0]).to_map((64, 64), cell=0.1).sum()
        1.0
        """
        if (cell is not None) == any(given is not None for given in (map, header, wcs)):
            raise TypeError("to_map needs cell=, or one of map=, header= and wcs=")
        if cell is not None:
            if shape is None:
                raise TypeError("to_map with cell= needs shape=")
            rows, columns = _shape(shape)
            x, y = _cell(cell)
            left, below = columns // 2, rows // 2
            # a single row or column is as wide as its range
            right, above = max(columns - 1, 1) - left, max(rows - 1, 1) - below
            ends = (left * x, -right * x, -below * y, above * y)
            return _core.model_cells(self._columns(), rows, columns, ends)
        place = _place(map, header, wcs, shape)
        assert place is not None
        rows, columns = place.shape
        if rows < 1:
            raise TypeError("the header does not say how large the map is: give shape=")
        return _core.model_cells(self._columns(), rows, columns, _core.sky_range(place))

    def _columns(self) -> list[npt.NDArray[np.float64]]:
        """The columns as doubles; those that are, where they lie."""
        return [self._table[name].astype(float, copy=False) for name in COLUMNS]

    def __len__(self) -> int:
        return len(self._table)

    def __getitem__(self, index: Any) -> Any:
        if isinstance(index, str):
            return self._table[index]
        part = self._table[index]
        return Components(part) if isinstance(part, np.ndarray) else part

    def __iter__(self) -> Iterator[Any]:
        return iter(self._table)

    def __array__(self, dtype: Any = None) -> npt.NDArray[Any]:
        return self._table if dtype is None else self._table.astype(dtype)

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Components):
            return NotImplemented
        return bool(np.array_equal(self._table, other._table))

    __hash__ = None  # type: ignore[assignment]

    def __repr__(self) -> str:
        return f"<Components: {len(self)}, flux {self._table['flux'].sum():g}>"

    def __reduce__(self) -> tuple[Any, ...]:
        return _again, (PICKLE_FORMAT, self._table)


def _again(format: int, table: npt.NDArray[Any]) -> Components:
    """The model that was pickled."""
    if format != PICKLE_FORMAT:
        raise ValueError(
            f"the components were pickled by another version of pavane (format {format}, here "
            f"{PICKLE_FORMAT}): write them as a text instead"
        )
    model = Components()
    model._table = table
    return model


_UNITS = {"flux": "Jy", "major": "arcsec", "distance": "arcsec", "inclination": "deg", "angle": "deg"}


def _numbers(values: Any, what: str) -> npt.NDArray[np.float64]:
    """A Quantity in the unit that is counted here, which is none for most."""
    array = np.asarray(_in_unit(values, _UNITS.get(what, "")))
    if array.dtype.kind not in "fiu":
        raise TypeError(f"{what} has to be real numbers, not {array.dtype}")
    if isinstance(array, np.ma.MaskedArray) or isinstance(values, np.ma.MaskedArray):
        raise TypeError(f"{what} cannot be a masked array")
    return array.astype(float, copy=False)


def _take(table: npt.NDArray[Any], name: str, values: Any) -> None:
    numbers = _numbers(values, name)
    if name == "kind" and not ((numbers == np.floor(numbers)) & (numbers >= 1) & (numbers <= 7)).all():
        raise ValueError("kind has to be a whole number from 1 to 7")
    if not np.isfinite(numbers).all():
        raise ValueError(f"{name} has to be finite")
    table[name] = numbers


def _new(count: int) -> npt.NDArray[Any]:
    return np.full(count, np.array(_DEFAULTS, dtype=_TYPE))


def _of_columns(columns: dict[str, Any]) -> npt.NDArray[Any]:
    for name in columns:
        if name not in COLUMNS:
            raise TypeError(f"components have no column {name}: they have {', '.join(COLUMNS)}")
    if not columns:
        return _new(0)
    wanted = np.broadcast_shapes(*(np.shape(values) for values in columns.values()))
    if len(wanted) > 1:
        raise ValueError(f"a column has one axis, not {len(wanted)}")
    table = _new(wanted[0] if wanted else 1)
    for name, values in columns.items():
        _take(table, name, values)
    return table


def _of_table(table: Any) -> npt.NDArray[Any]:
    if isinstance(table, Components):
        return table._table.copy()
    array = np.asarray(table)
    if array.dtype.names is not None:
        if array.ndim != 1:
            raise ValueError(f"a table of components has one axis, not {array.ndim}")
        columns = {name: array[name] for name in array.dtype.names}
        made = _of_columns(columns) if len(array) else _new(0)
        return made
    if array.size == 0:
        return _new(0)
    if array.ndim != 2 or array.shape[1] != len(COLUMNS):
        raise ValueError(f"components are rows of {len(COLUMNS)} numbers")
    return _of_columns({name: array[:, i] for i, name in enumerate(COLUMNS)})


def _is_fits(file: str) -> bool:
    try:
        with open(file, "rb") as opened:
            return opened.read(6) == b"SIMPLE"
    except OSError:
        return False  # who reads it tells


def _cell(cell: Any) -> tuple[float, float]:
    cell = _in_unit(cell, "arcsec")
    sides = np.broadcast_to(_numbers(cell, "cell"), (2,)) if np.size(cell) in (1, 2) else None
    if sides is None:
        raise ValueError("cell has to be one size or (width, height)")
    x, y = (float(side) for side in sides)
    if not (np.isfinite(x) and np.isfinite(y) and x > 0 and y > 0):
        raise ValueError("cell has to be above 0 arcseconds")
    return x, y
