"""Packages that only some of this one needs."""
from __future__ import annotations

import importlib
from typing import Any


def needed(name: str, purpose: str) -> Any:
    """The module of that name, or an ImportError that says what for it is needed."""
    try:
        return importlib.import_module(name)
    except ImportError as error:
        package = name.split(".")[0]
        raise ImportError(f"{purpose} needs {package}, which is not installed: pip install {package}") from error
