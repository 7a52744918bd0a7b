"""Results of both formats."""
import csv
import gc
import math
import pickle

import numpy as np
import pytest
from conftest import PLATE

import orvalo


@pytest.fixture(scope="module", params=["txt", "mat"])
def plate(request):
    return orvalo.read_results(PLATE / f"plate-results.{request.param}")


@pytest.fixture(scope="module")
def rows():
    with open(PLATE / "plate-results.txt", newline="") as file:
        return [[float(field) for field in row] for row in list(csv.reader(file, delimiter="\t"))[1:]]


def test_arrays_are_read_only_views_of_the_file(plate, rows):
    assert len(plate) == len(rows) and len(plate.column_names) == 3 and plate.index_names == ("x", "y", "z", "f")
    assert plate.coordinates.tolist() == [row[:3] for row in rows]
    for column, name in enumerate(plate.column_names):
        assert plate.values(name).tolist() == [row[4 + column] for row in rows]
        assert np.shares_memory(plate.values(name), plate.values(column))
        with pytest.raises(ValueError):
            plate.values(column)[0] = 1
    assert np.shares_memory(plate.coordinates, plate._data.indices())
    for text in (str(plate), plate._repr_html_()):
        assert all(word in text for word in ("15000", "199 x 150 x 1", "-0.148593 to 0.176312"))


def test_views_outlive_the_results(rows):
    for kind in ("txt", "mat"):
        values = orvalo.read_results(PLATE / f"plate-results.{kind}").values(1)
        coordinates = orvalo.read_results(PLATE / f"plate-results.{kind}").coordinates
        gc.collect()
        assert values.tolist() == [row[5] for row in rows]
        assert coordinates[:, 2].tolist() == [row[2] for row in rows]


def test_long_text_is_copied_from_its_blocks(results_file):
    count = 150000
    lines = [f"{i % 300}\t{i % 7}\t1\t0\t{i}\t-{i}" for i in range(count)]
    results = orvalo.read_results(results_file("x\ty\tz\tf\tu\tv", *lines))
    values = results.values("v")
    assert values.flags.owndata or not np.shares_memory(values, results.values("v"))
    assert not values.flags.writeable and not results.indices.flags.writeable
    assert (values == -np.arange(count)).all()
    assert (results.coordinates[:, 0] == np.arange(count) % 300).all()
    assert results.coordinates[-1].tolist() == [(count - 1) % 300, (count - 1) % 7, 1]


def test_at(plate, rows):
    x, y, z, _, _, v, _ = map(np.array, zip(*rows))
    x, y, z = x.astype(int), y.astype(np.uint64), z.astype(np.int8)
    assert (plate.at(1, x, y, z) == v).all()
    assert plate.at(2, 100, 75, 4) == 0.1487396138 and isinstance(plate.at(2, 100, 75, 4), float)
    grid = plate.at(1, np.array([[2], [1]]), [1, 2, 3], 4, default=-5)
    assert grid.shape == (2, 3) and grid[1].tolist() == [-5] * 3 and grid[0, 0] == v[0]
    outside = [0, -1, 40000, 2**40, -(2**63), 2 + 2**16, 2 + 2**32]
    assert np.isnan(plate.at(0, outside, 1, 4)).all()
    assert math.isnan(plate.at(0, 100, 75, -4)) and plate.at(0, [], 1, 4).shape == (0,)
    dense = plate.dense(1)
    assert dense.shape == (199, 150, 1) and np.isnan(dense[1]).all()
    assert (dense[x - 2, y.astype(int) - 1, 0] == v).all()


@pytest.mark.parametrize(
    ("call", "error", "said"),
    [
        (lambda r: r.values("q"), KeyError, "no column 'q'; there are"),
        (lambda r: r.values(3), IndexError, "no column 3; there are 3"),
        (lambda r: r.values(-1), IndexError, "no column -1"),
        (lambda r: r.dense(2.0), TypeError, "a name or a number, not float"),
        (lambda r: r.at(0, 1.0, 1, 1), TypeError, "x is an integer or an array of integers, not of float64"),
        (lambda r: r.at(0, 1, "1", 1), TypeError, "y is an integer"),
        (lambda r: r.at(0, 1, 1, 2**70), TypeError, "z is an integer"),
        (lambda r: r.at(0, [1, 2], [1, 2, 3], 1), ValueError, "shape mismatch"),
        (lambda r: r.at(0, 1, 1, 1, default="none"), ValueError, "could not convert"),
    ],
)
def test_wrong_queries(plate, call, error, said):
    with pytest.raises(error, match=said):
        call(plate)


def test_files_of_unusual_columns(results_file):
    """The last of several rows counts; no coordinates; a name twice; no rows."""
    twice = orvalo.read_results(results_file("x\ty\tz\tf\tu\tu\tx", "1\t1\t1\t0\t1\t2\t3", "1\t1\t1\t0\t4\t5\t6"))
    assert twice.at("u", 1, 1, 1) == 4 and twice.dense(1).tolist() == [[[5]]]
    dataset = twice.to_xarray()
    assert list(dataset.data_vars) == ["u", "u_2", "x_2"] and dataset.u_2.values.tolist() == [2, 5]
    assert list(twice.to_pandas().columns) == ["x", "y", "z", "f", "u", "u_2", "x_2"]
    bare = orvalo.read_results(results_file("time\tu", "0\t1", "1\t2"))
    assert bare.coordinates is None and bare.values("u").tolist() == [1, 2] and math.isnan(bare.at(0, 0, 0, 0))
    assert list(bare.to_xarray().coords) == [] and "2 rows of time, u" in repr(bare)
    with pytest.raises(ValueError, match="needs coordinates"):
        bare.dense(0)
    none = orvalo.read_results(results_file("x\ty\tz\tf\tu"))
    assert none.values(0).shape == (0,) and none.coordinates.shape == (0, 3) and none.dense(0).size == 0
    assert len(none.to_pandas()) == 0 and "rows" in str(none)


def test_tables_of_the_plate(plate, rows):
    dataset, frame = plate.to_xarray(), plate.to_pandas()
    name = plate.column_names[2]
    assert dataset[name].dims == ("row",) and set(dataset.coords) == {"x", "y", "z", "f"}
    assert dataset[name].values.tolist() == frame[name].tolist() == [row[6] for row in rows]
    assert frame["y"].tolist() == dataset["y"].values.tolist() == [row[1] for row in rows]


def test_pickling_reopens_by_path(plate):
    again = pickle.loads(pickle.dumps(plate))
    assert again.path == plate.path and (again.values(0) == plate.values(0)).all()
