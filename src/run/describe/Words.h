#pragma once

#include "run/describe/MapDescription.h"

#include <cstdint>
#include <string>

namespace halvane {

/// Words for the codes of host objects; a code without a word gives "code 17".
[[nodiscard]] std::string fieldTypeWord(std::int32_t lCode);
[[nodiscard]] std::string shapeTypeWord(std::int32_t lCode);
[[nodiscard]] std::string domainTypeWord(std::int32_t lCode);
[[nodiscard]] std::string workspaceTypeWord(std::int32_t lCode);
[[nodiscard]] std::string cardinalityWord(std::int32_t lCode);
[[nodiscard]] std::string notificationWord(std::int32_t lCode);
[[nodiscard]] std::string mergePolicyWord(std::int32_t lCode);
[[nodiscard]] std::string splitPolicyWord(std::int32_t lCode);
[[nodiscard]] std::string layerKindWord(LayerKind kind);

} // namespace halvane
