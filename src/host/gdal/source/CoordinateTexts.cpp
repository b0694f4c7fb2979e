#include "host/gdal/source/CoordinateTexts.h"

#include <algorithm>
#include <array>
#include <utility>

namespace halvane::host::gdal {

namespace {

constexpr std::string_view sBlanks = " \t\r\n";

enum class Verdict : std::uint8_t { Good, Doubtful, Bad };

// How many digits a text begins with; they go.
std::size_t takeDigits(std::string_view& sText) {
    std::size_t nDigits = 0;
    while (nDigits < sText.size() && sText[nDigits] >= '0' && sText[nDigits] <= '9')
        ++nDigits;
    sText.remove_prefix(nDigits);
    return nDigits;
}

void takeSign(std::string_view& sText) {
    sText.remove_prefix(sText.starts_with('+') || sText.starts_with('-') ? 1 : 0);
}

// Its value does not matter here.
bool isNumber(std::string_view sText) {
    takeSign(sText);
    std::size_t nDigits = takeDigits(sText);
    if (sText.starts_with('.')) {
        sText.remove_prefix(1);
        nDigits += takeDigits(sText);
    }
    if (nDigits > 0 && (sText.starts_with('e') || sText.starts_with('E'))) {
        sText.remove_prefix(1);
        takeSign(sText);
        nDigits = takeDigits(sText);
    }
    return nDigits > 0 && sText.empty();
}

/// Hands over the numbers of a text one by one, with whether a comma stands before each.
template<class Take>
bool readNumbers(std::string_view sText, Take take) {
    bool bComma = false;
    for (std::size_t nAt = 0; nAt < sText.size();) {
        if (sText[nAt] == ',' || sBlanks.find(sText[nAt]) != std::string_view::npos) {
            bComma = bComma || sText[nAt] == ',';
            ++nAt;
            continue;
        }
        const std::size_t nEnd = std::min(sText.find_first_of(", \t\r\n", nAt), sText.size());
        if (!isNumber(sText.substr(nAt, nEnd - nAt)))
            return false;
        take(bComma);
        bComma = false;
        nAt = nEnd;
    }
    return true;
}

// Places are apart by blanks, and the numbers of each by commas.
Verdict verdictOfKml(std::string_view sText) {
    int lNumbers = 0; // of this place
    bool bWhole = true;
    const bool bNumbers = readNumbers(sText, [&](bool bComma) {
        bWhole = bWhole && (bComma || lNumbers != 1);
        lNumbers = bComma ? lNumbers + 1 : 1;
    });
    return bNumbers && bWhole && lNumbers != 1 ? Verdict::Good : Verdict::Bad;
}

// @param bThree whether three numbers may make a place, as is said elsewhere.
Verdict verdictOfGml(std::string_view sText, std::string_view sName, bool bThree) {
    int lNumbers = 0;
    if (!readNumbers(sText, [&](bool) { ++lNumbers; }))
        return Verdict::Bad;
    const bool bPairs = lNumbers > 0 && lNumbers % 2 == 0;
    const bool bTriples = lNumbers > 0 && lNumbers % 3 == 0 && (bThree || sName == "pos");
    return sName == "coordinates" || bPairs || bTriples ? Verdict::Good : Verdict::Doubtful;
}

bool isShapeName(std::string_view sName) {
    constexpr std::array<std::string_view, 20> aNames{"Point",
                                                      "LineString",
                                                      "LinearRing",
                                                      "Polygon",
                                                      "Curve",
                                                      "Surface",
                                                      "MultiPoint",
                                                      "MultiLineString",
                                                      "MultiPolygon",
                                                      "MultiCurve",
                                                      "MultiSurface",
                                                      "MultiGeometry",
                                                      "GeometryCollection",
                                                      "CompositeCurve",
                                                      "CompositeSurface",
                                                      "OrientableCurve",
                                                      "Solid",
                                                      "PolyhedralSurface",
                                                      "TriangulatedSurface",
                                                      "Tin"};
    return std::find(aNames.begin(), aNames.end(), sName) != aNames.end();
}

struct Tag {
    std::size_t nBegin = 0;
    std::size_t nEnd = 0; ///< behind it
    std::string_view sPrefix;
    std::string_view sName; ///< without the prefix
    bool bOpens = false;
    bool bCloses = false;
    bool bFormSaid = false; ///< whether it says how numbers are written
};

class Walk {
public:
    Walk(std::string_view sText, CoordinateForm form)
        : sText_(sText), form_(form), bThree_(sText.find("imension=\"3\"") != std::string_view::npos) {}

    std::vector<SuspectShape> shapes() {
        for (std::size_t nAt = 0; (nAt = sText_.find('<', nAt)) != std::string_view::npos;) {
            const std::size_t nAside = endOfAside(nAt);
            if (nAside != nAt) {
                nAt = nAside;
                continue;
            }
            const std::size_t nEnd = sText_.find('>', nAt);
            if (nEnd == std::string_view::npos || !take(tagAt(nAt, nEnd + 1)))
                return {};
            nAt = nEnd + 1;
        }
        return open_.empty() ? std::move(found_) : std::vector<SuspectShape>();
    }

private:
    struct Open {
        Tag tag;
        Tag parent; // the tag before it, where it opens an element and only blanks stand between
        Verdict verdict = Verdict::Good;
        std::string sReason;
        bool bCoordinates = false; // whether there are any, of its prefix
    };

    // Behind a comment, a declaration or a section of characters; the place itself where there is none.
    [[nodiscard]] std::size_t endOfAside(std::size_t nAt) const {
        constexpr std::array<std::pair<std::string_view, std::string_view>, 4> aAsides{
            {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!", ">"}}};
        for (const auto& [sBegin, sEnd] : aAsides) {
            if (sText_.compare(nAt, sBegin.size(), sBegin) == 0) {
                const std::size_t nEnd = sText_.find(sEnd, nAt + sBegin.size());
                return nEnd == std::string_view::npos ? sText_.size() : nEnd + sEnd.size();
            }
        }
        return nAt;
    }

    [[nodiscard]] Tag tagAt(std::size_t nBegin, std::size_t nEnd) const {
        Tag tag{nBegin, nEnd, {}, {}, true, false, false};
        std::string_view sInside = sText_.substr(nBegin + 1, nEnd - nBegin - 2);
        if (sInside.starts_with('/')) {
            tag.bOpens = false;
            tag.bCloses = true;
            sInside.remove_prefix(1);
        }
        tag.bCloses = tag.bCloses || sInside.ends_with('/');
        tag.sName = sInside.substr(0, sInside.find_first_of(" \t\r\n/"));
        tag.bFormSaid = sInside.find("decimal=") != std::string_view::npos ||
                        sInside.find("cs=") != std::string_view::npos ||
                        sInside.find("ts=") != std::string_view::npos;
        if (const std::size_t nColon = tag.sName.find(':'); nColon != std::string_view::npos) {
            tag.sPrefix = tag.sName.substr(0, nColon + 1);
            tag.sName.remove_prefix(nColon + 1);
        }
        return tag;
    }

    // False where the elements do not nest.
    bool take(const Tag& tag) {
        if (tag.bOpens && !tag.bCloses) {
            if (isShapeName(tag.sName)) {
                const bool bParent = last_.bOpens && !last_.bCloses && isBlank(last_.nEnd, tag.nBegin);
                open_.push_back({tag, bParent ? last_ : Tag(), Verdict::Good, {}, false});
            } else if (!open_.empty()) {
                testCoordinates(tag);
            }
        } else if (!tag.bOpens && isShapeName(tag.sName)) {
            if (open_.empty() || open_.back().tag.sName != tag.sName)
                return false;
            close(tag);
        }
        last_ = tag;
        return true;
    }

    void testCoordinates(const Tag& tag) {
        if (tag.sName != "coordinates" && tag.sName != "posList" && tag.sName != "pos")
            return;
        const std::string_view sValue = sText_.substr(tag.nEnd, sText_.find('<', tag.nEnd) - tag.nEnd);
        const Verdict verdict = tag.bFormSaid                  ? Verdict::Good
                                : form_ == CoordinateForm::Kml ? verdictOfKml(sValue)
                                                               : verdictOfGml(sValue, tag.sName, bThree_);
        // What an element of the same prefix holds is the shape; a row's element may be called like one.
        const auto pShape = std::find_if(open_.begin(), open_.end(),
                                         [&](const Open& open) { return open.tag.sPrefix == tag.sPrefix; });
        if (pShape == open_.end())
            return;
        pShape->bCoordinates = true;
        if (verdict > pShape->verdict) {
            pShape->verdict = verdict;
            pShape->sReason = reasonFor(sValue, tag.nBegin);
        }
    }

    [[nodiscard]] std::string reasonFor(std::string_view sValue, std::size_t nPlace) {
        constexpr std::size_t nMost = 60;
        const std::string_view sUncounted = sText_.substr(nCounted_, nPlace - nCounted_);
        lLine_ += std::count(sUncounted.begin(), sUncounted.end(), '\n');
        nCounted_ = nPlace;
        const std::size_t nFirst = std::min(sValue.find_first_not_of(sBlanks), sValue.size());
        sValue.remove_prefix(nFirst);
        sValue = sValue.substr(0, sValue.find_last_not_of(sBlanks) + 1);
        return "line " + std::to_string(lLine_) + ": \"" + std::string(sValue.substr(0, nMost)) +
               (sValue.size() > nMost ? "..." : "") + "\" are no coordinates";
    }

    void close(const Tag& tag) {
        Open open = std::move(open_.back());
        open_.pop_back();
        if (open_.empty() && !open.bCoordinates && form_ == CoordinateForm::Gml) {
            open.verdict = Verdict::Doubtful;
            open.sReason = reasonFor({}, open.tag.nBegin);
        }
        if (open.verdict == Verdict::Good)
            return;
        SuspectShape shape;
        shape.nBegin = open.tag.nBegin;
        shape.nEnd = tag.nEnd;
        shape.nParentBegin = shape.nBegin;
        shape.nParentEnd = shape.nEnd;
        const std::size_t nNext = sText_.find('<', tag.nEnd);
        const std::size_t nNextEnd = sText_.find('>', nNext);
        if (form_ == CoordinateForm::Gml && !open.parent.sName.empty() &&
            nNextEnd != std::string_view::npos && isBlank(tag.nEnd, nNext)) {
            const Tag next = tagAt(nNext, nNextEnd + 1);
            if (!next.bOpens && next.sName == open.parent.sName) {
                shape.nParentBegin = open.parent.nBegin;
                shape.nParentEnd = next.nEnd;
            }
        }
        shape.sPrefix = open.tag.sPrefix;
        shape.sReason = std::move(open.sReason);
        shape.bCertain = open.verdict == Verdict::Bad;
        found_.push_back(std::move(shape));
    }

    [[nodiscard]] bool isBlank(std::size_t nBegin, std::size_t nEnd) const {
        return sText_.substr(nBegin, nEnd - nBegin).find_first_not_of(sBlanks) == std::string_view::npos;
    }

    std::string_view sText_;
    CoordinateForm form_;
    bool bThree_;
    std::size_t nCounted_ = 0; // ends of lines up to there
    std::int64_t lLine_ = 1;
    Tag last_;
    std::vector<Open> open_; // elements of shapes
    std::vector<SuspectShape> found_;
};

} // namespace

std::vector<SuspectShape> suspectShapesIn(std::string_view sText, CoordinateForm form) {
    return Walk(sText, form).shapes();
}

} // namespace halvane::host::gdal
