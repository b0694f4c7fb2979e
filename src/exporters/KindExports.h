#pragma once

#include "engine/Cell.h"
#include "engine/sources/DataSourceKind.h"
#include "xml/dom/Dom.h"

#include <cstdint>

namespace halvane {

struct Leaf;
struct RepeatedNode;

using WriteLeaf = void (*)(const Leaf&);
using Repeat = void (*)(const RepeatedNode&);

/// When a leaf of a kind makes its object the current one.
enum class LeafBinding : std::uint8_t { Never, WithoutRecord, Always };

/// Whose fields a person expects of a repeated "Field" node inside a node of a kind.
enum class FieldsInside : std::uint8_t {
    Any,         ///< the kind says nothing of it
    Layers,      ///< the current layer's, which it writes
    AnothersToo, ///< a table's or another layer's, which it does not write
};

/// How the exporters write a kind.
struct KindExport {
    Cell<DataSourceKind> kind;
    Cell<LeafBinding> leafBinding;
    Cell<WriteLeaf> fnWriteLeaf; ///< nothing: a leaf writes nothing, and that is told
    Cell<bool> bRepeatBinds;     ///< a repeated node makes its object the current one
    Cell<Repeat> fnRepeatLeaf;   ///< nothing: a repeated leaf writes nothing, and that is told
    Cell<Repeat> fnRepeatGroup;  ///< the same of a repeated group
    Cell<bool> bIsOfFeatures;    ///< what stands in it may be related to a feature
    Cell<FieldsInside> fieldsInside;
};

[[nodiscard]] const KindExport& exportOf(DataSourceKind kind) noexcept;

/// Whether the nearest enclosing node that is about fields is about a table's or another layer's.
[[nodiscard]] bool isInsideOtherSource(dom::Node oNode);

} // namespace halvane
