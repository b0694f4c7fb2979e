#!/usr/bin/env python3
"""Data that QGIS wrote (make-qgis-data.py), against what QGIS said of it when it read it again."""
import json

import geometry
import support
import wkt

FOLDER = support.DATA / "qgis"


def text_of(field, value):
    if value is None:
        return ""
    # Moments are texts of another form in shapefiles.
    if field in ("day", "moment") and value[4] == "-":
        year, month, day = value[:10].split("-")
        return f"{month}/{day}/{year}"
    return str(int(value)) if isinstance(value, bool) else str(value)


class Qgis(geometry.GeometryCheck):
    def check_files(self, suffix):
        expected = json.loads((FOLDER / "expected.json").read_text(encoding="utf-8"))
        checked = 0
        for source, told in expected.items():
            file, layer = source.split("|")
            if file.endswith(suffix):
                with self.subTest(file=file, layer=layer):
                    self.check_shapes(FOLDER / file, layer, told)
                    self.check_values(FOLDER / file, layer, told)
                    checked += 1
        self.assertEqual(checked, 4)

    def check_shapes(self, file, layer, told):
        features = self.export(geometry.control_file([layer]), file).findall("Layer/Feature")
        self.assertEqual(len(features), len(told))
        for feature, reference in zip(features, told):
            shape = wkt.read(reference["wkt"])
            self.check_feature(feature, shape, shape.parts() if shape else [])
            self.assertEqual(len(feature.findall("Vertices/Part/Vertices")), reference["vertices"])
            length = feature.find("Measured").get("length")
            self.assertTrue(geometry.close(float(length or 0), reference["length"] or 0.0, 1e-12), length)

    def check_values(self, file, layer, told):
        fields = list(told[0]["values"])
        cells = "".join(f"<F Name='{field}' IdentityValue='{field}'/>" for field in fields)
        root = self.export("<T Name='T'><L Name='L' DataSource='MapLayer' Identity='LayerName' "
                           f"IdentityValue='{layer}'><R Name='Row' DataSource='Feature' Entries='Multiple'>{cells}"
                           "</R></L></T>", file)
        for row, reference in zip(root.iter("Row"), told):
            for field in fields:
                value = reference["values"][field]
                if isinstance(value, float):
                    self.assertTrue(geometry.close(float(row.findtext(field)), value, 1e-14), (field, value))
                else:
                    self.assertEqual(row.findtext(field), text_of(field, value), field)

    def test_a_geopackage_of_qgis_has_its_shapes_and_values(self):
        self.check_files(".gpkg")

    def test_shapefiles_of_qgis_have_its_shapes_and_values(self):
        self.check_files(".shp")

    def test_flatgeobuf_files_of_qgis_have_its_shapes_and_values(self):
        self.check_files(".fgb")

    def test_references_of_qgis_are_those_that_it_was_given(self):
        for file in ("world.gpkg", "ways.shp", "ways.fgb"):
            layer = self.described_layers(FOLDER / file)["ways"]
            lines = layer["spatialReference"]["description"]
            self.assertEqual(lines[:2], ["Projection    UTM", "Zone          32"], file)


if __name__ == "__main__":
    support.main()
