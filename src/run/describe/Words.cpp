#include "run/describe/Words.h"

#include <initializer_list>
#include <utility>

namespace halvane {

namespace {

using CodeWords = std::initializer_list<std::pair<std::int32_t, const char*>>;

std::string wordOf(std::int32_t lCode, CodeWords words) {
    for (const auto& [lKnown, sWord] : words)
        if (lKnown == lCode)
            return sWord;
    return "code " + std::to_string(lCode);
}

} // namespace

std::string fieldTypeWord(std::int32_t lCode) {
    return wordOf(lCode, {{0, "small integer"},
                          {1, "integer"},
                          {2, "single"},
                          {3, "double"},
                          {4, "text"},
                          {5, "date"},
                          {6, "object identifier"},
                          {7, "geometry"},
                          {8, "binary"}});
}

std::string shapeTypeWord(std::int32_t lCode) {
    return wordOf(
        lCode, {{0, "none"}, {1, "point"}, {2, "multipoint"}, {3, "polyline"}, {4, "polygon"}, {13, "line"}});
}

std::string domainTypeWord(std::int32_t lCode) {
    return wordOf(lCode, {{1, "range"}, {2, "coded values"}, {3, "text"}});
}

std::string workspaceTypeWord(std::int32_t lCode) {
    return wordOf(lCode, {{0, "folder of files"}, {1, "local database"}, {2, "remote database"}});
}

std::string cardinalityWord(std::int32_t lCode) {
    return wordOf(lCode, {{1, "one to one"}, {2, "one to many"}, {3, "many to many"}});
}

std::string notificationWord(std::int32_t lCode) {
    return wordOf(lCode, {{1, "none"}, {2, "forward"}, {3, "backward"}, {4, "both"}});
}

std::string mergePolicyWord(std::int32_t lCode) {
    return wordOf(lCode, {{0, "default"}, {1, "sum"}, {2, "geometry weighted"}});
}

std::string splitPolicyWord(std::int32_t lCode) {
    return wordOf(lCode, {{0, "default"}, {1, "duplicate"}, {2, "geometry ratio"}});
}

std::string layerKindWord(LayerKind kind) {
    switch (kind) {
    case LayerKind::Feature:
        return "feature";
    case LayerKind::Raster:
        return "raster";
    case LayerKind::Tin:
        return "TIN";
    case LayerKind::Group:
        return "group";
    case LayerKind::Other:
        break;
    }
    return "other";
}

} // namespace halvane
