#include "host/gdal/map/project/ProjectLayers.h"

#include "base/FindRow.h"
#include "base/Text.h"
#include "host/gdal/map/project/ProjectFields.h"
#include "host/gdal/map/project/ProjectPaths.h"
#include "host/gdal/map/project/ProjectSource.h"
#include "host/gdal/source/Encodings.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace halvane::host::gdal {

namespace {

struct TypeRow {
    std::string_view sType;
    LayerKind kind;
};

constexpr std::array<TypeRow, 3> aTypes{
    {{"vector", LayerKind::Feature}, {"raster", LayerKind::Raster}, {"mesh", LayerKind::Tin}}};

std::string nameOf(const MarkupElement& layer) {
    const std::string sName = layer.contentOf("layername");
    return sName.empty() ? layer.contentOf("id") : sName;
}

// UTF-8 is what is written where nobody has chosen an encoding.
void takeEncoding(const std::string& sEncoding, DataModel& data) {
    if (!sEncoding.empty() && !equalIgnoringCase(sEncoding, "UTF-8") && hasOpenEncoding(data.sLocation) &&
        isEncoding(sEncoding))
        data.sEncoding = sEncoding;
}

} // namespace

ProjectLayer* ProjectLayers::find(const std::string& sId) {
    const auto pFound = layers_.find(sId);
    return pFound == layers_.end() ? nullptr : &pFound->second;
}

void ProjectLayers::read(const MarkupElement& root) {
    if (const auto list = root.child("projectlayers"))
        for (const MarkupElement& element : list->children("maplayer"))
            readLayer(element);
}

void ProjectLayers::readLayer(const MarkupElement& element) {
    const std::string sName = nameOf(element);
    if (toBool(element.text("embedded"))) {
        remarks_.add("layers that stand in another project are left out", element.text("id"));
        return;
    }
    const std::string sType = element.text("type");
    const TypeRow* pType = findRow(aTypes, sType, &TypeRow::sType);
    if (pType == nullptr) {
        remarks_.add("layers of types that no map has are left out", sName + " (" + sType + ")");
        return;
    }
    ProjectLayer layer;
    layer.model.kind = pType->kind;
    layer.model.sName = sName;
    layer.bTable = pType->kind == LayerKind::Feature &&
                   (element.text("geometry") == "No geometry" || element.text("wkbType") == "NoGeometry");
    layer.model.data = readData(element, sName);
    ProjectFields fields = readProjectFields(reader_, element, sName, remarks_);
    layer.model.data.fields = std::move(fields.fields);
    layer.domains = std::move(fields.domains);
    layer.model.data.sName = layer.bTable ? sName : "";
    const std::string sId = element.contentOf("id");
    if (layers_.emplace(sId, std::move(layer)).second)
        ids_.push_back(sId);
}

DataModel ProjectLayers::readData(const MarkupElement& element, const std::string& sName) {
    const auto provider = element.child("provider");
    const ProjectSource source =
        projectSourceOf(provider ? provider->content() : std::string(), element.contentOf("datasource"));
    DataModel data;
    data.place = reader_.placeOf(element.child("datasource").value_or(element));
    data.sWhyNot = source.sWhyNot;
    data.sDataset = source.sDataset;
    data.nDataset = source.sDataset.empty() ? source.nDataset : std::nullopt;
    data.sShapes = source.sShapes;
    data.sSql = source.sSql;
    data.sFilter = source.sFilter;
    data.bMesh = source.bMesh;
    if (!source.sDatabase.empty())
        findServer(source, sName, data);
    else
        findFile(source, sName, data);
    takeEncoding(provider ? provider->text("encoding") : std::string(), data);
    takeEncoding(source.sEncoding, data);
    requireOneReading(source, data);
    data.spatialReference = references_.in(element.child("srs"));
    if (!data.spatialReference)
        data.spatialReference = references_.of(source.sCrs, element);
    remarkRest(element, source, sName);
    return data;
}

void ProjectLayers::findFile(const ProjectSource& source, const std::string& sName, DataModel& data) {
    if (!data.sWhyNot.empty())
        return;
    ProjectPath path = projectPath(source.sFile, sFolder_);
    if (path.bMoved)
        remarks_.add("data that is not where the project says is read from its place beside the project",
                     sName + "\" from \"" + path.sPath);
    data.sLocation = std::move(path.sPath);
    data.sWhyNot = std::move(path.sWhyNot);
}

void ProjectLayers::findServer(const ProjectSource& source, const std::string& sName, DataModel& data) {
    if (!bConnections_) {
        remarks_.add("layers on database servers are not read; --allow-connections allows it", sName);
        data.sWhyNot = "its data is on the database server \"" + source.sServer +
                       "\", which the project names; --allow-connections allows to read from there";
        return;
    }
    data.bConnection = true;
    const auto pKnown =
        std::find_if(connections_.begin(), connections_.end(), [&](const ConnectionModel& connection) {
            return connection.sDatabase == source.sDatabase;
        });
    if (pKnown != connections_.end()) {
        data.sLocation = pKnown->sName;
        return;
    }
    data.sLocation = source.sServer;
    const auto isTaken = [&](const ConnectionModel& one) {
        return equalIgnoringCase(one.sName, data.sLocation);
    };
    for (int lTwin = 2; std::any_of(connections_.begin(), connections_.end(), isTaken); ++lTwin)
        data.sLocation = source.sServer + " (" + std::to_string(lTwin) + ")";
    connections_.push_back({data.place, data.sLocation, source.sDatabase});
}

void ProjectLayers::requireOneReading(const ProjectSource& source, DataModel& data) {
    if (!data.sWhyNot.empty())
        return;
    auto& known = openOptions_[data.sLocation];
    for (const auto& [sOption, sValue] : source.openOptions)
        if (const auto pKnown = known.emplace(sOption, sValue).first; pKnown->second != sValue)
            data.sWhyNot = "\"" + data.sLocation + "\" is read by another layer " +
                           (sOption == "HEADERS" ? std::string(sValue == "NO" ? "with" : "without") +
                                                       " a line of headings, and by this one " +
                                                       (sValue == "NO" ? "without" : "with") + " it"
                                                 : "with the column \"" + pKnown->second +
                                                       "\" where this one has \"" + sValue + "\"") +
                           "; give this one a file of its own";
    data.openOptions = source.openOptions;
}

void ProjectLayers::remarkRest(const MarkupElement& element, const ProjectSource& source,
                               const std::string& sName) {
    for (const std::string& sKey : source.untold)
        remarks_.add("parts of data sources are left out", sName + ": " + sKey);
    if (source.bOwnExpression)
        remarks_.add("layers whose subsets QGIS alone can compute are not read", sName);
    if (const auto joins = element.child("vectorjoins"))
        for (const MarkupElement& join : joins->children("join"))
            remarks_.add("joins are left out; relate the rows, or join them in a view",
                         sName + "." + join.text("targetFieldName"));
}

} // namespace halvane::host::gdal
