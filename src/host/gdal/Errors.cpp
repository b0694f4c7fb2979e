#include "host/gdal/Errors.h"

namespace halvane::host::gdal {

namespace {

// Enough for any cause; a driver that complains about every row must not fill the memory.
constexpr std::size_t lLongestText = 2000;

// What was told already, alone or behind the statement that failed for it: some versions of the library tell
// of each of their own statements.
bool repeats(const std::string& sAll, std::string_view sText) {
    const bool bSameReason = !sAll.empty() && sText.ends_with(": " + sAll);
    return bSameReason || sAll.find(sText) != std::string::npos;
}

void appendLine(std::string& sAll, std::string_view sText) {
    if (sAll.size() > lLongestText || repeats(sAll, sText)) {
        return;
    }
    if (!sAll.empty()) {
        sAll += "; ";
    }
    for (const char c : sText.substr(0, lLongestText)) {
        const bool bBlank = c == '\n' || c == '\r' || c == ' ';
        if (!bBlank || !sAll.ends_with(' ')) {
            sAll += bBlank ? ' ' : c;
        }
    }
    while (sAll.ends_with(' ')) {
        sAll.pop_back();
    }
}

} // namespace

ErrorScope::ErrorScope() {
    CPLErrorReset();
    CPLPushErrorHandlerEx(&ErrorScope::collect, this);
}

ErrorScope::~ErrorScope() {
    CPLPopErrorHandler();
}

void CPL_STDCALL ErrorScope::collect(CPLErr kind, CPLErrorNum /*lNumber*/, const char* pText) {
    if (kind != CE_Failure && kind != CE_Fatal && kind != CE_Warning) {
        return;
    }
    auto* pScope = static_cast<ErrorScope*>(CPLGetErrorHandlerUserData());
    pScope->failed_ = pScope->failed_ || kind != CE_Warning;
    try {
        appendLine(kind == CE_Warning ? pScope->warnings_ : pScope->errors_, pText);
    } catch (const std::exception&) {
        // The caller is a C library: it learns of the failure by failed_ alone.
    }
}

bool ErrorScope::storageFailed() const {
    // The words of SQLite, which reach no further than its library's text.
    return errors_.find("disk I/O error") != std::string::npos ||
           errors_.find("database disk image is malformed") != std::string::npos;
}

std::string ErrorScope::text() const {
    return withoutPasswords(errors_.empty() ? warnings_ : errors_);
}

void ErrorScope::clear() {
    errors_.clear();
    warnings_.clear();
    failed_ = false;
}

Failure ErrorScope::failure(std::string_view sContext) const {
    std::string sDescription = withoutPasswords(sContext);
    const std::string sText = text();
    if (!sText.empty()) {
        sDescription += ": " + sText;
    }
    return {FailureNumber::HostFailure, std::move(sDescription)};
}

void ErrorScope::raise(std::string_view sContext) const {
    throw failure(sContext);
}

void ErrorScope::raiseIfFailed(std::string_view sContext) const {
    if (failed_) {
        raise(sContext);
    }
}

} // namespace halvane::host::gdal
