"""Way for programs with windows: the application object that figures need is let go of before PyQt6 or
PySide6 makes one. Both take any that they find for their own, which has no windows."""
from __future__ import annotations

import sys

from . import _core

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any

_TOOLKITS = ("PyQt6.QtCore", "PySide6.QtCore")


class _Finder:
    """Finds no module; hears of the first import of a toolkit."""

    @staticmethod
    def find_spec(name: str, path: Any = None, target: Any = None) -> None:
        if name in _TOOLKITS:
            _core.release_idle()


_state = {"listens": False, "has_host": False}


def _give_way() -> None:
    """After something was drawn."""
    if _state["has_host"]:
        return
    toolkits = [sys.modules[name] for name in _TOOLKITS if name in sys.modules]
    if not toolkits:
        if not _state["listens"]:
            _state["listens"] = True
            sys.meta_path.insert(0, _Finder)
        return
    if _core.release_idle():
        # what is left now is the program's own
        _state["has_host"] = any(
            getattr(toolkit, "QCoreApplication").instance() is not None for toolkit in toolkits
        )
