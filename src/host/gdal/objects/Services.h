#pragma once

// The small objects that the host makes for its clients.

#include "host/Workspace.h"
#include "host/gdal/objects/Environment.h"

#include <map>
#include <optional>

namespace halvane::host::gdal {

/// Names are found ignoring case.
class GdalPropertySet : public GisPropertySet {
public:
    void setProperty(std::string_view sName, const Value& vValue) override;
    /// Empty for a name that was not set.
    [[nodiscard]] Value property(std::string_view sName) const override;

private:
    std::map<std::string, Value> values_;
};

/// Opens folders and file databases, and the database servers that the map document names. Backslashes of a
/// path are read as slashes.
class GdalWorkspaceFactory : public GisWorkspaceFactory {
public:
    GdalWorkspaceFactory(EnvironmentPtr pEnvironment, WorkspaceFactoryKind kind)
        : pEnvironment_(std::move(pEnvironment)), kind_(kind) {}

    [[nodiscard]] GisWorkspacePtr open(const GisPropertySet& properties, std::int32_t lWindowHandle) override;
    /// Connection files do not exist here: a Failure for the remote-database kind.
    [[nodiscard]] GisWorkspacePtr openFromFile(std::string_view sPath, std::int32_t lWindowHandle) override;

private:
    EnvironmentPtr pEnvironment_;
    WorkspaceFactoryKind kind_;
};

/// A catalog that knows no objects.
class EmptyCatalog : public GisCatalog {
public:
    [[nodiscard]] GisCatalogObjectPtr objectFromFullName(std::string_view /*sFullName*/) override {
        return nullptr;
    }
};

class GdalNumericFormat : public GisNumericFormat {
public:
    void configure(const std::array<std::int32_t, 7>& aSettings) override { lDecimals_ = aSettings[3]; }
    /// @throws Failure InvalidProcedureCall before configure().
    [[nodiscard]] std::string valueToText(double dValue) const override;
    void appendValue(std::string& sText, double dValue) const override;
    /// In all locales: a decimal separator that needs escaping is unknown.
    [[nodiscard]] bool yieldsPlainTexts() const override { return true; }

private:
    std::optional<std::int32_t> lDecimals_;
};

/// Today's date by the local clock.
[[nodiscard]] Date localDate();

} // namespace halvane::host::gdal
