#!/usr/bin/env python3
"""Spatial references: projection, zone, datum, spheroid, units, parameters and domain, against the projection
library's own programs."""
import json
import math
import re

import support

# The first systems of every projection method that the register holds, but for those of time and of navigation.
PROJECTED = [2000, 2046, 2056, 2062, 2065, 2066, 2138, 2154, 2172, 2180, 2218, 2963, 2964, 2985, 3000,
             3031, 3035, 3067, 3078, 3139, 3295, 3338, 3388, 3395, 3571, 3857, 3993, 4087, 5041, 5070, 5221, 5224, 5225,
             5472, 5513, 5514, 5641, 5880, 6201, 6244, 6933, 8441, 8857, 9311, 22300, 22700, 27200, 27700, 29903, 31300]
ZONES = [25832, 26915, 32601, 32660, 32701, 32733, 23030, 31467, 28992]
OTHER = [4326, 4258, 4267, 4269, 4230, 4807, 4979, 4978]
COMPOUND = [7405, 6349, 5555, 5698, 9518]
# The zones of the states' plane systems have numbers of their own, that the register does not hold as such.
STATE_ZONES = {2277: 4203, 32139: 4203, 32039: 4203, 26929: 101, 2222: 201, 26741: 401, 26955: 503, 2263: 3104,
               26985: 1900, 32161: 5200, 2926: 4601, 26931: 5001}
CODES = PROJECTED + ZONES + OTHER + COMPOUND + list(STATE_ZONES)
KEYWORDS = ("PROJECTION", "ZONE", "DATUM", "SPHEROID", "UNITS", "FIPSZONE", "ZUNITS", "XSHIFT", "YSHIFT", "PARAMETERS")
NUMBERS = ("XMIN", "XMAX", "YMIN", "YMAX", "FALSEX", "FALSEY", "XYSCALE", "ZMIN", "ZMAX", "FALSEZ", "ZSCALE", "MMIN",
           "MMAX", "FALSEM", "MSCALE")


def definition(code):
    """What the projection library says of a system, once taken apart."""
    whole = json.loads(support.run("projinfo", "-q", "-o", "PROJJSON", f"EPSG:{code}"))
    horizontal, *vertical = whole.get("components", [whole])
    return whole, horizontal, (vertical or [None])[0]


def box_of(code, definitions):
    """The area of use of a system; of several, that of its first usage."""
    whole = definitions[code][0]
    return whole["bbox"] if "bbox" in whole else whole["usages"][0]["bbox"]


def unit_text(unit):
    name = (unit if isinstance(unit, str) else unit["name"]).upper()
    return "METERS" if name == "METRE" else name


def axis_unit(system, index):
    axes = system["coordinate_system"]["axis"] if system else []
    return unit_text(axes[index]["unit"]) if index < len(axes) else ""


def zone_of(conversion):
    """The number of a zone of the universal system, below zero in the south; 0 for other conversions."""
    parameters = {each["name"]: each["value"] for each in conversion["parameters"]}
    if (conversion["method"]["name"] != "Transverse Mercator" or parameters["Latitude of natural origin"] != 0 or
            parameters["Scale factor at natural origin"] != 0.9996 or parameters["False easting"] != 500000 or
            parameters["False northing"] not in (0, 10000000)):
        return 0
    zone = (parameters["Longitude of natural origin"] + 183) / 6
    if zone != int(zone) or not 1 <= zone <= 60 or any(
            each["unit"] != "metre" for each in conversion["parameters"] if each["name"].startswith("False")):
        return 0
    return int(zone) if parameters["False northing"] == 0 else -int(zone)


class References(support.CrossCheck):
    @classmethod
    def setUpClass(cls):
        cls.definitions = {code: definition(code) for code in CODES}

    def setUp(self):
        super().setUp()
        self.data = self.layers("references.gpkg", CODES, "-f", "GPKG")

    def layers(self, name, codes, *options):
        """A dataset with a layer for each code."""
        source = self.folder / "source.vrt"
        source.write_text("<OGRVRTDataSource>" + "".join(
            f'<OGRVRTLayer name="s{code}"><SrcDataSource>{support.DATA / "shapes.csv"}</SrcDataSource>'
            f"<SrcSQL>SELECT id FROM shapes WHERE kind = 'point_z'</SrcSQL><GeometryType>wkbPoint25D</GeometryType>"
            f"<LayerSRS>EPSG:{code}</LayerSRS></OGRVRTLayer>" for code in codes) + "</OGRVRTDataSource>",
            encoding="utf-8")
        return self.make(self.folder / name, source, *options)

    def references(self, data, codes, names=KEYWORDS + NUMBERS):
        """The exported values of every code's layer, each in a map of its own: a dict by keyword each."""
        maps = self.folder / "maps.xml"
        maps.write_text("<MapDocument>" + "".join(
            f"<Map name='s{code}'><FeatureLayer source='{data.name}' dataset='s{code}'/></Map>"
            for code in codes) + "</MapDocument>", encoding="utf-8")
        leaves = "".join(f"<P Name='{name}' DataProperty='SPATIALREFERENCE.{name}'/>" for name in names)
        control = "<T Name='References'>" + "".join(f"<M Name='Map' DataSource='Map' IdentityValue='s{code}'>{leaves}</M>"
                                                    for code in codes) + "</T>"
        found = [{leaf.tag: leaf.text or "" for leaf in each} for each in self.export(control, maps)]
        self.assertEqual(len(found), len(codes))
        return dict(zip(codes, found))

    def check(self, data, codes):
        for code, values in self.references(data, codes, KEYWORDS).items():
            with self.subTest(code=code):
                self.check_description(code, values)

    def check_description(self, code, values):
        _, horizontal, vertical = self.definitions[code]
        base = horizontal.get("base_crs", horizontal)
        datum = base.get("datum") or base["datum_ensemble"]
        self.assertEqual(values["DATUM"], datum["name"].removesuffix(" ensemble").upper())
        self.assertEqual(values["SPHEROID"], datum["ellipsoid"]["name"].upper())
        self.assertEqual(values["UNITS"], axis_unit(horizontal, 0))
        self.assertEqual(values["ZUNITS"], axis_unit(vertical, 0) or axis_unit(horizontal, 2) or "NO")
        self.assertEqual((values["XSHIFT"], values["YSHIFT"]), ("0.0", "0.0"))
        conversion = horizontal.get("conversion")
        zone = zone_of(conversion) if conversion else 0
        self.assertEqual(values["ZONE"], str(zone or ""))
        self.assertEqual(values["FIPSZONE"], str(STATE_ZONES.get(code, "")) or values["FIPSZONE"])
        if not conversion:
            self.assertEqual(values["PROJECTION"], "GEOCENTRIC" if code == 4978 else "GEOGRAPHIC")
            self.assertEqual(values["PARAMETERS"], "")
            return
        self.assertEqual(values["PROJECTION"], "UTM" if zone else "STATEPLANE" if values["FIPSZONE"] else
                         conversion["method"]["name"].upper())
        self.check_parameters(values["PARAMETERS"], conversion["parameters"])

    def check_parameters(self, text, parameters):
        found = text.split("; ")
        self.assertEqual(len(found), len(parameters), text)
        for exported, expected in zip(found, parameters):
            name = expected["name"].upper()
            self.assertTrue(exported.startswith(name + " "), (exported, name))
            value, unit = exported[len(name) + 1:].split(" ", 1)
            self.assertTrue(math.isclose(float(value), expected["value"], rel_tol=1e-14, abs_tol=1e-15), exported)
            self.assertEqual(unit, unit_text(expected["unit"]), name)

    def test_references_of_a_geopackage_say_what_the_projection_library_says(self):
        self.check(self.data, CODES)

    def test_references_of_flatgeobuf_say_what_the_projection_library_says(self):
        self.check(self.layers("references", CODES[::5], "-f", "FlatGeobuf"), CODES[::5])

    def test_a_description_lists_the_same_values(self):
        codes = CODES[::7]
        exported = self.references(self.data, codes, KEYWORDS)
        maps = self.describe(self.folder / "maps.xml")["maps"]
        self.assertEqual([each["name"] for each in maps], [f"s{code}" for code in codes])
        for each in maps:
            found = {line[:14].strip().upper(): line[14:] for line in each["spatialReference"]["description"]}
            values = exported[int(each["name"][1:])]
            self.assertEqual(found, {key: value for key, value in values.items() if value}, each["name"])

    def test_the_height_domain_is_the_range_of_the_heights(self):
        for values in self.references(self.data, CODES[::9], NUMBERS).values():
            self.assertEqual((values["ZMIN"], values["ZMAX"], values["FALSEZ"]), ("-0.001", "3.5", "-1"))
            self.assertEqual([values[name] for name in ("MMIN", "MMAX", "FALSEM", "MSCALE")], [""] * 4)

    def transformed(self, code, box):
        """The bounds, in a system's own units, of an area in degrees, along whose edges 41 points are taken."""
        west, south, east, north = (box[side + "itude"] for side in ("west_long", "south_lat", "east_long", "north_lat"))
        east += 360 if east < west else 0
        steps = [step / 40 for step in range(41)]
        points = [(south + step * (north - south), longitude) for step in steps for longitude in (west, east)]
        points += [(latitude, west + step * (east - west)) for step in steps for latitude in (south, north)]
        text = "".join(f"{latitude!r} {longitude!r}\n" for latitude, longitude in points)
        base = self.definitions[code][1]["base_crs"]["id"]["code"]
        lines = support.run("cs2cs", "-f", "%.6f", f"EPSG:{base}", f"EPSG:{code}", stdin=text.encode()).split("\n")
        pairs = [tuple(map(float, re.split(r"\s+", line)[:2])) for line in lines if line and "*" not in line]
        first = self.definitions[code][1]["coordinate_system"]["axis"][0]["direction"]
        xs, ys = zip(*(pair if first == "east" else pair[::-1] for pair in pairs))
        return min(xs), min(ys), max(xs), max(ys)

    def test_the_domain_of_plane_systems_is_the_area_of_use_in_their_units(self):
        codes = (2056, 2138, 2154, 2180, 3035, 3067, 3078, 3338, 5514, 25832, 26915, 27700, 28992, 31467, 32733, 2277,
                 32139, 26741, 2263)
        exported = self.references(self.data, codes, NUMBERS)
        for code in codes:
            with self.subTest(code=code):
                values = [float(exported[code][name]) for name in ("XMIN", "YMIN", "XMAX", "YMAX")]
                expected = self.transformed(code, box_of(code, self.definitions))
                # The library adds some points between the corners; a bulge between them may differ a little.
                tolerance = 0.002 * max(expected[2] - expected[0], expected[3] - expected[1])
                for value, bound in zip(values, expected):
                    self.assertLessEqual(abs(value - bound), tolerance, (values, expected))
                self.assertEqual(float(exported[code]["FALSEX"]), math.floor(values[0]))
                self.assertEqual(float(exported[code]["FALSEY"]), math.floor(values[1]))
                self.assertEqual(exported[code]["XYSCALE"], "10000")

    def test_the_domain_of_degrees_is_the_area_of_use_itself(self):
        exported = self.references(self.data, (4326, 4258, 4230), NUMBERS)
        for code in exported:
            box = box_of(code, self.definitions)
            sides = {"XMIN": "west_longitude", "YMIN": "south_latitude", "XMAX": "east_longitude",
                     "YMAX": "north_latitude"}
            for name, side in sides.items():
                self.assertEqual(float(exported[code][name]), box[side], (code, name))
            self.assertEqual(exported[code]["XYSCALE"], "1000000000")


if __name__ == "__main__":
    support.main()
