"""``xarray.open_dataset(path, engine="orvalo")``: results whose numbers are read when they are needed."""
from __future__ import annotations

import os
import threading
from collections import OrderedDict
from typing import Any, Iterable, NamedTuple, Optional, Tuple

import numpy as np
import xarray as xr
from xarray.backends import BackendArray, BackendEntrypoint
from xarray.core import indexing

from orvalo.results import Results, read_results

_KEPT_BYTES = 2**30


class _File(NamedTuple):
    """A file as it was when it was opened."""

    path: str
    size: int
    modified: int

    @classmethod
    def now(cls, path: str) -> _File:
        status = os.stat(path)
        return cls(path, status.st_size, status.st_mtime_ns)


class _Readers:
    """The results read last, so that the columns of a file are read together: as many as their files take a GiB."""

    def __init__(self) -> None:
        self._lock = threading.Lock()
        self._results: OrderedDict[_File, Results] = OrderedDict()
        # Who waits for one of these mostly waits for the same file.
        self._turns = [threading.Lock() for _ in range(64)]

    def get(self, file: _File) -> Results:
        with self._turns[hash(file) % len(self._turns)]:
            results = self._results.get(file)
            if results is None:
                results = read_results(file.path)
                if _File.now(file.path) != file:
                    raise RuntimeError(f"{file.path} has changed since it was opened.")
            with self._lock:
                self._results[file] = results
                self._results.move_to_end(file)
                while len(self._results) > 1 and sum(kept.size for kept in self._results) > _KEPT_BYTES:
                    self._results.popitem(last=False)
        return results


_READERS = _Readers()


class _Column(BackendArray):  # type: ignore[misc]
    """A column of values, or of indices. It holds no numbers, and so is cheap to send to another process."""

    def __init__(self, file: _File, number: int, of_values: bool, rows: int) -> None:
        self.file = file
        self.number = number
        self.of_values = of_values
        self.shape = (rows,)
        self.dtype = np.dtype(np.float64 if of_values else np.int16)

    def __getitem__(self, key: Any) -> Any:
        return indexing.explicit_indexing_adapter(key, self.shape, indexing.IndexingSupport.OUTER, self._read)

    def _read(self, key: Tuple[Any, ...]) -> Any:
        results = _READERS.get(self.file)
        column: Any = results.values(self.number) if self.of_values else results.indices[:, self.number]
        return column[key]


class OrvaloBackend(BackendEntrypoint):  # type: ignore[misc]
    """Results, text or MAT-files, as datasets over the dimension `row`.

    Opening a file reads it once, to learn its shape and that it is right. Its numbers are read again where they are
    needed: with Dask on whichever worker that is.
    """

    description = "Results of elastic wave simulations"

    def open_dataset(self, filename_or_obj: Any, *, drop_variables: Optional[Iterable[str]] = None) -> xr.Dataset:
        file = _File.now(os.path.abspath(os.fsdecode(filename_or_obj)))
        results = _READERS.get(file)
        dropped = [drop_variables] if isinstance(drop_variables, str) else list(drop_variables or [])

        def lazy(names: Iterable[str], of_values: bool) -> dict[str, xr.Variable]:
            columns = {name: _Column(file, number, of_values, len(results)) for number, name in enumerate(names)}
            return {
                name: xr.Variable("row", indexing.LazilyIndexedArray(column))
                for name, column in columns.items()
                if name not in dropped
            }

        values = lazy(results.unique_names(), True)
        return xr.Dataset(values, lazy(results.index_names, False), {"path": file.path})
