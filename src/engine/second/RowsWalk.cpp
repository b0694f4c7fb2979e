#include "engine/second/RowsWalk.h"

#include "base/Failure.h"
#include "engine/ModExporter.h"
#include "engine/second/SecondControl.h"
#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"

#include <utility>

namespace halvane {

namespace {

using host::GisFieldsPtr;

/// What is the same afterwards whether something was done or not.
void forgetUnless(RowsWalk::Current& current, const RowsWalk::Current& other) {
    for (const auto pMember :
         {&RowsWalk::Current::pLayer, &RowsWalk::Current::pTable, &RowsWalk::Current::pRelated})
        if (current.*pMember != other.*pMember)
            (current.*pMember).reset();
}

template<class Known, class Find>
GisFieldsPtr known(Known& all, std::string_view sName, const Find& find) {
    const auto place = all.find(sName);
    if (place != all.end())
        return place->second;
    GisFieldsPtr pFields;
    try {
        pFields = find();
    } catch (const Failure&) {
        pFields.reset(); // whoever asks for its rows is told
    }
    return all.emplace(sName, std::move(pFields)).first->second;
}

GisFieldsPtr rowsOf(const ControlNode& node, const RowsWalk::Current& current) {
    switch (node.pBinding->kind) {
    case DataSourceKind::Feature:
        return current.pLayer;
    case DataSourceKind::RelatedTable:
        return node.pSecond != nullptr && node.pSecond->rows && node.pSecond->rows->sRelationship.empty()
                   ? current.pRelated
                   : nullptr;
    default:
        return current.pTable;
    }
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
        current.pLayer = named("LayerName") ? ofLayer(binding.sIdentityValue) : nullptr;
        break;
    case DataSourceKind::FeatureLayer:
    case DataSourceKind::LayerInOtherCase:
        current.pLayer.reset();
        break;
    case DataSourceKind::Table:
        current.pTable = named("TableName") ? ofTable(binding.sIdentityValue) : nullptr;
        break;
    case DataSourceKind::RelatedTable:
        current.pRelated = named("LayerName") ? ofTable(binding.sIdentityValue) : nullptr;
        if (named("LayerName") && current.pRelated == nullptr)
            current.pRelated = ofLayer(binding.sIdentityValue);
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

GisFieldsPtr RowsWalk::ofLayer(std::string_view sName) {
    return known(layers_, sName, [&]() -> GisFieldsPtr {
        const auto pLayer = index_.map() == nullptr
                                ? nullptr
                                : std::dynamic_pointer_cast<host::GisFeatureLayer>(index_.findLayer(sName));
        const auto pClass = pLayer == nullptr ? nullptr : pLayer->featureClass();
        return pClass == nullptr ? nullptr : pClass->fields();
    });
}

GisFieldsPtr RowsWalk::ofTable(std::string_view sName) {
    return known(tables_, sName, [&]() -> GisFieldsPtr {
        const auto pTable = index_.map() == nullptr ? nullptr : index_.findTable(sName);
        return pTable == nullptr ? nullptr : pTable->fields();
    });
}

} // namespace halvane
