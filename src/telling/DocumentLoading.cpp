#include "telling/DocumentLoading.h"

#include "telling/Paths.h"

#include <fmt/format.h>

#include <filesystem>

namespace halvane {

namespace fs = std::filesystem;

namespace {

/// Why there is no file to load at the path; "" when there is one.
std::string missing(const std::string& sPath) {
    if (isUrl(sPath))
        return "";
    std::error_code error;
    const auto status = fs::status(sPath, error);
    if (fs::is_directory(status))
        return "this is a folder; give the path of an XML file";
    if (!fs::exists(status))
        return "there is no such file";
    // A pipe can be read once only, and may never end.
    if (!fs::is_regular_file(status))
        return "this is no file; give the path of an XML file";
    return "";
}

std::string located(const std::string& sShown, const dom::ParseError& error) {
    if (error.line == 0)
        return sShown;
    return error.column == 0 ? fmt::format("{}:{}", sShown, error.line)
                             : fmt::format("{}:{}:{}", sShown, error.line, error.column);
}

} // namespace

std::string parseProblem(const std::string& sShown, const dom::ParseError& error) {
    return fmt::format("{}: {}", located(sShown, error), error.reason);
}

dom::DocumentPtr loadDocument(const std::string& sPath, const std::string& sShown,
                              std::vector<std::string>& problems, dom::ParseError* pError) {
    if (const std::string sMissing = missing(sPath); !sMissing.empty()) {
        problems.push_back(fmt::format("{}: {}", sShown, sMissing));
        return nullptr;
    }
    auto oDocument = dom::Document::create();
    if (!oDocument->load(sPath)) {
        problems.push_back(parseProblem(sShown, oDocument->parseError()));
        if (pError != nullptr)
            *pError = oDocument->parseError();
        return nullptr;
    }
    return oDocument;
}

} // namespace halvane
