#include "host/gdal/GdalHost.h"
#include "library/CallbackProgress.h"
#include "library/Handle.h"
#include "run/ExportRun.h"

#include <chrono>
#include <memory>
#include <new>

using namespace halvane;
using library::CallbackProgress;
using library::Handle;

/// The export of the public header.
struct halvane_export final : Handle {
    ExportArguments arguments;
    CallbackProgress progress{*this};
    std::string sReport;

protected:
    void reset() override { sReport.clear(); }

    int runInTurn() override {
        const auto started = std::chrono::steady_clock::now();
        progress.restart();
        const ExportArguments settled = arguments; // what is called back may set others, for the next run
        ExportRun run(settled, {host::gdal::dataHosts(), messages(), progress});
        run.run();
        ReportFacts& facts = run.factsWithSources();
        facts.duration = std::chrono::steady_clock::now() - started;
        keep(facts.problems);
        sReport = reportJson(facts, run.log());
        return static_cast<int>(facts.exitCode);
    }

    void refused(const std::vector<std::string>& problems) override {
        ReportFacts facts;
        facts.exitCode = ExitCode::InvalidInput;
        facts.sControl = arguments.sControl;
        facts.problems = problems;
        sReport = reportJson(facts, nullptr);
    }
};

namespace {

constexpr int nRefused = -1;

/// A text, or that there is none.
std::optional<std::string> optionalText(const char* pText) {
    return pText == nullptr ? std::nullopt : std::optional<std::string>(pText);
}

} // namespace

halvane_export* halvane_export_new(const char* control, const char* output) {
    try {
        auto pExport = std::make_unique<halvane_export>();
        static_cast<void>(pExport->set("halvane_export_new", control != nullptr && output != nullptr, [&] {
            pExport->arguments.sControl = control;
            pExport->arguments.sOutput = output;
        }));
        return pExport.release();
    } catch (...) {
        return nullptr;
    }
}

void halvane_export_free(halvane_export* pExport) {
    const std::unique_ptr<halvane_export> pOwned(pExport);
}

int halvane_export_set_map(halvane_export* pExport, const char* map) {
    return pExport == nullptr ? nRefused : pExport->set("halvane_export_set_map", true, [&] {
        pExport->arguments.sMap = optionalText(map);
    });
}

int halvane_export_set_tags(halvane_export* pExport, const char* document, const char* node_path) {
    const bool bFit = (document == nullptr) == (node_path == nullptr);
    return pExport == nullptr ? nRefused : pExport->set("halvane_export_set_tags", bFit, [&] {
        auto sDocument = optionalText(document);
        pExport->arguments.sNodePath = optionalText(node_path);
        pExport->arguments.sXmlDocument = std::move(sDocument);
    });
}

int halvane_export_select(halvane_export* pExport, const char* selection) {
    return pExport == nullptr ? nRefused : pExport->set("halvane_export_select", selection != nullptr, [&] {
        pExport->arguments.selections.emplace_back(selection);
    });
}

int halvane_export_add_processor(halvane_export* pExport, const char* library) {
    return pExport == nullptr ? nRefused
                              : pExport->set("halvane_export_add_processor", library != nullptr,
                                             [&] { pExport->arguments.processors.emplace_back(library); });
}

int halvane_export_set_item_limit(halvane_export* pExport, int64_t items) {
    return pExport == nullptr ? nRefused : pExport->set("halvane_export_set_item_limit", items >= 1, [&] {
        pExport->arguments.lItemLimit = items;
    });
}

int halvane_export_allow_connections(halvane_export* pExport, int allow) {
    return pExport == nullptr ? nRefused
                              : pExport->set("halvane_export_allow_connections", allow == 0 || allow == 1,
                                             [&] { pExport->arguments.bAllowConnections = allow == 1; });
}

int halvane_export_set_sync(halvane_export* pExport, int sync) {
    return pExport == nullptr ? nRefused
                              : pExport->set("halvane_export_set_sync", sync == 0 || sync == 1, [&] {
                                    pExport->arguments.durability =
                                        sync == 1 ? io::Durability::OnDisk : io::Durability::LeftToSystem;
                                });
}

int halvane_export_on_progress(halvane_export* pExport, halvane_progress callback, void* user) {
    if (pExport == nullptr)
        return nRefused;
    pExport->progress.tell(callback, user);
    return 0;
}

int halvane_export_on_message(halvane_export* pExport, halvane_message callback, void* user) {
    if (pExport == nullptr)
        return nRefused;
    pExport->messages().tell(callback, user);
    return 0;
}

int halvane_export_run(halvane_export* pExport) {
    return pExport == nullptr ? static_cast<int>(HALVANE_REFUSED) : pExport->run();
}

void halvane_export_cancel(halvane_export* pExport) {
    if (pExport != nullptr)
        pExport->cancel();
}

const char* halvane_export_error(const halvane_export* pExport) {
    return pExport == nullptr ? "there is no export" : pExport->error();
}

const char* halvane_export_report(const halvane_export* pExport) {
    return pExport == nullptr ? "" : pExport->sReport.c_str();
}
