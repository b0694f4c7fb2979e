#include "run/describe/DescriptionChanges.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <set>
#include <utility>

namespace halvane {

namespace {

using Json = nlohmann::ordered_json;
using What = DescriptionChange::What;

/// A list of things that are found again by a member of theirs.
struct ThingList {
    std::string_view sMember;
    std::string_view sKind;
    std::string_view sKey;
};

constexpr std::array<ThingList, 9> thingLists{{{"maps", "map", "name"},
                                               {"layers", "layer", "name"},
                                               {"tables", "table", "dataset"},
                                               {"fields", "field", "name"},
                                               {"subtypes", "subtype", "code"},
                                               {"workspaces", "workspace", "path"},
                                               {"domains", "domain", "name"},
                                               {"codes", "code", "code"},
                                               {"relationshipClasses", "relationship class", "name"}}};

const ThingList* thingListOf(std::string_view sMember) {
    const auto pList = std::ranges::find(thingLists, sMember, &ThingList::sMember);
    return pList == thingLists.end() ? nullptr : &*pList;
}

/// Told by a word beside it, of the program and not of the map, or compared in another way.
bool isPassedOver(std::string_view sMember) {
    constexpr std::array<std::string_view, 4> others{"version", "program", "map", "notReadable"};
    constexpr std::string_view sCode = "Code";
    const bool bCode = sMember.ends_with(sCode) && sMember != "defaultCode";
    return bCode || std::ranges::find(others, sMember) != others.end();
}

bool isText(const Json& json) {
    return json.is_string();
}

std::string keyOf(const Json& thing, const ThingList& list) {
    if (!thing.is_object())
        return {};
    const Json& key = thing.at(std::string(list.sKey));
    return isText(key) ? key.get<std::string>() : key.is_null() ? "" : key.dump();
}

const Json& memberOf(const Json& object, std::string_view sMember) {
    static const Json nothing;
    const auto pMember = object.find(sMember);
    return pMember == object.end() ? nothing : *pMember;
}

std::string whyNotReadable(const Json& object, const std::string& sMember) {
    for (const Json& entry : memberOf(object, "notReadable"))
        if (entry.at("what") == sMember)
            return entry.at("why").get<std::string>();
    return {};
}

// ---- Where data lies ----

/// A path as it is seen from the map's file, since the maps themselves lie somewhere.
std::string seenFrom(const std::filesystem::path& map, const Json& path) {
    if (!isText(path))
        return {};
    const auto relative =
        std::filesystem::path(path.get<std::string>()).lexically_relative(map.parent_path());
    if (path == map.string() || relative == ".")
        return "";
    return relative.empty() || *relative.begin() == ".." ? path.get<std::string>() : relative.string();
}

/// Puts paths as they are seen from the map in the place of paths, and of positions among the workspaces.
void makeComparable(Json& json, const std::filesystem::path& map, const Json& workspaces) {
    if (json.is_object()) {
        for (const char* sPath : {"path", "file"})
            if (json.contains(sPath) && isText(json[sPath]))
                json[sPath] = seenFrom(map, json[sPath]);
        if (json.contains("workspace") && json["workspace"].is_number_unsigned())
            json["workspace"] = seenFrom(map, workspaces.at(json["workspace"].get<std::size_t>()).at("path"));
    }
    if (json.is_structured())
        for (Json& inner : json)
            makeComparable(inner, map, workspaces);
}

// ---- Finding things again ----

/// Positions in the old list and in the new one; nothing where it is in one of them alone.
using Match = std::pair<std::optional<std::size_t>, std::optional<std::size_t>>;

/// The one thing that is left on either side, where its name is that of the map's file.
void matchFileNames(std::vector<Match>& matches, const std::vector<std::string>& before,
                    const std::vector<std::string>& after, const std::string& sOldStem,
                    const std::string& sNewStem) {
    const auto pOld = std::ranges::find_if(
        matches, [&](const Match& match) { return !match.second && before[*match.first] == sOldStem; });
    const auto pNew = std::ranges::find_if(
        matches, [&](const Match& match) { return !match.first && after[*match.second] == sNewStem; });
    if (pOld == matches.end() || pNew == matches.end())
        return;
    pOld->second = pNew->second;
    matches.erase(pNew);
}

/// Those of the old list in its order, then those that are new.
std::vector<Match> matchNames(const std::vector<std::string>& before, const std::vector<std::string>& after) {
    std::vector<Match> matches;
    std::set<std::size_t> matched;
    for (std::size_t nOld = 0; nOld < before.size(); ++nOld) {
        std::optional<std::size_t> found;
        for (std::size_t nNew = 0; nNew < after.size() && !found; ++nNew)
            if (after[nNew] == before[nOld] && matched.insert(nNew).second)
                found = nNew;
        matches.emplace_back(nOld, found);
    }
    for (std::size_t nNew = 0; nNew < after.size(); ++nNew)
        if (!matched.contains(nNew))
            matches.emplace_back(std::nullopt, nNew);
    return matches;
}

class Comparison {
public:
    Comparison(std::string_view sOld, std::string_view sNew)
        : before_(Json::parse(sOld)), after_(Json::parse(sNew)), sOldStem_(prepare(before_)),
          sNewStem_(prepare(after_)) {}

    std::vector<DescriptionChange> take() {
        compareObjects(before_, after_, "");
        return std::move(changes_);
    }

private:
    /// @returns the name that data gets from the map's file.
    static std::string prepare(Json& description) {
        const std::filesystem::path map = description.at("map").get<std::string>();
        const Json workspaces = description.at("workspaces");
        makeComparable(description, map, workspaces);
        return map.stem().string();
    }

    // ---- Objects ----

    void compareObjects(const Json& before, const Json& after, const std::string& sPrefix) {
        std::vector<std::string> members;
        for (const Json* pObject : {&before, &after})
            for (const auto& [sMember, value] : pObject->items())
                if (!isPassedOver(sMember) && !(sMember == "type" && pObject->contains("typeWord")) &&
                    std::ranges::find(members, sMember) == members.end())
                    members.push_back(sMember);
        for (const auto& sMember : members)
            compareMember(before, after, sMember, sPrefix);
    }

    void compareMember(const Json& before, const Json& after, const std::string& sMember,
                       const std::string& sPrefix) {
        const Json& old = memberOf(before, sMember);
        const Json& now = memberOf(after, sMember);
        const ThingList* const pList = thingListOf(sMember);
        if (old == now && whyNotReadable(before, sMember).empty() == whyNotReadable(after, sMember).empty())
            return;
        // What a layer's class says is said of the layer.
        const bool bOfOwner = sMember == "featureClass" || sMember == "subtypes";
        if (old.is_object() && now.is_object())
            compareObjects(old, now, bOfOwner ? sPrefix : sPrefix + sMember + ".");
        else if (pList != nullptr && old.is_array() && now.is_array())
            compareLists(old, now, *pList);
        else if (!isFileName(old, now))
            add({What::Changed, where_, sPrefix + sMember, old, now, whyNotReadable(before, sMember),
                 whyNotReadable(after, sMember)});
    }

    [[nodiscard]] bool isFileName(const Json& before, const Json& after) const {
        return before == sOldStem_ && after == sNewStem_;
    }

    // ---- Lists ----

    void compareLists(const Json& before, const Json& after, const ThingList& list) {
        const auto oldKeys = keysOf(before, list);
        const auto newKeys = keysOf(after, list);
        auto matches = matchNames(oldKeys, newKeys);
        matchFileNames(matches, oldKeys, newKeys, sOldStem_, sNewStem_);
        // One map, or one workspace, needs no name.
        const bool bNamed =
            (list.sKind != "map" && list.sKind != "workspace") || before.size() != 1 || after.size() != 1;
        if (!bNamed)
            matches = {{0, 0}};
        for (const auto& [nOld, nNew] : matches) {
            const std::string& sKey = nOld ? oldKeys[*nOld] : newKeys[*nNew];
            if (bNamed)
                where_.push_back({std::string(list.sKind), sKey});
            if (nOld && nNew)
                compareThings(before[*nOld], after[*nNew]);
            else
                add({nOld ? What::Removed : What::Added, where_, "", nOld ? before[*nOld] : Json(),
                     nNew ? after[*nNew] : Json(), "", ""});
            if (bNamed)
                where_.pop_back();
        }
        compareOrder(matches, oldKeys, newKeys, list);
    }

    void compareThings(const Json& before, const Json& after) {
        if (before.is_object() && after.is_object())
            compareObjects(before, after, "");
        else if (before != after)
            add({What::Changed, where_, "readable", !before.is_null(), !after.is_null(), "", ""});
    }

    /// Of the things that are in both lists.
    void compareOrder(const std::vector<Match>& matches, const std::vector<std::string>& oldKeys,
                      const std::vector<std::string>& newKeys, const ThingList& list) {
        std::vector<std::size_t> order;
        Json before = Json::array();
        for (const auto& [nOld, nNew] : matches)
            if (nOld && nNew) {
                order.push_back(*nNew);
                before.push_back(oldKeys[*nOld]);
            }
        if (list.sKind == "workspace" || std::ranges::is_sorted(order))
            return;
        std::ranges::sort(order);
        Json after = Json::array();
        for (const std::size_t n : order)
            after.push_back(newKeys[n]);
        add({What::Changed, where_, fmt::format("order of {}", list.sMember), before, after, "", ""});
    }

    static std::vector<std::string> keysOf(const Json& things, const ThingList& list) {
        std::vector<std::string> keys;
        for (const Json& thing : things)
            keys.push_back(keyOf(thing, list));
        return keys;
    }

    void add(DescriptionChange change) { changes_.push_back(std::move(change)); }

    Json before_;
    Json after_;
    std::string sOldStem_;
    std::string sNewStem_;
    std::vector<DescriptionChange::Place> where_;
    std::vector<DescriptionChange> changes_;
};

} // namespace

std::vector<DescriptionChange> compareDescriptions(std::string_view sOld, std::string_view sNew) {
    return Comparison(sOld, sNew).take();
}

} // namespace halvane
