#pragma once

#include "host/Subtypes.h"
#include "host/gdal/objects/Table.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::host::gdal {

/// The subtypes that the data itself states; nothing without any.
/// @throws Failure for a code that is not a whole number of 32 bits, and for a row of another field than the
///         first, naming the row.
[[nodiscard]] std::optional<SubtypesFacts> subtypesOf(const LayerHandle& layer);

/// A class seen as a holder of subtypes; a class without any answers for its fields alone.
class GdalSubtypes : public GisSubtypes {
public:
    GdalSubtypes(std::optional<SubtypesFacts> facts, GdalFieldsPtr pFields, GdalWorkspacePtr pWorkspace);

    [[nodiscard]] bool hasSubtypes() const override { return facts_.has_value(); }
    [[nodiscard]] std::string subtypeFieldName() const override { return facts_ ? facts_->sField : ""; }
    [[nodiscard]] std::int32_t defaultSubtypeCode() const override { return facts_ ? facts_->lDefault : 0; }
    [[nodiscard]] std::int32_t subtypeCount() const override;
    [[nodiscard]] std::int32_t subtypeCode(std::int32_t lIndex) const override;
    /// "" for a code that no subtype has.
    [[nodiscard]] std::string subtypeName(std::int32_t lCode) const override;
    [[nodiscard]] GisDomainPtr domain(std::int32_t lCode, std::string_view sFieldName) const override;
    [[nodiscard]] Value defaultValue(std::int32_t lCode, std::string_view sFieldName) const override;

private:
    [[nodiscard]] const SubtypeFacts* find(std::int32_t lCode) const;
    [[nodiscard]] const SubtypeFieldFacts* findField(std::int32_t lCode, std::string_view sFieldName) const;

    std::optional<SubtypesFacts> facts_;
    GdalFieldsPtr pFields_;
    GdalWorkspacePtr pWorkspace_;
};

} // namespace halvane::host::gdal
