"""Pictures, by matplotlib. `Model.plot`, `Model.plot_excitations` and `Results.plot` are these functions."""
from __future__ import annotations

from typing import TYPE_CHECKING, Any, Dict, Iterator, Optional, Tuple

import numpy as np

from orvalo._arguments import whole_number
from orvalo._dense import Bounds, require_memory
from orvalo._extras import needed

if TYPE_CHECKING:
    import numpy.typing as npt

    from orvalo._arguments import Column
    from orvalo.model import Model
    from orvalo.results import Results

# Eight colours that people with any kind of colour vision tell apart (Okabe and Ito), the black one last.
_COLOURS = ("#56B4E9", "#E69F00", "#009E73", "#F0E442", "#CC79A7", "#D55E00", "#0072B2", "#000000")


_LINES = ("#0072B2", "#D55E00", "#009E73", "#CC79A7", "#E69F00", "#56B4E9", "#000000")


def _axes(ax: Optional[Any]) -> Any:
    return ax if ax is not None else needed("matplotlib.pyplot", "A picture").subplots()[1]


def _layer(z: Optional[int], bounds: Optional[Bounds], what: str) -> int:
    if bounds is None:
        raise ValueError(f"{what} has no cubes to show.")
    if z is None:
        return bounds.max_z
    z = whole_number("z", z)
    if not bounds.min_z <= z <= bounds.max_z:
        raise ValueError(f"z = {z} is outside of {what}, whose layers are {bounds.min_z} to {bounds.max_z}.")
    return z


def _length(cell_size: Optional[float]) -> float:
    size = 1.0 if cell_size is None else float(cell_size)
    if not 0 < size < float("inf"):
        raise ValueError(f"cell_size is a length above 0, not {cell_size}.")
    return size


def _label(ax: Any, z: int, in_cubes: bool) -> None:
    unit = "cubes" if in_cubes else "units of length"
    ax.set(xlabel=f"x ({unit})", ylabel=f"y ({unit})", title=f"z = {z}", aspect="equal")


def _colours(count: int, colours: Tuple[str, ...] = _COLOURS) -> Any:
    if count <= len(colours):
        return list(colours[:count])
    return needed("matplotlib.pyplot", "A picture").get_cmap("cividis")(np.linspace(0, 1, count))


def plot_model(model: Model, z: Optional[int] = None, ax: Optional[Any] = None) -> Any:
    """Shows the materials of a layer of cubes, and where the model is excited and recorded.

    Filled marks lie in the layer, hollow ones in others. The points of a piezoelectric patch are drawn as if they ran
    from its position along the other two axes; where they truly lie is up to the solver.

    Parameters
    ----------
    z : int, optional
        The layer, in cubes; the highest unless given.
    ax : matplotlib.axes.Axes, optional
        What to draw on; a new figure unless given.

    Returns
    -------
    matplotlib.axes.Axes
        Its axes are in the file's unit of length, the middle of cube x lying at x times the cell size.
    """
    z = _layer(z, model.bounds, "the model")
    assert model.bounds is not None
    box = model.bounds
    require_memory(box.shape[:2], 3 * 8, "A picture")
    ax = _axes(ax)
    size = model.cell_size or 1.0
    cubes = model.cubes[model.cubes["z"] == z]
    layer = np.zeros(box.shape[:2], dtype=np.uint8)
    layer[cubes["x"].astype(int) - box.min_x, cubes["y"].astype(int) - box.min_y] = model.numbers(cubes)
    names = {material.number: material.name for material in model.materials[1:]}
    numbers = [int(number) for number in np.unique(layer) if number]
    known = sorted(names) or numbers
    colours = dict(zip(known, _colours(len(known))))
    extent = [
        size * edge for edge in (box.min_x - 0.5, box.max_x + 0.5, box.min_y - 0.5, box.max_y + 0.5)
    ]
    image = np.ones(layer.shape + (3,))
    to_rgb = needed("matplotlib.colors", "A picture").to_rgb
    patch = needed("matplotlib.patches", "A picture").Patch
    handles = []
    for number in numbers:
        image[layer == number] = to_rgb(colours[number])
        handles.append(patch(color=colours[number], label=f"{number} {names.get(number, '')}".strip()))
    ax.imshow(image.swapaxes(0, 1), origin="lower", extent=extent, interpolation="nearest")
    for label, marker, positions in _marks(model):
        handles.append(_mark(ax, label, marker, positions, size, z))
    ax.legend(handles=handles, loc="upper left", bbox_to_anchor=(1.01, 1), borderaxespad=0)
    _label(ax, z, in_cubes=not model.cell_size)
    return ax


def _marks(model: Model) -> Iterator[Tuple[str, str, npt.NDArray[Any]]]:
    """What is marked: its name, its mark, and cubes."""
    points = []
    for piezo in model.piezos:
        others = [axis for axis in range(3) if "xyz"[axis] != piezo.axis]
        cubes = np.tile(np.array(piezo.position), (len(piezo.points), 1))
        cubes[:, others[0]] += piezo.points["x"]
        cubes[:, others[1]] += piezo.points["y"]
        points.append(cubes)
    if model.actuators:
        yield "actuator", "*", np.array([actuator.position for actuator in model.actuators])
    if points:
        yield "piezo point", ".", np.concatenate(points)
    if model.sensors:
        yield "sensor", "^", np.array([sensor.position for sensor in model.sensors.values()])


def _mark(ax: Any, label: str, marker: str, positions: npt.NDArray[Any], size: float, z: int) -> Any:
    width = {"*": 13, "^": 8, ".": 6}[marker]
    style: Dict[str, Any] = {"marker": marker, "markersize": width, "color": "white", "markeredgecolor": "black"}
    style.update(linestyle="none", clip_on=False)
    here = positions[:, 2] == z
    for some, color in ((here, "white"), (~here, "none")):
        # An empty line that is not clipped would lie in the corner of the figure, for those who lay it out.
        if some.any():
            ax.plot(*(size * positions[some, :2].T), **{**style, "color": color})
    return needed("matplotlib.lines", "A picture").Line2D([], [], label=label, **style)


def plot_excitations(model: Model, ax: Optional[Any] = None) -> Any:
    """Shows what drives the actuators and the piezoelectric patches: samples times amplitude over time.

    Parameters
    ----------
    ax : matplotlib.axes.Axes, optional
        What to draw on; a new figure unless given.

    Returns
    -------
    matplotlib.axes.Axes
        Its x axis is in microseconds from the start of the simulation.
    """
    ax = _axes(ax)
    curves = []
    for number, actuator in enumerate(model.actuators, 1):
        if actuator.table in model.tables:
            factor = -actuator.amplitude if actuator.invert else actuator.amplitude
            label = f"actuator {number}, {actuator.direction or 'no direction'}"
            curves.append((label, actuator.start_steps, factor, model.tables[actuator.table]))
    for piezo in model.piezos:
        for table in piezo.tables.values():
            curves.append((f"piezo {piezo.id}, table {table.id}", piezo.start_steps, piezo.amplitude, table))
    colours = _colours(len(curves), _LINES)
    for colour, (label, start, factor, table) in zip(colours, curves):
        times = (start + np.arange(len(table.samples))) * model.time_step * 1e6
        ax.plot(times, factor * table.samples, color=colour, label=label)
    ax.set(xlabel="time (microseconds)", ylabel="sample x amplitude")
    if curves:
        ax.legend()
    return ax


def plot_results(
    results: Results,
    column: Column,
    z: Optional[int] = None,
    ax: Optional[Any] = None,
    cell_size: Optional[float] = None,
) -> Any:
    """Shows the values of a column over a layer of cubes, in colours that diverge from 0.

    Of a layer of which results hold only every second cube, say, each value fills the place of those left out.

    Parameters
    ----------
    column : int or str
        As for `values`.
    z : int, optional
        The layer, in cubes; the highest unless given.
    ax : matplotlib.axes.Axes, optional
        What to draw on; a new figure unless given.
    cell_size : float, optional
        The length of a cube's edge, such as `Model.cell_size`; the axes are in cubes unless it is given.

    Returns
    -------
    matplotlib.axes.Axes
    """
    values = results.values(column)
    if results.coordinates is None:
        raise ValueError(f"A picture needs coordinates, and {results.path} has no columns x, y, z and f.")
    z = _layer(z, results.bounds, "the results")
    size = _length(cell_size)
    ax = _axes(ax)
    here = results.coordinates[:, 2] == z
    if not here.any():
        raise ValueError(f"There are no rows with z = {z}.")
    x, column_of = np.unique(results.coordinates[here, 0], return_inverse=True)
    y, row_of = np.unique(results.coordinates[here, 1], return_inverse=True)
    require_memory((len(y), len(x)), 8, "A picture")
    field = np.full((len(y), len(x)), np.nan)
    field[row_of, column_of] = values[here]
    finite = np.abs(field[np.isfinite(field)])
    most = float(finite.max()) if finite.size and finite.max() > 0 else 1.0
    mesh = ax.pcolormesh(size * _edges(x), size * _edges(y), field, cmap="RdBu_r", vmin=-most, vmax=most)
    name = results.column_names[column] if isinstance(column, int) else column
    ax.figure.colorbar(mesh, ax=ax, label=name, shrink=0.8)
    _label(ax, z, in_cubes=cell_size is None)
    return ax


def _edges(coordinates: npt.NDArray[Any]) -> npt.NDArray[np.float64]:
    """The borders between coordinates in ascending order, and the outer ones."""
    middle = coordinates.astype(float)
    between = (middle[1:] + middle[:-1]) / 2
    first, last = (between[0] - middle[0], middle[-1] - between[-1]) if len(between) else (0.5, 0.5)
    return np.concatenate([[middle[0] - first], between, [middle[-1] + last]])
