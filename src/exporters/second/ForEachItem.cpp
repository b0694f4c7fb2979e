#include "exporters/second/ForEachItem.h"

#include "engine/second/Inherited.h"
#include "engine/second/MapThings.h"
#include "engine/second/RowScope.h"
#include "engine/sources/Binding.h"
#include "exporters/second/CurrentAgain.h"
#include "exporters/second/ItemFacts.h"
#include "exporters/second/geometry/TransformedShape.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Relationships.h"
#include "host/Rows.h"
#include "host/Subtypes.h"
#include "host/Tables.h"
#include "host/Workspace.h"

#include <array>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace halvane {

namespace {

/// What may fail is asked for before an item is made: g++ 12 destroys members that a failure inside the
/// braces has left unmade.
using TakeItem = std::function<void(const LoopItem&)>;

LoopItem itemOfObject(ForEach kind, ObjectPtr pObject) {
    LoopItem item;
    item.kind = kind;
    item.pObject = std::move(pObject);
    return item;
}

// ---- Layers and tables of a map ----

void listMaps(ExportState& state, const TakeItem& fnTake) {
    if (state.pMapDoc == nullptr)
        return;
    for (std::int32_t n = 0; n < state.pMapDoc->mapCount(); ++n)
        fnTake(itemOfObject(ForEach::Map, state.pMapDoc->map(n)));
}

void listLayers(ExportState& state, const TakeItem& fnTake) {
    eachLayer(state.pMap,
              [&](const host::GisLayerPtr& pLayer) { fnTake(itemOfObject(ForEach::Layer, pLayer)); });
}

void listTables(ExportState& state, const TakeItem& fnTake) {
    eachTable(state.pMap,
              [&](const host::GisTablePtr& pTable) { fnTake(itemOfObject(ForEach::Table, pTable)); });
}

// ---- What is at hand ----

host::GisFieldsPtr sharedFields(const host::GisRow& row) {
    // Lent: the row holds them, and outlives the loop over them.
    return {host::GisFieldsPtr(), &row.fields()};
}

/// In the coordinates that the node asks for. A shape that has no place in them has no part.
host::GisGeometryPtr shapeAtHand(ExportState& state) {
    if (state.pRowScope == nullptr || state.pRowScope->row() == nullptr)
        throw Failure(
            FailureNumber::ObjectVariableNotSet,
            "no row is at hand whose shape could be gone over; put the node inside a repeated node of rows");
    const host::GisRow& row = *state.pRowScope->row();
    if (state.pInherited == nullptr)
        return row.shape();
    auto pShape = shapeIn(state, state.pInherited->space, row);
    if (pShape != nullptr && state.pInherited->space.pReference != nullptr)
        requirePoints(*pShape);
    return pShape;
}

void listFields(ExportState& state, const TakeItem& fnTake) {
    const bool bOfRow =
        state.pRowScope != nullptr && state.pRowScope->row() != nullptr && rowsAreWithinItems(state);
    const host::GisTablePtr pTable = bOfRow ? state.pRowScope->table() : tableAtHand(state);
    const host::GisFieldsPtr pFields = bOfRow              ? sharedFields(*state.pRowScope->row())
                                       : pTable == nullptr ? nullptr
                                                           : pTable->fields();
    for (std::int32_t n = 0; pFields != nullptr && n < pFields->count(); ++n)
        fnTake({.kind = ForEach::Field, .pFields = pFields, .pTable = pTable, .lField = n});
}

host::GisWorkspacePtr workspaceOf(const host::GisLayerPtr& pLayer) {
    if (const auto pFeatures = std::dynamic_pointer_cast<host::GisFeatureLayer>(pLayer)) {
        const auto pClass = pFeatures->featureClass();
        return pClass == nullptr ? nullptr : pClass->workspace();
    }
    const auto pTin = std::dynamic_pointer_cast<host::GisTinLayer>(pLayer);
    const auto pDataset = pTin == nullptr ? nullptr : pTin->dataset();
    return pDataset == nullptr ? nullptr : pDataset->workspace();
}

void eachWorkspaceOfMap(ExportState& state, const std::function<void(const host::GisWorkspacePtr&)>& fnTake) {
    std::set<std::string> known;
    const auto take = [&](const host::GisWorkspacePtr& pWorkspace) {
        if (pWorkspace != nullptr && known.insert(pWorkspace->pathName()).second)
            fnTake(pWorkspace);
    };
    // Data that cannot be opened hides no other.
    eachLayer(state.pMap, [&](const host::GisLayerPtr& pLayer) {
        trapFailures(state, [&] { take(workspaceOf(pLayer)); });
    });
    eachTable(state.pMap, [&](const host::GisTablePtr& pTable) {
        trapFailures(state, [&] { take(pTable->workspace()); });
    });
}

void listWorkspaces(ExportState& state, const TakeItem& fnTake) {
    eachWorkspaceOfMap(state, [&](const host::GisWorkspacePtr& pWorkspace) {
        fnTake(itemOfObject(ForEach::Workspace, pWorkspace));
    });
}

/// That of the item, the layer or the table around; all of the map's where there is none.
void eachWorkspaceAtHand(ExportState& state,
                         const std::function<void(const host::GisWorkspacePtr&)>& fnTake) {
    if (const LoopItem* const pItem = itemOf(state, ForEach::Workspace)) {
        fnTake(pItem->as<host::GisWorkspace>());
        return;
    }
    const host::GisTablePtr pTable = tableAtHand(state);
    if (pTable == nullptr)
        eachWorkspaceOfMap(state, fnTake);
    else if (const auto pWorkspace = pTable->workspace())
        fnTake(pWorkspace);
}

// ---- Domains, relationship classes, codes and subtypes ----

void listDomains(ExportState& state, const TakeItem& fnTake) {
    const auto take = [&](const host::GisDomainPtr& pDomain) {
        if (pDomain != nullptr)
            fnTake(itemOfObject(ForEach::Domain, pDomain));
    };
    if (state.pItemScope != nullptr && state.pItemScope->item().kind == ForEach::Field) {
        for (const auto& pDomain : domainsOfField(state.pItemScope->item()))
            take(pDomain);
        return;
    }
    eachWorkspaceAtHand(state, [&](const host::GisWorkspacePtr& pWorkspace) {
        const auto pDomains = pWorkspace->domainsRole();
        const auto pEnum = pDomains == nullptr ? nullptr : pDomains->domains();
        while (const auto pDomain = pEnum == nullptr ? nullptr : pEnum->next())
            take(pDomain);
    });
}

void listRelationships(ExportState& state, const TakeItem& fnTake) {
    eachWorkspaceAtHand(state, [&](const host::GisWorkspacePtr& pWorkspace) {
        const auto pClasses = pWorkspace->relationshipClasses();
        while (const auto pClass = pClasses == nullptr ? nullptr : pClasses->next())
            fnTake(itemOfObject(ForEach::Relationship, pClass));
    });
}

void listCodes(ExportState& state, const TakeItem& fnTake) {
    std::vector<host::GisDomainPtr> domains;
    if (state.pItemScope != nullptr && state.pItemScope->item().kind == ForEach::Field)
        domains = domainsOfField(state.pItemScope->item());
    else if (const LoopItem* const pItem = itemOf(state, ForEach::Domain))
        domains.push_back(pItem->as<host::GisDomain>());
    for (const auto& pDomain : domains)
        for (std::int32_t n = 0; n < pDomain->codeCount(); ++n) {
            const host::CodedValue code = pDomain->code(n);
            fnTake({.kind = ForEach::Code, .code = code});
        }
}

void listSubtypes(ExportState& state, const TakeItem& fnTake) {
    const host::GisTablePtr pTable = tableAtHand(state);
    const auto pSubtypes = pTable == nullptr ? nullptr : subtypesOf(*pTable);
    if (pSubtypes == nullptr || !pSubtypes->hasSubtypes())
        return;
    for (std::int32_t n = 0; n < pSubtypes->subtypeCount(); ++n) {
        const std::int32_t lSubtype = pSubtypes->subtypeCode(n);
        fnTake({.kind = ForEach::Subtype, .pSubtypes = pSubtypes, .lSubtype = lSubtype});
    }
}

// ---- Parts and vertices of the current row's shape ----

void listParts(ExportState& state, const TakeItem& fnTake) {
    const auto pShape = shapeAtHand(state);
    const std::int32_t lCount = pShape == nullptr ? 0 : pShape->partCount();
    for (std::int32_t n = 0; n < lCount; ++n)
        fnTake({.kind = ForEach::Part, .pShape = pShape, .lPart = n});
}

void eachVertex(const host::GisGeometry& shape, std::int32_t lPart,
                const std::function<void(const host::PointValues&)>& fnTake) {
    std::array<host::PointValues, 256> aPoints;
    for (std::int32_t lFirst = 0; lFirst < shape.pointCount(lPart);) {
        std::size_t nRead = shape.readPoints(lPart, lFirst, aPoints);
        if (nRead == 0) {
            const auto pPoint = shape.point(lPart, lFirst);
            aPoints.front() = {pPoint->x(), pPoint->y(), pPoint->z(), pPoint->m()};
            nRead = 1;
        }
        for (std::size_t n = 0; n < nRead; ++n)
            fnTake(aPoints[n]);
        lFirst += static_cast<std::int32_t>(nRead);
    }
}

void listVertices(ExportState& state, const TakeItem& fnTake) {
    LoopItem vertex;
    vertex.kind = ForEach::Vertex;
    const auto take = [&](const host::PointValues& point) {
        vertex.point = point;
        fnTake(vertex);
    };
    if (state.pItemScope != nullptr && state.pItemScope->item().kind == ForEach::Part) {
        eachVertex(*state.pItemScope->item().pShape, state.pItemScope->item().lPart, take);
        return;
    }
    const auto pShape = shapeAtHand(state);
    const std::int32_t lCount = pShape == nullptr ? 0 : pShape->partCount();
    for (std::int32_t n = 0; n < lCount; ++n)
        eachVertex(*pShape, n, take);
}

/// In the order of ForEach.
constexpr std::array lists{listMaps,     listLayers,        listTables,     listFields,
                           listDomains,  listRelationships, listWorkspaces, listCodes,
                           listSubtypes, listParts,         listVertices};
static_assert(lists.size() == nForEachThings);

} // namespace

void forEachItem(ExportState& state, ForEach kind, const std::function<void()>& fnItem) {
    CurrentAgain current(state);
    std::int64_t lNumber = 0;
    lists[static_cast<std::size_t>(kind)](state, [&](const LoopItem& item) {
        if (state.options.pObserver != nullptr && !state.options.pObserver->goesOn())
            throw ExportCancelled{};
        const ItemScope scope(state, item, ++lNumber);
        trapFailures(state, [&] {
            makeItemCurrent(state, item);
            fnItem();
        });
        current.restore();
    });
}

} // namespace halvane
