#include "telling/check/SourcePlaces.h"

#include "base/Text.h"
#include "engine/second/ControlParts.h"
#include "io/FileReading.h"
#include "telling/ControlFileParts.h"
#include "telling/DocumentOrder.h"
#include "xml/dom/MarkupScanner.h"

#include <algorithm>

namespace halvane {

namespace {

constexpr std::string_view sByteOrderMark = "\xEF\xBB\xBF";

/// In characters, from 1. @param nAt where in the text.
std::uint32_t columnOf(std::string_view sText, std::size_t nAt) {
    const std::size_t nBreak = nAt == 0 ? std::string_view::npos : sText.rfind('\n', nAt - 1);
    const std::size_t nStart = nBreak == std::string_view::npos ? 0 : nBreak + 1;
    const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
    const std::string_view sLine = sText.substr(nStart, nAt - nStart);
    return static_cast<std::uint32_t>(std::count_if(sLine.begin(), sLine.end(), isFirstByte)) + 1;
}

std::string_view nameOfTag(std::string_view sTag) {
    return sTag.substr(1, sTag.find_first_of(" \t\r\n/>", 1) - 1);
}

/// Whether the declaration, if there is one, leaves the text in UTF-8.
bool isUtf8(std::string_view sText) {
    if (sText.find('\0') != std::string_view::npos)
        return false;
    const std::string_view sDeclaration =
        sText.starts_with("<?xml") ? sText.substr(0, sText.find("?>")) : std::string_view();
    const std::string_view sEncoding = dom::declaredValue(sDeclaration, "encoding");
    return sEncoding.empty() || equalIgnoringCase(sEncoding, "UTF-8") ||
           equalIgnoringCase(sEncoding, "US-ASCII");
}

/// Where in a start tag an attribute begins; npos where it has none of that name.
std::size_t attributeIn(std::string_view sTag, std::string_view sName) {
    std::string_view sRest = sTag.substr(1 + nameOfTag(sTag).size());
    for (dom::WrittenAttribute attribute; dom::takeAttribute(sRest, attribute);) {
        const std::string_view sLocal = attribute.sName.substr(attribute.sName.find(':') + 1);
        if (attribute.sName == sName || (sLocal.size() < attribute.sName.size() && sLocal == sName))
            return static_cast<std::size_t>(attribute.sName.data() - sTag.data());
    }
    return std::string_view::npos;
}

} // namespace

SourcePlaces::SourcePlaces(dom::Node oControlRoot, std::string sControlPath)
    : sControlPath_(std::move(sControlPath)) {
    for (dom::Node oNode = oControlRoot; oNode; oNode = nextInDocument(oNode, oControlRoot)) {
        if (!isElement(oNode))
            continue;
        auto& ofPart = elements_[partOf(oNode)];
        places_.emplace(oNode.data(), ofPart.size());
        ofPart.push_back(oNode);
    }
}

SourcePlace SourcePlaces::of(dom::Node oElement, std::string_view sAttribute) {
    const SourcePlace lineAlone{oElement.line(), 0};
    const auto known = places_.find(oElement.data());
    if (known == places_.end())
        return lineAlone;
    const File& file = fileOf(partOf(oElement));
    if (file.tags.empty())
        return lineAlone;
    const Tag& tag = file.tags[known->second % file.tags.size()]; // a part may be included twice
    const std::size_t nIn = sAttribute.empty() ? std::string_view::npos : attributeIn(tag.sText, sAttribute);
    if (nIn == std::string_view::npos)
        return tag.place;
    const std::string_view sBefore = tag.sText.substr(0, nIn);
    const auto nBreaks = std::count(sBefore.begin(), sBefore.end(), '\n');
    const auto nAt = static_cast<std::size_t>(tag.sText.data() - file.sText.data()) + nIn;
    return {tag.place.lLine + static_cast<std::uint32_t>(nBreaks), columnOf(file.sText, nAt)};
}

const SourcePlaces::File& SourcePlaces::fileOf(const std::string& sPart) {
    const auto [file, bNew] = files_.try_emplace(sPart);
    if (bNew)
        read(sPart, file->second);
    return file->second;
}

void SourcePlaces::read(const std::string& sPart, File& file) const {
    if (io::readFile(shownFile(sControlPath_, sPart), dom::Document::largestLoaded, file.sText) ||
        !isUtf8(file.sText))
        return;
    if (file.sText.starts_with(sByteOrderMark))
        file.sText.erase(0, sByteOrderMark.size());
    const std::string_view sText = file.sText;
    dom::MarkupScanner scanner(sText);
    for (dom::Markup markup; scanner.next(markup);)
        if (markup.what == dom::Markup::What::Start || markup.what == dom::Markup::What::Empty)
            file.tags.push_back({{markup.nLine, columnOf(sText, static_cast<std::size_t>(markup.sText.data() -
                                                                                         sText.data()))},
                                 markup.sText});
    // The file may have changed since it was read, and entities may hold elements.
    const auto& elements = elements_.at(sPart);
    std::size_t n = 0;
    const auto sameName = [&](dom::Node oElement) {
        return nameOfTag(file.tags[n++ % file.tags.size()].sText) == oElement.nodeName();
    };
    if (file.tags.empty() || elements.size() % file.tags.size() != 0 ||
        !std::all_of(elements.begin(), elements.end(), sameName))
        file.tags.clear();
}

} // namespace halvane
