"""The words of a model file that stand for a choice."""
from enum import IntEnum


class ActuatorInput(IntEnum):
    """What drives an actuator: a waveform that is defined, or a table of samples."""

    DEFINITION = 0
    WAVE = 1


class Method(IntEnum):
    """How samples act on a cube."""

    UNSET = 0
    FORCE = 1
    ABSOLUTE = 2


class PulseType(IntEnum):
    """How much of its shape a waveform shows."""

    UNSET = 0
    FULL_PULSE = 1
    HALF_PULSE = 2
    CONTINUOUS_WAVE = 3


class Waveform(IntEnum):
    """The shape of a waveform."""

    UNSET = 0
    SQUARE = 1
    SINE = 2
    GAUSSIAN = 3


class Envelope(IntEnum):
    """What a continuous wave is multiplied by."""

    NONE = 0
    HANN_WINDOW = 1


class WriteMode(IntEnum):
    """How an output file is opened."""

    OVERWRITE = 0
    CREATE = 1
    APPEND = 2


class Notation(IntEnum):
    """How numbers are written into a text."""

    DECIMAL = 0
    SCIENTIFIC = 1


class FileFormat(IntEnum):
    """What kind of file is written."""

    TXT = 0
    MAT = 1
