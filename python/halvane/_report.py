"""What became of an export. The fields are those of report.schema.json."""

from __future__ import annotations

import enum
from dataclasses import dataclass


class Outcome(enum.Enum):
    """What became of an export."""

    WRITTEN = "written"
    INCOMPLETE = "incomplete"
    REFUSED = "refused"
    NOT_WRITTEN = "not written"
    CANCELLED = "cancelled"


@dataclass(frozen=True)
class CharacterRepairs:
    """What had to be changed in the data to keep the document well-formed."""

    dropped: int
    replaced: int


@dataclass(frozen=True)
class LostShapes:
    """Shapes of a layer that are stored and could not be read."""

    layer: str
    location: str
    count: int
    reason: str


@dataclass(frozen=True)
class Failure:
    """What failed at a node of the control file, and how often."""

    line: int
    element: str
    name: str
    number: int
    description: str
    message: str
    count: int
    part: str | None = None  #: of the control file, in which the line is; None: the control file itself


@dataclass(frozen=True)
class SchemaError:
    """An error of the document against its schema, and how often it was met."""

    document_line: int
    line: int
    element: str
    name: str
    other_lines: tuple[int, ...]
    message: str
    count: int
    part: str | None = None  #: of the control file, in which the line is; None: the control file itself


@dataclass(frozen=True)
class Notice:
    """A node of the control file that did not fail but found or wrote nothing, and how often."""

    line: int
    element: str
    name: str
    kind: str
    detail: str
    message: str
    count: int
    part: str | None = None  #: of the control file, in which the line is; None: the control file itself


@dataclass(frozen=True)
class Sources:
    """What an export read."""

    files: tuple[str, ...]  #: absolute: the control file with its parts, the map, schemas
    data: tuple[str, ...]  #: absolute: files, file databases and folders, also those that are missing
    elsewhere: bool  #: more was read that no local file holds


@dataclass(frozen=True)
class Report:
    """All that became of an export."""

    version: int
    program: str
    outcome: Outcome
    exit_code: int
    document: str | None
    control: str
    map: str | None
    items: int
    character_repairs: CharacterRepairs
    problems: tuple[str, ...]
    warnings: tuple[str, ...]
    lost_shapes: tuple[LostShapes, ...]
    failures: tuple[Failure, ...]
    schema: str | None
    schema_errors: tuple[SchemaError, ...]
    notices: tuple[Notice, ...]
    sources: Sources
    duration_seconds: float
