#pragma once

#include "xml/dom/Dom.h"

#include <string>
#include <string_view>

namespace halvane::dom::msxml {

/// A document's bytes as text: what is done with it before MSXML sees it, since its versions differ in how
/// careful they are.
class Source {
public:
    /// @param bUtf8 the bytes are UTF-8, whatever their declaration says.
    Source(std::string_view sBytes, bool bUtf8);
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    ~Source() = default;

    /// Why the document is not even tried: its bytes cannot be decoded, its elements are nested
    /// too deeply, it refers to entities that are not there or not loaded, or grows too much by them.
    /// errorCode 0: it can be tried.
    [[nodiscard]] const ParseError& refusal() const noexcept { return refusal_; }

    /// UTF-8 without a byte order mark, references to entities replaced.
    [[nodiscard]] std::string_view text() const noexcept { return sText_; }
    /// The text without the encoding in its declaration, which is not the text's.
    [[nodiscard]] std::string withoutEncoding() const;
    /// The data of the XML declaration, version first; "" without one.
    [[nodiscard]] std::string declaration() const;
    /// "<!DOCTYPE" to ">"; "" without one.
    [[nodiscard]] std::string_view documentType() const noexcept { return sDocumentType_; }
    /// Of the part of the document type that lies outside; "" without one.
    [[nodiscard]] std::string_view externalId() const noexcept;

private:
    void findProlog();
    void replaceEntities();
    void refuseNul();
    void checkDepth();
    void checkWidth();
    void checkDeclarations();

    std::string sText_;
    std::string sDeclaration_;
    std::string sDocumentType_;
    ParseError refusal_;
};

} // namespace halvane::dom::msxml
