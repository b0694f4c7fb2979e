#include "cli/TerminalConsole.h"

#include "telling/StandardStreams.h"
#include "telling/Text.h"

#include <cstdio>
#include <string>

namespace halvane::cli {

namespace {

void writeLine(std::FILE* pStream, std::string_view sLine) {
    const std::string sText = printable(sLine) + "\n";
    // A reader who has gone away is no failure of the export.
    static_cast<void>(std::fwrite(sText.data(), 1, sText.size(), pStream));
    static_cast<void>(std::fflush(pStream));
}

} // namespace

void TerminalConsole::result(std::string_view sLine) const {
    if (!bQuiet_)
        writeLine(stdout, sLine);
}

void TerminalConsole::note(std::string_view sLine) const {
    if (!bQuiet_)
        writeLine(standardError(), sLine);
}

void TerminalConsole::failure(std::string_view sLine) const {
    writeLine(standardError(), sLine);
}

} // namespace halvane::cli
