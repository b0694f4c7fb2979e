#include "snapshot/Recording.h"

namespace halvane::test {

RecordedObject& RecordedObject::child(const std::string& sKey, std::string_view sKind) {
    RecordedObject*& pChild = children_[sKey];
    if (pChild == nullptr)
        pChild = &recording_.add(sKind);
    return *pChild;
}

void RecordedObject::vertex(std::int32_t lPart, std::int32_t lIndex, const Json& numbers) {
    const auto nPart = static_cast<std::size_t>(lPart);
    const auto nIndex = static_cast<std::size_t>(lIndex);
    if (aaVertices_.size() <= nPart)
        aaVertices_.resize(nPart + 1);
    if (aaVertices_[nPart].size() <= nIndex)
        aaVertices_[nPart].resize(nIndex + 1);
    aaVertices_[nPart][nIndex] = numbers;
}

Json RecordedObject::toJson() const {
    Json json = {{"kind", sKind_}, {"answers", answers_}};
    if (!aaVertices_.empty())
        json["vertices"] = aaVertices_;
    return json;
}

Json Recording::toJson() const {
    Json json = {{"objects", Json::array()}};
    for (const RecordedObject& object : objects_)
        json["objects"].push_back(object.toJson());
    return json;
}

} // namespace halvane::test
