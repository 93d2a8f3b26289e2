"""Areas of a map: shapes, their files and their masks."""
from __future__ import annotations

import importlib
import math
import os
import warnings
from collections.abc import Iterable, MutableSequence
from typing import TYPE_CHECKING, Any, Literal, overload

from . import _core
from ._draw import _in_unit, _text
from ._places import _flags, _path, _place, _shape

if TYPE_CHECKING:
    import numpy as np
    import numpy.typing as npt

PICKLE_FORMAT = 2  # 1 had neither names nor colours
_KINDS = ("rectangle", "rotated rectangle", "ellipse", "polygon")
_RULES = ("outline", "centres")
_POLYGON = 3


class Area:
    """One shape in cells of a map: column and row from 0, whole numbers at the centres of cells, so
    that cell (column, row) is `array[row, column]` and pixel (column + 1, row + 1) of FITS. It does
    not change; make another one with `Area.rectangle`, `Area.ellipse` or `Area.polygon`.

    >>> area = Area.ellipse((256, 250), (40, 20), angle=30)
    >>> area.kind, area.size.tolist()
    ('ellipse', [40.0, 20.0])
    """

    __slots__ = ("_state",)
    _state: tuple[Any, ...]

    def __init__(self) -> None:
        raise TypeError("use Area.rectangle, Area.ellipse or Area.polygon")

    @classmethod
    def _of(cls, state: tuple[Any, ...]) -> Area:
        area = object.__new__(cls)
        area._state = state if len(state) == 11 else (*state, "", -1)
        if area._state[6] is not None:
            area._state[6].flags.writeable = False
        return area

    @classmethod
    def _sized(
        cls, kind: int, center: Any, size: Any, angle: float, never_clean: bool, label: tuple[str, int]
    ) -> Area:
        x, y = _pair(center, "center")
        width, height = _pair(size, "size")
        if not (width > 0 and height > 0):
            raise ValueError(f"size has to be above 0, not {width:g} x {height:g}")
        turn = math.radians(_number(_in_unit(angle, "deg"), "angle"))
        return cls._of((kind, x, y, width, height, turn, None, bool(never_clean), False, *label))

    @classmethod
    def rectangle(
        cls,
        center: npt.ArrayLike,
        size: npt.ArrayLike,
        angle: float = 0.0,
        *,
        never_clean: bool = False,
        name: str = "",
        color: str | None = None,
    ) -> Area:
        """A rectangle by its centre (column, row) and its size (width along the columns, height),
        turned by `angle` degrees from growing columns towards growing rows.

        >>> Area.rectangle((10, 20), (5, 3))
        Area.rectangle((10, 20), (5, 3))
        """
        return cls._sized(1 if angle else 0, center, size, angle, never_clean, _label(name, color))

    @classmethod
    def ellipse(
        cls,
        center: npt.ArrayLike,
        size: npt.ArrayLike,
        angle: float = 0.0,
        *,
        never_clean: bool = False,
        name: str = "",
        color: str | None = None,
    ) -> Area:
        """An ellipse by its centre and its whole axes, turned as a rectangle is.

        >>> Area.ellipse((10, 20), (6, 6)).size.tolist()
        [6.0, 6.0]
        """
        return cls._sized(2, center, size, angle, never_clean, _label(name, color))

    @classmethod
    def polygon(
        cls,
        vertices: npt.ArrayLike,
        *,
        never_clean: bool = False,
        name: str = "",
        color: str | None = None,
    ) -> Area:
        """A polygon by three vertices (column, row) or more, closed from the last to the first.

        >>> Area.polygon([(2, 2), (8, 2), (5, 9)]).vertices.shape
        (3, 2)
        """
        import numpy as np

        points = np.array(vertices, dtype=float)
        if points.ndim != 2 or points.shape[1] != 2:
            raise ValueError("vertices are rows of two numbers, column and row")
        if len(points) < 3:
            raise ValueError(f"a polygon has three vertices or more, not {len(points)}")
        _check_far(points, "vertices")
        label = _label(name, color)
        return cls._of((_POLYGON, 0.0, 0.0, 0.0, 0.0, 0.0, points, bool(never_clean), False, *label))

    @property
    def kind(self) -> str:
        """"rectangle", "rotated rectangle", "ellipse" or "polygon".

        >>> Area.rectangle((10, 20), (5, 3), angle=45).kind
        'rotated rectangle'
        """
        return _KINDS[self._state[0]]

    @property
    def center(self) -> npt.NDArray[np.float64]:
        """Column and row; of a polygon the middle of the box around it.

        >>> Area.rectangle((10, 20), (5, 3)).center.tolist()
        [10.0, 20.0]
        """
        import numpy as np

        if self._state[0] == _POLYGON:
            middle: npt.NDArray[np.float64] = (self.vertices.min(0) + self.vertices.max(0)) / 2
            return middle
        return np.array(self._state[1:3])

    @property
    def size(self) -> npt.NDArray[np.float64]:
        """Width and height in cells, along and across the angle; of a polygon those of the box
        around it.

        >>> Area.polygon([(2, 2), (8, 2), (5, 9)]).size.tolist()
        [6.0, 7.0]
        """
        import numpy as np

        if self._state[0] == _POLYGON:
            span: npt.NDArray[np.float64] = np.ptp(self.vertices, axis=0)
            return span
        return np.array(self._state[3:5])

    @property
    def angle(self) -> float:
        """Degrees from growing columns towards growing rows; 0 for polygons.

        >>> round(Area.ellipse((10, 20), (6, 2), angle=30).angle)
        30
        """
        return math.degrees(self._state[5]) if self._state[0] in (1, 2) else 0.0

    @property
    def vertices(self) -> npt.NDArray[np.float64]:
        """The outline, a row (column, row) for each vertex: of a polygon its own, of a rectangle the
        corners, of an ellipse points close enough for its mask.

        >>> Area.rectangle((10, 20), (4, 2)).vertices.tolist()
        [[8.0, 19.0], [12.0, 19.0], [12.0, 21.0], [8.0, 21.0]]
        """
        if self._state[6] is not None:
            own: npt.NDArray[np.float64] = self._state[6]
            return own
        return _core.area_outline(self._state)

    @property
    def never_clean(self) -> bool:
        """Masks leave out its cells, whatever other areas hold them.

        >>> Area.ellipse((10, 20), (6, 6), never_clean=True).never_clean
        True
        """
        return bool(self._state[7])

    @property
    def name(self) -> str:
        """What the area is called; "" without a name. Region files and .areas files keep it.

        >>> Area.ellipse((10, 20), (6, 6), name="core").name
        'core'
        """
        return str(self._state[9])

    @property
    def color(self) -> str | None:
        """What the area is drawn in, "#rrggbb"; None for the usual colour.

        >>> Area.ellipse((10, 20), (6, 6), color="red").color
        '#ff0000'
        """
        return None if self._state[10] < 0 else f"#{self._state[10]:06x}"

    def labelled(self, name: str = "", color: str | None = None) -> Area:
        """The same shape with this name and colour: "#rrggbb", "#rgb" or a usual name.

        >>> Area.ellipse((10, 20), (6, 6)).labelled("core", "#ff8000").color
        '#ff8000'
        """
        return Area._of((*self._state[:9], *_label(name, color)))

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Area):
            return NotImplemented
        mine, theirs = self._state, other._state
        if mine[:6] + mine[7:] != theirs[:6] + theirs[7:]:
            return False
        return mine[6] is None or mine[6].tolist() == theirs[6].tolist()

    def __hash__(self) -> int:
        points = self._state[6]
        return hash(self._state[:6] + self._state[7:] + (None if points is None else points.tobytes(),))

    def __repr__(self) -> str:
        kind, x, y, width, height = self._state[:5]
        never = ", never_clean=True" if self.never_clean else ""
        never += f", name={self.name!r}" if self.name else ""
        never += f", color={self.color!r}" if self.color else ""
        if kind == _POLYGON:
            return f"<Area.polygon of {len(self.vertices)} vertices{never}>"
        name = "ellipse" if kind == 2 else "rectangle"
        turn = f", angle={self.angle:g}" if self._state[5] and kind else ""
        return f"Area.{name}(({x:g}, {y:g}), ({width:g}, {height:g}){turn}{never})"

    def __reduce__(self) -> tuple[Any, ...]:
        return _again, (PICKLE_FORMAT, self._state)


class Areas(MutableSequence[Area]):
    """A list of areas. Its mask has the cells of all of them, without those of never-clean areas.

    >>> areas = Areas([Area.ellipse((256, 250), (40, 20)), Area.polygon([(2, 2), (8, 2), (5, 9)])])
    >>> areas.mask((512, 512)).sum()
    717
    """

    def __init__(self, areas: Iterable[Area] = ()) -> None:
        self._list: list[Area] = []
        self.extend(areas)

    @classmethod
    def read(
        cls,
        path: str | os.PathLike[str],
        *,
        map: Any = None,
        header: Any = None,
        wcs: Any = None,
        shape: tuple[int, int] | None = None,
    ) -> Areas:
        """Reads a file of areas: .reg (DS9), .crtf (CASA), .win (CLEAN windows of Difmap), .cma or
        .areas; what it holds decides, not its name, but for .win. Positions on the sky, .win and
        .areas files need the map that they lie on: a FITS file, a figure, an HDU (`map=`), an
        astropy Header (`header=`) or WCS (`wcs=`), with the `shape` (rows, columns) of the map
        where these do not say it. What was not taken comes as PavaneWarning, with the number of its
        line; a file of which nothing can be taken is a FormatError.

        >>> core = Areas([Area.ellipse((128, 128), (20, 12))])
        >>> core.write("core.reg", map="jet.fits", sky=True)
        >>> Areas.read("core.reg", map="jet.fits").kinds.tolist()
        ['ellipse']
        """
        file = _path(path)
        states, lines = _core.read_areas(file, _place(map, header, wcs, shape))
        _warn(file, lines)
        return cls._of(states)

    def write(
        self,
        path: str | os.PathLike[str],
        *,
        map: Any = None,
        header: Any = None,
        wcs: Any = None,
        shape: tuple[int, int] | None = None,
        sky: bool = False,
        partial: bool = False,
    ) -> None:
        """Writes the areas in the form of the name's ending: .reg, .crtf, .win, .cma or .areas,
        whole or not at all. `sky`: regions in positions on the sky, which need the map as for
        `read`; so do .win and .areas files. What the form holds in another way comes as
        PavaneWarning; areas that it cannot hold are a ValueError and nothing is written, unless
        `partial`.

        >>> Areas([Area.ellipse((256, 250), (40, 20))]).write("core.reg")
        """
        file = _path(path)
        place = _place(map, header, wcs, shape)
        if sky and place is None:
            raise TypeError("sky=True needs a map, header or wcs")
        _warn(file, _core.write_areas(file, place, self._states(), bool(sky), bool(partial)))

    def mask(
        self, shape: tuple[int, ...], packed: bool = False, rule: Literal["outline", "centres"] = "outline"
    ) -> npt.NDArray[Any]:
        """The cells of the areas, an array of bool of `shape` (rows, columns). Without areas, and
        with never-clean ones alone, all other cells are in it.

        rule    "outline": the cells inside and those of the outline, as CLEAN takes them, which
                knows outlines whose vertices are whole cells: others are rounded to these first;
                "centres": those whose centres lie inside the shape itself
        packed  the same as bits, eight cells a byte, the first in the lowest bit; it can be read
                with numpy.unpackbits(mask, axis=1, count=columns, bitorder="little")

        >>> Areas([Area.rectangle((3, 2), (2, 2))]).mask((6, 8)).sum()
        9
        >>> Areas([Area.rectangle((3, 2), (2, 2))]).mask((6, 8), rule="centres").sum()
        1
        """
        if rule not in _RULES:
            raise ValueError(f"rule knows {' and '.join(_RULES)}, not '{rule}'")
        rows, columns = _shape(shape)
        fill = _core.area_bits if packed else _core.area_mask
        return fill(self._states(), rows, columns, rule == "centres")

    @classmethod
    def from_mask(cls, mask: npt.ArrayLike) -> Areas:
        """Closed polygons, and never-clean ones for holes, whose mask is this array of bool again,
        cell by cell, by either rule.

        >>> areas = Areas.from_mask(numpy.eye(3, dtype=bool))
        >>> areas.mask((3, 3)).astype(int).tolist()
        [[1, 0, 0], [0, 1, 0], [0, 0, 1]]
        """
        return cls._of(_core.areas_of_mask(_flags(mask, "a mask")))

    @classmethod
    def from_regions(cls, regions: Iterable[Any], *, wcs: Any = None) -> Areas:
        """The areas of regions of the package `regions`: rectangles, ellipses, circles and polygons
        in pixels, or on the sky with the `wcs` of the map. Excluded ones are never clean; others
        are left out with a PavaneWarning.

        >>> Areas.from_regions(regions.Regions.read("jet.reg"), wcs=wcs)  # doctest: +SKIP
        """
        areas = cls()
        for number, region in enumerate(regions, 1):
            if not hasattr(region, "meta"):
                raise TypeError(f"regions of the package regions are wanted, not {type(region).__name__}")
            if hasattr(region, "to_pixel"):
                if wcs is None:
                    raise TypeError("regions on the sky need the wcs of the map")
                region = region.to_pixel(wcs)
            area = _of_region(region)
            if area is None:
                name = type(region).__name__
                warnings.warn(
                    f"region {number}: {name} is no shape of areas; left out",
                    _core.PavaneWarning,
                    stacklevel=2,
                )
            else:
                areas.append(area)
        return areas

    def to_regions(self) -> Any:
        """The areas as `regions.Regions` in pixels; never-clean ones are excluded regions.

        >>> Areas([Area.ellipse((256, 250), (40, 20))]).to_regions()  # doctest: +SKIP
        """
        regions = importlib.import_module("regions")
        return regions.Regions([_region_of(area) for area in self._list])

    @property
    def kinds(self) -> npt.NDArray[np.str_]:
        """The kind of each area.

        >>> Areas([Area.ellipse((9, 9), (4, 2))]).kinds.tolist()
        ['ellipse']
        """
        import numpy as np

        return np.array([area.kind for area in self._list], dtype="U17")

    @property
    def centers(self) -> npt.NDArray[np.float64]:
        """Column and row of each centre, a row for each area.

        >>> Areas([Area.ellipse((9, 9), (4, 2))]).centers.tolist()
        [[9.0, 9.0]]
        """
        import numpy as np

        return np.array([area.center for area in self._list], dtype=float).reshape(-1, 2)

    @property
    def sizes(self) -> npt.NDArray[np.float64]:
        """Width and height of each area.

        >>> Areas([Area.ellipse((9, 9), (4, 2))]).sizes.tolist()
        [[4.0, 2.0]]
        """
        import numpy as np

        return np.array([area.size for area in self._list], dtype=float).reshape(-1, 2)

    @property
    def angles(self) -> npt.NDArray[np.float64]:
        """The angle of each area, degrees.

        >>> Areas([Area.ellipse((9, 9), (4, 2))]).angles.tolist()
        [0.0]
        """
        import numpy as np

        return np.array([area.angle for area in self._list], dtype=float)

    @property
    def names(self) -> npt.NDArray[np.str_]:
        """The name of each area, "" without one.

        >>> Areas([Area.ellipse((9, 9), (4, 2), name="core")]).names.tolist()
        ['core']
        """
        import numpy as np

        return np.array([area.name for area in self._list], dtype=str)

    @property
    def never_clean(self) -> npt.NDArray[np.bool_]:
        """Which areas masks leave out.

        >>> Areas([Area.ellipse((9, 9), (4, 2))]).never_clean.tolist()
        [False]
        """
        import numpy as np

        return np.array([area.never_clean for area in self._list], dtype=bool)

    @classmethod
    def _of(cls, states: list[tuple[Any, ...]]) -> Areas:
        areas = cls()
        areas._list = [Area._of(state) for state in states]
        return areas

    def _states(self) -> list[tuple[Any, ...]]:
        return [area._state for area in self._list]

    def _outlines_on(self, map: _core.Map) -> list[tuple[npt.NDArray[np.float64], int, int]]:
        """For a figure of the map."""
        return _core.area_outlines_on(map, self._states())

    @overload
    def __getitem__(self, index: int) -> Area: ...

    @overload
    def __getitem__(self, index: slice) -> Areas: ...

    def __getitem__(self, index: int | slice) -> Area | Areas:
        if isinstance(index, slice):
            return Areas(self._list[index])
        return self._list[index]

    def __setitem__(self, index: Any, value: Any) -> None:
        if isinstance(index, slice):
            self._list[index] = [_checked(area) for area in value]
        else:
            self._list[index] = _checked(value)

    def __delitem__(self, index: int | slice) -> None:
        del self._list[index]

    def __len__(self) -> int:
        return len(self._list)

    def insert(self, index: int, value: Area) -> None:
        """Puts an area before the one of the index.

        >>> Areas().insert(0, Area.ellipse((9, 9), (4, 2)))
        """
        self._list.insert(index, _checked(value))

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Areas):
            return NotImplemented
        return self._list == other._list

    __hash__ = None  # type: ignore[assignment]

    def __repr__(self) -> str:
        if len(self._list) > 6:
            return f"<Areas: {len(self._list)}>"
        return f"Areas({self._list!r})"

    def __reduce__(self) -> tuple[Any, ...]:
        return _all_again, (PICKLE_FORMAT, self._states())


def _check_format(format: int) -> None:
    if format not in (1, PICKLE_FORMAT):
        raise ValueError(
            f"the areas were pickled by another version of pavane (format {format}, here "
            f"{PICKLE_FORMAT}): write them as .reg instead"
        )


def _again(format: int, state: tuple[Any, ...]) -> Area:
    """The area that was pickled."""
    _check_format(format)
    return Area._of(state)


def _all_again(format: int, states: list[tuple[Any, ...]]) -> Areas:
    """The areas that were pickled."""
    _check_format(format)
    return Areas._of(states)


def _checked(area: Any) -> Area:
    if not isinstance(area, Area):
        raise TypeError(f"a list of areas takes Area, not {type(area).__name__}")
    return area


def _areas_of(areas: Any, map: _core.Map) -> Areas:
    """What `areas=` may be, on its map."""
    if isinstance(areas, (str, os.PathLike)):
        return Areas.read(areas, map=map)
    if isinstance(areas, Areas):
        return areas
    if isinstance(areas, Area):
        return Areas([areas])
    if isinstance(areas, (list, tuple)):
        return Areas(areas)
    raise TypeError(f"areas have to be a file, Areas or a list of Area, not {type(areas).__name__}")


def _number(value: Any, what: str) -> float:
    try:
        number = float(value)
    except (TypeError, ValueError):
        raise TypeError(f"{what} has to be a number") from None
    if not math.isfinite(number):
        raise ValueError(f"{what} has to be finite, not {number}")
    return number


def _check_far(points: Any, what: str) -> None:
    import numpy as np

    if not (np.abs(points) <= 1e9).all():  # not of NaN either
        raise ValueError(f"{what} have to be finite and within 1e9 cells")


def _pair(values: Any, what: str) -> tuple[float, float]:
    try:
        first, second = values
    except (TypeError, ValueError):
        raise TypeError(f"{what} has to be two numbers") from None
    pair = _number(first, what), _number(second, what)
    _check_far(pair, f"the numbers of {what}")
    return pair


def _warn(file: str, lines: list[str]) -> None:
    for line in lines:
        warnings.warn(f"{file}: {line}", _core.PavaneWarning, stacklevel=3)


def _label(name: Any, color: Any) -> tuple[str, int]:
    """Name and colour of an area, checked."""
    if color is None:
        return _core.area_name(_text(name, "name")), -1
    number = _core.area_colour(_text(color, "color"))
    if number is None:
        raise ValueError(f"'{color}' is no colour: '#rrggbb' is wanted")
    return _core.area_name(_text(name, "name")), number


def _of_region(region: Any) -> Area | None:
    """None for a region that no area can be."""
    area = _shape_of_region(region)
    if area is None:
        return None
    name = region.meta.get("text", region.meta.get("label", ""))
    color = getattr(region, "visual", {}).get("color")
    known = isinstance(color, str) and _core.area_colour(color) is not None
    return area.labelled(str(name), color if known else None)


def _shape_of_region(region: Any) -> Area | None:
    import re

    name = re.sub("PixelRegion$", "", type(region).__name__)
    never = not _is_included(region)
    if name == "Circle":
        size = 2 * region.radius, 2 * region.radius
        return Area.ellipse((region.center.x, region.center.y), size, never_clean=never)
    if name in ("Ellipse", "Rectangle"):
        make = Area.ellipse if name == "Ellipse" else Area.rectangle
        angle = region.angle.to_value("deg")
        center = region.center.x, region.center.y
        return make(center, (region.width, region.height), angle, never_clean=never)
    if name in ("Polygon", "RegularPolygon"):
        points = region.vertices
        return Area.polygon(list(zip(points.x, points.y)), never_clean=never)
    return None


def _is_included(region: Any) -> bool:
    included = region.meta.get("include", True)
    return included not in (False, 0, "-", "0")


def _region_of(area: Area) -> Any:
    regions, units = (importlib.import_module(name) for name in ("regions", "astropy.units"))
    meta = regions.RegionMeta({"include": not area.never_clean})
    if area.name:
        meta["text"] = area.name
    visual = regions.RegionVisual({"color": area.color} if area.color else {})
    if area.kind == "polygon":
        points = regions.PixCoord(*area.vertices.T)
        return regions.PolygonPixelRegion(points, meta=meta, visual=visual)
    kind = regions.EllipsePixelRegion if area.kind == "ellipse" else regions.RectanglePixelRegion
    x, y = area.center.tolist()
    width, height = area.size.tolist()
    return kind(regions.PixCoord(x, y), width, height, area.angle * units.deg, meta=meta, visual=visual)
