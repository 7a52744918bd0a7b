"""Measures the Python package beside the library (the program that ORVALO_READ_TIMER names) and beside what else reads
the same files, in turn in one run. Tells the medians of wall-clock times and their ratios."""
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

import distributed
import numpy as np
import pandas
import scipy.io
import xarray as xr

import orvalo

REPETITIONS = 7
RUNS = 32


def write_files(folder):
    """A model of two million cubes, and results of half a million rows as text and as a MAT-file."""
    random = np.random.default_rng(1)
    materials = [orvalo.Material(name, 7.8e-6, 5.9e6, 3.2e6) for name in ("steel", "copper", "glass")]
    grid = random.integers(1, 4, (200, 100, 100))
    pulse = orvalo.Definition(orvalo.PulseType.HALF_PULSE, orvalo.Waveform.SINE, duration=1)
    orvalo.write_model(
        folder / "large.model",
        grid=grid,
        materials=materials,
        cell_size=1,
        time_step=1e-7,
        actuators=[orvalo.Actuator((1, 1, 1), orvalo.Method.FORCE, "w", pulse)],
        sensors=[orvalo.Sensor(1, (1, 1, 1), "u", orvalo.OutputFile("sensor.txt"))],
    )
    coordinates = np.indices(grid.shape).reshape(3, -1).T[::4]
    values = random.normal(size=(len(coordinates), 3))
    for suffix in ("txt", "mat"):
        orvalo.write_results(folder / f"large.{suffix}", coordinates, values, names=["u", "v", "w"])
    return coordinates


class Library:
    """The library by itself, in a process of its own."""

    def __init__(self):
        self._timer = subprocess.Popen(
            [os.environ["ORVALO_READ_TIMER"]], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
        )

    def seconds(self, kind, path):
        self._timer.stdin.write(f"{kind} {path}\n")
        self._timer.stdin.flush()
        return float(self._timer.stdout.readline())


def timed(call):
    begin = time.perf_counter()
    call()
    return time.perf_counter() - begin


def compare(title, contestants):
    """Prints the medians of all, and how each compares with the first. Each is a name and a function that times it."""
    times = {name: [] for name, _ in contestants}
    for _ in range(REPETITIONS):
        for name, measure in contestants:
            times[name].append(measure())
    first = statistics.median(times[contestants[0][0]])
    print(title)
    for name, taken in times.items():
        median = statistics.median(taken)
        print(f"  {name:<34}{median * 1e3:>10.1f} ms{median / first:>9.3f}")
    sys.stdout.flush()


def reduce(pattern):
    """The mean of a column over all runs of a study, and the highest value of another."""
    # All runs have the same rows, and so no coordinates to compare.
    same = {"coords": "minimal", "compat": "override"}
    runs = xr.open_mfdataset(pattern, engine="orvalo", parallel=True, combine="nested", concat_dim="run", **same)
    return xr.Dataset({"mean": runs.u.mean("run"), "most": abs(runs.v).max("run")})


def study(folder):
    """A study of many text results, reduced by one process and by two workers, which must find the same."""
    cubes = np.indices((200, 200, 5)).reshape(3, -1).T
    random = np.random.default_rng(2)
    for run in range(RUNS):
        orvalo.write_results(folder / f"run-{run:03}.txt", cubes, random.normal(size=(len(cubes), 3)), ["u", "v", "w"])
    pattern = str(folder / "run-*.txt")
    begin = time.perf_counter()
    alone = reduce(pattern).compute(scheduler="synchronous")
    one = time.perf_counter() - begin
    with distributed.LocalCluster(2, threads_per_worker=1, processes=True, dashboard_address=None) as cluster:
        with distributed.Client(cluster) as client:
            client.run(lambda: orvalo)
            begin = time.perf_counter()
            together = reduce(pattern).compute()
            two = time.perf_counter() - begin
    xr.testing.assert_identical(together, alone)
    print(f"A study of {RUNS} text results of {len(cubes):,} rows")
    print(f"  {'one process':<34}{one * 1e3:>10.1f} ms\n  {'two workers':<34}{two * 1e3:>10.1f} ms{two / one:>9.3f}")


def main():
    library = Library()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        cubes = write_files(folder)
        model, text, mat = (folder / f"large.{suffix}" for suffix in ("model", "txt", "mat"))
        compare("A model of 2,000,000 cubes", [
            ("library", lambda: library.seconds("model", model)),
            ("orvalo.read_model", lambda: timed(lambda: orvalo.read_model(model))),
        ])
        compare("Text results of 500,000 rows", [
            ("library", lambda: library.seconds("results", text)),
            ("orvalo.read_results", lambda: timed(lambda: orvalo.read_results(text))),
            ("pandas.read_csv", lambda: timed(lambda: pandas.read_csv(text, sep="\t"))),
            ("numpy.loadtxt", lambda: timed(lambda: np.loadtxt(text, skiprows=1))),
        ])
        compare("The same as a MAT-file", [
            ("library", lambda: library.seconds("results", mat)),
            ("orvalo.read_results", lambda: timed(lambda: orvalo.read_results(mat))),
            ("scipy.io.loadmat", lambda: timed(lambda: scipy.io.loadmat(mat))),
        ])
        results = orvalo.read_results(mat)
        million = np.concatenate([cubes, cubes])
        loop = million[:50000].tolist()
        x, y, z = million.T
        compare("Values at 1,000,000 cubes", [
            ("results.at with arrays", lambda: timed(lambda: results.at(0, x, y, z))),
            ("a loop of results.at (20 x 50,000)", lambda: 20 * timed(lambda: [results.at(0, *cube) for cube in loop])),
        ])
        study(folder)


if __name__ == "__main__":
    main()
