// Runs the exports of examples/ with a recorder between them and the data, and writes for each
//
//     OUT/NAME.json           how it is run, and the snapshot
//     OUT/NAME.expected.xml   the document, as the command line writes it
//     OUT/NAME.control.xml    the control file without its comments: the command line ignores them, the
//                             component does not, and of this file both make the same document
//
//     halvane_record_examples EXAMPLES_FOLDER PROCESSOR_LIBRARY OUT
//
// An export must write the same with a recorder, without one, and with the component's exact behaviour from
// the control file without comments; else the program fails.

#include "cli/Arguments.h"
#include "component/clsExport.h"
#include "host/gdal/GdalHost.h"
#include "run/ExportInputs.h"
#include "snapshot/RecordingHost.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace halvane::test {

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + path.string());
    return {std::istreambuf_iterator<char>(stream), {}};
}

struct Example {
    std::string sName;
    std::vector<std::string> aArguments;
    fs::path out;
};

ExportArguments argumentsOf(const Example& example) {
    ExportArguments arguments;
    CLI::App app;
    cli::declareExportArguments(app, arguments);
    std::vector<std::string> aReversed(example.aArguments.rbegin(), example.aArguments.rend());
    aReversed.insert(aReversed.begin(), (example.out / (example.sName + ".expected.xml")).string());
    app.parse(aReversed);
    return arguments;
}

ExportInputs openExample(const Example& example) {
    ExportInputs inputs{host::gdal::dataHosts()};
    const auto problems = openInputs(argumentsOf(example), inputs);
    if (!problems.empty())
        throw std::runtime_error(problems.front());
    return inputs;
}

/// What the command line relaxes.
ExportOptions relaxed(const ExportInputs& inputs) {
    ExportOptions options;
    options.lItemLimit = ExportArguments().lItemLimit;
    options.bIgnoreComments = true;
    options.oControlDocument = inputs.oControlDocument;
    return options;
}

/// @returns the document.
std::string exportWith(const ExportInputs& inputs, const host::GisHostPtr& pHost,
                       const host::GisMapDocumentPtr& pDocument, const ExportOptions& options) {
    std::int32_t lErrNum = 0;
    std::string sErrMsg;
    std::string sName = inputs.output.sName;
    fs::remove(inputs.output.path());
    clsExport exporter(pHost, options);
    exporter.Export2XML(pDocument, inputs.sControlPath, inputs.output.sFolder, sName,
                        inputs.oExternalDocument, inputs.sNodePath, lErrNum, sErrMsg);
    if (lErrNum != 0)
        throw std::runtime_error(sErrMsg);
    return contentOf(inputs.output.path());
}

std::string withoutComments(std::string sText) {
    constexpr std::string_view sStart = "<!--";
    constexpr std::string_view sEnd = "-->";
    for (std::size_t n = sText.find(sStart); n != std::string::npos; n = sText.find(sStart, n))
        sText.erase(n, sText.find(sEnd, n) + sEnd.size() - n);
    return sText;
}

Json recordExample(const Example& example) {
    const ExportInputs inputs = openExample(example);
    Recording recording;
    RecordedObject& document = recording.add("MapDocument");
    RecordedObject& application = recording.add("Application");
    document.answer("Application", application.reference());
    auto pHost = std::make_shared<RecordingHost>(application, recording, inputs.pHost);
    static_cast<void>(pHost->pathSeparator());
    const std::string sRecorded =
        exportWith(inputs, pHost, recordDocument(document, inputs.pMapDocument), relaxed(inputs));

    const ExportInputs plain = openExample(example);
    if (exportWith(plain, plain.pHost, plain.pMapDocument, relaxed(plain)) != sRecorded)
        throw std::runtime_error(example.sName + ": the recorder changed the document");

    ExportInputs exact = openExample(example);
    const fs::path control = example.out / (example.sName + ".control.xml");
    std::ofstream(control, std::ios::binary) << withoutComments(contentOf(exact.sControlPath));
    exact.sControlPath = control.string();
    if (exportWith(exact, exact.pHost, exact.pMapDocument, {}) != sRecorded)
        throw std::runtime_error(example.sName + ": the component's own behaviour changed the document");
    return recording.toJson();
}

void writeExample(const Example& example) {
    const ExportArguments arguments = argumentsOf(example);
    const Json json = {{"name", example.sName},
                       {"control", arguments.sControl},
                       {"map", arguments.sMap.has_value()},
                       {"tags", arguments.sXmlDocument.value_or("")},
                       {"nodePath", arguments.sNodePath.value_or("")},
                       {"snapshot", recordExample(example)}};
    std::ofstream(example.out / (example.sName + ".json")) << json.dump(1) << '\n';
}

void recordExamples(const fs::path& examples, const std::string& sProcessor, const fs::path& out) {
    fs::create_directories(out);
    const Json list = Json::parse(contentOf(examples / "examples.json"));
    fs::current_path(examples);
    int nRecorded = 0;
    for (const Json& entry : list) {
        // The component by itself heeds the first edition alone.
        if (entry.value("command", "export") != "export" || entry.value("edition", 1) != 1)
            continue;
        Example example{entry.at("name"), entry.at("arguments"), out};
        for (std::string& sArgument : example.aArguments)
            if (sArgument == "{processor}")
                sArgument = sProcessor;
        writeExample(example);
        ++nRecorded;
    }
    fmt::print("{} exports recorded\n", nRecorded);
}

} // namespace

} // namespace halvane::test

int main(int lArguments, char** aArguments) {
    if (lArguments != 4) {
        std::fputs("halvane_record_examples EXAMPLES_FOLDER PROCESSOR_LIBRARY OUT\n", stderr);
        return 2;
    }
    try {
        namespace fs = std::filesystem;
        halvane::test::recordExamples(fs::absolute(aArguments[1]), fs::absolute(aArguments[2]).string(),
                                      fs::absolute(aArguments[3]));
        return 0;
    } catch (const std::exception& exception) {
        fmt::print(stderr, "{}\n", exception.what());
        return 1;
    }
}
