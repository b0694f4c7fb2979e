#!/usr/bin/python3
"""Makes tests/crosscheck/data/qgis with the Python bindings of QGIS (Debian: python3-qgis).

    make-qgis-data.py

Beside the files it writes what QGIS itself says of each feature, as data/qgis/expected.json.
"""
import json
import os
import pathlib
import shutil

os.environ["QT_QPA_PLATFORM"] = "offscreen"
from PyQt5.QtCore import QDate, QDateTime, QTime, QVariant  # noqa: E402
from qgis.core import (QgsApplication, QgsCoordinateTransformContext, QgsFeature, QgsField, QgsGeometry,  # noqa: E402
                       QgsProject, QgsVectorFileWriter, QgsVectorLayer)

FOLDER = pathlib.Path(__file__).resolve().parent / "data" / "qgis"
SHAPES = {
    "places": ("Point", ["Point (1.5 -2.25)", "Point (179.99999999 -89.5)", None]),
    "heights": ("PointZM", ["PointZM (1 2 3.5 4)", "PointZM (-1.125 2 0 -4)"]),
    "ways": ("MultiLineString", ["MultiLineString ((0 0, 3 4),(10 10, 10 13, 14 13))", "MultiLineString ((0 0, 1 1, 2 0))"]),
    "areas": ("MultiPolygonZ", ["MultiPolygonZ (((0 0 1, 0 10 2, 10 10 3, 10 0 4, 0 0 1),(1 1 5, 2 1 5, 2 2 5, 1 1 5)),"
                               "((20 20 0, 20 21 0, 21 21 0, 20 20 0)))"]),
}
FIELDS = [QgsField("name", QVariant.String, "text", 60), QgsField("whole", QVariant.Int), QgsField("large", QVariant.LongLong),
          QgsField("real", QVariant.Double), QgsField("day", QVariant.Date), QgsField("moment", QVariant.DateTime),
          QgsField("yes", QVariant.Bool)]
VALUES = [["Ünïcödé 漢字 <&>", -2147483647, 9007199254740993, 0.1, QDate(2020, 2, 29),
           QDateTime(QDate(1999, 12, 31), QTime(23, 59, 58)), True],
          ["it's \"quoted\"", 2147483647, -1000000000001, -123456.789, QDate(1899, 12, 31),
           QDateTime(QDate(2038, 1, 19), QTime(3, 14, 8)), False],
          [None, None, None, None, None, None, None]]


def memory_layer(name):
    kind, texts = SHAPES[name]
    layer = QgsVectorLayer(f"{kind}?crs=EPSG:25832", name, "memory")
    layer.dataProvider().addAttributes(FIELDS)
    layer.updateFields()
    for text, values in zip(texts, VALUES):
        feature = QgsFeature(layer.fields())
        feature.setAttributes([QVariant() if value is None else value for value in values])
        if text:
            feature.setGeometry(QgsGeometry.fromWkt(text))
        assert layer.dataProvider().addFeature(feature), feature.attributes()
    return layer


def save(layer, driver, file, append=False):
    options = QgsVectorFileWriter.SaveVectorOptions()
    options.driverName, options.layerName, options.fileEncoding = driver, layer.name(), "UTF-8"
    if append:
        options.actionOnExistingFile = QgsVectorFileWriter.CreateOrOverwriteLayer
    error, message, *_ = QgsVectorFileWriter.writeAsVectorFormatV3(layer, str(file), QgsCoordinateTransformContext(), options)
    assert error == QgsVectorFileWriter.NoError, message


def as_plain(value):
    """A value as JSON holds it: dates in the order year, month, day."""
    if value is None or (isinstance(value, QVariant) and value.isNull()):
        return None
    if isinstance(value, QDate):
        return value.toString("yyyy-MM-dd")
    return value.toString("yyyy-MM-dd HH:mm:ss") if isinstance(value, QDateTime) else value


def told(file, name):
    """What QGIS reads from a file that it wrote: text, length or perimeter, number of vertices, values."""
    layer = QgsVectorLayer(f"{file}|layername={name}", name, "ogr")
    assert layer.isValid(), file
    names = [field.name() for field in layer.fields()]
    features = []
    for feature in layer.getFeatures():
        shape = feature.geometry()
        features.append({"wkt": None if shape.isNull() else shape.asWkt(15),
                         "length": None if shape.isNull() else shape.length(),
                         "vertices": 0 if shape.isNull() else sum(1 for _ in shape.vertices()),
                         "values": {field: as_plain(feature[field]) for field in names if field != "fid"}})
    return features


def main():
    application = QgsApplication([], False)
    application.initQgis()
    shutil.rmtree(FOLDER, ignore_errors=True)
    FOLDER.mkdir(parents=True)
    layers = [memory_layer(name) for name in SHAPES]
    for index, layer in enumerate(layers):
        save(layer, "GPKG", FOLDER / "world.gpkg", append=index > 0)
        save(layer, "ESRI Shapefile", FOLDER / f"{layer.name()}.shp")
        save(layer, "FlatGeobuf", FOLDER / f"{layer.name()}.fgb")
    expected = {}
    for name in SHAPES:
        expected[f"world.gpkg|{name}"] = told(FOLDER / "world.gpkg", name)
        for suffix in (".shp", ".fgb"):
            expected[f"{name}{suffix}|{name}"] = told(FOLDER / f"{name}{suffix}", name)
    (FOLDER / "expected.json").write_text(json.dumps(expected, ensure_ascii=False, indent=1), encoding="utf-8")
    QgsProject.instance().clear()
    application.exitQgis()


if __name__ == "__main__":
    main()
