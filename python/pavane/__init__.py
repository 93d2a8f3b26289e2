"""Maps and plots of radio astronomy, drawn as the programs of pavane draw them.

    import pavane
    fig = pavane.draw("jet.fits", levels="peak:-1,1,2,4,8", scale="sqrt")
    fig.save("jet.pdf")

Importing the module starts nothing; fonts are looked for when the first figure is drawn. See the
pages below docs/python.
"""
from __future__ import annotations

from ._core import FormatError, PavaneWarning, palette_names, release
from ._draw import draw
from ._figure import Figure
from ._many import Drawn, draw_many
from ._plot import Plot, histogram, plot, points

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any

    from ._areas import Area, Areas
    from ._components import Components
    from ._statistics import Statistics, statistics

__all__ = [
    "Area",
    "Areas",
    "Components",
    "Drawn",
    "Figure",
    "FormatError",
    "PavaneWarning",
    "Plot",
    "Statistics",
    "draw",
    "draw_many",
    "histogram",
    "palette_names",
    "plot",
    "points",
    "release",
    "statistics",
]


# what takes an interpreter longer to load than a figure to draw
_LATER = {
    "Area": "_areas",
    "Areas": "_areas",
    "Components": "_components",
    "Statistics": "_statistics",
    "statistics": "_statistics",
}


def __getattr__(name: str) -> Any:
    if name not in _LATER:
        raise AttributeError(f"module 'pavane' has no attribute '{name}'")
    from importlib import import_module

    found = globals()[name] = getattr(import_module(f".{_LATER[name]}", __name__), name)
    return found


def __dir__() -> list[str]:
    return sorted({*globals(), *__all__})
