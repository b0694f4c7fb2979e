#include "host/gdal/map/ElementReader.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <charconv>

namespace halvane::host::gdal {

void ElementReader::fail(const MarkupElement& element, const std::string& sText) const {
    throw Failure(FailureNumber::HostFailure, placeOf(element).text() + ": " + sText);
}

std::optional<MarkupElement> ElementReader::single(const MarkupElement& element,
                                                   std::string_view sName) const {
    const std::vector<MarkupElement> all = element.children(sName);
    if (all.size() > 1) {
        fail(all[1], "a second <" + std::string(sName) + "> in the same <" + std::string(element.name()) +
                         ">; leave one");
    }
    return all.empty() ? std::nullopt : std::optional(all.front());
}

void ElementReader::requireUnique(std::unordered_set<std::string>& names, const std::string& sName,
                                  const MarkupElement& element) const {
    if (!names.insert(upperCase(sName)).second) {
        fail(element, "a second <" + std::string(element.name()) + "> named \"" + sName +
                          "\"; names are compared ignoring case: rename one");
    }
}

bool toBool(const std::string& sText) {
    return sText == "true" || sText == "1";
}

double toNumber(const std::string& sText) {
    double dValue = 0;
    std::string_view sTrimmed = trimBlanks(sText);
    sTrimmed.remove_prefix(sTrimmed.starts_with('+') ? 1 : 0);
    std::from_chars(sTrimmed.data(), sTrimmed.data() + sTrimmed.size(), dValue);
    return dValue;
}

std::int32_t toWhole(const std::string& sText) {
    return static_cast<std::int32_t>(toNumber(sText));
}

} // namespace halvane::host::gdal
