#pragma once

#include "base/Failure.h"
#include "collection/dCollection.h"
#include "host/Fields.h"
#include "host/Map.h"
#include "xml/dom/Dom.h"

#include <cstdint>
#include <string_view>

namespace halvane {

/// What a control node did not do although nothing failed.
enum class Notice {
    ResolvedToNothing,  ///< its data source names nothing that the map or its location holds
    WorkspaceNotOpened, ///< its data location could not be opened; the detail tells why
    FieldNotFound,      ///< the row has no field of that name or alias; an empty value was written
    IdentifierWritten,  ///< the object identifier, though the row has an attribute of the name that asks for
                        ///< it
    UnknownKind,        ///< its data source is no kind that a single value comes from
    UnknownProperty,    ///< its data property is none of its kind's; no value was written
    PropertyWithoutValue, ///< its data property is known, but no rule computes a value for it
    AttributeStaysEmpty,  ///< its attribute was made, but in a group of this kind no value goes into it
    OnlyRepeated,         ///< its kind gives values inside a repeated node alone; no value was written
    RepeatIsSilent,       ///< a repeated node of its kind and shape writes nothing
    NoCurrentLayer,       ///< a repeated node goes over what a layer has, and none is current
    NoCurrentTable,       ///< a table is named, or a repeated node goes over its rows, and none is current
    FieldsOfLayer,        ///< a repeated field node lists the fields of the layer that the detail names,
                          ///< although a table's node is nearer
    RowsBesideAttribute,  ///< its attribute holds the first related row's value; further rows became elements
    ReplacesParentContent, ///< its value, meant for an attribute, replaced the content of the parent's
                           ///< element
};

/// What a control node had around it when it looked for a name, for an observer that tells what there was.
/// Borrowed for the call; any of it may be nothing. Asking the host takes time, which counts for every row.
struct Surroundings {
    const host::GisMapDocument* pMapDocument = nullptr;
    const host::GisMap* pMap = nullptr;       ///< the current one
    const dCollection* pTagNames = nullptr;   ///< tags to the names that they stand for
    dom::Node oTagNode;                       ///< the current tag's
    const host::GisFields* pFields = nullptr; ///< where a field was looked for
    bool bByTag = false;                      ///< the field was looked for by its tag
};

/// Listens to an export. The engine itself reports nothing to its caller, so this is how a front end learns
/// what happened. Nodes are those of the control document, borrowed for the call. Observers must not throw.
class ExportObserver {
public:
    ExportObserver() = default;
    ExportObserver(const ExportObserver&) = delete;
    ExportObserver& operator=(const ExportObserver&) = delete;
    virtual ~ExportObserver() = default;

    /// A procedure ended early at this control node (no node: in the export's own steps).
    virtual void nodeFailed(dom::Node oControlNode, const Failure& failure) = 0;
    virtual void nodeNoticed(dom::Node oControlNode, Notice notice, std::string_view sDetail,
                             const Surroundings& around) = 0;

    /// Asked before each control node is visited. @returns false to give the export up: nothing is then
    /// saved.
    virtual bool goesOn() { return true; }

    /// An item (feature, row, ...) of a repeated node has been written.
    /// @returns false to give the export up: nothing is then saved.
    virtual bool itemWritten(dom::Node oControlNode) = 0;

    /// The output document stands at that path. @param repairs what had to be changed to keep it well-formed.
    virtual void documentSaved(std::string_view sPath, const dom::CharacterRepairs& repairs) = 0;
    /// The saved document was to be on the disk, but a loss of power may undo its saving, for this reason.
    virtual void documentNotDurable(std::string_view /*sReason*/) {}
    /// Nothing was written, for this reason.
    virtual void documentNotSaved(std::string_view sReason) = 0;
};

} // namespace halvane
