"""Many results by xarray and Dask, in one process and in two."""
import os
import pickle

import numpy as np
import pytest
import xarray as xr

import orvalo
from orvalo import xarray_backend

RUNS, ROWS = 6, 40


@pytest.fixture
def study(results_file):
    """Files of a study, and all their values as an array over run, row and column."""
    values = np.random.default_rng(5).normal(size=(RUNS, ROWS, 2)).round(6)
    for run in range(RUNS):
        lines = [f"{row}\t{run % 1}\t2\t0\t{u}\t{v}" for row, (u, v) in enumerate(values[run].tolist())]
        path = results_file("x\ty\tz\tf\tu\tv", *lines, name=f"run-{run}.txt")
    return path.parent / "run-*.txt", values


def open_study(pattern):
    return xr.open_mfdataset(str(pattern), engine="orvalo", parallel=True, combine="nested", concat_dim="run")


def test_datasets_are_read_when_needed(study, monkeypatch):
    pattern, values = study
    path = pattern.parent / "run-2.txt"
    dataset = xr.open_dataset(path, engine="orvalo")
    eager = orvalo.read_results(path).to_xarray()
    read = []
    monkeypatch.setattr(xarray_backend, "_READERS", xarray_backend._Readers())
    monkeypatch.setattr(xarray_backend, "read_results", lambda path: read.append(path) or orvalo.read_results(path))
    again = pickle.loads(pickle.dumps(dataset))
    assert dataset.sizes == {"row": ROWS} and dataset.u.dtype == float and dataset.z.dtype == np.int16 and not read
    assert (dataset.u[5:9:2] == values[2, 5:9:2, 0]).all() and read == [str(path)]
    assert dataset.v.isel(row=[3, 1, 3]).values.tolist() == values[2, [3, 1, 3], 1].tolist()
    xr.testing.assert_identical(dataset.load(), eager)
    xr.testing.assert_identical(again.load(), eager)
    assert len(read) == 1
    assert list(xr.open_dataset(path, engine="orvalo", drop_variables=["u", "f"]).variables) == ["v", "x", "y", "z"]


def test_only_what_was_read_last_is_kept(study, monkeypatch):
    pattern, _ = study
    readers = xarray_backend._Readers()
    files = [xarray_backend._File.now(str(pattern.parent / f"run-{run}.txt")) for run in range(3)]
    monkeypatch.setattr(xarray_backend, "_KEPT_BYTES", files[0].size + files[1].size + 5)
    first, second = map(readers.get, files[:2])
    assert readers.get(files[0]) is first
    readers.get(files[2])
    assert readers.get(files[0]) is first and readers.get(files[1]) is not second


def test_a_file_that_changed_is_not_taken_for_the_one_opened(study, monkeypatch):
    path = study[0].parent / "run-0.txt"
    dataset = xr.open_dataset(path, engine="orvalo")
    monkeypatch.setattr(xarray_backend, "_READERS", xarray_backend._Readers())
    path.write_text(path.read_text() + "1\t1\t1\t0\t0\t0\n")
    with pytest.raises(RuntimeError, match="run-0.txt has changed since it was opened"):
        dataset.u.load()
    os.remove(path)
    for read in (dataset.v.load, lambda: xr.open_dataset(path, engine="orvalo")):
        with pytest.raises(FileNotFoundError):
            read()


def reduce(dataset):
    return xr.Dataset({"mean": dataset.u.mean("run"), "most": abs(dataset.v).max("run")})


@pytest.mark.unsanitized
def test_two_workers_find_what_one_process_finds(study):
    distributed = pytest.importorskip("distributed")
    pattern, values = study
    alone = reduce(open_study(pattern)).compute(scheduler="synchronous")
    assert np.allclose(alone.mean("row")["mean"], values[:, :, 0].mean(), rtol=1e-12)
    assert (alone.most == np.abs(values[:, :, 1]).max(axis=0)).all()
    assert list(alone.coords) == ["x", "y", "z", "f"] and alone.x.dims == ("row",)
    cluster = distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None)
    with cluster, distributed.Client(cluster) as client:
        assert len(client.scheduler_info()["workers"]) == 2
        together = reduce(open_study(pattern)).compute()
        held = client.run(lambda: len(xarray_backend._READERS._results))
    xr.testing.assert_identical(together, alone)
    assert sum(held.values()) >= RUNS
