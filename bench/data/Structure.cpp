#include "Datasets.h"
#include "Makers.h"
#include "Random.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace halvane::bench {

namespace {

constexpr std::int64_t nToTheTable = 5;

bool isTable(std::int64_t nNumber) {
    return nNumber % nToTheTable == nToTheTable - 1;
}

std::string datasetName(std::int64_t nNumber) {
    return fmt::format("{}_{:05}", isTable(nNumber) ? "table" : "layer", nNumber);
}

void makeOne(GDALDataset& dataset, std::int64_t nNumber, Random& random) {
    const bool bTable = isTable(nNumber);
    OGRLayer& layer =
        createLayer(dataset, datasetName(nNumber), bTable ? wkbNone : wkbPoint,
                    {{"number", OFTInteger}, {"name", OFTString}, {"height", OFTReal}, {"built", OFTDate}});
    const int lRows = random.intBelow(4);
    for (int l = 0; l < lRows; ++l) {
        const OGRFeatureUniquePtr pFeature(OGRFeature::CreateFeature(layer.GetLayerDefn()));
        pFeature->SetField(0, l);
        if (!bTable) {
            const OGRPoint place(random.intBelow(1000), random.intBelow(1000));
            pFeature->SetGeometry(&place);
        }
        if (layer.CreateFeature(pFeature.get()) != OGRERR_NONE)
            throw std::runtime_error("Writing a feature: " + std::string(CPLGetLastErrorMsg()));
    }
}

/// A file of text that says when it could not be written whole.
class TextFile {
public:
    explicit TextFile(const std::string& sPath) : sPath_(sPath), stream_(sPath, std::ios::binary) {}

    void line(std::string_view sLine) { stream_ << sLine << '\n'; }
    void close() {
        stream_.close();
        if (!stream_)
            throw std::runtime_error("Writing " + sPath_ + " failed");
    }

private:
    std::string sPath_;
    std::ofstream stream_;
};

} // namespace

// The driver takes time that grows with the square of a file's layers, so there are many files.
void makeStructure(const std::string& sFolder, std::int64_t nCount) {
    constexpr std::int64_t nInFile = 100;
    std::filesystem::create_directory(sFolder);
    Random random(5);
    for (std::int64_t nBegin = 0; nBegin < nCount; nBegin += nInFile) {
        const auto pDataset = createDataset(fmt::format("{}/part{:03}.gpkg", sFolder, nBegin / nInFile));
        pDataset->StartTransaction();
        for (std::int64_t n = nBegin; n < std::min(nCount, nBegin + nInFile); ++n)
            makeOne(*pDataset, n, random);
        if (pDataset->CommitTransaction() != OGRERR_NONE)
            throw std::runtime_error("Committing: " + std::string(CPLGetLastErrorMsg()));
    }
}

void makeStructureControl(const std::string& sPath, std::int64_t nCount) {
    TextFile file(sPath);
    file.line(R"(<Template Name="Structure">)");
    for (std::int64_t n = 0; n < nCount; ++n) {
        const std::string sName = datasetName(n);
        if (isTable(n)) {
            file.line(fmt::format(
                R"(<T Name="Table" DataSource="Table" Identity="TableName" IdentityValue="{}"><L Name="name" Target="Attribute" DataProperty="TableName"/></T>)",
                sName));
            continue;
        }
        file.line(fmt::format(
            R"(<L Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="{}"><N Name="name" Target="Attribute" DataProperty="LayerName"/><C Name="count" Target="Attribute" DataProperty="FeatureCount"/><F Name="Fields" DataSource="Field" Entries="Multiple"><E Name="Field"><A Name="Name" DataProperty="FieldName"/><A Name="Type" DataProperty="FieldType"/></E></F></L>)",
            sName));
    }
    file.line("</Template>");
    file.close();
}

namespace {

/// A chain of groups in one another, each with three leaves. @returns how many nodes it wrote.
std::int64_t writeBranch(TextFile& file, std::int64_t nLimit, int lDepth) {
    if (nLimit < 4 || lDepth == 0)
        return 0;
    file.line(R"(<G Name="Group">)");
    file.line(R"(<N Name="name" Target="Attribute" DataProperty="LayerName"/>)");
    file.line(R"(<C Name="Count" DataProperty="FeatureCount"/>)");
    file.line(R"(<D Name="Day" DataSource="Time"/>)");
    const std::int64_t nBelow = writeBranch(file, nLimit - 4, lDepth - 1);
    file.line("</G>");
    return nBelow + 4;
}

} // namespace

void makeTreeControl(const std::string& sPath, std::int64_t nCount) {
    constexpr int lDeepest = 25;
    TextFile file(sPath);
    file.line(R"(<Template Name="Tree">)");
    file.line(R"(<L Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="places">)");
    std::int64_t nWritten = 2;
    for (int lDepth = 1; nCount - nWritten >= 4; lDepth = lDepth % lDeepest + 1)
        nWritten += writeBranch(file, nCount - nWritten, lDepth);
    for (; nWritten < nCount; ++nWritten)
        file.line(R"(<N Name="Title" DataProperty="LayerName"/>)");
    file.line("</L>");
    file.line("</Template>");
    file.close();
}

} // namespace halvane::bench
