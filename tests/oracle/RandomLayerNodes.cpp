#include "oracle/ControlFileMaker.h"

#include "oracle/RandomTables.h"
#include "oracle/Vocabulary.h"

namespace halvane::oracle {

ControlNode ControlFileMaker::layerGroup() {
    if (random_.chance(12))
        return named({{"DataSource", "FeatureLayer"},
                      {"Identity", "LayerName"},
                      {"IdentityValue", "ONDISK"},
                      {"DataLocation", random_.pick(world_.aLocations)}});
    if (!world_.setting.aTags.empty() && random_.chance(35))
        return named({{"DataSource", "MapLayer"}, {"Identity", "TagName"}, {"IdentityValue", tagName()}});
    return named({{"DataSource", "MapLayer"}, {"Identity", "LayerName"}, {"IdentityValue", layerName()}});
}

ControlNode ControlFileMaker::layerScene() {
    ControlNode node = layerGroup();
    node.set("Target", random_.chance(4) ? "Attribute" : "");
    addSome(node, 2, 5, [&] { return layerChild(); });
    return node;
}

ControlNode ControlFileMaker::layerChild() {
    switch (random_.below(18)) {
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
    case 16:
    case 17:
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

ControlNode ControlFileMaker::reference() {
    ControlNode node = property("SPATIALREFERENCE." + random_.pick(referenceProperties()));
    if (random_.chance(25)) {
        node.set("Target", "Attribute");
        node.set("DataLocation", "Attribute");
        if (random_.chance(70))
            node.set("DataFrame", random_.pick(world_.aMaps));
    }
    return node;
}

ControlNode ControlFileMaker::imageScene() {
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
            leaf.aChildren.push_back(mutated(
                named({{"DataSource", "External"}, {"IdentityValue", random_.pick(world_.aProcessors)}})));
        node.aChildren.push_back(mutated(leaf));
    }
    return node;
}

ControlNode ControlFileMaker::fieldLoop() {
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

ControlNode ControlFileMaker::subtypeLoop() {
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

ControlNode ControlFileMaker::domainLoop() {
    ControlNode node = repeated({{"DataSource", "WorkspaceDomain"}});
    addProperties(node, domainProperties());
    if (random_.chance(60))
        node.aChildren.push_back(mutated(codes()));
    return node;
}

ControlNode ControlFileMaker::codes() {
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

ControlNode ControlFileMaker::relationshipLoop() {
    ControlNode node = repeated({{"DataSource", "Relationship"}});
    addProperties(node, relationshipProperties());
    return node;
}

} // namespace halvane::oracle
