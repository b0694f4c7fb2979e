#include "xml/dom/libxml2/LibXmlDecoding.h"

#include "base/Text.h"
#include "xml/dom/MarkupScanner.h"

#include <algorithm>
#include <array>
#include <iconv.h>

namespace halvane::dom::libxml {

namespace {

constexpr std::size_t longestDeclaration = 1024;

/// Decodes up to the first byte that cannot be.
std::optional<std::string> decoded(std::string_view sBytes, const std::string& sEncoding) {
    const iconv_t pConverter = ::iconv_open("UTF-8", sEncoding.c_str());
    if (pConverter == reinterpret_cast<iconv_t>(-1)) // NOLINT(performance-no-int-to-ptr): as it is declared
        return std::nullopt;
    std::string sText;
    std::array<char, 1U << 14U> aPiece{};
    char* pFrom = const_cast<char*>(sBytes.data()); // NOLINT: the function leaves it alone
    std::size_t nLeft = sBytes.size();
    for (bool bMore = true; bMore && nLeft != 0;) {
        char* pTo = aPiece.data();
        std::size_t nFree = aPiece.size();
        const std::size_t nBefore = nLeft;
        ::iconv(pConverter, &pFrom, &nLeft, &pTo, &nFree);
        bMore = nLeft < nBefore;
        sText.append(aPiece.data(), aPiece.size() - nFree);
    }
    ::iconv_close(pConverter);
    return sText;
}

std::string_view declaredEncoding(std::string_view sHead) noexcept {
    return declaredValue(sHead.substr(0, sHead.find("?>")), "encoding");
}

struct FirstBytes {
    std::string_view sBytes;
    const char* sEncoding;
};
using std::string_view_literals::operator""sv;
constexpr std::array aFirstBytes = {
    FirstBytes{"\0\0\0<"sv, "UCS-4BE"},   FirstBytes{"<\0\0\0"sv, "UCS-4LE"},
    FirstBytes{"\xFE\xFF"sv, "UTF-16BE"}, FirstBytes{"\xFF\xFE"sv, "UTF-16LE"},
    FirstBytes{"\0<"sv, "UTF-16BE"},      FirstBytes{"<\0"sv, "UTF-16LE"},
};
constexpr std::string_view ebcdicDeclaration = "\x4C\x6F\xA7\x94"; // "<?xm"

bool showsMarkup(const std::string& sEncoding) {
    constexpr std::array aBeginnings = {"utf-8"sv,     "utf8"sv,     "us-ascii"sv, "ascii"sv,
                                        "iso-8859-"sv, "iso8859-"sv, "latin"sv,    "windows-125"sv,
                                        "cp125"sv,     "koi8-"sv,    "euc-"sv};
    return sEncoding.empty() || std::any_of(aBeginnings.begin(), aBeginnings.end(), [&](auto sBeginning) {
               return sEncoding.starts_with(sBeginning);
           });
}

} // namespace

std::optional<std::string> hiddenTextOf(std::string_view sBytes) {
    for (const auto& first : aFirstBytes)
        if (sBytes.starts_with(first.sBytes))
            return decoded(sBytes, first.sEncoding);
    std::string sHead(sBytes.substr(0, longestDeclaration));
    if (sBytes.starts_with(ebcdicDeclaration)) // what a declaration is made of is the same in all of them
        sHead = decoded(sHead, "IBM037").value_or(std::string());
    const std::string sEncoding = lowerCase(declaredEncoding(sHead));
    return showsMarkup(sEncoding) ? std::nullopt : decoded(sBytes, sEncoding);
}

} // namespace halvane::dom::libxml
