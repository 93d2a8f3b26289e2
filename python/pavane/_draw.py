"""`draw`: a figure of a map, from a file, an HDU or an array."""
from __future__ import annotations

import builtins
import math
import os
from collections.abc import Mapping

from . import _core
from ._figure import Figure, _checked_size, _file

# the module typing takes an interpreter as long as half a figure
TYPE_CHECKING = False
if TYPE_CHECKING:
    from collections.abc import Callable, Sequence
    from typing import Any, Literal

    import numpy.typing as npt

    from ._areas import Area, Areas
    from ._components import Components

    File = str | os.PathLike[str]
    Color = str | Sequence[float]
    Palette = str | Sequence[Color] | Callable[[float], Any]  # the last a colormap of matplotlib

PICKLE_FORMAT = 2  # outlines of areas had no colour in 1
_COLOURS = 226  # of a map: those of a palette


class MapFigure(Figure):
    """The figure of a map."""

    _drawing: _core.MapDrawing

    def __init__(self, source: _core.Map, options: dict[str, Any], ratio: int) -> None:
        width, height = options["size"]
        drawing = _core.MapDrawing(
            source,
            width,
            height,
            options["levels"],
            options["scale"],
            options["range"],
            options["palette"],
            options["contrast"],
            options["free_aspect"],
            options["title"],
            options.get("sky_grid", "none"),
        )
        if options["areas"] is not None:
            drawing.set_areas(options["areas"])
        if options["model"] is not None:
            drawing.set_model(options["model"])
        super().__init__(drawing, ratio)
        self._source = source
        self._options = options

    @property
    def array(self) -> npt.NDArray[Any]:
        """The cells that are drawn: the array that was given, or a view of those that were read.

        >>> draw("jet.fits").array.shape
        (256, 256)
        """
        whole: npt.NDArray[Any] = self._source.array
        return whole

    def refresh(self) -> None:
        """Finds range, noise and contours anew after cells of the array were changed in place.

        >>> cells = numpy.zeros((64, 64))
        >>> fig = draw(cells)
        >>> cells[32, 32] = 1
        >>> fig.refresh()
        """
        self._drawing.refresh()

    def to_pixel(self, x: npt.ArrayLike, y: npt.ArrayLike, *, offsets: bool = False) -> tuple[Any, Any]:
        """Where positions (degrees, or astropy angles, in the frame of the map) lie in `pixels`:
        column and row. NaN where the map does not show them. With `offsets`, and for maps that are
        not on the sky, values of the axes.

        >>> column, row = draw("jet.fits").to_pixel(187.7059, 12.3911)
        """
        if offsets or not self._drawing.on_sky:
            return super().to_pixel(x, y)
        return self._convert(self._drawing.world_to_pixels, _in_unit(x, "deg"), _in_unit(y, "deg"))

    def to_world(
        self, column: npt.ArrayLike, row: npt.ArrayLike, *, offsets: bool = False
    ) -> tuple[Any, Any]:
        """Right ascension and declination, or longitude and latitude (degrees), of a place in
        `pixels`; with `offsets`, and for maps that are not on the sky, the values of the axes.

        >>> longitude, latitude = draw("jet.fits").to_world(400, 400)
        """
        if offsets or not self._drawing.on_sky:
            return super().to_world(column, row)
        return self._convert(self._drawing.pixels_to_world, column, row)

    def __reduce__(self) -> tuple[Any, ...]:
        return _again, (PICKLE_FORMAT, self._source.state(), self._options, self._ratio)


def _again(format: int, state: tuple[Any, ...], options: dict[str, Any], ratio: int) -> MapFigure:
    """The figure that was pickled."""
    if format != PICKLE_FORMAT:
        raise ValueError(
            f"the figure was pickled by another version of pavane (format {format}, here "
            f"{PICKLE_FORMAT}): draw it again"
        )
    return MapFigure(_core.Map.of_state(state), options, ratio)


def draw(
    source: Any,
    *,
    plane: int | None = None,
    range: tuple[float, float] | str | None = None,
    palette: Palette | None = None,
    size: tuple[int, int] = (1000, 900),
    levels: str | Sequence[float] | npt.NDArray[Any] | None = None,
    scale: Literal["linear", "sqrt", "log", "equal"] = "linear",
    contrast: tuple[float, float] | tuple[float, float, float] | None = None,
    aspect: Literal["equal", "free"] = "equal",
    areas: File | Areas | Area | Sequence[Area] | None = None,
    model: File | Components | npt.ArrayLike | None = None,
    title: str | None = None,
    sky_grid: str | None = None,
    wcs: Any = None,
    header: Any = None,
    mask: npt.ArrayLike | None = None,
    ratio: int = 1,
) -> MapFigure:
    """A figure of a map, as `pavane-view --batch` draws it.

    source    a FITS file, an astropy HDU or HDU list, or an array of two axes, rows and columns;
              an array is read where it is and not copied: floats, doubles and whole numbers in
              either byte order, any strides, masked arrays, memory maps
    plane     which plane of a cube, from 0 over all further axes; of a single plane with the
              header of its cube, which one it is
    range     the values of the first and the last colour; "p:0.5,99.5" in per cent of the cells
    palette   a name (`palette_names`), a list of colours ("#rrggbb", or red, green and blue from 0
              to 1) or a matplotlib colormap
    size      in pixels of 96 per inch, 64 to 16384 a side
    levels    contours: "peak:-1,1,2,4,..." (per cent of the peak), "sigma:-3,3,6" (multiples of
              the noise), "abs:0.01,0.1" or a list of values of the map; "none"
    scale     "linear", "sqrt", "log" or "equal" (histogram-equalised)
    contrast  (contrast, bias) or (contrast, bias, gamma) of the colours
    aspect    "equal": square cells; "free": they fill the size
    areas     a file of areas, `Areas`, or a list of `Area`, drawn over the map
    model     a file of components, `Components` or a table of them, drawn over the map
    title     the line above the map, instead of object, frequency, peak and noise; "" for none
    sky_grid  "lines" or "ticks" of longitude and latitude in place of offsets; behind commas a
              frame ("galactic", "ICRS", "FK5" ...) and "sexagesimal", "degrees" or "offsets"
    wcs       of an array: an astropy WCS; without it and a header axes count pixels from 1, or
    header    an astropy Header, a mapping of keywords, or the text of FITS cards
    mask      of an array: non-zero where a cell is blank
    ratio     pixels of the screen for each of the figure's

    ValueError and TypeError tell what cannot be drawn, OSError a file that cannot be read,
    FormatError one that holds no map. What a reader should know comes as PavaneWarning.

    >>> fig = draw("jet.fits", levels="peak:-1,1,2,4,8", scale="sqrt")
    >>> fig.save("jet.pdf")
    """
    if aspect not in ("equal", "free"):
        raise ValueError(f"aspect knows equal and free, not '{aspect}'")
    if not isinstance(scale, str):
        raise TypeError("scale has to be linear, sqrt, log or equal")
    options = {
        "size": _checked_size(size),
        "levels": _levels(levels),
        "scale": scale,
        "range": _range(range),
        "palette": _palette(palette),
        "contrast": _contrast(contrast),
        "free_aspect": aspect == "free",
        "title": None if title is None else _text(title, "title"),
        "sky_grid": _text(sky_grid, "sky_grid") or "none",
        "areas": None,
        "model": None,
    }
    content = _map_of(source, plane, wcs, header, mask)
    if areas is not None:
        options["areas"] = _outlines(areas, content)
    if model is not None:
        options["model"] = _model(model)
    return MapFigure(content, options, ratio)


def _in_unit(values: Any, unit: str) -> Any:
    """A Quantity as numbers of the unit; others as they are."""
    if getattr(values, "unit", None) is not None and hasattr(values, "to_value"):
        return values.to_value(unit)
    return values


def _text(text: Any, what: str) -> str:
    """A text that can be drawn; "" for None."""
    if text is None:
        return ""
    if not isinstance(text, str):
        raise TypeError(f"{what} has to be a text, not {type(text).__name__}")
    try:
        text.encode()
    except UnicodeEncodeError:
        raise ValueError(f"{what} has characters that are none") from None
    return text


def _levels(levels: Any) -> Any:
    if levels is None:
        return None
    if isinstance(levels, str):
        return _text(levels, "levels")
    if isinstance(levels, (bytes, bytearray, Mapping)):  # whose items are numbers or texts too
        raise TypeError(f"levels have to be a text or numbers, not {type(levels).__name__}")
    try:
        return [float(level) for level in levels]
    except TypeError:
        raise TypeError("levels have to be a text or numbers") from None
    except ValueError:
        raise ValueError("levels have to be a text or numbers") from None


def _range(range: Any) -> tuple[float, float, bool] | None:
    if range is None:
        return None
    wanted = "range has to be (low, high), low below high, or 'p:LOW,HIGH' in per cent of the cells"
    percent = isinstance(range, str)
    if percent:
        if not range.startswith("p:"):
            raise ValueError(f"{wanted}, not '{range}'")
        range = range[2:].split(",")
    try:
        low, high = (float(end) for end in range)
    except TypeError:
        raise TypeError(wanted) from None
    except ValueError:
        raise ValueError(wanted) from None
    if not (math.isfinite(low) and math.isfinite(high)):
        raise ValueError(wanted)
    return low, high, percent


def _contrast(contrast: Any) -> tuple[float, float, float]:
    if contrast is None:
        return 1.0, 0.5, 1.0
    try:
        numbers = [float(number) for number in contrast]
    except TypeError:
        raise TypeError("contrast has to be (contrast, bias) or (contrast, bias, gamma)") from None
    if len(numbers) not in (2, 3):
        raise ValueError("contrast has to be (contrast, bias) or (contrast, bias, gamma)")
    return numbers[0], numbers[1], numbers[2] if len(numbers) == 3 else 1.0


def _rgb(color: Any) -> int:
    """0xRRGGBB."""
    if isinstance(color, str):
        text = color[1:] if color.startswith("#") else ""
        if len(text) == 3:
            text = "".join(2 * digit for digit in text)
        if len(text) == 6:
            try:
                return int(text, 16)
            except ValueError:
                pass
        raise ValueError(f"'{color}' is no colour: '#rrggbb' is wanted")
    try:
        parts = [float(part) for part in color]
    except (TypeError, ValueError):
        raise TypeError("a colour is '#rrggbb' or red, green and blue from 0 to 1") from None
    if len(parts) not in (3, 4) or not all(0 <= part <= 1 for part in parts):
        raise ValueError("a colour is '#rrggbb' or red, green and blue from 0 to 1")
    red, green, blue = (int(part * 255 + 0.5) for part in parts[:3])
    return red << 16 | green << 8 | blue


def _palette(palette: Any) -> str | list[int]:
    if palette is None:
        return ""
    if isinstance(palette, str):
        if not palette:
            raise ValueError("a palette's name is not empty")
        return _text(palette, "palette")
    if callable(palette):  # a colormap of matplotlib
        colors = [_rgb(palette((i + 0.5) / _COLOURS)) for i in builtins.range(_COLOURS)]
    elif isinstance(palette, (Mapping, bytes)) or not hasattr(palette, "__iter__"):
        raise TypeError("palette has to be a name, a list of colours or a colormap")
    else:
        colors = [_rgb(color) for color in palette]
    if not colors:
        raise ValueError("a palette has one colour or more")
    if len(colors) > _COLOURS:  # evenly chosen
        colors = [colors[(2 * i + 1) * len(colors) // (2 * _COLOURS)] for i in builtins.range(_COLOURS)]
    return colors


def _outlines(areas: Any, content: _core.Map) -> Any:
    from ._areas import _areas_of

    return _areas_of(areas, content)._outlines_on(content)


def _model(model: Any) -> Any:
    import numpy as np

    from ._components import Components

    if isinstance(model, (str, os.PathLike)):
        model = Components.read(model)
    elif not isinstance(model, Components):
        model = Components(model)
    return np.stack(model._columns(), axis=-1)


def _map_of(source: Any, plane: int | None, wcs: Any, header: Any, mask: Any) -> _core.Map:
    if plane is not None:
        if isinstance(plane, bool) or not hasattr(plane, "__index__"):
            raise TypeError("plane has to be a whole number")
        plane = int(plane)
        if plane < 0:
            raise ValueError(f"plane counts from 0, not {plane}")
    if isinstance(source, (str, os.PathLike)):
        if wcs is not None or header is not None or mask is not None:
            raise TypeError("wcs, header and mask go with an array; a file has its own")
        return _core.Map(_file(source), -1 if plane is None else plane)
    if isinstance(source, list) and source and hasattr(source[0], "header"):
        source = _first_image(source)
    blank = math.nan
    if hasattr(source, "header") and hasattr(source, "data"):
        header = source.header if header is None and wcs is None else header
        array = source.data
        if array is None or not hasattr(array, "dtype") or array.dtype.names is not None:
            raise ValueError("the HDU holds no image")
        if getattr(source, "_do_not_scale_image_data", False) and (
            source.header.get("BSCALE", 1) != 1 or source.header.get("BZERO", 0) != 0
        ):
            raise ValueError(
                "the cells of the HDU are not scaled by its BSCALE and BZERO: open it without "
                "do_not_scale_image_data"
            )
        if array.dtype.kind in "iu" and "BLANK" in header and "BSCALE" not in header:
            blank = float(header["BLANK"])
        mask = getattr(source, "mask", None) if mask is None else mask
    else:
        array = source
    if wcs is not None and header is not None:
        raise TypeError("wcs and header both say where the cells lie: give one of them")
    cards = _cards_of_wcs(wcs) if wcs is not None else _cards_of(header)
    unit = str(getattr(array, "unit", None) or "")
    if unit:  # that of the cells, whatever the header says
        cards = _without(cards, "BUNIT") + _card("BUNIT", unit)
    axes = getattr(array, "shape", ())
    of_cards = _axes_of(cards)
    if cards and len(axes) > 2 and of_cards is None:  # a WCS does not say how long its axes are
        lengths = {f"NAXIS{i}": int(length) for i, length in enumerate(reversed(axes), 1)}
        cards = _cards_of({"NAXIS": len(axes), **lengths}) + cards
        of_cards = len(axes)
    if len(axes) == 2 and of_cards is not None and of_cards > 2:
        array, own_mask, _ = _plane_of(array, None)  # the header is that of its cube
    else:
        array, own_mask, plane = _plane_of(array, plane)
    if mask is None:
        mask = own_mask
    elif own_mask is not None:
        mask = mask | own_mask
    if mask is not None:
        import numpy as np

        mask = np.asarray(mask)
        if mask.dtype.kind not in "bu" or mask.dtype.itemsize != 1:
            raise TypeError("a mask has to be of bool")
        if mask.ndim > 2:
            mask = _plane_of(mask, plane)[0]
        mask = mask.view(np.uint8)
    if of_cards is not None and of_cards < len(axes):
        plane = None  # the header is that of any plane
    return _core.Map.of_array(array, mask, cards, -1 if plane is None else plane, blank)


def _first_image(hdus: list[Any]) -> Any:
    """As a file is read: the first HDU with an image of two axes or more."""
    for hdu in hdus:
        if hdu.header.get("XTENSION", "IMAGE") in ("TABLE", "BINTABLE") and not hdu.header.get("ZIMAGE"):
            if not hasattr(hdu, "compressed_data"):
                continue
        if hdu.header.get("NAXIS", 0) >= 2 and hdu.data is not None:
            return hdu
    raise ValueError("no HDU holds an image of two axes")


def _plane_of(array: Any, plane: int | None) -> tuple[Any, Any, int | None]:
    """The plane of an array of two axes or more, its mask, and which it is."""
    if isinstance(array, (list, tuple)):
        raise TypeError("a map has to be an array, not a list")
    if not hasattr(array, "ndim") and not isinstance(array, (bytes, bytearray, memoryview)):
        if hasattr(array, "__array__"):
            import numpy as np

            array = np.asarray(array)
        else:
            return array, None, plane  # the core says what is wrong with it
    elif not hasattr(array, "__array_interface__") and hasattr(array, "__array__"):
        import numpy as np

        array = np.asarray(array)
    mask = None
    if hasattr(array, "mask") and hasattr(array, "filled"):
        import numpy as np

        mask = None if array.mask is np.ma.nomask else array.mask
        array = array.data
    if getattr(array, "ndim", 2) > 2:
        planes = math.prod(array.shape[:-2])
        if plane is None and planes != 1:
            raise ValueError(f"the array has {planes} planes: say which by plane=")
        if plane is not None and plane >= planes:
            raise ValueError(f"there is no plane {plane}: the array has {planes}")
        at = plane or 0
        index: tuple[int, ...] = ()
        for length in reversed(array.shape[:-2]):
            index = (at % length, *index)
            at //= length
        array = array[index]
        mask = None if mask is None else mask[index]
    elif plane:
        raise ValueError(f"there is no plane {plane}: the array has one")
    if getattr(getattr(array, "dtype", None), "kind", "") == "b":
        array = array.view("u1")
    return array, mask, plane


def _card(key: str, value: Any) -> str:
    if isinstance(value, bool):
        text = f"{'T' if value else 'F':>20}"
    elif isinstance(value, str):
        text = "'" + value.replace("'", "''").ljust(8) + "'"
    elif isinstance(value, (int, float)) or hasattr(value, "__float__"):
        number = value if isinstance(value, int) else float(value)
        if not math.isfinite(number):
            raise _core.FormatError(f"{key} is {number:g}, which no header of FITS has")
        text = f"{number!r:>20}".upper()
    else:
        raise TypeError(f"{key} has to be a number or a text, not {type(value).__name__}")
    card = f"{key.upper():8}= {text}"
    if len(card) > 80 or len(key) > 8 or not card.isascii():
        raise ValueError(f"{key} is no keyword and value of a FITS header")
    return card.ljust(80)


def _cards_of(header: Any) -> str:
    if header is None:
        return ""
    if isinstance(header, str):
        _text(header, "header")
        return header
    if hasattr(header, "tostring"):
        text: str = header.tostring(sep="", endcard=False, padding=False)
        return text
    if isinstance(header, Mapping):
        return "".join(
            _card(str(key), value)
            for key, value in header.items()
            if value is not None and key not in ("", "COMMENT", "HISTORY")
        )
    raise TypeError(f"header has to be a Header, a mapping or a text, not {type(header).__name__}")


def _lines(cards: str) -> list[str]:
    """Cards are a line each, or 80 characters."""
    return cards.splitlines() if "\n" in cards else [cards[i : i + 80] for i in builtins.range(0, len(cards), 80)]


def _without(cards: str, key: str) -> str:
    if key not in cards:
        return cards
    return "".join(line.ljust(80) for line in _lines(cards) if line[:8].rstrip() not in (key, "END"))


def _axes_of(cards: str) -> int | None:
    """How many axes the cards tell of."""
    for line in _lines(cards):
        if line[:9] == "NAXIS   =":
            try:
                return int(line[9:].split("/")[0])
            except ValueError:
                return None  # the reader of headers says what is wrong
    return None


def _cards_of_wcs(wcs: Any) -> str:
    wcs = getattr(wcs, "low_level_wcs", wcs)
    if not hasattr(wcs, "to_header"):
        raise TypeError(f"wcs has to be an astropy WCS, not {type(wcs).__name__}")
    if getattr(wcs, "naxis", 2) < 2:
        raise ValueError("wcs has one axis; a map has two")
    if getattr(wcs, "has_distortion", False):
        import warnings

        warnings.warn("the distortions of wcs are left out", _core.PavaneWarning, stacklevel=4)
    try:
        cards = _cards_of(wcs.to_header())
    except Exception as error:
        raise ValueError(f"wcs cannot be used: {error}") from error
    if not cards:
        raise ValueError("wcs says nothing of its axes")
    return cards
