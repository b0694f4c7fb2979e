// Writes one property of a spatial reference: a number of its domains, or a part of its description.

#include "host/SpatialReference.h"
#include "base/FindRow.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "engine/ModExporter.h"
#include "host/Domains.h"
#include "host/Layers.h"
#include "host/Tables.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace halvane {

namespace {

/// One call: the property asked for and where its value goes.
struct Request {
    ExportState& state;
    const ControlNode& control;
    const OutputElement& oOutput;
    std::string sProperty; ///< upper-cased
};

/// Here the data location, not the target, sends a value to an attribute. On purpose. A thing that the second
/// edition goes over has its values where their targets are.
bool writesAttribute(const Request& request) {
    if (request.control.bReadsItem)
        return request.control.bTargetsAttribute;
    return request.control.own.sDataLocation == "Attribute";
}

void write(const Request& request, std::string_view sValue) {
    if (writesAttribute(request)) {
        request.oOutput.fillAttribute(request.control.sTagName, sValue);
        return;
    }
    if (request.control.bTargetsAttribute)
        request.state.notice(Notice::ReplacesParentContent, request.sProperty);
    request.oOutput.setText(sValue);
}

/// Of the first that is set, even when it has none: a layer's node takes its map's reference.
host::GisSpatialReferencePtr currentSpatialReference(const ExportState& state) {
    if (state.pMap != nullptr)
        return state.pMap->spatialReference();
    if (state.pFeatureClass != nullptr)
        return state.pFeatureClass->spatialReference();
    return state.pFeatureLayer == nullptr ? nullptr : state.pFeatureLayer->spatialReference();
}

// ---- Numbers ----

struct Domains {
    std::optional<host::XyDomain> xy;
    std::optional<host::MeasureDomain> m;
    std::optional<host::MeasureDomain> z;
};

template<auto pDomain, auto pMember>
std::string domainText(const Domains& domains) {
    const auto& domain = domains.*pDomain;
    return domain.has_value() ? doubleText((*domain).*pMember) : std::string();
}

struct NumericProperty {
    std::string_view sName;
    std::string (*fnText)(const Domains&);
};

using host::MeasureDomain;
using host::XyDomain;
constexpr std::array<NumericProperty, 15> numericProperties{{
    {"SPATIALREFERENCE.XMIN", domainText<&Domains::xy, &XyDomain::dXMin>},
    {"SPATIALREFERENCE.XMAX", domainText<&Domains::xy, &XyDomain::dXMax>},
    {"SPATIALREFERENCE.YMIN", domainText<&Domains::xy, &XyDomain::dYMin>},
    {"SPATIALREFERENCE.YMAX", domainText<&Domains::xy, &XyDomain::dYMax>},
    {"SPATIALREFERENCE.FALSEX", domainText<&Domains::xy, &XyDomain::dFalseX>},
    {"SPATIALREFERENCE.FALSEY", domainText<&Domains::xy, &XyDomain::dFalseY>},
    {"SPATIALREFERENCE.XYSCALE", domainText<&Domains::xy, &XyDomain::dScale>},
    {"SPATIALREFERENCE.MMIN", domainText<&Domains::m, &MeasureDomain::dMin>},
    {"SPATIALREFERENCE.MMAX", domainText<&Domains::m, &MeasureDomain::dMax>},
    {"SPATIALREFERENCE.FALSEM", domainText<&Domains::m, &MeasureDomain::dFalseOrigin>},
    {"SPATIALREFERENCE.MSCALE", domainText<&Domains::m, &MeasureDomain::dScale>},
    {"SPATIALREFERENCE.ZMIN", domainText<&Domains::z, &MeasureDomain::dMin>},
    {"SPATIALREFERENCE.ZMAX", domainText<&Domains::z, &MeasureDomain::dMax>},
    {"SPATIALREFERENCE.FALSEZ", domainText<&Domains::z, &MeasureDomain::dFalseOrigin>},
    {"SPATIALREFERENCE.ZSCALE", domainText<&Domains::z, &MeasureDomain::dScale>},
}};

/// @returns whether the property is a number of a domain.
bool writeNumber(const Request& request, const Domains& domains) {
    const auto* pProperty = findRow(numericProperties, request.sProperty, &NumericProperty::sName);
    if (pProperty == nullptr)
        return false;
    write(request, pProperty->fnText(domains));
    return true;
}

// ---- The description ----

/// A keyword that says what a line of the description holds.
struct LineRule {
    std::string_view sTest;   ///< the line contains it
    std::string_view sButNot; ///< and does not contain this, unless it is ""
    std::string_view sCutAt;  ///< the value follows this text
    std::size_t nCut;         ///< characters of the line dropped beyond the position of sCutAt, from 1
    std::string_view sProperty;
};

// The cuts are uneven on purpose: some take the separator after the keyword, the others leave it to the
// trimming. A zone's line is recognised by "Zone" and cut at "zone", which it usually lacks.
constexpr std::array<LineRule, 10> lineRules{{
    {"Projection", "", "Projection", 10, "SPATIALREFERENCE.PROJECTION"},
    {"Zone", "", "zone", 4, "SPATIALREFERENCE.ZONE"},
    {"Datum", "", "Datum", 5, "SPATIALREFERENCE.DATUM"},
    {"Units", "Zunits", "Units", 5, "SPATIALREFERENCE.UNITS"},
    {"Fipszone", "", "Fipszone", 7, "SPATIALREFERENCE.FIPSZONE"},
    {"Spheroid", "", "Spheroid", 7, "SPATIALREFERENCE.SPHEROID"},
    {"Zunits", "", "Zunits", 5, "SPATIALREFERENCE.ZUNITS"},
    {"Xshift", "", "Xshift", 5, "SPATIALREFERENCE.XSHIFT"},
    {"Yshift", "", "Yshift", 5, "SPATIALREFERENCE.YSHIFT"},
    {"Parameters", "", "Parameters", 9, "SPATIALREFERENCE.PARAMETERS"},
}};

bool contains(std::string_view sText, std::string_view sPart) {
    return sText.find(sPart) != std::string_view::npos;
}

const LineRule* ruleOf(std::string_view sLine) {
    const auto* pRule = std::find_if(lineRules.begin(), lineRules.end(), [&](const LineRule& rule) {
        return contains(sLine, rule.sTest) && (rule.sButNot.empty() || !contains(sLine, rule.sButNot));
    });
    return pRule == lineRules.end() ? nullptr : pRule;
}

/// The text without its first characters (code points, not bytes).
/// @throws Failure InvalidProcedureCall when it has fewer.
std::string_view withoutFirst(std::string_view sText, std::size_t nCharacters) {
    const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    for (; nCharacters > 0; --nCharacters) {
        if (sText.empty())
            throw Failure::of(FailureNumber::InvalidProcedureCall);
        sText.remove_prefix(1);
        while (!sText.empty() && isContinuation(sText.front()))
            sText.remove_prefix(1);
    }
    return sText;
}

std::string_view valueOf(std::string_view sLine, const LineRule& rule) {
    const auto position = sLine.find(rule.sCutAt);
    if (position == std::string_view::npos)
        return trimBlanks(withoutFirst(sLine, rule.nCut));
    return trimBlanks(withoutFirst(sLine.substr(position), rule.nCut + 1));
}

/// Of several lines with the same keyword the last one stands, of those before one that cannot be read, too.
void writeDescriptionPart(const Request& request, const std::string& sDescription) {
    std::vector<std::string> aLines;
    Split(sDescription, "\n", aLines);
    std::optional<std::string_view> sLast;
    const auto writeLast = [&] {
        if (sLast)
            write(request, *sLast);
    };
    try {
        for (const std::string& sLine : aLines)
            if (const LineRule* pRule = ruleOf(sLine))
                if (const auto sValue = valueOf(sLine, *pRule); pRule->sProperty == request.sProperty)
                    sLast = sValue;
    } catch (const Failure&) {
        writeLast();
        throw;
    }
    writeLast();
}

/// Properties of the vocabulary that no rule computes: they write nothing.
bool hasNoValue(std::string_view sProperty) {
    return sProperty == "SPATIALREFERENCE.VDATUM" || sProperty == "SPATIALREFERENCE.XYUNITS";
}

bool isDescriptionPart(std::string_view sProperty) {
    return std::any_of(lineRules.begin(), lineRules.end(),
                       [&](const LineRule& rule) { return rule.sProperty == sProperty; });
}

} // namespace

void ExportSpatialReference(ExportState& state, const ControlNode& control, const OutputElement& oOutput) {
    const ActiveNodeScope scope(state, control);
    trapFailures(state, [&] {
        const Request request{state, control, oOutput, upperCase(control.own.sDataProperty)};
        const auto pReference = currentSpatialReference(state);
        if (pReference == nullptr)
            return;
        const Domains domains{pReference->xyDomain(), pReference->mDomain(), pReference->zDomain()};
        if (!writeNumber(request, domains) && !isDescriptionPart(request.sProperty))
            state.notice(hasNoValue(request.sProperty) ? Notice::PropertyWithoutValue
                                                       : Notice::UnknownProperty,
                         request.sProperty);
        writeDescriptionPart(request, pReference->description());
    });
}

} // namespace halvane
