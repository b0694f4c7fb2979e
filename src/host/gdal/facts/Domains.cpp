#include "host/gdal/facts/Domains.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/facts/Dates.h"
#include "host/gdal/facts/Fields.h"
#include "host/gdal/facts/Values.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"

#include <algorithm>
#include <map>
#include <optional>

namespace halvane::host::gdal {

namespace {

Value valueOf(const std::string& sText, FieldType type) {
    return parseValue(sText, type).value_or(Value(sText));
}

// A row of a GeoPackage's table of constraints.
struct Constraint {
    std::string sName;
    std::string sType;
    std::string sValue;
    std::optional<std::string> sMin;
    std::optional<std::string> sMax;
    std::string sDescription;
};

using Constraints = std::vector<const Constraint*>; // of one name

// A bound may be a date or a whole number of 64 bits, which the library would read as a double.
std::string exactText(const std::string& sColumn) {
    return "CASE typeof(" + sColumn + ") WHEN 'real' THEN printf('%!.17g', " + sColumn + ") ELSE CAST(" +
           sColumn + " AS TEXT) END";
}

std::vector<Constraint> constraintsOf(GDALDataset& dataset) {
    // The table's own order is the order of definition; the library would sort codes as texts.
    std::vector<Constraint> constraints;
    query(dataset,
          "SELECT constraint_name, constraint_type, value, " + exactText("min") + ", " + exactText("max") +
              ", description FROM gpkg_data_column_constraints ORDER BY rowid",
          [&](const QueryRow& row) {
              constraints.push_back({row.text(0), lowerCase(row.text(1)), row.text(2), row.optionalText(3),
                                     row.optionalText(4), row.text(5)});
          });
    return constraints;
}

// The type of the first field that uses each domain, by upper-cased domain name.
std::map<std::string, FieldType> typesOfUsers(GDALDataset& dataset) {
    std::map<std::string, FieldType> types;
    query(dataset, "SELECT constraint_name, table_name, column_name FROM gpkg_data_columns ORDER BY rowid",
          [&](const QueryRow& row) {
              OGRLayer* pLayer = dataset.GetLayerByName(row.text(1).c_str());
              if (pLayer == nullptr || row.text(0).empty())
                  return;
              const int lField = pLayer->GetLayerDefn()->GetFieldIndex(row.text(2).c_str());
              if (lField >= 0)
                  types.emplace(upperCase(row.text(0)),
                                fieldTypeOf(*pLayer->GetLayerDefn()->GetFieldDefn(lField)));
          });
    return types;
}

// A code such as "007" or "1.0" is a text: as a number it would be another code.
bool isWholeCode(const std::string& sText) {
    const auto value = parseValue(sText, FieldType::Integer);
    return value && toText(*value) == sText;
}

bool areWhole(const Constraints& rows) {
    return std::all_of(rows.begin(), rows.end(), [](const Constraint* pRow) {
        const auto isWhole = [](const std::string& sText) {
            return parseValue(sText, FieldType::Integer).has_value();
        };
        return pRow->sType == "range" ? isWhole(pRow->sMin.value_or("0")) && isWhole(pRow->sMax.value_or("0"))
                                      : isWholeCode(pRow->sValue);
    });
}

DomainFacts factsOf(const Constraints& rows, std::optional<FieldType> userType) {
    const Constraint& first = *rows.front();
    DomainFacts facts;
    facts.sName = first.sName;
    facts.kind = first.sType == "range"  ? DomainKind::Range
                 : first.sType == "enum" ? DomainKind::CodedValue
                                         : DomainKind::Text;
    const FieldType guess = facts.kind == DomainKind::Text    ? FieldType::String
                            : areWhole(rows)                  ? FieldType::Integer
                            : facts.kind == DomainKind::Range ? FieldType::Double
                                                              : FieldType::String;
    facts.fieldType = userType.value_or(guess);
    if (facts.kind == DomainKind::CodedValue) {
        for (const Constraint* pRow : rows)
            facts.codes.push_back({valueOf(pRow->sValue, facts.fieldType), pRow->sDescription});
        return facts;
    }
    facts.sDescription = first.sDescription;
    if (facts.kind == DomainKind::Range) {
        facts.vMin = first.sMin ? valueOf(*first.sMin, facts.fieldType) : Value(Null{});
        facts.vMax = first.sMax ? valueOf(*first.sMax, facts.fieldType) : Value(Null{});
    }
    return facts;
}

// The library keeps the description of a domain of codes in a row of its own. @returns that domain's
// upper-cased name; nothing for the rows of a domain.
std::optional<std::string> describedDomain(const Constraints& rows) {
    constexpr std::string_view sBefore = "_";
    constexpr std::string_view sAfter = "_DOMAIN_DESCRIPTION";
    const std::string sName = upperCase(rows.front()->sName);
    if (rows.size() > 1 || rows.front()->sType == "range" || !rows.front()->sValue.empty() ||
        !sName.starts_with(sBefore) || !sName.ends_with(sAfter) ||
        sName.size() <= sBefore.size() + sAfter.size())
        return std::nullopt;
    return sName.substr(sBefore.size(), sName.size() - sBefore.size() - sAfter.size());
}

// In the order of each name's first row; names are compared ignoring case.
std::vector<std::pair<std::string, Constraints>> groupedByName(const std::vector<Constraint>& constraints) {
    std::vector<std::pair<std::string, Constraints>> groups;
    for (const Constraint& constraint : constraints) {
        const std::string sKey = upperCase(constraint.sName);
        auto pGroup = std::find_if(groups.begin(), groups.end(),
                                   [&](const auto& group) { return group.first == sKey; });
        if (pGroup == groups.end())
            pGroup = groups.insert(groups.end(), {sKey, {}});
        pGroup->second.push_back(&constraint);
    }
    return groups;
}

DomainList geoPackageDomains(GDALDataset& dataset) {
    const std::vector<Constraint> constraints = constraintsOf(dataset);
    if (constraints.empty())
        return {};
    const std::map<std::string, FieldType> types = typesOfUsers(dataset);
    const auto groups = groupedByName(constraints);
    std::map<std::string, std::string> descriptions; // by upper-cased name
    for (const auto& [sKey, rows] : groups)
        if (const auto sDescribed = describedDomain(rows))
            descriptions.emplace(*sDescribed, rows.front()->sDescription);
    DomainList domains;
    for (const auto& [sKey, rows] : groups) {
        if (describedDomain(rows))
            continue;
        const auto pType = types.find(sKey);
        DomainFacts facts = factsOf(rows, pType == types.end() ? std::nullopt : std::optional(pType->second));
        if (facts.sDescription.empty())
            facts.sDescription = descriptions[sKey];
        domains.push_back(std::make_shared<GdalDomain>(std::move(facts)));
    }
    return domains;
}

Value boundOf(const OGRField& raw, OGRFieldType type) {
    switch (type) {
    case OFTInteger:
        return std::int32_t{raw.Integer};
    case OFTInteger64:
        return std::int64_t{raw.Integer64};
    case OFTReal:
        return raw.Real;
    case OFTDate:
    case OFTDateTime:
        return dateOf(raw);
    default:
        return Null{};
    }
}

void readRange(DomainFacts& facts, const OGRRangeFieldDomain& range) {
    bool bInclusive = false;
    const OGRField& lower = range.GetMin(bInclusive);
    facts.vMin = OGR_RawField_IsUnset(&lower) != 0 ? Value(Null{}) : boundOf(lower, range.GetFieldType());
    const OGRField& upper = range.GetMax(bInclusive);
    facts.vMax = OGR_RawField_IsUnset(&upper) != 0 ? Value(Null{}) : boundOf(upper, range.GetFieldType());
}

DomainFacts factsOf(const OGRFieldDomain& domain) {
    DomainFacts facts;
    facts.sName = domain.GetName();
    facts.sDescription = domain.GetDescription();
    facts.fieldType = fieldTypeOf(domain.GetFieldType(), domain.GetFieldSubType());
    facts.lMergePolicy = domain.GetMergePolicy();
    facts.lSplitPolicy = domain.GetSplitPolicy();
    if (domain.GetDomainType() == OFDT_CODED) {
        const OGRCodedValue* pCode = dynamic_cast<const OGRCodedFieldDomain&>(domain).GetEnumeration();
        for (; pCode->pszCode != nullptr; ++pCode) {
            facts.codes.push_back({valueOf(pCode->pszCode, facts.fieldType),
                                   pCode->pszValue == nullptr ? "" : pCode->pszValue});
        }
    } else if (domain.GetDomainType() == OFDT_RANGE) {
        facts.kind = DomainKind::Range;
        readRange(facts, dynamic_cast<const OGRRangeFieldDomain&>(domain));
    } else {
        facts.kind = DomainKind::Text;
    }
    return facts;
}

} // namespace

void GdalDomain::requireRange() const {
    if (facts_.kind != DomainKind::Range)
        throw Failure::of(FailureNumber::ActionNotSupported);
}

Value GdalDomain::minValue() const {
    requireRange();
    return facts_.vMin;
}

Value GdalDomain::maxValue() const {
    requireRange();
    return facts_.vMax;
}

std::int32_t GdalDomain::codeCount() const {
    return static_cast<std::int32_t>(facts_.codes.size());
}

CodedValue GdalDomain::code(std::int32_t lIndex) const {
    if (lIndex < 0 || lIndex >= codeCount())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return facts_.codes[static_cast<std::size_t>(lIndex)];
}

GisDomainPtr GdalEnumDomain::next() {
    return nNext_ < domains_.size() ? domains_[nNext_++] : nullptr;
}

DomainList domainsOf(HandlePool& pool, const SourcePtr& pSource) {
    const Handle handle = pool.acquire(pSource);
    const ErrorScope errors;
    if (pSource->sDriver == "GPKG")
        return geoPackageDomains(handle.dataset());
    DomainList domains;
    for (const std::string& sName : handle.dataset().GetFieldDomainNames(nullptr))
        if (const OGRFieldDomain* pDomain = handle.dataset().GetFieldDomain(sName))
            domains.push_back(std::make_shared<GdalDomain>(factsOf(*pDomain)));
    return domains;
}

GisDomainPtr findDomain(const DomainList& domains, std::string_view sName) {
    const auto pFound = std::find_if(domains.begin(), domains.end(), [&](const GisDomainPtr& pDomain) {
        return equalIgnoringCase(pDomain->name(), sName);
    });
    return pFound == domains.end() ? nullptr : *pFound;
}

} // namespace halvane::host::gdal
