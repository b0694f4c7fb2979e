#include "run/preview/PreviewLayout.h"

#include "telling/Text.h"
#include "xml/dom/MarkupScanner.h"

#include <fmt/format.h>

#include <deque>
#include <unordered_map>

namespace halvane {

namespace {

using dom::Markup;
using What = PreviewLine::What;

constexpr std::size_t nMostOfText = 200;

bool isBlank(std::string_view sText) {
    return sText.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// The beginning of a text that is too long for a line.
std::string cut(std::string_view sText) {
    return sText.size() <= nMostOfText
               ? std::string(sText)
               : fmt::format("{} ({} bytes in all)", shortened(sText, nMostOfText), sText.size());
}

/// With the "<" before it.
std::string_view nameIn(std::string_view sTag) {
    return sTag.substr(0, sTag.find_first_of(" \t\r\n/>", 1));
}

/// A tag whose long values are cut.
std::string cutTag(const Markup& tag) {
    if (tag.sText.size() <= nMostOfText)
        return std::string(tag.sText);
    std::string sCut(nameIn(tag.sText));
    std::string_view sRest = tag.sText.substr(sCut.size());
    for (dom::WrittenAttribute attribute; dom::takeAttribute(sRest, attribute);)
        sCut += fmt::format(" {}=\"{}\"", attribute.sName, cut(attribute.sValue));
    return sCut + (tag.what == Markup::What::Empty ? "/>" : ">");
}

class Layout {
public:
    Layout(const PreviewNotes& notes, const PreviewForm& form) : notes_(notes), form_(form) {
        for (const PreviewRemark& remark : notes.remarks)
            remarks_[remark.nParent].push_back(&remark);
    }

    void add(const Markup& markup) {
        const bool bTag = markup.what == Markup::What::Start || markup.what == Markup::What::Empty;
        if (nSkipped_ > 0)
            skip(markup, bTag);
        else if (bTag)
            begin(markup);
        else if (markup.what == Markup::What::End)
            end(markup.sText);
        else if (!isBlank(markup.sText))
            addText(markup);
    }

    [[nodiscard]] std::vector<PreviewLine>& lines() noexcept { return lines_; }

private:
    struct Open {
        std::size_t nNumber;
        std::string sPart = {};   ///< the last element in it, where that is a part of a value
        std::uint64_t nParts = 0; ///< of that name, one after the other
        bool bOneLine = true;     ///< nothing but text has come in it
    };

    void begin(const Markup& tag) {
        if (!open_.empty()) {
            breakLine();
            if (!isPartWanted(nameIn(tag.sText))) {
                ++nElements_;
                nSkipped_ = tag.what == Markup::What::Start ? 1 : 0;
                return;
            }
            tellRemarks(open_.back().nNumber, open_.size());
        }
        const std::size_t nNumber = nElements_++;
        addLine(What::Markup, open_.size(), elementOf(nNumber).sPlace, cutTag(tag));
        open_.push_back({nNumber});
        if (tag.what == Markup::What::Empty)
            close();
    }

    /// Inside of an element that is left out.
    void skip(const Markup& markup, bool bTag) {
        nElements_ += bTag ? 1 : 0;
        if (markup.what == Markup::What::Start)
            ++nSkipped_;
        else if (markup.what == Markup::What::End)
            --nSkipped_;
    }

    void end(std::string_view sTag) {
        if (open_.empty())
            return;
        if (open_.back().bOneLine) {
            lines_.back().sText += sTag;
            close();
            return;
        }
        tellParts();
        tellRemarks(open_.back().nNumber, open_.size());
        addLine(What::Markup, open_.size() - 1, {}, std::string(sTag));
        open_.pop_back();
    }

    /// Of an element that stands in one line.
    void close() {
        const std::size_t nNumber = open_.back().nNumber;
        open_.pop_back();
        tellReasons(nNumber, open_.size() + 1);
        tellRemarks(nNumber, open_.size() + 1);
    }

    void addText(const Markup& text) {
        const bool bOfElement = text.what == Markup::What::Text || text.what == Markup::What::CData;
        if (bOfElement && !open_.empty() && open_.back().bOneLine)
            lines_.back().sText += cut(text.sText);
        else
            addLine(What::Markup, open_.size(), {}, cut(text.sText));
    }

    /// An element comes in the innermost one.
    void breakLine() {
        if (open_.back().bOneLine)
            tellReasons(open_.back().nNumber, open_.size());
        open_.back().bOneLine = false;
    }

    // ---- Parts of values ----

    /// Of like elements that make up one value, only the first are shown.
    bool isPartWanted(std::string_view sName) {
        Open& around = open_.back();
        const bool bPart = elementOf(nElements_).bPart;
        if (!bPart || around.sPart != sName) {
            tellParts();
            around.sPart = bPart ? sName : "";
            around.nParts = 0;
        }
        return !bPart || ++around.nParts <= form_.nItems;
    }

    void tellParts() {
        Open& around = open_.back();
        if (!around.sPart.empty() && around.nParts > form_.nItems)
            addLine(What::More, open_.size(), {},
                    fmt::format("… more: {} elements {}> of this value are left out",
                                around.nParts - form_.nItems, around.sPart));
        around.sPart.clear();
    }

    // ---- What is known of elements ----

    [[nodiscard]] const PreviewNotes::Element& elementOf(std::size_t nNumber) const {
        static const PreviewNotes::Element unknown;
        return nNumber < notes_.elements.size() ? notes_.elements[nNumber] : unknown;
    }

    void tellReasons(std::size_t nElement, std::size_t nDepth) {
        if (form_.bExplains)
            for (const auto& sReason : elementOf(nElement).reasons)
                addLine(What::Reason, nDepth, {}, sReason);
    }

    /// Those in the element whose place has come.
    void tellRemarks(std::size_t nParent, std::size_t nDepth) {
        const auto pFound = remarks_.find(nParent);
        if (pFound == remarks_.end())
            return;
        auto& remarks = pFound->second;
        for (; !remarks.empty() && remarks.front()->nAfter < nElements_; remarks.pop_front())
            if (const PreviewRemark& remark = *remarks.front(); remark.bMore || form_.bExplains)
                addLine(remark.bMore ? What::More : What::Reason, nDepth, remark.sPlace, remark.sText);
    }

    void addLine(What what, std::size_t nDepth, const std::string& sPlace, std::string sText) {
        lines_.push_back({what, nDepth, sPlace, std::move(sText)});
    }

    const PreviewNotes& notes_;
    const PreviewForm& form_;
    std::size_t nElements_ = 0;
    std::size_t nSkipped_ = 0; ///< open elements that are left out
    std::vector<Open> open_;
    std::unordered_map<std::size_t, std::deque<const PreviewRemark*>> remarks_; ///< not told yet, by parent
    std::vector<PreviewLine> lines_;
};

} // namespace

std::vector<PreviewLine> layOutPreview(std::string_view sDocument, const PreviewNotes& notes,
                                       const PreviewForm& form) {
    Layout layout(notes, form);
    dom::MarkupScanner scanner(sDocument);
    for (Markup markup; scanner.next(markup);)
        layout.add(markup);
    return std::move(layout.lines());
}

} // namespace halvane
