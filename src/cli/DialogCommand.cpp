#include "cli/DialogCommand.h"

#include "cli/TerminalConsole.h"
#include "cli/TypedArguments.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace halvane::cli {

namespace {

constexpr const char* sProgram = "halvane-dialog";
constexpr const char* sDialogExamples = R"(
Examples:
  halvane dialog world.xml
      The map document that the exports read.
  halvane dialog data/ --select "Cities=POP > 1000000"
      All data files of a folder; only the large cities are selected.
  halvane dialog
      No map: control files find data through their DataLocations.

Exit codes:
  0  the dialog was shown and closed
  2  arguments or the map refused, no display, or the dialog is not built)";

std::vector<std::string> asTyped(const ExportArguments& arguments) {
    auto typed = typedApplication(arguments);
    typed.insert(typed.begin(), sProgram);
    return typed;
}

/// Runs a program in place of this one. Returns when it cannot.
void become(const std::string& sPath, const std::vector<std::string>& typed) {
    std::vector<std::string> copies = typed;
    std::vector<char*> pointers;
    pointers.reserve(copies.size() + 1);
    for (auto& sArgument : copies)
        pointers.push_back(sArgument.data());
    pointers.push_back(nullptr);
    ::execv(sPath.c_str(), pointers.data());
}

} // namespace

void DialogCommand::declare(CLI::App& app) {
    declareApplicationArguments(app, arguments_);
    auto* pMap = app.get_option("--map");
    pMap->description("The same as MAP");
    app.add_option_function<std::string>(
           "MAP", [this](const std::string& sText) { arguments_.sMap = sText; },
           "A map document, or any dataset or folder: a map of all its layers and tables")
        ->type_name("")
        ->excludes(pMap);
    app.footer(sDialogExamples);
}

ExitCode DialogCommand::run() {
    std::error_code error;
    const auto own = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::string sPath = (own.parent_path() / sProgram).string();
    become(sPath, asTyped(arguments_));
    const int lError = errno;
    const TerminalConsole console(false);
    if (lError == ENOENT)
        console.failure(
            fmt::format("halvane: the dialog is not built: there is no \"{}\"; install the package "
                        "halvane-dialog, or run \"./dev build --dialog\"",
                        sPath));
    else
        console.failure(fmt::format("halvane: \"{}\" cannot be run: {}", sPath, std::strerror(lError)));
    return ExitCode::InvalidInput;
}

} // namespace halvane::cli
