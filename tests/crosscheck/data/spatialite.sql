CREATE TABLE owners (id INTEGER PRIMARY KEY, name TEXT NOT NULL);
INSERT INTO owners VALUES (1, 'Ärzte & Söhne'), (2, 'O''Neill "<x>"');
CREATE TABLE roads (id INTEGER PRIMARY KEY, name TEXT, lanes BIGINT, width DOUBLE, owner INTEGER REFERENCES owners (id) ON DELETE CASCADE);
SELECT AddGeometryColumn('roads', 'way', 25832, 'MULTILINESTRING', 'XY');
INSERT INTO roads VALUES
  (1, 'Kärntner Straße', 4, 12.25, 1, GeomFromText('MULTILINESTRING((500000 5500000,500003 5500004))', 25832)),
  (2, '漢字', NULL, 0.1, 2, GeomFromText('MULTILINESTRING((0 0,1 0),(10.5 10,10.5 13,14.5 13))', 25832)),
  (7, NULL, 9007199254740993, -1e-7, NULL, NULL);
CREATE TABLE lots (id INTEGER PRIMARY KEY, code TEXT);
SELECT AddGeometryColumn('lots', 'geometry', 4326, 'POLYGON', 'XYZ');
INSERT INTO lots VALUES
  (1, 'a', GeomFromText('POLYGONZ((0 0 1,0 10 2,10 10 3,10 0 4,0 0 1),(1 1 5,2 1 5,2 2 5,1 1 5))', 4326)),
  (2, 'b', GeomFromText('POLYGONZ((20.125 40.25 0,21 41 0,21 40 0,20.125 40.25 0))', 4326));
CREATE TABLE signs (id INTEGER PRIMARY KEY, height DOUBLE);
SELECT AddGeometryColumn('signs', 'geometry', 4326, 'POINT', 'XYZM');
INSERT INTO signs VALUES (1, 2.5, MakePointZM(1.5, -2.5, 3.5, 77, 4326)), (2, 3.5, MakePointZM(-180, 90, 0, 0, 4326));
CREATE TABLE tracks (id INTEGER PRIMARY KEY);
SELECT AddGeometryColumn('tracks', 'geometry', 25832, 'LINESTRING', 'XYM');
INSERT INTO tracks VALUES (1, GeomFromText('LINESTRINGM(0 0 0,3 4 5,6 8 10)', 25832));
