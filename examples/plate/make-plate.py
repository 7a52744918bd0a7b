#!/usr/bin/env python3
"""Writes the files of this example, next to itself or into the folder that it is given: the model of a plate and the
results of a wave that crosses it. Needs the Python package: script/python examples/plate/make-plate.py

The plate lies in the x-y plane. It is aluminium with a steel edge, a glued patch whose epoxy softens with temperature,
and a piezoelectric block; a strip at the far end damps what arrives there. Lengths are in millimetres, densities in
kg/mm^3 and moduli in kg/(mm s^2), so wave speeds come out in mm/s.
"""
import pathlib
import sys

import numpy as np

import orvalo
from orvalo import Actuator, Definition, Dump, FileFormat, Material, Method, Notation, OutputFile, Sensor, WriteMode

CELL = 0.5            # mm
STEP = 0.04           # microseconds
LENGTH, WIDTH, THICKNESS = 200, 150, 4
DAMPED = 8            # columns of damping cubes beyond the far end

ALUMINIUM, STEEL, EPOXY, CERAMIC = 1, 2, 3, 7
SOURCE = (40, 75)     # where the excitation sits on the upper face
FREQUENCY, PERIODS = 200.0, 5    # kHz

MATERIALS = {
    ALUMINIUM: Material.from_moduli("aluminium", 2.7e-6, 7.0e7, 0.33),
    STEEL: Material("steel", 7.85e-6, 5.92e6, 3.23e6),
    EPOXY: Material("epoxy", density_coefficients=(0, 0, 1.16e-6), young_coefficients=(-90, -9000, 3.4e6),
                    poisson_coefficients=(0, 0.0004, 0.36)),
    CERAMIC: Material("pzt-ceramic", 7.7e-6, 4.35e6, 2.26e6),
}


def grid():
    """The numbers of the materials and the temperatures, with a hot spot below the glued patch."""
    x, y, z = np.mgrid[1:LENGTH + 1, 1:WIDTH + 1, 1:THICKNESS + 1]
    numbers = np.where(y <= 10, STEEL, ALUMINIUM)
    numbers[(x >= 110) & (x < 150) & (y >= 50) & (y < 100) & (z == THICKNESS)] = EPOXY
    numbers[(abs(x - SOURCE[0]) <= 8) & (abs(y - SOURCE[1]) <= 8) & (z == THICKNESS)] = CERAMIC
    return numbers, (22 + 38 * np.exp(-((x - 130) ** 2 + (y - 75) ** 2) / 900)).round(1)


def damping():
    """A strip whose damping grows from the far end of the plate on."""
    z, y, x = np.mgrid[1:THICKNESS + 1, 1:WIDTH + 1, LENGTH + 1:LENGTH + DAMPED + 1].reshape(3, -1)
    fields = [x, y, z, np.full(x.shape, ALUMINIUM), (0.02 * (x - LENGTH) ** 2).round(2)]
    return np.rec.fromarrays(fields, names="x,y,z,material,coefficient")


def burst():
    """A tone burst under a Hann window."""
    duration = PERIODS / FREQUENCY * 1e3
    time = np.arange(round(duration / STEP)) * STEP
    window = 0.5 * (1 - np.cos(2 * np.pi * time / duration))
    return (window * np.sin(2 * np.pi * FREQUENCY * time * 1e-3)).round(6)


def patch():
    """Five by five points: the middle is driven, the rim interpolated."""
    names = ["x", "y", "table_u", "table_v", "table_w"]
    points = np.zeros(25, dtype=[(name, int) for name in names])
    points["y"], points["x"] = np.divmod(np.arange(25), 5)
    inside = (abs(points["x"] - 2) <= 1) & (abs(points["y"] - 2) <= 1)
    for name, table in zip(names[2:], (1, 1, 2)):
        points[name][inside] = table
    tables = {id: orvalo.Table(id, np.linspace(0, height, 20).round(3)) for id, height in ((1, 1.0), (2, -0.4))}
    return orvalo.Piezo(1, (160, 75, THICKNESS), "z", points, Method.FORCE, 0.5, steps(10), tables)


def steps(microseconds):
    return int(np.ceil(microseconds / STEP))


def write_model(path):
    numbers, temperatures = grid()
    continuous = Definition(orvalo.PulseType.CONTINUOUS_WAVE, orvalo.Waveform.SINE, orvalo.Envelope.HANN_WINDOW,
                            frequency=FREQUENCY, duration=25)
    orvalo.write_model(
        path, grid=numbers, origin=(1, 1, 1), temperatures=temperatures, damping=damping(), materials=MATERIALS,
        cell_size=CELL, time_step=STEP * 1e-6, room_temperature=22,
        actuators=[
            # A continuous wave on the ceramic block, pressing down.
            Actuator((*SOURCE, THICKNESS), Method.FORCE, "w", continuous, amplitude=2.5),
            # The recorded burst at the edge, a little later and upside down.
            Actuator((1, 75, 2), Method.ABSOLUTE, "uv", table=1, factors=(1, 0.25, 1), invert=True,
                     start_steps=steps(5.5)),
        ],
        tables=[orvalo.Table(1, burst())],
        piezos=[patch()],
        sensors=[
            Sensor(1, (100, 75, THICKNESS), "uvw", OutputFile("near.txt")),
            Sensor(2, (180, 75, THICKNESS), "wm", OutputFile("far.txt", notation=Notation.DECIMAL)),
            Sensor(3, (130, 75, THICKNESS), "m", OutputFile("patch.mat", WriteMode.CREATE, file_format=FileFormat.MAT)),
        ],
        dumps=[
            Dump(1, ("u0", "v0", "w0"), OutputFile("field.mat", file_format=FileFormat.MAT)),
            Dump(2, ("u0", "v0", "w0", "u1", "v1", "w1", "u2", "v2", "w2"), OutputFile("all.txt", WriteMode.CREATE)),
        ],
        sets=[
            orvalo.PointSet(1, np.array([(x, 75, THICKNESS) for x in range(60, 200, 10)])),
            orvalo.PointSet(2, np.array([(x, y, 1) for y in (1, WIDTH) for x in (1, LENGTH)])),
        ],
        comment="An aluminium plate of 100 mm x 75 mm x 2 mm with a glued patch. Written by make-plate.py.",
        cubes_file="plate-grid.cubes", overwrite=True,
    )


def displacement(x, y):
    """The wave from the source 12 microseconds after it set out: a Gaussian packet that travels along the plate at the
    speed of its flexural wave and thins out with the root of the distance. In micrometres."""
    speed, time = 2.6e6, 12e-6
    number = 2 * np.pi * FREQUENCY * 1e3 / speed
    dx, dy = (x - SOURCE[0]) * CELL, (y - SOURCE[1]) * CELL
    distance = np.hypot(dx, dy)
    packet = np.exp(-((distance - speed * time) / 12) ** 2) / np.sqrt(1 + distance)
    phase = number * (distance - speed * time)
    radial = -0.3 * packet * np.sin(phase) / np.maximum(distance, CELL / 2)
    return np.stack([radial * dx, radial * dy, packet * np.cos(phase)], axis=1)


def write_results(folder):
    """Every second cube of the upper face, along x: coordinates, frame and the three components, with ten digits."""
    y, x = np.mgrid[1:WIDTH + 1, 2:LENGTH + 1:2].reshape(2, -1)
    cubes = np.stack([x, y, np.full(x.shape, THICKNESS), np.zeros(x.shape, int)], axis=1)
    values = np.array([[float(f"{value:.9e}") for value in row] for row in displacement(x, y)])
    for name in ("plate-results.txt", "plate-results.mat"):
        orvalo.write_results(folder / name, cubes, values, names=["u", "v", "w"], overwrite=True)


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else __file__).resolve()
    folder = folder if folder.is_dir() else folder.parent
    write_model(folder / "plate.model")
    write_results(folder)


if __name__ == "__main__":
    main()
