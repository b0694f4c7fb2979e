#pragma once

#include "engine/second/Namespaces.h"
#include "host/Forward.h"
#include "xml/dom/Dom.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane {

struct SecondEdition;

/// What a node writes of a shape.
enum class GeometryForm : std::uint8_t {
    Area,
    Centroid,
    Coordinates,
    GeoJson,
    Gml,
    Kml,
    Length,
    Pos,
    PosList,
    Svg,
    Type,
    Wkt,
    XMax,
    XMin,
    YMax,
    YMin,
};

/// The order of a position's numbers.
enum class Axes : std::uint8_t {
    Xy,
    Yx,
    Authority, ///< that of the reference's authority
};

/// Which coordinates a node, and the nodes beneath, write.
struct NodeSpace {
    host::GisSpatialReferencePtr pReference; ///< nothing: the data's own
    std::string sCode;                       ///< of pReference
    Axes axes = Axes::Xy;

    friend bool operator==(const NodeSpace&, const NodeSpace&) = default;
};

/// The coordinates of a registered reference. @throws Failure when no register has the code.
[[nodiscard]] NodeSpace registeredSpace(const SecondEdition& edition, std::string_view sCode, Axes axes);

/// The names of the elements of one namespace.
class ElementNames {
public:
    ElementNames() = default;
    /// @param sPrefix "" for the default namespace. @param bDeclared whether it is declared already.
    ElementNames(std::string_view sNamespace, std::string sPrefix, bool bDeclared)
        : sNamespace_(sNamespace), sPrefix_(std::move(sPrefix)), bDeclared_(bDeclared) {}

    /// A name of the output document. @param sLocal a literal.
    [[nodiscard]] const dom::Name& of(dom::Document& oOutput, std::string_view sLocal) const {
        for (const auto& [pLocal, pName] : known_)
            if (pLocal == sLocal.data())
                return *pName;
        return *known_.emplace_back(sLocal.data(), oOutput.findName(qualifiedName(sPrefix_, sLocal))).second;
    }
    /// The attribute that declares the prefix.
    [[nodiscard]] const dom::Name& declaration(dom::Document& oOutput) const {
        return *oOutput.findName(declarationOf(sPrefix_));
    }
    [[nodiscard]] bool isDeclared() const noexcept { return bDeclared_; }
    [[nodiscard]] std::string_view address() const noexcept { return sNamespace_; }

private:
    std::string_view sNamespace_;
    std::string sPrefix_;
    bool bDeclared_ = true;
    mutable std::vector<std::pair<const char*, const dom::Name*>> known_; ///< few
};

/// What a node says of the shape that it writes.
struct NodeGeometry {
    GeometryForm form = GeometryForm::Type;
    NodeSpace space;
    ElementNames names; ///< of a form that is made of elements
};

/// A form of shapes in a control file.
struct GeometryWord {
    std::string_view sWord;
    GeometryForm form;
    std::string_view sNamespace = {}; ///< of its elements; "": it is a text
    std::string_view sPrefix = {};    ///< which is declared where the control file has none
    bool bIsWgs84 = false;            ///< always longitude and latitude of that system, in this order
};

/// In the order of the words.
[[nodiscard]] std::span<const GeometryWord> geometryWords() noexcept;
[[nodiscard]] const GeometryWord& wordOf(GeometryForm form) noexcept;
[[nodiscard]] inline bool isOfElements(const NodeGeometry& geometry) noexcept {
    return !wordOf(geometry.form).sNamespace.empty();
}

} // namespace halvane
