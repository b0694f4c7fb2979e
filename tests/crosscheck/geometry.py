#!/usr/bin/env python3
"""Shapes: parts, vertices, lengths, start and end points, against the data library's well-known text."""
import json

import support
import wkt

FLAT = {"point": "Point", "multipoint": "MultiPoint", "line": "LineString", "multiline": "MultiLineString",
        "polygon": "Polygon", "multipolygon": "MultiPolygon"}
ORDINATES = {"point": ["", "z", "m", "zm"], "multipoint": ["", "z", "zm"], "line": ["", "z", "m", "zm"],
             "multiline": ["", "z", "zm"], "polygon": ["", "z", "zm"], "multipolygon": ["", "z"]}
VIRTUAL = """<OGRVRTLayer name="{0}">
  <SrcDataSource>{2}</SrcDataSource><SrcSQL>SELECT id FROM shapes WHERE kind = '{0}'</SrcSQL>
  <GeometryType>wkb{1}</GeometryType><LayerSRS>EPSG:25832</LayerSRS>
</OGRVRTLayer>"""
PLAIN = {kind + ("_" + letters if letters else ""): name + letters.upper()
         for kind, name in FLAT.items() for letters in ORDINATES[kind]}
CURVES = {"arc": "CircularString", "arc_z": "CircularStringZ", "compound": "CompoundCurve",
          "curvepolygon": "CurvePolygon", "multicurve": "MultiCurve", "multisurface": "MultiSurface"}
COLLECTION = {"collection": "GeometryCollection"}

POINT_VALUES = """
      <X Name="x" Target="Attribute" DataProperty="Geometry.X"/>
      <Y Name="y" Target="Attribute" DataProperty="Geometry.Y"/>
      <Z Name="z" Target="Attribute" DataProperty="Geometry.Z"/>"""
LAYER = """
  <Layer Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="{0}">
    <Count Name="count" Target="Attribute" DataProperty="FeatureCount"/>
    <Each Name="Feature" DataSource="Feature" Entries="Multiple">
      <Length Name="Measured" DataSource="Geometry.Length" Entries="Multiple">
        <Value Name="length" Target="Attribute" DataProperty="Geometry.Length"/>
      </Length>
      <Start Name="Start" DataSource="Geometry.FromNode" Entries="Multiple">{1}</Start>
      <End Name="End" DataSource="Geometry.ToNode" Entries="Multiple">{1}</End>
      <Point Name="Point" DataSource="Geometry.Point" Entries="Multiple">{1}</Point>
      <EndPoint Name="EndPoint" DataSource="Geometry.EndPoint" Entries="Multiple">{1}</EndPoint>
      <Shape Name="Vertices" DataSource="Geometry.Vertice" Entries="Multiple">{1}
        <M Name="m" Target="Attribute" DataProperty="Geometry.Measure"/>
      </Shape>
    </Each>
  </Layer>"""

FIELD_TYPES = """<T Name="Types">
  <Layer Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="{0}">
    <All Name="Fields" DataSource="Field" Entries="Multiple">
      <Each Name="Field"><Type Name="type" Target="Attribute" DataProperty="FieldType"/></Each>
    </All>
  </Layer>
</T>"""


def control_file(layers):
    return "<T Name='Layers'>" + "".join(LAYER.format(layer, POINT_VALUES) for layer in layers) + "\n</T>"


def number(text):
    return None if text in (None, "") else float(text)


def vertex_of(element):
    return tuple(number(element.get(name)) for name in "xyzm")


def close(left, right, tolerance):
    """Whether two numbers agree in the 15 digits that both sides write, or as closely as a sum can."""
    if left is None or right is None:
        return left is right
    return abs(left - right) <= tolerance * max(1.0, abs(left), abs(right))


class GeometryCheck(support.CrossCheck):
    """Compares exported features with shapes that were read elsewhere."""

    def check_feature(self, feature, shape, parts):
        self.check_vertices(feature.find("Vertices"), parts)
        ends = {"Start": (0, 0), "Point": (0, 0), "End": (-1, -1), "EndPoint": (-1, -1)}
        for tag, (part, index) in ends.items():
            expected = parts[part][index][:3] if parts else (None, None, None)
            self.check_point(tag, vertex_of(feature.find(tag))[:3], expected)
        self.check_length(number(feature.find("Measured").get("length")), shape)
        return sum(map(len, parts))

    def check_vertices(self, element, parts):
        found = [[vertex_of(vertex) for vertex in part] for part in element.findall("Part")]
        self.assertEqual([len(part) for part in found], [len(part) for part in parts], "vertices of the parts")
        for place, (left, right) in enumerate(zip(found, parts)):
            for index, (exported, expected) in enumerate(zip(left, right)):
                self.check_point(f"part {place}, vertex {index}", exported, expected)

    def check_point(self, what, exported, expected):
        if not all(close(left, right, 1e-14) for left, right in zip(exported, expected)):
            self.fail(f"{what}: exported {exported}, expected {expected}")

    def check_length(self, length, shape):
        kinds = {"POINT", "MULTIPOINT"}
        if shape is None or shape.kind in kinds or not of_one_dimension(shape):
            self.assertIsNone(length)
        elif not close(length, shape.length(), 1e-12):
            self.fail(f"length: exported {length}, expected {shape.length()}")


class Geometry(GeometryCheck):
    def make_layers(self, target, kinds, *options):
        """A dataset with a layer for each kind."""
        source = self.folder / "source.vrt"
        source.write_text("<OGRVRTDataSource>" + "".join(VIRTUAL.format(kind, name, support.DATA / "shapes.csv")
                                                         for kind, name in kinds.items()) + "</OGRVRTDataSource>",
                          encoding="utf-8")
        return self.make(target, source, *options)

    def check(self, data, kinds, source=None):
        """Compares the exported layers with the text that the data library gives for each; counts the vertices."""
        root = self.export(control_file(kinds), data)
        layers = root.findall("Layer")
        self.assertEqual(len(layers), len(kinds))
        texts = support.reference_layers(source or data, self.folder / "reference")
        compared = 0
        for element, name in zip(layers, kinds):
            shapes = [wkt.read(row["WKT"]) for row in texts[name]]
            parts = (self.parts_of_lines(source or data, name) if name in CURVES else
                     [shape.parts() if shape else [] for shape in shapes])
            self.assertEqual(int(element.get("count")), len(shapes), name)
            features = element.findall("Feature")
            self.assertEqual(len(features), len(shapes), name)
            for index, (feature, shape, expected) in enumerate(zip(features, shapes, parts), 1):
                with self.subTest(layer=name, feature=index):
                    compared += self.check_feature(feature, shape, expected)
        return compared

    def parts_of_lines(self, source, name):
        """The parts of each shape, written in a format that knows no curves."""
        if name == "arc_z":
            # The converter does not make lines of arcs with heights: this one is the first plain arc at height 10.
            flat = self.lines_by_id(source, "arc")["1"]
            return [[[(x, y, 10.0, None) for x, y, _, _ in part] for part in flat]]
        return list(self.lines_by_id(source, name).values())

    @staticmethod
    def lines_by_id(source, name):
        text = support.run("ogr2ogr", "-f", "GeoJSON", "/vsistdout/", source, name, "-lco", "COORDINATE_PRECISION=17")
        return {feature["properties"]["id"]:
                [[(*point, None, None) for point in part]
                 for part in lists_of_points(feature["geometry"]["coordinates"])]
                for feature in json.loads(text)["features"]}

    def test_shapes_of_a_geopackage_have_the_vertices_and_lengths_of_their_text(self):
        kinds = {**PLAIN, **COLLECTION, **CURVES}
        file = self.make_layers(self.folder / "shapes.gpkg", kinds, "-f", "GPKG")
        self.assertGreater(self.check(file, kinds), 600)

    def test_shapes_of_flatgeobuf_have_the_vertices_and_lengths_of_their_text(self):
        kinds = {**PLAIN, **COLLECTION, **CURVES}
        folder = self.make_layers(self.folder / "shapes", kinds, "-f", "FlatGeobuf",
                                  # Not every version writes features without a shape into a file with an index.
                                  "-lco", "SPATIAL_INDEX=NO")
        self.assertGreater(self.check(folder, kinds), 600)

    def test_shapes_of_shapefiles_have_the_vertices_and_lengths_of_their_text(self):
        folder = self.make_layers(self.folder / "shapes", PLAIN, "-f", "ESRI Shapefile")
        self.assertGreater(self.check(folder, PLAIN), 110)

    def test_shapes_of_geojson_have_the_vertices_and_lengths_of_their_text(self):
        kinds = {kind: name for kind, name in {**PLAIN, **COLLECTION}.items() if "m" not in kind.partition("_")[2]}
        (self.folder / "shapes").mkdir()
        for kind, name in kinds.items():
            # Of its own accord the format keeps seven decimals.
            self.make_layers(self.folder / "shapes" / f"{kind}.geojson", {kind: name}, "-f", "GeoJSON",
                             "-lco", "COORDINATE_PRECISION=17")
            with self.subTest(kind=kind):
                self.check(self.folder / "shapes" / f"{kind}.geojson", {kind: name})

    def test_shapes_of_spatialite_have_the_vertices_and_lengths_of_their_text(self):
        kinds = {**PLAIN, **COLLECTION}
        file = self.make_layers(self.folder / "shapes.sqlite", kinds, "-f", "SQLite", "-dsco", "SPATIALITE=YES",
                                "-dsco", "INIT_WITH_EPSG=NO")
        self.assertGreater(self.check(file, kinds), 120)

    def test_shapes_of_plain_sqlite_have_the_vertices_and_lengths_of_their_text(self):
        kinds = {**PLAIN, **COLLECTION, **CURVES}
        file = self.make_layers(self.folder / "shapes.sqlite", kinds, "-f", "SQLite")
        self.assertGreater(self.check(file, kinds), 600)

    def test_every_country_and_city_has_the_vertices_and_length_of_its_text(self):
        file = support.EXAMPLES / "data" / "world.gpkg"
        self.assertGreater(self.check(file, ("countries", "cities")), 10000)

    def test_a_shape_type_is_told_by_its_kind(self):
        file = self.make_layers(self.folder / "shapes.gpkg", {**PLAIN, **CURVES}, "-f", "GPKG")
        expected = {"point": "point", "multipoint": "multipoint", "line": "polyline", "multiline": "polyline",
                    "polygon": "polygon", "multipolygon": "polygon", "arc": "polyline", "compound": "polyline",
                    "curvepolygon": "polygon", "multicurve": "polyline", "multisurface": "polygon"}
        layers = self.described_layers(file)
        for name in {**PLAIN, **CURVES}:
            shape = expected[name.partition("_")[0]]
            self.assertEqual(layers[name]["featureClass"]["shapeType"], shape, name)
            root = self.export(FIELD_TYPES.format(name), file)
            self.assertEqual([field.get("type") for field in root.iter("Field")],
                             ["vemiFieldTypeOID", "vemiGeometry" + shape.capitalize(), "vemiFieldTypeString"])


def lists_of_points(coordinates):
    """The innermost lists of points in nested coordinates."""
    if not isinstance(coordinates[0][0], list):
        return [coordinates]
    return [part for member in coordinates for part in lists_of_points(member)]


def of_one_dimension(shape):
    """Whether a collection's members are all lines, or all areas: only then has it a kind, and so a length."""
    if shape.kind != "GEOMETRYCOLLECTION":
        return True
    kinds = {"P" if "POINT" in member.kind else "L" if "LINE" in member.kind or "CURVE" == member.kind[-5:] else "A"
             for member in shape.members}
    return len(kinds) == 1 and kinds != {"P"}


if __name__ == "__main__":
    support.main()
