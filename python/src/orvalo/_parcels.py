"""Puts what is to be written into the form that the extension module takes, with errors that name what was expected."""
from __future__ import annotations

from dataclasses import fields
from typing import TYPE_CHECKING, Any, Dict, List, Mapping, Optional, Sequence, Tuple

import numpy as np

from orvalo.parts import Actuator, Dump, Material, Piezo, PointSet, Table

if TYPE_CHECKING:
    import numpy.typing as npt

    from orvalo.parts import Position

_CUBE = np.dtype([("x", "<i2"), ("y", "<i2"), ("z", "<i2"), ("material", "u1")])
_DAMPING = np.dtype(_CUBE.descr + [("coefficient", "<f8")])
_PIEZO_POINT = np.dtype([("x", "<i2"), ("y", "<i2"), ("table_u", "<u2"), ("table_v", "<u2"), ("table_w", "<u2")])
_HIGHEST = 2**15 - 1

Places = Dict[int, int]


def part(thing: Any) -> Dict[str, Any]:
    """The fields of a data class, and of those in it, as a dictionary."""
    return {
        field.name: part(value) if hasattr(value, "__dataclass_fields__") else value
        for field in fields(thing)
        for value in [getattr(thing, field.name)]
    }


def by_id(what: str, records: List[Dict[str, Any]]) -> List[Dict[str, Any]]:
    """The records, of which no two may have one ID."""
    seen = set()
    for number in (record["id"] for record in records):
        if number in seen:
            raise ValueError(f"Two of the {what} have the ID {number}.")
        seen.add(number)
    return records


def snapped_seconds(seconds: float) -> float:
    """The time that a file says in microseconds of 15 digits."""
    return float(f"{float(seconds) * 1e6:.15g}") * 1e-6


def numbered_materials(materials: Any) -> List[Dict[str, Any]]:
    """The materials as records with their numbers."""
    if isinstance(materials, Mapping):
        numbers = list(materials.items())
    else:
        listed = list(materials)
        if listed and listed[0].number == 0 and listed[0].name.lower() == "air":
            listed = listed[1:]
        numbers = [(material.number or place, material) for place, material in enumerate(listed, 1)]
    records = []
    for number, material in numbers:
        if not isinstance(material, Material):
            raise TypeError(f"materials are of the type Material, not {type(material).__name__}.")
        if not 1 <= number <= 255:
            raise ValueError(f"{material.name} has the number {number}; materials have numbers from 1 to 255.")
        records.append({**part(material), "number": number})
    if len({record["number"] for record in records}) < len(records):
        raise ValueError("Two materials have the same number.")
    return records


def places_of(records: List[Dict[str, Any]]) -> Places:
    """The places of the materials in a model, by number; air has the place 0."""
    return {record["number"]: place for place, record in enumerate(records, 1)}


def _materials(numbers: npt.NDArray[Any], places: Places, what: str) -> npt.NDArray[np.uint8]:
    known = np.zeros(256, dtype=np.uint8)
    known[list(places)] = list(places.values())
    strange = (numbers < 0) | (numbers > 255)
    if not strange.any():
        strange = known[numbers] == 0
    if strange.any():
        there = ", ".join(map(str, places)) or "none"
        raise ValueError(f"{what} has the material {numbers[strange][0]}; there are {there}.")
    found: npt.NDArray[np.uint8] = known[numbers]
    return found


def _whole(name: str, array: npt.NDArray[Any]) -> None:
    if array.dtype.kind not in "iu":
        raise TypeError(f"{name} holds integers, not {array.dtype}.")


def _coordinates(name: str, array: npt.NDArray[Any], what: str, lowest: int = 0) -> None:
    _whole(f"{name} of {what}", array)
    if array.size and not (lowest <= array.min() and array.max() <= _HIGHEST):
        outside = array.min() if array.min() < lowest else array.max()
        raise ValueError(f"{name} of {what} is from {lowest} to {_HIGHEST}, not {outside}.")


def _floats(name: str, values: Any, shape: Tuple[int, ...]) -> npt.NDArray[np.float64]:
    array = np.ascontiguousarray(values, dtype=np.float64)
    if array.shape != shape:
        raise ValueError(f"{name} is of the shape {array.shape}, and {shape} is expected.")
    return array


def cubes_of_grid(
    grid: Any, origin: Position, temperatures: Any, places: Places
) -> Tuple[npt.NDArray[np.void], Optional[npt.NDArray[np.float64]]]:
    """The cubes of a dense array, x running fastest, and their temperatures."""
    dense = np.asarray(grid)
    if dense.ndim != 3:
        raise ValueError(f"grid is an array of three dimensions, not {dense.ndim}.")
    _whole("grid", dense)
    z, y, x = np.nonzero(dense.transpose(2, 1, 0))
    cubes = np.zeros(len(x), dtype=_CUBE)
    for name, axis, low in zip("xyz", (x, y, z), origin):
        _coordinates(name, axis + low, "a cube of grid")
        cubes[name] = axis + low
    cubes["material"] = _materials(dense[x, y, z], places, "grid")
    if temperatures is None:
        return cubes, None
    return cubes, np.ascontiguousarray(_floats("temperatures", temperatures, dense.shape)[x, y, z])


def _rows(rows: Any, kind: np.dtype[Any], what: str, places: Places) -> npt.NDArray[np.void]:
    names = kind.names or ()
    given = getattr(getattr(rows, "dtype", None), "names", None) or ()
    if not set(names) <= set(given) or rows.ndim != 1:
        raise TypeError(f"{what} is a structured array of one dimension with the fields {', '.join(names)}.")
    packed = np.zeros(len(rows), dtype=kind)
    for name in "xyz":
        _coordinates(name, rows[name], what)
        packed[name] = rows[name]
    _whole(f"material of {what}", rows["material"])
    packed["material"] = _materials(rows["material"], places, what)
    if "coefficient" in names:
        packed["coefficient"] = rows["coefficient"]
    return packed


def cubes_of_rows(
    cubes: Any, temperatures: Any, places: Places
) -> Tuple[npt.NDArray[np.void], Optional[npt.NDArray[np.float64]]]:
    """The cubes of a structured array, and their temperatures."""
    packed = _rows(cubes, _CUBE, "cubes", places)
    return packed, None if temperatures is None else _floats("temperatures", temperatures, packed.shape)


def damping_cubes(damping: Any, places: Places) -> npt.NDArray[np.void]:
    """The damping cubes; none for None."""
    return np.zeros(0, dtype=_DAMPING) if damping is None else _rows(damping, _DAMPING, "damping", places)


def table(samples: Table) -> Dict[str, Any]:
    """A table."""
    array = np.ascontiguousarray(samples.samples, dtype=np.float64)
    if array.ndim != 1:
        raise ValueError(f"The samples of table {samples.id} are an array of one dimension, not {array.ndim}.")
    return {"id": samples.id, "samples": array}


def piezo(patch: Piezo) -> Dict[str, Any]:
    """A piezoelectric patch."""
    names = _PIEZO_POINT.names or ()
    if patch.axis not in ("x", "y", "z"):
        raise ValueError(f"The axis of piezo {patch.id} is x, y or z, not {patch.axis!r}.")
    if not set(names) <= set(patch.points.dtype.names or ()) or patch.points.ndim != 1:
        raise TypeError(f"The points of piezo {patch.id} are a structured array with the fields {', '.join(names)}.")
    points = np.zeros(len(patch.points), dtype=_PIEZO_POINT)
    for name in names:
        column = patch.points[name]
        _whole(f"{name} of piezo {patch.id}", column)
        bound = np.iinfo(_PIEZO_POINT[name])
        if column.size and not (bound.min <= column.min() and column.max() <= bound.max):
            raise ValueError(f"{name} of piezo {patch.id} is from {bound.min} to {bound.max}.")
        points[name] = column
    return {**part(patch), "points": points, "tables": [table(own) for own in patch.tables.values()]}


def actuator(source: Actuator) -> Dict[str, Any]:
    """An actuator."""
    if not set(source.direction) <= set("uvw"):
        raise ValueError(f"direction is made of the letters u, v and w, not {source.direction!r}.")
    return part(source)


def dump(output: Dump) -> Dict[str, Any]:
    """A dump."""
    return {**part(output), "output": "".join(output.output)}


def point_set(points: PointSet) -> Dict[str, Any]:
    """A set of points."""
    array = np.asarray(points.points)
    if array.ndim != 2 or array.shape[1] != 3:
        raise ValueError(f"The points of set {points.id} are of the shape (n, 3), not {array.shape}.")
    _coordinates("A coordinate", array, f"set {points.id}")
    return {"id": points.id, "points": np.ascontiguousarray(array, dtype=np.int16)}


def value_columns(values: Any, names: Optional[Sequence[str]]) -> Tuple[List[npt.NDArray[np.float64]], List[str]]:
    """Columns of values, and their names."""
    if isinstance(values, Mapping):
        if names is not None:
            raise TypeError("The names of the columns are given twice.")
        names = list(values)
        columns = [np.asarray(column, dtype=np.float64) for column in values.values()]
    else:
        array = np.asarray(values, dtype=np.float64)
        if array.ndim not in (1, 2):
            raise ValueError(f"values is an array of one or two dimensions, not {array.ndim}.")
        columns = [array] if array.ndim == 1 else list(array.T)
    if any(column.shape != columns[0].shape or column.ndim != 1 for column in columns):
        raise ValueError("The columns of values are of one dimension and equally long.")
    if names is not None and len(names) != len(columns):
        raise ValueError(f"There are {len(names)} names for {len(columns)} columns.")
    return columns, [str(name) for name in names or ()]


def index_columns(coordinates: Any, rows: int) -> List[npt.NDArray[np.int64]]:
    """Columns of indices."""
    if coordinates is None:
        return []
    array = np.asarray(coordinates)
    if array.ndim != 2 or array.shape[1] < 3 or len(array) != rows:
        raise ValueError(f"coordinates is of the shape ({rows}, 3) or ({rows}, 4), not {array.shape}.")
    if array.dtype.kind == "f":
        wrong = np.nonzero(~(np.isfinite(array) & (array == np.round(array)) & (np.abs(array) < 2**53)))
        if len(wrong[0]):
            first = wrong[0][0], wrong[1][0]
            raise ValueError(f"coordinates holds whole numbers; row {first[0]} has {array[first]}.")
    else:
        _whole("coordinates", array)
    return list(array.astype(np.int64).T)
