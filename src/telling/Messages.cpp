#include "telling/Messages.h"

#include "base/NearestName.h"
#include "base/Text.h"
#include "engine/sources/DataSourceKind.h"
#include "telling/ControlVocabulary.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace halvane {

namespace {

bool numbered(const NodeEvent& event, FailureNumber number) {
    return event.lNumber == static_cast<std::int32_t>(number);
}

/// What to do about a failure whose description does not say it.
std::string remedy(const NodeEvent& event, const Remedies& remedies) {
    if (numbered(event, FailureNumber::Overflow) && event.sText.find("items") != std::string::npos)
        return "raise --item-limit";
    if (numbered(event, FailureNumber::Overflow))
        return "a number is too large: check DecimalPlace";
    if (numbered(event, FailureNumber::ObjectVariableNotSet) && !remedies.sMap.empty())
        return fmt::format("{}, or check its DataSource", remedies.sMap);
    if (numbered(event, FailureNumber::ObjectVariableNotSet))
        return "something that it needs is missing: check its DataSource and what the nodes around it "
               "found";
    if (numbered(event, FailureNumber::CannotCreateComponent))
        return fmt::format("check the ProgID in IdentityValue, and {}", remedies.sProcessor);
    return "";
}

Explanation explainFailure(const NodeEvent& event, const Remedies& remedies) {
    const std::string sContext = event.sHint.empty() ? "" : ": " + event.sHint;
    return {fmt::format("{}{} (error {})", event.sText, sContext, event.lNumber), remedy(event, remedies)};
}

std::string located(const ControlNodeFacts& facts) {
    return facts.sDataLocation.empty() ? "" : " at " + inQuotes(facts.sDataLocation);
}

Explanation explainNothingFound(const ControlNodeFacts& facts, const NodeEvent& event,
                                const Remedies& remedies) {
    const std::string& sKind = event.sText;
    const std::string sMapRemedy = remedies.sMap.empty() ? "" : fmt::format(", or {}", remedies.sMap);
    const auto mend = [&](const char* sRemedy) { return sRemedy + sMapRemedy; };
    const auto hintOr = [&](const char* sRemedy) {
        return (event.sHint.empty() ? sRemedy : event.sHint) + sMapRemedy;
    };
    if (sKind == "DataFrame")
        return {fmt::format("the map document has no map {}", inQuotes(facts.sDataFrame)),
                hintOr("correct DataFrame")};
    const Origin origin = rowOf(dataSourceKindOf(sKind)).object.origin;
    if (origin == Origin::Enclosing)
        return {fmt::format("no {} was found", sKind),
                mend("put the node inside one that finds a layer, or check that one")};
    const std::string sNone = fmt::format("no {} was found{}", sKind, located(facts));
    if (origin == Origin::Workspace)
        return {sNone, mend("put the node inside a layer, or correct DataLocation")};
    if (trimBlanks(facts.sIdentityValue).empty())
        return {sNone, mend("name one in IdentityValue")};
    return {fmt::format("no {} with {} {} was found{}", sKind,
                        facts.sIdentity.empty() ? "IdentityValue" : facts.sIdentity,
                        inQuotes(facts.sIdentityValue), located(facts)),
            hintOr("correct IdentityValue")};
}

/// The kind that was most likely meant by one that there is not.
std::string kindMeant(std::string_view sKind) {
    for (const auto& keyword : controlVocabulary().keywords)
        if (keyword.attribute == ControlWord::DataSource &&
            std::find(keyword.values.begin(), keyword.values.end(), sKind) == keyword.values.end())
            return NearestName(sKind).offerAll(keyword.values).question("");
    return "";
}

/// The remedy for a property that a kind has not: the one that was most likely meant, where there is none of
/// that name.
std::string propertyMeant(std::string_view sProperty) {
    const auto& aKnown = controlVocabulary().properties;
    const bool bKnown = std::any_of(aKnown.begin(), aKnown.end(),
                                    [&](std::string_view s) { return equalIgnoringCase(s, sProperty); });
    const std::string sMeant = bKnown ? "" : NearestName(sProperty).offerAll(aKnown).question("");
    return sMeant.empty() ? "correct DataProperty" : sMeant;
}

Explanation explainUnknownKind(std::string_view sKind) {
    const std::string sMeant = kindMeant(sKind);
    return {fmt::format("{} is no kind of data source that gives one value; no value was written",
                        inQuotes(sKind)),
            sMeant.empty() ? "correct DataSource" : sMeant, ": "};
}

Explanation explainSilentRepeat(std::string_view sKind) {
    if (trimBlanks(sKind).empty())
        return {"a node without a DataSource cannot be repeated; no value was written",
                "say in DataSource what it goes over, or remove Entries", ": "};
    if (dataSourceKindOf(sKind) == DataSourceKind::RelatedTable)
        return {"a repeated RelatedTable node writes nothing",
                "remove Entries: RelatedRecord leaves in it write an element for each related row"};
    const std::string sMeant = kindMeant(sKind);
    return {fmt::format("a {} node of this form cannot be repeated; no value was written", sKind),
            sMeant.empty() ? "see \"Repeated nodes\" in docs/control-file.md" : sMeant, ": "};
}

Explanation explainNoField(const NodeEvent& event) {
    if (event.sText.empty())
        return {"no field is named, so its value is empty", "name one in IdentityValue"};
    return {fmt::format("there is no field {}, so its value is empty", inQuotes(event.sText)),
            event.sHint.empty() ? "correct the field's name" : event.sHint};
}

Explanation explainNoProperty(const ControlNodeFacts& facts, const NodeEvent& event) {
    if (event.sText.empty())
        return {fmt::format("it names no DataProperty of {}; no value was written", facts.sDataSource), ""};
    return {fmt::format("{} is no property of {}; no value was written", inQuotes(event.sText),
                        facts.sDataSource),
            propertyMeant(event.sText), ": "};
}

Explanation explainNotOpened(const ControlNodeFacts& facts, const NodeEvent& event) {
    if (facts.sDataLocation.empty())
        return {"it has no DataLocation to look in", ""};
    return {fmt::format("its data{} could not be opened: {}", located(facts), event.sText),
            "correct DataLocation"};
}

/// Of notices that say how a node of the first edition behaves.
Explanation explainBehaviour(const NodeEvent& event) {
    const std::string sDetail = inQuotes(event.sText);
    switch (*event.notice) {
    case Notice::IdentifierWritten:
        return {sDetail + " wrote the object identifier, not the attribute of that name",
                "to write the attribute, give it another name in the data or in a view of it"};
    case Notice::PropertyWithoutValue:
        return {sDetail + " is a known property that never has a value; no value was written", ""};
    case Notice::AttributeStaysEmpty:
        return {fmt::format("its attribute {} stays empty: in a group inside subtypes only elements get a "
                            "value",
                            sDetail),
                "make it an element, or a child of the repeated node itself"};
    case Notice::OnlyRepeated:
        return {fmt::format("a {} node gives values only where it is repeated; no value was written",
                            event.sText),
                "write Entries=\"Multiple\", and put nodes with its properties inside", ": "};
    case Notice::NoCurrentLayer:
        return {"no layer is current, so no value was written", "put the node inside one that finds a layer"};
    case Notice::NoCurrentTable:
        return {"no table is current, so no value was written", "put the node inside one that finds a table"};
    case Notice::FieldsOfLayer:
        return {fmt::format("it lists the fields of the layer {}, which is still current: only the fields of "
                            "layers are listed",
                            sDetail),
                "move the node into the layer that it is about"};
    case Notice::RowsBesideAttribute:
        return {"its attribute holds the value of the first related row; those of further rows became "
                "elements behind the one with the attribute",
                "remove Target, or relate one row", ": "};
    case Notice::ReplacesParentContent:
        return {fmt::format("{} replaced the content of the parent's element",
                            event.sText.empty() ? "its value" : "the value of " + sDetail),
                "to write an attribute, also set DataLocation=\"Attribute\""};
    default:
        return {event.sText, ""};
    }
}

Explanation explainNotice(const ControlNodeFacts& facts, const NodeEvent& event, const Remedies& remedies) {
    switch (*event.notice) {
    case Notice::ResolvedToNothing:
        return explainNothingFound(facts, event, remedies);
    case Notice::WorkspaceNotOpened:
        return explainNotOpened(facts, event);
    case Notice::FieldNotFound:
        return explainNoField(event);
    case Notice::UnknownKind:
        return explainUnknownKind(event.sText);
    case Notice::UnknownProperty:
        return explainNoProperty(facts, event);
    case Notice::RepeatIsSilent:
        return explainSilentRepeat(event.sText.empty() ? facts.sDataSource : event.sText);
    default:
        return explainBehaviour(event);
    }
}

} // namespace

std::string_view nameOf(Notice notice) {
    switch (notice) {
    case Notice::ResolvedToNothing:
        return "ResolvedToNothing";
    case Notice::WorkspaceNotOpened:
        return "WorkspaceNotOpened";
    case Notice::FieldNotFound:
        return "FieldNotFound";
    case Notice::IdentifierWritten:
        return "IdentifierWritten";
    case Notice::UnknownKind:
        return "UnknownKind";
    case Notice::UnknownProperty:
        return "UnknownProperty";
    case Notice::PropertyWithoutValue:
        return "PropertyWithoutValue";
    case Notice::AttributeStaysEmpty:
        return "AttributeStaysEmpty";
    case Notice::OnlyRepeated:
        return "OnlyRepeated";
    case Notice::RepeatIsSilent:
        return "RepeatIsSilent";
    case Notice::NoCurrentLayer:
        return "NoCurrentLayer";
    case Notice::NoCurrentTable:
        return "NoCurrentTable";
    case Notice::FieldsOfLayer:
        return "FieldsOfLayer";
    case Notice::RowsBesideAttribute:
        return "RowsBesideAttribute";
    case Notice::ReplacesParentContent:
        return "ReplacesParentContent";
    }
    return "Other";
}

Explanation explained(const ControlNodeFacts& facts, const NodeEvent& event, const Remedies& remedies) {
    return event.notice ? explainNotice(facts, event, remedies) : explainFailure(event, remedies);
}

std::string inOneSentence(const Explanation& explanation) {
    return explanation.sRemedy.empty()
               ? explanation.sWhat
               : fmt::format("{}{}{}", explanation.sWhat, explanation.sJoin, explanation.sRemedy);
}

std::string explain(const ControlNodeFacts& facts, const NodeEvent& event, const Remedies& remedies) {
    return inOneSentence(explained(facts, event, remedies));
}

} // namespace halvane
