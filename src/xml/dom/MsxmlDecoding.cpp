#include "xml/dom/MsxmlDecoding.h"

#include "collection/Text.h"
#include "collection/com/Bstr.h"
#include "collection/com/Windows.h"
#include "xml/dom/MarkupScanner.h"

#include <algorithm>
#include <charconv>

namespace halvane::dom::msxml {

namespace {

constexpr UINT codePageUtf7 = 65000;
constexpr UINT codePageIso2022Jp = 50220;
constexpr UINT codePageIso2022Kr = 50225;
constexpr UINT codePageHz = 52936;
constexpr UINT codePageEbcdicUs = 37;
constexpr UINT noCodePage = 0;

constexpr std::string_view ebcdicDeclaration = "\x4C\x6F\xA7\x94\x93"; // "<?xml"
constexpr std::size_t longestDeclaration = 1024;

std::optional<std::wstring> decoded(std::string_view sBytes, UINT nCodePage) {
    const int nBytes = static_cast<int>(sBytes.size());
    const int nSize = nCodePage == noCodePage || sBytes.empty()
                          ? 0
                          : ::MultiByteToWideChar(nCodePage, 0, sBytes.data(), nBytes, nullptr, 0);
    if (nSize <= 0)
        return std::nullopt;
    std::wstring sWide(static_cast<std::size_t>(nSize), L'\0');
    if (::MultiByteToWideChar(nCodePage, 0, sBytes.data(), nBytes, sWide.data(), nSize) != nSize)
        return std::nullopt;
    return sWide;
}

std::string_view encodingIn(std::string_view sText) noexcept {
    return sText.starts_with("<?xml") ? declaredValue(sText.substr(0, sText.find("?>")), "encoding")
                                      : std::string_view();
}

bool holds(std::string_view sText, std::string_view sPart) noexcept {
    return sText.find(sPart) != std::string_view::npos;
}

/// "IBM037" and "cp1140" bear the number of their code page.
UINT numberIn(std::string_view sName) noexcept {
    const std::size_t nBegin = std::min(sName.find_first_of("0123456789"), sName.size());
    UINT nNumber = noCodePage;
    std::from_chars(sName.data() + nBegin, sName.data() + sName.size(), nNumber);
    return nNumber;
}

UINT ebcdicCodePage(std::string_view sName) noexcept {
    return sName == "ebcdic-cp-us" ? codePageEbcdicUs : numberIn(sName);
}

bool isEbcdic(std::string_view sName) {
    return holds(sName, "ebcdic") ||
           ((sName.starts_with("ibm") || sName.starts_with("cp")) &&
            decoded(ebcdicDeclaration, numberIn(sName)) == std::optional<std::wstring>(L"<?xml"));
}

} // namespace

std::optional<HiddenMarkup> hiddenMarkupOf(std::string_view sBytes) {
    const bool bEbcdic = sBytes.starts_with(ebcdicDeclaration);
    std::string sHead(sBytes.substr(0, longestDeclaration));
    if (bEbcdic) // what a declaration is made of is the same in all of them
        sHead = com::utf8Of(decoded(sHead, codePageEbcdicUs).value_or(std::wstring()));
    HiddenMarkup hidden;
    hidden.sEncoding = encodingIn(sHead);
    const std::string sName = lowerCase(hidden.sEncoding);
    UINT nCodePage = noCodePage;
    if (bEbcdic)
        nCodePage = ebcdicCodePage(sName);
    else if (holds(sName, "utf-7") || holds(sName, "utf7"))
        nCodePage = codePageUtf7;
    else if (sName == "iso-2022-jp")
        nCodePage = codePageIso2022Jp;
    else if (sName == "iso-2022-kr")
        nCodePage = codePageIso2022Kr;
    else if (sName == "hz-gb-2312")
        nCodePage = codePageHz;
    else if (!sName.starts_with("iso-2022") && !isEbcdic(sName))
        return std::nullopt;
    if (const auto sWide = decoded(sBytes, nCodePage))
        hidden.sText = com::utf8Of(*sWide);
    return hidden;
}

} // namespace halvane::dom::msxml
