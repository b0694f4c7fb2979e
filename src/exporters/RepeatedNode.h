#pragma once

#include "engine/ModExporter.h"

#include <string_view>

namespace halvane {

/// One repeated control node, where its output goes and what was handed in.
struct RepeatedNode {
    ExportState& state;
    const ControlNode& control;
    const OutputElement& oOutput;
    const GisRowPtr& pRow;
    const GisRowPtr& pRecord;
    const ControlNode* pParent;

    [[nodiscard]] DataSourceKind kind() const { return control.pBinding->kind; }
    [[nodiscard]] std::string_view dataSource() const { return control.merged.sDataSource; }
};

// They write the items of a repeated node, and throw Failure. Leaves have no children, groups have some.

void repeatFeatureLeaf(const RepeatedNode& repeated);
void repeatRecordLeaf(const RepeatedNode& repeated);
void repeatOverRelatedRows(const RepeatedNode& repeated);
void repeatOverFeatures(const RepeatedNode& repeated);
void repeatOverSubtypes(const RepeatedNode& repeated);
void repeatOverFields(const RepeatedNode& repeated);
void repeatOverShapes(const RepeatedNode& repeated);
void repeatOverDomains(const RepeatedNode& repeated);
void repeatOverRelationshipClasses(const RepeatedNode& repeated);
void repeatOverRecords(const RepeatedNode& repeated);

} // namespace halvane
