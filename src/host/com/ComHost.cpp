#include "host/com/ComHost.h"

#include "base/com/Bstr.h"
#include "base/com/HResult.h"
#include "host/com/ExternalProcessor.h"
#include "host/com/Layers.h"
#include "host/com/Services.h"

#include <fmt/format.h>

namespace halvane::host::com {

namespace {

constexpr std::string_view sApplicationProgId = "Halvane.HostApplication";

/// The application that is registered: the running one, else a new one; nothing when there is none.
ComPtr<IDispatch> registeredApplication() {
    CLSID clsid{};
    if (FAILED(CLSIDFromProgID(halvane::com::Bstr(sApplicationProgId).get(), &clsid)))
        return {};
    ComPtr<IUnknown> pApplication;
    if (FAILED(GetActiveObject(clsid, nullptr, pApplication.put()))) {
        halvane::com::require(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                               IID_IUnknown, pApplication.putVoid()),
                              sApplicationProgId);
    }
    return pApplication.query<IDispatch>();
}

Date localDate() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    Date date;
    date.year = now.wYear;
    date.month = static_cast<std::uint8_t>(now.wMonth);
    date.day = static_cast<std::uint8_t>(now.wDay);
    return date;
}

class ComHost final : public GisHost {
public:
    explicit ComHost(ComPtr<IDispatch> pDocument) : pDocument_(std::move(pDocument)) {}

    [[nodiscard]] GisFeatureLayerPtr newFeatureLayer() override {
        return requiredRoleOf<ComFeatureLayer>(application(), "NewFeatureLayer");
    }
    [[nodiscard]] GisPropertySetPtr newPropertySet() override {
        return requiredRoleOf<ComPropertySet>(application(), "NewPropertySet");
    }
    [[nodiscard]] GisWorkspaceFactoryPtr newWorkspaceFactory(WorkspaceFactoryKind kind) override {
        return requiredRoleOf<ComWorkspaceFactory>(application(), "NewWorkspaceFactory",
                                                   {static_cast<std::int32_t>(kind)});
    }
    [[nodiscard]] GisCatalogPtr newCatalog() override;
    [[nodiscard]] GisNumericFormatPtr newNumericFormat() override;
    [[nodiscard]] ObjectPtr createComponent(std::string_view sProgId) override;
    [[nodiscard]] Date today() const override;
    [[nodiscard]] char pathSeparator() const override;

private:
    /// @throws Failure when there is none.
    [[nodiscard]] const LateBound& application() const;
    /// The application where there is one with that member, else nullptr.
    [[nodiscard]] const LateBound* applicationWith(std::string_view sMember) const;
    void lookForApplication() const;

    ComPtr<IDispatch> pDocument_;
    ContextPtr pContext_ = std::make_shared<Context>();
    mutable std::optional<LateBound> application_;
    mutable bool bLookedFor_ = false;
};

void ComHost::lookForApplication() const {
    if (bLookedFor_)
        return;
    ComPtr<IDispatch> pApplication;
    if (pDocument_) {
        const LateBound document(pContext_, kindMapDocument, pDocument_);
        if (document.has("Application"))
            pApplication = document.object("Application");
    } else {
        pApplication = registeredApplication();
    }
    if (pApplication)
        application_.emplace(pContext_, kindApplication, std::move(pApplication));
    bLookedFor_ = true;
}

const LateBound& ComHost::application() const {
    lookForApplication();
    if (!application_.has_value()) {
        throw Failure(FailureNumber::ObjectVariableNotSet,
                      pDocument_ ? "The host application's MapDocument has no \"Application\""
                                 : fmt::format("There is no map document and no application \"{}\"",
                                               sApplicationProgId));
    }
    return *application_;
}

const LateBound* ComHost::applicationWith(std::string_view sMember) const {
    lookForApplication();
    return application_.has_value() && application_->has(sMember) ? &*application_ : nullptr;
}

GisCatalogPtr ComHost::newCatalog() {
    const LateBound* pApplication = applicationWith("NewCatalog");
    if (pApplication == nullptr)
        return std::make_shared<EmptyCatalog>();
    return requiredRoleOf<ComCatalog>(*pApplication, "NewCatalog");
}

GisNumericFormatPtr ComHost::newNumericFormat() {
    const LateBound* pApplication = applicationWith("NewNumericFormat");
    if (pApplication == nullptr)
        return std::make_shared<BuiltInNumericFormat>();
    return requiredRoleOf<ComNumericFormat>(*pApplication, "NewNumericFormat");
}

ObjectPtr ComHost::createComponent(std::string_view sProgId) {
    if (const LateBound* pApplication = applicationWith("CreateComponent")) {
        if (const auto pComponent = pApplication->object("CreateComponent", {std::string(sProgId)}))
            return processorOf(pComponent);
    }
    return createByProgId(sProgId);
}

Date ComHost::today() const {
    const LateBound* pApplication = applicationWith("Today");
    if (pApplication == nullptr)
        return localDate();
    const Value vToday = pApplication->value("Today");
    if (const auto* pDate = std::get_if<Date>(&vToday))
        return *pDate;
    throw pApplication->mismatch("Today");
}

char ComHost::pathSeparator() const {
    const LateBound* pApplication = applicationWith("PathSeparator");
    if (pApplication == nullptr)
        return '\\';
    const std::string sSeparator = pApplication->text("PathSeparator");
    if (sSeparator.size() != 1)
        throw pApplication->mismatch("PathSeparator");
    return sSeparator.front();
}

} // namespace

GisHostPtr makeHost(IDispatch* pDocument) {
    return std::make_shared<ComHost>(ComPtr<IDispatch>(pDocument));
}

} // namespace halvane::host::com
