#pragma once

#include "base/Failure.h"
#include "collection/dCollection.h"
#include "engine/ExportObserver.h"
#include "engine/ExportOptions.h"
#include "engine/ExportTrace.h"
#include "engine/control/ControlNode.h"
#include "engine/second/Coordinates.h"
#include "engine/sources/CurrentObjects.h"
#include "engine/sources/MapIndex.h"
#include "host/Fields.h"
#include "xml/ClsXMLManager.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

struct CodedNames;
class GroupScope;
class ItemScope;
class RowScope;

/// The objects of the export in progress, shared by all procedures of the export module. It owns every host
/// object and document manager from the start of an export to its end; the exporters borrow them.
struct ExportState {
    host::GisHostPtr pHost;
    ExportOptions options;

    host::GisMapDocumentPtr pMapDoc;
    host::GisMapPtr pMap;
    /// The map that a blank data frame stands for; nothing: the one that the document shows.
    host::GisMapPtr pShownMap;
    host::GisFeatureLayerPtr pFeatureLayer;
    host::GisFeatureClassPtr pFeatureClass; ///< of pFeatureLayer
    host::GisWorkspacePtr pWorkspace;
    host::GisTablePtr pTable;
    host::GisTablePtr pRelatedTable;
    host::GisTinLayerPtr pTinLayer;
    host::GisRasterLayerPtr pRasterLayer;

    /// The resolved host objects keyed by kind ("DataFrame", "FeatureLayer", ...).
    CurrentObjects dCurrentObjects;
    /// Upper-cased tag name to upper-cased alias; nothing unless the caller passed a document and a node
    /// path.
    dCollectionPtr dTagNames;
    dom::DocumentPtr oExternalDom;
    std::string sExternalNodePath;

    std::unique_ptr<ClsXMLManager> oControlManager;
    dom::DocumentPtr oControlDom;
    std::unique_ptr<ControlTree> pControlTree; ///< of oControlDom
    std::unique_ptr<ClsXMLManager> oOutputManager;
    /// The current tag node, a node of oExternalDom.
    dom::Node oSharedNode;

    std::string sControlPath;
    std::string sOutputPath;

    /// Those of the last failure; they outlive the export.
    std::int32_t lModErrNum = 0;
    std::string sModErrMsg;
    /// How many failures were recorded so far.
    std::int64_t nFailures = 0;
    /// Whether an export is running: there is one at a time.
    bool bExporting = false;

    /// Counts the moments at which the host's objects may have changed: what was found before is looked for
    /// anew.
    std::uint64_t nGeneration = 1;
    /// Where names were found in the maps.
    MapIndexes mapIndexes;
    /// The host's number format, as it was configured last.
    host::GisNumericFormatPtr pNumericFormat;
    std::int32_t lNumericFormatDecimals = 0;
    std::uint64_t nNumericFormatGeneration = 0;
    bool bNumericTextsPlain = false;
    /// How many features a class has, as it was last counted.
    struct FeatureCount {
        host::GisFeatureClassPtr pFeatureClass;
        std::uint64_t nGeneration = 0;
        std::int64_t lCount = 0;
    };
    FeatureCount featureCount;
    /// The rows around what is being written, the innermost loop's first.
    const RowScope* pRowScope = nullptr;
    /// The group of rows being written, and how many there were.
    const GroupScope* pGroup = nullptr;
    std::uint64_t nGroups = 0;
    /// The things of the map around what is being written, the innermost loop's first.
    const ItemScope* pItemScope = nullptr;
    /// Of the variables of the expression being computed; they keep their places.
    std::deque<Value> variableValues;
    /// Names of coded values, as they were read.
    std::shared_ptr<CodedNames> pCodedNames;
    /// The text of the value being written.
    std::string sValueText;
    /// What takes long to find out of spatial references.
    Coordinates coordinates;
    /// Where the features of a layer lie, in its own coordinates; nothing where there are none.
    struct LayerBounds {
        host::GisFeatureLayerPtr pLayer;
        std::uint64_t nGeneration = 0;
        std::optional<host::Bounds> bounds;
    };
    LayerBounds layerBounds;
    /// The text of the shape being written.
    std::string sShapeText;
    /// A text that is put together of several values.
    std::string sTemplateText;

    /// The control node being worked on, for the observer.
    dom::Node oActiveControlNode;
    /// What that node has of the second edition from itself and from around; nothing: nothing.
    const Inherited* pInherited = nullptr;

    /// What failed while a data source was resolved, at the control nodes whose visits go on. Walker and
    /// exporter both resolve the source of one node: the observer hears of one mistake once.
    struct SourceFailure {
        dom::Node oControlNode;
        std::int32_t lNumber;
        std::string sDescription;
    };
    std::vector<SourceFailure> aSourceFailures;
    bool bResolving = false;

    /// Records a failure as the module error state and tells the observer.
    void recordFailure(const Failure& failure);
    void notice(Notice what, std::string_view sDetail) const;
    /// Tells the observer of a failure that is none to the component: the module error state stays.
    void tellFailure(dom::Node oControlNode, const Failure& failure) const;
    /// Forgets what failed while the control node was resolved: its visit is over.
    void forgetSourceFailures(dom::Node oControlNode) noexcept;
    /// A field is not among these.
    void noticeMissingField(std::string_view sName, const host::GisFields& fields, bool bByTag) const;
    /// Ends every object reference; texts and the error state are kept.
    void release();

private:
    /// Whether the failure was told before during this visit of the node; then it counts as told.
    [[nodiscard]] bool isToldSourceFailure(const Failure& failure);
};

/// The state of the process: one export at a time.
[[nodiscard]] ExportState& moduleState();

/// Thrown when the observer gives the export up. Not a failure: no procedure but the export entry catches it.
struct ExportCancelled {};

/// Marks a control node as the one being worked on, for as long as the scope lives. No trace hears of it.
class UntracedNodeScope {
public:
    UntracedNodeScope(ExportState& state, const ControlNode& control)
        : state_(state), oNode_(control.oNode), oOuter_(state.oActiveControlNode),
          pOuterInherited_(state.pInherited) {
        state.oActiveControlNode = control.oNode;
        state.pInherited = control.pInherited;
    }
    UntracedNodeScope(const UntracedNodeScope&) = delete;
    UntracedNodeScope& operator=(const UntracedNodeScope&) = delete;
    ~UntracedNodeScope() {
        // A child whose output could not be made may be the active one now.
        if (!state_.aSourceFailures.empty() && oOuter_ != oNode_)
            state_.forgetSourceFailures(oNode_);
        state_.oActiveControlNode = oOuter_;
        state_.pInherited = pOuterInherited_;
    }

private:
    ExportState& state_;
    dom::Node oNode_;
    dom::Node oOuter_;
    const Inherited* pOuterInherited_;
};

/// The same, and the trace hears of it.
class ActiveNodeScope {
public:
    ActiveNodeScope(ExportState& state, const ControlNode& control)
        : state_(state), control_(control), scope_(state, control) {
        if (state.options.pTrace != nullptr)
            state.options.pTrace->nodeBegins(state, control);
    }
    ActiveNodeScope(const ActiveNodeScope&) = delete;
    ActiveNodeScope& operator=(const ActiveNodeScope&) = delete;
    ~ActiveNodeScope() {
        if (state_.options.pTrace != nullptr)
            state_.options.pTrace->nodeEnds(state_, control_);
    }

private:
    ExportState& state_;
    const ControlNode& control_;
    UntracedNodeScope scope_;
};

/// The boundary of an engine procedure: a failure of its body ends the body, becomes the module error state
/// and is not seen by the caller, which carries on.
template<class Body>
void trapFailures(ExportState& state, Body&& body) {
    try {
        body();
    } catch (const ExportCancelled&) {
        throw;
    } catch (...) {
        state.recordFailure(currentFailure());
    }
}

} // namespace halvane
