#include "host/gdal/map/project/ProjectFields.h"

#include "base/Text.h"
#include "host/gdal/facts/Values.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace halvane::host::gdal {

namespace {

/// Collects what several lists of a layer say of its fields.
class FieldsReader {
public:
    FieldsReader(const ElementReader& reader, const MarkupElement& layer, const std::string& sLayer,
                 ProjectRemarks& remarks)
        : reader_(reader), layer_(layer), sLayer_(sLayer), remarks_(remarks) {}

    ProjectFields read();

private:
    template<class Take>
    void forEach(const char* pList, const char* pItem, Take take);
    FieldOverride& field(const MarkupElement& element, const char* pName = "field");
    [[nodiscard]] std::string qualified(const std::string& sField) const { return sLayer_ + "." + sField; }
    void takeDefault(const MarkupElement& element);
    void takeConstraint(const MarkupElement& element);
    void takeWidget(const MarkupElement& element);
    void takeValues(const MarkupElement& field, const MarkupElement& values);

    const ElementReader& reader_;
    const MarkupElement& layer_;
    const std::string& sLayer_;
    ProjectRemarks& remarks_;
    ProjectFields all_;
    std::unordered_map<std::string, std::size_t> places_; // by name
};

template<class Take>
void FieldsReader::forEach(const char* pList, const char* pItem, Take take) {
    // Some lists are written twice.
    if (const auto list = layer_.child(pList))
        for (const MarkupElement& item : list->children(pItem))
            take(item);
}

FieldOverride& FieldsReader::field(const MarkupElement& element, const char* pName) {
    const std::string sName = element.text(pName);
    const auto [pPlace, bNew] = places_.emplace(sName, all_.fields.size());
    if (bNew) {
        FieldOverride& added = all_.fields.emplace_back();
        added.sPlace = reader_.placeOf(element).text();
        added.sName = sName;
        added.bMayLack = true;
    }
    return all_.fields[pPlace->second];
}

// Words such as "nan" are none here.
bool isNumber(std::string_view sText) {
    return sText.find_first_not_of("+-.0123456789eE") == std::string_view::npos &&
           parseValue(sText, FieldType::Double).has_value();
}

// A number or a text between quotes, as a plain text; nothing for what has to be computed.
std::optional<std::string> literalOf(std::string_view sExpression) {
    const std::string_view sText = trimBlanks(sExpression);
    if (isNumber(sText))
        return std::string(sText);
    if (sText.size() < 2 || sText.front() != '\'' || sText.back() != '\'')
        return std::nullopt;
    const std::string sInside = replaceAll(sText.substr(1, sText.size() - 2), "''", "\1");
    return sInside.find('\'') == std::string::npos ? std::optional(replaceAll(sInside, "\1", "'"))
                                                   : std::nullopt;
}

void FieldsReader::takeDefault(const MarkupElement& element) {
    const std::string sExpression = element.text("expression");
    if (sExpression.empty())
        return;
    if (auto literal = literalOf(sExpression))
        field(element).sDefault = std::move(literal);
    else
        remarks_.add("defaults that are computed are left out", qualified(element.text("field")));
}

void FieldsReader::takeConstraint(const MarkupElement& element) {
    constexpr std::int32_t lNotNull = 1;
    constexpr std::int32_t lHard = 1;
    if ((toWhole(element.text("constraints")) & lNotNull) != 0 &&
        toWhole(element.text("notnull_strength")) == lHard)
        field(element).bNullable = false;
}

// The narrowest type that all codes have; a number that is written otherwise ("01") is a text.
FieldType typeOfCodes(const std::vector<CodedValue>& codes) {
    const auto all = [&](FieldType type) {
        return std::all_of(codes.begin(), codes.end(), [&](const CodedValue& code) {
            const auto& sText = std::get<std::string>(code.vCode);
            const bool bPadded = sText.size() > 1 && sText.starts_with('0') && !sText.starts_with("0.");
            return !bPadded && isNumber(sText) && parseValue(sText, type).has_value();
        });
    };
    return all(FieldType::Integer)  ? FieldType::Integer
           : all(FieldType::Double) ? FieldType::Double
                                    : FieldType::String;
}

void addCodes(const MarkupElement& parent, std::vector<CodedValue>& codes) {
    constexpr std::string_view sNoValue = "{2839923C-8B7D-419E-B84B-CA2FE9B80EC7}";
    for (const MarkupElement& option : parent.children("Option")) {
        if (const auto code = option.attribute("value"); code && *code != sNoValue)
            codes.push_back({Value(*code), option.text("name")});
        addCodes(option, codes);
    }
}

void FieldsReader::takeValues(const MarkupElement& element, const MarkupElement& values) {
    DomainFacts domain;
    domain.sName = qualified(element.text("name"));
    addCodes(values, domain.codes);
    if (domain.codes.empty())
        return;
    domain.fieldType = typeOfCodes(domain.codes);
    for (CodedValue& code : domain.codes)
        code.vCode = *parseValue(std::get<std::string>(code.vCode), domain.fieldType);
    field(element, "name").sDomain = domain.sName;
    all_.domains.push_back(std::move(domain));
}

void FieldsReader::takeWidget(const MarkupElement& element) {
    const auto widget = element.child("editWidget");
    const std::string sType = widget ? widget->text("type") : std::string();
    if (sType == "ValueRelation")
        remarks_.add("lists of values that are rows of another layer are left out",
                     qualified(element.text("name")));
    const auto config = sType == "ValueMap" ? widget->child("config") : std::nullopt;
    const auto options = config ? config->child("Option") : std::nullopt;
    if (!options)
        return;
    for (const MarkupElement& option : options->children("Option"))
        if (option.text("name") == "map")
            takeValues(element, option);
}

ProjectFields FieldsReader::read() {
    forEach("aliases", "alias", [&](const MarkupElement& alias) {
        if (std::string sAlias = alias.text("name"); !sAlias.empty())
            field(alias).sAlias = std::move(sAlias);
    });
    forEach("defaults", "default", [&](const MarkupElement& item) { takeDefault(item); });
    forEach("constraints", "constraint", [&](const MarkupElement& item) { takeConstraint(item); });
    forEach("constraintExpressions", "constraint", [&](const MarkupElement& constraint) {
        if (!constraint.text("exp").empty())
            remarks_.add("constraints that are computed are left out", qualified(constraint.text("field")));
    });
    forEach("fieldConfiguration", "field", [&](const MarkupElement& item) { takeWidget(item); });
    forEach("expressionfields", "field", [&](const MarkupElement& item) {
        remarks_.add("fields that are computed are left out", qualified(item.text("name")));
    });
    return std::move(all_);
}

} // namespace

ProjectFields readProjectFields(const ElementReader& reader, const MarkupElement& layer,
                                const std::string& sLayer, ProjectRemarks& remarks) {
    return FieldsReader(reader, layer, sLayer, remarks).read();
}

} // namespace halvane::host::gdal
