"""Curves, points and histograms."""
from __future__ import annotations

import math
import warnings

from . import _core
from ._draw import _rgb, _text
from ._figure import Figure, _checked_size

# the module typing takes an interpreter as long as half a figure
TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any

    import numpy as np
    import numpy.typing as npt

_SCALES = {"linear": 1, "reversed": -1, "log": 0, "time": 2}
_STYLES = {"-": 0, "--": 1, ":": 2, "-.": 3, "-..": 4}
_MARKERS = {".": 0, "+": 1, "x": 2, "|": 3, "*": 4}
_COLORS = ("#0050aa", "#b44600", "#007850", "#a00078", "#505050", "#00829b", "#785a00", "#6446b4")
_DAY = 86400.0
PICKLE_FORMAT = 1


class _Axis:
    """One direction of a plot: its scale, title, and what its first values were."""

    def __init__(self, name: str, scale: str | None, range: Any, title: str | None) -> None:
        allowed = [known for known in _SCALES if name == "x" or known != "time"]
        if scale is not None and scale not in allowed:
            raise ValueError(f"{name}_scale knows {', '.join(allowed)}, not '{scale}'")
        self.name, self.scale = name, scale
        self.title = None if title is None else _text(title, f"{name}_title")
        self.unit: Any = None
        self.day: Any = None  # the midnight that a time axis counts from
        self.clock = ""
        self.range = range

    def numbers(self, values: Any, what: str) -> npt.NDArray[np.float64]:
        """The values as numbers of this axis; the first ones decide what it counts."""
        import numpy as np

        if hasattr(values, "to_value") and hasattr(values, "jd1"):
            if hasattr(values, "to_datetime") and not hasattr(values, "isot"):  # a TimeDelta
                values = np.round(values.to_value("sec") * 1e6).astype("m8[us]")
            else:
                self.clock = self.clock or str(values.scale).upper()
                values = values.to_value("datetime64")
        unit = getattr(values, "unit", None)
        if unit is not None:
            if self.unit is None:
                self.unit = unit
            values = values.to_value(self.unit)
        array = np.asarray(values)
        if isinstance(getattr(values, "mask", None), (np.ndarray, np.bool_)) and array.dtype.kind in "fiu":
            array = np.where(values.mask, np.nan, array)  # what is masked is a gap
        if array.dtype.kind == "O" and array.size and hasattr(array.flat[0], "isoformat"):
            array = array.astype("M8[us]")  # datetime of Python
        if array.dtype.kind == "M":
            if self.name != "x":
                raise TypeError("times go along x")
            return self._seconds(array)
        if array.dtype.kind == "m":
            array = array / np.timedelta64(1, "s")
            self.scale = self.scale or "time"
        if array.dtype.kind not in "fiub":
            raise TypeError(f"{what} has to be numbers, not of type {array.dtype}")
        if self.day is not None:
            raise TypeError(f"{what} has to be times, as those before it")
        if array.ndim > 2 or array.ndim < 1:
            raise ValueError(f"{what} has to have one axis, not {array.ndim}")
        numbers: npt.NDArray[np.float64] = np.ascontiguousarray(array, dtype=np.float64)
        if self.scale == "log" and not np.all((numbers > 0) | ~np.isfinite(numbers)):
            warnings.warn(
                f"{what} has values that are not above 0, which a logarithmic axis leaves out",
                _core.PavaneWarning,
                stacklevel=4,
            )
            numbers = np.where(numbers > 0, numbers, np.nan)
        return numbers

    def places(self, values: Any) -> Any:
        """Numbers of this axis as they are; times and units as those that it counts."""
        import numpy as np

        array = values if hasattr(values, "jd1") else np.asarray(values)
        is_time = hasattr(array, "jd1") or array.dtype.kind in "mMO"
        unit = getattr(values, "unit", None)
        if not is_time and unit is None:
            return values
        if self.scale != "time" if is_time else self.unit is None:
            raise TypeError(f"the axis of {self.name} counts no {'times' if is_time else 'units'}")
        shape = values.shape if hasattr(values, "shape") else array.shape
        flat = values.reshape(-1) if hasattr(values, "reshape") else array.reshape(-1)
        return self.numbers(flat, self.name).reshape(shape)

    def _seconds(self, array: npt.NDArray[Any]) -> npt.NDArray[np.float64]:
        import numpy as np

        if self.scale not in (None, "time"):
            raise ValueError(f"times want x_scale='time', not '{self.scale}'")
        self.scale = "time"
        if self.day is None:
            known = array[~np.isnat(array)]
            self.day = known.min().astype("datetime64[D]") if known.size else np.datetime64(0, "D")
        fine = array.astype("datetime64[us]") - self.day.astype("datetime64[us]")
        seconds: npt.NDArray[np.float64] = fine / np.timedelta64(1, "s")
        return seconds

    @property
    def code(self) -> int:
        return _SCALES[self.scale or "linear"]

    def ends(self) -> tuple[float, float] | None:
        if self.range is None:
            return None
        import numpy as np

        try:
            low, high = self.range
        except (TypeError, ValueError):
            raise TypeError(f"{self.name}_range has to be (low, high)") from None
        numbers = [float(self.numbers(_row(end), f"{self.name}_range")[0]) for end in (low, high)]
        if not np.all(np.isfinite(numbers)) or not numbers[0] < numbers[1]:
            raise ValueError(f"{self.name}_range has to be two numbers, the first below the second")
        return numbers[0], numbers[1]

    def text(self) -> str:
        if self.title is not None:
            return self.title
        if self.day is not None:
            return f"{self.clock or 'Time'} from {self.day}"
        if self.unit is not None and str(self.unit):
            return f"[{self.unit}]".replace("%", "%%")
        return ""


def _row(value: Any) -> Any:
    """A value as an array of one."""
    import numpy as np

    return value.reshape(1) if hasattr(value, "reshape") else np.asarray([value])


class Plot(Figure):
    """Curves, points and a histogram between two axes, as `plot`, `points` and `histogram` make it.

    >>> fig = plot([0.0, 1.0, 2.0], [1.0, 3.0, 2.0], label="model")
    >>> _ = fig.points([0.0, 1.0, 2.0], [1.1, 2.8, 2.1], label="data")
    >>> fig.save("fit.png")
    """

    _drawing: _core.PlotDrawing

    def __init__(
        self,
        *,
        x_scale: str | None = None,
        y_scale: str | None = None,
        x_range: Any = None,
        y_range: Any = None,
        x_title: str | None = None,
        y_title: str | None = None,
        title: str | None = None,
        grid: bool = False,
        size: tuple[int, int] = (900, 600),
        ratio: int = 1,
    ) -> None:
        """An empty plot; the options are those of `plot`.

        >>> fig = Plot(x_title="Time [h]", y_title="Flux density [%sJy]")
        """
        self._x = _Axis("x", x_scale, x_range, x_title)
        self._y = _Axis("y", y_scale, y_range, y_title)
        self._title, self._grid = _text(title, "title"), bool(grid)
        self._size = _checked_size(size)
        self._items: list[tuple[str, tuple[Any, ...]]] = []
        super().__init__(self._made(), ratio)

    def _made(self) -> _core.PlotDrawing:
        drawing = _core.PlotDrawing(
            *self._size,
            self._x.code,
            self._y.code,
            self._x.ends(),
            self._y.ends(),
            self._x.text(),
            self._y.text(),
            self._title,
            self._grid,
        )
        for name, arguments in self._items:
            getattr(drawing, name)(*arguments)
        return drawing

    def _add(self, items: list[tuple[str, tuple[Any, ...]]]) -> None:
        before = len(self._items)
        self._items += items
        try:
            self._drawing = self._made()
        except BaseException:
            del self._items[before:]
            raise

    def _pairs(self, x: Any, y: Any) -> tuple[npt.NDArray[np.float64], list[npt.NDArray[np.float64]]]:
        import numpy as np

        if y is None:
            x, y = None, x
        many = self._y.numbers(y, "y")
        curves = [many] if many.ndim == 1 else list(np.ascontiguousarray(many.T))
        length = curves[0].size if curves else 0
        along = np.arange(length, dtype=float) if x is None else self._x.numbers(x, "x")
        if along.ndim != 1 or along.size != length:
            raise ValueError(f"x has {along.size} values and y {length}")
        return along, curves

    def to_pixel(self, x: Any, y: Any) -> tuple[Any, Any]:
        """Where values of the axes lie in `pixels`: column and row. Numbers or arrays; on an axis of
        times seconds from its first midnight, datetime64 or astropy Time; where values had a unit
        a Quantity too.

        >>> night = numpy.datetime64("2026-01-03T18:00") + numpy.arange(3) * numpy.timedelta64(1, "h")
        >>> column, row = plot(night, [1.0, 3.0, 2.0]).to_pixel(night[1], 3.0)
        """
        return super().to_pixel(self._x.places(x), self._y.places(y))

    def _color(self, color: Any, more: int = 0) -> int:
        drawn = sum(name != "add_histogram" for name, _ in self._items)
        return _rgb(color if color is not None else _COLORS[(drawn + more) % len(_COLORS)])

    def plot(
        self,
        x: Any,
        y: Any = None,
        *,
        style: str = "-",
        width: int = 1,
        color: Any = None,
        label: str = "",
    ) -> Plot:
        """Adds a curve, or one for each column of a `y` of two axes, and returns the plot.

        >>> fig = plot([1.0, 2.0], [3.0, 4.0]).plot([1.0, 2.0], [4.0, 3.0], style="--")
        """
        code, label = _choice(_STYLES, style, "style"), _text(label, "label")
        along, curves = self._pairs(x, y)
        self._add(
            [
                ("add_curve", (along, curve, code, _width(width), self._color(color, i), label))
                for i, curve in enumerate(curves)
            ]
        )
        return self

    def points(
        self,
        x: Any,
        y: Any = None,
        *,
        marker: str = "+",
        width: int = 1,
        color: Any = None,
        label: str = "",
        x_errors: Any = None,
        y_errors: Any = None,
    ) -> Plot:
        """Adds points, with bars where errors are given, and returns the plot.

        >>> fig = points([1.0, 2.0], [3.0, 4.0], y_errors=[0.1, 0.2])
        """
        code, label = _choice(_MARKERS, marker, "marker"), _text(label, "label")
        along, curves = self._pairs(x, y)
        bars = [
            _errors(axis, errors, along.size)
            for axis, errors in ((self._x, x_errors), (self._y, y_errors))
        ]
        self._add(
            [
                ("add_points", (along, curve, code, _width(width), self._color(color, i), label, *bars))
                for i, curve in enumerate(curves)
            ]
        )
        return self

    def histogram(
        self,
        values: Any,
        *,
        bins: int = 50,
        range: tuple[float, float] | None = None,
        color: Any = "#9ab4d2",
        curve: Any = "#b44600",
    ) -> Plot:
        """Adds the histogram of the finite values with the normal curve of their mean and RMS.

        >>> fig = histogram(numpy.random.default_rng(1).normal(size=1000), bins=30)
        """
        import numpy as np

        if isinstance(bins, bool) or not hasattr(bins, "__index__"):
            raise TypeError("bins has to be a whole number")
        if not 1 <= bins <= 100000:
            raise ValueError(f"bins has to be from 1 to 100000, not {bins}")
        numbers = self._x.numbers(np.ravel(values), "values")
        numbers = numbers[np.isfinite(numbers)]
        if not numbers.size:
            raise ValueError("there is no finite value")
        try:
            low, high = (numbers.min(), numbers.max()) if range is None else range
            low, high = float(low), float(high)
        except (TypeError, ValueError):
            raise TypeError("range has to be (low, high)") from None
        if not math.isfinite(high - low) or low > high or (range is not None and low == high):
            raise ValueError("range has to be two numbers, the first below the second")
        if low == high:
            low, high = low - 0.5, high + 0.5
        heights, _ = np.histogram(numbers, int(bins), (low, high))
        sample = float(numbers.mean()), float(numbers.var())
        self._add(
            [("add_histogram", (heights.astype(float), low, high, *sample, _rgb(color), _rgb(curve)))]
        )
        return self

    def __reduce__(self) -> tuple[Any, ...]:
        state = {key: value for key, value in self.__dict__.items() if key != "_drawing"}
        return _again, (PICKLE_FORMAT, state)


def _again(format: int, state: dict[str, Any]) -> Plot:
    """The plot that was pickled."""
    if format != PICKLE_FORMAT:
        raise ValueError(
            f"the plot was pickled by another version of pavane (format {format}, here "
            f"{PICKLE_FORMAT}): make it again"
        )
    made = Plot.__new__(Plot)
    made.__dict__.update(state)
    made._drawing = made._made()
    return made


def _choice(known: dict[str, int], name: Any, what: str) -> int:
    if not isinstance(name, str) or name not in known:
        raise ValueError(f"{what} knows {' '.join(known)}, not '{name}'")
    return known[name]


def _width(width: Any) -> int:
    if isinstance(width, bool) or not hasattr(width, "__index__") or not 0 <= int(width) <= 1000:
        raise ValueError("width has to be a whole number from 0 to 1000")
    return int(width)


def _errors(axis: _Axis, errors: Any, count: int) -> Any:
    if errors is None:
        return None
    import numpy as np

    if hasattr(errors, "jd1") and hasattr(errors, "to_value"):
        errors = errors.to_value("sec")
    elif getattr(errors, "unit", None) is not None:
        unit = axis.unit if axis.unit is not None else "s" if axis.scale == "time" else None
        if unit is None:
            raise TypeError(f"{axis.name}_errors has a unit and {axis.name} has none")
        errors = errors.to_value(unit)
    array = np.asarray(errors)
    if array.dtype.kind == "m":
        array = array / np.timedelta64(1, "s")
    if array.dtype.kind not in "fiu" or array.ndim > 1:
        raise ValueError(f"{axis.name}_errors has to be a number or a row of numbers")
    if (array < 0).any():
        raise ValueError(f"{axis.name}_errors cannot be below 0")
    return np.ascontiguousarray(np.broadcast_to(array, count) if array.ndim == 0 else array, dtype=float)


def plot(
    x: Any,
    y: Any = None,
    *,
    style: str = "-",
    width: int = 1,
    color: Any = None,
    label: str = "",
    x_scale: str | None = None,
    y_scale: str | None = None,
    x_range: Any = None,
    y_range: Any = None,
    x_title: str | None = None,
    y_title: str | None = None,
    title: str | None = None,
    grid: bool = False,
    size: tuple[int, int] = (900, 600),
    ratio: int = 1,
) -> Plot:
    """A curve through (x, y), or through y at 0, 1, 2 ... when `y` is left out; of a `y` of two
    axes each column is a curve. More are added by `Plot.plot` and `Plot.points`.

    style    "-", "--", ":", "-." or "-.."; width in twelfths of the font's height, 0 the thinnest
    color    "#rrggbb", or red, green and blue from 0 to 1
    label    the name in the legend
    x_scale, y_scale  "linear", "reversed", "log"; x also "time", in seconds or of datetime64 and
             astropy Time, which count from the midnight before the first
    x_title  "[%sHz]" takes up a prefix: "[GHz]"; the unit of a Quantity when none is given
    title    the line above the plot

    Values that are not finite are gaps.

    >>> fig = plot([1.4e9, 4.8e9, 15e9], [0.9, 0.5, 0.27], x_scale="log", y_scale="log")
    """
    return Plot(
        x_scale=x_scale, y_scale=y_scale, x_range=x_range, y_range=y_range, x_title=x_title,
        y_title=y_title, title=title, grid=grid, size=size, ratio=ratio,
    ).plot(x, y, style=style, width=width, color=color, label=label)


def points(
    x: Any,
    y: Any = None,
    *,
    marker: str = "+",
    width: int = 1,
    color: Any = None,
    label: str = "",
    x_errors: Any = None,
    y_errors: Any = None,
    x_scale: str | None = None,
    y_scale: str | None = None,
    x_range: Any = None,
    y_range: Any = None,
    x_title: str | None = None,
    y_title: str | None = None,
    title: str | None = None,
    grid: bool = False,
    size: tuple[int, int] = (900, 600),
    ratio: int = 1,
) -> Plot:
    """Points at (x, y), with error bars where errors are given: one for all, or one for each.

    marker   ".", "+", "x", "|" or "*"; the other options are those of `plot`

    >>> fig = points([1.0, 2.0, 3.0], [2.1, 3.9, 6.2], y_errors=[0.2, 0.2, 0.3])
    """
    return Plot(
        x_scale=x_scale, y_scale=y_scale, x_range=x_range, y_range=y_range, x_title=x_title,
        y_title=y_title, title=title, grid=grid, size=size, ratio=ratio,
    ).points(
        x, y, marker=marker, width=width, color=color, label=label, x_errors=x_errors,
        y_errors=y_errors,
    )


def histogram(
    values: Any,
    *,
    bins: int = 50,
    range: tuple[float, float] | None = None,
    color: Any = "#9ab4d2",
    curve: Any = "#b44600",
    x_title: str | None = None,
    y_title: str | None = None,
    title: str | None = None,
    grid: bool = False,
    size: tuple[int, int] = (900, 600),
    ratio: int = 1,
) -> Plot:
    """The histogram of the finite values, with the normal curve of their mean and RMS; the line
    above it says both.

    >>> fig = histogram(numpy.random.default_rng(1).normal(size=1000), bins=30)
    """
    return Plot(
        x_title=x_title, y_title="Number~" if y_title is None else y_title, title=title, grid=grid, size=size, ratio=ratio
    ).histogram(values, bins=bins, range=range, color=color, curve=curve)
