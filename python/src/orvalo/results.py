"""Results of simulations."""
from __future__ import annotations

import math
import operator
import os
from functools import cached_property
from typing import TYPE_CHECKING, Any, Dict, List, Optional, Tuple, Union, overload

import numpy as np

from orvalo import _orvalo
from orvalo._arguments import Column, Path, checked_threads, system_path
from orvalo._dense import Bounds, scatter
from orvalo._extras import needed
from orvalo._html import as_html, as_text
from orvalo.errors import raise_failure
from orvalo.plot import plot_results
from orvalo.progress import Progress, progress_callback

if TYPE_CHECKING:
    import numpy.typing as npt
    import pandas
    import xarray

_INDEX_NAMES = ("x", "y", "z", "f")


class Results:
    """The results of a simulation: rows of values, each for a cube. `read_results` makes it.

    The arrays that it gives cannot be written to. They are views of its memory, alive as long as anybody holds them,
    where the columns of the file lie in one piece: in a MAT-file always. A text is held in blocks of up to a MiB; a
    column of several blocks is copied each time it is asked for.

    Attributes
    ----------
    path : str
        The file that it was read from, as an absolute path.
    """

    def __init__(self, data: _orvalo.ResultsData, path: str) -> None:
        self._data = data
        self.path = path

    def __reduce__(self) -> Tuple[Any, ...]:
        return read_results, (self.path,)

    def __len__(self) -> int:
        """The number of rows."""
        return self._data.row_count

    @cached_property
    def column_names(self) -> Tuple[str, ...]:
        """The names of the columns of values: those in the first line of a text; v1, v2 and so on in a MAT-file."""
        names = self._data.column_names()
        if names is None:
            return tuple(f"v{column + 1}" for column in range(self._data.value_columns))
        return tuple(names[self._data.index_columns :])

    @cached_property
    def index_names(self) -> Tuple[str, ...]:
        """The names of the columns of indices: x, y, z and, if there are more, f, i4, i5 and so on."""
        count = self._data.index_columns
        return (_INDEX_NAMES + tuple(f"i{column}" for column in range(4, count)))[:count]

    def _column(self, column: Column) -> int:
        names = self.column_names
        if isinstance(column, str):
            if column not in names:
                raise KeyError(f"There is no column {column!r}; there are {', '.join(names) or 'none'}.")
            return names.index(column)
        try:
            number = operator.index(column)
        except TypeError:
            raise TypeError(f"A column is a name or a number, not {type(column).__name__}.") from None
        if not 0 <= number < len(names):
            raise IndexError(f"There is no column {number}; there are {len(names)}, from 0.")
        return number

    def values(self, column: Column) -> npt.NDArray[np.float64]:
        """The values of a column, in the order of the rows.

        Parameters
        ----------
        column : int or str
            Its number among the columns of values, from 0, or its name; of several columns of that name the first.

        Returns
        -------
        ndarray of float64, shape (n,)
            Read-only. A view for a MAT-file, and for a text whose rows take a block of up to a MiB; else a copy.
        """
        return self._data.values(self._column(column))

    @cached_property
    def indices(self) -> npt.NDArray[np.int16]:
        """The columns of indices named by `index_names`, shape (n, k): as `values` a view or a copy."""
        return self._data.indices()

    @property
    def coordinates(self) -> Optional[npt.NDArray[np.int16]]:
        """x, y and z of every row, shape (n, 3), as `indices`; None where the file has no columns of indices."""
        return self.indices[:, :3] if self._data.index_columns else None

    @cached_property
    def bounds(self) -> Optional[Bounds]:
        """The box of all rows; None where there are no rows, or no coordinates."""
        if self.coordinates is None or len(self) == 0:
            return None
        lower, upper = self.coordinates.min(axis=0).tolist(), self.coordinates.max(axis=0).tolist()
        return Bounds(lower[0], upper[0], lower[1], upper[1], lower[2], upper[2])

    @overload
    def at(self, column: Column, x: int, y: int, z: int, default: float = ...) -> float: ...

    @overload
    def at(
        self, column: Column, x: npt.ArrayLike, y: npt.ArrayLike, z: npt.ArrayLike, default: float = ...
    ) -> Any: ...

    def at(
        self, column: Column, x: npt.ArrayLike, y: npt.ArrayLike, z: npt.ArrayLike, default: float = math.nan
    ) -> Any:
        """The values of a column at cubes.

        Parameters
        ----------
        column : int or str
            As for `values`.
        x, y, z : int or array of int
            The cubes. Arrays are broadcast against each other.
        default : float
            What is given for a cube that no row is for, also outside of the box. Of several rows for a cube the last
            counts.

        Returns
        -------
        float, or ndarray of float64 of the shape that x, y and z have together
        """
        number = self._column(column)
        cubes = np.broadcast_arrays(*(_integers(name, axis) for name, axis in (("x", x), ("y", y), ("z", z))))
        found = self._data.at(number, cubes[0].ravel(), cubes[1].ravel(), cubes[2].ravel(), float(default))
        return float(found[0]) if cubes[0].ndim == 0 else found.reshape(cubes[0].shape)

    def dense(self, column: Column) -> npt.NDArray[np.float64]:
        """The values of a column over the whole box of the results.

        Returns
        -------
        ndarray of float64, shape `bounds.shape`
            At index (0, 0, 0) the cube `bounds.lower`; NaN where there is no row. Of several rows for a cube the last
            counts.

        Raises
        ------
        ValueError
            Where the file has no coordinates.
        MemoryError
            Where the array would be larger than the memory that is free.
        """
        values = self.values(column)
        coordinates = self._coordinates("A dense array")
        if self.bounds is None:
            return np.empty((0, 0, 0))
        x, y, z = coordinates.T
        return scatter((x, y, z), self.bounds, values, np.nan, "A dense array")

    def _coordinates(self, purpose: str) -> npt.NDArray[np.int16]:
        if self.coordinates is None:
            raise ValueError(f"{purpose} needs coordinates, and {self.path} has no columns x, y, z and f.")
        return self.coordinates

    def unique_names(self) -> List[str]:
        """`column_names`, with a number after those that are taken: the names of `to_xarray` and `to_pandas`."""
        names: List[str] = []
        for name in self.column_names:
            unique, number = name, 2
            while unique in names or unique in self.index_names:
                unique, number = f"{name}_{number}", number + 1
            names.append(unique)
        return names

    def to_xarray(self) -> xarray.Dataset:
        """The results as an xarray.Dataset over the dimension `row`, with x, y, z (and f) as coordinates along it.

        Its arrays are those of `values` and `indices`.
        """
        xr = needed("xarray", "Results.to_xarray")
        columns = {name: ("row", self.values(number)) for number, name in enumerate(self.unique_names())}
        indices = {name: ("row", self.indices[:, number]) for number, name in enumerate(self.index_names)}
        return xr.Dataset(columns, indices, {"path": self.path})

    def to_pandas(self) -> pandas.DataFrame:
        """The results as a pandas.DataFrame: the columns of indices, then those of values, all of them copies."""
        pd = needed("pandas", "Results.to_pandas")
        columns: Dict[str, npt.NDArray[Any]] = {}
        columns.update({name: self.indices[:, number] for number, name in enumerate(self.index_names)})
        columns.update({name: self.values(number) for number, name in enumerate(self.unique_names())})
        return pd.DataFrame(columns)

    plot = plot_results

    def _title(self) -> str:
        return f"Results {os.path.basename(self.path)}"

    def _lines(self) -> List[Tuple[str, str]]:
        lines = [("rows", str(len(self)))]
        if self.bounds is not None:
            sides = " x ".join(map(str, self.bounds.shape))
            lines.append(("box", f"{sides} cubes from {self.bounds.lower} to {self.bounds.upper}"))
        for number, name in enumerate(self.column_names):
            values = self.values(number)
            known = values[~np.isnan(values)]
            facts = f"{name}, {known.min():g} to {known.max():g}" if len(known) else name
            lines.append(("values" if number == 0 else "", facts))
        return lines

    def __repr__(self) -> str:
        return f"<orvalo.Results {self.path!r}: {len(self)} rows of {', '.join(self.column_names) or 'nothing'}>"

    def __str__(self) -> str:
        return as_text(self._title(), self._lines())

    def _repr_html_(self) -> str:
        return as_html(self._title(), self._lines())


def _integers(name: str, values: npt.ArrayLike) -> npt.NDArray[np.int32]:
    array = np.asarray(values)
    if array.size == 0 and array.dtype.kind == "f":
        return array.astype(np.int32)
    if array.dtype.kind not in "iu":
        raise TypeError(f"{name} is an integer or an array of integers, not of {array.dtype}.")
    if array.dtype.itemsize > 2:
        # Beyond the coordinates that a row can have, all are the same.
        array = np.clip(array, -(2**15) - 1, 2**16)
    return array.astype(np.int32)


def read_results(path: Path, *, threads: int = 0, progress: Progress = None) -> Results:
    """Reads a results file: tab-separated text, or a MATLAB 5 MAT-file.

    Parameters
    ----------
    path : str, bytes or os.PathLike
        The file.
    threads : int
        How many threads may read; 0 for as many as the process may run.
    progress : callable or True, optional
        Called at most ten times a second with the fraction that is done, 0 to 1; what it raises ends the read. True
        shows a bar.

    Returns
    -------
    Results

    Raises
    ------
    ReadError
        What is wrong with the file. It is a ValueError.
    OSError
        Where the file cannot be opened, such as FileNotFoundError.
    MemoryError
        Where memory does not suffice.

    Notes
    -----
    Other threads run meanwhile. Ctrl-C ends the read within milliseconds, but not while it waits for a pipe.
    """
    name, data = system_path(path)
    with progress_callback(progress, os.path.basename(name)) as callback:
        try:
            results = _orvalo.read_results(data, checked_threads(threads), callback)
        except _orvalo.Failure as failure:
            raised = failure
        else:
            return Results(results, os.path.abspath(name))
    raise_failure(raised.args, name)
