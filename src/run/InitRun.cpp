#include "run/InitRun.h"

#include "base/Choices.h"
#include "run/DescribeRun.h"
#include "run/OpenedSchema.h"
#include "run/init/SchemaSkeleton.h"
#include "run/init/StarterControl.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <utility>

namespace halvane {

namespace {

void addNames(const ReadingList<LayerDescription>& layers, Choice& choice) {
    if (!layers)
        return;
    for (const auto& layer : *layers) {
        if (!layer)
            continue;
        if (layer->kind != LayerKind::Group && layer->sName)
            choice.names.push_back(*layer->sName);
        addNames(layer->members, choice);
    }
}

Choice layersAndTables(const MapDescription& description) {
    Choice choice{"the map has", "layer or table", "layers and tables", {}};
    if (!description.maps)
        return choice;
    for (const auto& map : *description.maps) {
        if (!map)
            continue;
        addNames(map->layers, choice);
        if (!map->tables)
            continue;
        for (const auto& table : *map->tables)
            if (table && table->sDataset)
                choice.names.push_back(*table->sDataset);
    }
    return choice;
}

} // namespace

InitOutcome runInit(const InitArguments& arguments, const host::DataHosts& hosts, const Console& console) {
    InitOutcome outcome;
    std::optional<SchemaSkeleton> skeleton;
    if (arguments.sSchema) {
        const auto files = readSchema(*arguments.sSchema, arguments.sSchemaCatalog, outcome.problems);
        if (outcome.problems.empty())
            skeleton = schemaSkeleton(*files, outcome.problems);
    }
    if (!outcome.problems.empty()) {
        outcome.exitCode = ExitCode::InvalidInput;
        return outcome;
    }
    const auto form = [&](const MapDescription& description, const std::string& /*sPath*/) {
        auto names = arguments.layers;
        std::string sText = starterControl(description, skeleton, names);
        for (const auto& sName : names)
            outcome.problems.push_back(fmt::format("--layer: the map has no layer or table {}: {}",
                                                   inQuotes(sName),
                                                   meantOrThere(sName, layersAndTables(description))));
        return sText;
    };
    auto described = describeMapAt(arguments.sMap, "MAP", form, hosts, console, arguments.bAllowConnections);
    outcome.exitCode = outcome.problems.empty() ? described.exitCode : ExitCode::InvalidInput;
    outcome.sText = std::move(described.sText);
    if (!described.sProblem.empty())
        outcome.problems.push_back(std::move(described.sProblem));
    return outcome;
}

} // namespace halvane
