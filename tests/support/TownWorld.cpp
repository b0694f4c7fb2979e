#include "support/TownWorld.h"

namespace halvane::test {

using namespace host::memory;
using host::FieldType;
using host::ShapeType;

namespace {

MemoryFeatureClassPtr makeRoads() {
    auto pRoads = MemoryFeatureClass::make(
        "ROADS", ShapeType::Polyline,
        {field("OID", FieldType::Oid), field("SHAPE", FieldType::Geometry),
         field("NAME", FieldType::String).alias("Street name"), field("ROUTE_ID", FieldType::String),
         field("LANES", FieldType::Integer).alias("Lanes"), field("WIDTH", FieldType::Double),
         field("OPENED", FieldType::Date)});
    const auto line = [](double dEnd) { return ObjectPtr(MemoryGeometry::polyline({{{0, 0}, {dEnd, 0}}})); };
    pRoads->addRow({std::int64_t{1}, line(3), std::string("High Street"), std::string("R17"), std::int32_t{2},
                    7.25, Date{2001, 2, 3, 0, 0, 0}});
    pRoads->addRow({std::int64_t{2}, line(4), std::string("Mill Lane"), std::string("R18"), std::int32_t{1},
                    Null{}, Null{}});
    pRoads->addRow({std::int64_t{3}, line(5), std::string("Quay"), std::string("R17"), std::int32_t{4},
                    12.125, Date{1999, 12, 31, 0, 0, 0}});
    return pRoads;
}

MemoryTablePtr makeSigns() {
    auto pSigns =
        MemoryTable::make("SIGNS", {field("OID", FieldType::Oid), field("KIND", FieldType::String),
                                    field("ROUTE_ID", FieldType::String), field("LANES", FieldType::Integer),
                                    field("HEIGHT", FieldType::Double), field("SET_ON", FieldType::Date)});
    pSigns->addRow({std::int64_t{1}, std::string("Stop"), std::string("R17"), std::int32_t{2}, 2.5,
                    Date{2007, 5, 6, 0, 0, 0}});
    pSigns->addRow(
        {std::int64_t{2}, std::string("Yield"), std::string("R17"), std::int32_t{4}, Null{}, Null{}});
    return pSigns;
}

MemorySpatialReferencePtr makeReference() {
    auto pReference = MemorySpatialReference::make("Projection UTM\nZone 15\nUnits METERS");
    pReference->setXyDomain({-12.5, -7.5, 12.5, 7.5, -400, -300, 10000});
    return pReference;
}

} // namespace

TownWorld::TownWorld() : pHost(MemoryHost::make()) {
    pHost->setToday({2026, 11, 21, 0, 0, 0});
    pRoads = makeRoads();
    pRoadsLayer = MemoryFeatureLayer::make("Roads", pRoads);
    pSigns = makeSigns();
    pPosts = MemoryTable::make("POSTS", {field("OID", FieldType::Oid)});
    pTinWorkspace = MemoryWorkspace::make("E:\\tins", MemoryWorkspace::lFolder);
    pTinLayer = MemoryTinLayer::make("Relief", MemoryDataset::make(pTinWorkspace));
    makeDatabase(MemoryWorkspace::lLocalDatabase);
    makeTownMap("D:\\data\\dem.img");
    pHarbourMap = MemoryMap::make("Harbour Map", {MemoryFeatureLayer::make("Piers", pRoads)});
    makeDocument({});
}

void TownWorld::makeDatabase(std::int32_t lTypeCode) {
    pWorkspace = MemoryWorkspace::make("C:\\data\\town.mdb", lTypeCode);
    pWorkspace->add(pRoads);
    pRoadsOnDisk = MemoryFeatureClass::make("ROADS", ShapeType::Polyline, {field("OID", FieldType::Oid)});
    auto pOpened = MemoryWorkspace::make("C:\\data\\roads.mdb", lTypeCode);
    auto pParks =
        MemoryTable::make("PARKS", {field("OID", FieldType::Oid), field("NAME", FieldType::String)});
    pParks->addRow({std::int64_t{1}, std::string("Elm Park")});
    pWorkspace->add(pParks);
    pWorkspace->add(MemoryFeatureClass::make("TREES", ShapeType::Point, {field("OID", FieldType::Oid)}));
    pHost->registerWorkspace("C:\\data\\town.mdb", pWorkspace);
    pHost->registerWorkspace("C:\\data\\roads.mdb", pOpened);
    pOpened->add(pRoadsOnDisk);
}

void TownWorld::makeTownMap(const std::string& sPhotoPath) {
    pRasterLayer = MemoryRasterLayer::make("Photo", sPhotoPath);
    pRoadsInBase = MemoryFeatureLayer::make("Roads", pRoads);
    pFirstTwin = MemoryFeatureLayer::make("Twin", pRoads);
    pLastWater = MemoryFeatureLayer::make("Water", pRoads);
    const auto pInner = MemoryGroupLayer::make("Inner", {MemoryFeatureLayer::make("Deep", pRoads)});
    pBaseGroup =
        MemoryGroupLayer::make("Base", {pRoadsInBase, MemoryFeatureLayer::make("Water", pRoads),
                                        MemoryRasterLayer::make("Paper", "D:\\paper.img"), pFirstTwin,
                                        MemoryFeatureLayer::make("TWIN", pRoads), pInner});
    const auto pSecondBase = MemoryGroupLayer::make("BASE", {pLastWater});
    pTownMap = MemoryMap::make("Town Map", {pBaseGroup, pRoadsLayer, pRasterLayer, pTinLayer, pSecondBase});
    pTownMap->addTable(pSigns);
    pTownMap->setSpatialReference(makeReference());
    pRoads->setSpatialReference(makeReference());
}

void TownWorld::makeDocument(std::vector<host::GisMapPtr> aFurtherMaps) {
    std::vector<host::GisMapPtr> aMaps{pTownMap, pHarbourMap};
    aMaps.insert(aMaps.end(), aFurtherMaps.begin(), aFurtherMaps.end());
    pMapDocument = MemoryMapDocument::make(std::move(aMaps));
}

void TownWorld::addMapNamed(const std::string& sName) {
    makeDocument({MemoryMap::make(sName)});
}

std::shared_ptr<SpyProcessor> TownWorld::registerSpy(const std::string& sProgId, const std::string& sText) {
    auto pSpy = std::make_shared<SpyProcessor>(sText);
    pHost->registerComponent(sProgId, [pSpy] { return pSpy; });
    return pSpy;
}

void TownWorld::registerComponentWithoutRole(const std::string& sProgId) {
    pHost->registerComponent(sProgId, [] { return dCollection::create(); });
}

void TownWorld::replaceWorkspace(std::int32_t lTypeCode) {
    makeDatabase(lTypeCode);
}

void TownWorld::setPhotoPath(const std::string& sPath) {
    makeTownMap(sPath);
    makeDocument({});
}

} // namespace halvane::test
