"""Writes models and results."""
from __future__ import annotations

import errno
import os
import re
from typing import TYPE_CHECKING, Any, List, Mapping, Optional, Sequence, Union

import numpy as np

from orvalo import _orvalo, _parcels
from orvalo._arguments import Path, system_path
from orvalo.errors import WriteError
from orvalo.progress import Progress, progress_callback

if TYPE_CHECKING:
    import numpy.typing as npt

    from orvalo.model import Model
    from orvalo.parts import Actuator, Dump, Material, Piezo, PointSet, Position, Sensor, Table

Materials = Union[Sequence["Material"], Mapping[int, "Material"]]
Columns = Union["npt.ArrayLike", Mapping[str, "npt.ArrayLike"]]
_MAT_SUFFIX = ".mat"
# What the library says of a file, by the number that the system has for it.
_CODES = {os.strerror(code): code for code in errno.errorcode}
_CODES.update({"it exists already": errno.EEXIST, "it is read-only": errno.EACCES})


def write_model(
    path: Path,
    *,
    materials: Materials,
    cell_size: float,
    time_step: float,
    grid: Optional[npt.ArrayLike] = None,
    origin: Position = (0, 0, 0),
    cubes: Optional[npt.NDArray[np.void]] = None,
    temperatures: Optional[npt.ArrayLike] = None,
    damping: Optional[npt.NDArray[np.void]] = None,
    start_time: float = 0.0,
    room_temperature: float = 25.0,
    actuators: Sequence[Actuator] = (),
    piezos: Sequence[Piezo] = (),
    sensors: Sequence[Sensor] = (),
    dumps: Sequence[Dump] = (),
    tables: Sequence[Table] = (),
    sets: Sequence[PointSet] = (),
    overwrite: bool = False,
    comment: str = "",
    cubes_file: str = "",
    progress: Progress = None,
) -> None:
    """Writes a model file that `read_model` reads.

    Parameters
    ----------
    path : str, bytes or os.PathLike
        The file. Nothing is left there where writing fails.
    materials : dict of int to Material, or sequence of Material
        By the number that the file gives them, 1 to 255. In a sequence it is that of the material, or else its place,
        counted from 1; air at its head is passed over, so that `Model.materials` will do.
    cell_size : float
        The length of a cube's edge.
    time_step, start_time : float
        In seconds; taken as the nearest number of microseconds with 15 digits.
    grid : array of int, shape (nx, ny, nz)
        The numbers of the materials, 0 where there is no cube. Either this or `cubes`.
    origin : (int, int, int)
        The coordinates of the cube at index (0, 0, 0) of `grid`.
    cubes : structured array, shape (n,)
        `x`, `y`, `z` and `material`, the number of the material. In `Model.cubes` that field is a place in
        `Model.materials`; `Model.numbers` turns it into numbers.
    temperatures : array of float, optional
        In degrees Celsius, of the shape of `grid` or `cubes`.
    damping : structured array, shape (n,), optional
        As `cubes`, and `coefficient`.
    room_temperature : float
        In degrees Celsius.
    actuators, piezos, sensors, dumps, tables, sets : sequences of the data classes, optional
        Tables with negative IDs are passed over: they are made from definitions.
    overwrite : bool
        Whether a file that is there is replaced.
    comment : str
        Text at the head of the file.
    cubes_file : str
        The name of a file beside the model, which the model then includes, for cubes and damping cubes.
    progress : callable or True, optional
        As for `read_model`.

    Raises
    ------
    WriteError
        What no model file can hold. It is a ValueError.
    TypeError, ValueError
        For arrays of the wrong type or shape.
    OSError
        Where the file cannot be written: FileExistsError, unless it is to be replaced, PermissionError and so on.
    """
    numbered = _parcels.numbered_materials(materials)
    places = _parcels.places_of(numbered)
    if (grid is None) == (cubes is None):
        raise TypeError("Either grid or cubes is to be given.")
    if grid is not None:
        packed, temperature = _parcels.cubes_of_grid(grid, origin, temperatures, places)
    else:
        packed, temperature = _parcels.cubes_of_rows(cubes, temperatures, places)
    record = {
        "cell_size": float(cell_size),
        "time_step": _parcels.snapped_seconds(time_step),
        "start_time": _parcels.snapped_seconds(start_time),
        "room_temperature": float(room_temperature),
        "materials": numbered,
        "cubes": packed,
        "temperatures": temperature,
        "damping": _parcels.damping_cubes(damping, places),
        "actuators": [_parcels.actuator(actuator) for actuator in actuators],
        "piezos": _parcels.by_id("piezos", [_parcels.piezo(piezo) for piezo in piezos]),
        "sensors": _parcels.by_id("sensors", [_parcels.part(sensor) for sensor in sensors]),
        "dumps": _parcels.by_id("dumps", [_parcels.dump(dump) for dump in dumps]),
        "tables": _parcels.by_id("tables", [_parcels.table(table) for table in tables if table.id >= 0]),
        "sets": _parcels.by_id("sets", [_parcels.point_set(points) for points in sets]),
    }
    _write_model(_tried(_orvalo.build_model, record), path, overwrite, comment, cubes_file, progress)


def save_model(
    model: Model,
    path: Path,
    *,
    overwrite: bool = False,
    comment: str = "",
    cubes_file: str = "",
    progress: Progress = None,
) -> None:
    """Writes the model to another file, which `read_model` reads back equal, to the last bit of every number.

    Parameters
    ----------
    path, overwrite, comment, cubes_file, progress
        As for `write_model`.
    """
    if model.cubes_only:
        raise ValueError("Only the cubes were read, and a model is more than that.")
    _write_model(model._data, path, overwrite, comment, cubes_file, progress)


def _write_model(
    data: _orvalo.ModelData, path: Path, overwrite: bool, comment: str, cubes_file: str, progress: Progress
) -> None:
    name, encoded = system_path(path)
    folder = os.path.dirname(name)
    _expect_free([name] + ([os.path.join(folder, cubes_file)] if cubes_file else []), overwrite)
    with progress_callback(progress, os.path.basename(name)) as callback:
        _tried(_orvalo.write_model, data, encoded, bool(overwrite), comment, cubes_file, callback)


def write_results(
    path: Path,
    coordinates: Optional[npt.ArrayLike],
    values: Columns,
    names: Optional[Sequence[str]] = None,
    format: Optional[str] = None,
    *,
    overwrite: bool = False,
    progress: Progress = None,
) -> None:
    """Writes a results file that `read_results` reads.

    Parameters
    ----------
    path : str, bytes or os.PathLike
        The file. Nothing is left there where writing fails.
    coordinates : array of whole numbers, shape (n, 3) or (n, 4), or None
        x, y, z and, if there is a fourth column, f of every row; a text may do without, a MAT-file may have more.
    values : array of float, shape (n,) or (n, k), or dict of str to array of shape (n,)
        The columns of values, with their names if it is a dict.
    names : sequence of str, optional
        The names of the columns, v1, v2 and so on unless given. MAT-files do not hold them.
    format : "text" or "mat", optional
        "mat" for a path that ends so, else "text", unless given.
    overwrite : bool
        Whether a file that is there is replaced.
    progress : callable or True, optional
        As for `read_results`.

    Raises
    ------
    WriteError
        What no such file can hold. It is a ValueError.
    TypeError, ValueError
        For arrays of the wrong type or shape.
    OSError
        Where the file cannot be written: FileExistsError, unless it is to be replaced, PermissionError and so on.
    """
    name, encoded = system_path(path)
    if format not in (None, "text", "mat"):
        raise ValueError(f'format is "text" or "mat", not {format!r}.')
    mat = name.lower().endswith(_MAT_SUFFIX) if format is None else format == "mat"
    columns, named = _parcels.value_columns(values, names)
    rows = len(columns[0]) if columns else 0
    indices = _parcels.index_columns(coordinates, rows)
    _expect_free([name], overwrite)
    with progress_callback(progress, os.path.basename(name)) as callback:
        _tried(_orvalo.write_results, encoded, mat, rows, indices, columns, named, bool(overwrite), callback)


def _expect_free(paths: List[str], overwrite: bool) -> None:
    os.stat(os.path.dirname(paths[0]) or ".")
    for path in paths:
        if os.path.isdir(path):
            raise IsADirectoryError(errno.EISDIR, os.strerror(errno.EISDIR), path)
        if not overwrite and os.path.lexists(path):
            raise FileExistsError(errno.EEXIST, "It is there already; overwrite=True replaces it", path)


def _tried(write: Any, *arguments: Any) -> Any:
    try:
        return write(*arguments)
    except _orvalo.Failure as failure:
        name, message = failure.args[1:3]
    if name == "OutOfMemory":
        raise MemoryError(message)
    said = re.fullmatch("Unable to write '(.*)': (.*)", message, re.DOTALL)
    if said and said[2] in _CODES:
        raise OSError(_CODES[said[2]], said[2], said[1])
    raise WriteError(message)
