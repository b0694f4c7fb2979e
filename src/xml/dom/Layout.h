#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace halvane::dom {

/// Where the text of a document has line breaks.
struct Layout {
    /// False: a carriage return and a line feed wherever two tags would touch, also inside of comments, CDATA
    /// sections and instructions, put into the tree when the document is saved. True: what follows, written
    /// between tags alone, and not inside an element that is marked by Node::setInline.
    bool bBetweenTags = false;
    std::string sBreak = "\r\n"; ///< "" for none
    std::uint32_t nIndent = 0;   ///< blanks a level behind each break

    /// Puts what stands between two tags at a depth, which is 0 for the root. Takes no memory.
    template<class Out>
    void put(Out& out, std::size_t nDepth) const {
        constexpr std::string_view sBlanks = "                                ";
        out.put(sBreak);
        for (std::size_t nLeft = sBreak.empty() ? 0 : nIndent * nDepth; nLeft > 0;) {
            const std::string_view sPart = sBlanks.substr(0, nLeft);
            out.put(sPart);
            nLeft -= sPart.size();
        }
    }
    /// The same as a text.
    [[nodiscard]] std::string at(std::size_t nDepth) const {
        struct {
            std::string sText;
            void put(std::string_view sPart) { sText += sPart; }
        } out;
        put(out, nDepth);
        return std::move(out.sText);
    }
};

} // namespace halvane::dom
