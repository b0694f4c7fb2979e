// From the words of a control node to an object of the host.

#include "base/Text.h"
#include "host/Application.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"
#include "host/Workspace.h"
#include "oracle/Interpreter.h"

#include <algorithm>

namespace halvane::oracle {

using host::GisFeatureLayer;
using host::GisGroupLayer;
using host::GisLayerPtr;

namespace {

bool same(std::string_view sLeft, std::string_view sRight) {
    return upperCase(sLeft) == upperCase(sRight);
}

std::shared_ptr<GisFeatureLayer> asFeatureLayer(const GisLayerPtr& pLayer) {
    auto pFeatureLayer = std::dynamic_pointer_cast<GisFeatureLayer>(pLayer);
    if (pLayer != nullptr && pFeatureLayer == nullptr)
        throw Failure::of(FailureNumber::TypeMismatch);
    return pFeatureLayer;
}

host::GisFeatureClassPtr classOf(GisFeatureLayer& layer) {
    auto pClass = layer.featureClass();
    if (pClass == nullptr)
        throw Failure(FailureNumber::ObjectVariableNotSet, "the layer has no feature class");
    return pClass;
}

host::GisWorkspacePtr needed(host::GisWorkspacePtr pWorkspace) {
    if (pWorkspace == nullptr)
        throw Failure(FailureNumber::ObjectVariableNotSet,
                      "there is no workspace: no layer is current and no data location could be opened");
    return pWorkspace;
}

GisLayerPtr memberNamed(const GisGroupLayer& group, const std::string& sName) {
    for (std::int32_t i = 0; i < group.layerCount(); ++i) {
        auto pMember = group.layer(i);
        if (pMember != nullptr && same(pMember->name(), sName))
            return pMember;
    }
    return nullptr;
}

template<class Kind>
ObjectPtr topLayerOfKind(const host::GisMap& map, const std::string& sName) {
    for (std::int32_t i = 0; i < map.layerCount(); ++i) {
        auto pLayer = std::dynamic_pointer_cast<Kind>(map.layer(i));
        if (pLayer != nullptr && same(pLayer->name(), sName))
            return pLayer;
    }
    return nullptr;
}

} // namespace

Value Interpreter::resolve(const Attributes& attributes) {
    const Tag* const pTagBefore = pTag_;
    Value result = resolve(attributes.at("DataSource"), attributes.at("Identity"),
                           attributes.at("IdentityValue"), attributes.at("DataLocation"));
    noteResolution(attributes, result, pTagBefore);
    return result;
}

void Interpreter::noteResolution(const Attributes& attributes, const Value& result, const Tag* pTagBefore) {
    const auto* const pObject = std::get_if<ObjectPtr>(&result);
    const Resolved now{pObject == nullptr ? nullptr : *pObject, pLayer_};
    Resolved& last = lastByNode_[aActive_.back()];
    if (last.pResult != nullptr) {
        if (now.pResult == last.pResult && attributes.at("Identity") == "TagName" && pTag_ != pTagBefore)
            noteTurn("the same layer by its tag after another tag");
        if (now.pResult != nullptr && now.pResult != last.pResult && now.pLayer != last.pLayer)
            noteTurn("another object since another layer is current");
        if (now.pResult == nullptr)
            noteTurn("nothing where there was an object before");
    }
    last = now;
}

Value Interpreter::resolve(const std::string& sKind, const std::string& sIdentity,
                           const std::string& sIdentityValue, const std::string& sLocation) {
    Value result;
    bResolving_ = !trimBlanks(sKind).empty();
    procedure(*aActive_.back(), [&] {
        if (ObjectPtr pFound = resolveKind(sKind, sIdentity, sIdentityValue, sLocation))
            result = std::move(pFound);
    });
    bResolving_ = false;
    return result;
}

ObjectPtr Interpreter::resolveKind(const std::string& sKind, const std::string& sIdentity,
                                   const std::string& sName, const std::string& sLocation) {
    if (sKind == "Map") {
        if (pMapDoc_ == nullptr)
            return nullptr;
        if (!trimBlanks(sName).empty())
            return mapNamed(sName);
        return pShownMap_ != nullptr ? pShownMap_ : pMapDoc_->focusMap();
    }
    if (sKind == "SubType")
        return pLayer_ == nullptr ? nullptr : classOf(*pLayer_)->subtypes();
    if (sKind == "FeatureLayer" || sKind == "MapLayer")
        return resolveLayer(sKind, sIdentity, sName, sLocation);
    if (sKind == "TinLayer" || sKind == "RasterLayer") {
        if (pMap_ == nullptr || (sIdentity != "LayerName" && sIdentity != "TagName"))
            return nullptr;
        const std::string sSought = sIdentity == "TagName" ? layerNameOfTag(sName) : sName;
        return sKind == "TinLayer" ? topLayerOfKind<host::GisTinLayer>(*pMap_, sSought)
                                   : topLayerOfKind<host::GisRasterLayer>(*pMap_, sSought);
    }
    if (sKind == "FeatureTable" || sKind == "Feature")
        return pLayer_ == nullptr ? nullptr : pLayer_->featureClass();
    if (sKind == "Table")
        return resolveTable(sIdentity, sName, sLocation, false);
    if (sKind == "RelatedTable")
        return resolveTable(sIdentity, sName, sLocation, true);
    if (sKind == "Relationship")
        return needed(workspaceOfLayerOrLocation(sLocation))->relationshipClasses();
    if (sKind == "WorkspaceDomain")
        return needed(workspaceOfLayerOrLocation(sLocation))->domainsRole();
    if (sKind == "Workspace")
        return workspaceOfLayerOrLocation(sLocation);
    if (sKind == "TinWorkspace") {
        if (pTin_ == nullptr)
            return nullptr;
        const auto pDataset = pTin_->dataset();
        if (pDataset == nullptr)
            throw Failure(FailureNumber::ObjectVariableNotSet, "the TIN layer has no dataset");
        return pDataset->workspace();
    }
    return nullptr;
}

ObjectPtr Interpreter::resolveLayer(const std::string& sKind, const std::string& sIdentity,
                                    const std::string& sName, const std::string& sLocation) {
    if (sIdentity == "TagName") {
        const std::string sTagged = layerNameOfTag(sName);
        pTag_ = tagNamed(sName);
        if (pMap_ == nullptr)
            return nullptr;
        return asFeatureLayer(layerNamed(sTagged.empty() ? sName : sTagged));
    }
    if (sIdentity != "LayerName")
        return nullptr;
    if (sKind == "MapLayer" && pMap_ != nullptr)
        return asFeatureLayer(layerNamed(sName));
    auto pClass = needed(openWorkspace(sLocation))->openFeatureClass(sName);
    noteTurn("a layer from disk");
    auto pLayer = setting_.pHost->newFeatureLayer();
    pLayer->setFeatureClass(pClass);
    return pLayer;
}

ObjectPtr Interpreter::resolveTable(const std::string& sIdentity, const std::string& sName,
                                    const std::string& sLocation, bool bRelated) {
    if (sIdentity != "TagName" && sIdentity != (bRelated ? "LayerName" : "TableName"))
        return nullptr;
    if (pMap_ != nullptr) {
        const std::string sSought = sIdentity == "TagName" ? layerNameOfTag(sName) : sName;
        for (std::int32_t i = 0; i < pMap_->standaloneTableCount(); ++i) {
            auto pTable = pMap_->standaloneTable(i);
            if (pTable != nullptr && same(pTable->datasetName(), sSought))
                return pTable;
        }
        if (bRelated) {
            const auto pLayer = asFeatureLayer(layerNamed(sName));
            if (pLayer != nullptr && pLayer->asTable() != nullptr)
                return pLayer->asTable();
        }
    }
    const auto pWorkspace = openWorkspace(sLocation);
    return pWorkspace == nullptr || sName.empty() ? nullptr : pWorkspace->openTable(sName);
}

host::GisMapPtr Interpreter::mapNamed(const std::string& sName) {
    host::GisMapPtr pFound;
    procedure(*aActive_.back(), [&] {
        for (std::int32_t i = 0; pMapDoc_ != nullptr && i < pMapDoc_->mapCount() && pFound == nullptr; ++i) {
            const auto pMap = pMapDoc_->map(i);
            if (pMap != nullptr && same(pMap->name(), sName))
                pFound = pMap;
        }
    });
    return pFound;
}

/// A top-level layer of that name; else the member of the last group that has one. "Group:Member" finds the
/// member in the last group of that name.
GisLayerPtr Interpreter::layerNamed(const std::string& sName) const {
    const auto colon = sName.find(':');
    const bool bInGroup = colon != std::string::npos;
    const std::string sGroup = sName.substr(0, colon);
    std::string sMember = bInGroup ? sName.substr(colon + 1) : sName;
    sMember = sMember.substr(0, sMember.find(':'));
    GisLayerPtr pRemembered;
    for (std::int32_t i = 0; i < pMap_->layerCount(); ++i) {
        const auto pLayer = pMap_->layer(i);
        const auto pGroup = std::dynamic_pointer_cast<GisGroupLayer>(pLayer);
        if (pGroup != nullptr && (!bInGroup || same(pGroup->name(), sGroup))) {
            if (auto pMember = memberNamed(*pGroup, sMember))
                pRemembered = pMember;
        }
        if (!bInGroup && pLayer != nullptr && same(pLayer->name(), sName))
            return pLayer;
    }
    return pRemembered;
}

/// Upper-cased, as the second document's names are when they are collected.
std::string Interpreter::layerNameOfTag(const std::string& sTag) const {
    for (const Tag& tag : setting_.aTags) {
        if (same(tag.sTagName, sTag))
            return upperCase(tag.sAlias);
    }
    return {};
}

const Tag* Interpreter::tagNamed(const std::string& sTag) const {
    const auto found = std::find_if(setting_.aTags.begin(), setting_.aTags.end(),
                                    [&](const Tag& tag) { return same(tag.sTagName, sTag); });
    return found == setting_.aTags.end() ? nullptr : &*found;
}

/// Nothing for what cannot be opened, and for connection files always.
host::GisWorkspacePtr Interpreter::openWorkspace(const std::string& sPath) const {
    const std::string sUpper = upperCase(sPath);
    const auto has = [&](const char* sPart) { return sUpper.find(sPart) != std::string::npos; };
    if (has(".SDE"))
        return nullptr;
    const auto kind = has(".MDB")   ? host::WorkspaceFactoryKind::LocalDatabase
                      : has("\\\\") ? host::WorkspaceFactoryKind::Share
                                    : host::WorkspaceFactoryKind::Default;
    try {
        const auto pProperties = setting_.pHost->newPropertySet();
        pProperties->setProperty("DATABASE", sPath);
        return setting_.pHost->newWorkspaceFactory(kind)->open(*pProperties, 0);
    } catch (const Failure&) {
        return nullptr;
    }
}

host::GisWorkspacePtr Interpreter::workspaceOfLayerOrLocation(const std::string& sLocation) const {
    return pLayer_ != nullptr ? classOf(*pLayer_)->workspace() : openWorkspace(sLocation);
}

// ---- Current objects ----

void Interpreter::keepObject(const std::string& sKey, ObjectPtr pObject) {
    if (pObject == nullptr)
        return;
    aObjects_.erase(std::remove_if(aObjects_.begin(), aObjects_.end(),
                                   [&](const auto& entry) { return entry.first == sKey; }),
                    aObjects_.end());
    aObjects_.emplace_back(sKey, std::move(pObject));
}

/// A kind that resolved to nothing has no current object any more.
void Interpreter::keep(const std::string& sKind, const Value& result) {
    if (sKind == "Map") {
        pMap_ = objectAs<host::GisMap>(result);
        keepObject("DataFrame", pMap_);
    } else if (sKind == "FeatureLayer" || sKind == "MapLayer") {
        pLayer_ = objectAs<GisFeatureLayer>(result);
        // Where the class cannot be read, the walk ends here: class and filed objects are those from before.
        pClass_ = pLayer_ == nullptr ? nullptr : pLayer_->featureClass();
        keepObject("FeatureLayer", pLayer_);
        keepObject("FeatureClass", pClass_);
    } else if (sKind == "Workspace" || sKind == "TinWorkspace") {
        pWorkspace_ = objectAs<host::GisWorkspace>(result);
        keepObject("Workspace", pWorkspace_);
    } else if (sKind == "Table") {
        pTable_ = objectAs<host::GisTable>(result);
        keepObject("Table", pTable_);
    } else if (sKind == "RelatedTable") {
        pRelatedTable_ = objectAs<host::GisTable>(result);
        keepObject("RelatedTable", pRelatedTable_);
    } else if (sKind == "TinLayer") {
        pTin_ = objectAs<host::GisTinLayer>(result);
        keepObject("TinLayer", pTin_);
    } else if (sKind == "RasterLayer") {
        pRaster_ = objectAs<host::GisRasterLayer>(result);
    }
}

} // namespace halvane::oracle
