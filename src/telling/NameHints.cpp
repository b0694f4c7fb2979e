#include "telling/NameHints.h"

#include "base/Choices.h"
#include "base/Text.h"
#include "telling/MapHints.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <optional>

namespace halvane {

namespace {

// ---- Tags ----

Choice choiceOfTags(const dCollection* pTags) {
    Choice choice{"the tag document has", "tag", "tags", {}};
    if (pTags != nullptr)
        choice.names = pTags->ReturnKeys();
    return choice;
}

/// The name that a tag stands for; nothing for a tag that is not listed.
std::optional<std::string> nameOfTag(const dCollection* pTags, std::string_view sTag) {
    if (pTags == nullptr || pTags->ReturnValues().find(sTag) == nullptr)
        return std::nullopt;
    return pTags->GetValueString(sTag);
}

std::string hintForTag(std::string_view sKind, std::string_view sTag, const Surroundings& around) {
    const auto sName = nameOfTag(around.pTagNames, sTag);
    if (!sName)
        return fmt::format("there is no tag {}: {}", inQuotes(sTag),
                           meantOrThere(sTag, choiceOfTags(around.pTagNames)));
    const std::string sOfMap = around.pMap == nullptr || sName->empty()
                                   ? ""
                                   : hintFromMap(sKind, *sName, *around.pMap, around.pMapDocument);
    return fmt::format("the tag stands for {}{}{}", inQuotes(*sName), sOfMap.empty() ? "" : ": ", sOfMap);
}

// ---- The identity itself ----

/// How the kinds that are found by name take the name; nothing for the others.
std::optional<std::string_view> identityByName(std::string_view sKind) {
    if (sKind == "Table")
        return "TableName";
    for (const std::string_view sLayerKind :
         {"MapLayer", "FeatureLayer", "RasterLayer", "TinLayer", "RelatedTable"})
        if (sKind == sLayerKind)
            return "LayerName";
    return std::nullopt;
}

std::string hintForObject(const ControlNodeFacts& facts, std::string_view sKind, const Surroundings& around) {
    const auto sByName = identityByName(sKind);
    if (!sByName || trimBlanks(facts.sIdentityValue).empty())
        return "";
    if (facts.bFieldMeant)
        return "it looks for a table: write DataSource=\"Record\" to read a field of the row";
    if (facts.sIdentity == "TagName")
        return hintForTag(sKind, facts.sIdentityValue, around);
    if (facts.sIdentity != *sByName)
        return fmt::format("write Identity=\"{}\", by which a {} is found", *sByName, sKind);
    return around.pMap == nullptr
               ? ""
               : hintFromMap(sKind, facts.sIdentityValue, *around.pMap, around.pMapDocument);
}

std::string hintForMap(std::string_view sName, const host::GisMapDocument* pMapDocument) {
    if (pMapDocument == nullptr)
        return "";
    Choice choice{"the map document has", "map", "maps", {}};
    for (std::int32_t i = 0; i < pMapDocument->mapCount(); ++i)
        if (const auto pMap = pMapDocument->map(i))
            choice.names.push_back(pMap->name());
    return meantOrThere(sName, choice);
}

// ---- Fields ----

/// A shape is no value that a field node could write.
bool isShape(const host::GisField& field) {
    return field.typeCode() == static_cast<std::int32_t>(host::FieldType::Geometry);
}

std::string hintForField(std::string_view sName, const host::GisFields& fields) {
    Choice choice{"the row has", "field", "fields", {}};
    for (std::int32_t i = 0; i < fields.count(); ++i) {
        const host::GisField& field = fields.field(i);
        if (isShape(field))
            continue;
        if (equalIgnoringCase(field.aliasName(), sName))
            return fmt::format("that is the alias of the field {}: write its name", inQuotes(field.name()));
        choice.names.emplace_back(field.name());
    }
    return meantOrThere(sName, choice);
}

/// The alias that the current tag's node files for a field's tag.
std::string hintForFieldTag(std::string_view sTag, const Surroundings& around) {
    Choice tags{"the tag's node has", "field", "fields", {}};
    if (!around.oTagNode)
        return "no tag is current: put the node inside a layer that is found by its tag, or write "
               "Identity=\"FieldName\"";
    dom::NodeList oFields = around.oTagNode.selectNodes("QvFields/QvField");
    for (dom::Node oField = oFields.nextNode(); oField; oField = oFields.nextNode()) {
        const auto sListed = oField.getAttribute("TagName");
        if (!sListed)
            continue;
        if (!equalIgnoringCase(*sListed, sTag)) {
            tags.names.emplace_back(*sListed);
            continue;
        }
        const auto sAlias = oField.getAttribute("Alias").value_or(std::string_view());
        Choice aliases{"the row has", "alias", "aliases", {}};
        for (std::int32_t i = 0; i < around.pFields->count(); ++i)
            if (!isShape(around.pFields->field(i)))
                aliases.names.emplace_back(around.pFields->field(i).aliasName());
        return fmt::format("the tag stands for the alias {}: {}", inQuotes(sAlias),
                           meantOrThere(sAlias, aliases));
    }
    return "the current tag's node lists no such tag: " + meantOrThere(sTag, tags);
}

} // namespace

std::string nameHint(const ControlNodeFacts& facts, Notice notice, std::string_view sDetail,
                     const Surroundings& around) {
    if (notice == Notice::FieldNotFound && around.pFields != nullptr && !sDetail.empty())
        return around.bByTag ? hintForFieldTag(sDetail, around) : hintForField(sDetail, *around.pFields);
    if (notice != Notice::ResolvedToNothing)
        return "";
    if (sDetail == "DataFrame")
        return hintForMap(facts.sDataFrame, around.pMapDocument);
    if (sDetail == "Map")
        return hintForMap(facts.sIdentityValue, around.pMapDocument);
    return hintForObject(facts, sDetail, around);
}

} // namespace halvane
