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
    std::size_t lDigits = 0;
    while (lDigits < sText.size() && sText[lDigits] >= '0' && sText[lDigits] <= '9')
        ++lDigits;
    sText.remove_prefix(lDigits);
    return lDigits;
}

void takeSign(std::string_view& sText) {
    sText.remove_prefix(sText.starts_with('+') || sText.starts_with('-') ? 1 : 0);
}

// Its value does not matter here.
bool isNumber(std::string_view sText) {
    takeSign(sText);
    std::size_t lDigits = takeDigits(sText);
    if (sText.starts_with('.')) {
        sText.remove_prefix(1);
        lDigits += takeDigits(sText);
    }
    if (lDigits > 0 && (sText.starts_with('e') || sText.starts_with('E'))) {
        sText.remove_prefix(1);
        takeSign(sText);
        lDigits = takeDigits(sText);
    }
    return lDigits > 0 && sText.empty();
}

/// Hands over the numbers of a text one by one, with whether a comma stands before each.
template<class Take>
bool readNumbers(std::string_view sText, Take take) {
    bool bComma = false;
    for (std::size_t lAt = 0; lAt < sText.size();) {
        if (sText[lAt] == ',' || sBlanks.find(sText[lAt]) != std::string_view::npos) {
            bComma = bComma || sText[lAt] == ',';
            ++lAt;
            continue;
        }
        const std::size_t lEnd = std::min(sText.find_first_of(", \t\r\n", lAt), sText.size());
        if (!isNumber(sText.substr(lAt, lEnd - lAt)))
            return false;
        take(bComma);
        bComma = false;
        lAt = lEnd;
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
    std::size_t lBegin = 0;
    std::size_t lEnd = 0; ///< behind it
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
        for (std::size_t lAt = 0; (lAt = sText_.find('<', lAt)) != std::string_view::npos;) {
            const std::size_t lAside = endOfAside(lAt);
            if (lAside != lAt) {
                lAt = lAside;
                continue;
            }
            const std::size_t lEnd = sText_.find('>', lAt);
            if (lEnd == std::string_view::npos || !take(tagAt(lAt, lEnd + 1)))
                return {};
            lAt = lEnd + 1;
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
    [[nodiscard]] std::size_t endOfAside(std::size_t lAt) const {
        constexpr std::array<std::pair<std::string_view, std::string_view>, 4> aAsides{
            {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!", ">"}}};
        for (const auto& [sBegin, sEnd] : aAsides) {
            if (sText_.compare(lAt, sBegin.size(), sBegin) == 0) {
                const std::size_t lEnd = sText_.find(sEnd, lAt + sBegin.size());
                return lEnd == std::string_view::npos ? sText_.size() : lEnd + sEnd.size();
            }
        }
        return lAt;
    }

    [[nodiscard]] Tag tagAt(std::size_t lBegin, std::size_t lEnd) const {
        Tag tag{lBegin, lEnd, {}, {}, true, false, false};
        std::string_view sInside = sText_.substr(lBegin + 1, lEnd - lBegin - 2);
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
        if (const std::size_t lColon = tag.sName.find(':'); lColon != std::string_view::npos) {
            tag.sPrefix = tag.sName.substr(0, lColon + 1);
            tag.sName.remove_prefix(lColon + 1);
        }
        return tag;
    }

    // False where the elements do not nest.
    bool take(const Tag& tag) {
        if (tag.bOpens && !tag.bCloses) {
            if (isShapeName(tag.sName)) {
                const bool bParent = last_.bOpens && !last_.bCloses && isBlank(last_.lEnd, tag.lBegin);
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
        const std::string_view sValue = sText_.substr(tag.lEnd, sText_.find('<', tag.lEnd) - tag.lEnd);
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
            pShape->sReason = reasonFor(sValue, tag.lBegin);
        }
    }

    [[nodiscard]] std::string reasonFor(std::string_view sValue, std::size_t lPlace) {
        constexpr std::size_t lMost = 60;
        const std::string_view sUncounted = sText_.substr(lCounted_, lPlace - lCounted_);
        lLine_ += std::count(sUncounted.begin(), sUncounted.end(), '\n');
        lCounted_ = lPlace;
        const std::size_t lFirst = std::min(sValue.find_first_not_of(sBlanks), sValue.size());
        sValue.remove_prefix(lFirst);
        sValue = sValue.substr(0, sValue.find_last_not_of(sBlanks) + 1);
        return "line " + std::to_string(lLine_) + ": \"" + std::string(sValue.substr(0, lMost)) +
               (sValue.size() > lMost ? "..." : "") + "\" are no coordinates";
    }

    void close(const Tag& tag) {
        Open open = std::move(open_.back());
        open_.pop_back();
        if (open_.empty() && !open.bCoordinates && form_ == CoordinateForm::Gml) {
            open.verdict = Verdict::Doubtful;
            open.sReason = reasonFor({}, open.tag.lBegin);
        }
        if (open.verdict == Verdict::Good)
            return;
        SuspectShape shape;
        shape.lBegin = open.tag.lBegin;
        shape.lEnd = tag.lEnd;
        shape.lParentBegin = shape.lBegin;
        shape.lParentEnd = shape.lEnd;
        const std::size_t lNext = sText_.find('<', tag.lEnd);
        const std::size_t lNextEnd = sText_.find('>', lNext);
        if (form_ == CoordinateForm::Gml && !open.parent.sName.empty() &&
            lNextEnd != std::string_view::npos && isBlank(tag.lEnd, lNext)) {
            const Tag next = tagAt(lNext, lNextEnd + 1);
            if (!next.bOpens && next.sName == open.parent.sName) {
                shape.lParentBegin = open.parent.lBegin;
                shape.lParentEnd = next.lEnd;
            }
        }
        shape.sPrefix = open.tag.sPrefix;
        shape.sReason = std::move(open.sReason);
        shape.bCertain = open.verdict == Verdict::Bad;
        found_.push_back(std::move(shape));
    }

    [[nodiscard]] bool isBlank(std::size_t lBegin, std::size_t lEnd) const {
        return sText_.substr(lBegin, lEnd - lBegin).find_first_not_of(sBlanks) == std::string_view::npos;
    }

    std::string_view sText_;
    CoordinateForm form_;
    bool bThree_;
    std::size_t lCounted_ = 0; // ends of lines up to there
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
