"""Boxes of cubes, and dense arrays over them."""
from __future__ import annotations

import os
from typing import TYPE_CHECKING, Any, NamedTuple, Tuple

import numpy as np

if TYPE_CHECKING:
    import numpy.typing as npt


class Bounds(NamedTuple):
    """A box of cubes. Both ends are inclusive."""

    min_x: int
    max_x: int
    min_y: int
    max_y: int
    min_z: int
    max_z: int

    @property
    def lower(self) -> Tuple[int, int, int]:
        """The lowest coordinates: the cube at index (0, 0, 0) of a dense array."""
        return self.min_x, self.min_y, self.min_z

    @property
    def upper(self) -> Tuple[int, int, int]:
        """The highest coordinates."""
        return self.max_x, self.max_y, self.max_z

    @property
    def shape(self) -> Tuple[int, int, int]:
        """Cubes along x, y and z."""
        return self.max_x - self.min_x + 1, self.max_y - self.min_y + 1, self.max_z - self.min_z + 1

    def axes(self) -> Tuple[npt.NDArray[np.int16], ...]:
        """The coordinates along x, y and z, as int16 arrays."""
        pairs = zip(self.lower, self.shape)
        return tuple(np.arange(low, low + count, dtype=np.int32).astype(np.int16) for low, count in pairs)


def free_memory() -> int:
    """Bytes of memory that the machine can give, or has where it does not tell."""
    try:
        with open("/proc/meminfo", encoding="ascii") as facts:
            return 1024 * next(int(line.split()[1]) for line in facts if line.startswith("MemAvailable:"))
    except (OSError, StopIteration):
        return os.sysconf("SC_PHYS_PAGES") * os.sysconf("SC_PAGE_SIZE")


def require_memory(shape: Tuple[int, ...], item: int, what: str) -> None:
    """Raises MemoryError where an array of that shape would be larger than what the machine has left."""
    size = item
    for count in shape:
        size *= count
    memory = free_memory()
    if size > memory:
        dimensions = " x ".join(map(str, shape))
        raise MemoryError(
            f"{what} of {dimensions} cubes takes {size / 2**30:.1f} GiB, and {memory / 2**30:.1f} GiB are free."
        )


def scatter(
    coordinates: Tuple[npt.NDArray[Any], ...], bounds: Bounds, values: npt.NDArray[Any], fill: Any, what: str
) -> npt.NDArray[Any]:
    """An array over the box with `fill` where no coordinates lead. Of several values for a cube the last counts."""
    require_memory(bounds.shape, values.dtype.itemsize, what)
    dense = np.full(bounds.shape, fill, dtype=values.dtype)
    place = np.zeros(len(values), dtype=np.int64)
    for axis, low, count in zip(coordinates, bounds.lower, bounds.shape):
        place *= count
        place += axis
        place -= low
    dense.reshape(-1)[place] = values
    return dense
