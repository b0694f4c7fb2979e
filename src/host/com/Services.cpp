#include "host/com/Services.h"

#include "base/Numbers.h"
#include "host/com/Tables.h"

#include <algorithm>

namespace halvane::host::com {

namespace {

class ComCatalogObject final : public GisCatalogObject, public HostObject {
public:
    ComCatalogObject(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindCatalogObject, std::move(pDispatch)) {}

    [[nodiscard]] std::string name() const override { return object().text("Name"); }
    [[nodiscard]] std::string fullName() const override { return object().text("FullName"); }
    [[nodiscard]] std::string category() const override { return object().text("Category"); }
    [[nodiscard]] GisCatalogObjectPtr parent() const override {
        return roleOf<ComCatalogObject>(object(), "Parent");
    }
};

} // namespace

GisWorkspacePtr ComWorkspaceFactory::open(const GisPropertySet& properties, std::int32_t lWindowHandle) {
    const auto* pHolder = dynamic_cast<const halvane::com::DispatchHolder*>(&properties);
    if (pHolder == nullptr)
        throw object().mismatch("Open");
    const auto pProperties =
        std::make_shared<halvane::com::ForeignObject>(ComPtr<IDispatch>(&pHolder->dispatch()));
    return requiredRoleOf<ComWorkspace>(object(), "Open", {ObjectPtr(pProperties), lWindowHandle});
}

GisWorkspacePtr ComWorkspaceFactory::openFromFile(std::string_view sPath, std::int32_t lWindowHandle) {
    return requiredRoleOf<ComWorkspace>(object(), "OpenFromFile", {std::string(sPath), lWindowHandle});
}

GisCatalogObjectPtr ComCatalog::objectFromFullName(std::string_view sFullName) {
    return roleOf<ComCatalogObject>(object(), "ObjectFromFullName", {std::string(sFullName)});
}

void ComNumericFormat::configure(const std::array<std::int32_t, 7>& aSettings) {
    static_cast<void>(object().call("Configure", {aSettings[0], aSettings[1], aSettings[2], aSettings[3],
                                                  aSettings[4], aSettings[5], aSettings[6]}));
}

std::string BuiltInNumericFormat::valueToText(double dValue) const {
    std::string sText;
    appendValue(sText, dValue);
    return sText;
}

void BuiltInNumericFormat::appendValue(std::string& sText, double dValue) const {
    if (!lDecimals_.has_value())
        throw Failure(FailureNumber::InvalidProcedureCall, "The number format has not been configured");
    appendFixedText(sText, dValue, std::max<std::int32_t>(0, *lDecimals_));
}

} // namespace halvane::host::com
