"""Writing, held against reading."""
import errno
import os
import runpy
import stat
import sys

import numpy as np
import pytest
from conftest import PLATE, cubes

import orvalo
from orvalo import Actuator, Definition, Dump, Material, Method, OutputFile, PointSet, Sensor, Table

STEEL, WAX = Material("steel", 8, 5, 3), Material("wax", density_coefficients=(0, 0.5, 1),
                                                  young_coefficients=(0, -1, 100), poisson_coefficients=(0, 0, 0.25))
PULSE = Definition(orvalo.PulseType.HALF_PULSE, orvalo.Waveform.GAUSSIAN, duration=8)
POINTS = np.array([(-3, 2, 1, 2, 1), (4, -5, 0, 0, 0)],
                  dtype=[(name, int) for name in ("x", "y", "table_u", "table_v", "table_w")])
PARTS = {
    "actuators": [Actuator((1, 2, 3), Method.FORCE, "uw", PULSE, start_steps=2, factors=(1, 2, -3)),
                  Actuator((0, 0, 0), Method.ABSOLUTE, "", table=7, amplitude=-1.5, invert=True)],
    "piezos": [orvalo.Piezo(3, (1, 1, 1), "y", POINTS, Method.FORCE, 0.25, 9,
                            {id: Table(id, np.arange(5) / 7 * id) for id in (1, 2)})],
    "tables": [Table(7, np.array([0.1, -2e-300, 3], dtype=np.float32)), Table(-1, np.zeros(3))],
    "sensors": [Sensor(4, (32767, 0, 1), "mvu", OutputFile("out.txt", orvalo.WriteMode.APPEND))],
    "dumps": [Dump(9, ("w2", "u0"), OutputFile("d.mat", file_format=orvalo.FileFormat.MAT))],
    "sets": [PointSet(5, [[1, 2, 3], [32767, 0, 0]])],
}
RULES = {"cell_size": 0.125, "time_step": 3e-7, "sensors": PARTS["sensors"], "actuators": PARTS["actuators"][:1]}


def described(model):
    """All that a model says, comparable."""
    arrays = [model.cubes, model.damping, model.temperatures, *(s.points for s in model.sets.values()),
              *(t.samples for t in model.tables.values()), *(p.points for p in model.piezos),
              *(t.samples for p in model.piezos for t in p.tables.values())]
    facts = (model.cell_size, model.time_step, model.start_time, model.room_temperature, model.bounds, model.materials,
             model.actuators, model.sensors, model.dumps, list(model.tables), list(model.sets), repr(model.piezos),
             [(p.amplitude, p.start_steps, p.method, list(p.tables)) for p in model.piezos])
    return facts, [None if array is None else array.tolist() for array in arrays]


def test_everything_comes_back(tmp_path):
    path = tmp_path / "all.model"
    grid = np.array([[[4, 0], [0, 9]], [[9, 9], [0, 0]]], dtype=np.int64)
    temperatures = np.arange(8).reshape(2, 2, 2) / 3
    damping = np.array([(6, 0, 2, 4, 0.5)], dtype=[(n, float if n == "coefficient" else int) for n in
                                                   ("x", "y", "z", "material", "coefficient")])
    orvalo.write_model(path, materials={9: STEEL, 4: WAX}, cell_size=0.125, time_step=3e-7, start_time=2.5e-6,
                       grid=grid, origin=(5, 6, 7), temperatures=temperatures, damping=damping, room_temperature=-3, **PARTS,
                       comment="all\nof it")
    model = orvalo.read_model(path)
    assert path.read_text().startswith("; all\n; of it\n")
    assert (model.cell_size, model.time_step, model.start_time) == (0.125, 0.3 * 1e-6, 2.5 * 1e-6)
    assert (model.grid()[:, 6:, 5:] == grid).all() and model.bounds.lower == (5, 0, 2)
    assert model.cubes[["x", "y", "z"]].tolist() == [(5, 6, 7), (6, 6, 7), (6, 6, 8), (5, 7, 8)]
    assert model.temperatures.tolist() == [temperatures[x - 5, y - 6, z - 7] for x, y, z, _ in model.cubes.tolist()]
    assert model.damping.tolist() == [(6, 0, 2, 2, 0.5)] and model.room_temperature == -3
    assert [(m.number, m.name, m.format) for m in model.materials[1:]] == [(9, "steel", 0), (4, "wax", 2)]
    assert model.actuators[1] == PARTS["actuators"][1]
    assert model.actuators[0].factors == (1, 2, -3) and model.actuators[0].definition == PULSE
    assert (list(model.tables), model.tables[7].samples.tolist()) == (
        [-1, 7], PARTS["tables"][0].samples.astype(float).tolist())
    patch, given = model.piezos[0], PARTS["piezos"][0]
    assert sorted(patch.points.tolist()) == sorted(POINTS.tolist()) and repr(patch) == repr(given)
    assert patch.tables[1].samples.tolist() == given.tables[1].samples.tolist()
    assert (patch.amplitude, patch.start_steps, patch.method) == (0.25, 9, Method.FORCE)
    assert model.sensors == {4: PARTS["sensors"][0]} and model.dumps == {9: PARTS["dumps"][0]}
    assert model.sets[5].points.tolist() == [[1, 2, 3], [32767, 0, 0]]
    model.save(tmp_path / "again.model", cubes_file="grid.cubes")
    assert described(orvalo.read_model(tmp_path / "again.model")) == described(model)
    rows = model.cubes.copy()
    rows["material"] = model.numbers(model.cubes)
    orvalo.write_model(path, materials=model.materials, cubes=rows, temperatures=model.temperatures, overwrite=True,
                       **RULES)
    assert orvalo.read_model(path).cubes.tolist() == model.cubes.tolist()


def test_the_plate_is_what_its_script_writes(tmp_path, monkeypatch):
    monkeypatch.setattr(sys, "argv", ["make-plate.py", str(tmp_path)])
    runpy.run_path(str(PLATE / "make-plate.py"), run_name="__main__")
    names = sorted(os.listdir(tmp_path))
    assert names == sorted(name for name in os.listdir(PLATE) if not name.endswith(".py"))
    assert described(orvalo.read_model(tmp_path / "plate.model")) == described(orvalo.read_model(PLATE / "plate.model"))
    for name in ("plate-results.txt", "plate-results.mat"):
        made, given = orvalo.read_results(tmp_path / name), orvalo.read_results(PLATE / name)
        assert (made.indices == given.indices).all() and made.column_names == given.column_names
        for column in range(3):
            assert np.allclose(made.values(column), given.values(column), rtol=1e-8, atol=1e-12)
    assert (PLATE / "plate.model").read_text() == (tmp_path / "plate.model").read_text()


@pytest.mark.parametrize("suffix", ["txt", "mat"])
def test_results_come_back(tmp_path, suffix):
    path = tmp_path / f"new.{suffix}"
    cubes3 = np.array([[1, -2, 3], [32767, -32768, 0], [1, -2, 3]])
    values = np.array([[0.1, np.nan, -0.0], [1e308, np.inf, 5e-324]]).T
    for coordinates, given in [
        (cubes3, values), (cubes3.astype(float), values), (cubes3.astype(np.int16), np.asfortranarray(values)),
        (np.asfortranarray(cubes3), {"a": values[:, 0], "b": values[:, 1]}), (cubes3.tolist(), values.tolist()),
        (cubes3[::-1][::-1], values[::-1][::-1]),
    ]:
        names = None if isinstance(given, dict) else ["a", "b"]
        orvalo.write_results(path, coordinates, given, names, overwrite=True)
        results = orvalo.read_results(path)
        assert results.coordinates.tolist() == cubes3.tolist()
        assert np.array_equal(np.stack([results.values(0), results.values(1)], axis=1), values, equal_nan=True)
        assert results.column_names == (("a", "b") if suffix == "txt" else ("v1", "v2"))
    orvalo.write_results(path, cubes3, np.float32([1, 2, 3]), overwrite=True)
    assert orvalo.read_results(path).values("v1").tolist() == [1, 2, 3]
    other = {"txt": "mat", "mat": "text"}[suffix]
    orvalo.write_results(path, cubes3, values, format=other, overwrite=True)
    assert path.read_bytes().startswith(b"MATLAB") == (other == "mat")
    assert stat.S_IMODE(path.stat().st_mode) & 0o400


def test_results_without_coordinates(tmp_path):
    orvalo.write_results(tmp_path / "bare.txt", None, {"t": [1, 2]})
    assert orvalo.read_results(tmp_path / "bare.txt").values("t").tolist() == [1, 2]
    with pytest.raises(orvalo.WriteError):
        orvalo.write_results(tmp_path / "bare.mat", None, {"t": [1, 2]})


ONE = np.ones((1, 1, 1), dtype=int)
ROWS = np.array([(0, 0, 0, 1)], dtype=[(name, int) for name in ("x", "y", "z", "material")])


def model_with(**changes):
    return lambda path: orvalo.write_model(path, **{"grid": ONE, "materials": [STEEL], **RULES, **changes})


def results_with(coordinates=((1, 2, 3),), values=(1.0,), **changes):
    return lambda path: orvalo.write_results(path, coordinates, values, **changes)


@pytest.mark.parametrize(
    ("write", "error", "said"),
    [
        (model_with(cubes=ROWS), TypeError, "Either grid or cubes"),
        (model_with(grid=None), TypeError, "Either grid or cubes"),
        (model_with(grid=ONE[0]), ValueError, "three dimensions, not 2"),
        (model_with(grid=ONE * 1.0), TypeError, "grid holds integers, not float64"),
        (model_with(grid=ONE * 3), ValueError, "grid has the material 3; there are 1"),
        (model_with(grid=ONE * 300), ValueError, "grid has the material 300"),
        (model_with(grid=ONE * 0), orvalo.WriteError, "no cubes"),
        (model_with(origin=(0, 32768, 0)), ValueError, "y of a cube of grid is from 0 to 32767, not 32768"),
        (model_with(origin=(0, 0, -1)), ValueError, "z of a cube of grid is from 0 to 32767, not -1"),
        (model_with(temperatures=[1.0]), ValueError, r"temperatures is of the shape \(1,\), and \(1, 1, 1\)"),
        (model_with(grid=None, cubes=ONE), TypeError, "structured array of one dimension with the fields x, y, z, mat"),
        (model_with(grid=None, cubes=ROWS, temperatures=[1, 2]), ValueError, "temperatures is of the shape"),
        (model_with(damping=ROWS), TypeError, "damping is a structured array .* coefficient"),
        (model_with(materials={0: STEEL}), ValueError, "steel has the number 0; materials have numbers from 1"),
        (model_with(materials=[STEEL, Material("b", number=1)]), ValueError, "Two materials have the same number"),
        (model_with(materials={1: "steel"}), TypeError, "of the type Material, not str"),
        (model_with(materials=[Material("Steel", 8, 5, 3)]), orvalo.WriteError, "read back in lower case"),
        (model_with(cell_size=0), orvalo.WriteError, "cell size"),
        (model_with(time_step="fast"), ValueError, "could not convert"),
        (model_with(actuators=[Actuator((1, 2, 3), Method.FORCE, "u", table=5)]), orvalo.WriteError, "no table 5"),
        (model_with(actuators=[Actuator((1, 2, 40000), Method.FORCE, "u", PULSE)]), ValueError,
         r"position cannot be \(1, 2, 40000\)"),
        (model_with(actuators=[Actuator((1, 2), Method.FORCE, "u", PULSE)]), ValueError, "position"),
        (model_with(actuators=[Actuator((1, 2, 3), Method.FORCE, "q", PULSE)]), ValueError, "direction.*u, v and w"),
        (model_with(sensors=[Sensor("a", (1, 2, 3), "u", OutputFile("f.txt"))]), ValueError, "id cannot be 'a'"),
        (model_with(sensors=[Sensor(1, (1, 2, 3), "x", OutputFile("f.txt"))]), orvalo.WriteError, "Sensor no. 1"),
        (model_with(sets=[PointSet(1, [1, 2, 3])]), ValueError, r"shape \(n, 3\), not \(3,\)"),
        (model_with(sets=[PointSet(1, [[1.0, 2, 3]])]), TypeError, "holds integers, not float64"),
        (model_with(tables=[Table(1, np.ones((2, 2)))]), ValueError, "table 1 are an array of one dimension, not 2"),
        (model_with(tables=[Table(1, np.array([np.nan]))]), orvalo.WriteError, "sample 1 is not a number"),
        (model_with(tables=[Table(1, np.ones(2)), Table(1, np.ones(3))]), ValueError, "tables have the ID 1"),
        (model_with(piezos=[orvalo.Piezo(1, (0, 0, 0), "w", POINTS)]), ValueError, "axis of piezo 1 is x, y or z"),
        (model_with(piezos=[orvalo.Piezo(1, (0, 0, 0), "x", ROWS)]), TypeError, "fields x, y, table_u"),
        (model_with(piezos=[orvalo.Piezo(1, (0, 0, 0), "x", POINTS[[0, 0]], Method.FORCE)]), orvalo.WriteError,
         r"\(-3,2\)"),
        (model_with(cubes_file="../a.cubes"), orvalo.WriteError, "file for cubes"),
        (results_with(coordinates=[[1, 2]]), ValueError, r"shape \(1, 3\) or \(1, 4\), not \(1, 2\)"),
        (results_with(coordinates=[[1, 2, 3]] * 2), ValueError, "coordinates is of the shape"),
        (results_with(coordinates=[[1, 2, 3.5]]), ValueError, "whole numbers; row 0 has 3.5"),
        (results_with(coordinates=[[1, 2, np.inf]]), ValueError, "whole numbers; row 0 has inf"),
        (results_with(coordinates=[["1", "2", "3"]]), TypeError, "coordinates holds integers"),
        (results_with(coordinates=[[1, 2, 32768]]), orvalo.WriteError, "32768"),
        (results_with(values=np.ones((1, 1, 1))), ValueError, "one or two dimensions, not 3"),
        (results_with(values={"a": [1], "b": [1, 2]}), ValueError, "equally long"),
        (results_with(values={"a": [1]}, names=["b"]), TypeError, "given twice"),
        (results_with(names=["a", "b"]), ValueError, "2 names for 1 columns"),
        (results_with(names=["a\tb"]), orvalo.WriteError, "tab"),
        (results_with(format="csv"), ValueError, 'format is "text" or "mat", not \'csv\''),
        (results_with(values=np.ones((1, 10)), format="mat"), orvalo.WriteError, "nine|9"),
    ],
)
def test_what_cannot_be_written(tmp_path, write, error, said):
    with pytest.raises(error, match=said):
        write(tmp_path / "new")
    assert os.listdir(tmp_path) == []


def test_files_that_are_there(tmp_path, model_file):
    path = model_file(grid=cubes((5, 3, 1, 9)))
    model, before = orvalo.read_model(path), path.read_text()
    for write in (model_with(), results_with(), model.save):
        with pytest.raises(FileExistsError, match="overwrite=True"):
            write(path)
        for place, error in [(tmp_path / "none" / "new", FileNotFoundError), (path / "new", NotADirectoryError),
                             (tmp_path, IsADirectoryError), (tmp_path / ("n" * 300), OSError), ("", FileNotFoundError)]:
            with pytest.raises(error):
                write(place)
    assert path.read_text() == before
    with pytest.raises(ValueError, match="Only the cubes were read"):
        orvalo.read_model(path, cubes_only=True).save(tmp_path / "new")
    path.chmod(0o444)
    with pytest.raises(PermissionError, match="read-only") as caught:
        model.save(path, overwrite=True)
    assert (caught.value.filename, caught.value.errno) == (str(path), errno.EACCES)
    path.chmod(0o644)
    model.save(path, overwrite=True)
    assert path.read_text() != before and described(orvalo.read_model(path)) == described(model)


def test_ctrl_c_ends_a_write(tmp_path, ctrl_c):
    rows = np.zeros((1000000, 3), dtype=int)
    values = np.random.default_rng(0).normal(size=(len(rows), 4))
    ctrl_c(0.3)
    with pytest.raises(KeyboardInterrupt):
        for _ in range(30):
            orvalo.write_results(tmp_path / "long.txt", rows, values, overwrite=True)
    assert os.listdir(tmp_path) in ([], ["long.txt"])

    class Enough(Exception):
        pass

    def stop(fraction):
        raise Enough

    with pytest.raises(Enough):
        orvalo.write_results(tmp_path / "long.txt", rows, values, progress=stop, overwrite=True)
