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

void repeatFeatureLeaf(const RepeatedNode& call);
void repeatRecordLeaf(const RepeatedNode& call);
void repeatOverRelatedRows(const RepeatedNode& call);
void repeatOverFeatures(const RepeatedNode& call);
void repeatOverSubtypes(const RepeatedNode& call);
void repeatOverFields(const RepeatedNode& call);
void repeatOverShapes(const RepeatedNode& call);
void repeatOverDomains(const RepeatedNode& call);
void repeatOverRelationshipClasses(const RepeatedNode& call);
void repeatOverRecords(const RepeatedNode& call);

} // namespace halvane
