"""Exports facts of a map into an XML document whose shape a control file prescribes.

    import halvane

    report = halvane.export("world.gpkg", "countries.xml", "out.xml")
    print(report.items, "items in", report.document)
    for layer in halvane.describe("world.gpkg").maps[0].layers:
        print(layer.name)

It needs the shared library libhalvane.so.0; the environment variable HALVANE_LIBRARY may name its file. Exports of several
threads take turns, and other threads of Python run meanwhile.
"""

from ._description import (
    Code, Description, Domain, FeatureClass, Field, Layer, Map, MeasureDomain, NotReadable, RelationshipClass,
    SpatialReference, Subtype, SubtypeField, Subtypes, Table, Workspace, XyDomain)
from ._library import MessageLevel, version as _version
from ._report import CharacterRepairs, Failure, LostShapes, Notice, Outcome, Report, SchemaError, Sources
from ._run import Cancelled, Error, describe, export

__version__ = _version()

__all__ = [
    "Cancelled", "CharacterRepairs", "Code", "Description", "Domain", "Error", "Failure", "FeatureClass", "Field", "Layer",
    "LostShapes", "Map", "MeasureDomain", "MessageLevel", "Notice", "NotReadable", "Outcome", "RelationshipClass", "Report",
    "SchemaError", "Sources", "SpatialReference", "Subtype", "SubtypeField", "Subtypes", "Table", "Workspace", "XyDomain", "describe", "export",
]
