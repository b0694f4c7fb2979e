#pragma once

#include "xml/dom/Dom.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace halvane::dom::msxml {

/// The entities that a document type declares, and what a text becomes when references to them are replaced.
/// MSXML would do it by itself, but only some versions limit how far a document can grow by it.
class Entities {
public:
    /// @param sDocumentType "<!DOCTYPE" to ">"; outlives this object.
    explicit Entities(std::string_view sDocumentType);

    /// What is wrong with the declarations or was wrong with a reference; errorCode 0: nothing. The line is
    /// that of the reference.
    [[nodiscard]] const ParseError& error() const noexcept { return error_; }

    /// The document with every reference replaced. Its lines stay what they are: a line break in a text or a
    /// tag of an entity becomes a character reference or a blank.
    [[nodiscard]] std::string expand(std::string_view sDocument);
    /// Whether the last expansion replaced anything.
    [[nodiscard]] bool haveReplaced() const noexcept { return nReplaced_ != 0; }

private:
    /// Where a piece of text stands: in an element's content, in a tag as that is written, or in a value
    /// that a reference stands for.
    enum class Place : std::uint8_t { Content, Tag, Value };

    struct Entity {
        bool bExternal = false;
        std::string sValue;
    };

    /// The attributes that are declared for an element.
    struct Declared {
        std::size_t nAttributes = 0;
        std::size_t nSize = 0; ///< of their default values, as they are counted
    };

    void readSubset(std::string_view sSubset);
    void readEntity(std::string_view sDeclaration);
    void readDefaults(std::string_view sDeclaration);
    void addDefaults(std::string_view sTag);
    void checkGrowth();
    void refuseParameter(std::string_view sName);
    void expandMarkup(std::string_view sText, std::size_t nDepth);
    void expandPiece(std::string_view sPiece, Place place, std::size_t nDepth);
    void replace(std::string_view sName, Place place, std::size_t nDepth);
    void append(std::string_view sText, Place place, std::size_t nDepth);
    void fail(std::string sReason);

    std::map<std::string, Entity, std::less<>> general_;
    std::map<std::string, Entity, std::less<>> parameters_;
    std::map<std::string, Declared, std::less<>> declared_; ///< by element
    std::size_t nDefaults_ = 0;                             ///< added so far
    ParseError error_;
    std::string sOut_;
    std::size_t nLimit_ = std::string::npos;
    std::uint32_t nLine_ = 0;
    std::size_t nReplaced_ = 0; ///< references, those inside entities counted each time
};

} // namespace halvane::dom::msxml
