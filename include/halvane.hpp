/// Halvane for programs in C++17: objects over the C interface in halvane.h, which says what holds for texts,
/// threads and the process. There is nothing to link but libhalvane, whatever compiler and standard library
/// built it.
///
///     halvane::Export run("countries.xml", "out.xml");
///     run.map("world.gpkg");
///     if (run.run() != halvane::Outcome::Written)
///         std::cerr << run.error() << '\n';

#ifndef HALVANE_HPP
#define HALVANE_HPP

#include "halvane.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace halvane {

/// What became of a run.
enum class Outcome : int {
    Written = HALVANE_WRITTEN,
    Refused = HALVANE_REFUSED,
    Incomplete = HALVANE_INCOMPLETE,
    NotWritten = HALVANE_NOT_WRITTEN,
};

/// How much a message matters.
enum class Level : int { Result = HALVANE_RESULT, Note = HALVANE_NOTE, Failure = HALVANE_FAILURE };

/// Told how many items were written; returns whether the run goes on.
using ProgressCallback = std::function<bool(std::uint64_t items)>;
/// Told one line.
using MessageCallback = std::function<void(Level level, std::string_view text)>;

/// Something cannot be set, or a map cannot be described; what() says why.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The version of the library that is loaded.
[[nodiscard]] inline std::string version() {
    return halvane_version();
}

namespace detail {

struct Frees {
    void operator()(halvane_export* pExport) const noexcept { halvane_export_free(pExport); }
    void operator()(halvane_description* pDescription) const noexcept {
        halvane_description_free(pDescription);
    }
};

/// What is called back, and the exception that it ended with: none passes through the library.
struct Callbacks {
    ProgressCallback progress;
    MessageCallback message;
    std::exception_ptr pThrown;

    static int onProgress(void* pUser, std::uint64_t lItems) noexcept {
        auto& callbacks = *static_cast<Callbacks*>(pUser);
        try {
            return !callbacks.pThrown && (!callbacks.progress || callbacks.progress(lItems)) ? 0 : 1;
        } catch (...) {
            callbacks.pThrown = std::current_exception();
            return 1;
        }
    }
    static void onMessage(void* pUser, int nLevel, const char* pText) noexcept {
        auto& callbacks = *static_cast<Callbacks*>(pUser);
        try {
            if (!callbacks.pThrown)
                callbacks.message(static_cast<Level>(nLevel), pText);
        } catch (...) {
            callbacks.pThrown = std::current_exception();
        }
    }
    /// Throws on what a callback threw.
    void settle() {
        if (pThrown)
            std::rethrow_exception(std::exchange(pThrown, nullptr));
    }
};

} // namespace detail

/// An export: what to read and where to write, and after a run what became of it. To be moved, not copied.
class Export {
public:
    /// @throws std::bad_alloc
    Export(const std::string& control, const std::string& output)
        : pHandle_(halvane_export_new(control.c_str(), output.c_str())),
          pCallbacks_(std::make_unique<detail::Callbacks>()) {
        if (!pHandle_)
            throw std::bad_alloc();
    }

    // Each of these throws Error when the library does not take the value.

    /// A map document, or any dataset or folder.
    Export& map(const std::string& path) { return set(halvane_export_set_map(handle(), path.c_str())); }
    /// A second document, whose nodes at an XPath pair tag names with aliases.
    Export& tags(const std::string& document, const std::string& nodePath) {
        return set(halvane_export_set_tags(handle(), document.c_str(), nodePath.c_str()));
    }
    /// "LAYER=FIDS" or "LAYER=WHERE"; once for each layer.
    Export& select(const std::string& selection) {
        return set(halvane_export_select(handle(), selection.c_str()));
    }
    /// A library of external processors, which the run loads; repeatable.
    Export& addProcessor(const std::string& library) {
        return set(halvane_export_add_processor(handle(), library.c_str()));
    }
    /// How many items a repeated node may write; from 1 on.
    Export& itemLimit(std::int64_t items) { return set(halvane_export_set_item_limit(handle(), items)); }
    /// Whether a run waits until the document is on the disk; at first it does.
    /// Whether a QGIS project may name databases of servers, which are then read.
    Export& allowConnections(bool allows = true) {
        return set(halvane_export_allow_connections(handle(), allows ? 1 : 0));
    }
    Export& sync(bool waits) { return set(halvane_export_set_sync(handle(), waits ? 1 : 0)); }

    /// Told how far a run is. What it throws cancels the run, and run() throws it on.
    Export& onProgress(ProgressCallback progress) {
        const bool bTold = static_cast<bool>(progress);
        pCallbacks_->progress = std::move(progress);
        return set(halvane_export_on_progress(handle(), bTold ? &detail::Callbacks::onProgress : nullptr,
                                              pCallbacks_.get()));
    }
    /// Told the lines that the program writes on a terminal. What it throws run() throws on.
    Export& onMessage(MessageCallback message) {
        const bool bTold = static_cast<bool>(message);
        pCallbacks_->message = std::move(message);
        return set(halvane_export_on_message(handle(), bTold ? &detail::Callbacks::onMessage : nullptr,
                                             pCallbacks_.get()));
    }

    /// Exports. Throws only what a callback threw.
    Outcome run() {
        const auto outcome = static_cast<Outcome>(halvane_export_run(handle()));
        pCallbacks_->settle();
        return outcome;
    }
    /// Ends the run under way; without one, the next. On any thread.
    void cancel() noexcept { halvane_export_cancel(handle()); }

    /// Why the last run was refused or wrote nothing, a line for each reason; else "".
    [[nodiscard]] std::string error() const { return halvane_export_error(handle()); }
    /// All that became of the last run: JSON in the form of report.schema.json.
    [[nodiscard]] std::string report() const { return halvane_export_report(handle()); }

private:
    [[nodiscard]] halvane_export* handle() const noexcept { return pHandle_.get(); }
    Export& set(int nResult) {
        if (nResult != 0)
            throw Error(error());
        return *this;
    }

    std::unique_ptr<halvane_export, detail::Frees> pHandle_;
    std::unique_ptr<detail::Callbacks> pCallbacks_; ///< where the library looks for them
};

/// Everything that a control file could name in a map: JSON in the form of describe.schema.json.
/// @param message told of what is odd in the map; may be nothing. What it throws is thrown on.
/// @param allowConnections whether a QGIS project may name databases of servers, which are then read.
/// @throws Error when the map cannot be opened.
[[nodiscard]] inline std::string describe(const std::string& map, MessageCallback message = {},
                                          bool allowConnections = false) {
    const std::unique_ptr<halvane_description, detail::Frees> pHandle(halvane_description_new(map.c_str()));
    if (!pHandle)
        throw std::bad_alloc();
    detail::Callbacks callbacks{{}, std::move(message), {}};
    if (callbacks.message)
        halvane_description_on_message(pHandle.get(), &detail::Callbacks::onMessage, &callbacks);
    halvane_description_allow_connections(pHandle.get(), allowConnections ? 1 : 0);
    const int nOutcome = halvane_description_run(pHandle.get());
    callbacks.settle();
    if (nOutcome != HALVANE_WRITTEN)
        throw Error(halvane_description_error(pHandle.get()));
    return halvane_description_json(pHandle.get());
}

} // namespace halvane

#endif
