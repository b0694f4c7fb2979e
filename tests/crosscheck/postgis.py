#!/usr/bin/env python3
"""Tables that PostGIS's loader made, restored from a dump (data/postgis.sql), against what the server says of them.

Needs a database that may be written to: HALVANE_TEST_POSTGRES="host=... dbname=... user=...".
"""
import os
import re
import subprocess
import unittest

import geometry
import support
import wkt

SERVER = os.environ.get("HALVANE_TEST_POSTGRES")
# A database of its own: other tests drop and make tables in theirs at the same time.
DATABASE = SERVER and re.sub(r"dbname=\S+", "dbname=halvane_crosscheck", SERVER)
VALUES = """<T Name="Ways">
  <L Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="ways">
    <Each Name="Way" DataSource="Feature" Entries="Multiple">
      <F Name="gid" IdentityValue="gid"/><F Name="name" IdentityValue="name"/><F Name="large" IdentityValue="large"/>
      <F Name="area" IdentityValue="area"/>
    </Each>
    <R Name="Class" DataSource="Relationship" Entries="Multiple">
      <P Name="name" Target="Attribute" DataProperty="RelationshipName"/>
      <P Name="primary" Target="Attribute" DataProperty="OriginPrimaryKey"/>
      <P Name="foreign" Target="Attribute" DataProperty="OriginForeignKey"/>
      <P Name="composite" Target="Attribute" DataProperty="IsComposite"/>
    </R>
  </L>
  <Each Name="Note" DataSource="Table" Identity="TableName" IdentityValue="city.notes" Entries="Multiple">
    <F Name="id" DataSource="Record" IdentityValue="id"/><F Name="way" DataSource="Record" IdentityValue="way"/>
    <F Name="words" DataSource="Record" IdentityValue="words"/>
  </Each>
</T>"""


@unittest.skipIf(SERVER is None, "HALVANE_TEST_POSTGRES names no database")
@support.require("psql")
class Postgis(geometry.GeometryCheck):
    @classmethod
    def setUpClass(cls):
        for statement in ("DROP DATABASE IF EXISTS halvane_crosscheck", "CREATE DATABASE halvane_crosscheck"):
            support.run("psql", "-q", "-X", "-d", SERVER, "-c", statement)
        cls.ask("CREATE EXTENSION postgis")

    def setUp(self):
        super().setUp()
        self.ask("DROP SCHEMA IF EXISTS city CASCADE")
        support.run("psql", "-q", "-X", "-v", "ON_ERROR_STOP=1", "-d", DATABASE, "-f", support.DATA / "postgis.sql")
        self.map = self.folder / "map.xml"
        layers = "".join(f"<FeatureLayer name='{name}' connection='server' dataset='city.{name}'/>"
                         for name in ("ways", "areas", "heights"))
        self.map.write_text(f'<MapDocument><Connection name="server" database="PG:{DATABASE}"/><Map name="City">{layers}'
                            "<Table connection='server' dataset='city.notes'/></Map></MapDocument>", encoding="utf-8")

    @staticmethod
    def ask(statement):
        text = support.run("psql", "-q", "-X", "-A", "-t", "-F", "\t", "-d", DATABASE, "-c", statement)
        return [line.split("\t") for line in text.rstrip("\n").split("\n")]

    def test_shapes_are_those_that_the_server_tells(self):
        for layer in ("ways", "areas", "heights"):
            with self.subTest(layer=layer):
                rows = self.ask("SELECT ST_AsText(shape, 15), ST_NPoints(shape), greatest(ST_Length(shape), "
                                f"ST_Perimeter(shape)) FROM city.{layer} ORDER BY gid")
                features = self.export(geometry.control_file([layer]), self.map).findall("Layer/Feature")
                self.assertEqual(len(features), len(rows))
                for feature, (text, points, length) in zip(features, rows):
                    self.check_feature(feature, wkt.read(text), wkt.read(text).parts())
                    self.assertEqual(len(feature.findall("Vertices/Part/Vertices")), int(points))
                    exported = feature.find("Measured").get("length")
                    self.assertTrue(geometry.close(float(exported or 0), float(length), 1e-12), exported)

    def test_values_and_rows_are_those_of_the_tables_in_the_order_of_their_keys(self):
        root = self.export(VALUES, self.map)
        self.assertEqual([[field.text or "" for field in way] for way in root.iter("Way")],
                         self.ask("SELECT gid, name, large, area FROM city.ways ORDER BY gid"))
        self.assertEqual([[field.text or "" for field in note] for note in root.iter("Note")],
                         self.ask("SELECT id, way, words FROM city.notes ORDER BY id"))

    def test_relationship_classes_are_the_constraints(self):
        classes = [[each.get(name) for name in ("name", "primary", "foreign", "composite")]
                   for each in self.export(VALUES, self.map).iter("Class")]
        expected = self.ask(
            "SELECT c.conname, p.attname, f.attname, CASE c.confdeltype WHEN 'c' THEN 'True' ELSE 'False' END "
            "FROM pg_constraint c JOIN pg_attribute p ON p.attrelid = c.confrelid AND p.attnum = c.confkey[1] "
            "JOIN pg_attribute f ON f.attrelid = c.conrelid AND f.attnum = c.conkey[1] "
            "WHERE c.contype = 'f' AND c.connamespace = 'city'::regnamespace ORDER BY c.oid")
        self.assertEqual(len(expected), 2)
        self.assertEqual([each for each in classes if each in expected], expected)

    def test_an_alias_is_the_columns_comment(self):
        fields = {field["name"]: field["alias"] for field in
                  self.described_layers(self.map)["ways"]["featureClass"]["fields"]}
        comment = self.ask("SELECT col_description('city.ways'::regclass, attnum) FROM pg_attribute WHERE attrelid = "
                           "'city.ways'::regclass AND attname = 'name'")
        self.assertEqual([[fields["name"]]], comment)
        self.assertEqual(fields["large"], "large")

    def test_a_view_is_a_layer_in_its_own_order_and_system(self):
        self.ask("CREATE VIEW city.backwards AS SELECT name, upper(name) AS loud, ST_Transform(shape, 4326) AS shape "
                 "FROM city.ways ORDER BY name DESC NULLS LAST, gid")
        self.map.write_text(self.map.read_text(encoding="utf-8").replace("city.areas", "city.backwards"), encoding="utf-8")
        control = """<T Name="Ways"><L Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="areas">
            <Each Name="Way" DataSource="Feature" Entries="Multiple">
              <F Name="loud" IdentityValue="loud"/>
              <P Name="P" DataSource="Geometry.FromNode" Entries="Multiple" DecimalPlace="6">
                <X Name="x" Target="Attribute" DataProperty="Geometry.X"/>
              </P>
            </Each></L></T>"""
        ways = [[way.findtext("loud"), float(way.find("P").get("x"))] for way in self.export(control, self.map).iter("Way")]
        expected = self.ask("SELECT coalesce(loud, ''), ST_X(ST_PointN(ST_GeometryN(shape, 1), 1)) FROM city.backwards")
        self.assertEqual(len(ways), len(expected))
        for (loud, x), (name, longitude) in zip(ways, expected):
            self.assertEqual(loud, name)
            self.assertAlmostEqual(x, float(longitude), 5)

    def rows_of(self, dataset, fields, options=""):
        """The rows of a table of the server, as the export has them."""
        path = self.folder / "one.xml"
        path.write_text(f'<MapDocument><Connection name="server" database="PG:{DATABASE} {options}"/><Map name="City">'
                        f"<Table connection='server' dataset='{dataset}'/></Map></MapDocument>", encoding="utf-8")
        leaves = "".join(f'<F Name="f" DataSource="Record" IdentityValue="{field}"/>' for field in fields)
        root = self.export('<T Name="T"><Each Name="Row" DataSource="Table" Identity="TableName" '
                           f'IdentityValue="{dataset}" Entries="Multiple">{leaves}</Each></T>', path)
        return [[field.text or "" for field in row] for row in root.iter("Row")]

    def test_odd_names_enums_domains_and_generated_columns_are_read(self):
        self.ask('DROP SCHEMA IF EXISTS "Odd Names" CASCADE')
        self.ask('CREATE SCHEMA "Odd Names"')
        self.ask("CREATE TYPE city.mood AS ENUM ('sad', 'well')")
        self.ask("CREATE DOMAIN city.letter AS text CHECK (VALUE ~ '^[A-Z]$')")
        self.ask('CREATE TABLE "Odd Names"."The Table" ("A b" int, b int, mood city.mood, letter city.letter, '
                 'twice int GENERATED ALWAYS AS (b * 2) STORED, PRIMARY KEY (b, "A b"))')
        self.ask("""INSERT INTO "Odd Names"."The Table" VALUES (2, 1, 'well', 'X'), (1, 1, 'sad', NULL), (1, 0, NULL, 'Y')""")
        rows = self.rows_of("Odd Names.The Table", ["A b", "b", "mood", "letter", "twice"])
        self.assertEqual(sorted(rows), sorted(self.ask('SELECT * FROM "Odd Names"."The Table"')))

    def test_partitioned_tables_are_read_whole_in_the_order_of_their_key(self):
        self.ask("CREATE TABLE city.parted (id int PRIMARY KEY, n int) PARTITION BY LIST (id)")
        self.ask("CREATE TABLE city.odd PARTITION OF city.parted FOR VALUES IN (1, 3, 5)")
        self.ask("CREATE TABLE city.even PARTITION OF city.parted FOR VALUES IN (2, 4)")
        self.ask("INSERT INTO city.parted SELECT i, 10 * i FROM generate_series(5, 1, -1) AS i")
        self.assertEqual(self.rows_of("city.parted", ["id", "n"]), self.ask("SELECT * FROM city.parted ORDER BY id"))

    def slow_export(self):
        """An export that waits in the server, over a document that stands already."""
        self.ask("CREATE VIEW city.slow AS SELECT gid, pg_sleep(60)::text AS waited FROM city.ways")
        path = self.folder / "slow.xml"
        path.write_text(f'<MapDocument><Connection name="server" database="PG:{DATABASE}"/><Map name="City">'
                        "<Table connection='server' dataset='city.slow'/></Map></MapDocument>", encoding="utf-8")
        control = self.folder / "control.xml"
        control.write_text('<T Name="T"><Each Name="Row" DataSource="Table" Identity="TableName" IdentityValue="city.slow" '
                           'Entries="Multiple"><F Name="f" DataSource="Record" IdentityValue="waited"/></Each></T>',
                           encoding="utf-8")
        (self.folder / "old.xml").write_text("<old/>", encoding="utf-8")
        process = subprocess.Popen([support.PROGRAM, "export", "--map", path, control, self.folder / "old.xml"],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.kill)
        while not self.waiting():
            self.assertIsNone(process.poll())
        return process

    def waiting(self):
        return self.ask("SELECT pid FROM pg_stat_activity WHERE state = 'active' AND pid <> pg_backend_pid() "
                        "AND wait_event = 'PgSleep'") != [[""]]

    def check_not_written(self, process, words):
        output, errors = process.communicate()
        self.assertEqual((process.returncode, output), (4, ""), errors)
        self.assertIn(words, errors)
        self.assertEqual((self.folder / "old.xml").read_text(encoding="utf-8"), "<old/>")

    def test_an_export_whose_server_goes_away_leaves_the_old_document(self):
        process = self.slow_export()
        self.ask("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid <> pg_backend_pid() "
                 "AND datname = current_database()")
        self.check_not_written(process, "was lost")

    def test_an_export_that_is_ended_ends_what_the_server_computes_for_it(self):
        process = self.slow_export()
        process.terminate()
        self.check_not_written(process, "cancelled")
        self.assertFalse(self.waiting())

    def test_a_statement_that_takes_too_long_for_its_account_fails_with_the_servers_words(self):
        self.ask("CREATE VIEW city.slow AS SELECT gid, pg_sleep(60)::text AS waited FROM city.ways")
        with self.assertRaisesRegex(AssertionError, "statement timeout"):
            self.rows_of("city.slow", ["waited"], "options='-c statement_timeout=2000'")


if __name__ == "__main__":
    support.main()
