#include "host/memory/Fields.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <algorithm>

namespace halvane::host::memory {

FieldDefinition& FieldDefinition::alias(std::string sText) {
    sAlias = std::move(sText);
    return *this;
}

FieldDefinition& FieldDefinition::length(std::int32_t lCharacters) {
    lLength = lCharacters;
    return *this;
}

FieldDefinition& FieldDefinition::precision(std::int32_t lDigits) {
    lPrecision = lDigits;
    return *this;
}

FieldDefinition& FieldDefinition::notNull() {
    bNullable = false;
    return *this;
}

FieldDefinition& FieldDefinition::readOnly() {
    bEditable = false;
    return *this;
}

FieldDefinition& FieldDefinition::role(ValueRole role) {
    valueRole = role;
    return *this;
}

FieldDefinition field(std::string sName, FieldType type) {
    const bool bOwnedByHost = type == FieldType::Oid || type == FieldType::Geometry;
    FieldDefinition definition = field(std::move(sName), static_cast<std::int32_t>(type));
    definition.bNullable = !bOwnedByHost;
    definition.bEditable = !bOwnedByHost;
    return definition;
}

FieldDefinition field(std::string sName, std::int32_t lTypeCode) {
    FieldDefinition definition;
    definition.sName = std::move(sName);
    definition.lTypeCode = lTypeCode;
    return definition;
}

MemoryField::MemoryField(FieldDefinition definition) : definition_(std::move(definition)) {
    if (definition_.sAlias.empty())
        definition_.sAlias = definition_.sName;
}

std::string_view MemoryField::name() const {
    pass("GisField", "name");
    return definition_.sName;
}

std::string_view MemoryField::aliasName() const {
    pass("GisField", "aliasName");
    return definition_.sAlias;
}

std::int32_t MemoryField::typeCode() const {
    pass("GisField", "typeCode");
    return definition_.lTypeCode;
}

std::int32_t MemoryField::length() const {
    pass("GisField", "length");
    return definition_.lLength;
}

std::int32_t MemoryField::precision() const {
    pass("GisField", "precision");
    return definition_.lPrecision;
}

bool MemoryField::isNullable() const {
    pass("GisField", "isNullable");
    return definition_.bNullable;
}

bool MemoryField::isEditable() const {
    pass("GisField", "isEditable");
    return definition_.bEditable;
}

namespace {

using FieldList = std::vector<std::unique_ptr<MemoryField>>;

template<class Test>
std::int32_t indexWhere(const FieldList& aFields, Test test) {
    const auto found = std::find_if(aFields.begin(), aFields.end(),
                                    [&](const auto& pField) { return test(pField->definition()); });
    return found == aFields.end() ? -1 : static_cast<std::int32_t>(found - aFields.begin());
}

} // namespace

MemoryFields::MemoryFields(std::vector<FieldDefinition> aDefinitions) {
    for (FieldDefinition& definition : aDefinitions)
        aFields_.push_back(std::make_unique<MemoryField>(std::move(definition)));
}

std::int32_t MemoryFields::indexOfName(std::string_view sName) const {
    return indexWhere(aFields_, [sName](const FieldDefinition& definition) {
        return equalIgnoringCase(definition.sName, sName);
    });
}

std::int32_t MemoryFields::indexOfType(FieldType type) const {
    return indexWhere(aFields_, [type](const FieldDefinition& definition) {
        return definition.lTypeCode == static_cast<std::int32_t>(type);
    });
}

const FieldDefinition& MemoryFields::definition(std::int32_t lIndex) const {
    if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= aFields_.size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return aFields_[static_cast<std::size_t>(lIndex)]->definition();
}

std::int32_t MemoryFields::count() const {
    pass("GisFields", "count");
    return static_cast<std::int32_t>(aFields_.size());
}

const GisField& MemoryFields::field(std::int32_t lIndex) const {
    pass("GisFields", "field");
    if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= aFields_.size())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return *aFields_[static_cast<std::size_t>(lIndex)];
}

std::int32_t MemoryFields::findField(std::string_view sName) const {
    pass("GisFields", "findField");
    return indexOfName(sName);
}

std::int32_t MemoryFields::findFieldByAliasName(std::string_view sAlias) const {
    pass("GisFields", "findFieldByAliasName");
    return indexWhere(aFields_, [sAlias](const FieldDefinition& definition) {
        return equalIgnoringCase(definition.sAlias, sAlias);
    });
}

} // namespace halvane::host::memory
