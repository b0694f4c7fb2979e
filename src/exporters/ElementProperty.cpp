// Writes the one value of a leaf control node.

#include "engine/ModExporter.h"
#include "engine/sources/Binding.h"
#include "exporters/KindExports.h"
#include "exporters/LeafValues.h"
#include "exporters/second/ItemFacts.h"
#include "host/Application.h"
#include "host/IExternalProcessor.h"

#include <optional>
#include <string>

namespace halvane {

namespace {

/// A record's field is not a table's name, so a record handed down keeps its table.
bool binds(const Leaf& leaf, LeafBinding binding) {
    return binding == LeafBinding::Always ||
           (binding == LeafBinding::WithoutRecord && leaf.pRecord == nullptr);
}

/// Forgets what was found in the host, before and after somebody else could change it, also where that fails.
class ForeignHands {
public:
    explicit ForeignHands(ExportState& state) : state_(state) { ++state_.nGeneration; }
    ForeignHands(const ForeignHands&) = delete;
    ForeignHands& operator=(const ForeignHands&) = delete;
    ~ForeignHands() { ++state_.nGeneration; }

private:
    ExportState& state_;
};

} // namespace

std::optional<std::string> processExternally(ExportState& state, std::string_view sProgId) {
    // From here on others act, and may change anything.
    const ForeignHands hands(state);
    const auto pComponent = state.pHost->createComponent(sProgId);
    const auto pProcessor = std::dynamic_pointer_cast<IExternalProcessor>(pComponent);
    if (pProcessor == nullptr)
        return std::nullopt;
    return pProcessor->Process(state.dCurrentObjects.collection());
}

void ExportElementProperty(ExportState& state, const ControlNode& control, const OutputElement& oOutput,
                           const GisRowPtr& pRow, const GisRowPtr& pRecord) {
    const ActiveNodeScope scope(state, control);
    trapFailures(state, [&] {
        const Leaf leaf{state, control, oOutput, pRow, pRecord};
        if (control.bHasText) {
            writeText(leaf);
            return;
        }
        if (control.bReadsItem) {
            writeItemProperty(leaf);
            return;
        }
        if (control.bReadsRow && pRow != nullptr) {
            writeFeatureValue(leaf);
            return;
        }
        const Binding& binding = *control.pBinding;
        const KindExport& kind = exportOf(binding.kind);
        if (binds(leaf, kind.leafBinding))
            keepAsCurrent(state, binding.kind, resolveBinding(state, binding));
        if (const WriteLeaf fnWrite = kind.fnWriteLeaf)
            fnWrite(leaf);
        else if (kind.fnRepeatGroup != nullptr && binding.kind != DataSourceKind::OtherGeometry)
            state.notice(Notice::OnlyRepeated, binding.sDataSource);
        else if (binding.kind != DataSourceKind::Blank)
            state.notice(Notice::UnknownKind, binding.sDataSource);
    });
}

} // namespace halvane
