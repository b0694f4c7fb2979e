#include "cli/TypedArguments.h"

#include <limits>
#include <optional>
#include <string_view>

namespace halvane::cli {

namespace {

class Line {
public:
    void word(std::string_view sWord) { words_.emplace_back(sWord); }
    void flag(bool bGiven, std::string_view sOption) {
        if (bGiven)
            word(sOption);
    }
    /// A value may begin with "-"; behind "=" an empty one would not be seen.
    void text(std::string_view sOption, const std::optional<std::string>& sValue) {
        if (sValue && !sValue->empty())
            word(std::string(sOption) + "=" + *sValue);
        else if (sValue)
            words_.insert(words_.end(), {std::string(sOption), ""});
    }
    void texts(std::string_view sOption, const std::vector<std::string>& values) {
        for (const auto& sValue : values)
            text(sOption, sValue);
    }
    [[nodiscard]] std::vector<std::string> take() { return std::move(words_); }

private:
    std::vector<std::string> words_;
};

void addApplication(const ExportArguments& arguments, Line& line) {
    line.text("--map", arguments.sMap);
    line.flag(arguments.bAllowConnections, "--allow-connections");
    line.texts("--select", arguments.selections);
    line.texts("--processor", arguments.processors);
}

} // namespace

std::vector<std::string> typedApplication(const ExportArguments& arguments) {
    Line line;
    addApplication(arguments, line);
    return line.take();
}

std::vector<std::string> typedExport(const ExportArguments& arguments) {
    Line line;
    addApplication(arguments, line);
    line.text("--xml", arguments.sXmlDocument);
    line.text("--node-path", arguments.sNodePath);
    line.texts("--set", arguments.values);
    line.text("--schema", arguments.sSchema);
    line.text("--schema-catalog", arguments.sSchemaCatalog);
    line.flag(arguments.bExactName, "--exact-name");
    if (arguments.lItemLimit != std::numeric_limits<std::int64_t>::max())
        line.text("--item-limit", std::to_string(arguments.lItemLimit));
    line.flag(arguments.durability == io::Durability::LeftToSystem, "--no-sync");
    line.flag(arguments.bQuiet, "--quiet");
    line.flag(arguments.bVerbose, "--verbose");
    line.word("--");
    line.word(arguments.sControl);
    line.word(arguments.sOutput);
    return line.take();
}

} // namespace halvane::cli
