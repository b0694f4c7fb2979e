#include "expression/sqlite/UnicodeFunctions.h"

#include "base/Text.h"
#include "expression/SqlText.h"

#include <cstddef>
#include <new>
#include <string>
#include <string_view>

namespace halvane::expression::sqlite {

namespace {

constexpr std::size_t nLongestPattern = 1000; // the time that a pattern takes grows with its length

std::string_view textOf(sqlite3_value* pValue) {
    const auto* const pText = reinterpret_cast<const char*>(sqlite3_value_text(pValue));
    return pText == nullptr ? std::string_view()
                            : std::string_view(pText, static_cast<std::size_t>(sqlite3_value_bytes(pValue)));
}

bool hasNull(int lCount, sqlite3_value** ppValues) {
    for (int lIndex = 0; lIndex < lCount; ++lIndex)
        if (sqlite3_value_type(ppValues[lIndex]) == SQLITE_NULL)
            return true;
    return false;
}

using Convert = std::string (*)(std::string_view);

template<Convert fnConvert>
void convert(sqlite3_context* pContext, int lCount, sqlite3_value** ppValues) noexcept {
    try {
        if (hasNull(lCount, ppValues))
            return;
        const std::string sConverted = fnConvert(textOf(ppValues[0]));
        sqlite3_result_text64(pContext, sConverted.data(), sConverted.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    } catch (...) {
        sqlite3_result_error_nomem(pContext);
    }
}

/// The number of bytes of the character that begins a text.
std::size_t sizeOfFirst(std::string_view sText) {
    std::size_t nSize = 1;
    while (nSize < sText.size() && (static_cast<unsigned char>(sText[nSize]) & 0xC0U) == 0x80U)
        ++nSize;
    return nSize;
}

/// Both are in capitals.
class Pattern {
public:
    Pattern(std::string_view sPattern, std::string_view sEscape) : sPattern_(sPattern), sEscape_(sEscape) {}

    /// Goes back to the last "%" alone: what stands before it has matched as early as it can.
    [[nodiscard]] bool matches(std::string_view sText) const {
        std::size_t nText = 0;
        std::size_t nPattern = 0;
        std::size_t nRetryText = 0;
        std::size_t nRetryPattern = std::string_view::npos;
        while (nText < sText.size()) {
            if (takeWildcard(nPattern, '%')) {
                nRetryPattern = nPattern;
                nRetryText = nText;
            } else if (!takeCharacter(nPattern, sText, nText)) {
                if (nRetryPattern == std::string_view::npos)
                    return false;
                nPattern = nRetryPattern;
                nRetryText += sizeOfFirst(sText.substr(nRetryText));
                nText = nRetryText;
            }
        }
        while (takeWildcard(nPattern, '%')) {
        }
        return nPattern == sPattern_.size();
    }

private:
    [[nodiscard]] bool isEscape(std::size_t nPattern) const {
        return !sEscape_.empty() && sPattern_.substr(nPattern).starts_with(sEscape_);
    }
    bool takeWildcard(std::size_t& nPattern, char cWildcard) const {
        if (nPattern == sPattern_.size() || sPattern_[nPattern] != cWildcard || isEscape(nPattern))
            return false;
        ++nPattern;
        return true;
    }
    bool takeCharacter(std::size_t& nPattern, std::string_view sText, std::size_t& nText) const {
        const std::size_t nSize = sizeOfFirst(sText.substr(nText));
        if (takeWildcard(nPattern, '_')) {
            nText += nSize;
            return true;
        }
        const std::size_t nLiteral = nPattern + (isEscape(nPattern) ? sEscape_.size() : 0);
        if (!sPattern_.substr(nLiteral).starts_with(sText.substr(nText, nSize)))
            return false;
        nPattern = nLiteral + nSize;
        nText += nSize;
        return true;
    }

    std::string_view sPattern_;
    std::string_view sEscape_;
};

/// like(pattern, text) and like(pattern, text, escape), as the operator calls them.
void like(sqlite3_context* pContext, int lCount, sqlite3_value** ppValues) noexcept {
    try {
        if (hasNull(lCount, ppValues))
            return;
        const std::string sPattern = upperCase(textOf(ppValues[0]));
        const std::string sEscape = lCount > 2 ? upperCase(textOf(ppValues[2])) : std::string();
        if (sPattern.size() > nLongestPattern) {
            sqlite3_result_error(pContext, "a pattern of LIKE is longer than 1,000 bytes", -1);
            return;
        }
        if (lCount > 2 && (sEscape.empty() || sizeOfFirst(sEscape) != sEscape.size())) {
            sqlite3_result_error(pContext, "ESCAPE takes one character", -1);
            return;
        }
        const bool bMatches = Pattern(sPattern, sEscape).matches(upperCase(textOf(ppValues[1])));
        sqlite3_result_int(pContext, bMatches ? 1 : 0);
    } catch (...) {
        sqlite3_result_error_nomem(pContext);
    }
}

void failAsTooLong(sqlite3_context* pContext, int /*lCount*/, sqlite3_value** /*ppValues*/) noexcept {
    sqlite3_result_error_toobig(pContext);
}

using Implementation = void (*)(sqlite3_context*, int, sqlite3_value**);

struct UnicodeFunction {
    const char* sName;
    int lArguments;
    Implementation fnImplementation;
};

} // namespace

int addUnicodeFunctions(sqlite3* pDatabase) {
    for (const auto& function : {UnicodeFunction{"upper", 1, &convert<&upperCase>},
                                 UnicodeFunction{"lower", 1, &convert<&lowerCase>},
                                 UnicodeFunction{"like", 2, &like}, UnicodeFunction{"like", 3, &like}}) {
        const int lCode = sqlite3_create_function_v2(pDatabase, function.sName, function.lArguments,
                                                     SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                                                     function.fnImplementation, nullptr, nullptr, nullptr);
        if (lCode != SQLITE_OK)
            return lCode;
    }
    // Not a constant: those are computed before it is known whether they are asked for.
    return sqlite3_create_function_v2(pDatabase, sTooLong, 0, SQLITE_UTF8, nullptr, &failAsTooLong, nullptr,
                                      nullptr, nullptr);
}

} // namespace halvane::expression::sqlite
