#!/usr/bin/env python3
"""What the pages warn of, since few people expect it: each is shown on the bundled city.

    surprises.py PROGRAM [unittest options]
"""
import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

CITY = pathlib.Path(__file__).resolve().parent.parent.parent / "examples" / "data" / "city.gpkg"
PROGRAM = None
LAYER = 'DataSource="MapLayer" Identity="LayerName"'


class Surprises(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="halvane-pages-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def export(self, control, data=CITY):
        """The bytes of the document. Notes are none of these tests' business."""
        (self.folder / "control.xml").write_text(control, encoding="utf-8")
        document = self.folder / "document.xml"
        done = subprocess.run([PROGRAM, "export", "--quiet", "--map", data, self.folder / "control.xml", document],
                              capture_output=True, check=False)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        return document.read_bytes()

    def root(self, *arguments):
        return ElementTree.fromstring(self.export(*arguments))

    def map_of(self, reference, dataset):
        file = self.folder / "map.xml"
        file.write_text(f'<MapDocument><Map name="City"><SpatialReference definition="{reference}"/>'
                        f'<FeatureLayer source="{CITY}" dataset="{dataset}"/></Map></MapDocument>', encoding="utf-8")
        return file

    def test_a_document_has_no_declaration_and_breaks_lines_with_two_characters(self):
        document = self.export(f'<T Name="City"><L Name="Layer" {LAYER} IdentityValue="bridges" DataProperty="LayerName"/></T>')
        self.assertEqual(document, b"<City>\r\n<Layer>bridges</Layer>\r\n</City>")

    def test_bounds_of_a_reference_are_its_own_and_not_the_datas(self):
        root = self.root(f'<T Name="City"><L Name="Layer" {LAYER} IdentityValue="bridges">'
                         '<X Name="x" DataProperty="SPATIALREFERENCE.XMIN"/></L></T>',
                         self.map_of("EPSG:4326", "bridges"))
        self.assertEqual(root.findtext("Layer/x"), "-180")

    def test_a_maps_reference_describes_and_transforms_nothing(self):
        control = (f'<T Name="City"><L Name="Layer" {LAYER} IdentityValue="high_points">'
                   '<P Name="system" DataProperty="SPATIALREFERENCE.PROJECTION"/>'
                   '<V Name="point" DataSource="Geometry.Point" Entries="Multiple">'
                   '<X Name="x" DataProperty="Geometry.X"/></V></L></T>')
        own, stated = self.root(control), self.root(control, self.map_of("EPSG:4326", "high_points"))
        self.assertEqual((own.findtext("Layer/system"), stated.findtext("Layer/system")), ("STATEPLANE", "GEOGRAPHIC"))
        self.assertEqual([x.text for x in own.iter("x")], [x.text for x in stated.iter("x")])
        self.assertEqual(own.findtext("Layer/point/x"), "1001402")

    def test_a_date_time_is_written_as_its_date(self):
        data = self.folder / "visits.csv"
        data.write_text("name,seen\nfirst,2024-03-09T14:05:06Z\n", encoding="utf-8")
        data.with_suffix(".csvt").write_text('"String","DateTime"\n', encoding="utf-8")
        root = self.root('<T Name="City"><A Name="All" DataSource="Table" Identity="TableName" IdentityValue="visits">'
                         '<R Name="Visit" DataSource="Record" Entries="Multiple"><S Name="seen" IdentityValue="seen"/></R>'
                         '</A></T>', data)
        self.assertEqual(root.findtext("All/Visit/seen"), "03/09/2024")

    def test_vertices_stand_in_elements_called_part(self):
        root = self.root(f'<T Name="City"><L Name="Layer" {LAYER} IdentityValue="bridges">'
                         '<V Name="Way" DataSource="Geometry.Vertice" Entries="Multiple">'
                         '<X Name="x" Target="Attribute" DataProperty="Geometry.X"/></V></L></T>')
        ways = root.findall("Layer/Way")
        self.assertEqual(len(ways), 8)
        self.assertEqual([[child.tag for child in way] for way in ways], [["Part"]] * 8)
        self.assertEqual([child.tag for child in ways[0][0]], ["Way"] * 3)

    def test_a_roots_data_source_is_inherited_and_never_bound(self):
        root = f'<T Name="City" {LAYER} IdentityValue="bridges">'
        rows = '<R Name="Bridge" DataSource="Feature" Entries="Multiple"><N Name="name" IdentityValue="name"/></R></T>'
        self.assertEqual(len(self.root(root + rows).findall("Bridge/name")), 0)
        document = self.root(root + '<L Name="Layer" DataProperty="LayerName"/>' + rows)
        self.assertEqual(document.findtext("Layer"), "bridges")
        self.assertEqual(len(document.findall("Bridge/name")), 8)

    def test_two_fields_of_related_rows_come_as_two_blocks(self):
        root = self.root(f'<T Name="City"><L Name="Layer" {LAYER} IdentityValue="bridges">'
                         '<B Name="Bridge" DataSource="Feature" Entries="Multiple">'
                         '<G Name="History" DataSource="RelatedTable" Identity="LayerName" IdentityValue="milestones" '
                         'LinkField="code"><D Name="day" DataSource="RelatedRecord" IdentityValue="happened"/>'
                         '<E Name="event" DataSource="RelatedRecord" IdentityValue="event"/></G></B></L></T>')
        self.assertEqual([child.tag for child in root.find("Layer/Bridge/History")], ["day"] * 3 + ["event"] * 3)


if __name__ == "__main__":
    PROGRAM = str(pathlib.Path(sys.argv.pop(1)).resolve())
    unittest.main(verbosity=2)
