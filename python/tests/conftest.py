"""Files that the tests read."""
import contextlib
import os
import pathlib
import signal
import threading
import time

import pytest

PLATE = pathlib.Path(__file__).resolve().parents[2] / "examples" / "plate"

ANALYSIS = "ANALYSIS cellsize 0.5 timestep 2 roomtemperature 20 END\n"
MATERIALS = """MATERIALS
  9 0 "Steel" 8 5 3
  4 2 "wax" 0 0.5 1   0 -1 100   0 0 0.25
END
"""
OUTPUT = """TABLE id 3 count 4 data 0 1 -1 0.5 END END
ACTUATOR shape point position 5 3 1 input wave table 3 method force direction U W start 6 END
SENSOR id 5 shape point position 7 3 1 output w u filename "s" END
"""


def cubes(*rows, temperatures=False):
    """A CUBES section of such rows."""
    data = "\n".join(" ".join(map(str, row)) for row in rows)
    return f"CUBES count {len(rows)} format {int(temperatures)} data\n{data}\nEND END\n"


@pytest.fixture
def model_file(tmp_path):
    """Writes a small model; keyword arguments replace its parts."""

    def write(name="small.model", analysis=ANALYSIS, materials=MATERIALS, grid=None, output=OUTPUT):
        grid = grid or cubes((5, 3, 1, 9), (7, 3, 1, 4), (7, 4, 2, 9), (7, 3, 1, 9))
        path = tmp_path / name
        path.write_text(analysis + materials + grid + output)
        return path

    return write


@pytest.fixture
def ctrl_c():
    """Presses Ctrl-C after that many seconds. What runs in the background has it ignored, until this."""
    before = signal.signal(signal.SIGINT, signal.default_int_handler)
    yield lambda seconds: threading.Timer(seconds, signal.raise_signal, [signal.SIGINT]).start()
    signal.signal(signal.SIGINT, before)


@pytest.fixture
def results_file(tmp_path):
    """Writes text results of the given lines."""

    def write(*lines, name="results.txt"):
        path = tmp_path / name
        path.write_text("\n".join(lines) + "\n")
        return path

    return write


@pytest.fixture
def slow_file(tmp_path):
    """A file that takes seconds to read: a pipe into which something writes until nobody reads any more."""

    @contextlib.contextmanager
    def feed(head, portion, seconds=20):
        path = tmp_path / "pipe"
        os.mkfifo(path)

        def write():
            with contextlib.suppress(BrokenPipeError), open(path, "wb", buffering=0) as pipe:
                pipe.write(head)
                end = time.monotonic() + seconds
                while time.monotonic() < end:
                    pipe.write(portion)
                    time.sleep(0.01)

        writer = threading.Thread(target=write)
        writer.start()
        yield path
        writer.join()

    return feed
