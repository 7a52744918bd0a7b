#!/usr/bin/env python3
"""Writes the files of this example, next to itself: the model of a plate and the results of a wave that crosses it.

The plate lies in the x-y plane. It is aluminium with a steel edge, a glued patch whose epoxy softens with temperature,
and a piezoelectric block; a strip at the far end damps what arrives there. Lengths are in millimetres, densities in
kg/mm^3 and moduli in kg/(mm s^2), so wave speeds come out in mm/s.
"""
import math
import pathlib
import struct

HERE = pathlib.Path(__file__).resolve().parent

CELL = 0.5            # mm
STEP = 0.04           # microseconds
LENGTH, WIDTH, THICKNESS = 200, 150, 4
DAMPED = 8            # columns of damping cubes beyond the far end

ALUMINIUM, STEEL, EPOXY, CERAMIC = 1, 2, 3, 7
SOURCE = (40, 75)     # where the excitation sits on the upper face
BURST = (200.0, 5)    # kHz, periods


def material(x, y, z):
    if abs(x - SOURCE[0]) <= 8 and abs(y - SOURCE[1]) <= 8 and z == THICKNESS:
        return CERAMIC
    if 110 <= x < 150 and 50 <= y < 100 and z == THICKNESS:
        return EPOXY
    return STEEL if y <= 10 else ALUMINIUM


def temperature(x, y):
    """A hot spot below the glued patch, in degrees Celsius."""
    return 22 + 38 * math.exp(-((x - 130) ** 2 + (y - 75) ** 2) / 900)


def grid():
    rows = [f"{x} {y} {z} {material(x, y, z)} {temperature(x, y):.1f}"
            for z in range(1, THICKNESS + 1) for y in range(1, WIDTH + 1) for x in range(1, LENGTH + 1)]
    return ("; The grid of the plate: x y z, material number, temperature.\n"
            f"CUBES count = {len(rows)} format = 1 data\n" + "\n".join(rows) + "\nEND END\n")


def damping():
    rows = [f"{x} {y} {z} {ALUMINIUM} {0.02 * (x - LENGTH) ** 2:.2f}"
            for z in range(1, THICKNESS + 1) for y in range(1, WIDTH + 1) for x in range(LENGTH + 1, LENGTH + DAMPED + 1)]
    return ("; The damping strip: x y z, material number, damping coefficient.\n"
            f"DAMPING count = {len(rows)} data\n" + "\n".join(rows) + "\nEND END\n")


def burst(samples_per_line=8):
    """A tone burst under a Hann window: the number of samples, and their text."""
    frequency, periods = BURST
    duration = periods / frequency * 1e3
    count = round(duration / STEP)
    values = []
    for i in range(count):
        t = i * STEP
        window = 0.5 * (1 - math.cos(2 * math.pi * t / duration))
        values.append(f"{window * math.sin(2 * math.pi * frequency * t * 1e-3):.6f}")
    lines = [" ".join(values[i:i + samples_per_line]) for i in range(0, count, samples_per_line)]
    return count, "\n".join("  " + line for line in lines)


def piezo_points():
    """A patch of 5 x 5 points: the middle is driven, the rim interpolated."""
    rows = []
    for y in range(5):
        for x in range(5):
            inside = 1 <= x <= 3 and 1 <= y <= 3
            rows.append(f"  {x} {y} " + ("t 1 1 2" if inside else "i"))
    return len(rows), "\n".join(rows)


def ramp(count, height):
    return " ".join(f"{height * i / (count - 1) + 0.0:.3f}" for i in range(count))


def model():
    samples, signal = burst()
    points, patch = piezo_points()
    line = "\n".join(f"  {x} 75 {THICKNESS}" for x in range(60, 200, 10))
    return f"""; An aluminium plate of 100 mm x 75 mm x 2 mm with a glued patch. Written by make-plate.py.
ANALYSIS
  cellsize = {CELL}          ; mm
  timestep = {STEP}         ; microseconds
  starttime = 0
  roomtemperature = 22    ; degrees Celsius
END

; number, format, name, then density vp vs (0), density E nu (1) or the coefficients of T^2, T, 1 of each (2)
MATERIALS
  {ALUMINIUM} 1 "aluminium"  2.7e-6  7.0e7  0.33
  {STEEL} 0 "steel"      7.85e-6 5.92e6 3.23e6
  {EPOXY} 2 "epoxy"      0 0 1.16e-6   -90 -9000 3.4e6   0 0.0004 0.36
  {CERAMIC} 0 "pzt-ceramic" 7.7e-6 4.35e6 2.26e6
END

include "plate-grid.cubes"
include "plate-damping.cubes"

; A continuous wave on the ceramic block, pressing down.
ACTUATOR
  shape point  position {SOURCE[0]} {SOURCE[1]} {THICKNESS}
  input definition  method force  direction W
  type continuouswave  waveform sine  envelope hannwindow
  frequency = {BURST[0]:.0f}  duration = 25  phase = 0
  amplitude = 2.5
END

; The recorded burst of table 1 at the edge, a little later and upside down.
ACTUATOR
  shape point  position 1 75 2
  input wave  table 1  method absolute  direction U V  factorv 0.25
  start = 5.5  processing invert
END

TABLE id = 1 count = {samples} data
{signal}
END END

PIEZO
  id = 1  position 160 75 {THICKNESS}  direction 0 0 1
  method force  start 10  amplitude 0.5
  count = {points} data
{patch}
  END
  table id 1 count 20 data {ramp(20, 1.0)} END END
  table id 2 count 20 data {ramp(20, -0.4)} END END
END

SENSOR id 1 shape point position 100 75 {THICKNESS} output U V W filename "near.txt" END
SENSOR id 2 shape point position 180 75 {THICKNESS} output W M filename "far.txt" notation decimal END
SENSOR id 3 shape point position 130 75 {THICKNESS} output M filename "patch.mat" fileformat mat writemode create END

DUMP id 1 output U0 V0 W0 filename "field.mat" fileformat mat END
DUMP id 2 output All filename "all.txt" writemode create END

SET id 1 count = {len(range(60, 200, 10))} data
{line}
END END
SET id 2 count = 4 data 1 1 1, 200 1 1, 1 150 1, 200 150 1 END END
"""


def displacement(x, y):
    """The wave from the source 12 microseconds after it set out: a Gaussian packet that travels along the plate at the
    speed of its flexural wave and thins out with the root of the distance. In micrometres."""
    speed, time = 2.6e6, 12e-6
    number = 2 * math.pi * BURST[0] * 1e3 / speed
    dx, dy = (x - SOURCE[0]) * CELL, (y - SOURCE[1]) * CELL
    distance = math.hypot(dx, dy)
    spread = 1 / math.sqrt(1 + distance)
    packet = math.exp(-((distance - speed * time) / 12) ** 2)
    phase = number * (distance - speed * time)
    w = spread * packet * math.cos(phase)
    radial = -0.3 * spread * packet * math.sin(phase)
    away = (dx / distance, dy / distance) if distance > 0 else (0.0, 0.0)
    return radial * away[0], radial * away[1], w


def results():
    """Every second cube of the upper face, along x: coordinates, frame and the three components."""
    rows = []
    for y in range(1, WIDTH + 1):
        for x in range(2, LENGTH + 1, 2):
            # The text carries ten digits, and the MAT-file holds exactly what the text says.
            values = [f"{value:.9e}" for value in displacement(x, y)]
            rows.append(((x, y, THICKNESS, 0), values))
    return rows


def text_results(rows):
    lines = ["\t".join(["x", "y", "z", "f", "u", "v", "w"])]
    lines += ["\t".join([str(i) for i in indices] + values) for indices, values in rows]
    return "\n".join(lines) + "\n"


def mat_matrix(name, columns, storage, code):
    """One uncompressed matrix of class double, its data stored as `storage`, column after column."""
    data = b"".join(struct.pack(f"<{len(column)}{code}", *column) for column in columns)
    label = name.encode()
    assert len(label) <= 4, "longer names take another form"
    body = struct.pack("<4I", 6, 8, 6, 0)                                   # array flags: class double
    body += struct.pack("<2I2i", 5, 8, len(columns[0]), len(columns))       # dimensions
    body += struct.pack("<2H", 1, len(label)) + label.ljust(4, b"\0")       # name
    body += struct.pack("<2I", storage, len(data)) + data                   # values
    return struct.pack("<2I", 14, len(body)) + body


def mat_results(rows):
    header = b"MATLAB 5.0 MAT-file, a wave over a plate".ljust(116) + bytes(8) + struct.pack("<H2s", 0x0100, b"IM")
    values = [[float(row[1][col]) for row in rows] for col in range(3)]
    indices = [[row[0][col] for row in rows] for col in range(4)]
    return header + mat_matrix("val", values, 9, "d") + mat_matrix("idx", indices, 3, "h")


def main():
    rows = results()
    (HERE / "plate.model").write_text(model(), newline="\n")
    (HERE / "plate-grid.cubes").write_text(grid(), newline="\n")
    (HERE / "plate-damping.cubes").write_text(damping(), newline="\n")
    (HERE / "plate-results.txt").write_text(text_results(rows), newline="\n")
    (HERE / "plate-results.mat").write_bytes(mat_results(rows))


if __name__ == "__main__":
    main()
