"""Models: arrays against the numbers in the text, and that they outlive their owners."""
import contextlib
import gc
import math
import pickle
import sys

import numpy as np
import pytest
from conftest import ANALYSIS, PLATE, cubes

import orvalo

PLATE_MATERIALS = [0, 1, 2, 3, 7]


def plain_rows(section):
    """The numbers of the rows of a section, without the package."""
    text = (PLATE / "plate-grid.cubes").read_text().split(section)[1].split("data")[1].split("END")[0]
    return [line.split() for line in text.split("\n") if line.strip()]


@pytest.fixture(scope="module")
def plate():
    return orvalo.read_model(PLATE / "plate.model")


def test_bulk_arrays_are_read_only_views_of_the_text(plate):
    grid, damping = plain_rows("CUBES"), plain_rows("DAMPING")
    assert [plate.cubes.itemsize, plate.damping.itemsize] == [7, 15]
    for array, rows in [(plate.cubes, grid), (plate.damping, damping)]:
        assert [tuple(row) for row in array[["x", "y", "z"]].tolist()] == [tuple(map(int, row[:3])) for row in rows]
        assert [PLATE_MATERIALS[index] for index in array["material"]] == [int(row[3]) for row in rows]
    assert plate.damping["coefficient"].tolist() == [float(row[4]) for row in damping]
    assert plate.temperatures.tolist() == [float(row[4]) for row in grid]
    views = [plate.cubes, plate.damping, plate.temperatures, plate.tables[1].samples, plate.sets[2].points]
    for view in views:
        assert not view.flags.owndata
        with pytest.raises(ValueError):
            view[0] = 0
        with pytest.raises(ValueError):
            view.flags.writeable = True
    assert np.shares_memory(plate.cubes, orvalo.Model(plate._data, "", False, True).cubes)


def test_views_outlive_their_owners():
    def read():
        model = orvalo.read_model(PLATE / "plate.model")
        return model.cubes, model.damping["coefficient"], model.temperatures, model.tables[1].samples, \
            model.piezos[0].tables[2].samples, model.sets[1].points[3:]

    kept = read()
    for _ in range(3):
        others = read()
        del others
    gc.collect()
    for view, again in zip(kept, read()):
        assert (view == again).all()


@pytest.mark.unsanitized
def test_memory_is_let_go_with_the_last_view():
    pages = []
    for _ in range(100):
        orvalo.read_model(PLATE / "plate.model").cubes["x"].max()
        orvalo.read_results(PLATE / "plate-results.txt").values(0)[5:]
        with open("/proc/self/statm") as statm:
            pages.append(int(statm.read().split()[1]))
    assert pages[-1] - pages[20] < 1000  # A model takes 500.


def test_references_are_let_go(model_file):
    good, bad = str(model_file()), str(model_file("bad.model", output="gone"))
    kept = [good, bad, [].append, np.dtype("f8"), orvalo._orvalo.Failure, None, orvalo.read_model(good)]

    def use(model):
        for path in (good, bad):
            with contextlib.suppress(orvalo.ReadError):
                orvalo.read_model(path, progress=kept[2])
        orvalo.check(bad, progress=kept[2])
        return model.cubes["x"], model.wave_speeds(), model.tables[3].samples, model.sensors, str(model), model.grid()

    counts = []
    for _ in range(30):
        use(kept[-1])
        gc.collect()
        counts.append([sys.getrefcount(thing) for thing in kept])
    assert all(abs(late - early) < 10 for late, early in zip(counts[-1], counts[5])), counts


def test_parts_of_the_plate(plate):
    assert (plate.cell_size, plate.time_step, plate.start_time, plate.room_temperature) == (0.5, 4e-8, 0, 22)
    assert plate.bounds == (1, 208, 1, 150, 1, 4) and plate.bounds.shape == (208, 150, 4)
    steel, epoxy = plate.materials[2:4]
    assert (steel.number, steel.name, steel.format, steel.vp, steel.at(99)) == (2, "steel", 0, 5.92e6, steel)
    assert (epoxy.format, epoxy.young_coefficients) == (2, (-90, -9000, 3.4e6))
    at60 = epoxy.at(60)
    young, poisson = 3.4e6 - 9000 * 60 - 90 * 3600, 0.36 + 0.0004 * 60
    assert at60.vs == pytest.approx(math.sqrt(young / (2 * (1 + poisson)) / 1.16e-6), rel=1e-12)
    assert at60 == orvalo.Material.from_moduli("epoxy", 1.16e-6, young, poisson, number=3)
    wave, burst = plate.actuators
    assert (wave.input, wave.definition.type, wave.definition.envelope, wave.table) == (
        orvalo.ActuatorInput.DEFINITION, orvalo.PulseType.CONTINUOUS_WAVE, orvalo.Envelope.HANN_WINDOW, -1)
    assert (burst.direction, burst.factors, burst.invert, burst.start_steps) == ("uv", (1, 0.25, 1), True, 138)
    piezo = plate.piezos[0]
    assert (piezo.axis, piezo.start_steps, len(piezo.tables)) == ("z", 250, 2)
    assert piezo.points[[0, 6]].tolist() == [(0, 0, 0, 0, 0), (1, 1, 1, 1, 2)]
    patch = orvalo.OutputFile("patch.mat", orvalo.WriteMode.CREATE, file_format=orvalo.FileFormat.MAT)
    assert plate.sensors[3] == orvalo.Sensor(3, (130, 75, 4), "m", patch)
    assert plate.dumps[1].output == ("u0", "v0", "w0")
    assert plate.sets[2].points.tolist() == [[1, 1, 1], [200, 1, 1], [1, 150, 1], [200, 150, 1]]
    for text in (str(plate), plate._repr_html_()):
        assert all(word in text for word in ("120000", "208 x 150 x 4", "pzt-ceramic", "22 to 60"))
    assert "plate.model" in repr(plate) and "625 samples of float64" in repr(plate.tables)


def test_small_model(model_file):
    """A box away from the origin, a cube given twice, numbers of materials out of order."""
    model = orvalo.read_model(model_file(), double_precision=False)
    assert model.temperatures is None and len(model.damping) == 0
    assert model.cubes["material"].tolist() == [1, 2, 1, 1]
    grid = model.grid()
    assert (grid.shape, grid[0, 0, 0], grid[2, 0, 0], grid[2, 1, 1], np.count_nonzero(grid)) == ((3, 2, 2), 9, 9, 9, 3)
    vp, vs = model.wave_speeds()
    wax = model.materials[2].at(20)
    assert vp.tolist() == [5, wax.vp, 5, 5] and vs.tolist() == [3, wax.vs, 3, 3] and wax.density == 11
    columns = model.columns()
    assert columns["number"].tolist() == [9, 4, 9, 9] and all(array.flags.c_contiguous for array in columns.values())
    assert (model.actuators[0].start_steps, model.tables[3].samples.dtype) == (3, np.float32)
    only = orvalo.read_model(model_file(), cubes_only=True)
    assert (only.grid() == grid).all() and only.cubes["material"][1] == 4 and len(only.materials) == 1
    with pytest.raises(ValueError, match="only the cubes were read"):
        only.wave_speeds()
    assert str(only) and "box" in only._repr_html_()


def test_temperatures_choose_wave_speeds_and_give_grids(model_file):
    path = model_file(grid=cubes((1, 1, 1, 4, 10), (2, 1, 1, 9, 30.5), temperatures=True))
    model = orvalo.read_model(path)
    assert model.wave_speeds().vp.tolist() == [model.materials[2].at(10).vp, 5]
    dataset = model.to_xarray()
    assert dataset.material.sel(x=1, y=1, z=1) == 4 and dataset.attrs["cell_size"] == 0.5
    assert dataset.temperature.sel(x=2, y=1, z=1) == 30.5 and "damping" not in dataset


def test_xarray_of_the_plate(plate):
    dataset = plate.to_xarray()
    assert dict(dataset.sizes) == {"x": 208, "y": 150, "z": 4}
    assert (dataset.material.values == plate.grid()).all() and np.isnan(dataset.damping.sel(x=1, y=1, z=1))
    assert dataset.damping.sel(x=208, y=1, z=1) == 1.28


def test_a_grid_too_large_is_refused_by_its_size(model_file):
    corners = cubes((0, 0, 0, 9), (32000, 32000, 32000, 9))
    path = model_file(analysis=ANALYSIS, grid=corners, output="")
    model = orvalo.read_model(path, cubes_only=True)
    with pytest.raises(MemoryError, match=r"32001 x 32001 x 32001 cubes takes 30520\.\d GiB"):
        model.grid()


def test_pickling_reopens_by_path(model_file, monkeypatch):
    path = model_file()
    monkeypatch.chdir(path.parent)
    pickled = pickle.dumps(orvalo.read_model(path.name, cubes_only=True, double_precision=False))
    monkeypatch.chdir("/")
    again = pickle.loads(pickled)
    assert again.cubes_only and again.path == str(path) and again.cubes["material"].tolist() == [9, 4, 9, 9]
