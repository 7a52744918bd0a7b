"""Models of elastic wave propagation and the results of their simulation, as NumPy arrays.

`read_model` and `read_results` read a file; `check` tells everything that is wrong with one; `write_model` and
`write_results` write one.
"""
from orvalo._dense import Bounds
from orvalo._orvalo import __version__
from orvalo.checking import Diagnostic, Fix, Note, Place, check
from orvalo.enums import ActuatorInput, Envelope, FileFormat, Method, Notation, PulseType, Waveform, WriteMode
from orvalo.errors import IncludeError, ReadError, WriteError
from orvalo.model import Model, WaveSpeeds, read_model
from orvalo.parts import Actuator, Definition, Dump, Material, OutputFile, Piezo, PointSet, Sensor, Table
from orvalo.results import Results, read_results
from orvalo.writing import write_model, write_results

__all__ = [
    "Actuator",
    "ActuatorInput",
    "Bounds",
    "Definition",
    "Diagnostic",
    "Dump",
    "Envelope",
    "FileFormat",
    "Fix",
    "IncludeError",
    "Material",
    "Method",
    "Model",
    "Notation",
    "Note",
    "OutputFile",
    "Piezo",
    "Place",
    "PointSet",
    "PulseType",
    "ReadError",
    "Results",
    "Sensor",
    "Table",
    "WaveSpeeds",
    "Waveform",
    "WriteError",
    "WriteMode",
    "__version__",
    "check",
    "read_model",
    "read_results",
    "write_model",
    "write_results",
]
