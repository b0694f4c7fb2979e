#include "host/gdal/map/OverridesReader.h"

#include <algorithm>
#include <string>
#include <unordered_set>

namespace halvane::host::gdal {

namespace {

SubtypeFacts readSubtype(const ElementReader& reader, const MarkupElement& element) {
    SubtypeFacts subtype;
    subtype.lCode = toWhole(element.text("code"));
    subtype.sName = element.text("name");
    std::unordered_set<std::string> names;
    for (const MarkupElement& child : element.children("SubtypeField")) {
        reader.requireUnique(names, child.text("name"), child);
        subtype.fields.push_back({child.text("name"), child.attribute("domain"), child.attribute("default")});
    }
    return subtype;
}

MeasureDomain measureDomainOf(const MarkupElement& element) {
    MeasureDomain domain;
    domain.dMin = toNumber(element.text("min"));
    domain.dMax = toNumber(element.text("max"));
    domain.dFalseOrigin = toNumber(element.attribute("falseOrigin").value_or(element.text("min")));
    domain.dScale = toNumber(element.attribute("scale").value_or("0"));
    return domain;
}

XyDomain xyDomainOf(const MarkupElement& element) {
    XyDomain domain;
    domain.dXMin = toNumber(element.text("xMin"));
    domain.dYMin = toNumber(element.text("yMin"));
    domain.dXMax = toNumber(element.text("xMax"));
    domain.dYMax = toNumber(element.text("yMax"));
    domain.dFalseX = toNumber(element.attribute("falseX").value_or(element.text("xMin")));
    domain.dFalseY = toNumber(element.attribute("falseY").value_or(element.text("yMin")));
    domain.dScale = toNumber(element.attribute("scale").value_or("0"));
    return domain;
}

} // namespace

std::vector<FieldOverride> readFields(const ElementReader& reader, const MarkupElement& element) {
    std::vector<FieldOverride> fields;
    std::unordered_set<std::string> names;
    for (const MarkupElement& child : element.children("Field")) {
        FieldOverride field;
        field.sPlace = reader.placeOf(child).text();
        field.sName = child.text("name");
        field.sAlias = child.attribute("alias");
        field.sDomain = child.attribute("domain");
        field.sDefault = child.attribute("default");
        if (const auto editable = child.attribute("editable"))
            field.bEditable = toBool(*editable);
        reader.requireUnique(names, field.sName, child);
        fields.push_back(std::move(field));
    }
    return fields;
}

std::optional<SubtypesFacts> readSubtypes(const ElementReader& reader, const MarkupElement& layer) {
    const auto element = reader.single(layer, "Subtypes");
    if (!element)
        return std::nullopt;
    SubtypesFacts model;
    model.sPlace = reader.placeOf(*element).text();
    model.sField = element->text("field");
    for (const MarkupElement& child : element->children("Subtype")) {
        SubtypeFacts subtype = readSubtype(reader, child);
        if (std::any_of(model.subtypes.begin(), model.subtypes.end(),
                        [&](const SubtypeFacts& other) { return other.lCode == subtype.lCode; })) {
            reader.fail(child, "a second <Subtype> with the code " + std::to_string(subtype.lCode) +
                                   "; give each its own code");
        }
        model.subtypes.push_back(std::move(subtype));
    }
    const auto sDefault = element->attribute("default");
    model.lDefault = sDefault ? toWhole(*sDefault) : model.subtypes.front().lCode;
    if (std::none_of(model.subtypes.begin(), model.subtypes.end(),
                     [&](const SubtypeFacts& subtype) { return subtype.lCode == model.lDefault; }))
        reader.fail(*element, "no <Subtype> has the default code " + std::to_string(model.lDefault));
    return model;
}

std::optional<ReferenceOverride> readSpatialReference(const ElementReader& reader,
                                                      const MarkupElement& owner) {
    const auto element = reader.single(owner, "SpatialReference");
    if (!element)
        return std::nullopt;
    ReferenceOverride model;
    model.sPlace = reader.placeOf(*element).text();
    model.sDefinition = element->text("definition");
    testDefinition(model);
    if (const auto xy = reader.single(*element, "XYDomain")) {
        model.xy = xyDomainOf(*xy);
        if (model.xy->dXMin > model.xy->dXMax || model.xy->dYMin > model.xy->dYMax)
            reader.fail(*xy, "the least coordinate is above the greatest");
    }
    if (const auto z = reader.single(*element, "ZDomain"))
        model.z = measureDomainOf(*z);
    if (const auto m = reader.single(*element, "MDomain"))
        model.m = measureDomainOf(*m);
    return model;
}

} // namespace halvane::host::gdal
