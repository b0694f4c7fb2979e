#pragma once

#include "base/Text.h"
#include "engine/ModExporter.h"

#include <string_view>

namespace halvane {

/// One leaf, where its value goes and what was handed in.
struct Leaf {
    ExportState& state;
    const ControlNode& control;
    const OutputElement& oOutput;
    const GisRowPtr& pRow;
    const GisRowPtr& pRecord;

    [[nodiscard]] const ControlAttributes& merged() const { return control.merged; }
    [[nodiscard]] bool asks(std::string_view sProperty) const {
        return equalIgnoringCase(control.merged.sDataProperty, sProperty);
    }
};

// They write the value as the text of the output element, or of the attribute that was made for it, and throw
// Failure.

void writeValue(const Leaf& leaf, std::string_view sValue, TextKind kind = TextKind::Any);
/// The text that the leaf asks for in the second edition.
void writeText(const Leaf& leaf);
void writeExternal(const Leaf& leaf);
void writeToday(const Leaf& leaf);
void writeMapProperty(const Leaf& leaf);
void writeSubtypes(const Leaf& leaf);
void writeLayerProperty(const Leaf& leaf);
void writeTinLayerProperty(const Leaf& leaf);
void writeRasterLayerProperty(const Leaf& leaf);
void writeWorkspaceProperty(const Leaf& leaf);
void writeTinWorkspaceProperty(const Leaf& leaf);
void writeRasterWorkspaceProperty(const Leaf& leaf);
void writeRecordValue(const Leaf& leaf);
void writeFeatureValue(const Leaf& leaf);
void writeRelatedValues(const Leaf& leaf);

} // namespace halvane
