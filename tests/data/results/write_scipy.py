#!/usr/bin/env python3
"""Writes the files that SciPy writes: with `write_scipy.py DIRECTORY`."""

import sys

import numpy
import scipy.io

directory = sys.argv[1]
values = numpy.array([[1.5, -2.0], [3.0, 4.25], [5.0, 6.0]])
indices = numpy.array([[1, 2, 3], [4, 5, 6], [7, 8, -9]], dtype=numpy.int16)


def save(name, compressed=False, **variables):
    scipy.io.savemat(f"{directory}/scipy-{name}.mat", variables, do_compression=compressed, oned_as="column")


save("values", v=values)
save("values-and-int16-class", v=values, i=indices)
save("compressed", compressed=True, v=values)
save("single", v=values.astype(numpy.float32))
save("int32", v=values.astype(numpy.int32))
save("complex", v=values + 1j)
save("three-dimensions", v=values.reshape(3, 2, 1) * numpy.ones((1, 1, 2)))
save("nine-byte-name", velocity1=values)
save("no-variables")
