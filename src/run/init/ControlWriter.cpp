#include "run/init/ControlWriter.h"

#include "base/Text.h"
#include "telling/Text.h"
#include "xml/dom/Characters.h"
#include "xml/dom/Dom.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace halvane {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80U;
}

bool isPlain(char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '.';
}

std::string escaped(std::string_view sValue) {
    std::string sText;
    for (const char c : sValue)
        switch (c) {
        case '&':
            sText += "&amp;";
            break;
        case '<':
            sText += "&lt;";
            break;
        case '"':
            sText += "&quot;";
            break;
        case '\t':
        case '\n':
        case '\r':
            sText += fmt::format("&#{};", static_cast<int>(c));
            break;
        default:
            sText += c;
        }
    return sText;
}

/// Two hyphens end a comment, and foreign text must not steer who reads it.
std::string inComment(std::string_view sText) {
    std::string sSafe = printable(sText);
    while (sSafe.find("--") != std::string::npos)
        sSafe = replaceAll(sSafe, "--", "- -");
    return sSafe.ends_with('-') ? sSafe + ' ' : sSafe;
}

std::string tag(std::string_view sElement, const ControlWriter::Attributes& attributes) {
    std::string sTag = fmt::format("<{}", sElement);
    for (const auto& [sName, sValue] : attributes)
        sTag += fmt::format(" {}=\"{}\"", sName, escaped(sValue));
    return sTag;
}

/// A comment behind something on its line.
std::string behind(std::string_view sRemark) {
    return sRemark.empty() ? "" : fmt::format(" <!-- {} -->", inComment(sRemark));
}

} // namespace

void ControlWriter::comment(std::string_view sText) {
    sText_ += fmt::format("{}<!-- {} -->\n", indent(), inComment(sText));
}

void ControlWriter::leaf(std::string_view sElement, const Attributes& attributes, std::string_view sRemark) {
    sText_ += fmt::format("{}{}/>{}\n", indent(), tag(sElement, attributes), behind(sRemark));
}

void ControlWriter::commentedOut(std::string_view sElements, std::string_view sRemark) {
    std::vector<std::string> lines;
    (void)Split(sElements.substr(0, sElements.find_last_not_of('\n') + 1), "\n", lines);
    for (auto& sLine : lines)
        sLine = inComment(sLine);
    sText_ +=
        fmt::format("{}<!-- {} -->{}\n", indent(), fmt::join(lines, "\n     " + indent()), behind(sRemark));
}

void ControlWriter::open(std::string_view sElement, const Attributes& attributes) {
    sText_ += fmt::format("{}{}>\n", indent(), tag(sElement, attributes));
    open_.emplace_back(sElement);
}

void ControlWriter::close() {
    const std::string sElement = std::move(open_.back());
    open_.pop_back();
    sText_ += fmt::format("{}</{}>\n", indent(), sElement);
}

bool isXmlText(std::string_view sText) {
    dom::CharacterRepairs repairs;
    return dom::cleaned(sText, repairs) == sText;
}

std::string xmlName(std::string_view sText, std::string_view sOtherwise) {
    std::string sName(sText);
    for (char& c : sName)
        if (isAscii(c) && !isPlain(c))
            c = '_';
    const auto oScratch = dom::Document::create();
    const auto isAllowed = [&] { return oScratch->findName(sName) != nullptr; };
    if (!sName.empty() && isAscii(sName.front()) && !isLetter(sName.front()) && sName.front() != '_')
        sName.insert(0, 1, '_');
    const auto isForeign = [](char c) { return !isAscii(c); };
    if (!isAllowed())
        std::replace_if(sName.begin(), sName.end(), isForeign, '_');
    const bool bSaysSomething =
        std::any_of(sName.begin(), sName.end(), [](char c) { return isLetter(c) || !isAscii(c); });
    return bSaysSomething && isAllowed() ? sName : std::string(sOtherwise);
}

} // namespace halvane
