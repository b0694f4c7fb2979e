#include "engine/control/ControlSettings.h"

#include "base/Text.h"
#include "engine/ModExporter.h"

#include <functional>
#include <utility>

namespace halvane {

namespace {

std::string_view inherited(std::string_view sOwn, std::string_view sOfParent) {
    return sOwn.empty() ? sOfParent : sOwn;
}

bool sameBinding(const ControlAttributes& own) {
    return own.sDataSource.empty() && own.sDataFrame.empty() && own.sIdentity.empty() &&
           own.sIdentityValue.empty() && own.sDataLocation.empty();
}

bool inheritsAll(const ControlAttributes& own) {
    return sameBinding(own) && own.sDataProperty.empty() && own.sEntries.empty() && own.sTarget.empty() &&
           own.sLinkField.empty() && own.sMeasureField.empty() && own.sDecimalPlace.empty();
}

/// Whether a leaf's kind reads the row at hand: a feature's field, or a record's while the table's name is
/// not asked for.
bool namesField(const MergedSettings& leaf) {
    switch (rowOf(leaf.pBinding->kind).rowUse) {
    case RowUse::Feature:
        return !leaf.bNamesObjectId;
    case RowUse::Record:
        return !equalIgnoringCase(leaf.attributes.sDataProperty, "TableName");
    case RowUse::None:
        break;
    }
    return false;
}

/// Names of one document lie at one place each.
std::size_t hashOf(dom::Node oElement) {
    std::size_t nHash = 0;
    for (const dom::Node oAttribute : oElement.attributes()) {
        nHash = nHash * 31 + std::hash<const char*>{}(oAttribute.nodeName().data());
        nHash = nHash * 31 + std::hash<std::string_view>{}(oAttribute.nodeValue());
    }
    return nHash;
}

bool sayTheSame(dom::Node oLeft, dom::Node oRight) {
    const auto left = oLeft.attributes();
    const auto right = oRight.attributes();
    auto pLeft = left.begin();
    auto pRight = right.begin();
    for (; pLeft != left.end() && pRight != right.end(); ++pLeft, ++pRight)
        if ((*pLeft).nodeName() != (*pRight).nodeName() || (*pLeft).nodeValue() != (*pRight).nodeValue())
            return false;
    return pLeft == left.end() && pRight == right.end();
}

} // namespace

ControlAttributes mergedAttributes(const ControlAttributes& own, const ControlAttributes& parent) {
    return {inherited(own.sDataSource, parent.sDataSource),
            inherited(own.sDataFrame, parent.sDataFrame),
            inherited(own.sDataProperty, parent.sDataProperty),
            inherited(own.sIdentity, parent.sIdentity),
            inherited(own.sIdentityValue, parent.sIdentityValue),
            inherited(own.sEntries, parent.sEntries),
            own.sTarget, // it applies to the one node that declares it, on purpose
            inherited(own.sDataLocation, parent.sDataLocation),
            inherited(own.sLinkField, parent.sLinkField),
            inherited(own.sMeasureField, parent.sMeasureField),
            inherited(own.sDecimalPlace, parent.sDecimalPlace)};
}

OwnSettings::OwnSettings(dom::Node oElement, dom::Document& oOutput)
    : OwnSettings(oElement, ClsXMLNode(oElement), oOutput) {}

OwnSettings::OwnSettings(dom::Node oElement, const ClsXMLNode& record, dom::Document& oOutput)
    : oNode(oElement), attributes(record.attributes()), sTagName(record.TagName()),
      pName(oOutput.findName(sTagName)), decimalPlaces(attributes.sDecimalPlace),
      kind(dataSourceKindOf(attributes.sDataSource)),
      geometryProperty(geometryPropertyOf(attributes.sDataProperty)),
      bTargetsAttribute(attributes.sTarget == "Attribute"), bRepeated(attributes.sEntries == "Multiple"),
      bNamesAttribute(kind == DataSourceKind::FeatureAttributes || kind == DataSourceKind::FeatureTable),
      bInheritsAll(inheritsAll(attributes)) {}

MergedSettings::MergedSettings(const ControlAttributes& merged, const Binding& binding)
    : attributes(merged), pBinding(&binding), decimalPlaces(merged.sDecimalPlace),
      bNamesObjectId(namesObjectId(merged.sIdentityValue)), bNamesField(namesField(*this)) {}

const OwnSettings& ControlSettings::ownOf(dom::Node oElement) {
    const OwnSettings*& pFirst = ownByHash_[hashOf(oElement)];
    for (const OwnSettings* pOwn = pFirst; pOwn != nullptr; pOwn = pOwn->pNext)
        if (sayTheSame(pOwn->oNode, oElement))
            return *pOwn;
    OwnSettings& own = aOwn_.emplace_back(oElement, oOutput_);
    own.pNext = std::exchange(pFirst, &own);
    return own;
}

const MergedSettings& ControlSettings::keep(const ControlAttributes& merged, const Binding& binding) {
    bAsksProcessors_ = bAsksProcessors_ || binding.kind == DataSourceKind::External;
    return aMerged_.emplace_back(merged, binding);
}

const MergedSettings& ControlSettings::merge(const OwnSettings& own, const MergedSettings& parent) {
    if (own.bInheritsAll && parent.attributes.sTarget.empty())
        return parent;
    if (own.pLastParent == &parent)
        return *own.pLastMerged;
    const ControlAttributes merged = mergedAttributes(own.attributes, parent.attributes);
    const Binding& binding = sameBinding(own.attributes) ? *parent.pBinding : aBindings_.emplace_back(merged);
    own.pLastParent = &parent;
    own.pLastMerged = &keep(merged, binding);
    return *own.pLastMerged;
}

const MergedSettings& ControlSettings::merge(const OwnSettings& own, const ControlAttributes& inherited) {
    const ControlAttributes merged = mergedAttributes(own.attributes, inherited);
    return keep(merged, aBindings_.emplace_back(merged));
}

const MergedSettings& ControlSettings::withoutSource(const MergedSettings& merged) {
    ControlAttributes handedDown = merged.attributes;
    handedDown.sDataSource = handedDown.sIdentity = handedDown.sIdentityValue = handedDown.sDataProperty =
        handedDown.sLinkField = {};
    return keep(handedDown, aBindings_.emplace_back(handedDown));
}

const MergedSettings& ControlSettings::handedDown(const MergedSettings& root,
                                                  const ControlAttributes& attributes) {
    return keep(attributes, *root.pBinding);
}

} // namespace halvane
