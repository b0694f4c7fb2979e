#include "oracle/ControlFileMaker.h"

#include "oracle/RandomTables.h"
#include "oracle/Vocabulary.h"

namespace halvane::oracle {

ControlNode ControlFileMaker::wild() {
    ControlNode node = named({{"DataSource", random_.pick(kinds())}});
    if (random_.chance(50))
        node.set("Identity", random_.oneOf({"LayerName", "TableName", "TagName", "FieldName", "layername"}));
    if (random_.chance(50))
        node.set("IdentityValue", random_.chance(50) ? layerName() : fieldName());
    if (random_.chance(40))
        node.set("DataProperty",
                 random_.oneOf({"LayerName", "Path", "SPATIALREFERENCE", "a.b", "FieldName"}));
    if (random_.chance(30))
        node.set("Entries", random_.chance(80) ? "Multiple" : "multiple");
    if (random_.chance(20))
        node.set("LinkField", fieldName());
    addSome(node, 0, 2, [&] { return random_.chance(50) ? wild() : featureChild(); });
    return node;
}

ControlNode ControlFileMaker::mutated(ControlNode node) {
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

ControlNode ControlFileMaker::remark() {
    ControlNode node;
    node.kind = random_.chance(85) ? ControlNode::Kind::Comment : ControlNode::Kind::Text;
    return node;
}

} // namespace halvane::oracle
