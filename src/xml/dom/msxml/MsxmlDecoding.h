#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::dom::msxml {

/// A document's bytes as text. MSXML is given nothing else: its versions know different encodings, and what
/// looks at markup has to see it.
struct Decoded {
    std::string sText;    ///< UTF-8 without a byte order mark
    std::string sRefusal; ///< why the bytes cannot be decoded; "" when they are
    std::uint32_t nLine;  ///< of the refusal; 0 when it is not known
};

/// Decodes what the byte order mark or the first bytes tell, else what the document declares, else UTF-8.
[[nodiscard]] Decoded decode(std::string_view sBytes);

/// Takes the bytes for UTF-8, whatever they declare.
[[nodiscard]] Decoded decodeUtf8(std::string_view sBytes);

} // namespace halvane::dom::msxml
