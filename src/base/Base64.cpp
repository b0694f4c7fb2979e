#include "base/Base64.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace halvane {

namespace {

constexpr std::string_view sAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t nGroupBytes = 3;
constexpr std::size_t nGroupCharacters = 4;

void appendGroup(std::string& out, Bytes group) {
    std::uint32_t nBits = 0;
    for (std::size_t i = 0; i < nGroupBytes; ++i)
        nBits = nBits << 8U | (i < group.size() ? std::to_integer<std::uint32_t>(group[i]) : 0U);
    for (std::size_t i = 0; i < nGroupCharacters; ++i)
        out.push_back(i <= group.size() ? sAlphabet[nBits >> (18U - 6U * i) & 0x3FU] : '=');
}

} // namespace

void appendBase64(std::string& out, Bytes bytes) {
    out.reserve(out.size() + (bytes.size() + nGroupBytes - 1) / nGroupBytes * nGroupCharacters);
    for (; bytes.size() > nGroupBytes; bytes = bytes.subspan(nGroupBytes))
        appendGroup(out, bytes.first(nGroupBytes));
    if (!bytes.empty())
        appendGroup(out, bytes);
}

} // namespace halvane
