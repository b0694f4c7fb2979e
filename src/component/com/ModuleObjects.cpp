#include "component/com/ModuleObjects.h"

#include "engine/ExportState.h"

#include <memory>
#include <string>
#include <utility>

namespace halvane::server {

void abandonModuleObjects() noexcept {
    try {
        ExportState& state = moduleState();
        std::string sControlPath = state.sControlPath;
        auto pAbandoned = std::make_unique<ExportState>(std::move(state));
        state.release();
        state.sControlPath = std::move(sControlPath);
        static_cast<void>(pAbandoned.release());
    } catch (...) {
        // Without memory the objects stay where they are, no more.
        return;
    }
}

bool moduleHoldsObjects() noexcept {
    const ExportState& state = moduleState();
    return state.pMapDoc != nullptr || state.pMap != nullptr || state.pHost != nullptr ||
           state.oControlManager != nullptr || state.oOutputManager != nullptr || state.dTagNames != nullptr;
}

} // namespace halvane::server
