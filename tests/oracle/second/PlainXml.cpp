#include "oracle/second/PlainXml.h"

#include "oracle/OutputTree.h"

#include <algorithm>
#include <stdexcept>

namespace halvane::oracle {

namespace {

class XmlReader {
public:
    explicit XmlReader(std::string_view sText) : sRest_(sText) {}

    std::vector<XmlPiece> read() {
        auto aPieces = content();
        require(sRest_.empty());
        return aPieces;
    }

private:
    static void require(bool bHolds) {
        if (!bHolds)
            throw std::runtime_error("not well-formed");
    }
    bool take(std::string_view sWhat) {
        if (!sRest_.starts_with(sWhat))
            return false;
        sRest_.remove_prefix(sWhat.size());
        return true;
    }
    std::string takeUntil(std::string_view sEnd) {
        const std::size_t nEnd = sRest_.find(sEnd);
        require(nEnd != std::string_view::npos);
        std::string sBefore(sRest_.substr(0, nEnd));
        sRest_.remove_prefix(nEnd + sEnd.size());
        return sBefore;
    }
    void skipBlanks() { sRest_.remove_prefix(std::min(sRest_.find_first_not_of(" \t\n"), sRest_.size())); }

    /// As far as an end tag, or the end.
    std::vector<XmlPiece> content() {
        std::vector<XmlPiece> aPieces;
        while (!sRest_.empty() && !sRest_.starts_with("</")) {
            if (take("<!--"))
                require(takeUntil("-->").find("--") == std::string::npos);
            else if (sRest_.starts_with("<![CDATA["))
                aPieces.push_back({.sText = sections(), .bCData = true});
            else if (take("<?"))
                (void)takeUntil("?>");
            else if (sRest_.front() == '<')
                aPieces.push_back(element());
            else
                aPieces.push_back({.sText = text("<")});
        }
        return aPieces;
    }

    /// Those that follow one another are one.
    std::string sections() {
        std::string sText;
        while (take("<![CDATA["))
            sText += takeUntil("]]>");
        return sText;
    }

    /// Up to one of the ends, with what stands for characters replaced.
    std::string text(std::string_view sEnds) {
        std::string sText;
        while (!sRest_.empty() && sEnds.find(sRest_.front()) == std::string_view::npos) {
            require(!sRest_.starts_with("]]>") || sEnds != "<");
            if (take("&")) {
                const std::string sName = takeUntil(";");
                static const std::vector<std::pair<std::string, char>> entities{
                    {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
                const auto known = std::find_if(entities.begin(), entities.end(),
                                                [&](const auto& entity) { return entity.first == sName; });
                require(known != entities.end());
                sText += known->second;
            } else {
                sText += sRest_.front();
                sRest_.remove_prefix(1);
            }
        }
        return sText;
    }

    std::string name() {
        const std::size_t nEnd = std::min(sRest_.find_first_of(" \t\n=/<>\"'&;,!?[]"), sRest_.size());
        std::string sName(sRest_.substr(0, nEnd));
        require(isAllowedName(sName));
        sRest_.remove_prefix(nEnd);
        return sName;
    }

    XmlPiece element() {
        require(take("<"));
        XmlPiece element{.sName = name()};
        while (!sRest_.starts_with(">") && !sRest_.starts_with("/>")) {
            const std::size_t nBefore = sRest_.size();
            skipBlanks();
            if (sRest_.starts_with(">") || sRest_.starts_with("/>"))
                break;
            require(sRest_.size() < nBefore);
            element.aAttributes.push_back(attribute());
        }
        if (take("/>"))
            return element;
        require(take(">"));
        element.aChildren = content();
        require(take("</") && name() == element.sName);
        skipBlanks();
        require(take(">"));
        return element;
    }

    std::pair<std::string, std::string> attribute() {
        std::string sName = name();
        require(take("="));
        const bool bDouble = take("\"");
        require(bDouble || take("'"));
        std::string sValue = text(bDouble ? "\"<" : "'<");
        require(take(bDouble ? "\"" : "'"));
        std::replace(sValue.begin(), sValue.end(), '\t', ' ');
        std::replace(sValue.begin(), sValue.end(), '\n', ' ');
        return {std::move(sName), std::move(sValue)};
    }

    std::string_view sRest_;
};

/// Of what texts of random cases hold.
bool hasForbiddenCharacters(std::string_view sText) {
    return sText.find("\xEF\xBF\xBE") != std::string_view::npos ||
           std::any_of(sText.begin(), sText.end(), [](char c) {
               return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
           });
}

/// Each end of a line is a line feed.
std::string withLineFeeds(std::string_view sText) {
    std::string sResult;
    for (std::size_t n = 0; n < sText.size(); ++n) {
        if (sText[n] != '\r')
            sResult += sText[n];
        else if (n + 1 >= sText.size() || sText[n + 1] != '\n')
            sResult += '\n';
    }
    return sResult;
}

} // namespace

std::vector<XmlPiece> readXml(std::string_view sText) {
    if (hasForbiddenCharacters(sText))
        throw std::runtime_error("not well-formed");
    const std::string sLines = withLineFeeds(sText);
    return XmlReader(sLines).read();
}

} // namespace halvane::oracle
