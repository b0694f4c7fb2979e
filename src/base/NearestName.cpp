#include "base/NearestName.h"

#include "base/CaseFolding.h"

#include <algorithm>

namespace halvane {

namespace {

/// Nobody mistypes longer names, and the time grows with the square.
constexpr std::size_t nLongest = 128;

} // namespace

NearestName::Letters NearestName::lettersOf(std::string_view sText) {
    Letters letters;
    letters.reserve(sText.size());
    for (std::size_t i = 0; i < sText.size();) {
        const Character character = characterAt(sText, i);
        letters.push_back(upperCode(character.lCode));
        i += character.nBytes;
    }
    return letters;
}

NearestName::NearestName(std::string_view sWritten) : written_(lettersOf(sWritten)) {}

void NearestName::offer(std::string_view sName) {
    if (sName.empty() || sName.size() > 4 * nLongest || written_.size() > nLongest)
        return;
    const Letters name = lettersOf(sName);
    const std::size_t nLonger = std::max(name.size(), written_.size());
    const std::size_t nShorter = std::min(name.size(), written_.size());
    const std::size_t nAllowed = nLonger / 3;
    if (nLonger > nLongest || nLonger - nShorter > nAllowed)
        return;
    const std::size_t nDistance = distanceTo(name);
    if (nDistance > nAllowed || (!sNearest_.empty() && nDistance >= nNearest_))
        return;
    sNearest_ = std::string(sName);
    nNearest_ = nDistance;
}

std::string NearestName::question(std::string_view sBefore) const {
    if (sNearest_.empty())
        return {};
    return std::string(sBefore) + "did you mean \"" + sNearest_ + "\"?";
}

std::size_t NearestName::distanceTo(const Letters& name) const {
    // Row by row: the distances of the written name's first letters from each beginning of the other.
    std::vector<std::size_t> twoBefore;
    std::vector<std::size_t> before(name.size() + 1);
    std::vector<std::size_t> row(name.size() + 1);
    for (std::size_t j = 0; j < before.size(); ++j)
        before[j] = j;
    for (std::size_t i = 1; i <= written_.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= name.size(); ++j) {
            const std::size_t nWrong = written_[i - 1] == name[j - 1] ? 0 : 1;
            row[j] = std::min({before[j] + 1, row[j - 1] + 1, before[j - 1] + nWrong});
            if (i > 1 && j > 1 && written_[i - 1] == name[j - 2] && written_[i - 2] == name[j - 1])
                row[j] = std::min(row[j], twoBefore[j - 2] + 1);
        }
        twoBefore = before;
        std::swap(before, row);
    }
    return before.back();
}

} // namespace halvane
