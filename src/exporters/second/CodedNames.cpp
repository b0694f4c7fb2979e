#include "exporters/second/CodedNames.h"

#include "base/Conversions.h"
#include "engine/second/RowScope.h"
#include "exporters/second/ItemFacts.h"
#include "host/Domains.h"
#include "host/Fields.h"
#include "host/Rows.h"
#include "host/Subtypes.h"
#include "host/Tables.h"

#include <map>
#include <string>
#include <tuple>

namespace halvane {

/// The names by the texts of their codes, for each field and subtype that was asked for.
struct CodedNames {
    using Names = std::map<std::string, std::string, std::less<>>;
    struct Table {
        host::GisSubtypesPtr pSubtypes; ///< nothing where the host knows no domains of it
        std::int32_t lSubtypeField = -1;
        std::map<std::pair<std::int32_t, std::int32_t>, Names> names; ///< by field and subtype
    };
    std::map<std::uint64_t, Table> tables; ///< by the serial number of the fields
    std::uint64_t nGeneration = 0;
};

namespace {

CodedNames::Table tableNames(host::GisTable& table, const host::GisRow& row) {
    CodedNames::Table names;
    names.pSubtypes = subtypesOf(table);
    if (names.pSubtypes != nullptr && names.pSubtypes->hasSubtypes())
        names.lSubtypeField = row.fields().findField(names.pSubtypes->subtypeFieldName());
    return names;
}

/// Nothing for a row whose subtype is no code at all.
std::optional<std::int32_t> subtypeOf(const CodedNames::Table& table, const host::GisRow& row) {
    if (table.lSubtypeField < 0)
        return 0;
    const ValueView code = row.value(table.lSubtypeField);
    if (isNull(code))
        return table.pSubtypes->defaultSubtypeCode();
    try {
        return wholeNumberOf(code);
    } catch (const Failure&) {
        return std::nullopt;
    }
}

CodedNames::Names namesOf(const host::GisSubtypes& subtypes, std::int32_t lSubtype, std::string_view sField) {
    CodedNames::Names names;
    const auto pDomain = subtypes.domain(lSubtype, sField);
    const std::int32_t lCount = pDomain == nullptr ? 0 : pDomain->codeCount();
    for (std::int32_t n = 0; n < lCount; ++n) {
        host::CodedValue code = pDomain->code(n);
        names.try_emplace(toText(code.vCode), std::move(code.sName));
    }
    return names;
}

} // namespace

std::optional<std::string_view> codedName(ExportState& state, const host::GisRow& row, std::int32_t lField,
                                          const ValueView& value) {
    if (isNull(value) || std::holds_alternative<ObjectPtr>(value))
        return std::nullopt;
    if (state.pCodedNames == nullptr || state.pCodedNames->nGeneration != state.nGeneration)
        state.pCodedNames = std::make_shared<CodedNames>(CodedNames{{}, state.nGeneration});
    auto& tables = state.pCodedNames->tables;
    const std::uint64_t nFields = row.fields().serialNumber();
    auto table = tables.find(nFields);
    if (table == tables.end()) {
        const auto pTable = tableOf(state, row);
        if (pTable == nullptr)
            return std::nullopt;
        table = tables.emplace(nFields, tableNames(*pTable, row)).first;
    }
    if (table->second.pSubtypes == nullptr)
        return std::nullopt;
    const auto subtype = subtypeOf(table->second, row);
    if (!subtype)
        return std::nullopt;
    const std::pair key(lField, *subtype);
    auto names = table->second.names.find(key);
    if (names == table->second.names.end())
        names = table->second.names
                    .emplace(key,
                             namesOf(*table->second.pSubtypes, key.second, row.fields().field(lField).name()))
                    .first;
    const auto name = names->second.find(toText(value));
    return name == names->second.end() ? std::nullopt : std::optional<std::string_view>(name->second);
}

} // namespace halvane
