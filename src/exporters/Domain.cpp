// Writes the domains of a workspace and the codes of coded-value domains.

#include "base/FindRow.h"
#include "base/Text.h"
#include "engine/ModExporter.h"
#include "engine/TracedItem.h"
#include "engine/output/ItemCounter.h"
#include "engine/sources/Binding.h"
#include "exporters/FieldTypeName.h"
#include "exporters/ItemCopies.h"
#include "host/Domains.h"

#include <array>

namespace halvane {

namespace {

using host::GisDomain;

constexpr std::int32_t rangeDomain = 1;
constexpr std::int32_t codedValueDomain = 2;
constexpr std::int32_t textDomain = 3;

std::string domainTypeName(std::int32_t lType) {
    switch (lType) {
    case rangeDomain:
        return "vemiDTRange";
    case codedValueDomain:
        return "vemiDTCodedValue";
    case textDomain:
        return "vemiDTString";
    default:
        return {};
    }
}

// ---- Properties ----

std::string nameOf(const GisDomain& domain) {
    return domain.name();
}

std::string descriptionOf(const GisDomain& domain) {
    return domain.description();
}

std::string fieldTypeOf(const GisDomain& domain) {
    return std::string(fieldTypeName(domain.fieldType()));
}

std::string mergePolicyOf(const GisDomain& domain) {
    return std::to_string(domain.mergePolicy());
}

std::string splitPolicyOf(const GisDomain& domain) {
    return std::to_string(domain.splitPolicy());
}

std::string domainTypeOf(const GisDomain& domain) {
    return domainTypeName(domain.domainType());
}

/// Only a range has bounds; any other domain but one of coded values writes "" for them.
std::string maximumOf(const GisDomain& domain) {
    if (domain.domainType() != rangeDomain)
        return {};
    return toText(domain.maxValue());
}

std::string minimumOf(const GisDomain& domain) {
    if (domain.domainType() != rangeDomain)
        return {};
    return toText(domain.minValue());
}

struct DomainProperty {
    std::string_view sName;
    std::string (*fnText)(const GisDomain&);
    bool bWrittenForCodes; ///< whether a coded-value domain writes it
};

constexpr std::array<DomainProperty, 8> domainProperties{{
    {"DomainDescription", descriptionOf, true},
    {"DomainFieldType", fieldTypeOf, true},
    {"DomainMergePolicy", mergePolicyOf, true},
    {"DomainSplitPolicy", splitPolicyOf, true},
    {"DomainType", domainTypeOf, true},
    {"DomainName", nameOf, true},
    {"DomainRangeMax", maximumOf, false},
    {"DomainRangeMin", minimumOf, false},
}};

/// Only a coded-value domain has codes; any other writes nothing at all for them.
void writeCodedValues(ExportState& state, const GisDomain& domain, const ControlNode& property,
                      const OutputElement& oOutputElement) {
    if (domain.domainType() != codedValueDomain)
        return;
    ExportCodedValues(state, domain, property, appendNamed(property, oOutputElement));
}

void writeProperty(ExportState& state, const GisDomain& domain, const ControlNode& control,
                   const OutputElement& oOutputElement) {
    const std::string_view sProperty = control.own.sDataProperty;
    if (equalIgnoringCase(sProperty, "DomainCodedValues")) {
        writeCodedValues(state, domain, control, oOutputElement);
        return;
    }
    const auto* pProperty = findRow(domainProperties, sProperty, &DomainProperty::sName, equalIgnoringCase);
    if (pProperty == nullptr) {
        state.notice(Notice::UnknownProperty, sProperty);
        writeChildValue(state, control, oOutputElement, "");
    } else if (pProperty->bWrittenForCodes || domain.domainType() != codedValueDomain) {
        writeChildValue(state, control, oOutputElement, pProperty->fnText(domain));
    }
}

/// Writes a domain's properties; only those that children ask for are counted.
void exportDomain(ExportState& state, const GisDomain& domain, const ControlNode& control,
                  const OutputElement& oItemElement, ItemCounter& counter) {
    if (!control.hasChildren())
        ExportDomainProperty(state, domain, control, oItemElement);
    for (const ControlNode& child : childrenOf(control)) {
        ExportDomainProperty(state, domain, child, oItemElement);
        counter.increment();
    }
}

// ---- Codes ----

/// Writes the codes of one domain.
class CodeWriter {
public:
    CodeWriter(ExportState& state, const OutputElement& oCodesElement)
        : state_(state), oCodesElement_(oCodesElement) {}

    void write(const host::CodedValue& code, const ControlNode& codedValues) {
        for (const ControlNode& child : childrenOf(codedValues)) {
            const ActiveNodeScope scope(state_, child);
            if (equalIgnoringCase(child.own.sEntries, "Multiple"))
                writeCodeElement(code, child);
            else
                writePlainChild(code, child);
        }
    }

private:
    void writeCodeElement(const host::CodedValue& code, const ControlNode& child) {
        oCodeElement_ = appendNamed(child, oCodesElement_);
        for (const ControlNode& part : childrenOf(child)) {
            const ActiveNodeScope scope(state_, part);
            chooseValue(code, part.own.sDataProperty);
            writeChildValue(state_, part, oCodeElement_, sValue_);
        }
    }

    /// Without a target its value becomes the text of the most recent code element, on purpose; that fails
    /// while there is none.
    void writePlainChild(const host::CodedValue& code, const ControlNode& child) {
        chooseValue(code, child.own.sDataProperty);
        if (child.bTargetsAttribute)
            writeChildValue(state_, child, oCodesElement_, sValue_);
        else
            oCodeElement_.setText(sValue_);
    }

    /// An unknown property leaves the value of the one before, across codes too.
    void chooseValue(const host::CodedValue& code, std::string_view sProperty) {
        if (equalIgnoringCase(sProperty, "DomainCodeValue"))
            sValue_ = toText(code.vCode);
        else if (equalIgnoringCase(sProperty, "DomainCodeName"))
            sValue_ = code.sName;
        else
            state_.notice(Notice::UnknownProperty, sProperty);
    }

    ExportState& state_;
    OutputElement oCodesElement_;
    OutputElement oCodeElement_;
    std::string sValue_;
};

} // namespace

std::string DomainPropertyText(ExportState& state, const GisDomain& domain, std::string_view sProperty) {
    const auto* pProperty = findRow(domainProperties, sProperty, &DomainProperty::sName, equalIgnoringCase);
    if (pProperty == nullptr)
        state.notice(Notice::UnknownProperty, sProperty);
    return pProperty == nullptr ? std::string() : pProperty->fnText(domain);
}

void ExportCodedValues(ExportState& state, const GisDomain& domain, const ControlNode& codedValues,
                       const OutputElement& oCodesElement) {
    const ActiveNodeScope scope(state, codedValues);
    trapFailures(state, [&] {
        if (!codedValues.hasChildren())
            return;
        CodeWriter writer(state, oCodesElement);
        const std::int32_t lCount = domain.codeCount();
        ItemCounter counter(state.options.lItemLimit);
        for (std::int32_t i = 0; i < lCount; ++i) {
            const TracedItem item(state, codedValues);
            if (!item.isWanted())
                break;
            writer.write(domain.code(i), codedValues);
            counter.increment();
        }
    });
}

void ExportDomainProperty(ExportState& state, const GisDomain& domain, const ControlNode& property,
                          const OutputElement& oOutputElement) {
    const ActiveNodeScope scope(state, property);
    trapFailures(state, [&] { writeProperty(state, domain, property, oOutputElement); });
}

void ExportDomains(ExportState& state, const ControlNode& control, OutputElement& oOutputElement) {
    const ActiveNodeScope scope(state, control);
    trapFailures(state, [&] {
        const auto pDomains =
            objectAs<host::GisWorkspaceDomains>(resolveWithoutIdentity(state, *control.pBinding));
        if (pDomains == nullptr)
            return;
        ItemCopies copies(state, control, oOutputElement, control.pName);
        const auto pEnum = pDomains->domains();
        ItemCounter counter(state.options.lItemLimit);
        bool bFirst = true;
        while (const auto pDomain = pEnum->next()) {
            const TracedItem item(state, control);
            if (!item.isWanted())
                break;
            // The counter counts property calls, on purpose: a leaf writes every domain into one element.
            if (counter.value() > 0)
                oOutputElement = copies.next();
            else if (bFirst)
                oOutputElement = copies.firstInItem();
            bFirst = false;
            exportDomain(state, *pDomain, control, oOutputElement, counter);
            reportItem(state, control);
        }
    });
}

} // namespace halvane
