#include "component/com/CollectionBridge.h"

#include "base/com/Variant.h"
#include "component/com/CollectionObject.h"

namespace halvane::server {

namespace {

/// Lets external processors see the engine's collections.
class CollectionBridge final : public com::ObjectBridge {
public:
    [[nodiscard]] com::ComPtr<IDispatch> dispatchOf(const ObjectPtr& pObject) override {
        auto dEntries = std::dynamic_pointer_cast<halvane::dCollection>(pObject);
        if (dEntries == nullptr)
            return {};
        return makeCollectionObject(std::move(dEntries)).query<IDispatch>();
    }
    /// A collection that comes from outside stays the client's object.
    [[nodiscard]] ObjectPtr objectOf(IDispatch& /*dispatch*/) override { return nullptr; }
};

} // namespace

void installCollectionBridge() {
    static CollectionBridge bridge;
    com::installObjectBridge(&bridge);
}

} // namespace halvane::server
