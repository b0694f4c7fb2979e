#include "host/com/CollectionFace.h"

#include "collection/dCollection.h"
#include "host/com/DispatchObject.h"
#include "host/com/ExternalProcessor.h"

namespace halvane::test {

namespace {

class CollectionFace final : public DispatchObject {
public:
    explicit CollectionFace(dCollectionPtr pCollection) : pCollection_(std::move(pCollection)) {}

    [[nodiscard]] const dCollectionPtr& collection() const { return pCollection_; }

    /// Passes for the published interface, as far as it is an automation object.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        return DispatchObject::QueryInterface(iid == host::com::iidCollection ? IID_IDispatch : iid,
                                              ppObject);
    }

protected:
    bool hasMember(const std::string& sName) const override {
        return sName == "GetValue" || sName == "Item" || sName == "Count";
    }
    com::Variant get(const std::string& sName, const std::vector<com::Variant>& aArguments) override {
        if (sName == "Count")
            return com::toVariant(pCollection_->Count());
        const Value vKey = com::toValue(aArguments.at(0).get());
        return com::toVariant(sName == "Item" ? pCollection_->Item2(vKey)
                                              : pCollection_->GetValue(toText(vKey)));
    }

private:
    dCollectionPtr pCollection_;
};

} // namespace

dCollectionPtr collectionBehind(IDispatch& dispatch) {
    const auto* pFace = dynamic_cast<const CollectionFace*>(&dispatch);
    return pFace == nullptr ? nullptr : pFace->collection();
}

com::ComPtr<IDispatch> CollectionBridge::dispatchOf(const ObjectPtr& pObject) {
    auto pCollection = std::dynamic_pointer_cast<dCollection>(pObject);
    return pCollection == nullptr ? com::ComPtr<IDispatch>()
                                  : makeDispatch<CollectionFace>(std::move(pCollection));
}

} // namespace halvane::test
