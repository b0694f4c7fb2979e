#include "run/init/StarterControl.h"

#include "base/Text.h"
#include "engine/ModExporter.h"
#include "engine/second/SecondEdition.h"
#include "host/Fields.h"
#include "run/describe/Words.h"
#include "run/init/ControlWriter.h"
#include "telling/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <set>

namespace halvane {

namespace {

constexpr const char* sNoXmlText = "its name has characters that are no UTF-8 or that XML forbids";

template<class Item>
std::vector<const Item*> readable(const ReadingList<Item>& list) {
    std::vector<const Item*> items;
    if (list)
        for (const auto& item : *list)
            if (item)
                items.push_back(&*item);
    return items;
}

/// What a field is, for a comment.
std::string remark(const FieldDescription& field) {
    std::string sText = field.lTypeCode ? fieldTypeWord(*field.lTypeCode) : "";
    if (field.lLength && *field.lLength > 0)
        sText += fmt::format(", length {}", *field.lLength);
    if (field.bNullable && !*field.bNullable)
        sText += ", never null";
    if (field.sDomain && *field.sDomain)
        sText += fmt::format(", domain {}", inQuotes(**field.sDomain));
    if (field.sAlias && field.sName && *field.sAlias != *field.sName)
        sText += fmt::format("; {}", inQuotes(*field.sAlias));
    return sText;
}

bool isOf(const FieldDescription& field, host::FieldType type) {
    return field.lTypeCode && *field.lTypeCode == static_cast<std::int32_t>(type);
}

bool isShape(const FieldDescription& field) {
    return isOf(field, host::FieldType::Geometry);
}

/// Writes one map after the other.
class Starter {
public:
    Starter(const MapDescription& description, std::vector<std::string>& names)
        : description_(description), wanted_(names), bAll_(names.empty()) {}

    std::string write() {
        const auto maps = readable(description_.maps);
        const std::string sTitle = maps.empty() || !maps.front()->sName ? "" : *maps.front()->sName;
        out_.comment(
            "A control file to begin with. Each element becomes an element or an attribute of the document; "
            "take out what is not wanted, and rename by Name.");
        out_.open("Template", {{"xmlns:h", std::string(sSecondEditionNamespace)},
                               {"Name", xmlName(sTitle, "Map")},
                               {"h:Declaration", "UTF-8"},
                               {"h:Indent", "2"},
                               {"h:Format", "xs"}});
        out_.leaf("Attribute", {{"Name", "written"}, {"Target", "Attribute"}, {"h:Text", "{$Date}"}},
                  "the day of the export");
        for (const auto* pMap : maps)
            writeMap(*pMap, maps.size() > 1);
        if (bAll_)
            writeWorkspaces(maps.size() > 1);
        out_.close();
        return out_.take();
    }

    std::string writeFor(const SchemaSkeleton& skeleton) {
        out_.comment("A control file to begin with. What the schema requires stands here; fill it with "
                     "values, such as "
                     "h:Text=\"{name}\" in a node that goes over rows.");
        tellLayers();
        ControlWriter::Attributes attributes{{"xmlns:h", std::string(sSecondEditionNamespace)},
                                             {"Name", skeleton.root.sName},
                                             {"h:Declaration", "UTF-8"},
                                             {"h:Indent", "2"},
                                             {"h:Format", "xs"}};
        for (const auto& [sPrefix, sNamespace] : skeleton.namespaces)
            attributes.emplace_back(sPrefix.empty() ? "xmlns" : "xmlns:" + sPrefix, sNamespace);
        out_.open("Template", attributes);
        if (!skeleton.otherRoots.empty())
            out_.comment(
                fmt::format("Documents may also begin with {}.", fmt::join(skeleton.otherRoots, ", ")));
        writeInside(out_, skeleton.root, true);
        out_.close();
        return out_.take();
    }

private:
    // ---- Names ----

    /// How layers and tables are asked for: names that lead to one thing alone.
    void count(const OneMapDescription& map) {
        ways_.clear();
        for (const auto* pLayer : readable(map.layers)) {
            ++ways_[keyOf(wayTo(*pLayer, ""))];
            for (const auto* pMember : readable(pLayer->members))
                ++ways_[keyOf(wayTo(*pMember, nameOf(*pLayer)))];
        }
        tables_.clear();
    }

    static std::string keyOf(const std::string& sWay) { return upperCase(sWay); }
    static std::string nameOf(const LayerDescription& layer) { return layer.sName ? *layer.sName : ""; }
    static std::string wayTo(const LayerDescription& layer, const std::string& sGroup) {
        return sGroup.empty() ? nameOf(layer) : sGroup + ":" + nameOf(layer);
    }

    /// Why a layer cannot be asked for by its name; "" where it can.
    [[nodiscard]] std::string whyNot(const LayerDescription& layer, const std::string& sGroup) const {
        if (trimBlanks(nameOf(layer)).empty())
            return "it has no name";
        if (!isXmlText(wayTo(layer, sGroup)))
            return sNoXmlText;
        if (nameOf(layer).find(':') != std::string::npos || sGroup.find(':') != std::string::npos)
            return "a \":\" parts a group from its member";
        if (!sGroup.empty() && layer.kind != LayerKind::Feature)
            return "it is found outside of groups only";
        const auto ways = ways_.find(keyOf(wayTo(layer, sGroup)));
        return ways != ways_.end() && ways->second > 1 ? "others have the same name" : "";
    }

    /// Whether the person asked for it.
    bool isWanted(const std::string& sName, const std::string& sWay) {
        if (bAll_)
            return true;
        const auto names = [&](const std::string& sWanted) {
            return equalIgnoringCase(sWanted, sName) || equalIgnoringCase(sWanted, sWay);
        };
        const bool bWanted = found_.contains(keyOf(sName)) || found_.contains(keyOf(sWay)) ||
                             std::ranges::any_of(wanted_, names);
        for (const auto& sWanted : wanted_)
            if (names(sWanted))
                found_.insert(keyOf(sWanted));
        std::erase_if(wanted_, names);
        return bWanted;
    }

    // ---- Documents of a schema ----

    static std::string noteOn(const SkeletonNode& node, bool bOptional = false) {
        const std::string sTimes = !node.bRepeated ? "" : bOptional ? "any number" : "one or more";
        return node.sType + (sTimes.empty() || node.sType.empty() ? "" : "; ") + sTimes;
    }

    static ControlWriter::Attributes attributesOf(const SkeletonNode& node) {
        ControlWriter::Attributes attributes{{"Name", node.sName}};
        if (node.bAttribute)
            attributes.emplace_back("Target", "Attribute");
        if (node.required.empty() || !node.sType.empty())
            attributes.emplace_back("h:Text", braced(node.sText));
        return attributes;
    }

    static void writeNode(ControlWriter& out, const SkeletonNode& node, bool bRemarks) {
        const char* const sElement = node.bAttribute ? "Attribute" : "Node";
        if (node.required.empty() && (node.optional.empty() || !bRemarks)) {
            out.leaf(sElement, attributesOf(node), bRemarks ? noteOn(node) : "");
            return;
        }
        out.open(sElement, attributesOf(node));
        writeInside(out, node, bRemarks);
        out.close();
    }

    /// @param bRemarks with what is optional, and with comments.
    static void writeInside(ControlWriter& out, const SkeletonNode& node, bool bRemarks) {
        if (bRemarks && !noteOn(node).empty())
            out.comment(noteOn(node));
        if (bRemarks && !node.sContent.empty())
            out.comment("In this order: " + node.sContent);
        for (const auto& child : node.required)
            writeNode(out, child, bRemarks);
        if (!bRemarks || node.optional.empty())
            return;
        out.comment("Optional:");
        for (const auto& child : node.optional) {
            ControlWriter aside;
            writeNode(aside, child, false);
            out.commentedOut(aside.take(), noteOn(child, true));
        }
    }

    /// A text in which braces stand for themselves.
    static std::string braced(const std::string& sText) {
        return replaceAll(replaceAll(sText, "{", "{{"), "}", "}}");
    }

    void tellLayers() {
        for (const auto* pMap : readable(description_.maps)) {
            for (const auto* pLayer : readable(pMap->layers)) {
                tellLayer(*pLayer, "");
                for (const auto* pMember : readable(pLayer->members))
                    tellLayer(*pMember, nameOf(*pLayer));
            }
            for (const auto* pTable : readable(pMap->tables))
                if (const std::string sName = pTable->sDataset ? *pTable->sDataset : "";
                    isWanted(sName, sName))
                    tellFields(fmt::format("Table {}", inQuotes(sName)), pTable->fields);
        }
    }

    void tellLayer(const LayerDescription& layer, const std::string& sGroup) {
        const std::string sWay = wayTo(layer, sGroup);
        if (layer.kind == LayerKind::Feature && isWanted(nameOf(layer), sWay) && layer.featureClass)
            tellFields(fmt::format("Layer {}, {}", inQuotes(sWay), factsOf(layer)),
                       layer.featureClass->table.fields);
    }

    void tellFields(const std::string& sWhat, const ReadingList<FieldDescription>& fields) {
        std::vector<std::string> names;
        for (const auto* pField : readable(fields))
            if (pField->sName && !isShape(*pField))
                names.push_back(*pField->sName);
        out_.comment(fmt::format("{}: {}", sWhat, fmt::join(names, ", ")));
    }

    // ---- Maps ----

    void writeMap(const OneMapDescription& map, bool bOneOfMany) {
        count(map);
        const std::string sName = map.sName ? *map.sName : "";
        if (bOneOfMany) {
            out_.comment(fmt::format("Map {}", inQuotes(sName)));
            if (trimBlanks(sName).empty() || !isXmlText(sName) || !maps_.insert(keyOf(sName)).second) {
                out_.comment("It cannot be asked for by its name: give it one of its own.");
                return;
            }
            out_.open("Group", {{"Name", xmlName(sName, "Map")}, {"DataFrame", sName}});
        }
        for (const auto* pLayer : readable(map.layers))
            writeLayer(*pLayer, "");
        for (const auto* pTable : readable(map.tables))
            writeTable(*pTable);
        if (bOneOfMany)
            out_.close();
    }

    void writeLayer(const LayerDescription& layer, const std::string& sGroup) {
        if (layer.kind == LayerKind::Group) {
            writeGroup(layer, sGroup);
            return;
        }
        const std::string sWay = wayTo(layer, sGroup);
        if (!isWanted(nameOf(layer), sWay))
            return;
        const std::string sWhyNot = whyNot(layer, sGroup);
        out_.comment(fmt::format("Layer {}: {}", inQuotes(sWay), factsOf(layer)));
        if (!sWhyNot.empty())
            out_.comment("It cannot be asked for by its name: " + sWhyNot + ".");
        else if (layer.kind == LayerKind::Feature)
            writeFeatureLayer(layer, sWay);
        else if (layer.kind == LayerKind::Raster)
            out_.leaf("Layer", {{"Name", xmlName(nameOf(layer), "Raster")},
                                {"DataSource", "RasterLayer"},
                                {"Identity", "LayerName"},
                                {"IdentityValue", sWay},
                                {"DataProperty", "Path"}});
        else if (layer.kind == LayerKind::Tin)
            out_.leaf("Layer", {{"Name", xmlName(nameOf(layer), "Tin")},
                                {"DataSource", "TinLayer"},
                                {"Identity", "LayerName"},
                                {"IdentityValue", sWay},
                                {"DataProperty", "LayerName"}});
    }

    void writeGroup(const LayerDescription& group, const std::string& sGroup) {
        for (const auto* pMember : readable(group.members))
            if (sGroup.empty())
                writeLayer(*pMember, nameOf(group));
            else if (isWanted(nameOf(*pMember), wayTo(*pMember, nameOf(group))))
                out_.comment(
                    fmt::format("{} stands in a group of a group, where no layer is found: move it up.",
                                inQuotes(nameOf(*pMember))));
    }

    static std::string factsOf(const LayerDescription& layer) {
        if (layer.kind != LayerKind::Feature)
            return layerKindWord(layer.kind);
        if (!layer.featureClass)
            return "not readable: " + layer.featureClass.sWhyNot;
        const auto& featureClass = *layer.featureClass;
        std::string sText = featureClass.lShapeType ? shapeTypeWord(*featureClass.lShapeType) : "";
        if (featureClass.lFeatures)
            sText += (sText.empty() ? "" : ", ") +
                     counted(static_cast<std::uint64_t>(*featureClass.lFeatures), "feature");
        return sText;
    }

    void writeFeatureLayer(const LayerDescription& layer, const std::string& sWay) {
        if (!layer.featureClass || !layer.featureClass->table.fields)
            return; // its comment says why
        out_.open("Layer", {{"Name", xmlName(nameOf(layer), "Layer")},
                            {"DataSource", "MapLayer"},
                            {"Identity", "LayerName"},
                            {"IdentityValue", sWay}});
        out_.leaf("Attribute",
                  {{"Name", "features"}, {"Target", "Attribute"}, {"DataProperty", "FeatureCount"}});
        out_.leaf("Attribute",
                  {{"Name", "crs"}, {"Target", "Attribute"}, {"h:Text", "{$Crs}"}, {"h:Omit", "Empty"}});
        out_.open("Each", {{"Name", "Feature"}, {"DataSource", "Feature"}, {"Entries", "Multiple"}});
        out_.leaf("Attribute", {{"Name", "id"}, {"Target", "Attribute"}, {"h:Text", "{OBJECTID}"}},
                  "the object identifier");
        writeFields(layer.featureClass->table.fields, true);
        out_.leaf("Value", {{"Name", "shape"}, {"h:Geometry", "WKT"}, {"h:Omit", "Empty"}},
                  "or GML, KML, GeoJSON …");
        out_.close();
        if (layer.featureClass->subtypes && *layer.featureClass->subtypes)
            writeSubtypes();
        out_.close();
    }

    void writeTable(const TableDescription& table) {
        const std::string sName = table.sDataset ? *table.sDataset : "";
        if (!isWanted(sName, sName))
            return;
        out_.comment(fmt::format("Table {}", inQuotes(sName)));
        if (!table.fields) {
            out_.comment("It is not readable: " + table.fields.sWhyNot);
            return;
        }
        if (!isXmlText(sName)) {
            out_.comment(fmt::format("It cannot be asked for by its name: {}.", sNoXmlText));
            return;
        }
        if (trimBlanks(sName).empty() || !tables_.insert(keyOf(sName)).second) {
            out_.comment("It cannot be asked for by its name: others have the same, or it has none.");
            return;
        }
        out_.open("Table", {{"Name", xmlName(sName, "Table")},
                            {"DataSource", "Table"},
                            {"Identity", "TableName"},
                            {"IdentityValue", sName}});
        out_.open("Each", {{"Name", "Row"}, {"DataSource", "Record"}, {"Entries", "Multiple"}});
        writeFields(table.fields, false);
        out_.close();
        out_.close();
    }

    /// @param bIdentified the identifier is written already.
    void writeFields(const ReadingList<FieldDescription>& fields, bool bIdentified) {
        std::set<std::string> names;
        for (const auto* pField : readable(fields)) {
            if (!pField->sName || trimBlanks(*pField->sName).empty() || isShape(*pField) ||
                (bIdentified && isOf(*pField, host::FieldType::Oid)))
                continue;
            const std::string& sName = *pField->sName;
            if (!isXmlText(sName))
                out_.comment(fmt::format("{}: {}", inQuotes(sName), sNoXmlText));
            else if (!names.insert(keyOf(sName)).second)
                out_.comment(fmt::format("{}: a field before it has the same name", inQuotes(sName)));
            else if (namesObjectId(sName)) // which a leaf would read as the identifier
                out_.leaf("Field", {{"Name", xmlName(sName, "field")}, {"h:Text", "{" + sName + "}"}},
                          remark(*pField));
            else
                out_.leaf("Field", {{"Name", xmlName(sName, "field")}, {"IdentityValue", sName}},
                          remark(*pField));
        }
    }

    // ---- What is listed ----

    void property(const char* sName, const char* sProperty) {
        out_.leaf("Attribute", {{"Name", sName}, {"Target", "Attribute"}, {"DataProperty", sProperty}});
    }

    void writeSubtypes() {
        out_.open("Node", {{"Name", "Subtype"}, {"h:ForEach", "Subtype"}});
        property("code", "SubTypeCode");
        property("name", "SubTypeName");
        out_.close();
    }

    /// Whether all data can be opened: a loop over the workspaces of the map opens it.
    [[nodiscard]] static bool isReadable(const ReadingList<LayerDescription>& layers) {
        return std::ranges::all_of(readable(layers), [](const LayerDescription* pLayer) {
            if (pLayer->kind == LayerKind::Group)
                return isReadable(pLayer->members);
            return pLayer->kind != LayerKind::Feature ||
                   (pLayer->featureClass && pLayer->featureClass->table.lWorkspace);
        });
    }

    [[nodiscard]] bool isReadable() const {
        return std::ranges::all_of(readable(description_.maps), [](const OneMapDescription* pMap) {
            return isReadable(pMap->layers) &&
                   std::ranges::all_of(readable(pMap->tables), [](const TableDescription* pTable) {
                       return static_cast<bool>(pTable->lWorkspace);
                   });
        });
    }

    void writeWorkspaces(bool bMaps) {
        if (description_.workspaces.empty())
            return;
        if (!isReadable()) {
            out_.comment("Workspaces are left out: not all of them can be opened.");
            return;
        }
        out_.comment("Where the data lies, with its domains and relationship classes");
        if (bMaps)
            out_.open("Group", {{"Name", "Map"}, {"h:ForEach", "Map"}});
        out_.open("Node", {{"Name", "Workspace"}, {"h:ForEach", "Workspace"}});
        property("path", "Path");
        property("type", "WorkspaceType");
        out_.open("Node", {{"Name", "Domain"}, {"h:ForEach", "Domain"}});
        property("name", "DomainName");
        property("type", "DomainType");
        out_.open("Node", {{"Name", "Code"}, {"h:ForEach", "Code"}});
        property("code", "DomainCodeValue");
        property("name", "DomainCodeName");
        out_.close();
        out_.close();
        out_.open("Node", {{"Name", "Relationship"}, {"h:ForEach", "Relationship"}});
        property("name", "RelationshipName");
        property("cardinality", "Cardinality");
        property("origin", "OriginClassName");
        property("destination", "DestinationClassName");
        property("originKey", "OriginPrimaryKey");
        property("destinationKey", "OriginForeignKey");
        out_.close();
        out_.close();
        if (bMaps)
            out_.close();
    }

    const MapDescription& description_;
    std::vector<std::string>& wanted_;
    bool bAll_;
    std::set<std::string> found_; ///< of those that are wanted
    std::map<std::string, int> ways_;
    std::set<std::string> tables_;
    std::set<std::string> maps_;
    ControlWriter out_;
};

} // namespace

std::string starterControl(const MapDescription& description, const std::optional<SchemaSkeleton>& skeleton,
                           std::vector<std::string>& names) {
    Starter starter(description, names);
    return skeleton ? starter.writeFor(*skeleton) : starter.write();
}

} // namespace halvane
