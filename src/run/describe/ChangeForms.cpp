#include "base/Redaction.h"
#include "run/describe/DescriptionChanges.h"
#include "telling/Text.h"
#include "telling/Version.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace halvane {

namespace {

using Json = nlohmann::ordered_json;
using What = DescriptionChange::What;

std::string_view wordOf(What what) {
    switch (what) {
    case What::Added:
        return "added";
    case What::Removed:
        return "removed";
    case What::Changed:
        break;
    }
    return "changed";
}

std::string valueText(const Json& value);

std::string listText(const Json& values, std::string_view sJoin) {
    std::string sText;
    for (const Json& value : values)
        sText += (sText.empty() ? "" : std::string(sJoin)) + valueText(value);
    return sText;
}

std::string valueText(const Json& value) {
    if (value.is_string())
        return inQuotes(value.get_ref<const std::string&>());
    if (value.is_boolean())
        return value.get<bool>() ? "yes" : "no";
    if (value.is_number_float())
        return fmt::format("{}", value.get<double>());
    if (value.is_array())
        return value.empty() ? "none" : listText(value, ", ");
    if (value.is_object()) // a reference, subtypes: what they say differs from nothing
        return value.contains("description") ? valueText(value["description"]) : "some";
    return value.is_null() ? "none" : value.dump();
}

std::string valueOr(const Json& value, const std::string& sNotReadable) {
    return sNotReadable.empty() ? valueText(value) : "not readable: " + sNotReadable;
}

/// What a thing is that was added or removed, in a few words.
std::string summaryOf(const Json& thing) {
    constexpr std::array<std::string_view, 4> words{"kind", "typeWord", "cardinality", "shapeType"};
    if (!thing.is_object())
        return {};
    std::string sText;
    const auto add = [&](const std::string& sMore) { sText += (sText.empty() ? ": " : ", ") + sMore; };
    for (const auto sWord : words)
        if (const auto pWord = thing.find(std::string(sWord)); pWord != thing.end() && pWord->is_string())
            add(pWord->get<std::string>());
    if (const auto pLength = thing.find("length"); pLength != thing.end() && *pLength != 0)
        add("length " + valueText(*pLength));
    if (thing.contains("code") && thing.contains("name"))
        add(valueText(thing["name"]));
    if (const auto pClass = thing.find("featureClass"); pClass != thing.end() && pClass->is_object())
        add(fmt::format("{}, {} features",
                        pClass->at("shapeType").is_string() ? pClass->at("shapeType").get<std::string>()
                                                            : "shapes of unknown type",
                        valueText(pClass->at("features"))));
    return sText;
}

/// Of two lists of texts, those that are not in the other.
Json without(const Json& texts, const Json& others) {
    Json rest = Json::array();
    for (const Json& text : texts)
        if (std::ranges::find(others, text) == others.end())
            rest.push_back(text);
    return rest;
}

std::string memberText(const DescriptionChange& change) {
    const bool bLines =
        change.sMember.ends_with("description") && change.before.is_array() && change.after.is_array();
    const Json before = bLines ? without(change.before, change.after) : change.before;
    const Json after = bLines ? without(change.after, change.before) : change.after;
    std::string_view sMember = change.sMember;
    if (constexpr std::string_view sWord = "Word"; sMember.ends_with(sWord))
        sMember.remove_suffix(sWord.size());
    return fmt::format("{}: {} → {}", sMember, valueOr(before, change.sBeforeNotReadable),
                       valueOr(after, change.sAfterNotReadable));
}

std::string lineOf(const DescriptionChange& change) {
    std::string sWhere;
    for (const auto& place : change.where)
        sWhere += fmt::format("{}{} {}", sWhere.empty() ? "" : ", ", place.sKind, inQuotes(place.sName));
    const std::string sWhat = change.what == What::Changed
                                  ? (sWhere.empty() ? "" : ": ") + memberText(change)
                                  : summaryOf(change.what == What::Added ? change.after : change.before);
    return printable(fmt::format("{:<8} {}{}", wordOf(change.what), sWhere, sWhat)) + "\n";
}

Json changeJson(const DescriptionChange& change) {
    Json where = Json::array();
    for (const auto& place : change.where)
        where.push_back({{"kind", place.sKind}, {"name", place.sName}});
    Json object{{"change", wordOf(change.what)}, {"where", std::move(where)}};
    object["member"] = change.sMember.empty() ? Json() : Json(change.sMember);
    object["before"] = change.before;
    object["after"] = change.after;
    if (!change.sBeforeNotReadable.empty())
        object["beforeNotReadable"] = change.sBeforeNotReadable;
    if (!change.sAfterNotReadable.empty())
        object["afterNotReadable"] = change.sAfterNotReadable;
    return object;
}

} // namespace

std::string changesText(const std::vector<DescriptionChange>& changes) {
    std::string sText;
    for (const auto& change : changes)
        sText += lineOf(change);
    return sText;
}

std::string changesJson(const std::vector<DescriptionChange>& changes, std::string_view sOld,
                        std::string_view sNew) {
    Json object{{"version", 1},
                {"program", "halvane " + std::string(version())},
                {"old", withoutPasswords(sOld)},
                {"new", withoutPasswords(sNew)},
                {"changes", Json::array()}};
    for (const auto& change : changes)
        object["changes"].push_back(changeJson(change));
    return withoutSteering(object.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

} // namespace halvane
