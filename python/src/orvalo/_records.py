"""Makes the data classes from what the extension module gives."""
from __future__ import annotations

from typing import Any, Dict, Tuple

from orvalo.enums import Envelope, FileFormat, Method, Notation, PulseType, Waveform, WriteMode
from orvalo.parts import Actuator, Definition, Dump, Material, OutputFile, Piezo, PointSet, Sensor, Table

Record = Dict[str, Any]

_ENUMS = {
    "method": Method,
    "type": PulseType,
    "waveform": Waveform,
    "envelope": Envelope,
    "write_mode": WriteMode,
    "notation": Notation,
    "file_format": FileFormat,
}


def _named(record: Record) -> Record:
    """The record with members of enumerations for their codes."""
    return {key: _ENUMS[key](value) if key in _ENUMS else value for key, value in record.items()}


def _file(record: Record) -> Record:
    return {**record, "file": OutputFile(**_named(record["file"]))}


def materials(records: Any) -> Tuple[Material, ...]:
    return tuple(Material(**record) for record in records)


def actuators(records: Any) -> Tuple[Actuator, ...]:
    made = []
    for record in map(_named, records):
        if "definition" in record:
            record["definition"] = Definition(**_named(record["definition"]))
        made.append(Actuator(**record))
    return tuple(made)


def tables(records: Any) -> Dict[int, Table]:
    return {record["id"]: Table(**record) for record in records}


def piezos(records: Any) -> Tuple[Piezo, ...]:
    made = []
    for record in map(_named, records):
        record["tables"] = tables(record["tables"])
        made.append(Piezo(**record))
    return tuple(made)


def sensors(records: Any) -> Dict[int, Sensor]:
    return {record["id"]: Sensor(**_file(record)) for record in records}


def dumps(records: Any) -> Dict[int, Dump]:
    made = {}
    for record in map(_file, records):
        letters = record["output"]
        record["output"] = tuple(letters[i : i + 2] for i in range(0, len(letters), 2))
        made[record["id"]] = Dump(**record)
    return made


def sets(records: Any) -> Dict[int, PointSet]:
    return {record["id"]: PointSet(**record) for record in records}
