#include "SampleData.h"

#include "base/Failure.h"
#include "host/Fields.h"
#include "host/Workspace.h"
#include "host/gdal/source/Drivers.h"

#include <cpl_error.h>
#include <cpl_string.h>
#include <gdal_utils.h>
#include <ogrsf_frmts.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace halvane::tests {

namespace fs = std::filesystem;

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::permissions(sPath_, fs::perms::owner_all, ignored);
}

std::string TemporaryFolder::write(std::string_view sName, std::string_view sContent) const {
    const std::string sPath = file(sName);
    fs::create_directories(fs::path(sPath).parent_path());
    std::ofstream(sPath, std::ios::binary) << sContent;
    return sPath;
}

std::vector<std::string> TemporaryFolder::names() const {
    std::vector<std::string> all;
    for (const auto& entry : fs::directory_iterator(sPath_))
        all.push_back(entry.path().filename().string());
    std::sort(all.begin(), all.end());
    return all;
}

namespace {

GDALDatasetUniquePtr create(const std::string& sPath, const char* pFormat) {
    host::gdal::prepareLibrary();
    GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName(pFormat);
    GDALDatasetUniquePtr pDataset(pDriver->Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    if (pDataset == nullptr)
        throw std::runtime_error("cannot create " + sPath);
    return pDataset;
}

void addField(OGRLayer& layer, const char* pName, OGRFieldType type, OGRFieldSubType subType = OFSTNone,
              int lWidth = 0) {
    OGRFieldDefn field(pName, type);
    field.SetSubType(subType);
    field.SetWidth(lWidth);
    layer.CreateField(&field);
}

void insert(OGRLayer& layer, const std::function<void(OGRFeature&)>& fill) {
    const OGRFeatureUniquePtr pFeature(OGRFeature::CreateFeature(layer.GetLayerDefn()));
    fill(*pFeature);
    ASSERT_EQ(layer.CreateFeature(pFeature.get()), OGRERR_NONE);
}

void setWkt(OGRFeature& feature, const std::string& sWkt) {
    OGRGeometry* pGeometry = nullptr;
    OGRGeometryFactory::createFromWkt(sWkt.c_str(), nullptr, &pGeometry);
    feature.SetGeometryDirectly(pGeometry);
}

void fillRoad(OGRFeature& feature, int lNumber) {
    feature.SetField("NAME", ("R" + std::to_string(lNumber)).c_str());
    if (lNumber == 5)
        return;
    const std::string sX = std::to_string(lNumber);
    setWkt(feature, "LINESTRING (0 " + sX + ", 3 " + sX + ", 3 " + std::to_string(lNumber + 4) + ")");
    feature.SetField("N", 10 * lNumber);
    feature.SetField("BIG", static_cast<GIntBig>(9007199254740993 + lNumber));
    feature.SetField("LEN", 0.5 + lNumber);
    feature.SetField("W", 2.25);
    feature.SetField("SMALL", lNumber);
    feature.SetField("OPEN", lNumber % 2);
    feature.SetField("BUILT", 1990 + lNumber, 2, 3);
    feature.SetField("SEEN", 2001, 12, 31, 23, 58, 59.5F, 0);
    const GByte aBytes[] = {1, 0, 255};
    feature.SetField(feature.GetFieldIndex("RAW"), 3, aBytes);
}

void makeRoads(GDALDataset& dataset, OGRSpatialReference& reference) {
    OGRLayer& layer = *dataset.CreateLayer("roads", &reference, wkbLineString, nullptr);
    addField(layer, "NAME", OFTString, OFSTNone, 30);
    addField(layer, "N", OFTInteger);
    addField(layer, "BIG", OFTInteger64);
    addField(layer, "LEN", OFTReal);
    addField(layer, "W", OFTReal, OFSTFloat32);
    addField(layer, "SMALL", OFTInteger, OFSTInt16);
    addField(layer, "OPEN", OFTInteger, OFSTBoolean);
    addField(layer, "BUILT", OFTDate);
    addField(layer, "SEEN", OFTDateTime);
    addField(layer, "RAW", OFTBinary);
    for (int lNumber = 1; lNumber <= 5; ++lNumber) {
        insert(layer, [&](OGRFeature& feature) { fillRoad(feature, lNumber); });
    }
}

void makeSigns(GDALDataset& dataset, OGRSpatialReference& reference) {
    OGRLayer& layer = *dataset.CreateLayer("signs", &reference, wkbPoint, nullptr);
    addField(layer, "KIND", OFTString);
    for (int lNumber = 1; lNumber <= 3; ++lNumber) {
        insert(layer, [&](OGRFeature& feature) {
            feature.SetField("KIND", ("S" + std::to_string(lNumber)).c_str());
            setWkt(feature, "POINT (" + std::to_string(lNumber) + " 7)");
        });
    }
}

void makeNotes(GDALDataset& dataset) {
    OGRLayer& layer = *dataset.CreateLayer("notes", nullptr, wkbNone, nullptr);
    addField(layer, "ROAD", OFTInteger);
    addField(layer, "TEXT", OFTString);
    for (const auto& [lRoad, pText] : {std::pair{1, "first"}, {1, "second"}, {2, "third"}}) {
        insert(layer, [&](OGRFeature& feature) {
            feature.SetField("ROAD", lRoad);
            feature.SetField("TEXT", pText);
        });
    }
}

std::string translate(const std::string& sFrom, const std::string& sTo, CPLStringList arguments) {
    host::gdal::prepareLibrary();
    const CPLErrorHandlerPusher quiet(&CPLQuietErrorHandler); // of what the format cannot hold
    const GDALDatasetUniquePtr pFrom(GDALDataset::Open(sFrom.c_str(), GDAL_OF_VECTOR));
    GDALVectorTranslateOptions* pOptions = GDALVectorTranslateOptionsNew(arguments.List(), nullptr);
    GDALDatasetH aFrom[] = {pFrom.get()};
    int lError = 0;
    GDALDatasetH pTo = GDALVectorTranslate(sTo.c_str(), nullptr, 1, aFrom, pOptions, &lError);
    GDALVectorTranslateOptionsFree(pOptions);
    if (pTo == nullptr)
        throw std::runtime_error("cannot convert to " + sTo);
    GDALClose(pTo);
    return sTo;
}

} // namespace

std::string makeCity(const TemporaryFolder& folder, std::string_view sName) {
    const std::string sPath = folder.file(sName);
    const GDALDatasetUniquePtr pDataset = create(sPath, "GPKG");
    OGRSpatialReference reference;
    reference.importFromEPSG(25832);
    makeRoads(*pDataset, reference);
    makeSigns(*pDataset, reference);
    makeNotes(*pDataset);
    return sPath;
}

std::string convertLayer(const std::string& sFrom, const std::string& sLayer, const std::string& sTo,
                         const std::string& sFormat) {
    CPLStringList arguments;
    arguments.AddString("-f");
    arguments.AddString(sFormat.c_str());
    arguments.AddString(sLayer.c_str());
    if (sFormat == "FlatGeobuf") {
        // Features without a shape have no place in a file with an index: a version of the library leaves
        // them out, and another fails.
        arguments.AddString("-where");
        arguments.AddString("geom IS NOT NULL");
    }
    return translate(sFrom, sTo, arguments);
}

std::string convert(const std::string& sFrom, const std::string& sTo, const std::string& sFormat) {
    CPLStringList arguments;
    arguments.AddString("-f");
    arguments.AddString(sFormat.c_str());
    return translate(sFrom, sTo, arguments);
}

std::string makeRaster(const TemporaryFolder& folder, std::string_view sName, const std::string& sFormat) {
    host::gdal::prepareLibrary();
    const std::string sPath = folder.file(sName);
    GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName(sFormat.c_str());
    const GDALDatasetUniquePtr pDataset(pDriver->Create(sPath.c_str(), 4, 3, 1, GDT_Byte, nullptr));
    double aTransform[] = {0, 1, 0, 3, 0, -1};
    pDataset->SetGeoTransform(aTransform);
    pDataset->GetRasterBand(1)->Fill(1); // some formats are incomplete without their cells
    return sPath;
}

std::string makeTin(const TemporaryFolder& folder, std::string_view sName, const std::string& sLayer) {
    const CPLErrorHandlerPusher quiet(&CPLQuietErrorHandler); // of the rarely used geometry type
    const std::string sPath = folder.file(sName);
    const GDALDatasetUniquePtr pDataset = create(sPath, "GPKG");
    OGRLayer& layer = *pDataset->CreateLayer(sLayer.c_str(), nullptr, wkbTINZ, nullptr);
    insert(layer, [](OGRFeature& feature) { setWkt(feature, "TIN Z (((0 0 1, 4 0 2, 0 3 5, 0 0 1)))"); });
    return sPath;
}

void runSql(const std::string& sFile, const std::vector<std::string>& statements) {
    host::gdal::prepareLibrary();
    const GDALDatasetUniquePtr pDataset(GDALDataset::Open(sFile.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
    for (const std::string& sStatement : statements)
        pDataset->ReleaseResultSet(pDataset->ExecuteSQL(sStatement.c_str(), nullptr, nullptr));
}

host::GisWorkspacePtr openWorkspace(const std::string& sLocation) {
    const auto pHost = host::gdal::GdalHost::create();
    const host::GisPropertySetPtr pProperties = pHost->newPropertySet();
    pProperties->setProperty("DATABASE", sLocation);
    return pHost->newWorkspaceFactory(host::WorkspaceFactoryKind::Default)->open(*pProperties, 0);
}

std::vector<std::string> texts(host::GisCursor& cursor, std::string_view sField) {
    std::vector<std::string> all;
    while (const host::GisRowPtr pRow = cursor.nextRow())
        all.push_back(toText(pRow->value(pRow->fields().findField(sField))));
    return all;
}

std::vector<std::string> texts(host::GisTable& table, std::string_view sField, std::string_view sWhere) {
    const host::GisQueryFilter filter{std::string(sWhere)};
    return texts(*table.search(sWhere.empty() ? nullptr : &filter), sField);
}

OGRSpatialReference systemOf(const std::string& sDefinition) {
    host::gdal::prepareLibrary();
    OGRSpatialReference reference;
    EXPECT_EQ(reference.SetFromUserInput(sDefinition.c_str()), OGRERR_NONE) << sDefinition;
    return reference;
}

std::string failureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const Failure& failure) {
        return failure.description().empty() ? "a failure without a description" : failure.description();
    }
    return {};
}

} // namespace halvane::tests
