#pragma once

#include "base/Failure.h"
#include "snapshot/SnapshotFormat.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {

class Recording;

/// What one object of the map answered.
class RecordedObject {
public:
    RecordedObject(Recording& recording, std::size_t nPlace, std::string_view sKind)
        : recording_(recording), nPlace_(nPlace), sKind_(sKind) {}

    /// Files an answer, in place of an earlier one.
    void answer(const std::string& sKey, Json json) { answers_[sKey] = std::move(json); }
    [[nodiscard]] Json& answerAt(const std::string& sKey) { return answers_[sKey]; }
    /// The object that is filed under the key, the same one each time.
    [[nodiscard]] RecordedObject& child(const std::string& sKey, std::string_view sKind);
    [[nodiscard]] Json reference() const { return {{"object", nPlace_}}; }
    void vertex(std::int32_t lPart, std::int32_t lIndex, const Json& numbers);

    [[nodiscard]] Json toJson() const;

private:
    Recording& recording_;
    std::size_t nPlace_;
    std::string sKind_;
    std::map<std::string, Json> answers_;
    std::map<std::string, RecordedObject*> children_;
    std::vector<std::vector<Json>> aaVertices_;
};

class Recording {
public:
    [[nodiscard]] RecordedObject& add(std::string_view sKind) {
        return objects_.emplace_back(*this, objects_.size(), sKind);
    }
    /// How often something was asked for that is new each time.
    [[nodiscard]] int next(const std::string& sWhat) { return counts_[sWhat]++; }

    [[nodiscard]] Json toJson() const;

private:
    std::deque<RecordedObject> objects_; // whose places in memory stay
    std::map<std::string, int> counts_;
};

[[nodiscard]] inline Json jsonOf(const Failure& failure) {
    return {{"failure", {{"number", failure.number()}, {"text", failure.description()}}}};
}

/// Calls the map, and files what it answers, failures included.
template<class Call>
auto recordValue(RecordedObject& object, const std::string& sKey, const Call& call) {
    try {
        auto result = call();
        object.answer(sKey, jsonOf(Value(result)));
        return result;
    } catch (const Failure& failure) {
        object.answer(sKey, jsonOf(failure));
        throw;
    }
}

/// The same for an answer that is an object: it is seen through Wrapper from here on.
template<class Wrapper, class Call>
std::shared_ptr<Wrapper> recordObject(RecordedObject& object, const std::string& sKey, std::string_view sKind,
                                      const Call& call) {
    try {
        auto pReal = call();
        if (pReal == nullptr) {
            object.answer(sKey, nullptr);
            return nullptr;
        }
        RecordedObject& child = object.child(sKey, sKind);
        object.answer(sKey, child.reference());
        return std::make_shared<Wrapper>(child, std::move(pReal));
    } catch (const Failure& failure) {
        object.answer(sKey, jsonOf(failure));
        throw;
    }
}

} // namespace halvane::test
