"""What stands in a model besides its grid, as plain data."""
from __future__ import annotations

from dataclasses import dataclass, field
from typing import TYPE_CHECKING, Any, Dict, Optional, Tuple

from orvalo import _orvalo
from orvalo.enums import ActuatorInput, Envelope, FileFormat, Method, Notation, PulseType, Waveform, WriteMode

if TYPE_CHECKING:
    import numpy as np
    import numpy.typing as npt

Position = Tuple[int, int, int]
Coefficients = Tuple[float, float, float]


@dataclass(frozen=True)
class Material:
    """An isotropic elastic material, in the units of the model file.

    Parameters
    ----------
    name : str
        In lower case when read from a file.
    density, vp, vs : float
        Mass density, longitudinal and transverse wave speed; 0 where only coefficients are given.
    mu, lam : float
        The Lamé constants, the shear modulus being `mu`. They follow from the other three unless given.
    density_coefficients, young_coefficients, poisson_coefficients : tuple of 3 floats, optional
        For a material that depends on temperature: the coefficients of T^2, T and 1 of density, Young's modulus and
        Poisson's ratio, T in degrees Celsius.
    number : int
        The number that the model file gives it, 1 to 255; 0 for air, and for one that has none yet.
    """

    name: str
    density: float = 0.0
    vp: float = 0.0
    vs: float = 0.0
    mu: Optional[float] = None
    lam: Optional[float] = None
    density_coefficients: Optional[Coefficients] = None
    young_coefficients: Optional[Coefficients] = None
    poisson_coefficients: Optional[Coefficients] = None
    number: int = 0

    def __post_init__(self) -> None:
        mu, lam = _orvalo.lame_constants(float(self.density), float(self.vp), float(self.vs))
        object.__setattr__(self, "mu", mu if self.mu is None else self.mu)
        object.__setattr__(self, "lam", lam if self.lam is None else self.lam)

    @classmethod
    def from_moduli(cls, name: str, density: float, young: float, poisson: float, number: int = 0) -> Material:
        """A material of that density, Young's modulus and Poisson's ratio."""
        moduli = (0.0, 0.0, float(young)), (0.0, 0.0, float(poisson))
        constants = _orvalo.material_at((0.0, 0.0, float(density)), *moduli, 0.0)
        return cls(name, *constants, number=number)

    @property
    def temperature_dependent(self) -> bool:
        """Whether it is given by coefficients."""
        return self.density_coefficients is not None

    @property
    def format(self) -> int:
        """2 for a material that is given by coefficients; 0, density and wave speeds, for every other one."""
        return 2 if self.temperature_dependent else 0

    def at(self, temperature: float) -> Material:
        """What the material is at a temperature in degrees Celsius: itself unless it is given by coefficients."""
        k = self.density_coefficients, self.young_coefficients, self.poisson_coefficients
        if k[0] is None or k[1] is None or k[2] is None:
            return self
        return Material(self.name, *_orvalo.material_at(k[0], k[1], k[2], float(temperature)), number=self.number)


@dataclass(frozen=True)
class Definition:
    """A waveform from which the samples of an actuator are made.

    Parameters
    ----------
    frequency : float
        In kilohertz; of a continuous wave.
    duration : float
        In microseconds.
    phase : float
        In degrees; of a continuous wave.
    """

    type: PulseType
    waveform: Waveform
    envelope: Envelope = Envelope.NONE
    frequency: float = 0.0
    duration: float = 0.0
    phase: float = 0.0


@dataclass(frozen=True)
class Actuator:
    """A source of excitation at one cube.

    Parameters
    ----------
    position : (int, int, int)
        Its cube.
    method : Method
        How the samples act.
    direction : str
        The displacements that it drives: some of the letters u, v and w.
    definition : Definition, optional
        The waveform; without one the table `table` drives the actuator.
    table : int
        The ID of its table: negative for one that was made from a definition, 0 for none.
    amplitude : float
        Factor for the samples.
    factors : (float, float, float)
        Further factors for u, v and w.
    invert : bool
        Whether the signal is inverted.
    start_steps : int
        How many time steps after the start of the simulation it sets in.
    """

    position: Position
    method: Method
    direction: str
    definition: Optional[Definition] = None
    table: int = 0
    amplitude: float = 1.0
    factors: Tuple[float, float, float] = (1.0, 1.0, 1.0)
    invert: bool = False
    start_steps: int = 0

    @property
    def input(self) -> ActuatorInput:
        """What drives it."""
        return ActuatorInput.WAVE if self.definition is None else ActuatorInput.DEFINITION


@dataclass(frozen=True, eq=False)
class Table:
    """A table of samples, one for each time step.

    Parameters
    ----------
    id : int
        Positive from the file, negative for one that was made for an actuator.
    samples : ndarray of float64 or float32, shape (n,)
        From a file a read-only view, alive as long as anybody holds it.
    """

    id: int
    samples: npt.NDArray[Any]

    def __repr__(self) -> str:
        return f"Table({self.id}: {len(self.samples)} samples of {self.samples.dtype})"


@dataclass(frozen=True, eq=False)
class PointSet:
    """A numbered list of cubes.

    Parameters
    ----------
    id : int
        From the file.
    points : ndarray of int16, shape (n, 3)
        x, y, z of each; from a file a read-only view, alive as long as anybody holds it.
    """

    id: int
    points: npt.NDArray[np.int16]

    def __repr__(self) -> str:
        return f"PointSet({self.id}: {len(self.points)} points)"


@dataclass(frozen=True, eq=False)
class Piezo:
    """A piezoelectric patch: points of a plane, each driven by up to three of the patch's own tables.

    Parameters
    ----------
    id : int
        From the file.
    position : (int, int, int)
        Its cube.
    axis : str
        The axis that the patch stands on: x, y or z.
    points : structured ndarray, shape (n,)
        `x`, `y` (int16) in the plane of the patch, and the IDs of the tables that drive the point, `table_u`,
        `table_v`, `table_w` (uint16), 0 for an interpolated point.
    method : Method
        How the samples act.
    amplitude : float
        Factor for the samples.
    start_steps : int
        How many time steps after the start of the simulation it sets in.
    tables : dict of int to Table
        The patch's own tables.
    """

    id: int
    position: Position
    axis: str
    points: npt.NDArray[np.void]
    method: Method = Method.UNSET
    amplitude: float = 1.0
    start_steps: int = 0
    tables: Dict[int, Table] = field(default_factory=dict)

    def __repr__(self) -> str:
        where = ", ".join(map(str, self.position))
        return f"Piezo({self.id}: {len(self.points)} points across {self.axis} at ({where}), {len(self.tables)} tables)"


@dataclass(frozen=True)
class OutputFile:
    """Where and how an output of the simulation is written."""

    name: str
    write_mode: WriteMode = WriteMode.OVERWRITE
    notation: Notation = Notation.SCIENTIFIC
    file_format: FileFormat = FileFormat.TXT


@dataclass(frozen=True)
class Sensor:
    """An output of components at one cube.

    Parameters
    ----------
    output : str
        A letter for each component: u, v, w, or m for the magnitude.
    """

    id: int
    position: Position
    output: str
    file: OutputFile


@dataclass(frozen=True)
class Dump:
    """An output of components of the whole field.

    Parameters
    ----------
    output : tuple of str
        The components: u0, v0, w0, u1, v1, w1, u2, v2, w2.
    """

    id: int
    output: Tuple[str, ...]
    file: OutputFile
