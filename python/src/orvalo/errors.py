"""What reading a file raises."""
from __future__ import annotations

import os
import re
import stat
from typing import Any, Dict, NoReturn, Optional, Tuple

from orvalo import _orvalo
from orvalo._excerpt import excerpt

_OUT_OF_MEMORY = "OutOfMemory"
_UNREADABLE = {
    "ErrorOpeningInputFile",
    "ErrorReadingInputFile",
    "CannotResolvePath",
    "ErrorOpeningResultsFile",
    "ErrorReadingResultsFile",
}


class ReadError(ValueError):
    """What is wrong with a file, and where. `str` of it shows the line of the file with a caret below the place.

    Attributes
    ----------
    code : int
        The number of the message in the catalogue of the library, which never changes.
    name : str
        The name of the message in that catalogue, such as ``MaterialNotDefined``.
    message : str
        What is wrong, without the place.
    path : str
        The file that it is in, which may be one that the file that was read includes.
    line, column : int or None
        From 1, in bytes.
    offset : int or None
        Bytes from the start of the file.
    row : int or None
        From 1, where it is in a row of a CUBES, DAMPING or SET section, or of results.
    """

    def __init__(
        self,
        message: str,
        *,
        code: int = 0,
        name: str = "",
        path: Optional[str] = None,
        line: Optional[int] = None,
        column: Optional[int] = None,
        offset: Optional[int] = None,
        row: Optional[int] = None,
        source: Optional[str] = None,
    ) -> None:
        super().__init__(message)
        self.message = message
        self.code = code
        self.name = name
        self.path = path
        self.line = line
        self.column = column
        self.offset = offset
        self.row = row
        if source is None and path is not None and column is not None and offset is not None:
            source = excerpt(path, line or 1, column, offset)
        self._source = source

    def __str__(self) -> str:
        place = ":".join(str(part) for part in (self.path, self.line, self.column) if part is not None)
        text = f"{place}: {self.message}" if place else self.message
        if self.code:
            text += f" [{self.code}]"
        return f"{text}\n{self._source}" if self._source else text

    def __reduce__(self) -> Tuple[Any, ...]:
        fields = ("code", "name", "path", "line", "column", "offset", "row")
        named = {field: getattr(self, field) for field in fields}
        return _rebuild, (type(self), self.message, {**named, "source": self._source or ""})


class IncludeError(ReadError, OSError):
    """A file that another one includes cannot be opened or read. Its place is that of the `include`."""


class WriteError(ValueError):
    """Why something was not written: a value that no file can hold, or a path where none can be put."""


def _rebuild(kind: Any, message: str, named: Dict[str, Any]) -> ReadError:
    error: ReadError = kind(message, **named)
    return error


def os_error(path: str) -> Optional[OSError]:
    """Why the system does not let a file be read; None where it does, or where asking would wait."""
    try:
        mode = os.stat(path).st_mode
        if stat.S_ISREG(mode) or stat.S_ISDIR(mode):
            with open(path, "rb") as file:
                file.read(1)
    except OSError as error:
        return error
    return None


def _place_in_results(path: str, code: int) -> Tuple[Any, int]:
    """Place and row of the first error in a file of results, if it is that one: their reader tells the line at best."""
    if os.path.isfile(path):
        for found in _orvalo.check(os.fsencode(path), True, False, True, 1, 0, None):
            if found["code"] == code:
                return found["place"], found["row"]
    return None, 0


def raise_failure(failure: Tuple[Any, ...], path: str) -> NoReturn:
    """Raises what the library says of a file that was to be read: (code, name, message, place, row)."""
    code, name, message, place, row = failure
    if name == _OUT_OF_MEMORY:
        raise MemoryError(f"{path}: {message}")
    kind = ReadError
    if name in _UNREADABLE:
        error = os_error(path)
        if error is not None:
            raise error
        if place is not None:
            kind = IncludeError
    if place is None:
        place, row = _place_in_results(path, code)
    where, line, column, offset = place or (path, None, None, None)
    raised = kind(message, code=code, name=name, path=where, line=line, column=column, offset=offset, row=row or None)
    if isinstance(raised, IncludeError):
        named = re.search("'(.*)' input file", message)
        reason = os_error(named.group(1)) if named else None
        raised.errno = reason.errno if reason and reason.errno else 0
    raise raised
