#include "engine/ModExporter.h"

#include <array>

namespace halvane {

namespace {

struct ControlAttribute {
    std::string_view sKey;
    std::string_view (ClsXMLNode::*pRead)() const;
    bool bInherited;
};

// In the order in which the merged collection holds them.
constexpr std::array<ControlAttribute, 11> controlAttributes{{
    {"DataSource", &ClsXMLNode::DataSource, true},
    {"DataFrame", &ClsXMLNode::DataFrame, true},
    {"DataProperty", &ClsXMLNode::DataProperty, true},
    {"Identity", &ClsXMLNode::Identity, true},
    {"IdentityValue", &ClsXMLNode::IdentityValue, true},
    {"Entries", &ClsXMLNode::Entries, true},
    {"Target", &ClsXMLNode::Target, false},
    {"DataLocation", &ClsXMLNode::DataLocation, true},
    {"LinkField", &ClsXMLNode::LinkField, true},
    {"MeasureField", &ClsXMLNode::MeasureField, true},
    {"DecimalPlace", &ClsXMLNode::DecimalPL, true},
}};

} // namespace

void MergeAttributes(ExportState& state, Node oControlNode, const dCollection* dParentAttributes,
                     dCollection& dMerged) {
    trapFailures(state, [&] {
        if (dMerged.Count() > 0)
            dMerged.removeAll();
        const ClsXMLNode node(oControlNode);
        for (const auto& attribute : controlAttributes) {
            std::string sValue((node.*attribute.pRead)());
            if (sValue.empty() && attribute.bInherited && dParentAttributes != nullptr)
                sValue = dParentAttributes->GetValueString(attribute.sKey);
            dMerged.Add(std::move(sValue), attribute.sKey);
        }
    });
}

} // namespace halvane
