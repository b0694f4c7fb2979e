#include "oracle/RandomControlFile.h"

#include "oracle/ControlFileMaker.h"
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

} // namespace

ControlNode ControlFileMaker::make() {
    ControlNode root = named({});
    nBudget_ = random_.between(8, 44);
    if (random_.chance(5))
        root.set("DataLocation", random_.pick(world_.aLocations));
    if (random_.chance(5))
        root.set("DataFrame", random_.pick(world_.aMaps));
    if (random_.chance(5))
        root.set("DecimalPlace", "2");
    addSome(root, 2, 5, [&] { return scene(); });
    if (random_.chance(1))
        root.aChildren.clear();
    if (random_.chance(65))
        tidy(root);
    return root;
}

ControlNode ControlFileMaker::named(const Attributes& attributes) {
    --nBudget_;
    ControlNode node;
    node.set("Name", random_.chance(97) ? std::string(1, static_cast<char>('a' + random_.between(0, 7)))
                                        : random_.oneOf({"Two Words", "p:q", "\xC3\xA9t\xC3\xA9", "x-1.y"}));
    for (const auto& [sName, sValue] : attributes)
        node.set(sName, sValue);
    if (random_.chance(20))
        node.set("Target", "Attribute");
    return node;
}

ControlNode ControlFileMaker::property(const std::string& sProperty) {
    return named({{"DataProperty", sProperty}});
}

void ControlFileMaker::addProperties(ControlNode& node, const Words& aProperties) {
    addSome(node, 1, 4, [&] { return property(random_.pick(aProperties)); });
}

ControlNode ControlFileMaker::repeated(const Attributes& attributes) {
    ControlNode node = named(attributes);
    node.set("Entries", "Multiple");
    if (random_.chance(75))
        node.set("Target", "");
    return node;
}

std::string ControlFileMaker::layerName() {
    return world_.aFeatureLayers.empty() || random_.chance(4) ? "Roads" : random_.pick(world_.aFeatureLayers);
}

std::string ControlFileMaker::tableName() {
    return world_.aTables.empty() || random_.chance(8) ? "LISTING" : random_.pick(world_.aTables);
}

std::string ControlFileMaker::fieldName() {
    return random_.chance(92) ? random_.pick(fieldNames()) : "Nowhere";
}

std::string ControlFileMaker::tagName() {
    return random_.oneOf({"T1", "T2", "t2", "T9"});
}

ControlNode ControlFileMaker::scene() {
    switch (random_.below(18)) {
    case 0:
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
    case 6:
        return layerScene();
    case 11:
    case 16:
    case 17:
        return imageScene();
    case 7:
    case 8:
    case 9:
        return tableScene();
    case 10:
        return mapScene();
    case 12:
        return workspaceScene();
    case 13:
        return wild();
    case 14:
        return someLeaf();
    default: {
        ControlNode group = named({});
        addSome(group, 1, 3, [&] { return scene(); });
        return group;
    }
    }
}

ControlNode ControlFileMaker::mapScene() {
    ControlNode node = named({{"DataSource", "Map"}});
    if (random_.chance(50))
        node.set("IdentityValue", random_.chance(80) ? random_.pick(world_.aMaps) : " ");
    if (random_.chance(30))
        node.set("DataFrame", random_.chance(70) ? random_.pick(world_.aMaps) : "harbour");
    addSome(node, 1, 3, [&] { return random_.chance(70) ? reference() : layerScene(); });
    return node;
}

ControlNode ControlFileMaker::tableScene() {
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

ControlNode ControlFileMaker::workspaceScene() {
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

ControlNode ControlFileMaker::someLeaf() {
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

ControlNode randomControlFile(Random& random, const World& world) {
    return ControlFileMaker(random, world).make();
}

} // namespace halvane::oracle
