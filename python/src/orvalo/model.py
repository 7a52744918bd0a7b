"""Models."""
from __future__ import annotations

import os
from functools import cached_property
from typing import TYPE_CHECKING, Any, Dict, List, NamedTuple, Optional, Tuple

import numpy as np

from orvalo import _orvalo, _records
from orvalo._dense import Bounds, scatter
from orvalo._extras import needed
from orvalo._html import as_html, as_text
from orvalo._arguments import Path, checked_threads, system_path
from orvalo.errors import raise_failure
from orvalo.plot import plot_excitations, plot_model
from orvalo.progress import Progress, progress_callback
from orvalo.writing import save_model

if TYPE_CHECKING:
    import numpy.typing as npt
    import xarray

    from orvalo.parts import Actuator, Dump, Material, Piezo, PointSet, Sensor, Table


class WaveSpeeds(NamedTuple):
    """Wave speeds of all cubes, in the order of `Model.cubes`."""

    vp: npt.NDArray[np.float64]
    vs: npt.NDArray[np.float64]


class Model:
    """All that a model file says. `read_model` makes it.

    Arrays that it gives are read-only views of its memory unless said otherwise, and stay valid as long as anybody
    holds them.

    Attributes
    ----------
    path : str
        The file that it was read from, as an absolute path.
    cubes_only : bool
        Whether just the CUBES and DAMPING sections were read.
    """

    def __init__(self, data: _orvalo.ModelData, path: str, cubes_only: bool, double_precision: bool) -> None:
        self._data = data
        self.path = path
        self.cubes_only = cubes_only
        self._double_precision = double_precision

    def __reduce__(self) -> Tuple[Any, ...]:
        return _reopen, (self.path, self.cubes_only, self._double_precision)

    @property
    def cell_size(self) -> float:
        """The length of a cube's edge, in the file's unit of length."""
        return self._data.cell_size

    @property
    def time_step(self) -> float:
        """The time step, in seconds."""
        return self._data.time_step

    @property
    def start_time(self) -> float:
        """The time at which the simulation starts, in seconds."""
        return self._data.start_time

    @property
    def room_temperature(self) -> float:
        """The temperature of cubes that have none of their own, in degrees Celsius."""
        return self._data.room_temperature

    @cached_property
    def bounds(self) -> Optional[Bounds]:
        """The box of all cubes and damping cubes; None where there are none."""
        box = self._data.bounds()
        return None if box is None else Bounds(*box)

    @cached_property
    def cubes(self) -> npt.NDArray[np.void]:
        """The cubes in file order.

        A structured array of shape (n,) and itemsize 7: `x`, `y`, `z` (int16) and `material` (uint8), the place of the
        cube's material in `materials`. With `cubes_only` it is the number that the file gives the material.
        """
        return self._data.cubes()

    @cached_property
    def damping(self) -> npt.NDArray[np.void]:
        """The damping cubes in file order: as `cubes`, and `coefficient` (float64), with itemsize 15."""
        return self._data.damping()

    @cached_property
    def temperatures(self) -> Optional[npt.NDArray[np.float64]]:
        """The temperature of each of `cubes` in degrees Celsius, shape (n,); None where the file gives none."""
        return self._data.temperatures()

    @cached_property
    def materials(self) -> Tuple[Material, ...]:
        """Air, and then the materials in the order of their definition."""
        return _records.materials(self._data.materials())

    @cached_property
    def actuators(self) -> Tuple[Actuator, ...]:
        """The actuators that are enabled, in file order."""
        return _records.actuators(self._data.actuators())

    @cached_property
    def piezos(self) -> Tuple[Piezo, ...]:
        """The piezoelectric patches that are enabled, in file order."""
        return _records.piezos(self._data.piezos())

    @cached_property
    def sensors(self) -> Dict[int, Sensor]:
        """The sensors that are enabled, by ID."""
        return _records.sensors(self._data.sensors())

    @cached_property
    def dumps(self) -> Dict[int, Dump]:
        """The dumps that are enabled, by ID."""
        return _records.dumps(self._data.dumps())

    @cached_property
    def tables(self) -> Dict[int, Table]:
        """The tables by ID: those of the file, and with negative IDs those that were made for actuators."""
        return _records.tables(self._data.tables())

    @cached_property
    def sets(self) -> Dict[int, PointSet]:
        """The sets of points, by ID."""
        return _records.sets(self._data.sets())

    def columns(self) -> Dict[str, npt.NDArray[Any]]:
        """The fields of the cubes as contiguous copies, which are faster to compute with.

        Returns
        -------
        dict of str to ndarray of shape (n,)
            `x`, `y`, `z` (int16) and `material` (uint8) as in `cubes`, `number` (uint8), the number that the file gives
            the material, and `temperature` (float64, degrees Celsius) where the file gives temperatures.
        """
        made = {name: np.ascontiguousarray(self.cubes[name]) for name in ("x", "y", "z", "material")}
        made["number"] = self.numbers(self.cubes)
        if self.temperatures is not None:
            made["temperature"] = self.temperatures.copy()
        return made

    def numbers(self, cubes: npt.NDArray[np.void]) -> npt.NDArray[np.uint8]:
        """The numbers that the file gives the materials of some of `cubes` or `damping`, uint8 of shape (n,)."""
        material: npt.NDArray[np.uint8] = np.ascontiguousarray(cubes["material"])
        if self.cubes_only:
            return material
        numbers = np.array([material.number for material in self.materials], dtype=np.uint8)
        return numbers[material]

    def _scatter(self, cubes: npt.NDArray[np.void], values: npt.NDArray[Any], fill: Any) -> npt.NDArray[Any]:
        if self.bounds is None:
            return np.empty((0, 0, 0), dtype=values.dtype)
        return scatter((cubes["x"], cubes["y"], cubes["z"]), self.bounds, values, fill, "A grid")

    def grid(self) -> npt.NDArray[np.uint8]:
        """The numbers of the materials over the whole box, as the file gives them.

        Returns
        -------
        ndarray of uint8, shape `bounds.shape`
            At index (0, 0, 0) the cube `bounds.lower`; 0 where there is no cube. Of several cubes in one place the last
            counts.

        Raises
        ------
        MemoryError
            Where the array would be larger than the memory that is free.
        """
        return self._scatter(self.cubes, self.numbers(self.cubes), 0)

    def wave_speeds(self) -> WaveSpeeds:
        """The longitudinal and the transverse wave speed of every cube.

        Returns
        -------
        WaveSpeeds
            `vp` and `vs`, float64 arrays of shape (n,) in the units of the file, for a material that depends on
            temperature at that of the cube, or at the room temperature where the file gives none.
        """
        if self.cubes_only:
            raise ValueError("Wave speeds need the materials, and only the cubes were read.")
        return WaveSpeeds(*self._data.wave_speeds())

    def to_xarray(self) -> xarray.Dataset:
        """The grid as an xarray.Dataset over x, y and z, with coordinates in cubes.

        `material` has the numbers of `grid`; `temperature` (degrees Celsius) and `damping`, where there are any, are
        NaN where no cube has one.
        """
        xr = needed("xarray", "Model.to_xarray")
        dims = ("x", "y", "z")
        grids = {"material": (dims, self.grid())}
        if self.temperatures is not None:
            grids["temperature"] = (dims, self._scatter(self.cubes, self.temperatures, np.nan))
        if len(self.damping):
            coefficients = np.ascontiguousarray(self.damping["coefficient"])
            grids["damping"] = (dims, self._scatter(self.damping, coefficients, np.nan))
        axes = self.bounds.axes() if self.bounds is not None else (np.empty(0, np.int16),) * 3
        facts = ("cell_size", "time_step", "start_time", "room_temperature")
        return xr.Dataset(grids, dict(zip(dims, axes)), {fact: getattr(self, fact) for fact in facts})

    save = save_model
    plot = plot_model
    plot_excitations = plot_excitations

    def _title(self) -> str:
        return f"Model {os.path.basename(self.path)}"

    def _lines(self) -> List[Tuple[str, str]]:
        lines = []
        if self.bounds is not None:
            sides = " x ".join(map(str, self.bounds.shape))
            lines.append(("box", f"{sides} cubes from {self.bounds.lower} to {self.bounds.upper}"))
        if not self.cubes_only:
            lines.append(("cell size", f"{self.cell_size:g}"))
            lines.append(("time step", f"{self.time_step:g} s"))
        lines.append(("cubes", f"{len(self.cubes)}"))
        if len(self.damping):
            lines.append(("damping", f"{len(self.damping)} cubes"))
        if self.temperatures is not None and len(self.temperatures):
            lines.append(("temperatures", f"{self.temperatures.min():g} to {self.temperatures.max():g} deg C"))
        counts = np.bincount(self.cubes["material"], minlength=len(self.materials))
        for index, material in enumerate(self.materials[1:], 1):
            title = "materials" if index == 1 else ""
            lines.append((title, f"{material.number} {material.name}, {counts[index]} cubes"))
        for name in ("actuators", "piezos", "sensors", "dumps", "tables", "sets"):
            count = len(getattr(self, name))
            if count:
                lines.append((name, str(count)))
        return lines

    def __repr__(self) -> str:
        sides = " x ".join(map(str, self.bounds.shape)) if self.bounds is not None else "no"
        return f"<orvalo.Model {self.path!r}: {len(self.cubes)} cubes in a box of {sides}>"

    def __str__(self) -> str:
        return as_text(self._title(), self._lines())

    def _repr_html_(self) -> str:
        return as_html(self._title(), self._lines())


def read_model(
    path: Path,
    *,
    cubes_only: bool = False,
    double_precision: bool = True,
    threads: int = 0,
    progress: Progress = None,
) -> Model:
    """Reads a model file, with the files that it includes.

    Parameters
    ----------
    path : str, bytes or os.PathLike
        The file.
    cubes_only : bool
        Reads just the CUBES and DAMPING sections. Materials are then the numbers in the file, and the model is not
        checked as a whole.
    double_precision : bool
        Whether samples of tables are float64, or float32.
    threads : int
        How many threads may read; 0 for as many as the process may run.
    progress : callable or True, optional
        Called at most ten times a second with the fraction that is done, 0 to 1; what it raises ends the read. True
        shows a bar.

    Returns
    -------
    Model

    Raises
    ------
    ReadError
        What is wrong with the file, and where. It is a ValueError.
    OSError
        Where a file cannot be opened, such as FileNotFoundError.
    MemoryError
        Where memory does not suffice.

    Notes
    -----
    Other threads run meanwhile. Ctrl-C ends the read within milliseconds, but not while it waits for a pipe.
    """
    name, data = system_path(path)
    with progress_callback(progress, os.path.basename(name)) as callback:
        try:
            model = _orvalo.read_model(
                data, bool(cubes_only), bool(double_precision), checked_threads(threads), callback
            )
        except _orvalo.Failure as failure:
            raised = failure
        else:
            return Model(model, os.path.abspath(name), bool(cubes_only), bool(double_precision))
    raise_failure(raised.args, name)


def _reopen(path: str, cubes_only: bool, double_precision: bool) -> Model:
    return read_model(path, cubes_only=cubes_only, double_precision=double_precision)
