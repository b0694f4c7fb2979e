#include "xml/schema/SchemaAddress.h"

#include "base/Text.h"
#include "io/FileLocation.h"
#include "io/FileReading.h"

#include <algorithm>
#include <filesystem>

namespace halvane::dom {

namespace {

std::string_view folderOf(std::string_view sPath) {
    const auto nSlash = sPath.rfind('/');
    return nSlash == std::string_view::npos ? std::string_view() : sPath.substr(0, nSlash + 1);
}

std::string placed(const std::string& sShown, const ParseError& error) {
    std::string sPlace = sShown;
    if (error.line != 0)
        sPlace += ":" + std::to_string(error.line);
    if (error.column != 0)
        sPlace += ":" + std::to_string(error.column);
    return sPlace + ": " + error.reason;
}

} // namespace

bool hasScheme(std::string_view sAddress) {
    const auto nColon = sAddress.find(':');
    const auto isOfScheme = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' ||
               c == '-' || c == '.';
    };
    return nColon != std::string_view::npos && nColon != 0 &&
           std::ranges::all_of(sAddress.substr(0, nColon), isOfScheme);
}

std::string normalPath(const std::string& sPath) {
    return std::filesystem::path(sPath).lexically_normal().string();
}

std::optional<std::string> localFile(std::string_view sReference, std::string_view sBase) {
    std::string sPath = io::percentDecoded(sReference.substr(0, sReference.find('#')));
    const bool bFile = equalIgnoringCase(std::string_view(sPath).substr(0, 5), "file:");
    // The system would end the name at a NUL.
    if (sPath.empty() || sPath.find('\0') != std::string::npos || (hasScheme(sReference) && !bFile))
        return std::nullopt;
    if (bFile) {
        sPath.erase(0, 5);
        if (sPath.starts_with("//localhost/"))
            sPath.erase(0, 11);
        else if (sPath.starts_with("///"))
            sPath.erase(0, 2);
        if (!sPath.starts_with('/') || sPath.starts_with("//"))
            return std::nullopt; // another machine's
    }
    if (sPath.starts_with("//"))
        return std::nullopt;
    return normalPath(sPath.starts_with('/') ? sPath : std::string(folderOf(sBase)) + sPath);
}

std::string addressBeside(std::string_view sReference, std::string_view sBase) {
    const auto nHost = sBase.find("//");
    const auto nPath = nHost == std::string_view::npos ? nHost : sBase.find('/', nHost + 2);
    if (nPath == std::string_view::npos)
        return std::string(sReference);
    const std::string sPath = sReference.starts_with('/')
                                  ? std::string(sReference)
                                  : std::string(folderOf(sBase.substr(nPath))) + std::string(sReference);
    return std::string(sBase.substr(0, nPath)) + normalPath(sPath);
}

std::string_view namespaceOfRoot(Node oRoot) {
    const auto sName = oRoot.nodeName();
    std::string sDeclaration = "xmlns";
    if (const auto nColon = sName.find(':'); nColon != std::string_view::npos)
        sDeclaration.append(":").append(sName.substr(0, nColon));
    return oRoot.getAttribute(sDeclaration).value_or("");
}

DocumentPtr loadLocalFile(const std::string& sPath, const std::string& sShown,
                          std::vector<std::string>& problems, std::string* pBytes) {
    std::error_code error;
    const auto status = std::filesystem::status(sPath, error);
    if (!std::filesystem::is_regular_file(status)) {
        problems.push_back(
            sShown + (std::filesystem::exists(status) ? ": this is no file" : ": there is no such file"));
        return nullptr;
    }
    std::string sBytes;
    if (const auto problem = io::readFile(sPath, Document::largestLoaded, sBytes)) {
        problems.push_back(problem.sReason);
        return nullptr;
    }
    auto oDocument = Document::create();
    if (!oDocument->loadBytes(sBytes)) {
        problems.push_back(placed(sShown, oDocument->parseError()));
        return nullptr;
    }
    if (pBytes != nullptr)
        *pBytes = std::move(sBytes);
    return oDocument;
}

} // namespace halvane::dom
