// Exports the examples from their recorded snapshots through the automation host, and compares what comes out
// with the documents made from the data itself, byte for byte.
//
//     halvane_examples_over_com SNAPSHOTS EXAMPLES OUT [LIBRARY]
//
// SNAPSHOTS is what halvane_record_examples wrote; the exit code is 77 where there is nothing. Without
// LIBRARY the export is called in C++, with the options of the command line: comments are ignored and items
// not limited. With it, the export is the published component's in that library, late-bound, of the control
// files without comments.

#include "component/clsExport.h"
#include "host/com/CollectionFace.h"
#include "host/com/ComHost.h"
#include "host/com/ComponentClient.h"
#include "host/com/RegisteredApplication.h"
#include "host/com/ScriptEngine.h"
#include "host/com/SnapshotServer.h"
#include "support/RecordingObserver.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace halvane::test {

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        return {};
    return {std::istreambuf_iterator<char>(stream), {}};
}

dom::DocumentPtr loaded(const fs::path& path) {
    auto oDocument = dom::Document::create();
    if (!oDocument->load(path.string()))
        throw std::runtime_error(path.string() + ": " + oDocument->parseError().reason);
    return oDocument;
}

struct Settings {
    fs::path snapshots;
    fs::path examples;
    fs::path out;
    ComponentClient* pComponent = nullptr; ///< nothing: without the component's library
};

/// The export of one example from its snapshot.
class ExampleRun {
public:
    ExampleRun(const Settings& settings, const fs::path& snapshot, ScriptEngine& scripts)
        : settings_(settings), json_(Json::parse(contentOf(snapshot))),
          sName_(json_.at("name").get<std::string>()),
          pServer_(SnapshotServer::create(std::move(json_.at("snapshot")))) {
        pServer_->registerComponent("Example.LayerReport", scripts.evaluate("makeLayerReport()"));
        pServer_->registerComponent("Example.GridSquare", scripts.evaluate("makeGridSquare()"));
    }

    /// @returns what is wrong; "" when nothing is.
    std::string run() {
        fs::remove(settings_.out / (sName_ + ".xml"));
        const std::string sFailure = exportDocument();
        if (!sFailure.empty())
            return sFailure;
        const std::string sWritten = contentOf(settings_.out / (sName_ + ".xml"));
        const std::string sExpected = contentOf(settings_.snapshots / (sName_ + ".expected.xml"));
        if (sExpected.empty() || sWritten != sExpected)
            return "the document differs" + unrecorded() + failures();
        return pServer_->unrecorded().empty() ? "" : "asks for more than the host on the data" + unrecorded();
    }

private:
    std::string exportDocument() {
        const auto pDocument = json_.at("map").get<bool>() ? pServer_->document() : com::ComPtr<IDispatch>();
        std::optional<RegisteredApplication> application;
        if (!pDocument)
            application.emplace(pServer_->application());
        return settings_.pComponent == nullptr ? exportDirectly(pDocument) : exportByComponent(pDocument);
    }

    std::string exportByComponent(const com::ComPtr<IDispatch>& pDocument) {
        const auto sTags = json_.at("tags").get<std::string>();
        return settings_.pComponent->exportDocument(
            {pDocument, (settings_.snapshots / (sName_ + ".control.xml")).string(), settings_.out.string(),
             sName_ + ".xml",
             sTags.empty() ? nullptr : loadSystemDocument((settings_.examples / sTags).string()),
             json_.at("nodePath").get<std::string>()});
    }

    std::string exportDirectly(const com::ComPtr<IDispatch>& pDocument) {
        ExportOptions options;
        options.bIgnoreComments = true;
        options.lItemLimit = std::numeric_limits<std::int64_t>::max();
        options.pObserver = &observer_;
        clsExport exporter(host::com::makeHost(pDocument.get()), options);
        std::string sFile = sName_ + ".xml";
        std::int32_t lErrNum = 0;
        std::string sErrMsg;
        exporter.Export2XML(pDocument ? host::com::mapDocumentOf(*pDocument) : nullptr,
                            (settings_.examples / json_.at("control").get<std::string>()).string(),
                            settings_.out.string(), sFile, tags(), json_.at("nodePath").get<std::string>(),
                            lErrNum, sErrMsg);
        return lErrNum == 0 ? "" : sErrMsg;
    }

    [[nodiscard]] dom::DocumentPtr tags() const {
        const auto sTags = json_.at("tags").get<std::string>();
        return sTags.empty() ? nullptr : loaded(settings_.examples / sTags);
    }

    [[nodiscard]] std::string unrecorded() const {
        std::string sText;
        for (const auto& sWhat : pServer_->unrecorded())
            sText += "\n    not recorded: " + sWhat;
        return sText;
    }

    [[nodiscard]] std::string failures() const {
        std::string sText;
        for (const auto& failure : observer_.aFailures)
            sText += "\n    " + failure.sName + ": " + failure.sDescription;
        for (const auto& notice : observer_.aNotices)
            sText += "\n    " + notice.sName + ": " + notice.sDetail;
        return sText;
    }

    const Settings& settings_;
    RecordingObserver observer_;
    Json json_;
    std::string sName_;
    std::shared_ptr<SnapshotServer> pServer_;
};

std::vector<std::string> exportingExamples(const fs::path& examples) {
    std::vector<std::string> aNames;
    for (const Json& entry : Json::parse(contentOf(examples / "examples.json")))
        // The component by itself heeds the first edition alone.
        if (entry.value("command", "export") == "export" && entry.value("edition", 1) == 1)
            aNames.push_back(entry.at("name"));
    return aNames;
}

int runExamples(const Settings& settings) {
    const CollectionBridge bridge;
    ScriptEngine scripts("JScript",
                         contentOf(settings.examples.parent_path() / "tests/host/com/Processors.js"));
    fs::create_directories(settings.out);
    int nPassed = 0;
    int nFailed = 0;
    // Every example that exports must have its snapshot.
    for (const std::string& sName : exportingExamples(settings.examples)) {
        const fs::path snapshot = settings.snapshots / (sName + ".json");
        std::string sWrong = "it has no snapshot";
        if (fs::exists(snapshot)) {
            ExampleRun run(settings, snapshot, scripts);
            sWrong = run.run();
        }
        if (sWrong.empty() && DispatchObject::alive() != 0)
            sWrong = std::to_string(DispatchObject::alive()) + " objects are not released";
        ++(sWrong.empty() ? nPassed : nFailed);
        if (!sWrong.empty())
            std::printf("%s: %s\n", sName.c_str(), sWrong.c_str());
    }
    if (settings.pComponent != nullptr && !settings.pComponent->canUnload()) {
        std::printf("the library is still in use\n");
        ++nFailed;
    }
    std::printf("%d passed, %d failed\n", nPassed, nFailed);
    return nFailed == 0 && nPassed > 0 ? 0 : 1;
}

} // namespace

} // namespace halvane::test

int main(int lArguments, char** aArguments) {
    if (lArguments != 4 && lArguments != 5) {
        std::fputs("halvane_examples_over_com SNAPSHOTS EXAMPLES OUT [LIBRARY]\n", stderr);
        return 2;
    }
    try {
        if (!std::filesystem::exists(aArguments[1])) {
            std::printf("There is no %s: halvane_record_examples writes it.\n", aArguments[1]);
            return 77;
        }
        const halvane::test::Apartment apartment;
        std::optional<halvane::test::ComponentClient> component;
        if (lArguments == 5)
            component.emplace(aArguments[4]);
        return halvane::test::runExamples(
            {aArguments[1], aArguments[2], aArguments[3], component.has_value() ? &*component : nullptr});
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
        return 1;
    }
}
