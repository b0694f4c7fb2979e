#include "host/com/ExternalProcessor.h"

#include "base/Failure.h"
#include "base/com/Bstr.h"
#include "base/com/HResult.h"
#include "base/com/Variant.h"
#include "host/com/LateBound.h"

#include <fmt/format.h>

namespace halvane::host::com {

namespace {

/// The collection that an export lends, as one that a processor may hold on to.
ObjectPtr shared(dCollection& collection) {
    ObjectPtr pCollection = collection.weak_from_this().lock();
    if (pCollection == nullptr)
        throw Failure::of(FailureNumber::InternalError);
    return pCollection;
}

/// A component with the published interface.
class PublishedProcessor final : public IExternalProcessor, public halvane::com::DispatchHolder {
public:
    PublishedProcessor(ComPtr<ExternalProcessorInterface> pProcessor, ComPtr<IDispatch> pDispatch)
        : pProcessor_(std::move(pProcessor)), pDispatch_(std::move(pDispatch)) {}

    [[nodiscard]] IDispatch& dispatch() const noexcept override { return *pDispatch_; }
    std::string Process(dCollection& dColSpatialVariables) override {
        // The parameter's type is the collection's own interface.
        auto pCollection =
            halvane::com::dispatchOf(shared(dColSpatialVariables)).query<IDispatch>(iidCollection);
        if (!pCollection)
            throw Failure::of(FailureNumber::TypeMismatch);
        IDispatch* pPassed = pCollection.detach();
        halvane::com::Bstr sValue;
        static_cast<void>(SetErrorInfo(0, nullptr)); // what an earlier call left is not this one's
        const HRESULT hr = pProcessor_->Process(&pPassed, sValue.put());
        const auto pReturned = ComPtr<IDispatch>::attach(pPassed);
        if (FAILED(hr))
            throw failureOfCall(hr);
        return sValue.utf8();
    }

private:
    /// A direct call leaves its error's text with the thread.
    static Failure failureOfCall(HRESULT hr) {
        ComPtr<IErrorInfo> pInfo;
        EXCEPINFO exception{};
        exception.scode = hr;
        if (GetErrorInfo(0, pInfo.put()) == S_OK)
            static_cast<void>(pInfo->GetDescription(&exception.bstrDescription));
        return halvane::com::failureOf(exception, "IExternalProcessor.Process");
    }

    ComPtr<ExternalProcessorInterface> pProcessor_;
    ComPtr<IDispatch> pDispatch_;
};

/// A component that has a method of the name: a script, for example.
class LateBoundProcessor final : public IExternalProcessor, public halvane::com::DispatchHolder {
public:
    explicit LateBoundProcessor(LateBound processor) : processor_(std::move(processor)) {}

    [[nodiscard]] IDispatch& dispatch() const noexcept override { return processor_.dispatch(); }
    std::string Process(dCollection& dColSpatialVariables) override {
        return processor_.text("Process", {shared(dColSpatialVariables)});
    }

private:
    LateBound processor_;
};

Failure cannotCreate(std::string_view sProgId, HRESULT hr) {
    const Failure reason = halvane::com::failureOf(hr, "its class");
    return {FailureNumber::CannotCreateComponent,
            fmt::format("The component \"{}\" cannot be created: {}", sProgId, reason.description())};
}

} // namespace

ObjectPtr createByProgId(std::string_view sProgId) {
    CLSID clsid{};
    HRESULT hr = CLSIDFromProgID(halvane::com::Bstr(sProgId).get(), &clsid);
    if (FAILED(hr))
        throw cannotCreate(sProgId, hr);
    ComPtr<IUnknown> pComponent;
    hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IUnknown,
                          pComponent.putVoid());
    if (FAILED(hr))
        throw cannotCreate(sProgId, hr);
    const auto pDispatch = pComponent.query<IDispatch>();
    if (!pDispatch)
        throw cannotCreate(sProgId, E_NOINTERFACE);
    return processorOf(pDispatch);
}

ObjectPtr processorOf(const ComPtr<IDispatch>& pComponent) {
    if (auto pPublished = pComponent.query<ExternalProcessorInterface>(iidExternalProcessor))
        return std::make_shared<PublishedProcessor>(std::move(pPublished), pComponent);
    LateBound processor(std::make_shared<Context>(), kindProcessor, pComponent);
    if (processor.has("Process"))
        return std::make_shared<LateBoundProcessor>(std::move(processor));
    return std::make_shared<halvane::com::ForeignObject>(pComponent);
}

} // namespace halvane::host::com
