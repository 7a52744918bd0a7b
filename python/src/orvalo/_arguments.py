"""Arguments that all readers take."""
from __future__ import annotations

import operator
import os
from typing import Any, Tuple, Union

Path = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]

Column = Union[int, str]


def system_path(path: Path) -> Tuple[str, bytes]:
    """The path as Python and as the library take it."""
    name = os.fspath(path)
    if not isinstance(name, (str, bytes)):
        raise TypeError(f"A path is a str, bytes or os.PathLike, not {type(path).__name__}.")
    data = os.fsencode(name)
    if not data:
        raise FileNotFoundError("The path is empty.")
    if b"\0" in data:
        raise ValueError("A path holds no null byte.")
    return os.fsdecode(name), data


def whole_number(name: str, value: Any) -> int:
    """The value as an int, unless it is no whole number."""
    try:
        return operator.index(value)
    except TypeError:
        raise TypeError(f"{name} is a whole number, not {type(value).__name__}.") from None


def checked_threads(threads: int) -> int:
    """How many threads may read."""
    number = whole_number("threads", threads)
    if not 0 <= number < 2**31:
        raise ValueError(f"threads is 0 or the number of threads, not {number}.")
    return number
