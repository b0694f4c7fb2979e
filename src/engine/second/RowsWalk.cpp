#include "engine/second/RowsWalk.h"

#include "engine/ModExporter.h"
#include "engine/second/FollowedRelationship.h"
#include "engine/second/SecondControl.h"
#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"

#include <utility>

namespace halvane {

namespace {

RowsWalk::KnownRows rowsOfTable(host::GisTablePtr pTable) {
    if (pTable == nullptr)
        return {};
    auto pFields = pTable->fields();
    return {std::move(pTable), std::move(pFields)};
}

/// What is the same afterwards whether something was done or not.
void forgetUnless(RowsWalk::Current& current, const RowsWalk::Current& other) {
    for (const auto pMember :
         {&RowsWalk::Current::layer, &RowsWalk::Current::table, &RowsWalk::Current::related})
        if ((current.*pMember).pTable != (other.*pMember).pTable)
            current.*pMember = {};
}

template<class Known, class Find>
RowsWalk::KnownRows known(Known& all, std::string_view sName, const Find& find) {
    const auto place = all.find(sName);
    if (place != all.end())
        return place->second;
    RowsWalk::KnownRows found;
    try {
        found = rowsOfTable(find());
    } catch (const Failure&) {
        found = {}; // whoever asks for its rows is told
    }
    return all.emplace(sName, std::move(found)).first->second;
}

} // namespace

void RowsWalk::walk(const ControlNode& root) {
    Current current;
    visitChildren(root, current);
}

void RowsWalk::visitChildren(const ControlNode& node, Current& current) {
    for (const ControlNode& child : childrenOf(node))
        visit(child, current);
}

void RowsWalk::visit(const ControlNode& node, Current& current) {
    const SecondNode* const pSecond = node.pSecond;
    const Current before = current;
    if (pSecond != nullptr && pSecond->forEach)
        current = {}; // which thing it is at, the map tells
    reach(node);
    bind(node, current);
    visitRows(node, current);
    if (pSecond != nullptr && (pSecond->forEach || pSecond->rows))
        current = before;
    else if (pSecond != nullptr && pSecond->when)
        forgetUnless(current, before);
}

void RowsWalk::bind(const ControlNode& node, Current& current) {
    const Binding& binding = *node.pBinding;
    const bool bElsewhere = !binding.bFrameBlank || !binding.bLocationBlank;
    const auto named = [&](std::string_view sIdentity) {
        return !bElsewhere && binding.sIdentity == sIdentity;
    };
    switch (binding.kind) {
    case DataSourceKind::MapLayer:
        current.layer = named("LayerName") ? ofLayer(binding.sIdentityValue) : KnownRows();
        break;
    case DataSourceKind::FeatureLayer:
    case DataSourceKind::LayerInOtherCase:
        current.layer = {};
        break;
    case DataSourceKind::Table:
        current.table = named("TableName") ? ofTable(binding.sIdentityValue) : KnownRows();
        break;
    case DataSourceKind::RelatedTable:
        current.related = named("LayerName") ? ofTable(binding.sIdentityValue) : KnownRows();
        if (named("LayerName") && current.related.pTable == nullptr)
            current.related = ofLayer(binding.sIdentityValue);
        break;
    default:
        break;
    }
}

void RowsWalk::visitRows(const ControlNode& node, Current& current) {
    const bool bSecond = node.pSecond != nullptr && node.pSecond->rows;
    const bool bRows = (node.bRepeated || bSecond) && isOfRows(node.pBinding->kind);
    if (bRows) {
        beginRows(node, current);
        rows_.push_back(rowsOf(node, current));
    }
    at(node, current);
    visitChildren(node, current);
    if (bRows)
        rows_.pop_back();
}

RowsWalk::KnownRows RowsWalk::rowsOf(const ControlNode& node, const Current& current) {
    switch (node.pBinding->kind) {
    case DataSourceKind::Feature:
        return current.layer;
    case DataSourceKind::RelatedTable:
        if (node.pSecond == nullptr || !node.pSecond->rows)
            return {};
        return node.pSecond->rows->sRelationship.empty() ? current.related : related(node);
    default:
        return current.table;
    }
}

/// By the node's relationship class.
RowsWalk::KnownRows RowsWalk::related(const ControlNode& node) {
    if (rows_.empty() || rows_.back().pTable == nullptr)
        return {};
    try {
        return rowsOfTable(follow(index_.map(), *node.pSecond->rows, *rows_.back().pTable).pTable);
    } catch (const Failure& failure) {
        cannotFollow(node, failure);
        return {};
    }
}

RowsWalk::KnownRows RowsWalk::ofLayer(std::string_view sName) {
    return known(layers_, sName, [&]() -> host::GisTablePtr {
        const auto pLayer = index_.map() == nullptr
                                ? nullptr
                                : std::dynamic_pointer_cast<host::GisFeatureLayer>(index_.findLayer(sName));
        return pLayer == nullptr ? nullptr : pLayer->featureClass();
    });
}

RowsWalk::KnownRows RowsWalk::ofTable(std::string_view sName) {
    return known(tables_, sName, [&] { return index_.map() == nullptr ? nullptr : index_.findTable(sName); });
}

} // namespace halvane
