"""What every figure can do: be saved, shown in a notebook, asked for pixels and places."""
from __future__ import annotations

import os
import warnings

from . import _core
from ._hosts import _give_way

# the module typing takes an interpreter as long as half a figure
TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, BinaryIO

    import numpy as np
    import numpy.typing as npt

_FORMATS = ("png", "pdf", "svg")
_MOST_RATIO = 8
_LEAST_SIZE, _GREATEST_SIZE = 64, 16384


def _checked_ratio(ratio: int) -> int:
    if isinstance(ratio, bool) or not isinstance(ratio, int):
        raise TypeError(f"ratio has to be a whole number, not {type(ratio).__name__}")
    if not 1 <= ratio <= _MOST_RATIO:
        raise ValueError(f"ratio has to be from 1 to {_MOST_RATIO}, not {ratio}")
    return ratio


def _checked_size(size: tuple[int, int]) -> tuple[int, int]:
    try:
        width, height = size
        width, height = width.__index__(), height.__index__()
    except (AttributeError, TypeError, ValueError):
        raise TypeError("size has to be (width, height) in pixels") from None
    for side in (width, height):
        if not _LEAST_SIZE <= side <= _GREATEST_SIZE:
            raise ValueError(f"size allows {_LEAST_SIZE} to {_GREATEST_SIZE} pixels a side, not {side}")
    return width, height


def _file(path: str | os.PathLike[str]) -> bytes:
    """The name of a file for the core."""
    name = os.fsencode(path)
    if b"\0" in name:  # which would end the name
        raise ValueError("a file's name has no null character")
    return name


class Figure:
    """A still picture of a map, as `draw` makes it, or of a plot (`Plot`).

    It draws when it is first saved, shown or asked for its pixels, and reads the cells where they
    are: call `refresh` after changing them.

    >>> fig = draw(numpy.random.default_rng(1).normal(size=(64, 64)))
    >>> fig.save("noise.png")
    >>> fig.size
    (1000, 900)
    """

    def __init__(self, drawing: _core.Drawing, ratio: int = 1) -> None:
        """Made by `draw`, `plot`, `points` and `histogram`.

        >>> isinstance(plot([1.0, 2.0]), Figure)
        True
        """
        self._drawing = drawing
        self._ratio = _checked_ratio(ratio)
        self._told: set[str] = set()

    @property
    def size(self) -> tuple[int, int]:
        """Width and height in pixels of 96 per inch.

        >>> plot([1.0, 2.0], size=(300, 200)).size
        (300, 200)
        """
        return self._drawing.width, self._drawing.height

    @property
    def ratio(self) -> int:
        """Pixels of the screen for each of the figure's, in notebooks and PNG files; from 1 to 8.

        >>> plot([1.0, 2.0], ratio=2).ratio
        2
        """
        return self._ratio

    @ratio.setter
    def ratio(self, ratio: int) -> None:
        self._ratio = _checked_ratio(ratio)

    def save(
        self,
        target: str | os.PathLike[str] | BinaryIO,
        *,
        format: str | None = None,
        transparent: bool = False,
    ) -> None:
        """Writes the figure as PNG, PDF or SVG: by the ending of the name unless `format` says it.

        A file appears whole or not at all. An open binary file gets a PNG unless `format` says
        otherwise. With `transparent` what is white behind the figure is not painted; a PNG needs a
        `ratio` of 1 for it. OSError, with the file's name, tells what cannot be written.

        >>> draw("jet.fits").save("jet.pdf")
        """
        if isinstance(target, (str, os.PathLike)):
            kind = _format_of(os.fspath(target), format)
            self._drawing.save(_file(target), kind, self._ratio, bool(transparent))
        elif hasattr(target, "write"):
            kind = _format_of("", format or "png")
            target.write(self._drawing.file_bytes(kind, self._ratio, bool(transparent), False))
        else:
            raise TypeError(f"save wants a name or an open file, not {type(target).__name__}")
        self._tell_notes()

    def to_bytes(self, format: str = "png", *, transparent: bool = False) -> bytes:
        """The file that `save` would write, as bytes.

        >>> plot([1.0, 2.0]).to_bytes()[1:4]
        b'PNG'
        """
        whole = self._drawing.file_bytes(_format_of("", format), self._ratio, bool(transparent), False)
        self._tell_notes()
        return whole

    @property
    def pixels(self) -> npt.NDArray[np.uint8]:
        """Rows, columns and red, green, blue of the picture at ratio 1: a view, which is not
        copied, cannot be written to and keeps the picture.

        >>> plot([1.0, 2.0], size=(300, 200)).pixels.shape
        (200, 300, 3)
        """
        pixels = self._drawing.pixels(1)
        self._tell_notes()
        return pixels

    def to_pixel(self, x: npt.ArrayLike, y: npt.ArrayLike) -> tuple[Any, Any]:
        """Where values of the axes lie in `pixels`: column and row, the centre of a pixel being a
        whole number. Numbers or arrays.

        >>> fig = plot([0.0, 1.0], [0.0, 1.0])
        >>> column, row = fig.to_pixel(0.5, 0.5)
        """
        return self._convert(self._drawing.to_pixels, x, y)

    def to_world(self, column: npt.ArrayLike, row: npt.ArrayLike) -> tuple[Any, Any]:
        """The values of the axes at a place in `pixels`: `to_pixel` the other way.

        >>> fig = plot([0.0, 1.0], [0.0, 1.0])
        >>> x, y = fig.to_world(*fig.to_pixel(0.5, 0.25))
        """
        return self._convert(self._drawing.to_values, column, row)

    @staticmethod
    def _convert(conversion: Any, x: npt.ArrayLike, y: npt.ArrayLike) -> tuple[Any, Any]:
        import numpy as np

        for given in (x, y):
            if getattr(given, "unit", None) is not None:
                raise TypeError("the axes count no units: numbers are wanted, not a Quantity")
        all_x, all_y = np.broadcast_arrays(np.asarray(x, float), np.asarray(y, float))
        to_x, to_y = conversion(all_x.ravel(), all_y.ravel())
        _give_way()
        if all_x.ndim == 0:
            return float(to_x[0]), float(to_y[0])
        return to_x.reshape(all_x.shape), to_y.reshape(all_x.shape)

    def _tell_notes(self) -> None:
        _give_way()
        for note in self._drawing.notes():
            if note not in self._told:
                self._told.add(note)
                warnings.warn(note, _core.PavaneWarning, stacklevel=3)

    def _repr_png_(self) -> bytes:
        """The figure for a notebook, as PNG."""
        whole = self._drawing.file_bytes("png", self._ratio, False, True)
        self._tell_notes()
        return whole

    def _repr_svg_(self) -> str | None:
        """The figure for a notebook, as SVG; None for a map of so many cells that it would swell
        the notebook."""
        if not self._drawing.is_small:
            return None
        whole = self.to_bytes("svg").decode()
        return whole[whole.index("<svg") :]  # inside another document no declaration stands

    def _repr_mimebundle_(
        self, include: Any = None, exclude: Any = None
    ) -> tuple[dict[str, Any], dict[str, Any]]:
        """The figure for a notebook: PNG at `ratio`, with the size to show it at."""
        width, height = self.size
        data: dict[str, Any] = {"text/plain": repr(self)}
        metadata: dict[str, Any] = {}
        if (not include or "image/png" in include) and "image/png" not in (exclude or ()):
            data["image/png"] = self._repr_png_()
            metadata["image/png"] = {"width": width, "height": height}
        return data, metadata

    def __repr__(self) -> str:
        width, height = self.size
        return f"<pavane.{type(self).__name__} of {width} x {height} pixels>"


def _format_of(path: str, format: str | None) -> str:
    ending = format if format is not None else os.path.splitext(path)[1][1:]
    if not isinstance(ending, str) or ending.lower() not in _FORMATS:
        raise ValueError(f"the ending of a figure is png, pdf or svg, not '{ending}'")
    return ending.lower()
