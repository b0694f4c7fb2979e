#include "xml/dom/msxml/MsxmlDecoding.h"

#include "base/Text.h"
#include "base/com/Apartment.h"
#include "xml/dom/Characters.h"
#include "xml/dom/MarkupScanner.h"
#include "xml/dom/msxml/Msxml.h"

#include <algorithm>
#include <charconv>
#include <mlang.h>
#include <optional>

namespace halvane::dom::msxml {

namespace {

constexpr IID languagesInterface = {
    0xDCCFC164, 0x2B38, 0x11D2, {0xB7, 0xEC, 0x00, 0xC0, 0x4F, 0x8F, 0x5D, 0x9A}};
constexpr CLSID languagesClass = {
    0x275C23E2, 0x3747, 0x11D0, {0x9F, 0xEA, 0x00, 0xAA, 0x00, 0x3F, 0x86, 0x46}};

constexpr UINT noCodePage = 0;
constexpr UINT codePageEbcdicUs = 37;
constexpr std::string_view ebcdicDeclaration = "\x4C\x6F\xA7\x94\x93"; // "<?xml"
constexpr std::size_t longestDeclaration = 1024;

// ---- Code pages

struct CodePageText {
    std::optional<std::wstring> sWide;
    DWORD dwError = ERROR_SUCCESS; ///< of the system, where there is no text
};

CodePageText decoded(std::string_view sBytes, UINT nCodePage, DWORD dwFlags = MB_ERR_INVALID_CHARS) {
    if (sBytes.empty())
        return {std::wstring(), ERROR_SUCCESS};
    const int nBytes = static_cast<int>(sBytes.size());
    const int nSize = ::MultiByteToWideChar(nCodePage, dwFlags, sBytes.data(), nBytes, nullptr, 0);
    if (nSize <= 0) {
        const DWORD dwError = ::GetLastError();
        if (dwFlags != 0 && dwError == ERROR_INVALID_FLAGS) // those that switch between alphabets
            return decoded(sBytes, nCodePage, 0);
        return {std::nullopt, dwError};
    }
    std::wstring sWide(static_cast<std::size_t>(nSize), L'\0');
    ::MultiByteToWideChar(nCodePage, dwFlags, sBytes.data(), nBytes, sWide.data(), nSize);
    return {std::move(sWide), ERROR_SUCCESS};
}

/// "IBM037" and "cp1140" bear the number of their code page.
UINT numberIn(const std::string& sName) noexcept {
    const std::size_t nPrefix = sName.starts_with("ibm") ? 3 : sName.starts_with("cp") ? 2 : sName.size();
    UINT nNumber = noCodePage;
    std::from_chars(sName.data() + nPrefix, sName.data() + sName.size(), nNumber);
    return nNumber;
}

/// The code page that the system's languages know by a name; none where they do not.
UINT registered(const std::string& sName) {
    const com::Apartment apartment(com::Apartment::For::Components);
    ComPtr<IMultiLanguage2> pLanguages;
    MIMECSETINFO info{};
    const Bstr sCharset(sName);
    if (FAILED(::CoCreateInstance(languagesClass, nullptr, CLSCTX_INPROC_SERVER, languagesInterface,
                                  pLanguages.putVoid())) ||
        FAILED(pLanguages->GetCharsetInfo(sCharset.get(), &info)))
        return noCodePage;
    return info.uiInternetEncoding;
}

UINT codePageOf(const std::string& sName) {
    if (sName == "ebcdic-cp-us")
        return codePageEbcdicUs;
    const UINT nNumber = numberIn(sName);
    return nNumber != noCodePage ? nNumber : registered(sName);
}

/// Whether the code page has the characters of a declaration where the bytes have them.
bool fits(UINT nCodePage, bool bEbcdic) {
    return nCodePage != noCodePage &&
           decoded(bEbcdic ? ebcdicDeclaration : "<?xml", nCodePage).sWide == L"<?xml";
}

// ---- Documents

enum class Utf16 : std::uint8_t { No, LittleEndian, BigEndian };

Utf16 utf16Of(std::string_view sBytes) noexcept {
    const auto begins = [sBytes](unsigned char cFirst, unsigned char cSecond) {
        return sBytes.size() >= 2 && static_cast<unsigned char>(sBytes[0]) == cFirst &&
               static_cast<unsigned char>(sBytes[1]) == cSecond;
    };
    if (begins(0xFF, 0xFE) || begins('<', 0))
        return Utf16::LittleEndian;
    return begins(0xFE, 0xFF) || begins(0, '<') ? Utf16::BigEndian : Utf16::No;
}

std::string fromUtf16(std::string_view sBytes, Utf16 order) {
    std::wstring sWide;
    sWide.reserve(sBytes.size() / 2);
    const std::size_t nHigh = order == Utf16::BigEndian ? 0 : 1;
    for (std::size_t n = 0; n + 1 < sBytes.size(); n += 2)
        sWide.push_back(static_cast<wchar_t>((static_cast<unsigned char>(sBytes[n + nHigh]) << 8) |
                                             static_cast<unsigned char>(sBytes[n + 1 - nHigh])));
    return com::utf8Of(sWide.starts_with(L'\xFEFF') ? std::wstring_view(sWide).substr(1) : sWide);
}

bool isUtf8(std::string_view sText) noexcept {
    for (std::size_t n = 0; n < sText.size();) {
        const DataCharacter character = characterOfData(sText.data() + n, sText.data() + sText.size());
        if (character.kind == DataCharacter::Kind::Invalid)
            return false;
        n += character.nBytes;
    }
    return true;
}

std::string declaredEncoding(std::string_view sBytes, bool bEbcdic) {
    std::string sHead(sBytes.substr(0, longestDeclaration));
    if (bEbcdic) // what a declaration is made of is the same in all of them
        sHead = com::utf8Of(decoded(sHead, codePageEbcdicUs).sWide.value_or(std::wstring()));
    if (!sHead.starts_with("<?xml"))
        return {};
    return std::string(declaredValue(std::string_view(sHead).substr(0, sHead.find("?>")), "encoding"));
}

Decoded decodeAs(const std::string& sEncoding, std::string_view sBytes, bool bEbcdic) {
    const UINT nCodePage = codePageOf(lowerCase(sEncoding));
    if (!fits(nCodePage, bEbcdic))
        return {{}, "the encoding \"" + sEncoding + "\" is not known here", 1};
    const CodePageText text = decoded(sBytes, nCodePage);
    if (!text.sWide)
        return {{}, "the text is not in the encoding \"" + sEncoding + "\" that it declares", 0};
    return {com::utf8Of(*text.sWide), {}, 0};
}

} // namespace

Decoded decodeUtf8(std::string_view sBytes) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (sBytes.starts_with(byteOrderMark))
        sBytes.remove_prefix(byteOrderMark.size());
    return {std::string(sBytes), isUtf8(sBytes) ? "" : "the text is not UTF-8", 0};
}

Decoded decode(std::string_view sBytes) {
    if (const Utf16 order = utf16Of(sBytes); order != Utf16::No)
        return {fromUtf16(sBytes, order), {}, 0};
    const bool bEbcdic = sBytes.starts_with(ebcdicDeclaration);
    const std::string sEncoding = declaredEncoding(sBytes, bEbcdic);
    const std::string sName = lowerCase(sEncoding);
    if (!bEbcdic && (sName.empty() || sName == "utf-8" || sName == "utf8"))
        return decodeUtf8(sBytes);
    return decodeAs(sEncoding, sBytes, bEbcdic);
}

} // namespace halvane::dom::msxml
