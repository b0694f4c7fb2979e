-- What a GeoPackage can say of its structure, added to one that has the feature class "roads" with the field "id".
CREATE TABLE gpkg_data_columns (table_name TEXT NOT NULL, column_name TEXT NOT NULL, name TEXT, title TEXT,
  description TEXT, mime_type TEXT, constraint_name TEXT, CONSTRAINT pk_gdc PRIMARY KEY (table_name, column_name));
CREATE TABLE gpkg_data_column_constraints (constraint_name TEXT NOT NULL, constraint_type TEXT NOT NULL, value TEXT,
  min NUMERIC, min_is_inclusive BOOLEAN, max NUMERIC, max_is_inclusive BOOLEAN, description TEXT,
  CONSTRAINT gdcc_ntv UNIQUE (constraint_name, constraint_type, value));
CREATE TABLE IF NOT EXISTS gpkg_extensions (table_name TEXT, column_name TEXT, extension_name TEXT NOT NULL,
  definition TEXT NOT NULL, scope TEXT NOT NULL, CONSTRAINT ge_tce UNIQUE (table_name, column_name, extension_name));
INSERT INTO gpkg_extensions VALUES
  ('gpkg_data_columns', NULL, 'gpkg_schema', 'http://www.geopackage.org/spec121/#extension_schema', 'read-write'),
  ('gpkg_data_column_constraints', NULL, 'gpkg_schema', 'http://www.geopackage.org/spec121/#extension_schema', 'read-write');

ALTER TABLE roads ADD COLUMN name TEXT(40);
ALTER TABLE roads ADD COLUMN class INTEGER DEFAULT 2;
ALTER TABLE roads ADD COLUMN surface TEXT(10) DEFAULT 'it''s gravel';
ALTER TABLE roads ADD COLUMN lanes SMALLINT NOT NULL DEFAULT 1;
ALTER TABLE roads ADD COLUMN width DOUBLE DEFAULT 3.5;
ALTER TABLE roads ADD COLUMN weight FLOAT;
ALTER TABLE roads ADD COLUMN built DATE DEFAULT '2001-02-03';
ALTER TABLE roads ADD COLUMN seen DATETIME;
ALTER TABLE roads ADD COLUMN open BOOLEAN NOT NULL DEFAULT 1;
ALTER TABLE roads ADD COLUMN large INTEGER DEFAULT 9007199254740993;
ALTER TABLE roads ADD COLUMN tiny TINYINT;
ALTER TABLE roads ADD COLUMN medium MEDIUMINT;
ALTER TABLE roads ADD COLUMN photo BLOB;

INSERT INTO gpkg_data_columns (table_name, column_name, name, title, constraint_name) VALUES
  ('roads', 'name', 'Name of the road', 'Street', NULL),
  ('roads', 'class', 'Class', NULL, 'Road class'),
  ('roads', 'surface', NULL, 'Oberfläche <Straße>', 'surface'),
  ('roads', 'lanes', NULL, NULL, 'lanes'),
  ('roads', 'width', NULL, 'Width', 'width');
INSERT INTO gpkg_data_column_constraints VALUES
  ('Road class', 'enum', '10', NULL, NULL, NULL, NULL, 'Track'),
  ('Road class', 'enum', '1', NULL, NULL, NULL, NULL, 'Motorway'),
  ('lanes', 'range', NULL, 1, 1, 8, 1, 'Number of lanes'),
  ('Road class', 'enum', '2', NULL, NULL, NULL, NULL, 'Main road'),
  ('surface', 'enum', 'gravel', NULL, NULL, NULL, NULL, 'Gravel & sand'),
  ('surface', 'enum', 'asphalt', NULL, NULL, NULL, NULL, 'Asphalt'),
  ('surface', 'enum', '07', NULL, NULL, NULL, NULL, 'Other'),
  ('width', 'range', NULL, 0.25, 1, 40.125, 0, 'Width in metres'),
  ('below zero', 'range', NULL, -2000000000, 1, -0.5, 1, NULL),
  ('unused codes', 'enum', 'b', NULL, NULL, NULL, NULL, 'B'),
  ('unused codes', 'enum', 'a', NULL, NULL, NULL, NULL, ''),
  ('post code', 'glob', '[0-9][0-9][0-9]', NULL, NULL, NULL, NULL, 'Three digits');

CREATE TABLE owners (name TEXT PRIMARY KEY, since INTEGER);
CREATE TABLE towns (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, name TEXT NOT NULL UNIQUE, state TEXT, number INTEGER,
  twin INTEGER REFERENCES towns, UNIQUE (state, number));
CREATE TABLE repairs (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, road INTEGER REFERENCES roads (fid) ON DELETE CASCADE,
  detour INTEGER REFERENCES roads (fid), town TEXT REFERENCES towns (name) ON DELETE SET NULL, owner TEXT REFERENCES owners,
  state TEXT, number INTEGER, FOREIGN KEY (state, number) REFERENCES towns (state, number) ON DELETE CASCADE);
CREATE TABLE grid (a INTEGER, b INTEGER, PRIMARY KEY (b, a));
CREATE TABLE cells (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, x INTEGER, y INTEGER, FOREIGN KEY (x, y) REFERENCES grid);
CREATE TABLE town_roads (id INTEGER PRIMARY KEY, base_id INTEGER NOT NULL, related_id INTEGER NOT NULL, since DATE);
CREATE TABLE road_repairs (base_id INTEGER NOT NULL, related_id INTEGER NOT NULL);
INSERT INTO gpkg_contents (table_name, data_type, identifier) VALUES
  ('owners', 'attributes', 'owners'), ('towns', 'attributes', 'towns'), ('repairs', 'attributes', 'repairs'),
  ('grid', 'attributes', 'grid'), ('cells', 'attributes', 'cells');
CREATE TABLE gpkgext_relations (id INTEGER PRIMARY KEY AUTOINCREMENT, base_table_name TEXT NOT NULL,
  base_primary_column TEXT NOT NULL DEFAULT 'id', related_table_name TEXT NOT NULL,
  related_primary_column TEXT NOT NULL DEFAULT 'id', relation_name TEXT NOT NULL, mapping_table_name TEXT NOT NULL UNIQUE);
INSERT INTO gpkgext_relations VALUES
  (1, 'towns', 'fid', 'roads', 'fid', 'features', 'town_roads'),
  (2, 'roads', 'fid', 'repairs', 'fid', 'attributes', 'road_repairs');
INSERT INTO gpkg_extensions VALUES
  ('gpkgext_relations', NULL, 'gpkg_related_tables', 'http://www.opengis.net/doc/IS/gpkg-rte/1.0', 'read-write'),
  ('town_roads', NULL, 'gpkg_related_tables', 'http://www.opengis.net/doc/IS/gpkg-rte/1.0', 'read-write'),
  ('road_repairs', NULL, 'gpkg_related_tables', 'http://www.opengis.net/doc/IS/gpkg-rte/1.0', 'read-write');

CREATE TABLE halvane_subtypes (id INTEGER PRIMARY KEY, table_name TEXT NOT NULL, field_name TEXT NOT NULL,
  code INTEGER NOT NULL, name TEXT NOT NULL, is_default INTEGER NOT NULL DEFAULT 0, UNIQUE (table_name, code));
CREATE TABLE halvane_subtype_fields (id INTEGER PRIMARY KEY, table_name TEXT NOT NULL, code INTEGER NOT NULL,
  field_name TEXT NOT NULL, domain_name TEXT, default_value TEXT, UNIQUE (table_name, code, field_name));
INSERT INTO gpkg_extensions (table_name, column_name, extension_name, definition, scope) VALUES
  ('halvane_subtypes', NULL, 'halvane_subtypes', 'docs/geopackage-extension.md', 'write-only'),
  ('halvane_subtype_fields', NULL, 'halvane_subtypes', 'docs/geopackage-extension.md', 'write-only');
INSERT INTO halvane_subtypes VALUES
  (1, 'roads', 'class', 20, 'Path', 0), (2, 'roads', 'class', 3, 'Street', 1), (3, 'roads', 'class', 100, 'Bridge', 0);
INSERT INTO halvane_subtype_fields VALUES
  (1, 'roads', 20, 'surface', 'unused codes', 'b'), (2, 'roads', 3, 'lanes', NULL, '4'),
  (3, 'roads', 100, 'width', 'below zero', NULL);
