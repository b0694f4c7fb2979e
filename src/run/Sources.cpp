#include "run/Sources.h"

#include "engine/second/SecondEdition.h"
#include "telling/DocumentOrder.h"
#include "telling/Paths.h"

#include <filesystem>
#include <optional>
#include <set>
#include <utility>

namespace halvane {

namespace {

/// Those of the control file, its parts included.
std::set<std::string> controlFiles(const ExportInputs& inputs) {
    std::set<std::string> files{inputs.sControlPath};
    if (inputs.oControlDocument == nullptr)
        return files;
    const dom::Node oRoot = inputs.oControlDocument->documentElement();
    if (!isOfSecondEdition(oRoot))
        return files;
    for (dom::Node oNode = oRoot; oNode; oNode = nextInDocument(oNode, oRoot))
        if (const auto sPart = secondAttribute(oNode, "Include"))
            files.insert(absolutePath(shownFile(inputs.sControlPath, *sPart)));
    return files;
}

void addFile(const std::optional<std::string>& sTyped, std::set<std::string>& files) {
    if (sTyped && !sTyped->empty())
        files.insert(absolutePath(*sTyped));
}

} // namespace

Sources sourcesOf(const ExportArguments& arguments, const ExportInputs& inputs) {
    Sources sources;
    sources.bElsewhere = arguments.bReadsStandardInput || !arguments.processors.empty();
    std::set<std::string> files;
    if (!arguments.bReadsStandardInput)
        files = controlFiles(inputs);
    std::error_code error;
    if (!std::filesystem::is_directory(inputs.sMapPath, error)) // that is data
        addFile(arguments.sMap, files);
    addFile(arguments.sXmlDocument, files);
    files.insert(inputs.schema.files.begin(), inputs.schema.files.end());
    for (const auto& sFile : files) {
        if (isUrl(sFile))
            sources.bElsewhere = true;
        else
            sources.files.push_back(sFile);
    }
    if (inputs.pHost != nullptr) {
        auto read = inputs.pHost->dataRead();
        sources.data = std::move(read.paths);
        sources.bElsewhere = sources.bElsewhere || read.bServers;
    }
    return sources;
}

} // namespace halvane
