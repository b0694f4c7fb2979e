#include "telling/check/MapNeed.h"

#include "base/Text.h"
#include "engine/second/SecondEdition.h"
#include "engine/sources/DataSourceKind.h"
#include "telling/ControlInheritance.h"
#include "telling/DocumentOrder.h"

namespace halvane {

namespace {

bool looksInMap(dom::Node oElement) {
    if (secondAttribute(oElement, "ForEach") || !trimBlanks(inherited(oElement, "DataFrame")).empty())
        return true;
    const auto kind = dataSourceKindOf(inherited(oElement, "DataSource"));
    return rowOf(kind).object.origin == Origin::Map &&
           trimBlanks(inherited(oElement, "DataLocation")).empty();
}

} // namespace

bool asksForMap(dom::Node oControlRoot) {
    // The root's own data source is never bound.
    for (dom::Node oNode = nextInDocument(oControlRoot, oControlRoot); oNode;
         oNode = nextInDocument(oNode, oControlRoot))
        if (isElement(oNode) && looksInMap(oNode))
            return true;
    return false;
}

} // namespace halvane
