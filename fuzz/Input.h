#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace halvane::fuzz {

/// Takes any bytes apart, from the first one on: decisions, lines, the rest. At the end every decision is 0
/// and every text empty.
class Input {
public:
    Input(const std::uint8_t* pBytes, std::size_t nSize)
        : sRest_(reinterpret_cast<const char*>(pBytes), nSize) {}

    [[nodiscard]] bool atEnd() const noexcept { return sRest_.empty(); }
    /// 0 to 255.
    [[nodiscard]] std::uint8_t byte() {
        if (sRest_.empty())
            return 0;
        const auto lByte = static_cast<std::uint8_t>(sRest_.front());
        sRest_.remove_prefix(1);
        return lByte;
    }
    /// 0 to nChoices - 1.
    [[nodiscard]] std::size_t below(std::size_t nChoices) { return nChoices == 0 ? 0 : byte() % nChoices; }
    /// At most so many bytes.
    [[nodiscard]] std::string_view text(std::size_t nLongest) {
        const std::string_view sText = sRest_.substr(0, nLongest);
        sRest_.remove_prefix(sText.size());
        return sText;
    }
    /// Up to the next line feed, which is left out.
    [[nodiscard]] std::string_view line() {
        const std::size_t nEnd = sRest_.find('\n');
        const std::string_view sLine = text(nEnd);
        sRest_.remove_prefix(sRest_.empty() ? 0 : 1);
        return sLine;
    }
    [[nodiscard]] std::string_view rest() { return text(std::string_view::npos); }

private:
    std::string_view sRest_;
};

} // namespace halvane::fuzz
