#include "host/gdal/source/Errors.h"

#include <algorithm>
#include <array>

namespace halvane::host::gdal {

namespace {

// Enough for any cause; a driver that complains about every row must not fill the memory.
constexpr std::size_t nLongestText = 2000;

// What was told already, alone or behind the statement that failed for it: some versions of the library tell
// of each of their own statements.
bool repeats(const std::string& sAll, std::string_view sText) {
    const bool bSameReason = !sAll.empty() && sText.ends_with(": " + sAll);
    return bSameReason || sAll.find(sText) != std::string::npos;
}

bool isOfSettingName(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// "Set ABC_DEF config option to YES": who uses this program sets no such options.
bool advisesSetting(std::string_view sText) {
    constexpr std::array<std::string_view, 3> aKinds{"config option", "configuration option", "open option"};
    if (std::none_of(aKinds.begin(), aKinds.end(),
                     [&](std::string_view sKind) { return sText.find(sKind) != std::string_view::npos; }))
        return false;
    for (std::size_t nMark = sText.find('_'); nMark != std::string_view::npos;
         nMark = sText.find('_', nMark + 1)) {
        const bool bInside = nMark > 0 && nMark + 1 < sText.size();
        if (bInside && isOfSettingName(sText[nMark - 1]) && isOfSettingName(sText[nMark + 1]))
            return true;
    }
    return false;
}

// The sentences, and what they have in brackets, that advise no setting of the library.
std::string withoutAdvice(std::string_view sText) {
    std::string sKept;
    while (!sText.empty()) {
        const std::size_t nStop = sText.find(". ");
        std::string sSentence(sText.substr(0, nStop));
        sText.remove_prefix(nStop == std::string_view::npos ? sText.size() : nStop + 2);
        const std::size_t nOpen = sSentence.find(" (");
        const std::size_t nClose = sSentence.find(')', std::min(nOpen, sSentence.size()));
        if (nClose != std::string::npos &&
            advisesSetting(std::string_view(sSentence).substr(nOpen, nClose - nOpen)))
            sSentence.erase(nOpen, nClose + 1 - nOpen);
        if (!advisesSetting(sSentence))
            sKept += (sKept.empty() ? "" : ". ") + sSentence;
    }
    return sKept;
}

void appendLine(std::string& sAll, std::string_view sReported) {
    if (sAll.size() > nLongestText)
        return;
    const std::string sText = withoutAdvice(sReported);
    if (sText.empty() || repeats(sAll, sText))
        return;
    if (!sAll.empty())
        sAll += "; ";
    for (const char c : std::string_view(sText).substr(0, nLongestText)) {
        const bool bBlank = c == '\n' || c == '\r' || c == ' ';
        if (!bBlank || !sAll.ends_with(' '))
            sAll += bBlank ? ' ' : c;
    }
    while (sAll.ends_with(' '))
        sAll.pop_back();
}

// The words of SQLite, which reach no further than its library's text. It ends what it computes where the
// library has no memory for the result, and fails without a reason where it has none for its own.
bool tellsOfMemory(std::string_view sText) {
    constexpr std::array<std::string_view, 3> aTexts{"out of memory", "query aborted", " failed: (null)"};
    return std::any_of(aTexts.begin(), aTexts.end(),
                       [&](std::string_view sOne) { return sText.find(sOne) != std::string_view::npos; });
}

} // namespace

ErrorScope::ErrorScope() {
    CPLErrorReset();
    CPLPushErrorHandlerEx(&ErrorScope::collect, this);
}

ErrorScope::~ErrorScope() {
    CPLPopErrorHandler();
}

void CPL_STDCALL ErrorScope::collect(CPLErr kind, CPLErrorNum lNumber, const char* pText) {
    if (kind != CE_Failure && kind != CE_Fatal && kind != CE_Warning)
        return;
    auto* pScope = static_cast<ErrorScope*>(CPLGetErrorHandlerUserData());
    pScope->failed_ = pScope->failed_ || kind != CE_Warning;
    pScope->outOfMemory_ = pScope->outOfMemory_ || lNumber == CPLE_OutOfMemory || tellsOfMemory(pText);
    try {
        appendLine(kind == CE_Warning ? pScope->warnings_ : pScope->errors_, pText);
    } catch (const std::exception&) {
        // The caller is a C library: it learns of the failure by failed_ alone.
    }
}

bool ErrorScope::storageFailed() const {
    // The words of SQLite, which reach no further than its library's text.
    return outOfMemory_ || errors_.find("disk I/O error") != std::string::npos ||
           errors_.find("database disk image is malformed") != std::string::npos;
}

std::string ErrorScope::text() const {
    return withoutPasswords(errors_.empty() ? warnings_ : errors_);
}

void ErrorScope::clear() {
    errors_.clear();
    warnings_.clear();
    failed_ = false;
    outOfMemory_ = false;
}

Failure ErrorScope::failure(std::string_view sContext) const {
    std::string sDescription = withoutPasswords(sContext);
    const std::string sText = text();
    if (!sText.empty())
        sDescription += ": " + sText;
    return {FailureNumber::HostFailure, std::move(sDescription)};
}

void ErrorScope::raise(std::string_view sContext) const {
    throw failure(sContext);
}

void ErrorScope::raiseIfFailed(std::string_view sContext) const {
    if (failed_)
        raise(sContext);
}

} // namespace halvane::host::gdal
