#include "oracle/ControlFileMaker.h"

#include "oracle/RandomTables.h"
#include "oracle/Vocabulary.h"

namespace halvane::oracle {

ControlNode ControlFileMaker::featureLeaf() {
    return repeated({{"DataSource", random_.oneOf({"Feature", "FeatureTable"})},
                     {"Identity", random_.chance(90) ? "FieldName" : ""},
                     {"IdentityValue", fieldName()}});
}

ControlNode ControlFileMaker::featureLoop() {
    ControlNode node = repeated({{"DataSource", "Feature"}});
    if (random_.chance(30))
        node.set("DecimalPlace", random_.oneOf({"0", "2", "5", "abc", "-1", " 3 "}));
    if (random_.chance(20))
        node.set("LinkField", random_.oneOf({"ROUTE", "CODE"}));
    addSome(node, 2, 6, [&] { return featureChild(); });
    if (random_.chance(12))
        addLayerChange(node, "Feature");
    return node;
}

ControlNode ControlFileMaker::fieldOfRow(const char* sKind) {
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

void ControlFileMaker::addLayerChange(ControlNode& loop, const char* sRowKind) {
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

ControlNode ControlFileMaker::ofCurrentLayer() {
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

ControlNode ControlFileMaker::featureChild() {
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
        addSome(group, 1, 3, [&] { return featureChild(); });
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

ControlNode ControlFileMaker::recordLoop() {
    ControlNode node = repeated({{"DataSource", random_.chance(85) ? "Record" : "Table"}});
    addSome(node, 1, 4, [&] { return recordChild(); });
    if (random_.chance(12))
        addLayerChange(node, "Record");
    return node;
}

ControlNode ControlFileMaker::recordChild() {
    switch (random_.below(10)) {
    case 0:
        return relatedGroup();
    case 1:
        return relatedLeaf();
    case 2: {
        ControlNode group = random_.chance(50) ? named({}) : repeated({});
        addSome(group, 1, 2, [&] { return recordChild(); });
        return group;
    }
    case 3:
        return random_.chance(30) ? layerScene() : someLeaf();
    default:
        return fieldOfRow(random_.chance(70) ? "Record" : "Table");
    }
}

ControlNode ControlFileMaker::relatedGroup() {
    ControlNode node = named({{"DataSource", "RelatedTable"},
                              {"Identity", "LayerName"},
                              {"IdentityValue", random_.chance(60) ? tableName() : layerName()},
                              {"LinkField", random_.oneOf({"ROUTE", "CODE", "KIND", "WIDTH", "None"})}});
    if (random_.chance(12))
        node.set("Entries", "Multiple");
    addSome(node, 1, 3, [&] {
        const std::string sField = fieldName();
        return named({{"DataSource", "RelatedRecord"}, {"IdentityValue", sField}});
    });
    return node;
}

ControlNode ControlFileMaker::relatedLeaf() {
    return named({{"DataSource", random_.oneOf({"RelatedRecord", "RelatedTable"})},
                  {"Identity", "LayerName"},
                  {"IdentityValue", random_.chance(50) ? fieldName() : tableName()},
                  {"LinkField", random_.oneOf({"ROUTE", "CODE"})}});
}

ControlNode ControlFileMaker::geometryLoop() {
    const std::string sKind =
        random_.oneOf({"Geometry.Length", "Geometry.Point", "Geometry.FromNode", "Geometry.ToNode",
                       "Geometry.EndPoint", "Geometry.Vertice", "Geometry.Vertice", "geometry.length"});
    ControlNode node = repeated({{"DataSource", sKind}});
    if (random_.chance(30))
        node.set("MeasureField", random_.oneOf({"WIDTH", "ROUTE", "NAME", "None"}));
    if (random_.chance(30))
        node.set("DecimalPlace", random_.oneOf({"2", "1", "abc"}));
    addSome(node, 1, 3, [&] { return geometryValue(sKind); });
    return node;
}

ControlNode ControlFileMaker::geometryValue(const std::string& sKind) {
    if (random_.chance(10))
        return named({{"DataSource", "FeatureAttributes"}, {"DataProperty", fieldName()}});
    if (random_.chance(10))
        return named({{"DataSource", "External"}, {"IdentityValue", random_.pick(world_.aProcessors)}});
    ControlNode node = property(
        sKind == "Geometry.Length" && random_.chance(85)
            ? "Geometry.Length"
            : random_.oneOf({"Geometry.X", "Geometry.Y", "Geometry.Z", "Geometry.Measure", "geometry.x"}));
    if (random_.chance(10))
        node.set("DataSource", random_.oneOf({"Geometry.ToNode", "Geometry.FromNode"}));
    if (random_.chance(10))
        node.set("DecimalPlace", random_.oneOf({"1", "4", "q"}));
    return node;
}

} // namespace halvane::oracle
