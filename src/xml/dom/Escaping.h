#pragma once

#include "base/Text.h"
#include "io/OutputBuffer.h"
#include "xml/dom/Dom.h"

#include <string>
#include <string_view>

namespace halvane::dom {

/// Write data so that a parser reads the same data back. Forbidden characters are dropped and invalid UTF-8
/// is replaced by U+FFFD; both are counted.

/// The content of an element: "&", "<", ">" and CR are escaped. @returns whether anything was written.
bool putText(io::OutputBuffer& out, std::string_view sText, CharacterRepairs& repairs);
/// A value between double quotes: besides, the quote, tab and LF are escaped.
void putAttributeValue(io::OutputBuffer& out, std::string_view sValue, CharacterRepairs& repairs);
/// Data in which nothing can be escaped (comments, processing instructions, CDATA sections).
void putRaw(io::OutputBuffer& out, std::string_view sData, CharacterRepairs& repairs);

/// The data of a CDATA section without the mark that would end it: that goes outside the section, half of it
/// as text, so that no two tags touch.
[[nodiscard]] inline std::string withoutSectionEnd(std::string_view sData) {
    return replaceAll(sData, "]]>", "]]]]>&gt;<![CDATA[");
}

} // namespace halvane::dom
