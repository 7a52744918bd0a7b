"""The line of a file around a place."""
from __future__ import annotations

import os
import stat
from typing import Optional

_BEFORE = 60
_AFTER = 40


def excerpt(path: str, line: int, column: int, offset: int) -> Optional[str]:
    """The line with a caret below the place, or its part around the place if it is long; None where the file cannot be
    read again, or is no text. Nothing in it steers a terminal."""
    before = min(column - 1, offset, _BEFORE)
    try:
        if not stat.S_ISREG(os.stat(path).st_mode):
            return None
        with open(path, "rb") as file:
            file.seek(offset - before)
            data = file.read(before + _AFTER)
    except OSError:
        return None
    if b"\0" in data:
        return None
    lead = _shown(data[:before])
    rest = data[before:].split(b"\n")[0].rstrip(b"\r")
    if before < column - 1:
        lead = "..." + lead
    label = f"{line} | "
    return f"{label}{lead}{_shown(rest)}\n{' ' * (len(label) - 2)}| {' ' * len(lead)}^"


def _shown(data: bytes) -> str:
    text = data.decode("utf-8", "replace").replace("\t", " ")
    return "".join(c if c.isprintable() else "\N{REPLACEMENT CHARACTER}" for c in text)
