// Loops over the things of a map.

#include "base/Text.h"
#include "host/Geometry.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"
#include "host/Workspace.h"
#include "oracle/Interpreter.h"

#include <cmath>
#include <functional>

namespace halvane::oracle {

namespace {

/// Depth first, without the groups.
void collectLayers(const host::GisLayerPtr& pLayer, std::vector<host::GisLayerPtr>& aLayers) {
    const auto pGroup = std::dynamic_pointer_cast<host::GisGroupLayer>(pLayer);
    if (pGroup == nullptr) {
        aLayers.push_back(pLayer);
        return;
    }
    for (std::int32_t i = 0; i < pGroup->layerCount(); ++i)
        collectLayers(pGroup->layer(i), aLayers);
}

host::GisSubtypesPtr subtypesOf(const host::GisTablePtr& pTable) {
    const auto pClass = std::dynamic_pointer_cast<host::GisFeatureClass>(pTable);
    return pClass == nullptr ? nullptr : pClass->subtypes();
}

} // namespace

// ---- What is around ----

/// The innermost one of these kinds.
const Interpreter::Thing* Interpreter::thingOf(const std::set<std::string>& kinds) const {
    for (auto thing = aThings_.rbegin(); thing != aThings_.rend(); ++thing)
        if (kinds.contains(thing->sKind))
            return &*thing;
    return nullptr;
}

bool Interpreter::rowsAreWithin(const Thing* pThing) const {
    return pThing == nullptr ? !aRowLoops_.empty() : aRowLoops_.size() > pThing->nRowLoops;
}

host::GisTablePtr Interpreter::tableAtHand() const {
    const Thing* const pThing = thingOf({"Layer", "Table"});
    if (pThing == nullptr)
        return pClass_ != nullptr ? host::GisTablePtr(pClass_) : pTable_;
    if (pThing->sKind == "Table")
        return std::dynamic_pointer_cast<host::GisTable>(pThing->pObject);
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pThing->pObject);
    return pLayer == nullptr ? nullptr : pLayer->featureClass();
}

/// The row that has the field.
const host::GisRow* Interpreter::rowOfField(const Thing& field) const {
    for (auto loop = aRowLoops_.rbegin(); loop != aRowLoops_.rend(); ++loop)
        if (loop->pRow != nullptr && &loop->pRow->fields() == field.pFields)
            return loop->pRow.get();
    return nullptr;
}

host::GisGeometryPtr Interpreter::shapeAtHand() const {
    if (aRowLoops_.empty() || aRowLoops_.back().pRow == nullptr)
        throw Failure(
            FailureNumber::ObjectVariableNotSet,
            "no row is at hand whose shape could be gone over; put the node inside a repeated node of rows");
    return movedShape(*aRowLoops_.back().pRow);
}

// ---- The things of each kind ----

std::vector<Interpreter::Thing> Interpreter::layersOfMap() const {
    std::vector<host::GisLayerPtr> aLayers;
    for (std::int32_t i = 0; pMap_ != nullptr && i < pMap_->layerCount(); ++i)
        collectLayers(pMap_->layer(i), aLayers);
    std::vector<Thing> aThings;
    for (const auto& pLayer : aLayers)
        aThings.push_back({"Layer", pLayer});
    return aThings;
}

std::vector<Interpreter::Thing> Interpreter::tablesOfMap() const {
    std::vector<Thing> aThings;
    for (std::int32_t i = 0; pMap_ != nullptr && i < pMap_->standaloneTableCount(); ++i)
        if (const auto pTable = pMap_->standaloneTable(i))
            aThings.push_back({"Table", pTable});
    return aThings;
}

/// Of the layers, then of the tables, each once.
std::vector<Interpreter::Thing> Interpreter::workspacesOfMap() const {
    std::vector<Thing> aThings;
    std::set<std::string> known;
    const auto add = [&](const host::GisWorkspacePtr& pWorkspace) {
        if (pWorkspace != nullptr && known.insert(pWorkspace->pathName()).second)
            aThings.push_back({"Workspace", pWorkspace});
    };
    for (const Thing& layer : layersOfMap()) {
        const auto pFeatures = std::dynamic_pointer_cast<host::GisFeatureLayer>(layer.pObject);
        const auto pClass = pFeatures == nullptr ? nullptr : pFeatures->featureClass();
        const auto pTin = std::dynamic_pointer_cast<host::GisTinLayer>(layer.pObject);
        const auto pDataset = pTin == nullptr ? nullptr : pTin->dataset();
        add(pClass != nullptr ? pClass->workspace() : pDataset != nullptr ? pDataset->workspace() : nullptr);
    }
    for (const Thing& table : tablesOfMap())
        add(std::dynamic_pointer_cast<host::GisTable>(table.pObject)->workspace());
    return aThings;
}

/// That of the thing, the layer or the table around; else all of the map.
std::vector<Interpreter::Thing> Interpreter::workspacesAtHand() const {
    if (const Thing* const pThing = thingOf({"Workspace"}))
        return {*pThing};
    const auto pTable = tableAtHand();
    if (pTable == nullptr)
        return workspacesOfMap();
    const auto pWorkspace = pTable->workspace();
    return pWorkspace == nullptr ? std::vector<Thing>() : std::vector<Thing>{{"Workspace", pWorkspace}};
}

/// Of the current row, else of the layer, else of the table.
std::vector<Interpreter::Thing> Interpreter::fieldsAtHand() const {
    const bool bRow = rowsAreWithin(thingOf({"Layer", "Table"})) && aRowLoops_.back().pRow != nullptr;
    const auto pTable = bRow ? aRowLoops_.back().pTable : tableAtHand();
    if (!bRow && pTable == nullptr)
        return {};
    const host::GisFields& fields = bRow ? aRowLoops_.back().pRow->fields() : *pTable->fields();
    std::vector<Thing> aThings;
    for (std::int32_t i = 0; i < fields.count(); ++i)
        aThings.push_back({"Field", nullptr, pTable, &fields, i});
    return aThings;
}

/// Of a field those of its subtypes, each name once.
std::vector<Interpreter::Thing> Interpreter::domainsAtHand() const {
    std::vector<Thing> aThings;
    if (!aThings_.empty() && aThings_.back().sKind == "Field") {
        const Thing& field = aThings_.back();
        const auto pSubtypes = subtypesOf(field.pTable);
        const bool bSubtypes = pSubtypes != nullptr && pSubtypes->hasSubtypes();
        std::set<std::string> known;
        for (std::int32_t i = 0; bSubtypes && i < pSubtypes->subtypeCount(); ++i) {
            const auto pDomain =
                pSubtypes->domain(pSubtypes->subtypeCode(i), field.pFields->field(field.lField).name());
            if (pDomain != nullptr && known.insert(pDomain->name()).second)
                aThings.push_back({"Domain", pDomain});
        }
        return aThings;
    }
    for (const Thing& workspace : workspacesAtHand()) {
        const auto pRole = std::dynamic_pointer_cast<host::GisWorkspace>(workspace.pObject)->domainsRole();
        const auto pDomains = pRole == nullptr ? nullptr : pRole->domains();
        while (const auto pDomain = pDomains == nullptr ? nullptr : pDomains->next())
            aThings.push_back({"Domain", pDomain});
    }
    return aThings;
}

std::vector<Interpreter::Thing> Interpreter::verticesAtHand() const {
    const bool bOfPart = !aThings_.empty() && aThings_.back().sKind == "Part";
    const auto pShape = bOfPart ? aThings_.back().pShape : shapeAtHand();
    std::vector<Thing> aThings;
    for (std::int32_t lPart = 0; pShape != nullptr && lPart < pShape->partCount(); ++lPart) {
        if (bOfPart && lPart != aThings_.back().lPart)
            continue;
        for (std::int32_t i = 0; i < pShape->pointCount(lPart); ++i) {
            Thing vertex{"Vertex"};
            vertex.pPoint = pShape->point(lPart, i);
            aThings.push_back(vertex);
        }
    }
    return aThings;
}

std::vector<Interpreter::Thing> Interpreter::thingsOf(const std::string& sKind) {
    std::vector<Thing> aThings;
    if (sKind == "Map") {
        for (std::int32_t i = 0; pMapDoc_ != nullptr && i < pMapDoc_->mapCount(); ++i)
            aThings.push_back({"Map", pMapDoc_->map(i)});
    } else if (sKind == "Layer") {
        aThings = layersOfMap();
    } else if (sKind == "Table") {
        aThings = tablesOfMap();
    } else if (sKind == "Workspace") {
        aThings = workspacesOfMap();
    } else if (sKind == "Field") {
        aThings = fieldsAtHand();
    } else if (sKind == "Domain") {
        aThings = domainsAtHand();
    } else if (sKind == "Vertex") {
        aThings = verticesAtHand();
    } else if (sKind == "Relationship") {
        for (const Thing& workspace : workspacesAtHand()) {
            const auto pClasses =
                std::dynamic_pointer_cast<host::GisWorkspace>(workspace.pObject)->relationshipClasses();
            while (const auto pClass = pClasses == nullptr ? nullptr : pClasses->next())
                aThings.push_back({"Relationship", pClass});
        }
    } else if (sKind == "Code") {
        const Thing* const pAround = thingOf({"Domain"});
        const bool bOfField = !aThings_.empty() && aThings_.back().sKind == "Field";
        std::vector<Thing> aDomains = bOfField             ? domainsAtHand()
                                      : pAround != nullptr ? std::vector<Thing>{*pAround}
                                                           : std::vector<Thing>();
        for (const Thing& domain : aDomains) {
            const auto pDomain = std::dynamic_pointer_cast<host::GisDomain>(domain.pObject);
            for (std::int32_t i = 0; i < pDomain->codeCount(); ++i) {
                Thing code{"Code"};
                code.code = pDomain->code(i);
                aThings.push_back(code);
            }
        }
    } else if (sKind == "Subtype") {
        const auto pSubtypes = subtypesOf(tableAtHand());
        const bool bSubtypes = pSubtypes != nullptr && pSubtypes->hasSubtypes();
        for (std::int32_t i = 0; bSubtypes && i < pSubtypes->subtypeCount(); ++i) {
            Thing subtype{"Subtype", pSubtypes};
            subtype.lSubtype = pSubtypes->subtypeCode(i);
            aThings.push_back(subtype);
        }
    } else if (sKind == "Part") {
        const auto pShape = shapeAtHand();
        for (std::int32_t i = 0; pShape != nullptr && i < pShape->partCount(); ++i) {
            Thing part{"Part"};
            part.pShape = pShape;
            part.lPart = i;
            aThings.push_back(part);
        }
    }
    return aThings;
}

// ---- The loop ----

void Interpreter::makeThingCurrent(const Thing& thing) {
    if (thing.sKind == "Map") {
        pShownMap_ = std::dynamic_pointer_cast<host::GisMap>(thing.pObject);
        pMap_ = pShownMap_;
    } else if (thing.sKind == "Layer") {
        keep("RasterLayer", Value(thing.pObject));
        keep("TinLayer", Value(thing.pObject));
        keep("FeatureLayer", Value(thing.pObject));
    } else if (thing.sKind == "Table" || thing.sKind == "Workspace") {
        keep(thing.sKind, Value(thing.pObject));
    }
}

void Interpreter::writeThings(const Child& child) {
    const Node node = child.node;
    const std::string sKind = node.get("h:ForEach");
    const Attributes attributes = merged(node, child.pParent);
    if (attributes.at("DataSource").empty() || !trimBlanks(attributes.at("DataFrame")).empty())
        bind(attributes, child.pParent);
    const Current before = current();
    std::int64_t nNumber = 0;
    for (Thing& thing : thingsOf(sKind)) {
        thing.nNumber = ++nNumber;
        thing.nRowLoops = aRowLoops_.size();
        noteTurn("h:ForEach=\"" + sKind + "\"");
        aThings_.push_back(thing);
        const struct Again {
            Interpreter& interpreter;
            const Current& before;
            ~Again() {
                interpreter.aThings_.pop_back();
                interpreter.makeCurrent(before);
            }
        } again{*this, before};
        procedure(node, [&] {
            makeThingCurrent(thing);
            writeOne(child);
            tellItem(node);
        });
    }
}

// ---- Leaves that read the thing ----

bool Interpreter::readsThing(const Attributes& attributes) const {
    return !aThings_.empty() && attributes.at("DataSource").empty() && !attributes.at("DataProperty").empty();
}

void Interpreter::writeThing(const Leaf& leaf) {
    const Current before = current();
    const struct Again {
        Interpreter& interpreter;
        const Current& before;
        ~Again() {
            interpreter.makeCurrent(before);
            interpreter.bOfThing_ = false;
        }
    } again{*this, before};
    makeThingCurrent(aThings_.back());
    bOfThing_ = true;
    noteTurn("a leaf that reads a " + aThings_.back().sKind);
    writeThingValue(leaf);
}

void Interpreter::writeThingValue(const Leaf& leaf) {
    const Thing& thing = aThings_.back();
    const std::string sProperty = upperCase(leaf.attributes.at("DataProperty"));
    if (thing.sKind == "Map" && sProperty == "MAPNAME") {
        write(leaf, pMap_->name());
    } else if (thing.sKind == "Map") {
        writeMapValue(leaf);
    } else if (thing.sKind == "Layer") {
        pMap_ = nullptr; // the reference is the layer's own
        writeLayerThing(leaf, thing);
    } else if (thing.sKind == "Table") {
        if (sProperty == "TABLENAME")
            write(leaf, pTable_->datasetName());
    } else if (thing.sKind == "Workspace") {
        writeWorkspaceValue(leaf);
    } else if (thing.sKind != "Part") {
        write(leaf, propertyOf(thing, leaf));
    }
}

void Interpreter::writeLayerThing(const Leaf& leaf, const Thing& thing) {
    const std::string sProperty = upperCase(leaf.attributes.at("DataProperty"));
    const bool bRaster = std::dynamic_pointer_cast<host::GisRasterLayer>(thing.pObject) != nullptr;
    const bool bTin = std::dynamic_pointer_cast<host::GisTinLayer>(thing.pObject) != nullptr;
    if (sProperty == "LAYERTYPE") {
        write(leaf, bRaster ? "Raster" : bTin ? "TIN" : "Feature");
    } else if (sProperty == "GEOMETRYTYPE") {
        write(leaf, pLayer_ == nullptr || pClass_ == nullptr ? "" : shapeTypeText(pClass_->shapeType()));
    } else if (bRaster && sProperty == "PATH") {
        write(leaf, rasterFolder());
    } else if (bRaster || bTin) {
        if (sProperty == "LAYERNAME")
            write(leaf, bRaster ? pRaster_->name() : pTin_->name());
    } else {
        writeLayerValue(leaf);
    }
}

std::string Interpreter::propertyOf(const Thing& thing, const Leaf& leaf) {
    const std::string sProperty = upperCase(leaf.attributes.at("DataProperty"));
    if (thing.sKind == "Field" && sProperty == "FIELDDOMAIN") {
        std::string sNames;
        for (const Thing& domain : domainsAtHand())
            sNames += (sNames.empty() ? "" : ", ") +
                      std::dynamic_pointer_cast<host::GisDomain>(domain.pObject)->name();
        return sNames;
    }
    if (thing.sKind == "Field")
        return fieldProperty(thing.pFields->field(thing.lField), sProperty,
                             std::dynamic_pointer_cast<host::GisFeatureClass>(thing.pTable));
    if (thing.sKind == "Domain")
        return domainProperty(*std::dynamic_pointer_cast<host::GisDomain>(thing.pObject), sProperty);
    if (thing.sKind == "Relationship")
        return relationshipProperty(*std::dynamic_pointer_cast<host::GisRelationshipClass>(thing.pObject),
                                    sProperty);
    if (thing.sKind == "Code")
        return sProperty == "DOMAINCODEVALUE"  ? toText(thing.code.vCode)
               : sProperty == "DOMAINCODENAME" ? thing.code.sName
                                               : std::string();
    if (thing.sKind == "Subtype") {
        const auto pSubtypes = std::dynamic_pointer_cast<host::GisSubtypes>(thing.pObject);
        return sProperty == "SUBTYPENAME"          ? pSubtypes->subtypeName(thing.lSubtype)
               : sProperty == "SUBTYPECODE"        ? std::to_string(thing.lSubtype)
               : sProperty == "SUBTYPEFIELDNAME"   ? pSubtypes->subtypeFieldName()
               : sProperty == "DEFAULTSUBTYPECODE" ? std::to_string(pSubtypes->defaultSubtypeCode())
                                                   : std::string();
    }
    const host::GisPoint& point = *thing.pPoint;
    const double dValue = sProperty == "X" || sProperty == "GEOMETRY.X"         ? point.x()
                          : sProperty == "Y" || sProperty == "GEOMETRY.Y"       ? point.y()
                          : sProperty == "Z" || sProperty == "GEOMETRY.Z"       ? point.z()
                          : sProperty == "M" || sProperty == "GEOMETRY.MEASURE" ? point.m()
                                                                                : std::nan("");
    return number(dValue, placesOf(leaf.attributes.at("DecimalPlace")));
}

} // namespace halvane::oracle
