#include "host/gdal/source/DatabaseFunctions.h"

#include "base/Text.h"

#include <algorithm>
#include <string>
#include <unordered_set>

namespace halvane::host::gdal {

namespace {

// SQLite's own: numbers, texts, dates, JSON, aggregates, windows, full text.
constexpr std::string_view sOfSqlite =
    "-> ->> abs acos acosh asin asinh atan atan2 atanh avg bm25 ceil ceiling changes char coalesce "
    "concat concat_ws cos cosh cot count cume_dist current_date current_time current_timestamp date "
    "datetime degrees dense_rank exp first_value floor format glob group_concat hex highlight if "
    "ifnull iif instr json json_array json_array_length json_error_position json_extract "
    "json_group_array json_group_object json_insert json_object json_patch json_pretty json_quote "
    "json_remove json_replace json_set json_type json_valid jsonb jsonb_array jsonb_extract "
    "jsonb_group_array jsonb_group_object jsonb_insert jsonb_object jsonb_patch jsonb_remove "
    "jsonb_replace jsonb_set julianday lag last_insert_rowid last_value lead length like likelihood "
    "likely ln log log10 log2 lower ltrim match matchinfo max median min mod mode nth_value ntile "
    "nullif octet_length offsets percent_rank percentile percentile_cont percentile_disc pi pow power "
    "printf quote radians random randomblob rank replace round row_number rtrim sign sin sinh snippet "
    "soundex sqlite_source_id sqlite_version sqrt stddev_pop stddev_samp strftime string_agg substr "
    "substring subtype sum tan tanh time timediff total total_changes trim trunc typeof unhex unicode "
    "unistr unistr_quote unixepoch unlikely upper var_pop var_samp zeroblob";

// On shapes, under the names of the standard.
constexpr std::string_view sOfShapes =
    "st_3ddistance st_3dlength st_3dmaxdistance st_addmeasure st_addpoint st_area st_asbinary "
    "st_asencodedpolyline st_astext st_asx3d st_azimuth st_bdmpolyfromtext st_bdmpolyfromwkb "
    "st_bdpolyfromtext st_bdpolyfromwkb st_boundary st_buffer st_buildarea st_centroid "
    "st_closestpoint st_collect st_collectionextract st_concavehull "
    "st_constraineddelaunaytriangulation st_contains st_convexhull st_coveredby st_covers st_crosses "
    "st_curvosityindex st_delaunaytriangulation st_difference st_dimension st_disjoint "
    "st_dissolvepoints st_dissolvesegments st_distance st_distancewithin st_downhillheight "
    "st_drapeline st_drapelineexceptions st_endpoint st_envelope st_envelopesintersects "
    "st_envintersects st_equals st_expand st_exteriorring st_forcelhr st_forcepolygonccw "
    "st_forcepolygoncw st_frechetdistance st_generalize st_geohash st_geomcollfromtext "
    "st_geomcollfromwkb st_geometrycollectionfromtext st_geometrycollectionfromwkb "
    "st_geometryfromtext st_geometryfromwkb st_geometryn st_geometrytype st_geomfromtext "
    "st_geomfromwkb st_getpointindex st_hausdorffdistance st_interiorringn st_interpolatepoint "
    "st_intersection st_intersects st_is3d st_isclosed st_isempty st_ismeasured st_ispolygonccw "
    "st_ispolygoncw st_isring st_issimple st_isvalid st_isvaliddetail st_isvalidreason "
    "st_isvalidtrajectory st_length st_line_interpolate_point st_line_locate_point st_line_substring "
    "st_linefromencodedpolyline st_linefromtext st_linefromwkb st_linemerge st_linescutatnodes "
    "st_linesfromrings st_linestringavgsegmentlength st_linestringfromtext st_linestringfromwkb "
    "st_linestringmaxsegmentlength st_linestringminsegmentlength st_locate_along_measure "
    "st_locate_between_measures st_locatealong st_locatebetween st_m st_makepolygon st_makevalid "
    "st_makevaliddiscarded st_maxdistance st_maxm st_maxx st_maxy st_maxz st_minimumboundingcenter "
    "st_minimumboundingradius st_minm st_minx st_miny st_minz st_mlinefromtext st_mlinefromwkb "
    "st_mpointfromtext st_mpointfromwkb st_mpolyfromtext st_mpolyfromwkb st_multi "
    "st_multilinestringfromtext st_multilinestringfromwkb st_multipointfromtext st_multipointfromwkb "
    "st_multipolygonfromtext st_multipolygonfromwkb st_ndims st_node st_npoints st_nrings "
    "st_numgeometries st_numinteriorring st_numpoints st_offsetcurve st_orientedenvelope st_overlaps "
    "st_perimeter st_point st_pointfromtext st_pointfromwkb st_pointn st_pointonsurface "
    "st_polyfromtext st_polyfromwkb st_polygonfromtext st_polygonfromwkb st_polygonize st_project "
    "st_reduceprecision st_relate st_relatematch st_removepoint st_reverse st_ringscutatnodes "
    "st_selfintersections st_setendpoint st_setpoint st_setstartpoint st_sharedpaths "
    "st_shift_longitude st_shortestline st_simplify st_simplifypreservetopology st_singlesidedbuffer "
    "st_snap st_snapandsplit st_snaptogrid st_split st_splitleft st_splitright st_srid st_startpoint "
    "st_symdifference st_touches st_trajectoryinterpolatepoint st_transform st_transformxy "
    "st_transformxyz st_translate st_unaryunion st_union st_updownheight st_uphillheight "
    "st_within st_wkbtosql st_wkttosql st_x st_y st_z";

// SpatiaLite's own: shapes, their forms in text and bytes, angles, checksums.
constexpr std::string_view sOfSpatialite =
    "addpoint area asbinary asewkb asewkt asfgf asgeojson asgml asgpb askml assvg astext astwkb aswkt "
    "asx3d atm_astext atm_create atm_createrotate atm_createscale atm_createtranslate atm_createxroll "
    "atm_createyroll atm_createzroll atm_determinant atm_invert atm_isinvertible atm_isvalid "
    "atm_multiply atm_rotate atm_scale atm_transform atm_translate atm_xroll atm_yroll atm_zroll "
    "azimuth bdmpolyfromtext bdmpolyfromwkb bdpolyfromtext bdpolyfromwkb boundary buffer buildarea "
    "buildcirclembr buildmbr buildmbrfilter castautomagic casttoblob casttodouble "
    "casttogeometrycollection casttointeger casttolinestring casttomulti casttomultilinestring "
    "casttomultipoint casttomultipolygon casttopoint casttopolygon casttosingle casttotext casttoxy "
    "casttoxym casttoxyz casttoxyzm centroid circularity closestpoint collect collectionextract "
    "compressgeometry concavehull constraineddelaunaytriangulation contains convexhull coorddimension "
    "coveredby covers createuuid crosses curvosityindex decodeurl delaunaytriangulation difference "
    "dimension dirnamefrompath disjoint dissolvepoints dissolvesegments distance distancewithin "
    "downhillheight encodeurl endpoint ensureclosedrings envelope equals extent exteriorring "
    "extractmultilinestring extractmultipoint extractmultipolygon fileextfrompath filenamefrompath "
    "filtermbrcontains filtermbrintersects filtermbrwithin forceasnull frechetdistance "
    "fullfilenamefrompath garsmbr gcp2atm gcp_astext gcp_compute gcp_isvalid gcp_transform "
    "geodesicarcarea geodesicarcheight geodesicarclength geodesiccentralangle geodesicchordlength "
    "geodesiclength geohash geomcollfromtext geomcollfromwkb geometryaliastype "
    "geometrycollectionfromtext geometrycollectionfromwkb geometryfromtext geometryfromwkb geometryn "
    "geometrypointencode geometrytype geomfromewkb geomfromewkt geomfromexifgpsblob geomfromfgf "
    "geomfromgeojson geomfromgml geomfromgpb geomfromkml geomfromtext geomfromwkb geosconcavehull "
    "geoslargestemptycircle geosmakevalid geosmaximuminscribedcircle geosminimumboundingcenter "
    "geosminimumboundingcircle geosminimumboundingradius geosminimumclearance "
    "geosminimumclearanceline geosminimumrotatedrectangle geosminimumwidth getmimetype getpointindex "
    "glength gpkggetimagetype gpkgmakepoint gpkgmakepointm gpkgmakepointz gpkgmakepointzm "
    "greatcirclelength gunion hausdorffdistance hilbertcode interiorringn intersection intersects "
    "isclosed iscompressedgeometryblob isdecimalnumber isempty isexifblob isexifgpsblob "
    "isgeometryblob isgifblob isinteger isjp2blob isjpegblob islowascii isnumber ispdfblob ispngblob "
    "isring issimple istiffblob istinypointblob isvalid isvaliddetail isvalidgpb isvalidreason "
    "iswebpblob iszipblob latitudefromdms line_interpolate_point line_locate_point line_substring "
    "linefromtext linefromwkb linemerge linescutatnodes linesfromrings linestringavgsegmentlength "
    "linestringfromtext linestringfromwkb linestringmaxsegmentlength linestringminsegmentlength "
    "longitudefromdms longlattodms m makecircle makeellipse makeline makepoint makepointm makepointz "
    "makepointzm makepolygon makestringlist makevalid makevaliddiscarded maxdistance mbrcontains "
    "mbrdisjoint mbrequal mbrintersects mbrmaxx mbrmaxy mbrminx mbrminy mbroverlaps mbrtouches "
    "mbrwithin md5checksum minimumboundingcenter minimumboundingradius mlinefromtext mlinefromwkb "
    "mpointfromtext mpointfromwkb mpolyfromtext mpolyfromwkb multilinestringfromtext "
    "multilinestringfromwkb multipointfromtext multipointfromwkb multipolygonfromtext "
    "multipolygonfromwkb normalizelonlat numgeometries numinteriorring numinteriorrings numpoints "
    "offsetcurve orientedenvelope overlaps perimeter pointfromtext pointfromwkb pointn pointonsurface "
    "polyfromtext polyfromwkb polygonfromtext polygonfromwkb polygonize proj_asprojstring proj_aswkt "
    "proj_guesssridfromwkt project ptdistwithin reduceprecision reflectcoordinates reflectcoords "
    "relate removeextraspaces removepoint removerepeatedpoints ringscutatnodes rotatecoordinates "
    "rotatecoords sanitizegeometry scalecoordinates scalecoords selfintersections setendpoint "
    "setpoint setsrid setstartpoint sharedpaths shiftcoordinates shiftcoords shortestline simplify "
    "simplifypreservetopology singlesidedbuffer snap snapandsplit snaptogrid split splitleft "
    "splitright srid sridfromauthcrs sridgetaxis_1_name sridgetaxis_1_orientation sridgetaxis_2_name "
    "sridgetaxis_2_orientation sridgetdatum sridgetellipsoid sridgetprimemeridian sridgetprojection "
    "sridgetspheroid sridgetunit sridhasflippedaxes sridisgeographic sridisprojected startpoint "
    "swapcoordinates swapcoords symdifference tinypointencode togars touches transform transformxy "
    "transformxyz unaryunion uncompressgeometry updownheight uphillheight within x y z";

// One unit into another.
constexpr std::string_view sOfUnits =
    "cvtfromch cvtfromcm cvtfromdm cvtfromfath cvtfromft cvtfromin cvtfromindch cvtfromindft "
    "cvtfromindyd cvtfromkm cvtfromkmi cvtfromlink cvtfrommi cvtfrommm cvtfromusch cvtfromusft "
    "cvtfromusin cvtfromusmi cvtfromusyd cvtfromyd cvttoch cvttocm cvttodm cvttofath cvttoft cvttoin "
    "cvttoindch cvttoindft cvttoindyd cvttokm cvttokmi cvttolink cvttomi cvttomm cvttousch cvttousft "
    "cvttousin cvttousmi cvttousyd cvttoyd";

// What is installed.
constexpr std::string_view sOfVersions =
    "freexl_version geos_version hasepsg hasfreexl hasgcp hasgeocallbacks hasgeopackage hasgeos "
    "hasgeos3100 hasgeos3110 hasgeosadvanced hasgeosonlyreentrant hasgeosreentrant hasgeostrunk "
    "hasgroundcontrolpoints hasiconv hasknn hasknn2 haslibxml2 hasmathsql hasminzip hasproj hasproj6 "
    "hasprojgeodesic hasrouting hasrttopo hasspatialindex hastopology libxml2_version proj4_version "
    "proj_version rttopo_version spatialite_target_cpu spatialite_version";

// The data library's own.
constexpr std::string_view sOfLibrary =
    "gpkg_isassignable hstore_get_value ogr_deflate ogr_version regexp_replace";

// Ours, not for use in the SQL of data: the database sees to that itself.
constexpr std::string_view sOurs = "halvane_collect_columns";

std::unordered_set<std::string_view> allowedFunctions() {
    std::unordered_set<std::string_view> names;
    for (const std::string_view sWords :
         {sOfSqlite, sOfShapes, sOfSpatialite, sOfUnits, sOfVersions, sOfLibrary, sOurs}) {
        for (std::size_t nBegin = 0; nBegin < sWords.size();) {
            const std::size_t nEnd = std::min(sWords.find(' ', nBegin), sWords.size());
            names.insert(sWords.substr(nBegin, nEnd - nBegin));
            nBegin = nEnd + 1;
        }
    }
    return names;
}

} // namespace

bool isAllowedFunction(std::string_view sName) {
    static const std::unordered_set<std::string_view> names = allowedFunctions();
    return names.contains(lowerCase(sName));
}

bool isOwnFunction(std::string_view sName) {
    return equalIgnoringCase(sName, sOurs);
}

} // namespace halvane::host::gdal
