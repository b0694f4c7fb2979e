#include "oracle/second/RandomRelationships.h"

#include "host/memory/Relationship.h"

namespace halvane::oracle {

using host::memory::MemoryRelationshipClass;
using host::memory::RelationshipDefinition;

namespace {

std::string someTable(Random& random) {
    return random.oneOf(
        {"ROADS", "ROADS", "HOUSES", "WELLS", "SIGNS", "SIGNS", "POSTS", "ONDISK", "listing"});
}

std::string someKey(Random& random) {
    return random.oneOf({"ROUTE", "ROUTE", "KIND", "CODE", "OBJECTID", "Nowhere"});
}

} // namespace

void addRelationships(Random& random, host::memory::MemoryWorkspace& workspace) {
    for (const char* sName : {"Sites", "Links", "Selves"}) {
        RelationshipDefinition definition{.sName = sName};
        definition.sOriginClassName = someTable(random);
        definition.sDestinationClassName =
            definition.sName == "Selves" ? definition.sOriginClassName : someTable(random);
        definition.sOriginPrimaryKey = someKey(random);
        definition.sOriginForeignKey = random.chance(60) ? definition.sOriginPrimaryKey : someKey(random);
        if (random.chance(10))
            definition.sOriginForeignKey = "";
        if (random.chance(15)) {
            definition.sOriginPrimaryKey += ", KIND";
            definition.sOriginForeignKey += ",KIND";
        }
        if (definition.sName == "Links") {
            definition.lCardinality = 3;
            definition.sLinkTableName = random.chance(10) ? "" : someTable(random);
            definition.sDestinationPrimaryKey = someKey(random);
            definition.sDestinationForeignKey = random.chance(10) ? "" : definition.sDestinationPrimaryKey;
        }
        workspace.add(MemoryRelationshipClass::make(definition));
    }
}

std::string someRelationship(Random& random) {
    return random.oneOf(
        {"Sites", "Sites", "sites", "Links", "Links", "Links", "Selves", "RoadSigns", "Other"});
}

} // namespace halvane::oracle
