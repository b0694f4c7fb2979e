#!/usr/bin/env bash
# Makes city.gpkg and heights.tif: New York's boroughs, bridges and high points. Sources and licences: README.md.
#   make-city.sh BOROUGHS_SHP OUTPUT.gpkg OUTPUT.tif
# BOROUGHS_SHP is the city's own file of its boroughs (nybb, release 16a), in feet (EPSG:2263).
set -euo pipefail
boroughs=$1 out=$2 raster=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
rm -f "$out" "$raster"
# The same input makes the same bytes on any day.
export OGR_CURRENT_DATE=2026-11-21T00:00:00.000Z
export OSR_DEFAULT_AXIS_MAPPING_STRATEGY=TRADITIONAL_GIS_ORDER

add() { # SOURCE OPTION…: adds a layer to the database
  local source=$1
  shift
  ogr2ogr -f GPKG -update "$out" "$source" -lco GEOMETRY_NAME=shape -lco FID=oid -a_srs EPSG:2263 "$@"
}

# The bridges: the towers of the main span (longitude and latitude, to about 0.001 degrees), its length and its clearance
# above the water in feet.
cat > "$work/bridges" <<'DATA'
BRO-1883|Brooklyn Bridge|1|1883-05-24|5|135|1595.5|0|Washington Roebling|-73.9988 40.7076|-73.9946 40.7043|1 3
WIL-1903|Williamsburg Bridge|1|1903-12-19|8|135|1600|0|Leffert L. Buck|-73.9752 40.7147|-73.9697 40.7124|1 3
QUE-1909|Queensboro Bridge|2|1909-03-30|9|130|1182|0|Gustav Lindenthal|-73.9585 40.7583|-73.9551 40.7567|1 4
MAN-1909|Manhattan Bridge|1|1909-12-31|7|135|1470|0|Leon Moisseiff|-73.9918 40.7092|-73.9897 40.7053|1 3
HEN-1936|Henry Hudson Bridge|3|1936-12-12|6|143|841|1|David B. Steinman|-73.9231 40.8767|-73.9214 40.8786|1 2
WHI-1939|Bronx-Whitestone Bridge|1|1939-04-29|6|135|2300|1|Othmar Ammann|-73.8303 40.8045|-73.8286 40.7983|2 4
THR-1961|Throgs Neck Bridge|1|1961-01-11|6|142|1800|1|Othmar Ammann|-73.7938 40.8041|-73.7926 40.7992|2 4
VER-1964|Verrazzano-Narrows Bridge|1|1964-11-21|13|228|4260|1|Othmar Ammann|-74.0521 40.6054|-74.0376 40.6078|3 5
DATA

# The highest point of each borough: height in feet, longitude and latitude.
cat > "$work/high" <<'DATA'
1|Bennett Park|265|-73.9380 40.8528
2|Chapel Farm|280|-73.9040 40.8973
3|Battle Hill|216|-73.9880 40.6584
4|Glen Oaks|258|-73.7152 40.7586
5|Todt Hill|401|-74.1036 40.6015
DATA

to_feet() { gdaltransform -s_srs EPSG:4326 -t_srs EPSG:2263 -output_xy; }

ogr2ogr -f GPKG "$out" "$boroughs" -nln boroughs -nlt MULTIPOLYGON -simplify 500 -makevalid -a_srs EPSG:2263 \
  -lco GEOMETRY_NAME=shape -lco FID=oid \
  -sql "SELECT CAST(BoroCode AS smallint) AS boro_code, CAST(BoroName AS character(32)) AS name, Shape_Leng AS perimeter_ft, Shape_Area AS area_sqft FROM nybb ORDER BY BoroCode"

# Lines with Z (the clearance) and M (feet from the first tower), and the towers by themselves; both scaled to the length
# of the span about its middle.
paste -d '|' "$work/bridges" <(cut -d '|' -f 10 "$work/bridges" | to_feet) <(cut -d '|' -f 11 "$work/bridges" | to_feet) |
  awk -F '|' -v lines="$work/bridges.csv" -v points="$work/piers.csv" '
    BEGIN {
      print "code,name,kind,opened,lanes,clearance_ft,span_ft,toll,designer,WKT" > lines
      print "code,WKT" > points
    }
    {
      split($13, a, " "); split($14, b, " ")
      x = (a[1] + b[1]) / 2; y = (a[2] + b[2]) / 2
      dx = b[1] - a[1]; dy = b[2] - a[2]
      half = $7 / 2 / sqrt(dx * dx + dy * dy)
      x0 = x - dx * half; y0 = y - dy * half; x1 = x + dx * half; y1 = y + dy * half
      printf "%s,%s,%s,%s,%s,%s,%s,%s,%s,", $1, $2, $3, $4, $5, $6, $7, $8, $9 > lines
      printf "\"LINESTRING ZM (%.1f %.1f %s 0,%.1f %.1f %s %s,%.1f %.1f %s %s)\"\n",
        x0, y0, $6, x, y, $6, $7 / 2, x1, y1, $6, $7 > lines
      printf "%s,\"MULTIPOINT (%.1f %.1f,%.1f %.1f)\"\n", $1, x0, y0, x1, y1 > points
    }'
echo '"String(8)","String(40)","Integer(Int16)","Date","Integer(Int16)","Real(Float32)","Real","Integer(Boolean)","String(30)","WKT"' > "$work/bridges.csvt"
echo '"String(8)","WKT"' > "$work/piers.csvt"
add "$work/bridges.csv" -nln bridges -nlt LINESTRINGZM -lco "DESCRIPTION=The longest bridges between two boroughs" \
  -sql "SELECT code, name, kind, opened, lanes, clearance_ft, span_ft, toll, designer FROM bridges"
add "$work/piers.csv" -nln piers -nlt MULTIPOINT -sql "SELECT code FROM piers"

paste -d '|' "$work/high" <(cut -d '|' -f 4 "$work/high" | to_feet) |
  awk -F '|' -v points="$work/high_points.csv" -v surface="$work/ground.csv" '
    BEGIN { print "boro_code,name,height_ft,WKT" > points; print "name,WKT" > surface }
    {
      split($5, p, " ")
      v[NR] = sprintf("%.1f %.1f %s", p[1], p[2], $3)
      printf "%s,%s,%s,\"POINT Z (%s)\"\n", $1, $2, $3, v[NR] > points
    }
    function triangle(a, b, c) { return "((" v[a] "," v[b] "," v[c] "," v[a] "))" }
    END {
      printf "\"Between the high points\",\"TIN Z (%s,%s,%s,%s)\"\n",
        triangle(5, 3, 1), triangle(3, 4, 1), triangle(1, 4, 2), triangle(5, 4, 3) > surface
    }'
echo '"Integer(Int16)","String(30)","Integer","WKT"' > "$work/high_points.csvt"
echo '"String(30)","WKT"' > "$work/ground.csvt"
add "$work/high_points.csv" -nln high_points -nlt POINTZ -sql "SELECT boro_code, name, height_ft FROM high_points"
add "$work/ground.csv" -nln ground -nlt TINZ -sql "SELECT name FROM ground"

# Heights on a grid of 24 by 24 cells between the high points, nearer ones weighing more.
gdal_grid -q -a invdist:power=2 -txe 930000 1068000 -tye 158000 268000 -outsize 24 24 -ot Int16 -of GTiff \
  -co COMPRESS=DEFLATE -a_srs EPSG:2263 -l high_points "$out" "$raster"

{
  cat <<'SQL'
CREATE TABLE milestones (
  oid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL,
  bridge INTEGER NOT NULL REFERENCES bridges (oid) ON DELETE CASCADE,
  code TEXT(8) NOT NULL,
  happened DATE,
  event TEXT(30)
);
INSERT INTO milestones (bridge, code, happened, event) VALUES
  (1, 'BRO-1883', '1870-01-02', 'Construction began'),
  (1, 'BRO-1883', '1883-05-24', 'Opened'),
  (1, 'BRO-1883', NULL, 'Towers completed'),
  (2, 'WIL-1903', '1903-12-19', 'Opened'),
  (3, 'QUE-1909', '1909-03-30', 'Opened'),
  (4, 'MAN-1909', '1909-12-31', 'Opened'),
  (5, 'HEN-1936', '1936-12-12', 'Opened'),
  (6, 'WHI-1939', '1939-04-29', 'Opened'),
  (7, 'THR-1961', '1961-01-11', 'Opened'),
  (8, 'VER-1964', '1959-08-13', 'Construction began'),
  (8, 'VER-1964', '1964-11-21', 'Upper level opened'),
  (8, 'VER-1964', '1969-06-28', 'Lower level opened');
INSERT INTO gpkg_contents (table_name, data_type, identifier, description, last_change)
  VALUES ('milestones', 'attributes', 'milestones', 'What happened to the bridges', '2026-11-21T00:00:00.000Z');

-- Each bridge and the two boroughs that it joins.
CREATE TABLE bridges_boroughs (base_id INTEGER NOT NULL, related_id INTEGER NOT NULL);
SQL
  awk -F '|' '{ split($12, b, " "); for (i = 1; i <= 2; i++) print "INSERT INTO bridges_boroughs VALUES (" NR ", " b[i] ");" }' "$work/bridges"
  cat <<'SQL'
CREATE TABLE gpkgext_relations (
  id INTEGER PRIMARY KEY AUTOINCREMENT, base_table_name TEXT NOT NULL, base_primary_column TEXT NOT NULL DEFAULT 'id',
  related_table_name TEXT NOT NULL, related_primary_column TEXT NOT NULL DEFAULT 'id', relation_name TEXT NOT NULL,
  mapping_table_name TEXT NOT NULL UNIQUE
);
INSERT INTO gpkgext_relations VALUES (1, 'bridges', 'oid', 'boroughs', 'oid', 'features', 'bridges_boroughs');

CREATE TABLE gpkg_data_columns (
  table_name TEXT NOT NULL, column_name TEXT NOT NULL, name TEXT, title TEXT, description TEXT, mime_type TEXT,
  constraint_name TEXT, PRIMARY KEY (table_name, column_name), UNIQUE (table_name, name)
);
CREATE TABLE gpkg_data_column_constraints (
  constraint_name TEXT NOT NULL, constraint_type TEXT NOT NULL, value TEXT, min NUMERIC, min_is_inclusive BOOLEAN,
  max NUMERIC, max_is_inclusive BOOLEAN, description TEXT, UNIQUE (constraint_name, constraint_type, value)
);
INSERT INTO gpkg_data_columns (table_name, column_name, title, constraint_name) VALUES
  ('boroughs', 'boro_code', 'Number of the borough', 'Borough'),
  ('boroughs', 'perimeter_ft', 'Length of the shore in feet', NULL),
  ('bridges', 'code', 'Short name and year', 'Bridge code'),
  ('bridges', 'kind', 'Kind of bridge', 'Kind'),
  ('bridges', 'lanes', 'Lanes for vehicles', 'Lanes'),
  ('bridges', 'clearance_ft', 'Clearance above the water', 'Clearance'),
  ('high_points', 'boro_code', 'Number of the borough', 'Borough');
INSERT INTO gpkg_data_column_constraints VALUES
  ('Borough', 'enum', '1', NULL, NULL, NULL, NULL, 'Manhattan'),
  ('Borough', 'enum', '2', NULL, NULL, NULL, NULL, 'Bronx'),
  ('Borough', 'enum', '3', NULL, NULL, NULL, NULL, 'Brooklyn'),
  ('Borough', 'enum', '4', NULL, NULL, NULL, NULL, 'Queens'),
  ('Borough', 'enum', '5', NULL, NULL, NULL, NULL, 'Staten Island'),
  ('Kind', 'enum', '3', NULL, NULL, NULL, NULL, 'Arch'),
  ('Kind', 'enum', '2', NULL, NULL, NULL, NULL, 'Cantilever'),
  ('Kind', 'enum', '1', NULL, NULL, NULL, NULL, 'Suspension'),
  ('Lanes', 'range', NULL, 0, 1, 14, 1, 'Lanes for vehicles, both levels together'),
  ('Clearance', 'range', NULL, 10, 1, 250.5, 1, 'Feet above mean high water'),
  ('Bridge code', 'glob', '[A-Z][A-Z][A-Z]-[0-9][0-9][0-9][0-9]', NULL, NULL, NULL, NULL, 'Three letters, year of opening');

CREATE TABLE halvane_subtypes (
  id INTEGER PRIMARY KEY, table_name TEXT NOT NULL, field_name TEXT NOT NULL, code INTEGER NOT NULL, name TEXT NOT NULL,
  is_default INTEGER NOT NULL DEFAULT 0, UNIQUE (table_name, code)
);
CREATE TABLE halvane_subtype_fields (
  id INTEGER PRIMARY KEY, table_name TEXT NOT NULL, code INTEGER NOT NULL, field_name TEXT NOT NULL, domain_name TEXT,
  default_value TEXT, UNIQUE (table_name, code, field_name)
);
INSERT INTO halvane_subtypes (table_name, field_name, code, name, is_default) VALUES
  ('bridges', 'kind', 1, 'Suspension bridge', 1),
  ('bridges', 'kind', 2, 'Cantilever bridge', 0),
  ('bridges', 'kind', 3, 'Arch bridge', 0);
INSERT INTO halvane_subtype_fields (table_name, code, field_name, domain_name, default_value) VALUES
  ('bridges', 1, 'lanes', NULL, '6'),
  ('bridges', 1, 'clearance_ft', NULL, '135'),
  ('bridges', 3, 'lanes', NULL, '2'),
  ('bridges', 3, 'designer', NULL, 'unknown');

CREATE TABLE IF NOT EXISTS gpkg_extensions (
  table_name TEXT, column_name TEXT, extension_name TEXT NOT NULL, definition TEXT NOT NULL, scope TEXT NOT NULL,
  UNIQUE (table_name, column_name, extension_name)
);
INSERT INTO gpkg_extensions VALUES
  ('gpkg_data_columns', NULL, 'gpkg_schema', 'http://www.geopackage.org/spec/#extension_schema', 'read-write'),
  ('gpkg_data_column_constraints', NULL, 'gpkg_schema', 'http://www.geopackage.org/spec/#extension_schema', 'read-write'),
  ('gpkgext_relations', NULL, 'gpkg_related_tables', 'http://www.geopackage.org/18-000.html', 'read-write'),
  ('bridges_boroughs', NULL, 'gpkg_related_tables', 'http://www.geopackage.org/18-000.html', 'read-write'),
  ('halvane_subtypes', NULL, 'halvane_subtypes', 'docs/geopackage-extension.md', 'write-only'),
  ('halvane_subtype_fields', NULL, 'halvane_subtypes', 'docs/geopackage-extension.md', 'write-only');
VACUUM;
SQL
} | sqlite3 -bail "$out"
