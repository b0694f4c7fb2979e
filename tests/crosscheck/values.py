#!/usr/bin/env python3
"""Attribute values, rows and selections, against the database's own shell and the data library's converter."""
import base64
import csv
import re

import support

# What the data library's text driver calls the types of the columns below.
TYPES = {"small": "Integer(Int16)", "whole": "Integer", "large": "Integer64", "yes": "Integer(Boolean)",
         "single": "Real(Float32)", "real": "Real", "day": "Date", "moment": "DateTime", "clock": "Time",
         "words": "String"}
ROWS = [
    {"small": "1", "whole": "2", "large": "3", "yes": "1", "single": "1.5", "real": "2.5", "day": "2020/02/29",
     "moment": "2020/02/29 23:59:59", "clock": "23:59:59", "words": "plain"},
    {"small": "-32768", "whole": "-2147483648", "large": "-9223372036854775808", "yes": "0", "single": "-3.25",
     "real": "-0.1", "day": "1899/12/31", "moment": "1969/12/31 00:00:00", "clock": "00:00:00",
     "words": "<a href=\"x\">&amp; 'quotes' ]]> --</a>"},
    {"small": "32767", "whole": "2147483647", "large": "9223372036854775807", "yes": "1", "single": "16777216",
     "real": "123456789.123456", "day": "9999/12/31", "moment": "2038/01/19 03:14:08", "clock": "12:00:00",
     "words": "Ünïcödé ßẞ 漢字 العربية \U0001F30D \U00010348 e\u0301 \u200d \ufeff"},
    {"large": "9007199254740993", "real": "1e300", "single": "0.1", "words": "line one\nline two\ttab\r\nend"},
    {"large": "-9007199254740993", "real": "1e-7", "words": "  blanks before and behind  "},
    {"large": "1000000000000000001", "real": "0.30000000000000004", "words": "control \x01\x08\x1b characters \x7f"},
    {"real": "99999999999999.9", "words": "long " * 20000},
    {"real": "-2.2250738585072014e-308", "words": "0012"},
    {"real": "4503599627370497.5", "words": "1,5;\"x\"", "day": "0001/01/01"},
    {"real": "0", "words": "NULL"},
    {},
]
NUMBERS = ("single", "real")
WHOLE = ("small", "whole", "large", "yes")
# Characters that a document cannot hold.
FORBIDDEN = re.compile("[\x00-\x08\x0b\x0c\x0e-\x1f\ufffe\uffff]")
DROPPED = (f"halvane: warning: {sum(len(FORBIDDEN.findall(row.get('words', ''))) for row in ROWS)} characters that "
           "XML forbids were dropped from the data\n")


def control_file(layer, fields, kind="Layer"):
    source = "DataSource='Record'" if kind == "Table" else ""
    cells = "".join(f"<F Name='{field}' {source} IdentityValue='{field}'/>" for field in fields)
    if kind == "Table":
        return (f"<T Name='Rows'><Each Name='Row' DataSource='Table' Identity='TableName' IdentityValue='{layer}' "
                f"Entries='Multiple'>{cells}</Each></T>")
    return (f"<T Name='Layers'><L Name='Layer' DataSource='MapLayer' Identity='LayerName' IdentityValue='{layer}'>"
            f"<C Name='count' Target='Attribute' DataProperty='FeatureCount'/>"
            f"<Each Name='Row' DataSource='Feature' Entries='Multiple'>{cells}</Each></L></T>")


def date_text(text):
    """mm/dd/yyyy of a date in any of the forms that the other programs write."""
    found = re.match(r"(\d+)[-/](\d+)[-/](\d+)", text or "")
    return f"{found[2]}/{found[3]}/{found[1]}" if found else ""


class Values(support.CrossCheck):
    def source(self, fields, rows=None):
        """A text file of the rows, with its types, that the converter makes points of."""
        file = self.folder / "source.csv"
        with file.open("w", encoding="utf-8", newline="") as text:
            writer = csv.writer(text)
            writer.writerow(["WKT", *fields])
            for number, row in enumerate(rows or ROWS):
                writer.writerow([f"POINT ({number} {number})", *(row.get(field, "") for field in fields)])
        file.with_suffix(".csvt").write_text(",".join(["WKT", *(TYPES[field] for field in fields)]), encoding="utf-8")
        return file

    def converted(self, name, *options, fields=tuple(TYPES), rows=None):
        target = self.folder / name
        return self.make(target, self.source(fields, rows), "-oo", "EMPTY_STRING_AS_NULL=YES", "-nln", "rows",
                         "-a_srs", "EPSG:4326", *options)

    def check_rows(self, exported, expected, fields):
        self.assertEqual(len(exported), len(expected))
        for number, (row, reference) in enumerate(zip(exported, expected), 1):
            for field in fields:
                with self.subTest(row=number, field=field):
                    self.check_value(field, row.findtext(field), reference[field])

    def check_value(self, field, text, reference):
        if reference is None or reference == "":
            self.assertEqual(text, "")
        elif field in WHOLE:
            self.assertEqual(text, str(int(reference)))
        elif field in NUMBERS:
            self.check_number(field, text, float(reference))
        elif field in ("day", "moment"):
            self.assertEqual(text, date_text(reference))
        elif field == "clock":
            self.assertEqual(text, reference[:8])
        else:
            self.assertEqual(FORBIDDEN.sub("", reference), text)

    def check_number(self, field, text, reference):
        # As many digits as the type holds for sure, at most 15 of them behind the point.
        digits = 6.5 if field == "single" else 14.5
        tolerance = max(abs(reference) * 10 ** -digits, 5.1e-16)
        self.assertLessEqual(abs(float(text) - reference), tolerance, (text, reference))
        self.assertNotRegex(text, r"\.\d*0$|\.$|^[-+]?\.|e|E|^\+", "padding or an exponent")

    def rows_of(self, data, layer="rows", fields=tuple(TYPES), **options):
        root = self.export(control_file(layer, fields), data, **options)
        rows = root.findall("Layer/Row")
        self.assertEqual(root.find("Layer").get("count"), str(len(rows)))
        return rows

    def test_values_of_a_geopackage_are_those_of_the_database(self):
        file = self.converted("rows.gpkg", "-f", "GPKG")
        names = list(TYPES)
        rows = support.sql(file, f"SELECT {', '.join(names)} FROM rows ORDER BY fid")
        self.assertEqual(len(rows), len(ROWS))
        self.check_rows(self.rows_of(file, messages=DROPPED), [dict(zip(names, row)) for row in rows], names)

    def test_values_of_an_sqlite_file_are_those_of_the_database(self):
        file = self.converted("rows.sqlite", "-f", "SQLite")
        names = list(TYPES)
        rows = support.sql(file, f"SELECT {', '.join(names)} FROM rows ORDER BY ogc_fid")
        self.check_rows(self.rows_of(file, messages=DROPPED), [dict(zip(names, row)) for row in rows], names)

    def check_against_converter(self, file, fields):
        expected = support.reference_rows(file, "rows")
        self.assertEqual(len(expected), len(ROWS))
        self.check_rows(self.rows_of(file, "rows", fields, messages=DROPPED), expected, fields)

    def test_values_of_flatgeobuf_are_those_that_the_converter_writes(self):
        # The format has no times without a date.
        fields = [field for field in TYPES if field != "clock"]
        file = self.converted("rows.fgb", "-f", "FlatGeobuf", fields=fields)
        self.check_against_converter(file, fields)

    def test_values_of_geojson_are_those_that_the_converter_writes(self):
        fields = [field for field in TYPES if field != "single"]
        file = self.converted("rows.geojson", "-f", "GeoJSON", fields=fields)
        self.check_against_converter(file, fields)

    def test_values_of_a_shapefile_are_those_that_the_converter_writes(self):
        fields = ["small", "whole", "large", "real", "day", "words"]
        # The format's texts are short, and its whole numbers have 18 digits: wider ones are floating-point numbers.
        rows = [{**row, "words": row.get("words", "")[:80], "large": row.get("large", "")[:18]} for row in ROWS]
        file = self.converted("rows.shp", "-f", "ESRI Shapefile", "-lco", "ENCODING=UTF-8", fields=fields, rows=rows)
        self.check_against_converter(file, fields)

    def test_values_of_a_text_file_are_its_texts(self):
        file = self.folder / "rows.csv"
        with file.open("w", encoding="utf-8", newline="") as text:
            writer = csv.DictWriter(text, list(TYPES), restval="")
            writer.writeheader()
            writer.writerows(ROWS)
        with file.open(encoding="utf-8", newline="") as text:
            expected = list(csv.DictReader(text))
        root = self.export(control_file("rows", TYPES, "Table"), file, messages=DROPPED)
        self.assertEqual(len(root), len(ROWS))
        for row, reference in zip(root, expected):
            for field in TYPES:
                # The data library reads every end of a line as one character.
                expected_text = FORBIDDEN.sub("", reference[field]).replace("\r\n", "\n")
                self.assertEqual(row.findtext(field), expected_text, field)

    def test_bytes_are_written_in_base64(self):
        file = self.folder / "bytes.gpkg"
        self.make(file, self.source(["words"]), "-f", "GPKG", "-nln", "rows", "-lco", "SPATIAL_INDEX=NO")
        support.run("sqlite3", file, "ALTER TABLE rows ADD COLUMN raw BLOB; UPDATE rows SET raw = randomblob(fid * 7) WHERE fid <> 4")
        expected = support.sql(file, "SELECT hex(raw) FROM rows ORDER BY fid")
        exported = [base64.b64decode(row.findtext("raw")).hex().upper()
                    for row in self.rows_of(file, fields=["raw"])]
        self.assertEqual(exported, [text for text, in expected])
        self.assertEqual(exported[3], "")

    def test_every_value_of_the_world_is_that_of_the_database(self):
        file = support.EXAMPLES / "data" / "world.gpkg"
        for layer, in support.sql(file, "SELECT table_name FROM gpkg_contents WHERE data_type = 'features'"):
            names = [name for name, kind in support.sql(file, f"SELECT name, type FROM pragma_table_info('{layer}')")
                     if name != "shape"]
            expected = support.sql(file, f"SELECT {', '.join(names)} FROM {layer} ORDER BY oid")
            rows = self.rows_of(file, layer, names)
            self.assertEqual(len(rows), len(expected))
            for row, reference in zip(rows, expected):
                for name, value in zip(names, reference):
                    text = row.findtext(name)
                    if isinstance(value, float):
                        self.check_number(name, text, value)
                    else:
                        self.assertEqual(text, "" if value is None else str(value), name)

    def test_every_row_of_a_table_without_shapes_is_that_of_the_database(self):
        file = support.EXAMPLES / "data" / "world.gpkg"
        names = ["name", "countries", "population", "gdp_md"]
        expected = support.sql(file, f"SELECT {', '.join(names)} FROM continents ORDER BY oid")
        root = self.export(control_file("continents", names, "Table"), file)
        found = [[row.findtext(name) for name in names] for row in root]
        self.assertEqual([[row[0], *map(float, row[1:])] for row in found], [[row[0], *map(float, row[1:])]
                                                                           for row in expected])

    def identifiers(self, choice=None):
        file = support.EXAMPLES / "data" / "world.gpkg"
        options = ["--select", f"countries={choice}"] if choice else []
        root = self.export(control_file("countries", ["oid"]), file, *options)
        total = support.sql(file, "SELECT count(*) FROM countries")[0][0]
        self.assertEqual(root.find("Layer").get("count"), str(total), "a selection does not change the count")
        return [int(row.findtext("oid")) for row in root.findall("Layer/Row")]

    def test_a_clause_selects_the_rows_that_the_database_selects(self):
        file = support.EXAMPLES / "data" / "world.gpkg"
        for clause in ("pop_est > 50000000", "continent = 'Africa' AND pop_est < 1000000", "name LIKE 'S%'",
                       "iso_a3 IN ('LUX', 'NZL')", "name >= 'T' OR gdp_md_est IS NULL", "length(name) = 4",
                       "name LIKE '%''%' OR name LIKE '%é%' OR name LIKE '%ô%'"):
            with self.subTest(clause=clause):
                expected = support.sql(file, f"SELECT oid FROM countries WHERE {clause} ORDER BY oid")
                self.assertGreater(len(expected), 0)
                self.assertEqual(self.identifiers(clause), [oid for oid, in expected])

    def test_identifiers_select_in_their_own_order(self):
        self.assertEqual(self.identifiers("77,3,150,12"), [77, 3, 150, 12])

    def test_without_a_selection_all_rows_come(self):
        file = support.EXAMPLES / "data" / "world.gpkg"
        self.assertEqual(self.identifiers(), [oid for oid, in support.sql(file, "SELECT oid FROM countries ORDER BY 1")])

    def test_a_filter_of_the_map_governs_rows_and_count(self):
        file = support.EXAMPLES / "data" / "world.gpkg"
        (self.folder / "map.xml").write_text(
            f"<MapDocument><Map name='M'><FeatureLayer name='rows' source='{file}' dataset='countries' "
            "filter=\"continent = 'Europe'\"/></Map></MapDocument>", encoding="utf-8")
        expected = support.sql(file, "SELECT oid FROM countries WHERE continent = 'Europe' ORDER BY oid")
        rows = self.rows_of(self.folder / "map.xml", "rows", ["oid"])
        self.assertEqual([int(row.findtext("oid")) for row in rows], [oid for oid, in expected])
        self.assertEqual(self.described_layers(self.folder / "map.xml")["rows"]["featureClass"]["features"],
                         len(expected))

    def test_related_rows_are_those_that_a_join_gives(self):
        file = support.EXAMPLES / "data" / "world.gpkg"
        root = self.export("""<T Name="World">
  <L Name="Countries" DataSource="MapLayer" Identity="LayerName" IdentityValue="countries">
    <Each Name="Country" DataSource="Feature" Entries="Multiple">
      <F Name="code" Target="Attribute" IdentityValue="iso_a3"/>
      <G Name="Cities" DataSource="RelatedTable" Identity="LayerName" IdentityValue="cities" LinkField="iso_a3">
        <C Name="City" DataSource="RelatedRecord" IdentityValue="name"/>
      </G>
    </Each>
  </L>
</T>""", file)
        found = [(country.get("code"), city.text) for country in root.iter("Country")
                 for city in country.iter("City") if city.text]
        expected = support.sql(file, "SELECT k.iso_a3, c.name FROM countries k JOIN cities c ON c.iso_a3 = k.iso_a3 "
                                     "ORDER BY k.oid, c.oid")
        self.assertGreater(len(expected), 150)
        self.assertEqual(found, [tuple(row) for row in expected])


if __name__ == "__main__":
    support.main()
