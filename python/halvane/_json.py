"""Makes data classes of JSON objects, by the types of their fields."""

from __future__ import annotations

import dataclasses
import enum
import functools
import types
import typing
from typing import Any, TypeVar

T = TypeVar("T")


def json_name(name: str) -> str:
    """The member that a field is made of: its name in camel case."""
    first, *others = name.rstrip("_").split("_")
    return first + "".join(part.capitalize() for part in others)


@functools.cache
def _fields_of(kind: Any) -> dict[str, tuple[str, Any]]:
    hints = typing.get_type_hints(kind)
    return {json_name(field.name): (field.name, hints[field.name]) for field in dataclasses.fields(kind)}


def _made(kind: Any, value: Any) -> Any:
    arguments = typing.get_args(kind)
    if isinstance(kind, types.UnionType):  # something or None
        return None if value is None else _made(next(one for one in arguments if one is not type(None)), value)
    if typing.get_origin(kind) is tuple:
        return tuple(_made(arguments[0], item) for item in value)
    if dataclasses.is_dataclass(kind):
        return from_json(typing.cast(type, kind), value)
    if isinstance(kind, type) and issubclass(kind, enum.Enum):
        return kind(value)
    return float(value) if kind is float else value


def from_json(kind: type[T], value: dict[str, Any]) -> T:
    """Makes a data class; members that it does not know, of a later version, are left out."""
    fields = _fields_of(typing.cast(Any, kind))
    return kind(**{fields[name][0]: _made(fields[name][1], member) for name, member in value.items() if name in fields})
