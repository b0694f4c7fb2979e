#pragma once

#include "host/Fields.h"
#include "host/memory/Faults.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::host::memory {

/// What a field is made from: field("LEN", FieldType::Double).alias("Length").precision(12).
struct FieldDefinition {
    std::string sName;
    std::int32_t lTypeCode = 0;
    std::string sAlias; ///< "": the name
    std::int32_t lLength = 0;
    std::int32_t lPrecision = 0;
    bool bNullable = true;
    bool bEditable = true;
    ValueRole valueRole = ValueRole::AsTyped;

    FieldDefinition& alias(std::string sText);
    FieldDefinition& length(std::int32_t lCharacters);
    FieldDefinition& precision(std::int32_t lDigits);
    FieldDefinition& notNull();
    FieldDefinition& readOnly();
    FieldDefinition& role(ValueRole role);
};

/// Object identifiers and geometries are made without null and not editable.
[[nodiscard]] FieldDefinition field(std::string sName, FieldType type);
/// A field of a type that has no name.
[[nodiscard]] FieldDefinition field(std::string sName, std::int32_t lTypeCode);

class MemoryField final : public GisField, private Scripted {
public:
    explicit MemoryField(FieldDefinition definition);

    /// For the host itself: no host call.
    [[nodiscard]] const FieldDefinition& definition() const noexcept { return definition_; }

    [[nodiscard]] std::string_view name() const override;
    [[nodiscard]] std::string_view aliasName() const override;
    [[nodiscard]] std::int32_t typeCode() const override;
    [[nodiscard]] std::int32_t length() const override;
    [[nodiscard]] std::int32_t precision() const override;
    [[nodiscard]] bool isNullable() const override;
    [[nodiscard]] bool isEditable() const override;
    [[nodiscard]] ValueRole valueRole() const override { return definition_.valueRole; }

private:
    FieldDefinition definition_;
};

class MemoryFields final : public GisFields, private Scripted {
public:
    explicit MemoryFields(std::vector<FieldDefinition> aDefinitions);

    /// For the host itself: no host calls.
    [[nodiscard]] std::int32_t indexOfName(std::string_view sName) const;
    [[nodiscard]] std::int32_t indexOfType(FieldType type) const;
    [[nodiscard]] const FieldDefinition& definition(std::int32_t lIndex) const;

    [[nodiscard]] std::int32_t count() const override;
    [[nodiscard]] const GisField& field(std::int32_t lIndex) const override;
    [[nodiscard]] std::int32_t findField(std::string_view sName) const override;
    [[nodiscard]] std::int32_t findFieldByAliasName(std::string_view sAlias) const override;

private:
    std::vector<std::unique_ptr<MemoryField>> aFields_;
};
using MemoryFieldsPtr = std::shared_ptr<const MemoryFields>;

} // namespace halvane::host::memory
