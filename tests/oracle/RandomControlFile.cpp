#include "oracle/RandomControlFile.h"

#include "oracle/RandomTables.h"
#include "oracle/Vocabulary.h"

#include <algorithm>
#include <set>

namespace halvane::oracle {

namespace {

bool isPlainAttribute(const ControlNode& node) {
    return node.targetsAttribute() && node.aChildren.empty() && node.get("Entries") != "Multiple";
}

/// Most people name attributes before elements and none of them twice.
void tidy(ControlNode& node) {
    auto& aChildren = node.aChildren;
    const auto endOfAttributes = std::stable_partition(aChildren.begin(), aChildren.end(), isPlainAttribute);
    std::set<std::string> names;
    for (auto child = aChildren.begin(); child != endOfAttributes; ++child) {
        while (!names.insert(child->get("Name")).second)
            child->set("Name", child->get("Name") + "x");
    }
    for (ControlNode& child : aChildren)
        tidy(child);
}

class FileMaker {
public:
    FileMaker(Random& random, const World& world) : random_(random), world_(world) {}

    ControlNode make() {
        ControlNode root = named({});
        nBudget_ = random_.between(8, 44);
        if (random_.chance(5))
            root.set("DataLocation", random_.pick(world_.aLocations));
        if (random_.chance(5))
            root.set("DataFrame", random_.pick(world_.aMaps));
        if (random_.chance(5))
            root.set("DecimalPlace", "2");
        for (std::int32_t i = random_.between(2, 5); i > 0 && nBudget_ > 0; --i)
            root.aChildren.push_back(mutated(scene()));
        if (random_.chance(1))
            root.aChildren.clear();
        if (random_.chance(65))
            tidy(root);
        return root;
    }

private:
    using Attributes = std::vector<std::pair<std::string, std::string>>;

    // ---- Pieces ----

    ControlNode named(const Attributes& attributes) {
        --nBudget_;
        ControlNode node;
        node.set("Name", random_.chance(97)
                             ? std::string(1, static_cast<char>('a' + random_.between(0, 7)))
                             : random_.oneOf({"Two Words", "p:q", "\xC3\xA9t\xC3\xA9", "x-1.y"}));
        for (const auto& [sName, sValue] : attributes)
            node.set(sName, sValue);
        if (random_.chance(20))
            node.set("Target", "Attribute");
        return node;
    }

    ControlNode property(const std::string& sProperty) { return named({{"DataProperty", sProperty}}); }

    /// A leaf for each of some properties.
    void addProperties(ControlNode& node, const Words& aProperties) {
        for (std::int32_t i = random_.between(1, 4); i > 0 && nBudget_ > 0; --i)
            node.aChildren.push_back(mutated(property(random_.pick(aProperties))));
    }

    ControlNode repeated(const Attributes& attributes) {
        ControlNode node = named(attributes);
        node.set("Entries", "Multiple");
        if (random_.chance(75))
            node.set("Target", "");
        return node;
    }

    std::string layerName() {
        return world_.aFeatureLayers.empty() || random_.chance(4) ? "Roads"
                                                                  : random_.pick(world_.aFeatureLayers);
    }
    std::string tableName() {
        return world_.aTables.empty() || random_.chance(8) ? "LISTING" : random_.pick(world_.aTables);
    }
    std::string fieldName() { return random_.chance(92) ? random_.pick(fieldNames()) : "Nowhere"; }
    std::string tagName() { return random_.oneOf({"T1", "T2", "t2", "T9"}); }

    // ---- Scenes: what stands below the root, or in a group ----

    ControlNode scene() {
        switch (random_.below(18)) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
        case 5:
        case 6:
            return layerScene();
        case 16:
        case 17:
            return imageScene();
        case 7:
        case 8:
        case 9:
            return tableScene();
        case 10:
            return mapScene();
        case 11:
            return imageScene();
        case 12:
            return workspaceScene();
        case 13:
            return wild();
        case 14:
            return someLeaf();
        default: {
            ControlNode group = named({});
            for (std::int32_t i = random_.between(1, 3); i > 0 && nBudget_ > 0; --i)
                group.aChildren.push_back(mutated(scene()));
            return group;
        }
        }
    }

    ControlNode layerGroup() {
        if (random_.chance(12))
            return named({{"DataSource", "FeatureLayer"},
                          {"Identity", "LayerName"},
                          {"IdentityValue", "ONDISK"},
                          {"DataLocation", random_.pick(world_.aLocations)}});
        if (!world_.setting.aTags.empty() && random_.chance(35))
            return named({{"DataSource", "MapLayer"}, {"Identity", "TagName"}, {"IdentityValue", tagName()}});
        return named({{"DataSource", "MapLayer"}, {"Identity", "LayerName"}, {"IdentityValue", layerName()}});
    }

    ControlNode layerScene() {
        ControlNode node = layerGroup();
        node.set("Target", random_.chance(4) ? "Attribute" : "");
        for (std::int32_t i = random_.between(2, 5); i > 0 && nBudget_ > 0; --i)
            node.aChildren.push_back(mutated(layerChild()));
        return node;
    }

    ControlNode layerChild() {
        switch (random_.below(18)) {
        case 16:
        case 17:
            return featureLoop();
        case 0:
            return property("LayerName");
        case 1:
            return property("FeatureCount");
        case 2:
            return reference();
        case 3:
        case 4:
        case 5:
        case 6:
        case 7:
            return featureLoop();
        case 8:
            return fieldLoop();
        case 9:
        case 10:
            return subtypeLoop();
        case 11:
        case 12:
            return geometryLoop();
        case 13:
            return featureLeaf();
        case 14:
            return workspaceScene();
        default:
            return someLeaf();
        }
    }

    ControlNode reference() {
        ControlNode node = property("SPATIALREFERENCE." + random_.pick(referenceProperties()));
        if (random_.chance(25)) {
            node.set("Target", "Attribute");
            node.set("DataLocation", "Attribute");
            if (random_.chance(70))
                node.set("DataFrame", random_.pick(world_.aMaps));
        }
        return node;
    }

    ControlNode featureLeaf() {
        return repeated({{"DataSource", random_.oneOf({"Feature", "FeatureTable"})},
                         {"Identity", random_.chance(90) ? "FieldName" : ""},
                         {"IdentityValue", fieldName()}});
    }

    ControlNode featureLoop() {
        ControlNode node = repeated({{"DataSource", "Feature"}});
        if (random_.chance(30))
            node.set("DecimalPlace", random_.oneOf({"0", "2", "5", "abc", "-1", " 3 "}));
        if (random_.chance(20))
            node.set("LinkField", random_.oneOf({"ROUTE", "CODE"}));
        for (std::int32_t i = random_.between(2, 6); i > 0 && nBudget_ > 0; --i)
            node.aChildren.push_back(mutated(featureChild()));
        if (random_.chance(12))
            addLayerChange(node, "Feature");
        return node;
    }

    ControlNode fieldOfRow(const char* sKind) {
        ControlNode node =
            named({{"IdentityValue", random_.chance(12) ? random_.oneOf({"OID", "objectid"}) : fieldName()}});
        if (random_.chance(30))
            node.set("DataSource", sKind);
        if (!world_.setting.aTags.empty() && random_.chance(25)) {
            node.set("Identity", "TagName");
            node.set("IdentityValue", random_.oneOf({"F1", "F2", "f3", "F9"}));
        } else if (random_.chance(60)) {
            node.set("Identity", "FieldName");
        }
        if (random_.chance(12))
            node.set("DecimalPlace", random_.oneOf({"1", "3", "0", "x"}));
        return node;
    }

    /// Binds another layer, and asks for something of the layer that is current.
    void addLayerChange(ControlNode& loop, const char* sRowKind) {
        ControlNode binding = layerGroup();
        binding.set("Target", "");
        if (random_.chance(25))
            binding.set("IdentityValue", bareLayer);
        if (random_.chance(60))
            binding.aChildren.push_back(mutated(fieldOfRow(sRowKind)));
        std::vector<ControlNode> aNodes{binding, ofCurrentLayer()};
        if (!world_.setting.aTags.empty() && random_.chance(50)) {
            aNodes.front().set("Identity", "TagName");
            aNodes.front().set("IdentityValue", "T1");
            ControlNode other = aNodes.front();
            other.set("IdentityValue", "T2");
            for (ControlNode* const pNode : {&aNodes.front(), &other}) {
                pNode->aChildren.push_back(named({{"DataSource", sRowKind},
                                                  {"Identity", "TagName"},
                                                  {"IdentityValue", random_.oneOf({"F1", "F2"})}}));
            }
            aNodes.push_back(other);
        }
        while (!aNodes.empty()) {
            const auto next = aNodes.begin() + static_cast<std::ptrdiff_t>(random_.below(aNodes.size()));
            loop.aChildren.push_back(*next);
            aNodes.erase(next);
        }
    }

    /// What depends on the layer that is current.
    ControlNode ofCurrentLayer() {
        switch (random_.below(6)) {
        case 0:
            return domainLoop();
        case 1:
            return relationshipLoop();
        case 2:
            return subtypeLoop();
        default: {
            ControlNode node = property(random_.chance(80) ? "Path" : "WorkspaceType");
            node.set("DataSource", "Workspace");
            return node;
        }
        }
    }

    ControlNode featureChild() {
        switch (random_.below(16)) {
        case 0:
            return relatedGroup();
        case 1:
            return relatedLeaf();
        case 2:
        case 3:
            return geometryLoop();
        case 4: {
            ControlNode node = repeated({});
            node.aChildren.push_back(mutated(featureChild()));
            return node;
        }
        case 5:
            return featureLeaf();
        case 6: {
            ControlNode group = named({});
            for (std::int32_t i = random_.between(1, 3); i > 0 && nBudget_ > 0; --i)
                group.aChildren.push_back(mutated(featureChild()));
            return group;
        }
        case 7:
            return random_.chance(50) ? layerScene() : tableScene();
        case 8:
            return random_.chance(50) ? subtypeLoop() : domainLoop();
        case 9:
            return someLeaf();
        default:
            return fieldOfRow("Feature");
        }
    }

    ControlNode relatedGroup() {
        ControlNode node = named({{"DataSource", "RelatedTable"},
                                  {"Identity", "LayerName"},
                                  {"IdentityValue", random_.chance(60) ? tableName() : layerName()},
                                  {"LinkField", random_.oneOf({"ROUTE", "CODE", "KIND", "WIDTH", "None"})}});
        if (random_.chance(12))
            node.set("Entries", "Multiple");
        for (std::int32_t i = random_.between(1, 3); i > 0 && nBudget_ > 0; --i)
            node.aChildren.push_back(
                mutated(named({{"DataSource", "RelatedRecord"}, {"IdentityValue", fieldName()}})));
        return node;
    }

    ControlNode relatedLeaf() {
        return named({{"DataSource", random_.oneOf({"RelatedRecord", "RelatedTable"})},
                      {"Identity", "LayerName"},
                      {"IdentityValue", random_.chance(50) ? fieldName() : tableName()},
                      {"LinkField", random_.oneOf({"ROUTE", "CODE"})}});
    }

    ControlNode geometryLoop() {
        const std::string sKind =
            random_.oneOf({"Geometry.Length", "Geometry.Point", "Geometry.FromNode", "Geometry.ToNode",
                           "Geometry.EndPoint", "Geometry.Vertice", "Geometry.Vertice", "geometry.length"});
        ControlNode node = repeated({{"DataSource", sKind}});
        if (random_.chance(30))
            node.set("MeasureField", random_.oneOf({"WIDTH", "ROUTE", "NAME", "None"}));
        if (random_.chance(30))
            node.set("DecimalPlace", random_.oneOf({"2", "1", "abc"}));
        for (std::int32_t i = random_.between(1, 3); i > 0 && nBudget_ > 0; --i)
            node.aChildren.push_back(mutated(geometryValue(sKind)));
        return node;
    }

    ControlNode geometryValue(const std::string& sKind) {
        if (random_.chance(10))
            return named({{"DataSource", "FeatureAttributes"}, {"DataProperty", fieldName()}});
        if (random_.chance(10))
            return named({{"DataSource", "External"}, {"IdentityValue", random_.pick(world_.aProcessors)}});
        ControlNode node = property(sKind == "Geometry.Length" && random_.chance(85)
                                        ? "Geometry.Length"
                                        : random_.oneOf({"Geometry.X", "Geometry.Y", "Geometry.Z",
                                                         "Geometry.Measure", "geometry.x"}));
        if (random_.chance(10))
            node.set("DataSource", random_.oneOf({"Geometry.ToNode", "Geometry.FromNode"}));
        if (random_.chance(10))
            node.set("DecimalPlace", random_.oneOf({"1", "4", "q"}));
        return node;
    }

    ControlNode fieldLoop() {
        ControlNode node = repeated({{"DataSource", "Field"}});
        for (std::int32_t i = random_.between(1, 2); i > 0 && nBudget_ > 0; --i) {
            ControlNode field = named({});
            if (random_.chance(80))
                field.set("Target", "");
            addProperties(field, fieldProperties());
            node.aChildren.push_back(mutated(field));
        }
        return node;
    }

    ControlNode subtypeLoop() {
        ControlNode node =
            repeated({{"DataSource", random_.oneOf({"SubType", "SubType", "SubType", "SubTypeFieldInfo"})}});
        addProperties(node, subtypeProperties());
        if (random_.chance(60)) {
            ControlNode inner =
                repeated({{"DataSource", random_.oneOf({"SubTypeFieldInfo", "SubType", "subtype"})}});
            addProperties(inner, subtypeProperties());
            node.aChildren.push_back(mutated(inner));
        }
        if (random_.chance(30)) {
            ControlNode group = named({});
            addProperties(group, subtypeProperties());
            node.aChildren.push_back(mutated(group));
        }
        return node;
    }

    ControlNode tableScene() {
        ControlNode node = named({{"DataSource", "Table"},
                                  {"Identity", random_.chance(88) ? "TableName" : "TagName"},
                                  {"IdentityValue", random_.chance(88) ? tableName() : tagName()}});
        node.set("Target", random_.chance(4) ? "Attribute" : "");
        if (random_.chance(20))
            node.set("DataLocation", random_.pick(world_.aLocations));
        for (std::int32_t i = random_.between(1, 3); i > 0 && nBudget_ > 0; --i) {
            if (random_.chance(30))
                node.aChildren.push_back(mutated(property("TableName")));
            else if (random_.chance(25))
                node.aChildren.push_back(mutated(repeated(
                    {{"DataSource", random_.oneOf({"Record", "Table"})}, {"IdentityValue", fieldName()}})));
            else
                node.aChildren.push_back(mutated(recordLoop()));
        }
        return node;
    }

    ControlNode recordLoop() {
        ControlNode node = repeated({{"DataSource", random_.chance(85) ? "Record" : "Table"}});
        for (std::int32_t i = random_.between(1, 4); i > 0 && nBudget_ > 0; --i)
            node.aChildren.push_back(mutated(recordChild()));
        if (random_.chance(12))
            addLayerChange(node, "Record");
        return node;
    }

    ControlNode recordChild() {
        switch (random_.below(10)) {
        case 0:
            return relatedGroup();
        case 1:
            return relatedLeaf();
        case 2: {
            ControlNode group = random_.chance(50) ? named({}) : repeated({});
            for (std::int32_t i = random_.between(1, 2); i > 0 && nBudget_ > 0; --i)
                group.aChildren.push_back(mutated(recordChild()));
            return group;
        }
        case 3:
            return random_.chance(30) ? layerScene() : someLeaf();
        default:
            return fieldOfRow(random_.chance(70) ? "Record" : "Table");
        }
    }

    ControlNode mapScene() {
        ControlNode node = named({{"DataSource", "Map"}});
        if (random_.chance(50))
            node.set("IdentityValue", random_.chance(80) ? random_.pick(world_.aMaps) : " ");
        if (random_.chance(30))
            node.set("DataFrame", random_.chance(70) ? random_.pick(world_.aMaps) : "harbour");
        for (std::int32_t i = random_.between(1, 3); i > 0 && nBudget_ > 0; --i)
            node.aChildren.push_back(mutated(random_.chance(70) ? reference() : layerScene()));
        return node;
    }

    ControlNode imageScene() {
        const bool bTin = world_.aRasterLayers.empty() ? random_.chance(80) : random_.chance(30);
        ControlNode node =
            named({{"DataSource", bTin ? "TinLayer" : "RasterLayer"},
                   {"Identity", random_.chance(90) ? "LayerName" : "TagName"},
                   {"IdentityValue", bTin ? "Surface" : random_.oneOf({"Photo", "Relief", "T1"})}});
        for (std::int32_t i = random_.between(1, 3); i > 0 && nBudget_ > 0; --i) {
            ControlNode leaf = property(random_.oneOf({"LayerName", "Path", "Path", "layername", "Other"}));
            if (random_.chance(40)) {
                leaf.set("DataSource", bTin ? "TinWorkspace" : "RasterWorkspace");
                leaf.set("DataProperty", random_.oneOf({"Path", "Path", "path", "Other"}));
            }
            if (random_.chance(20))
                leaf.aChildren.push_back(mutated(named(
                    {{"DataSource", "External"}, {"IdentityValue", random_.pick(world_.aProcessors)}})));
            node.aChildren.push_back(mutated(leaf));
        }
        return node;
    }

    ControlNode workspaceScene() {
        const std::size_t nChoice = random_.below(4);
        ControlNode node;
        if (nChoice == 0)
            node = domainLoop();
        else if (nChoice == 1)
            node = relationshipLoop();
        else
            node = named({{"DataSource", "Workspace"},
                          {"DataProperty", random_.oneOf({"Path", "WorkspaceType", "path", "Other"})}});
        if (random_.chance(20))
            node.set("DataLocation", random_.pick(world_.aLocations));
        return node;
    }

    ControlNode domainLoop() {
        ControlNode node = repeated({{"DataSource", "WorkspaceDomain"}});
        addProperties(node, domainProperties());
        if (random_.chance(60))
            node.aChildren.push_back(mutated(codes()));
        return node;
    }

    ControlNode codes() {
        ControlNode node = property("DomainCodedValues");
        const Words aWords{"DomainCodeValue", "DomainCodeName", "domaincodename", "Other"};
        for (std::int32_t i = random_.between(1, 2); i > 0; --i) {
            ControlNode code = random_.chance(75) ? repeated({}) : property(random_.pick(aWords));
            if (!code.get("Entries").empty())
                addProperties(code, aWords);
            node.aChildren.push_back(mutated(code));
        }
        return node;
    }

    ControlNode relationshipLoop() {
        ControlNode node = repeated({{"DataSource", "Relationship"}});
        addProperties(node, relationshipProperties());
        return node;
    }

    ControlNode someLeaf() {
        switch (random_.below(4)) {
        case 0:
            return named({{"DataSource", "Time"}});
        case 1:
        case 2:
            return named({{"DataSource", "External"}, {"IdentityValue", random_.pick(world_.aProcessors)}});
        default:
            return wild();
        }
    }

    // ---- The wild part ----

    ControlNode wild() {
        ControlNode node = named({{"DataSource", random_.pick(kinds())}});
        if (random_.chance(50))
            node.set("Identity",
                     random_.oneOf({"LayerName", "TableName", "TagName", "FieldName", "layername"}));
        if (random_.chance(50))
            node.set("IdentityValue", random_.chance(50) ? layerName() : fieldName());
        if (random_.chance(40))
            node.set("DataProperty",
                     random_.oneOf({"LayerName", "Path", "SPATIALREFERENCE", "a.b", "FieldName"}));
        if (random_.chance(30))
            node.set("Entries", random_.chance(80) ? "Multiple" : "multiple");
        if (random_.chance(20))
            node.set("LinkField", fieldName());
        for (std::int32_t i = random_.between(0, 2); i > 0 && nBudget_ > 0; --i)
            node.aChildren.push_back(mutated(random_.chance(50) ? wild() : featureChild()));
        return node;
    }

    /// Now and then something is put out of order.
    ControlNode mutated(ControlNode node) {
        if (!random_.chance(7))
            return node;
        switch (random_.below(14)) {
        case 0:
            node.set("Name", random_.oneOf({"", "1x", " ", "a&b", "-", "x y"}));
            break;
        case 1:
            node.set("DataSource", random_.pick(kinds()));
            break;
        case 2:
            node.set("Identity", random_.oneOf({"", "LayerName", "TableName", "TagName", "FieldName", " "}));
            break;
        case 3:
            node.set("IdentityValue", random_.chance(50) ? " " : layerName());
            break;
        case 4:
            node.set("Entries", random_.oneOf({"Multiple", "", "multiple", "Single"}));
            break;
        case 5:
            node.set("Target", random_.oneOf({"Attribute", "", "attribute"}));
            break;
        case 6:
            node.set("DataFrame",
                     random_.chance(60) ? random_.pick(world_.aMaps) : random_.oneOf({" ", "No map"}));
            break;
        case 7:
            node.set("DataLocation", random_.chance(60) ? random_.pick(world_.aLocations) : " ");
            break;
        case 8:
            node.set("DecimalPlace", random_.oneOf({"1", "-2", "x", "1e2"}));
            break;
        case 9:
            node.set("datasource", "Time"); // the letter case counts
            break;
        case 10:
            node.aChildren.push_back(remark());
            break;
        case 11:
            node.aChildren.insert(node.aChildren.begin(), remark());
            break;
        case 12:
            node.set("LinkField", fieldName());
            break;
        default:
            node.aChildren.push_back(wild());
        }
        return node;
    }

    ControlNode remark() {
        ControlNode node;
        node.kind = random_.chance(85) ? ControlNode::Kind::Comment : ControlNode::Kind::Text;
        return node;
    }

    Random& random_;
    const World& world_;
    std::int32_t nBudget_ = 0;
};

} // namespace

ControlNode randomControlFile(Random& random, const World& world) {
    return FileMaker(random, world).make();
}

} // namespace halvane::oracle
