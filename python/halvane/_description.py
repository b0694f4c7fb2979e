"""Everything that a control file could name in a map. The fields are those of describe.schema.json.

What cannot be read is None, and not_readable of the object around it says why.
"""

from __future__ import annotations

from dataclasses import dataclass


@dataclass(frozen=True)
class NotReadable:
    """Why a field is None."""

    what: str
    why: str


@dataclass(frozen=True)
class XyDomain:
    x_min: float | None
    y_min: float | None
    x_max: float | None
    y_max: float | None
    false_x: float | None
    false_y: float | None
    scale: float | None


@dataclass(frozen=True)
class MeasureDomain:
    min: float | None
    max: float | None
    false_origin: float | None
    scale: float | None


@dataclass(frozen=True)
class SpatialReference:
    description: tuple[str, ...] | None
    xy_domain: XyDomain | None
    z_domain: MeasureDomain | None
    m_domain: MeasureDomain | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class Field:
    name: str | None
    alias: str | None
    type: str | None
    type_word: str | None
    type_code: int | None
    length: int | None
    precision: int | None
    nullable: bool | None
    editable: bool | None
    domain: str | None
    default: str | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class SubtypeField:
    name: str
    domain: str | None
    default: str | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class Subtype:
    code: int
    name: str | None
    fields: tuple[SubtypeField, ...] | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class Subtypes:
    field: str | None
    default_code: int | None
    subtypes: tuple[Subtype | None, ...] | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class Table:
    dataset: str | None
    workspace: int | None
    fields: tuple[Field | None, ...] | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class FeatureClass:
    dataset: str | None
    workspace: int | None
    fields: tuple[Field | None, ...] | None
    shape_type: str | None
    shape_type_code: int | None
    features: int | None
    subtypes: Subtypes | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class Layer:
    """What a kind of layer does not have is None."""

    name: str | None
    kind: str
    selected: int | None = None
    spatial_reference: SpatialReference | None = None
    feature_class: FeatureClass | None = None
    file: str | None = None
    workspace: int | None = None
    layers: tuple[Layer | None, ...] | None = None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class Map:
    name: str | None
    shown: bool | None
    spatial_reference: SpatialReference | None
    layers: tuple[Layer | None, ...] | None
    tables: tuple[Table | None, ...] | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class Code:
    code: str
    name: str


@dataclass(frozen=True)
class Domain:
    name: str | None
    description: str | None
    kind: str | None
    kind_code: int | None
    type: str | None
    type_word: str | None
    type_code: int | None
    merge_policy: str | None
    merge_policy_code: int | None
    split_policy: str | None
    split_policy_code: int | None
    min: str | None
    max: str | None
    codes: tuple[Code | None, ...] | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class RelationshipClass:
    name: str | None
    cardinality: str | None
    cardinality_code: int | None
    notification: str | None
    notification_code: int | None
    composite: bool | None
    attributed: bool | None
    origin_class: str | None
    destination_class: str | None
    forward_label: str | None
    backward_label: str | None
    origin_primary_key: str | None
    origin_foreign_key: str | None
    destination_primary_key: str | None
    destination_foreign_key: str | None
    feature_dataset: str | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class Workspace:
    path: str | None
    type: str | None
    type_code: int | None
    domains: tuple[Domain | None, ...] | None
    relationship_classes: tuple[RelationshipClass | None, ...] | None
    not_readable: tuple[NotReadable, ...] = ()


@dataclass(frozen=True)
class Description:
    version: int
    program: str
    map: str
    maps: tuple[Map | None, ...] | None
    workspaces: tuple[Workspace, ...]
    not_readable: tuple[NotReadable, ...] = ()
