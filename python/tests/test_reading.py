"""What goes on while a file is read: progress, signals, threads, errors."""
import concurrent.futures
import os
import pathlib
import pickle
import subprocess
import sys
import threading
import time

import pytest
from conftest import MATERIALS, PLATE, cubes

import orvalo

MODEL_HEAD = b"CUBES count 9000000 format 0 data\n"
SLOW = {
    "model": (lambda path, **how: orvalo.read_model(path, cubes_only=True, **how), MODEL_HEAD, b"1 2 3 1\n" * 5000),
    "results": (orvalo.read_results, b"x\ty\tz\tf\tu\n", b"1\t2\t3\t0\t0.5\n" * 5000),
    "check": (orvalo.check, MODEL_HEAD, b"1 2 3 1\n" * 5000),
}


@pytest.fixture(params=SLOW)
def slow(request, slow_file):
    read, head, portion = SLOW[request.param]
    with slow_file(head, portion) as path:
        yield read, path


def test_ctrl_c_ends_a_read(slow, ctrl_c):
    read, path = slow
    begin = time.monotonic()
    ctrl_c(0.3)
    with pytest.raises(KeyboardInterrupt):
        read(path)
    assert time.monotonic() - begin < 10


class Refused(Exception):
    pass


def test_a_callback_that_raises_ends_a_read(slow):
    read, path = slow
    fractions = []

    def refuse(fraction):
        fractions.append(fraction)
        if len(fractions) == 4:
            raise Refused

    begin = time.monotonic()
    with pytest.raises(Refused):
        read(path, progress=refuse)
    assert 0.4 <= time.monotonic() - begin < 10
    assert all(isinstance(fraction, float) and 0 <= fraction <= 1 for fraction in fractions)


def test_progress_comes_from_the_calling_thread_and_ends_at_one(tmp_path, capsys):
    path = tmp_path / "long.model"
    path.write_bytes(MODEL_HEAD.replace(b"9", b"3") + b"1 2 3 1\n" * 3000000 + b"END END\n")
    calls = []
    read = SLOW["model"][0]
    begin = time.monotonic()
    read(path, progress=lambda fraction: calls.append((fraction, threading.get_ident())))
    fractions = [fraction for fraction, _ in calls]
    assert fractions == sorted(fractions) and fractions[-1] == 1 and {thread for _, thread in calls} == {
        threading.get_ident()}
    assert len(calls) <= 10 * (time.monotonic() - begin) + 1
    read(path, progress=True)
    assert "long.model" in capsys.readouterr().err
    for reader in (orvalo.read_model, orvalo.read_results, orvalo.check):
        with pytest.raises(TypeError, match="progress is None, True or a function of a fraction, not int"):
            reader(path, progress=3)
        for threads, error, said in [(-1, ValueError, "0 or the number of threads, not -1"), (2**70, ValueError, "not 11"),
                                     (2.5, TypeError, "not float"), (None, TypeError, "whole number, not None")]:
            with pytest.raises(error, match=said):
                reader(path, threads=threads)


def test_other_threads_run_meanwhile(slow):
    read, path = slow
    ticks = []
    with concurrent.futures.ThreadPoolExecutor() as pool:
        end = threading.Event()
        future = pool.submit(lambda: read(path, progress=lambda fraction: 1 / (not end.is_set())))
        for _ in range(20):
            ticks.append(time.monotonic())
            time.sleep(0.01)
        end.set()
        assert isinstance(future.exception(timeout=10), ZeroDivisionError)
    assert ticks[-1] - ticks[0] < 5


def test_many_threads_read_at_once():
    def read(_):
        model = orvalo.read_model(PLATE / "plate.model")
        results = orvalo.read_results(PLATE / "plate-results.txt")
        return model.cubes["material"].sum(), results.values(2).sum()

    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        assert len(set(pool.map(read, range(16)))) == 1


def test_any_number_of_threads_reads_the_same(tmp_path):
    rows = b"".join(b"%d\t%d\t3\t9\n" % (i % 500, i // 500) for i in range(300000))
    model = MATERIALS.encode() + MODEL_HEAD.replace(b"9000000", b"300000") + rows + b"END END\n"
    results = b"x\ty\tz\tf\tu\n" + rows.replace(b"9\n", b"9\t0.5\n")
    shown = {
        "model": (model, lambda found: found.cubes.tobytes()),
        "results": (results, lambda found: (found.indices.tobytes(), found.values(0).tobytes())),
        "check": (model, repr),
    }
    for kind, (text, show) in shown.items():
        for content in (text, text.replace(b"\n300\t400\t", b"\n300\tx\t", 1)):
            (tmp_path / "shared").write_bytes(content)
            outcomes = []
            for threads in (1, 2, 0):
                try:
                    outcomes.append(show(SLOW[kind][0](tmp_path / "shared", threads=threads)))
                except orvalo.ReadError as error:
                    outcomes.append((str(error), error.offset, error.row))
            assert outcomes[0] and outcomes[1:] == outcomes[:1] * 2


def test_daemons_that_still_read_let_the_process_end(tmp_path):
    program = """if True:
        import sys, threading, time, numpy, orvalo
        results = orvalo.read_results(sys.argv[1] + "-results.txt")
        path, x = sys.argv[1] + ".model", numpy.arange(1000000)
        for use in (lambda: orvalo.read_model(path), lambda: orvalo.check(path), lambda: results.at(0, x, 1, 1),
                    lambda: orvalo.read_model(path, progress=lambda fraction: sum(range(10000)))):
            threading.Thread(target=lambda use=use: [use() for _ in iter(int, 1)], daemon=True).start()
        time.sleep(0.3)
    """
    for _ in range(3):
        subprocess.run([sys.executable, "-X", "dev", "-c", program, PLATE / "plate"], check=True, timeout=300)


def test_read_error_has_the_place(model_file):
    path = model_file(grid=cubes((1, 1, 1, 9), (1, 1, 1, "13\t$")))
    with pytest.raises(orvalo.ReadError) as caught:
        orvalo.read_model(os.fsencode(path))
    error = caught.value
    for found in (error, pickle.loads(pickle.dumps(error))):
        text = path.read_bytes()
        assert (found.code, found.name, found.message) == (151, "MaterialNotDefined", "Material no.13 is not defined.")
        assert (found.path, found.row, text[found.offset :][:2]) == (str(path), 2, b"13")
        line = text[: found.offset].count(b"\n") + 1
        assert (found.line, found.column) == (line, 7)
        assert str(found).splitlines() == [
            f"{path}:{line}:7: Material no.13 is not defined. [151]",
            f"{line} | 1 1 1 13 $",
            f"{' ' * len(str(line))} |       ^",
        ]
    diagnostics = orvalo.check(path)
    first = diagnostics[0]
    assert (first.severity, first.code, first.name, first.row) == ("error", 151, error.name, 2)
    assert (first.place.line, first.place.offset) == (error.line, error.offset) and str(first.place) in str(first)
    assert isinstance(first.notes, tuple) and first.rule == "undefined-material"
    assert [found.severity for found in orvalo.check(path, warnings=False)] == ["error"]


def test_errors_of_results(results_file, tmp_path):
    path = results_file("x\ty\tz\tf\tu", "1\t1\t1\t0\t2", "1\t1")
    with pytest.raises(orvalo.ReadError, match="columns missing in line 3") as caught:
        orvalo.read_results(path)
    error = caught.value
    assert (error.code, error.name, error.path) == (308, "NotEnoughColumnsTxt", str(path))
    assert (error.line, error.column, error.offset, error.row) == (3, 4, 23, 2) and "3 | 1 1\n" in str(error)
    found = orvalo.check(path, progress=lambda fraction: None)
    assert [(d.code, d.row, d.place.offset) for d in found] == [(308, 2, 23)]
    with pytest.raises(orvalo.ReadError) as caught:
        orvalo.read_results(PLATE / "plate.model")
    assert (caught.value.name, caught.value.line) == ("TooManyColumnsTxt", 2)
    binary = tmp_path / "bad.mat"
    binary.write_bytes((PLATE / "plate-results.mat").read_bytes()[:-1])
    with pytest.raises(orvalo.ReadError) as caught:
        orvalo.read_results(binary)
    assert caught.value.offset and len(str(caught.value).splitlines()) == 1
    missing = results_file("a\tb", "1")
    os.remove(missing)
    os.mkfifo(missing)
    threading.Thread(target=missing.write_text, args=["a\tb\n1\n"]).start()
    with pytest.raises(orvalo.ReadError) as caught:
        orvalo.read_results(missing)
    assert (caught.value.line, caught.value.path) == (None, str(missing))


def test_excerpts_are_short_and_harmless(model_file):
    long = model_file(materials=MATERIALS.replace("END", "\x1b[31m" * 50 + "q" * 500 + " END"))
    with pytest.raises(orvalo.ReadError) as caught:
        orvalo.read_model(long)
    assert str(caught.value).isprintable() or all(line.isprintable() for line in str(caught.value).splitlines())
    assert max(map(len, str(caught.value).splitlines()[1:])) < 120


@pytest.mark.parametrize("read", [orvalo.read_model, orvalo.read_results, orvalo.check])
def test_files_that_cannot_be_opened(read, tmp_path, model_file):
    for path, error in [
        (tmp_path / "missing", FileNotFoundError),
        (tmp_path, IsADirectoryError),
        (tmp_path / "missing" / "file", FileNotFoundError),
        ("", FileNotFoundError),
        (pathlib.Path(__file__) / "below", NotADirectoryError),
        ("null\0byte", ValueError),
        (3, TypeError),
        (None, TypeError),
    ]:
        with pytest.raises(error):
            read(path)
    if read is orvalo.read_model:
        with pytest.raises(MemoryError, match="huge.model: Out of memory"):
            read(model_file("huge.model", grid=cubes((1, 1, 1, 9)).replace("count 1", f"count {10**15}")))
        including = model_file(grid='include "gone.cubes"\n')
        with pytest.raises(orvalo.IncludeError, match="gone.cubes") as caught:
            read(including)
        assert isinstance(caught.value, OSError) and caught.value.path == str(including) and caught.value.line == 6


def test_names_in_other_encodings(tmp_path):
    path = tmp_path / os.fsdecode(b"caf\xe9.txt")
    path.write_bytes("w\u00e4rme\t".encode() + b"caf\xe9\n1\t2\n")
    for name in (path, bytes(path)):
        assert orvalo.read_results(name).column_names == ("w\u00e4rme", "caf\u00e9")


@pytest.mark.unsanitized
def test_the_tool_is_a_module():
    command = [sys.executable, "-m", "orvalo", "value", PLATE / "plate-results.txt", "--column", "w", "--at"]
    done = subprocess.run([*command, "100", "75", "4"], stdout=subprocess.PIPE, check=True, text=True)
    assert done.stdout == "0.1487396138\n"


@pytest.mark.unsanitized
def test_types():
    package = pathlib.Path(__file__).resolve().parents[1]
    where = {**os.environ, "MYPYPATH": "src"}
    stubtest = ["mypy.stubtest", "--mypy-config-file=pyproject.toml", "--allowlist=tests/stubtest-allowlist.txt"]
    for checks in (["mypy", "src/orvalo"], [*stubtest, "orvalo._orvalo"]):
        done = subprocess.run([sys.executable, "-m", *checks], cwd=package, env=where, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, check=False)
        assert done.returncode == 0, done.stdout
