#include "telling/SchemaErrors.h"

#include "base/Text.h"
#include "engine/control/ClsXMLNode.h"
#include "engine/second/ControlParts.h"
#include "telling/ControlFileParts.h"
#include "telling/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <exception>

namespace halvane {

namespace {

constexpr std::size_t mostLines = 50;
/// Values that differ with each row must not fill the memory.
constexpr std::size_t mostTextsOfANode = 10;
constexpr std::size_t longestMessage = 1000; // bytes; it may quote a text of megabytes
constexpr const char* sOtherErrors = "further errors that differ";

std::unordered_set<std::uint32_t> linesWithEvents(const ExportLog& log) {
    std::unordered_set<std::uint32_t> lines;
    for (const auto& [lPosition, record] : log.records())
        lines.insert(record.facts.lLine);
    return lines;
}

/// The names' namespace says nothing where all of them are of one: "{…}wpt" is then "wpt".
std::string withoutNamespace(std::string sText) {
    const auto nBegin = sText.find('{');
    if (!sText.starts_with("Element '{") || sText.find("No matching global") != std::string::npos)
        return sText; // there it may be what is wrong
    const std::string sNamespace = sText.substr(nBegin, sText.find('}') + 1 - nBegin);
    if (const auto nList = sText.rfind("( "); nList != std::string::npos) {
        const std::string sList = sText.substr(nList);
        const auto lNames = std::ranges::count(sList, ',') + 1;
        std::ptrdiff_t nOfNamespace = 0;
        for (auto n = sList.find(sNamespace); n != std::string::npos; n = sList.find(sNamespace, n + 1))
            ++nOfNamespace;
        if (lNames != nOfNamespace)
            return sText;
    }
    return replaceAll(sText, sNamespace, "");
}

std::string readable(std::string_view sMessage) {
    if (sMessage.ends_with('.'))
        sMessage.remove_suffix(1);
    return withoutNamespace(shortened(sMessage, longestMessage));
}

} // namespace

SchemaErrors::SchemaErrors(dom::Node oControlRoot, const ExportLog& log)
    : places_(oControlRoot, linesWithEvents(log)) {}

// Where memory runs out an error is counted without its place; the validation itself ends then.
void SchemaErrors::elementBegins(std::string_view sName) noexcept {
    try {
        places_.begin(sName);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch)
    }
}

void SchemaErrors::elementEnds() noexcept {
    places_.end();
}

void SchemaErrors::schemaError(std::uint64_t nLine, std::string_view sAttribute,
                               std::string_view sMessage) noexcept {
    ++lCount_;
    try {
        add(nLine, sAttribute, sMessage);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch)
    }
}

void SchemaErrors::add(std::uint64_t nLine, std::string_view sAttribute, std::string_view sMessage) {
    const auto writers = places_.writers(sAttribute);
    auto& known = ofNode_[writers.empty() ? nullptr : writers.front().data()];
    std::string sText = readable(sMessage);
    const auto find = [&] {
        return std::ranges::find_if(known, [&](std::size_t n) { return errors_[n].sMessage == sText; });
    };
    auto pKnown = find();
    if (pKnown == known.end() && known.size() >= mostTextsOfANode) {
        sText = sOtherErrors;
        pKnown = find();
    }
    if (pKnown != known.end()) {
        ++errors_[*pKnown].lCount;
        return;
    }
    SchemaError error{nLine, 0, {}, {}, {}, {}, std::move(sText), 1};
    for (const dom::Node oWriter : writers) {
        if (error.lLine != 0) {
            error.otherLines.push_back(oWriter.line());
            continue;
        }
        error.lLine = oWriter.line();
        error.sElement = oWriter.nodeName();
        error.sName = ClsXMLNode(oWriter).TagName();
        error.sPart = partOf(oWriter);
    }
    known.push_back(errors_.size());
    errors_.push_back(std::move(error));
}

std::string writerOf(const SchemaError& error, std::string_view sControl) {
    if (error.lLine == 0)
        return "";
    std::string sWriter =
        fmt::format("written by \"{}\" of {}", error.sName, shownLine(sControl, error.sPart, error.lLine));
    if (!error.otherLines.empty())
        sWriter += fmt::format(" or line {}", fmt::join(error.otherLines, ", "));
    return sWriter;
}

std::string schemaErrorLine(const SchemaError& error, const SchemaListing& listing) {
    std::string sLine =
        fmt::format("{}:{}: error: {}", listing.sDocument, error.lDocumentLine, error.sMessage);
    if (const std::string sWriter = writerOf(error, listing.sControl); !sWriter.empty())
        sLine += "; " + sWriter;
    if (error.lCount > 1)
        sLine += fmt::format(" ({} times)", error.lCount);
    return sLine;
}

void listOnConsole(const SchemaErrors& errors, const SchemaListing& listing, const Console& console) {
    std::uint64_t lTold = 0;
    for (std::size_t n = 0; n < std::min(errors.errors().size(), mostLines); ++n) {
        console.failure(schemaErrorLine(errors.errors()[n], listing));
        lTold += errors.errors()[n].lCount;
    }
    if (lTold < errors.count())
        console.failure(fmt::format("{}: {} more; --report lists them", listing.sDocument,
                                    counted(errors.count() - lTold, "error")));
}

} // namespace halvane
