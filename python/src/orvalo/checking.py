"""Everything that is wrong with a file."""
from __future__ import annotations

import os
from dataclasses import dataclass
from typing import Any, List, Optional, Tuple

from orvalo import _orvalo
from orvalo._arguments import Path, checked_threads, system_path, whole_number
from orvalo._excerpt import excerpt
from orvalo.errors import os_error, raise_failure
from orvalo.progress import Progress, progress_callback


@dataclass(frozen=True)
class Place:
    """A place in a file: line and column from 1, the column and the offset in bytes."""

    path: str
    line: int
    column: int
    offset: int

    def __str__(self) -> str:
        return f"{self.path}:{self.line}:{self.column}"


@dataclass(frozen=True)
class Note:
    """What else to look at: `length` bytes from `place` on, which is None where it is about no file."""

    message: str
    place: Optional[Place]
    length: int


@dataclass(frozen=True)
class Fix:
    """A way to mend a file: `replacement` for `length` bytes at `place`."""

    place: Place
    length: int
    replacement: str


@dataclass(frozen=True)
class Diagnostic:
    """One thing that is wrong with a file, or likely not meant.

    Attributes
    ----------
    severity : str
        ``"error"`` where the file cannot be read for it, else ``"warning"``.
    code, name : int, str
        The message of the catalogue that a `ReadError` has for it; 0 and "" for what only the check knows.
    rule : str
        What kind of thing it is, such as ``undefined-material``.
    message : str
        What is wrong, without the place.
    place : Place or None
        Where; None where it is about no file that could be read.
    length : int
        Bytes that it is about, from `place` on.
    row : int or None
        From 1, where it is in the rows of a section.
    expected : tuple of str
        The words that would have been right there.
    notes, fixes : tuple of Note, tuple of Fix
        What explains it, and what would mend it, each by itself.
    included_from : tuple of Place
        For an included file the places that include it, the innermost first.
    """

    severity: str
    code: int
    name: str
    rule: str
    message: str
    place: Optional[Place]
    length: int
    row: Optional[int]
    expected: Tuple[str, ...]
    notes: Tuple[Note, ...]
    fixes: Tuple[Fix, ...]
    included_from: Tuple[Place, ...]

    def __str__(self) -> str:
        said = f"{self.severity}: {self.message} [{self.code or self.rule}]"
        if self.place is None:
            return said
        source = excerpt(self.place.path, self.place.line, self.place.column, self.place.offset)
        return f"{self.place}: {said}" + (f"\n{source}" if source else "")


def check(
    path: Path,
    *,
    warnings: bool = True,
    first_only: bool = False,
    per_section: int = 20,
    threads: int = 0,
    progress: Progress = None,
) -> List[Diagnostic]:
    """Everything that is wrong with a model file and the files that it includes, or with a results file.

    Parameters
    ----------
    path : str, bytes or os.PathLike
        The file; what kind it is, its content tells.
    warnings : bool
        Whether what is read all the same, but likely not meant, is told too.
    first_only : bool
        Whether to end at the first error, as reading does.
    per_section : int
        How many diagnostics of one rule are given for the rows of one section.
    threads, progress
        As for `read_model`.

    Returns
    -------
    list of Diagnostic
        In the order of the file; empty for a good one.

    Raises
    ------
    OSError
        Where the file cannot be opened, such as FileNotFoundError.
    """
    name, data = system_path(path)
    limit = whole_number("per_section", per_section)
    if limit < 0:
        raise ValueError(f"per_section is at least 0, not {limit}.")
    unreadable = os_error(name)
    if unreadable is not None:
        raise unreadable
    with progress_callback(progress, os.path.basename(name)) as callback:
        try:
            records = _orvalo.check(
                data, None, bool(warnings), bool(first_only), min(limit, 2**63), checked_threads(threads), callback
            )
        except _orvalo.Failure as failure:
            raised = failure
        else:
            return [_diagnostic(**record) for record in records]
    raise_failure(raised.args, name)


def _place(place: Any) -> Any:
    return None if place is None else Place(*place)


def _diagnostic(
    place: Any, row: int, expected: Any, notes: Any, fixes: Any, included_from: Any, **rest: Any
) -> Diagnostic:
    return Diagnostic(
        place=_place(place),
        row=row or None,
        expected=tuple(expected),
        notes=tuple(Note(**{**note, "place": _place(note["place"])}) for note in notes),
        fixes=tuple(Fix(**{**fix, "place": _place(fix["place"])}) for fix in fixes),
        included_from=tuple(map(_place, included_from)),
        **rest,
    )
