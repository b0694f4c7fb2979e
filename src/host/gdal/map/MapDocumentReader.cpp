#include "host/gdal/map/MapDocumentReader.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/facts/Markup.h"
#include "host/gdal/facts/Values.h"
#include "host/gdal/map/MapDocumentSchema.h"
#include "host/gdal/source/Encodings.h"
#include "host/gdal/source/Locations.h"

#include <libxml/xmlreader.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <locale>
#include <map>
#include <sstream>
#include <unordered_set>

namespace halvane::host::gdal {

namespace {

// Reads the elements of one document, whose shape the schema has already checked.
class Reader {
public:
    explicit Reader(const std::string& sPath) : sPath_(sPath), sFolder_(folderOf(sPath)) {}

    MapDocumentModel read(const MarkupElement& root);

private:
    [[noreturn]] void fail(const MarkupElement& element, const std::string& sText) const;
    [[nodiscard]] Place placeOf(const MarkupElement& element) const { return {sPath_, element.line()}; }
    std::optional<MarkupElement> single(const MarkupElement& element, std::string_view sName) const;
    void requireUnique(std::unordered_set<std::string>& names, const std::string& sName,
                       const MarkupElement& element) const;

    void readLocation(const MarkupElement& element, std::string& sLocation, bool& bConnection) const;
    ConnectionModel readConnection(const MarkupElement& element) const;
    DataModel readData(const MarkupElement& element);
    std::string readEncoding(const MarkupElement& element, const DataModel& data);
    MapModel readMap(const MarkupElement& element);
    std::vector<LayerModel> readLayers(const MarkupElement& element);
    LayerModel readLayer(const MarkupElement& element);
    std::optional<SelectionChoice> readSelection(const MarkupElement& layer) const;
    std::vector<FieldOverride> readFields(const MarkupElement& element) const;
    std::optional<SubtypesFacts> readSubtypes(const MarkupElement& layer) const;
    SubtypeFacts readSubtype(const MarkupElement& element) const;
    std::optional<ReferenceOverride> readSpatialReference(const MarkupElement& owner) const;
    WorkspaceModel readWorkspace(const MarkupElement& element) const;
    Value readValue(const MarkupElement& element, const char* pAttribute, FieldType type) const;
    DomainFacts readDomain(const MarkupElement& element) const;
    RelationshipFacts readRelationship(const MarkupElement& element) const;

    std::string sPath_;
    std::string sFolder_;
    std::unordered_set<std::string> connections_;  // upper-cased names
    std::map<std::string, std::string> encodings_; // by location
};

bool toBool(const std::string& sText) {
    return sText == "true" || sText == "1";
}

// Numbers of the schema's types, whatever the process's locale.
double toNumber(const std::string& sText) {
    double dValue = 0;
    std::string_view sTrimmed = trimBlanks(sText);
    sTrimmed.remove_prefix(sTrimmed.starts_with('+') ? 1 : 0);
    std::from_chars(sTrimmed.data(), sTrimmed.data() + sTrimmed.size(), dValue);
    return dValue;
}

std::int32_t toWhole(const std::string& sText) {
    return static_cast<std::int32_t>(toNumber(sText));
}

// The position of a text in a list of names; the schema admits no other.
template<class... Names>
std::int32_t indexOf(const std::string& sText, Names... names) {
    const std::vector<std::string_view> all{names...};
    return static_cast<std::int32_t>(std::find(all.begin(), all.end(), sText) - all.begin());
}

void Reader::fail(const MarkupElement& element, const std::string& sText) const {
    throw Failure(FailureNumber::HostFailure, placeOf(element).text() + ": " + sText);
}

std::optional<MarkupElement> Reader::single(const MarkupElement& element, std::string_view sName) const {
    const std::vector<MarkupElement> all = element.children(sName);
    if (all.size() > 1) {
        fail(all[1], "a second <" + std::string(sName) + "> in the same <" + std::string(element.name()) +
                         ">; leave one");
    }
    return all.empty() ? std::nullopt : std::optional(all.front());
}

void Reader::requireUnique(std::unordered_set<std::string>& names, const std::string& sName,
                           const MarkupElement& element) const {
    if (!names.insert(upperCase(sName)).second) {
        fail(element, "a second <" + std::string(element.name()) + "> named \"" + sName +
                          "\"; names are compared ignoring case: rename one");
    }
}

void Reader::readLocation(const MarkupElement& element, std::string& sLocation, bool& bConnection) const {
    const auto source = element.attribute("source");
    const auto connection = element.attribute("connection");
    if (source.has_value() == connection.has_value()) {
        fail(element,
             "<" + std::string(element.name()) +
                 "> needs either source=\"...\" (a file or a folder) or connection=\"...\" (the name of "
                 "a <Connection>)");
    }
    bConnection = connection.has_value();
    if (bConnection) {
        if (!connections_.contains(upperCase(*connection)))
            fail(element, R"(there is no <Connection name=")" + *connection + R"(">; add one)");
        sLocation = *connection;
        return;
    }
    try {
        sLocation = filePathOf(*source, sFolder_);
    } catch (const Failure& failure) {
        fail(element, failure.description());
    }
}

ConnectionModel Reader::readConnection(const MarkupElement& element) const {
    return {placeOf(element), element.text("name"), element.text("database")};
}

std::vector<FieldOverride> Reader::readFields(const MarkupElement& element) const {
    std::vector<FieldOverride> fields;
    std::unordered_set<std::string> names;
    for (const MarkupElement& child : element.children("Field")) {
        FieldOverride field;
        field.sPlace = placeOf(child).text();
        field.sName = child.text("name");
        field.sAlias = child.attribute("alias");
        field.sDomain = child.attribute("domain");
        field.sDefault = child.attribute("default");
        if (const auto editable = child.attribute("editable"))
            field.bEditable = toBool(*editable);
        requireUnique(names, field.sName, child);
        fields.push_back(std::move(field));
    }
    return fields;
}

std::string Reader::readEncoding(const MarkupElement& element, const DataModel& data) {
    const auto encoding = element.attribute("encoding");
    if (!encoding)
        return {};
    if (data.bConnection || !(isFolder(data.sLocation) || hasOpenEncoding(data.sLocation))) {
        fail(element,
             "encoding=\"...\" is for CSV files, shapefile sets, dBASE tables and folders of such; others "
             "know their encoding: leave it out");
    }
    if (!isEncoding(*encoding)) {
        fail(element, "encoding=\"" + *encoding +
                          R"(" is not known here; give a name such as "ISO-8859-1" or "windows-1252")");
    }
    const auto [pKnown, bNew] = encodings_.emplace(data.sLocation, *encoding);
    if (!bNew && !equalIgnoringCase(pKnown->second, *encoding)) {
        fail(element, "encoding=\"" + *encoding + "\", but \"" + pKnown->second +
                          "\" is said of the same source above; leave one");
    }
    return *encoding;
}

DataModel Reader::readData(const MarkupElement& element) {
    DataModel data;
    data.place = placeOf(element);
    readLocation(element, data.sLocation, data.bConnection);
    data.sDataset = element.text("dataset");
    data.sFilter = element.text("filter");
    data.sEncoding = readEncoding(element, data);
    data.fields = readFields(element);
    data.subtypes = readSubtypes(element);
    data.spatialReference = readSpatialReference(element);
    return data;
}

std::optional<SelectionChoice> Reader::readSelection(const MarkupElement& layer) const {
    const auto element = single(layer, "Selection");
    if (!element)
        return std::nullopt;
    const auto ids = element->attribute("fids");
    const auto where = element->attribute("where");
    if (ids.has_value() == where.has_value())
        fail(*element, R"(<Selection> needs either fids="1 5 3" or where="...")");
    SelectionChoice choice;
    choice.sPlace = placeOf(*element).text();
    choice.sWhere = where.value_or("");
    std::istringstream stream(ids.value_or(""));
    stream.imbue(std::locale::classic());
    for (std::int64_t lId = 0; stream >> lId;)
        choice.ids.push_back(lId);
    return choice;
}

SubtypeFacts Reader::readSubtype(const MarkupElement& element) const {
    SubtypeFacts subtype;
    subtype.lCode = toWhole(element.text("code"));
    subtype.sName = element.text("name");
    std::unordered_set<std::string> names;
    for (const MarkupElement& child : element.children("SubtypeField")) {
        requireUnique(names, child.text("name"), child);
        subtype.fields.push_back({child.text("name"), child.attribute("domain"), child.attribute("default")});
    }
    return subtype;
}

std::optional<SubtypesFacts> Reader::readSubtypes(const MarkupElement& layer) const {
    const auto element = single(layer, "Subtypes");
    if (!element)
        return std::nullopt;
    SubtypesFacts model;
    model.sPlace = placeOf(*element).text();
    model.sField = element->text("field");
    for (const MarkupElement& child : element->children("Subtype")) {
        SubtypeFacts subtype = readSubtype(child);
        if (std::any_of(model.subtypes.begin(), model.subtypes.end(),
                        [&](const SubtypeFacts& other) { return other.lCode == subtype.lCode; })) {
            fail(child, "a second <Subtype> with the code " + std::to_string(subtype.lCode) +
                            "; give each its own code");
        }
        model.subtypes.push_back(std::move(subtype));
    }
    const auto sDefault = element->attribute("default");
    model.lDefault = sDefault ? toWhole(*sDefault) : model.subtypes.front().lCode;
    if (std::none_of(model.subtypes.begin(), model.subtypes.end(),
                     [&](const SubtypeFacts& subtype) { return subtype.lCode == model.lDefault; }))
        fail(*element, "no <Subtype> has the default code " + std::to_string(model.lDefault));
    return model;
}

MeasureDomain measureDomainOf(const MarkupElement& element) {
    MeasureDomain domain;
    domain.dMin = toNumber(element.text("min"));
    domain.dMax = toNumber(element.text("max"));
    domain.dFalseOrigin = toNumber(element.attribute("falseOrigin").value_or(element.text("min")));
    domain.dScale = toNumber(element.attribute("scale").value_or("0"));
    return domain;
}

XyDomain xyDomainOf(const MarkupElement& element) {
    XyDomain domain;
    domain.dXMin = toNumber(element.text("xMin"));
    domain.dYMin = toNumber(element.text("yMin"));
    domain.dXMax = toNumber(element.text("xMax"));
    domain.dYMax = toNumber(element.text("yMax"));
    domain.dFalseX = toNumber(element.attribute("falseX").value_or(element.text("xMin")));
    domain.dFalseY = toNumber(element.attribute("falseY").value_or(element.text("yMin")));
    domain.dScale = toNumber(element.attribute("scale").value_or("0"));
    return domain;
}

std::optional<ReferenceOverride> Reader::readSpatialReference(const MarkupElement& owner) const {
    const auto element = single(owner, "SpatialReference");
    if (!element)
        return std::nullopt;
    ReferenceOverride model;
    model.sPlace = placeOf(*element).text();
    model.sDefinition = element->text("definition");
    if (const auto xy = single(*element, "XYDomain")) {
        model.xy = xyDomainOf(*xy);
        if (model.xy->dXMin > model.xy->dXMax || model.xy->dYMin > model.xy->dYMax)
            fail(*xy, "the least coordinate is above the greatest");
    }
    if (const auto z = single(*element, "ZDomain"))
        model.z = measureDomainOf(*z);
    if (const auto m = single(*element, "MDomain"))
        model.m = measureDomainOf(*m);
    return model;
}

LayerModel Reader::readLayer(const MarkupElement& element) {
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

std::vector<LayerModel> Reader::readLayers(const MarkupElement& element) {
    std::vector<LayerModel> layers;
    for (const MarkupElement& child : element.children())
        if (child.name() != "Table" && child.name() != "SpatialReference")
            layers.push_back(readLayer(child));
    return layers;
}

MapModel Reader::readMap(const MarkupElement& element) {
    MapModel map;
    map.sName = element.text("name");
    map.bShown = toBool(element.text("shown"));
    map.layers = readLayers(element);
    for (const MarkupElement& child : element.children("Table"))
        map.tables.push_back(readData(child));
    map.spatialReference = readSpatialReference(element);
    return map;
}

Value Reader::readValue(const MarkupElement& element, const char* pAttribute, FieldType type) const {
    const std::string sText = element.text(pAttribute);
    auto value = parseValue(sText, type);
    if (!value) {
        fail(element, std::string(pAttribute) + "=\"" + sText +
                          "\" does not fit the domain's fieldType; dates are written \"2024-01-31\"");
    }
    return *std::move(value);
}

DomainFacts Reader::readDomain(const MarkupElement& element) const {
    DomainFacts domain;
    domain.kind = element.name() == "RangeDomain"  ? DomainKind::Range
                  : element.name() == "TextDomain" ? DomainKind::Text
                                                   : DomainKind::CodedValue;
    domain.sName = element.text("name");
    domain.sDescription = element.text("description");
    const char* pDefaultType = domain.kind == DomainKind::Text ? "string" : "integer";
    domain.fieldType =
        static_cast<FieldType>(indexOf(element.attribute("fieldType").value_or(pDefaultType), "smallInteger",
                                       "integer", "single", "double", "string", "date"));
    domain.lMergePolicy =
        indexOf(element.attribute("mergePolicy").value_or("default"), "default", "sum", "geometryWeighted");
    domain.lSplitPolicy = indexOf(element.attribute("splitPolicy").value_or("default"), "default",
                                  "duplicate", "geometryRatio");
    if (domain.kind == DomainKind::Range) {
        domain.vMin = readValue(element, "min", domain.fieldType);
        domain.vMax = readValue(element, "max", domain.fieldType);
    }
    for (const MarkupElement& code : element.children("Code"))
        domain.codes.push_back({readValue(code, "value", domain.fieldType), code.text("name")});
    return domain;
}

RelationshipFacts Reader::readRelationship(const MarkupElement& element) const {
    RelationshipFacts model;
    model.sName = element.text("name");
    model.sOrigin = element.text("origin");
    model.sDestination = element.text("destination");
    model.sOriginPrimaryKey = element.text("originPrimaryKey");
    model.sOriginForeignKey = element.text("originForeignKey");
    model.sDestinationPrimaryKey = element.text("destinationPrimaryKey");
    model.sDestinationForeignKey = element.text("destinationForeignKey");
    model.sForwardLabel = element.text("forwardLabel");
    model.sBackwardLabel = element.text("backwardLabel");
    model.sFeatureDataset = element.text("featureDataset");
    model.bComposite = toBool(element.text("composite"));
    model.bAttributed = toBool(element.text("attributed"));
    model.lCardinality = 1 + indexOf(element.attribute("cardinality").value_or("oneToMany"), "oneToOne",
                                     "oneToMany", "manyToMany");
    model.lNotification = 1 + indexOf(element.attribute("notification").value_or("none"), "none", "forward",
                                      "backward", "both");
    return model;
}

WorkspaceModel Reader::readWorkspace(const MarkupElement& element) const {
    WorkspaceModel workspace;
    workspace.place = placeOf(element);
    readLocation(element, workspace.sLocation, workspace.bConnection);
    std::unordered_set<std::string> domains;
    std::unordered_set<std::string> relationships;
    for (const MarkupElement& child : element.children()) {
        if (child.name() == "RelationshipClass") {
            workspace.relationships.push_back(readRelationship(child));
            requireUnique(relationships, workspace.relationships.back().sName, child);
        } else {
            workspace.domains.push_back(readDomain(child));
            requireUnique(domains, workspace.domains.back().sName, child);
        }
    }
    return workspace;
}

MapDocumentModel Reader::read(const MarkupElement& root) {
    MapDocumentModel model;
    model.sFolder = sFolder_;
    for (const MarkupElement& child : root.children("Connection")) {
        model.connections.push_back(readConnection(child));
        requireUnique(connections_, model.connections.back().sName, child);
    }
    for (const MarkupElement& child : root.children("Workspace"))
        model.workspaces.push_back(readWorkspace(child));
    const MarkupElement* pShown = nullptr;
    const std::vector<MarkupElement> maps = root.children("Map");
    for (const MarkupElement& child : maps) {
        model.maps.push_back(readMap(child));
        if (model.maps.back().bShown && std::exchange(pShown, &child) != nullptr)
            fail(child, "a second map says shown=\"true\"; leave one");
    }
    if (model.maps.empty())
        fail(root, R"(the document has no map; add a <Map name="...">)");
    if (pShown == nullptr)
        model.maps.front().bShown = true;
    return model;
}

struct FreeReader {
    void operator()(xmlTextReader* pReader) const { xmlFreeTextReader(pReader); }
};

bool beginsLikeMarkup(const std::string& sPath) {
    std::ifstream stream(sPath, std::ios::binary);
    std::string sStart(64, '\0');
    stream.read(sStart.data(), static_cast<std::streamsize>(sStart.size()));
    sStart.resize(static_cast<std::size_t>(stream.gcount()));
    // Zeros belong to two-byte encodings, the others to byte order marks.
    const std::size_t lFirst =
        sStart.find_first_not_of(std::string_view(" \t\r\n\0\xEF\xBB\xBF\xFE\xFF", 10));
    return lFirst != std::string::npos && sStart[lFirst] == '<';
}

} // namespace

FileKind fileKindOf(const std::string& sPath) {
    if (!isFile(sPath) || !beginsLikeMarkup(sPath))
        return FileKind::Other;
    const std::unique_ptr<xmlTextReader, FreeReader> pReader(
        xmlReaderForFile(sPath.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    if (pReader == nullptr)
        return FileKind::BrokenMarkup;
    const auto ignore = [](void*, xmlError*) {};
    xmlTextReaderSetStructuredErrorHandler(pReader.get(), ignore, nullptr);
    while (xmlTextReaderRead(pReader.get()) == 1) {
        if (xmlTextReaderNodeType(pReader.get()) == XML_READER_TYPE_ELEMENT) {
            const std::string_view sName =
                reinterpret_cast<const char*>(xmlTextReaderConstLocalName(pReader.get()));
            return sName == "MapDocument" ? FileKind::MapDocument : FileKind::OtherMarkup;
        }
    }
    return FileKind::BrokenMarkup;
}

MapDocumentModel readMapDocument(const std::string& sPath) {
    const MarkupDocument pDocument = parseMarkup(sPath);
    checkAgainst(sMapDocumentSchema, *pDocument, sPath);
    return Reader(sPath).read(MarkupElement(xmlDocGetRootElement(pDocument.get())));
}

} // namespace halvane::host::gdal
