// The data files' host on a GeoPackage, and a map document that says what the file cannot hold.

#include "SampleData.h"
#include "host/conformance/Conformance.h"

#include <ogrsf_frmts.h>

#include <stdexcept>

namespace halvane::test::conformance {

namespace {

using host::FieldType;

/// The common town; a GeoPackage has fields of all types, and a map document no layers of other kinds.
Town townOfFiles() {
    Town town = commonTown();
    town.roads.aFields.push_back({"GRADE", "", FieldType::SmallInteger});
    town.roads.aFields.push_back({"LOAD", "", FieldType::Single});
    town.roads.aFields.push_back({"RAW", "", FieldType::Blob});
    TownRow& row = town.roads.aRows[0];
    row.values["GRADE"] = 4;
    row.values["LOAD"] = 7.5F;
    row.bytes["RAW"] = {std::byte{1}, std::byte{0}, std::byte{255}};
    std::erase_if(town.aLayers, [](const TownLayer& layer) { return layer.kind == TownLayer::Kind::Other; });
    town.mapReference.sFirstLine = "Projection    GEOGRAPHIC";
    town.roadsReference.sFirstLine = town.mapReference.sFirstLine;
    town.roadsReference.zDomain = host::MeasureDomain{1, 4, 1, 10000}; // the range of the roads' heights
    return town;
}

OGRFieldType typeOf(FieldType type) {
    switch (type) {
    case FieldType::SmallInteger:
    case FieldType::Integer:
        return OFTInteger;
    case FieldType::Single:
    case FieldType::Double:
        return OFTReal;
    case FieldType::Date:
        return OFTDate;
    case FieldType::Blob:
        return OFTBinary;
    default:
        return OFTString;
    }
}

void addField(OGRLayer& layer, const TownField& told) {
    if (told.type == FieldType::Oid || told.type == FieldType::Geometry)
        return;
    OGRFieldDefn field(told.sName.c_str(), typeOf(told.type));
    if (told.type == FieldType::SmallInteger)
        field.SetSubType(OFSTInt16);
    if (told.type == FieldType::Single)
        field.SetSubType(OFSTFloat32);
    field.SetWidth(told.lLength);
    field.SetAlternativeName(told.sAlias.c_str());
    layer.CreateField(&field);
}

struct Setter {
    OGRFeature& feature;
    int lField;

    void operator()(std::int32_t lValue) const { feature.SetField(lField, lValue); }
    void operator()(float dValue) const { feature.SetField(lField, dValue); }
    void operator()(double dValue) const { feature.SetField(lField, dValue); }
    void operator()(const std::string& sText) const { feature.SetField(lField, sText.c_str()); }
    void operator()(const Date& date) const { feature.SetField(lField, date.year, date.month, date.day); }
    template<class Other>
    void operator()(const Other& /*other*/) const {
        throw std::logic_error("no value of a town's row");
    }
};

OGRMultiLineString geometryOf(const TownShape& told) {
    OGRMultiLineString shape;
    for (const auto& aPoints : told.aParts) {
        OGRLineString line;
        for (const host::PointValues& point : aPoints)
            if (std::isnan(point.dZ))
                line.addPoint(point.dX, point.dY);
            else
                line.addPoint(point.dX, point.dY, point.dZ, point.dM);
        shape.addGeometry(&line);
    }
    return shape;
}

void addRow(OGRLayer& layer, const TownRow& told) {
    OGRFeature feature(layer.GetLayerDefn());
    feature.SetFID(told.nObjectId);
    for (const auto& [sField, value] : told.values)
        std::visit(Setter{feature, feature.GetFieldIndex(sField.c_str())}, value);
    for (const auto& [sField, aBytes] : told.bytes)
        feature.SetField(feature.GetFieldIndex(sField.c_str()), static_cast<int>(aBytes.size()),
                         aBytes.data());
    if (told.shape.has_value()) {
        const OGRMultiLineString shape = geometryOf(*told.shape);
        feature.SetGeometry(&shape);
    }
    if (layer.CreateFeature(&feature) != OGRERR_NONE)
        throw std::runtime_error("cannot write a row");
}

void addTable(GDALDataset& dataset, const TownTable& told, OGRSpatialReference* pReference) {
    CPLStringList options;
    options.SetNameValue("FID", told.aFields[0].sName.c_str());
    options.SetNameValue("GEOMETRY_NAME", "SHAPE");
    OGRLayer& layer =
        *dataset.CreateLayer(told.sName.c_str(), pReference,
                             pReference == nullptr ? wkbNone : wkbMultiLineStringZM, options.List());
    for (const TownField& field : told.aFields)
        addField(layer, field);
    for (const TownRow& row : told.aRows)
        addRow(layer, row);
}

void writeDatabase(const std::string& sPath, const Town& town) {
    OGRSpatialReference reference;
    reference.importFromEPSG(4326);
    const GDALDatasetUniquePtr pDataset(GetGDALDriverManager()->GetDriverByName("GPKG")->Create(
        sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    addTable(*pDataset, town.roads, &reference);
    addTable(*pDataset, town.signs, nullptr);
}

constexpr const char* pMapDocument = R"(<MapDocument>
  <Map name="Town" shown="true">
    <SpatialReference definition="EPSG:4326">
      <XYDomain xMin="-180" yMin="-90" xMax="180" yMax="90" falseX="-400" falseY="-400" scale="1000000"/>
      <MDomain min="0" max="1000" falseOrigin="0" scale="10"/>
    </SpatialReference>
    <FeatureLayer name="Roads" source="town.gpkg" dataset="Roads">
      <Field name="NAME" alias="Name of road"/>
      <Field name="WIDTH" alias="Width"/>
      <SpatialReference definition="EPSG:4326">
        <XYDomain xMin="-180" yMin="-90" xMax="180" yMax="90" falseX="-400" falseY="-400" scale="1000000"/>
        <MDomain min="0" max="1000" falseOrigin="0" scale="10"/>
      </SpatialReference>
      <Subtypes field="KIND" default="1">
        <Subtype code="1" name="street"><SubtypeField name="SURFACE" domain="Surface" default="1"/></Subtype>
        <Subtype code="2" name="path"><SubtypeField name="SURFACE" domain="Surface" default="2"/></Subtype>
      </Subtypes>
    </FeatureLayer>
    <GroupLayer name="Backdrop">
      <RasterLayer name="Photo" source="photo.tif"/>
      <TinLayer name="Relief" source="relief.gpkg" dataset="relief"/>
    </GroupLayer>
    <FeatureLayer name="Chosen" source="town.gpkg" dataset="Roads"><Selection fids="2 1"/></FeatureLayer>
    <Table source="town.gpkg" dataset="Signs"/>
    <Table source="gone.csv"/>
  </Map>
  <Map name="Region"/>
  <Workspace source="town.gpkg">
    <CodedValueDomain name="Surface" description="what a road is made of" fieldType="integer" mergePolicy="sum"
                      splitPolicy="geometryRatio">
      <Code value="1" name="gravel"/>
      <Code value="2" name="asphalt"/>
    </CodedValueDomain>
    <RangeDomain name="Lanes" min="1" max="8" mergePolicy="geometryWeighted" splitPolicy="duplicate"/>
    <RelationshipClass name="RoadsToSigns" origin="Roads" destination="Signs" originPrimaryKey="OBJECTID"
                       originForeignKey="ROAD" cardinality="oneToMany" forwardLabel="has signs"
                       backwardLabel="stands at" composite="true" notification="forward"/>
  </Workspace>
</MapDocument>
)";

class TownOfFiles final : public TownHost {
public:
    TownOfFiles() {
        tests::makeRaster(folder_, "photo.tif", "GTiff");
        tests::makeTin(folder_, "relief.gpkg", "relief");
        writeDatabase(folder_.file("town.gpkg"), town_);
    }

    [[nodiscard]] const Town& town() const override { return town_; }
    void open(const Test& test) override {
        const auto pHost = host::gdal::GdalHost::create();
        test({pHost, pHost->openMapDocument(folder_.write("town.xml", pMapDocument)),
              folder_.file("town.gpkg"), folder_.file("relief.gpkg"), folder_.file("photo.tif")});
    }

private:
    Town town_ = townOfFiles();
    tests::TemporaryFolder folder_;
};

} // namespace

std::unique_ptr<TownHost> makeTownHost() {
    return std::make_unique<TownOfFiles>();
}

} // namespace halvane::test::conformance
