#include "io/SpecialName.h"

#include "base/Text.h"

#include <algorithm>
#include <array>

namespace halvane::io {

namespace {

using namespace std::string_view_literals;

/// Followed by a digit, the superior ones too.
constexpr std::array aPorts = {"COM"sv, "LPT"sv};
constexpr std::array aDevices = {"CON"sv, "PRN"sv, "AUX"sv, "NUL"sv, "CONIN$"sv, "CONOUT$"sv};
constexpr std::array aDigits = {"0"sv, "1"sv, "2"sv, "3"sv,      "4"sv,      "5"sv,     "6"sv,
                                "7"sv, "8"sv, "9"sv, "\u00B9"sv, "\u00B2"sv, "\u00B3"sv};

bool isPort(std::string_view sName) {
    return std::any_of(aPorts.begin(), aPorts.end(), [&](std::string_view sPort) {
        return equalIgnoringCase(sName.substr(0, sPort.size()), sPort) &&
               std::find(aDigits.begin(), aDigits.end(),
                         sName.substr(std::min(sPort.size(), sName.size()))) != aDigits.end();
    });
}

bool isDevice(std::string_view sName) {
    return isPort(sName) || std::any_of(aDevices.begin(), aDevices.end(), [&](std::string_view sDevice) {
               return equalIgnoringCase(sName, sDevice);
           });
}

/// Without folders, and without the drive of a path that has none.
std::string_view nameIn(std::string_view sPath) {
    const std::size_t nSeparator = sPath.find_last_of("\\/");
    if (nSeparator != std::string_view::npos)
        return sPath.substr(nSeparator + 1);
    return sPath.size() >= 2 && sPath[1] == ':' ? sPath.substr(2) : sPath;
}

} // namespace

std::string whySpecial(std::string_view sPath) {
    if (std::any_of(sPath.begin(), sPath.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }))
        return "Windows has no control characters in names; choose a name without them";
    const std::string_view sName = nameIn(sPath);
    const std::string_view sBase = trimBlanks(sName.substr(0, sName.find_first_of(".:")));
    if (isDevice(sBase))
        return "\"" + std::string(sBase) +
               "\" is a device on Windows, whatever follows it; choose another name";
    if (sName.find(':') != std::string_view::npos)
        return "on Windows \":\" in a name leads into another file; choose a name without it";
    if (sName.ends_with('.') || sName.ends_with(' '))
        return "Windows leaves out points and blanks at the end of a name; choose a name without them";
    return {};
}

} // namespace halvane::io
