"""Maps and plots of radio astronomy, drawn as the programs of pavane draw them.

    import pavane
    fig = pavane.draw("jet.fits", levels="peak:-1,1,2,4,8", scale="sqrt")
    fig.save("jet.pdf")

Importing the module starts nothing; fonts are looked for when the first figure is drawn. See the
pages below docs/python.
"""
from typing import TYPE_CHECKING, Any

from ._areas import Area, Areas
from ._core import FormatError, PavaneWarning, palette_names, release
from ._draw import draw
from ._figure import Figure
from ._many import Drawn, draw_many
from ._plot import Plot, histogram, plot, points
from ._statistics import Statistics, statistics

if TYPE_CHECKING:
    from ._components import Components

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


def __getattr__(name: str) -> Any:
    if name == "Components":  # which brings numpy
        from ._components import Components

        return Components
    raise AttributeError(f"module 'pavane' has no attribute '{name}'")
