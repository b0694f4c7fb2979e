#!/usr/bin/env bash
# Makes world.gpkg from two Natural Earth shapefiles (1:110m countries, populated places; public domain).
#   make-world.sh FOLDER_OF_COUNTRIES_SHP FOLDER_OF_CITIES_SHP OUTPUT.gpkg
set -euo pipefail
countries=$1 cities=$2 out=$3
rm -f "$out"
layer() { basename "$(ls "$1"/*.shp)" .shp; }

ogr2ogr -f GPKG "$out" "$countries" -nln countries -nlt PROMOTE_TO_MULTI -lco GEOMETRY_NAME=shape -lco FID=oid \
  -sql "SELECT name, iso_a3, continent, CAST(pop_est AS float) AS pop_est, CAST(gdp_md_est AS bigint) AS gdp_md_est FROM $(layer "$countries") WHERE iso_a3 <> '-99' ORDER BY name"
ogr2ogr -f GPKG -update "$out" "$cities" -nln cities -lco GEOMETRY_NAME=shape -lco FID=oid -dialect sqlite \
  -sql "SELECT c.name AS name, k.iso_a3 AS iso_a3, c.geometry FROM $(layer "$cities") c JOIN '$countries'.$(layer "$countries") k ON ST_Contains(k.geometry, c.geometry) WHERE k.iso_a3 <> '-99' ORDER BY c.name"
ogr2ogr -f GPKG -update "$out" "$out" -nln continents -lco FID=oid -dialect sqlite -nlt NONE \
  -sql "SELECT continent AS name, COUNT(*) AS countries, SUM(pop_est) AS population, SUM(gdp_md_est) AS gdp_md FROM countries GROUP BY continent ORDER BY continent"
