#include "host/gdal/map/MapDocumentReader.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/facts/Markup.h"
#include "host/gdal/map/ElementReader.h"
#include "host/gdal/map/MapDocumentSchema.h"
#include "host/gdal/map/OverridesReader.h"
#include "host/gdal/map/WorkspaceReader.h"
#include "host/gdal/objects/Places.h"
#include "host/gdal/source/Encodings.h"
#include "host/gdal/source/Locations.h"

#include <locale>
#include <map>
#include <sstream>
#include <unordered_set>
#include <utility>

namespace halvane::host::gdal {

namespace {

// Reads the elements of one document, whose shape the schema has already checked.
class DocumentReader {
public:
    explicit DocumentReader(const std::string& sPath) : reader_(sPath), sFolder_(folderOf(sPath)) {}

    MapDocumentModel read(const MarkupElement& root);

private:
    void readLocation(const MarkupElement& element, std::string& sLocation, bool& bConnection) const;
    ConnectionModel readConnection(const MarkupElement& element) const;
    DataModel readData(const MarkupElement& element);
    std::string readEncoding(const MarkupElement& element, const DataModel& data);
    MapModel readMap(const MarkupElement& element);
    std::vector<LayerModel> readLayers(const MarkupElement& element);
    LayerModel readLayer(const MarkupElement& element);
    std::optional<SelectionChoice> readSelection(const MarkupElement& layer) const;
    WorkspaceModel readWorkspace(const MarkupElement& element) const;

    ElementReader reader_;
    std::string sFolder_;
    std::unordered_set<std::string> connections_;  // upper-cased names
    std::map<std::string, std::string> encodings_; // by location
};

void DocumentReader::readLocation(const MarkupElement& element, std::string& sLocation,
                                  bool& bConnection) const {
    const auto source = element.attribute("source");
    const auto connection = element.attribute("connection");
    if (source.has_value() == connection.has_value()) {
        reader_.fail(
            element,
            "<" + std::string(element.name()) +
                "> needs either source=\"...\" (a file or a folder) or connection=\"...\" (the name of "
                "a <Connection>)");
    }
    bConnection = connection.has_value();
    if (bConnection) {
        if (!connections_.contains(upperCase(*connection)))
            reader_.fail(element, R"(there is no <Connection name=")" + *connection + R"(">; add one)");
        sLocation = *connection;
        return;
    }
    try {
        sLocation = filePathOf(*source, sFolder_);
    } catch (const Failure& failure) {
        reader_.fail(element, failure.description());
    }
}

ConnectionModel DocumentReader::readConnection(const MarkupElement& element) const {
    return {reader_.placeOf(element), element.text("name"), element.text("database")};
}

std::string DocumentReader::readEncoding(const MarkupElement& element, const DataModel& data) {
    const auto encoding = element.attribute("encoding");
    if (!encoding)
        return {};
    if (data.bConnection || !(isFolder(data.sLocation) || hasOpenEncoding(data.sLocation))) {
        reader_.fail(
            element,
            "encoding=\"...\" is for CSV files, shapefile sets, dBASE tables and folders of such; others "
            "know their encoding: leave it out");
    }
    if (!isEncoding(*encoding)) {
        reader_.fail(element,
                     "encoding=\"" + *encoding +
                         R"(" is not known here; give a name such as "ISO-8859-1" or "windows-1252")");
    }
    const auto [pKnown, bNew] = encodings_.emplace(data.sLocation, *encoding);
    if (!bNew && !equalIgnoringCase(pKnown->second, *encoding)) {
        reader_.fail(element, "encoding=\"" + *encoding + "\", but \"" + pKnown->second +
                                  "\" is said of the same source above; leave one");
    }
    return *encoding;
}

DataModel DocumentReader::readData(const MarkupElement& element) {
    DataModel data;
    data.place = reader_.placeOf(element);
    readLocation(element, data.sLocation, data.bConnection);
    data.sDataset = element.text("dataset");
    data.sSql = element.text("sql");
    if (!data.sSql.empty() && data.bConnection)
        reader_.fail(element,
                     "sql=\"...\" is for files; make a view on the server, and name it as the dataset");
    data.sFilter = element.text("filter");
    data.sCrs = element.text("crs");
    if (const auto orderBy = element.attribute("orderBy"))
        data.orderBy = at(data.place.text(), [&] { return rowKeysOf(*orderBy); });
    data.sEncoding = readEncoding(element, data);
    data.fields = readFields(reader_, element);
    data.subtypes = readSubtypes(reader_, element);
    data.spatialReference = readSpatialReference(reader_, element);
    return data;
}

std::optional<SelectionChoice> DocumentReader::readSelection(const MarkupElement& layer) const {
    const auto element = reader_.single(layer, "Selection");
    if (!element)
        return std::nullopt;
    const auto ids = element->attribute("fids");
    const auto where = element->attribute("where");
    if (ids.has_value() == where.has_value())
        reader_.fail(*element, R"(<Selection> needs either fids="1 5 3" or where="...")");
    SelectionChoice choice;
    choice.sPlace = reader_.placeOf(*element).text();
    choice.sWhere = where.value_or("");
    std::istringstream stream(ids.value_or(""));
    stream.imbue(std::locale::classic());
    for (std::int64_t lId = 0; stream >> lId;)
        choice.ids.push_back(lId);
    return choice;
}

LayerModel DocumentReader::readLayer(const MarkupElement& element) {
    LayerModel layer;
    layer.sName = element.text("name");
    if (element.name() == "GroupLayer") {
        layer.kind = LayerKind::Group;
        layer.layers = readLayers(element);
        return layer;
    }
    layer.kind = element.name() == "FeatureLayer"  ? LayerKind::Feature
                 : element.name() == "RasterLayer" ? LayerKind::Raster
                                                   : LayerKind::Tin;
    layer.data = readData(element);
    layer.selection = readSelection(element);
    layer.bNamed = !layer.sName.empty();
    if (!layer.bNamed)
        layer.sName = layer.data.sDataset.empty() ? stemOf(layer.data.sLocation) : layer.data.sDataset;
    return layer;
}

std::vector<LayerModel> DocumentReader::readLayers(const MarkupElement& element) {
    std::vector<LayerModel> layers;
    for (const MarkupElement& child : element.children())
        if (child.name() != "Table" && child.name() != "SpatialReference")
            layers.push_back(readLayer(child));
    return layers;
}

MapModel DocumentReader::readMap(const MarkupElement& element) {
    MapModel map;
    map.sName = element.text("name");
    map.bShown = toBool(element.text("shown"));
    map.layers = readLayers(element);
    for (const MarkupElement& child : element.children("Table"))
        map.tables.push_back(readData(child));
    map.spatialReference = readSpatialReference(reader_, element);
    return map;
}

WorkspaceModel DocumentReader::readWorkspace(const MarkupElement& element) const {
    WorkspaceModel workspace;
    workspace.place = reader_.placeOf(element);
    readLocation(element, workspace.sLocation, workspace.bConnection);
    std::unordered_set<std::string> domains;
    std::unordered_set<std::string> relationships;
    for (const MarkupElement& child : element.children()) {
        if (child.name() == "RelationshipClass") {
            workspace.relationships.push_back(readRelationship(child));
            reader_.requireUnique(relationships, workspace.relationships.back().sName, child);
        } else {
            workspace.domains.push_back(readDomain(reader_, child));
            reader_.requireUnique(domains, workspace.domains.back().sName, child);
        }
    }
    return workspace;
}

MapDocumentModel DocumentReader::read(const MarkupElement& root) {
    MapDocumentModel model;
    model.sFolder = sFolder_;
    for (const MarkupElement& child : root.children("Connection")) {
        model.connections.push_back(readConnection(child));
        reader_.requireUnique(connections_, model.connections.back().sName, child);
    }
    for (const MarkupElement& child : root.children("Workspace"))
        model.workspaces.push_back(readWorkspace(child));
    const MarkupElement* pShown = nullptr;
    const std::vector<MarkupElement> maps = root.children("Map");
    for (const MarkupElement& child : maps) {
        model.maps.push_back(readMap(child));
        if (model.maps.back().bShown && std::exchange(pShown, &child) != nullptr)
            reader_.fail(child, R"(a second map says shown="true"; leave one)");
    }
    if (model.maps.empty())
        reader_.fail(root, R"(the document has no map; add a <Map name="...">)");
    if (pShown == nullptr)
        model.maps.front().bShown = true;
    return model;
}

} // namespace

MapDocumentModel readMapDocument(const std::string& sPath) {
    const MarkupDocument pDocument = parseMarkup(sPath);
    checkAgainst(sMapDocumentSchema, *pDocument, sPath);
    return DocumentReader(sPath).read(MarkupElement(xmlDocGetRootElement(pDocument.get())));
}

} // namespace halvane::host::gdal
