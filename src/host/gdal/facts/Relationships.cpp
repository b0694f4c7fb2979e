#include "host/gdal/facts/Relationships.h"

#include "base/Text.h"
#include "host/gdal/facts/Markup.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/SystemTables.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace halvane::host::gdal {

namespace {

std::string joined(const std::vector<std::string>& names) {
    std::string sAll;
    for (const std::string& sName : names)
        sAll += (sAll.empty() ? "" : ",") + sName;
    return sAll;
}

std::int32_t cardinalityCode(GDALRelationshipCardinality cardinality) {
    switch (cardinality) {
    case GRC_ONE_TO_ONE:
        return 1;
    case GRC_MANY_TO_MANY:
        return 3;
    default:
        return 2;
    }
}

// The fields of a table besides its identifier.
std::vector<std::string> fieldsOfTable(GDALDataset& dataset, const std::string& sTable) {
    std::vector<std::string> names;
    // Databases hide tables that only link others from the list of layers.
    query(dataset, "SELECT name FROM pragma_table_info(" + quotedText(sTable) + ") WHERE pk = 0",
          [&](const QueryRow& row) { names.push_back(row.text(0)); });
    if (OGRLayer* pLayer = names.empty() ? dataset.GetLayerByName(sTable.c_str()) : nullptr) {
        const OGRFeatureDefn& definition = *pLayer->GetLayerDefn();
        for (int lField = 0; lField < definition.GetFieldCount(); ++lField)
            names.emplace_back(definition.GetFieldDefn(lField)->GetNameRef());
    }
    return names;
}

// Whether a table between two others says more than which rows belong together.
bool hasOtherFields(GDALDataset& dataset, const GDALRelationship& relationship) {
    std::vector<std::string> keys = relationship.GetLeftMappingTableFields();
    const std::vector<std::string>& right = relationship.GetRightMappingTableFields();
    keys.insert(keys.end(), right.begin(), right.end());
    const std::vector<std::string> names = fieldsOfTable(dataset, relationship.GetMappingTableName());
    return std::any_of(names.begin(), names.end(), [&](const std::string& sName) {
        return std::none_of(keys.begin(), keys.end(),
                            [&](const std::string& sKey) { return equalIgnoringCase(sKey, sName); });
    });
}

RelationshipFacts factsOf(GDALDataset& dataset, const GDALRelationship& relationship) {
    RelationshipFacts facts;
    facts.sName = relationship.GetName();
    facts.lCardinality = cardinalityCode(relationship.GetCardinality());
    facts.bComposite = relationship.GetType() == GRT_COMPOSITE;
    facts.sOrigin = relationship.GetLeftTableName();
    facts.sDestination = relationship.GetRightTableName();
    facts.sForwardLabel = relationship.GetForwardPathLabel();
    facts.sBackwardLabel = relationship.GetBackwardPathLabel();
    facts.sOriginPrimaryKey = joined(relationship.GetLeftTableFields());
    facts.sMappingTable = relationship.GetMappingTableName();
    if (facts.sMappingTable.empty()) {
        facts.sOriginForeignKey = joined(relationship.GetRightTableFields());
    } else {
        facts.sOriginForeignKey = joined(relationship.GetLeftMappingTableFields());
        facts.sDestinationPrimaryKey = joined(relationship.GetRightTableFields());
        facts.sDestinationForeignKey = joined(relationship.GetRightMappingTableFields());
        facts.bAttributed = hasOtherFields(dataset, relationship);
    }
    if (relationship.GetCardinality() == GRC_MANY_TO_ONE) {
        std::swap(facts.sOrigin, facts.sDestination);
        std::swap(facts.sOriginPrimaryKey, facts.sOriginForeignKey);
        std::swap(facts.sForwardLabel, facts.sBackwardLabel);
    }
    return facts;
}

// Whether a key binds tables that the format keeps for itself. SpatiaLite's names are plain words: both must
// be such.
bool isOfTheFormat(const std::string& sChild, const std::string& sParent) {
    return isGeoPackageTable(sChild) || isGeoPackageTable(sParent) ||
           (isSpatialiteTable(sChild) && isSpatialiteTable(sParent));
}

// The keys of a table that links two others are told by their many-to-many relationship already.
bool isOfALink(const RelationshipList& all, const std::string& sChild, const std::string& sParent) {
    return std::any_of(all.begin(), all.end(), [&](const RelationshipFacts& facts) {
        return equalIgnoringCase(facts.sMappingTable, sChild) &&
               (equalIgnoringCase(facts.sOrigin, sParent) || equalIgnoringCase(facts.sDestination, sParent));
    });
}

// Foreign keys, one relationship each, in the order of the tables and of their keys.
void addForeignKeys(GDALDataset& dataset, RelationshipList& all) {
    std::string sLastKey;
    query(
        dataset,
        "SELECT m.name, k.id, coalesce(p.name, k.\"table\"), k.\"from\", coalesce(k.\"to\", ''), k.on_delete "
        "FROM sqlite_master m JOIN pragma_foreign_key_list(m.name) k LEFT JOIN sqlite_master p ON p.type = "
        "'table' AND p.name = k.\"table\" COLLATE NOCASE WHERE m.type = 'table' ORDER BY m.rowid, k.id DESC, "
        "k.seq",
        [&](const QueryRow& row) {
            const std::string sChild = row.text(0);
            const std::string sParent = row.text(2);
            if (isOfTheFormat(sChild, sParent) || isOfALink(all, sChild, sParent))
                return;
            // A key of several columns has a row for each.
            const std::string sKey = sChild + '\n' + row.text(1);
            if (std::exchange(sLastKey, sKey) == sKey) {
                all.back().sOriginForeignKey += "," + row.text(3);
                all.back().sOriginPrimaryKey += "," + row.text(4);
                return;
            }
            RelationshipFacts facts;
            facts.sName = sParent + "_" + sChild;
            if (std::any_of(all.begin(), all.end(), [&](const RelationshipFacts& other) {
                    return equalIgnoringCase(other.sName, facts.sName);
                }))
                facts.sName += "_" + row.text(3);
            facts.sOrigin = sParent;
            facts.sDestination = sChild;
            facts.sOriginPrimaryKey = row.text(4);
            facts.sOriginForeignKey = row.text(3);
            facts.bComposite = equalIgnoringCase(row.text(5), "CASCADE");
            all.push_back(std::move(facts));
        });
}

// A key that names no columns refers to the other table's primary key, of one column or of several.
void completeKeys(GDALDataset& dataset, RelationshipList& all) {
    for (RelationshipFacts& facts : all) {
        if (facts.sOriginPrimaryKey.find_first_not_of(',') != std::string::npos)
            continue;
        std::vector<std::string> names;
        query(dataset,
              "SELECT name FROM pragma_table_info(" + quotedText(facts.sOrigin) +
                  ") WHERE pk > 0 ORDER BY pk",
              [&](const QueryRow& row) { names.push_back(row.text(0)); });
        facts.sOriginPrimaryKey = joined(names);
    }
}

// The sets of columns of which no two rows of a table have the same values.
std::vector<std::vector<std::string>> uniqueKeysOf(GDALDataset& dataset, const std::string& sTable) {
    std::vector<std::vector<std::string>> keys(1);
    query(dataset, "SELECT name FROM pragma_table_info(" + quotedText(sTable) + ") WHERE pk > 0",
          [&](const QueryRow& row) { keys.front().push_back(row.text(0)); });
    std::string sLast;
    query(dataset,
          "SELECT l.name AS key, i.name AS field FROM pragma_index_list(" + quotedText(sTable) +
              ") l JOIN pragma_index_info(l.name) i WHERE l.\"unique\" = 1 AND l.partial = 0 ORDER BY l.seq, "
              "i.seqno",
          [&](const QueryRow& row) {
              if (std::exchange(sLast, row.text(0)) != row.text(0))
                  keys.emplace_back();
              keys.back().push_back(row.text(1));
          });
    std::erase_if(keys, [](const auto& key) { return key.empty(); });
    return keys;
}

// A key that holds unique columns binds each row to a row of its own.
void findOneToOnes(GDALDataset& dataset, RelationshipList& all) {
    for (RelationshipFacts& facts : all) {
        if (!facts.sMappingTable.empty())
            continue;
        const std::string sKey = "," + upperCase(facts.sOriginForeignKey) + ",";
        const auto keys = uniqueKeysOf(dataset, facts.sDestination);
        const bool bUnique = std::any_of(keys.begin(), keys.end(), [&](const auto& key) {
            return std::all_of(key.begin(), key.end(), [&](const std::string& sName) {
                return !sName.empty() && sKey.find("," + upperCase(sName) + ",") != std::string::npos;
            });
        });
        facts.lCardinality = bUnique ? 1 : facts.lCardinality;
    }
}

// The codes of GisRelationshipClass.
std::int32_t notificationCode(const std::string& sWord) {
    constexpr std::array<std::pair<std::string_view, std::int32_t>, 3> aCodes{
        {{"Forward", 2}, {"Backward", 3}, {"Both", 4}}};
    const auto* const pFound = std::find_if(aCodes.begin(), aCodes.end(),
                                            [&](const auto& code) { return sWord.ends_with(code.first); });
    return pFound == aCodes.end() ? 1 : pFound->second;
}

// "dataset" of "\dataset\name"; "" of "\name".
std::string folderOfItem(const std::string& sPath) {
    const std::size_t nEnd = sPath.rfind('\\');
    const std::size_t nStart = sPath.find_first_not_of('\\');
    return nEnd == std::string::npos || nStart >= nEnd ? "" : sPath.substr(nStart, nEnd - nStart);
}

// The library leaves out some of what a file database states of its relationship classes.
void completeFromItems(GDALDataset& dataset, RelationshipList& all) {
    if (all.empty())
        return;
    query(dataset, "SELECT Name, Path, Definition FROM GDB_Items", [&](const QueryRow& row) {
        const auto pFacts = std::find_if(all.begin(), all.end(), [&](const RelationshipFacts& facts) {
            return equalIgnoringCase(facts.sName, row.text(0));
        });
        if (pFacts == all.end() || row.text(2).empty())
            return;
        const MarkupDocument pDocument = parseMarkupText(row.text(2), "the definition of " + row.text(0));
        const auto notifications =
            MarkupElement(xmlDocGetRootElement(pDocument.get())).children("Notification");
        if (!notifications.empty()) { // else an item of another kind
            pFacts->lNotification = notificationCode(notifications.front().content());
            pFacts->sFeatureDataset = folderOfItem(row.text(1));
        }
    });
}

// A server's foreign keys have names of their own. Its tables are written as the driver names them.
void addServerKeys(GDALDataset& dataset, RelationshipList& all) {
    const auto columns = [](const std::string& sKey, const std::string& sTable) {
        return "(SELECT string_agg(a.attname, ',' ORDER BY k.place) FROM unnest(c." + sKey +
               ") WITH ORDINALITY k(number, place) JOIN pg_attribute a ON a.attrelid = c." + sTable +
               " AND a.attnum = k.number)";
    };
    query(
        dataset,
        "SELECT c.conname::text, c.confrelid::regclass::text AS origin, c.conrelid::regclass::text AS "
        "destination, " +
            columns("confkey", "confrelid") + " AS primary_key, " + columns("conkey", "conrelid") +
            " AS foreign_key, c.confdeltype::text FROM pg_constraint c WHERE c.contype = 'f' ORDER BY c.oid",
        [&](const QueryRow& row) {
            RelationshipFacts facts;
            facts.sName = row.text(0);
            facts.sOrigin = row.text(1);
            facts.sDestination = row.text(2);
            facts.sOriginPrimaryKey = row.text(3);
            facts.sOriginForeignKey = row.text(4);
            facts.bComposite = row.text(5) == "c";
            all.push_back(std::move(facts));
        });
}

} // namespace

GisRelationshipClassPtr GdalEnumRelationshipClass::next() {
    return nNext_ < relationships_.size() ? std::make_shared<GdalRelationshipClass>(relationships_[nNext_++])
                                          : nullptr;
}

RelationshipList relationshipsOf(HandlePool& pool, const SourcePtr& pSource) {
    const Handle handle = pool.acquire(pSource);
    const ErrorScope errors;
    GDALDataset& dataset = handle.dataset();
    // The library reports foreign keys sorted and numbered; the definition's order and names say more.
    const bool bOwnKeys = pSource->sDriver == "GPKG" || pSource->sDriver == "SQLite";
    RelationshipList all;
    for (const std::string& sName : dataset.GetRelationshipNames(nullptr)) {
        const GDALRelationship* pRelationship = dataset.GetRelationship(sName);
        if (pRelationship != nullptr && !(bOwnKeys && pRelationship->GetMappingTableName().empty()))
            all.push_back(factsOf(dataset, *pRelationship));
    }
    if (bOwnKeys) {
        addForeignKeys(dataset, all);
        completeKeys(dataset, all);
        findOneToOnes(dataset, all);
    } else if (pSource->sDriver == "OpenFileGDB") {
        completeFromItems(dataset, all);
    } else if (isServer(*pSource)) {
        addServerKeys(dataset, all);
    }
    return all;
}

} // namespace halvane::host::gdal
