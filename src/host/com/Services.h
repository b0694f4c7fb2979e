#pragma once

// The small objects that the application makes for its clients.

#include "host/Application.h"
#include "host/Workspace.h"
#include "host/com/HostObject.h"

namespace halvane::host::com {

class ComPropertySet final : public GisPropertySet, public HostObject {
public:
    ComPropertySet(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindPropertySet, std::move(pDispatch)) {}

    void setProperty(std::string_view sName, const Value& vValue) override {
        static_cast<void>(object().call("SetProperty", {std::string(sName), vValue}));
    }
    [[nodiscard]] Value property(std::string_view sName) const override {
        return object().value("GetProperty", {std::string(sName)});
    }
};

class ComWorkspaceFactory final : public GisWorkspaceFactory, public HostObject {
public:
    ComWorkspaceFactory(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindWorkspaceFactory, std::move(pDispatch)) {}

    /// @param properties made by this host, else Failure TypeMismatch.
    [[nodiscard]] GisWorkspacePtr open(const GisPropertySet& properties, std::int32_t lWindowHandle) override;
    [[nodiscard]] GisWorkspacePtr openFromFile(std::string_view sPath, std::int32_t lWindowHandle) override;
};

class ComCatalog final : public GisCatalog, public HostObject {
public:
    ComCatalog(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindCatalog, std::move(pDispatch)) {}

    [[nodiscard]] GisCatalogObjectPtr objectFromFullName(std::string_view sFullName) override;
};

/// The catalog of an application without one: it knows no objects.
class EmptyCatalog final : public GisCatalog {
public:
    [[nodiscard]] GisCatalogObjectPtr objectFromFullName(std::string_view /*sFullName*/) override {
        return nullptr;
    }
};

class ComNumericFormat final : public GisNumericFormat, public HostObject {
public:
    ComNumericFormat(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindNumericFormat, std::move(pDispatch)) {}

    void configure(const std::array<std::int32_t, 7>& aSettings) override;
    [[nodiscard]] std::string valueToText(double dValue) const override {
        return object().text("ValueToText", {dValue});
    }
};

/// The format of an application without one.
class BuiltInNumericFormat final : public GisNumericFormat {
public:
    void configure(const std::array<std::int32_t, 7>& aSettings) override { lDecimals_ = aSettings[3]; }
    /// @throws Failure InvalidProcedureCall before configure().
    [[nodiscard]] std::string valueToText(double dValue) const override;
    void appendValue(std::string& sText, double dValue) const override;
    [[nodiscard]] bool yieldsPlainTexts() const override { return true; }

private:
    std::optional<std::int32_t> lDecimals_;
};

} // namespace halvane::host::com
