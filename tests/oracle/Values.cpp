// One value of a leaf.

#include "base/Conversions.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "host/Application.h"
#include "host/Domains.h"
#include "host/IExternalProcessor.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/SpatialReference.h"
#include "host/Tables.h"
#include "host/Workspace.h"
#include "oracle/Interpreter.h"

#include <optional>
#include <set>

namespace halvane::oracle {

namespace {

bool same(std::string_view sLeft, std::string_view sRight) {
    return upperCase(sLeft) == upperCase(sRight);
}

std::string beforeFirstDot(const std::string& sText) {
    return sText.substr(0, sText.find('.'));
}

} // namespace

std::int32_t Interpreter::placesOf(const std::string& sText) {
    return isNumeric(sText) ? toInt32(sText) : 0;
}

std::string Interpreter::formatted(double dValue, std::int32_t lPlaces) {
    if (const auto oText = numberText(dValue, lPlaces))
        return *oText;
    std::string sText;
    procedure(*aActive_.back(), [&] {
        const auto pFormat = setting_.pHost->newNumericFormat();
        pFormat->configure({1, 0, 15, lPlaces == 0 ? 15 : lPlaces, 0, 0, 0});
        sText = pFormat->valueToText(dValue);
    });
    return sText;
}

/// A field that is not there reads as "", and so does null.
std::string Interpreter::fieldText(const host::GisRow& row, const std::string& sIdentity,
                                   const std::string& sName, std::int32_t lPlaces) {
    std::int32_t lField = -1;
    if (sIdentity == "TagName") {
        std::string sAlias;
        if (pTag_ != nullptr) {
            for (const auto& [sTagName, sFieldAlias] : pTag_->aFields) {
                if (same(sTagName, sName)) {
                    sAlias = sFieldAlias;
                    break;
                }
            }
        }
        noteTurn("a field by its tag");
        lField = row.fields().findFieldByAliasName(sAlias);
    } else {
        lField = row.fields().findField(sName);
    }
    if (lField < 0)
        return {};
    const ValueView value = row.value(lField);
    const std::int32_t lType = row.fields().field(lField).typeCode();
    const bool bFloating = lType == 2 || lType == 3;
    if (isNull(value))
        return {};
    if (const auto oName = codeName(row, lField))
        return *oName;
    if (const auto oText = bFloating ? std::nullopt : formattedField(row, lField))
        return *oText;
    return bFloating ? formatted(numberOf(value), lPlaces) : toText(value);
}

/// The node's own attributes lie over those handed in.
void Interpreter::exportValue(Node node, OutputNode* pOut, const Attributes& attributes,
                              const host::GisRowPtr& pRow, const host::GisRowPtr& pRecord) {
    procedure(node, [&] {
        const Leaf leaf{node, pOut, merged(node, &attributes), pRow, pRecord};
        if (hasText(node)) {
            writeLeafText(leaf);
            return;
        }
        if (readsThing(leaf.attributes)) {
            writeThing(leaf);
            return;
        }
        if (readsRow(leaf.attributes) && pRow != nullptr) {
            noteTurn("a leaf that reads the row at hand");
            writeFeatureValue(leaf);
            return;
        }
        const std::string& sKind = leaf.attributes.at("DataSource");
        static const std::set<std::string> bound{
            "Map",   "FeatureLayer", "MapLayer",     "Workspace", "TinWorkspace",
            "Table", "RelatedTable", "FeatureTable", "TinLayer",  "RasterLayer"};
        // A record's field is no table's name: the record's table stays.
        const bool bField = sKind == "Table" && pRecord != nullptr;
        if (bound.count(sKind) != 0 && !bField)
            keep(sKind, resolve(leaf.attributes));
        writeLeaf(leaf);
    });
}

void Interpreter::write(const Leaf& leaf, const std::string& sValue) {
    if (leaf.node.targetsAttribute()) {
        noteTurn("a value in an attribute");
        tree_.fillAttribute(leaf.pOut, leaf.node.outputName(), sValue);
    } else if (omits(leaf.node, "Self")) {
        // Behind what the element around holds.
        tree_.appendText(leaf.pOut, sValue);
    } else {
        tree_.setText(leaf.pOut, sValue);
    }
    noteWritten(leaf.attributes.at("DataSource"), sValue);
}

void Interpreter::writeLeaf(const Leaf& leaf) {
    const std::string& sKind = leaf.attributes.at("DataSource");
    const std::string sProperty = upperCase(leaf.attributes.at("DataProperty"));
    const std::string& sName = leaf.attributes.at("IdentityValue");
    const std::string& sIdentity = leaf.attributes.at("Identity");
    const auto places = [&] { return placesOf(leaf.attributes.at("DecimalPlace")); };
    if (sKind == "External") {
        writeExternal(leaf);
    } else if (sKind == "Time") {
        write(leaf, dateText(setting_.pHost->today()).value_or(toText(ValueView(setting_.pHost->today()))));
    } else if (sKind == "Map") {
        writeMapValue(leaf);
    } else if (sKind == "SubType") {
        SubtypeState shared;
        if (pClass_ != nullptr)
            exportSubtypes(pClass_, pClass_->subtypes(), leaf.node, leaf.pOut, leaf.attributes, shared);
    } else if (sKind == "Field") {
        if (pClass_ != nullptr)
            exportFields(pClass_, leaf.node, leaf.pOut);
    } else if (same(sKind, "MapLayer") || same(sKind, "FeatureLayer")) {
        writeLayerValue(leaf);
    } else if (sKind == "TinLayer") {
        if (pTin_ != nullptr && sProperty == "LAYERNAME")
            write(leaf, pTin_->name());
    } else if (sKind == "RasterLayer") {
        if (pRaster_ != nullptr && sProperty == "LAYERNAME")
            write(leaf, pRaster_->name());
        else if (pRaster_ != nullptr && sProperty == "PATH")
            write(leaf, rasterFolder());
    } else if (sKind == "Workspace") {
        writeWorkspaceValue(leaf);
    } else if (sKind == "TinWorkspace") {
        if (pWorkspace_ != nullptr && sProperty == "PATH")
            write(leaf, pWorkspace_->pathName());
    } else if (sKind == "RasterWorkspace") {
        if (pRaster_ != nullptr && sProperty == "PATH")
            write(leaf, rasterFolder());
    } else if (sKind == "Record" || sKind == "Table") {
        if (pTable_ != nullptr && sProperty == "TABLENAME")
            write(leaf, pTable_->datasetName());
        else if (pTable_ != nullptr && leaf.pRecord != nullptr)
            write(leaf, fieldText(*leaf.pRecord, sIdentity, sName, places()));
        else if (pTable_ != nullptr)
            (void)places(); // asked for, although there is no record to write
    } else if (sKind == "FeatureTable" || sKind == "Feature") {
        writeFeatureValue(leaf);
    } else if (sKind == "RelatedRecord" || sKind == "RelatedTable") {
        writeRelated(leaf);
    }
}

void Interpreter::writeFeatureValue(const Leaf& leaf) {
    const std::string& sName = leaf.attributes.at("IdentityValue");
    if (leaf.pRow == nullptr)
        return;
    if (same(sName, "OBJECTID") || same(sName, "OID"))
        write(leaf, std::to_string(leaf.pRow->objectId()));
    else
        write(leaf, fieldText(*leaf.pRow, leaf.attributes.at("Identity"), sName,
                              placesOf(leaf.attributes.at("DecimalPlace"))));
}

void Interpreter::writeLayerValue(const Leaf& leaf) {
    const std::string sProperty = leaf.attributes.at("DataProperty");
    if (pLayer_ == nullptr)
        return;
    if (same(sProperty, "LayerName")) {
        write(leaf, pLayer_->name());
    } else if (same(sProperty, "FeatureCount")) {
        const auto pClass = pLayer_->featureClass();
        if (pClass == nullptr)
            throw Failure(FailureNumber::ObjectVariableNotSet, "the layer has no feature class");
        write(leaf, std::to_string(pClass->featureCount()));
    } else if (sProperty.find('.') != std::string::npos &&
               same(beforeFirstDot(sProperty), "SPATIALREFERENCE")) {
        exportSpatialReference(leaf.node, leaf.pOut);
    }
}

void Interpreter::writeMapValue(const Leaf& leaf) {
    const std::string sProperty = leaf.attributes.at("DataProperty");
    if (pMap_ == nullptr)
        return;
    if (sProperty.find('.') == std::string::npos)
        throw Failure::of(FailureNumber::InvalidProcedureCall);
    if (same(beforeFirstDot(sProperty), "SPATIALREFERENCE"))
        exportSpatialReference(leaf.node, leaf.pOut);
}

void Interpreter::writeWorkspaceValue(const Leaf& leaf) {
    const std::string sProperty = leaf.attributes.at("DataProperty");
    static const std::vector<std::string> types{"vemiFileSystemWorkspace", "vemiLocalDatabaseWorkspace",
                                                "vemiRemoteDatabaseWorkspace"};
    if (pWorkspace_ == nullptr) {
        write(leaf, "vemiLocalDatabaseWorkspace");
    } else if (same(sProperty, "Path")) {
        write(leaf, pWorkspace_->pathName());
    } else if (same(sProperty, "WorkspaceType")) {
        const std::int32_t lType = pWorkspace_->typeCode();
        if (lType >= 0 && lType <= 2)
            write(leaf, types[static_cast<std::size_t>(lType)]);
    }
}

std::string Interpreter::rasterFolder() const {
    const std::string sPath = pRaster_->filePath();
    const auto last = sPath.rfind(setting_.pHost->pathSeparator());
    return last == std::string::npos ? std::string() : sPath.substr(0, last + 1);
}

std::string Interpreter::processed(const std::string& sProgId, bool& bIsProcessor) {
    const auto pComponent = setting_.pHost->createComponent(sProgId);
    const auto pProcessor = std::dynamic_pointer_cast<IExternalProcessor>(pComponent);
    bIsProcessor = pProcessor != nullptr;
    if (!bIsProcessor)
        return {};
    dCollection dObjects;
    for (const auto& [sKey, pObject] : aObjects_)
        dObjects.Add(pObject, sKey);
    return pProcessor->Process(dObjects);
}

void Interpreter::writeExternal(const Leaf& leaf) {
    bool bIsProcessor = false;
    const std::string sValue = processed(leaf.attributes.at("IdentityValue"), bIsProcessor);
    if (bIsProcessor)
        write(leaf, sValue);
}

void Interpreter::writeRelated(const Leaf& leaf) {
    const std::string& sLink = leaf.attributes.at("LinkField");
    if (sLink.empty() || leaf.pRow == nullptr || pRelatedTable_ == nullptr)
        return;
    const std::int32_t lLink = leaf.pRow->fields().findField(sLink);
    if (lLink < 0)
        return;
    const std::string sQuote = leaf.pRow->fields().field(lLink).typeCode() == 4 ? "'" : "";
    host::GisQueryFilter filter{sLink + "=" + sQuote + toText(leaf.pRow->value(lLink)) + sQuote};
    const auto pCursor = pRelatedTable_->search(&filter);
    bool bFirst = true;
    while (const auto pRelated = pCursor->nextRow()) {
        const std::string sValue = fieldText(*pRelated, "", leaf.attributes.at("IdentityValue"),
                                             placesOf(leaf.attributes.at("DecimalPlace")));
        if (bFirst) {
            write(leaf, sValue);
        } else {
            noteTurn("a further related row");
            OutputNode* const pElement = newElement(leaf.node, leaf.node.outputName());
            tree_.setText(pElement, sValue);
            tree_.append(leaf.pOut->pParent, pElement);
        }
        bFirst = false;
    }
}

// ---- Spatial references ----

/// Here the data location sends a value to an attribute, not the target; but that of a thing gone over goes
/// where the leaf targets.
void Interpreter::writeReference(Node node, OutputNode* pOut, const std::string& sValue) {
    if (bOfThing_ ? node.targetsAttribute() : node.get("DataLocation") == "Attribute")
        tree_.fillAttribute(pOut, node.outputName(), sValue);
    else if (omits(node, "Self"))
        tree_.appendText(pOut, sValue);
    else
        tree_.setText(pOut, sValue);
    noteWritten("SPATIALREFERENCE", sValue);
}

namespace {

/// @throws Failure when the text has fewer characters.
std::string withoutFirst(const std::string& sText, std::size_t nCharacters) {
    std::size_t nByte = 0;
    for (; nCharacters > 0; --nCharacters) {
        if (nByte >= sText.size())
            throw Failure::of(FailureNumber::InvalidProcedureCall);
        ++nByte;
        while (nByte < sText.size() && (static_cast<unsigned char>(sText[nByte]) & 0xC0U) == 0x80)
            ++nByte;
    }
    return sText.substr(nByte);
}

std::size_t charactersIn(std::string_view sText) {
    std::size_t nCount = 0;
    for (const char c : sText)
        nCount += (static_cast<unsigned char>(c) & 0xC0U) == 0x80 ? 0U : 1U;
    return nCount;
}

struct DescriptionLine {
    std::string sProperty; ///< "" for a line without a keyword
    std::string sValue;
};

DescriptionLine readLine(const std::string& sLine) {
    const auto has = [&](const char* sWord) { return sLine.find(sWord) != std::string::npos; };
    const auto cut = [&](const char* sProperty, const char* sWord, std::size_t nCut) {
        const auto position = sLine.find(sWord);
        const std::size_t nPosition =
            position == std::string::npos ? 0 : charactersIn(std::string_view(sLine).substr(0, position)) + 1;
        return DescriptionLine{sProperty, std::string(trimBlanks(withoutFirst(sLine, nPosition + nCut)))};
    };
    if (has("Projection"))
        return cut("PROJECTION", "Projection", 10);
    if (has("Zone"))
        return cut("ZONE", "zone", 4);
    if (has("Datum"))
        return cut("DATUM", "Datum", 5);
    if (has("Units") && !has("Zunits"))
        return cut("UNITS", "Units", 5);
    if (has("Fipszone"))
        return cut("FIPSZONE", "Fipszone", 7);
    if (has("Spheroid"))
        return cut("SPHEROID", "Spheroid", 7);
    if (has("Zunits"))
        return cut("ZUNITS", "Zunits", 5);
    if (has("Xshift"))
        return cut("XSHIFT", "Xshift", 5);
    if (has("Yshift"))
        return cut("YSHIFT", "Yshift", 5);
    if (has("Parameters"))
        return cut("PARAMETERS", "Parameters", 9);
    return {};
}

struct LastValue {
    std::optional<std::string> sValue;
    std::optional<Failure> failure; ///< of the line behind it
};

/// Of the lines of a description that hold what is asked for, up to one that cannot be read.
LastValue lastValue(const std::string& sDescription, const std::string& sAsked) {
    LastValue last;
    std::string sRest = sDescription;
    try {
        for (bool bMore = true; bMore;) {
            const auto end = sRest.find('\n');
            const DescriptionLine line = readLine(sRest.substr(0, end));
            if (!line.sProperty.empty() && sAsked == "SPATIALREFERENCE." + line.sProperty)
                last.sValue = line.sValue;
            bMore = end != std::string::npos;
            sRest = bMore ? sRest.substr(end + 1) : std::string();
        }
    } catch (const Failure& failure) {
        last.failure = failure;
    }
    return last;
}

std::map<std::string, std::string> domainNumbers(const host::GisSpatialReference& reference) {
    std::map<std::string, std::string> texts;
    const auto add = [&](const char* sName, bool bThere, double dValue) {
        texts[sName] = bThere ? doubleText(dValue) : std::string();
    };
    const auto oXy = reference.xyDomain();
    const auto xy = oXy.value_or(host::XyDomain{});
    add("XMIN", oXy.has_value(), xy.dXMin);
    add("XMAX", oXy.has_value(), xy.dXMax);
    add("YMIN", oXy.has_value(), xy.dYMin);
    add("YMAX", oXy.has_value(), xy.dYMax);
    add("FALSEX", oXy.has_value(), xy.dFalseX);
    add("FALSEY", oXy.has_value(), xy.dFalseY);
    add("XYSCALE", oXy.has_value(), xy.dScale);
    const auto oM = reference.mDomain();
    const auto m = oM.value_or(host::MeasureDomain{});
    add("MMIN", oM.has_value(), m.dMin);
    add("MMAX", oM.has_value(), m.dMax);
    add("FALSEM", oM.has_value(), m.dFalseOrigin);
    add("MSCALE", oM.has_value(), m.dScale);
    const auto oZ = reference.zDomain();
    const auto z = oZ.value_or(host::MeasureDomain{});
    add("ZMIN", oZ.has_value(), z.dMin);
    add("ZMAX", oZ.has_value(), z.dMax);
    add("FALSEZ", oZ.has_value(), z.dFalseOrigin);
    add("ZSCALE", oZ.has_value(), z.dScale);
    return texts;
}

} // namespace

void Interpreter::exportSpatialReference(Node node, OutputNode* pOut) {
    procedure(node, [&] {
        const std::string sAsked = upperCase(node.get("DataProperty"));
        const auto pReference = pMap_ != nullptr     ? pMap_->spatialReference()
                                : pClass_ != nullptr ? pClass_->spatialReference()
                                : pLayer_ != nullptr ? pLayer_->spatialReference()
                                                     : nullptr;
        if (pReference == nullptr)
            return;
        for (const auto& [sName, sText] : domainNumbers(*pReference)) {
            if (sAsked == "SPATIALREFERENCE." + sName)
                writeReference(node, pOut, sText);
        }
        const LastValue last = lastValue(pReference->description(), sAsked);
        if (last.sValue)
            writeReference(node, pOut, *last.sValue);
        if (last.failure)
            throw Failure(*last.failure);
    });
}

} // namespace halvane::oracle
