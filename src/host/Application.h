#pragma once

// What the host application makes for its clients.

#include "base/Value.h"
#include "host/Forward.h"
#include "host/Workspace.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace halvane::host {

/// An object of the host's catalog.
class GisCatalogObject : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisCatalogObject"; }
    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual std::string fullName() const = 0;
    [[nodiscard]] virtual std::string category() const = 0;
    /// Nothing at the root.
    [[nodiscard]] virtual std::shared_ptr<GisCatalogObject> parent() const = 0;
};

class GisCatalog : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisCatalog"; }
    /// Nothing when there is no object of that name.
    [[nodiscard]] virtual GisCatalogObjectPtr objectFromFullName(std::string_view sFullName) = 0;
};

/// A number format of the host. The fourth of its seven settings is the number of decimal places.
class GisNumericFormat : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisNumericFormat"; }
    virtual void configure(const std::array<std::int32_t, 7>& aSettings) = 0;
    [[nodiscard]] virtual std::string valueToText(double dValue) const = 0;
    /// Whether the texts are made of ASCII digits, signs, points and letters alone: nothing to escape in
    /// them.
    [[nodiscard]] virtual bool yieldsPlainTexts() const { return false; }
    /// The same, appended to a text.
    virtual void appendValue(std::string& sText, double dValue) const { sText.append(valueToText(dValue)); }
};

/// What the host application makes for its clients.
class GisHost : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisHost"; }
    /// A feature layer without a feature class.
    [[nodiscard]] virtual GisFeatureLayerPtr newFeatureLayer() = 0;
    [[nodiscard]] virtual GisPropertySetPtr newPropertySet() = 0;
    [[nodiscard]] virtual GisWorkspaceFactoryPtr newWorkspaceFactory(WorkspaceFactoryKind kind) = 0;
    [[nodiscard]] virtual GisCatalogPtr newCatalog() = 0;
    [[nodiscard]] virtual GisNumericFormatPtr newNumericFormat() = 0;
    /// A new component by its programmatic identifier. @throws Failure CannotCreateComponent.
    [[nodiscard]] virtual ObjectPtr createComponent(std::string_view sProgId) = 0;
    /// The reference that a register has under a code, "EPSG:4258". Nothing else is opened for it.
    /// @throws Failure for what is no code, and for one that no register has; ActionNotSupported where the
    /// host has no register.
    [[nodiscard]] virtual GisSpatialReferencePtr referenceOf(std::string_view sAuthorityCode);
    /// Today's date where the host runs.
    [[nodiscard]] virtual Date today() const = 0;
    /// What separates the folders in the host's file paths: "\" or "/".
    [[nodiscard]] virtual char pathSeparator() const = 0;
};

} // namespace halvane::host
