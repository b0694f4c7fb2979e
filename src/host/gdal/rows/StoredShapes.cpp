#include "host/gdal/rows/StoredShapes.h"

#include "base/Text.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/Sqlite.h"
#include "host/gdal/source/StoredText.h"

#include <cpl_json.h>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

namespace {

/// A column of text that says the shape.
class TextShapes : public StoredShapes {
public:
    explicit TextShapes(int lColumn) : lColumn_(lColumn) {}

    [[nodiscard]] std::string fault(const OGRFeature& feature) override {
        constexpr std::size_t nMost = 60;
        if (!feature.IsFieldSetAndNotNull(lColumn_))
            return {};
        const std::string_view sText = trimBlanks(feature.GetRawFieldRef(lColumn_)->String);
        if (sText.empty())
            return {};
        return "\"" + std::string(sText.substr(0, nMost)) + (sText.size() > nMost ? "..." : "") +
               "\" is not a shape";
    }

    /// Nothing where the shape does not come from such a column.
    [[nodiscard]] static std::unique_ptr<StoredShapes> of(OGRLayer& layer) {
        constexpr std::string_view sPrefix = "geom_";
        OGRFeatureDefn& definition = *layer.GetLayerDefn();
        const std::string sShape = definition.GetGeomFieldDefn(0)->GetNameRef();
        const std::string sColumn = sShape.starts_with(sPrefix) ? sShape.substr(sPrefix.size()) : "WKT";
        const int lColumn = definition.GetFieldIndex(sColumn.c_str());
        if (lColumn < 0 || definition.GetFieldDefn(lColumn)->GetType() != OFTString)
            return nullptr;
        return std::make_unique<TextShapes>(lColumn);
    }

private:
    int lColumn_;
};

/// The records of a shapefile set: another file tells where each one is.
class RecordShapes : public StoredShapes {
public:
    RecordShapes(FilePtr pRecords, FilePtr pIndex)
        : pRecords_(std::move(pRecords)), pIndex_(std::move(pIndex)) {}

    [[nodiscard]] std::string fault(const OGRFeature& feature) override {
        constexpr std::uint64_t lHeader = 100;
        constexpr std::uint64_t lEntry = 8;
        constexpr std::uint64_t lRecordHeader = 8;
        const auto entry = bytesAt(*pIndex_, lHeader + lEntry * static_cast<std::uint64_t>(feature.GetFID()));
        if (!entry)
            return "it is not in the index of the shapes";
        // In units of two bytes, the first byte being the highest.
        std::uint64_t lPlace = 0;
        for (const std::uint8_t lByte : *entry)
            lPlace = lPlace * 256 + lByte;
        lPlace *= 2;
        const auto type = bytesAt(*pRecords_, lPlace + lRecordHeader);
        if (!type)
            return "its record is not in the file of the shapes";
        return *type == Bytes4{} ? "" : "its record in the file of the shapes is damaged";
    }

    [[nodiscard]] static std::unique_ptr<StoredShapes> of(const std::string& sFile) {
        const std::string sEnding = sFile.substr(sFile.size() - std::min<std::size_t>(sFile.size(), 4));
        if (!equalIgnoringCase(sEnding, ".shp"))
            return nullptr;
        const std::string sIndex = sFile.substr(0, sFile.size() - 1) + (sEnding.back() == 'P' ? "X" : "x");
        FilePtr pRecords(VSIFOpenL(sFile.c_str(), "rb"));
        FilePtr pIndex(VSIFOpenL(sIndex.c_str(), "rb"));
        if (pRecords == nullptr || pIndex == nullptr)
            return nullptr;
        return std::make_unique<RecordShapes>(std::move(pRecords), std::move(pIndex));
    }

private:
    using Bytes4 = std::array<unsigned char, 4>;

    static std::optional<Bytes4> bytesAt(VSILFILE& file, std::uint64_t lPlace) {
        Bytes4 aBytes{};
        if (VSIFSeekL(&file, lPlace, SEEK_SET) != 0 ||
            VSIFReadL(aBytes.data(), 1, aBytes.size(), &file) != aBytes.size())
            return std::nullopt;
        return aBytes;
    }

    FilePtr pRecords_;
    FilePtr pIndex_;
};

/// The values of a database's column.
class ColumnShapes : public StoredShapes {
public:
    explicit ColumnShapes(StatementPtr pStatement) : pStatement_(std::move(pStatement)) {}

    [[nodiscard]] std::string fault(const OGRFeature& feature) override {
        sqlite3_bind_int64(pStatement_.get(), 1, feature.GetFID());
        const bool bStored = sqlite3_step(pStatement_.get()) == SQLITE_ROW;
        sqlite3_reset(pStatement_.get());
        return bStored ? "the value of its column is not a shape" : "";
    }

    [[nodiscard]] static std::unique_ptr<StoredShapes> of(const LayerHandle& handle) {
        sqlite3* pDatabase = databaseOf(handle.dataset());
        OGRLayer& layer = handle.layer();
        if (pDatabase == nullptr || layer.GetFIDColumn()[0] == '\0')
            return nullptr;
        StatementPtr pStatement =
            prepare(pDatabase, "SELECT 1 FROM " + quotedName(layer.GetName()) + " WHERE " +
                                   quotedName(layer.GetFIDColumn()) + " = ?1 AND " +
                                   quotedName(layer.GetGeometryColumn()) + " IS NOT NULL");
        return pStatement == nullptr ? nullptr : std::make_unique<ColumnShapes>(std::move(pStatement));
    }

private:
    StatementPtr pStatement_;
};

bool hasShape(const CPLJSONObject& feature) {
    const CPLJSONObject member = feature.GetObj("geometry");
    return member.IsValid() && member.GetType() != CPLJSONObject::Type::Null;
}

/// Members "geometry" that are not null. The file is read once more for them, when the first is missed.
class MemberShapes : public StoredShapes {
public:
    [[nodiscard]] std::string fault(const OGRFeature& feature) override {
        return ids_.contains(feature.GetFID()) ? sFault_ : "";
    }

    /// Of a file that is one object.
    [[nodiscard]] static std::unique_ptr<StoredShapes> ofObject(const LayerHandle& layer) {
        Source source = layer.source();
        source.openOptions.emplace_back("NATIVE_DATA=YES");
        return std::unique_ptr<StoredShapes>(
            new MemberShapes(source, layer.layer().GetName(), [](const OGRFeature& feature) {
                CPLJSONDocument document;
                return feature.GetNativeData() != nullptr &&
                       document.LoadMemory(std::string(feature.GetNativeData())) &&
                       hasShape(document.GetRoot());
            }));
    }

    /// Of a file of records. One that is no feature is a shape alone.
    [[nodiscard]] static std::unique_ptr<StoredShapes> ofRecords(const LayerHandle& layer) {
        std::vector<bool> shapes;
        readJsonRecords(layer.source().sOpenName, [&](std::string_view sRecord) {
            CPLJSONDocument document;
            const bool bRead = document.LoadMemory(std::string(trimBlanks(sRecord)));
            shapes.push_back(
                bRead && (document.GetRoot().GetString("type") != "Feature" || hasShape(document.GetRoot())));
        });
        // Each record is a row: where one is not, the reading fails.
        return std::unique_ptr<StoredShapes>(new MemberShapes(
            layer.source(), layer.layer().GetName(), [&, lRow = std::size_t{0}](const OGRFeature&) mutable {
                const bool bShape = lRow < shapes.size() && shapes[lRow];
                ++lRow;
                return bShape;
            }));
    }

private:
    MemberShapes(const Source& source, const std::string& sLayer,
                 const std::function<bool(const OGRFeature&)>& fnStored) {
        const ErrorScope errors;
        const std::array<const char*, 2> aDrivers{source.sDriver.c_str(), nullptr};
        const GDALDatasetUniquePtr pDataset = tryOpen(source, aDrivers.data());
        OGRLayer* pLayer = pDataset == nullptr ? nullptr : pDataset->GetLayerByName(sLayer.c_str());
        while (const OGRFeatureUniquePtr pFeature{pLayer == nullptr ? nullptr : pLayer->GetNextFeature()})
            if (fnStored(*pFeature) && pFeature->GetGeometryRef() == nullptr)
                ids_.insert(pFeature->GetFID());
        sFault_ = errors.failed() ? errors.text() : "its geometry is of no known form";
    }

    std::unordered_set<std::int64_t> ids_;
    std::string sFault_;
};

/// Shapes that were taken out of what is opened.
class TakenShapes : public StoredShapes {
public:
    explicit TakenShapes(const LayerHandle& layer) : pMended_(layer.source().pMended) {
        Source source = layer.source();
        source.sOpenName = pMended_->markedPath();
        const ErrorScope errors;
        const std::array<const char*, 2> aDrivers{source.sDriver.c_str(), nullptr};
        const GDALDatasetUniquePtr pDataset = tryOpen(source, aDrivers.data());
        OGRLayer* pLayer = pDataset == nullptr ? nullptr : pDataset->GetLayerByName(layer.layer().GetName());
        while (const OGRFeatureUniquePtr pFeature{pLayer == nullptr ? nullptr : pLayer->GetNextFeature()}) {
            const OGRGeometry* pShape = pFeature->GetGeometryRef();
            if (pShape != nullptr && wkbFlatten(pShape->getGeometryType()) == wkbPoint) {
                const double dNumber = pShape->toPoint()->getX();
                const bool bNumber = dNumber >= 0 && dNumber < static_cast<double>(pMended_->count());
                if (bNumber)
                    shapes_.emplace(pFeature->GetFID(), static_cast<std::size_t>(dNumber));
            }
        }
    }

    [[nodiscard]] std::string fault(const OGRFeature& feature) override {
        const auto pShape = shapes_.find(feature.GetFID());
        return pShape == shapes_.end() ? "" : pMended_->reason(pShape->second);
    }

private:
    std::shared_ptr<const MendedShapes> pMended_;
    std::unordered_map<std::int64_t, std::size_t> shapes_; // by row
};

} // namespace

std::unique_ptr<StoredShapes> storedShapesOf(const LayerHandle& layer) {
    if (layer.source().pMended != nullptr)
        return std::make_unique<TakenShapes>(layer);
    const std::string& sDriver = layer.source().sDriver;
    if (sDriver == "CSV")
        return TextShapes::of(layer.layer());
    if (sDriver == "ESRI Shapefile")
        return RecordShapes::of(layer.source().sOpenName);
    if (sDriver == "SQLite")
        return ColumnShapes::of(layer);
    if (sDriver == "GeoJSON")
        return MemberShapes::ofObject(layer);
    if (sDriver == "GeoJSONSeq")
        return MemberShapes::ofRecords(layer);
    return nullptr;
}

} // namespace halvane::host::gdal
