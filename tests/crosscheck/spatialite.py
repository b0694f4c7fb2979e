#!/usr/bin/env python3
"""Data that SpatiaLite's own programs make, against what SpatiaLite itself says of it."""
import json

import geometry
import support
import wkt

VALUES = """<T Name="Roads">
  <L Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="roads">
    <Each Name="Road" DataSource="Feature" Entries="Multiple">
      <F Name="id" IdentityValue="id"/><F Name="name" IdentityValue="name"/><F Name="lanes" IdentityValue="lanes"/>
      <F Name="width" IdentityValue="width"/><F Name="owner" IdentityValue="owner"/>
    </Each>
    <R Name="Class" DataSource="Relationship" Entries="Multiple">
      <P Name="origin" Target="Attribute" DataProperty="OriginClassName"/>
      <P Name="primary" Target="Attribute" DataProperty="OriginPrimaryKey"/>
      <P Name="destination" Target="Attribute" DataProperty="DestinationClassName"/>
      <P Name="foreign" Target="Attribute" DataProperty="OriginForeignKey"/>
      <P Name="composite" Target="Attribute" DataProperty="IsComposite"/>
    </R>
  </L>
</T>"""


@support.require("spatialite")
class Spatialite(geometry.GeometryCheck):
    def setUp(self):
        super().setUp()
        self.file = self.folder / "city.sqlite"
        # A new database comes with the format's own tables and all spatial references.
        support.run("spatialite", "-silent", "-bail", self.file, stdin=(support.DATA / "spatialite.sql").read_bytes())

    def ask(self, statement):
        """Rows of texts from SpatiaLite's shell."""
        text = support.run("spatialite", "-silent", "-batch", "-noheader", "-separator", "\t", self.file, statement)
        return [line.split("\t") for line in text.rstrip("\n").split("\n")]

    def check_layer(self, data, layer, column, table=None):
        """Compares an exported layer's shapes with the text, lengths and counts that SpatiaLite gives."""
        rows = self.ask(f"SELECT AsText({column}), ST_NPoints({column}), max(coalesce(ST_Length({column}), 0), "
                        f"coalesce(ST_Perimeter({column}), 0)) FROM {table or layer} ORDER BY id")
        features = self.export(geometry.control_file([layer]), data).findall("Layer/Feature")
        self.assertEqual(len(features), len(rows))
        for feature, (text, points, length) in zip(features, rows):
            shape = wkt.read(text)
            self.check_feature(feature, shape, shape.parts() if shape else [])
            self.assertEqual(len(feature.findall("Vertices/Part/Vertices")), int(points or 0))
            exported = feature.find("Measured").get("length")
            if exported:
                self.assertTrue(geometry.close(float(exported), float(length), 1e-12), (exported, length))

    def test_shapes_are_those_that_spatialite_tells(self):
        for layer, column in (("roads", "way"), ("lots", "geometry"), ("signs", "geometry"), ("tracks", "geometry")):
            with self.subTest(layer=layer):
                self.check_layer(self.file, layer, column)

    def test_values_are_those_of_the_table(self):
        rows = support.sql(self.file, "SELECT id, name, lanes, width, owner FROM roads ORDER BY id")
        exported = [[field.text or "" for field in road] for road in self.export(VALUES, self.file).iter("Road")]
        self.assertEqual(len(exported), len(rows))
        for found, expected in zip(exported, rows):
            self.assertEqual(found[:3] + found[4:],
                             ["" if value is None else str(value) for value in expected[:3] + expected[4:]])
            self.assertEqual(float(found[3]), expected[3])

    def test_foreign_keys_are_relationship_classes_and_those_of_system_tables_are_none(self):
        classes = [dict(each.attrib) for each in self.export(VALUES, self.file).iter("Class")]
        self.assertEqual([each for each in classes if each["destination"] == "roads"],
                         [{"origin": "owners", "primary": "id", "destination": "roads", "foreign": "owner",
                           "composite": "True"}])
        self.assertEqual(len(classes), 1, classes)

    def test_layers_are_those_of_the_tables_with_shapes(self):
        layers = self.described_layers(self.file)
        expected = dict(self.ask("SELECT f_table_name, geometry_type % 1000 FROM geometry_columns"))
        kinds = {"1": "point", "2": "polyline", "3": "polygon", "5": "polyline", "6": "polygon"}
        self.assertEqual({name.lower(): layer["featureClass"]["shapeType"] for name, layer in layers.items()},
                         {name: kinds[kind] for name, kind in expected.items()})

    def test_plain_tables_and_views_are_tables_and_those_of_the_format_are_none(self):
        support.run("spatialite", "-silent", "-bail", self.file,
                    stdin=b"CREATE VIEW widths AS SELECT name, width FROM roads ORDER BY width;")
        tables = self.describe(self.file)["maps"][0]["tables"]
        self.assertEqual([table["dataset"] for table in tables], ["owners", "widths"])
        names = [row[0] for row in support.sql(self.file, "SELECT name FROM owners ORDER BY id")]
        control = """<T Name="Owners">
          <O Name="Owner" DataSource="Table" Identity="TableName" IdentityValue="owners" Entries="Multiple">
            <N Name="name" DataSource="Record" IdentityValue="name"/>
          </O>
        </T>"""
        self.assertEqual([name.text for name in self.export(control, self.file).iter("name")], names)

    def test_a_view_that_cannot_be_read_fails_with_the_databases_reason(self):
        support.run("spatialite", "-silent", "-bail", self.file,
                    stdin=b"CREATE VIEW broken AS SELECT lost FROM roads;")
        table = self.describe(self.file)["maps"][0]["tables"][1]
        self.assertEqual(table["dataset"], "broken")
        self.assertIn("no such column: lost", json.dumps(table))

    def test_a_shapefile_that_spatialite_wrote_has_the_shapes_of_its_table(self):
        (self.folder / "files").mkdir()
        for layer, column in (("lots", "geometry"), ("tracks", "geometry"), ("roads", "way")):
            target = self.folder / "files" / layer
            support.run("spatialite", "-silent", "-batch", self.file, f".dumpshp {layer} {column} {target} UTF-8")
            with self.subTest(layer=layer):
                self.check_layer(target.with_suffix(".shp"), layer, column)

    def test_a_geopackage_that_spatialite_wrote_has_the_shapes_of_its_table(self):
        target = self.folder / "city.gpkg"
        shapes = self.ask("SELECT id, AsText(way) FROM roads WHERE way IS NOT NULL ORDER BY id")
        inserts = "".join(f"INSERT INTO roads (id, geom) VALUES ({number}, AsGPB(GeomFromText('{text}', 25832)));\n"
                          for number, text in shapes)
        support.run("spatialite", "-silent", "-bail", target, stdin=(
            "SELECT gpkgCreateBaseTables();\nSELECT gpkgInsertEpsgSRID(25832);\n"
            "CREATE TABLE roads (id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL);\n"
            "INSERT INTO gpkg_contents (table_name, data_type, identifier, srs_id) VALUES ('roads', 'features', 'roads', "
            "25832);\nSELECT gpkgAddGeometryColumn('roads', 'geom', 'MULTILINESTRING', 0, 0, 25832);\n"
            + inserts).encode())
        root = self.export(geometry.control_file(["roads"]), target)
        features = root.findall("Layer/Feature")
        self.assertEqual(len(features), len(shapes))
        for feature, (_, text) in zip(features, shapes):
            self.check_feature(feature, wkt.read(text), wkt.read(text).parts())
        self.assertIn("Zone          32", json.dumps(self.describe(target)))


if __name__ == "__main__":
    support.main()
