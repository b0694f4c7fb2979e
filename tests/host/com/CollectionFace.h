#pragma once

#include "base/com/Variant.h"
#include "collection/dCollection.h"

namespace halvane::test {

/// Shows collections to scripts with the members GetValue, Item and Count, for as long as it lives: enough
/// for a processor.
class CollectionBridge final : public com::ObjectBridge {
public:
    CollectionBridge() { com::installObjectBridge(this); }
    ~CollectionBridge() override { com::installObjectBridge(nullptr); }

    [[nodiscard]] com::ComPtr<IDispatch> dispatchOf(const ObjectPtr& pObject) override;
    [[nodiscard]] ObjectPtr objectOf(IDispatch& /*dispatch*/) override { return nullptr; }
};

/// The collection that such a face shows; nothing for other objects.
[[nodiscard]] dCollectionPtr collectionBehind(IDispatch& dispatch);

} // namespace halvane::test
