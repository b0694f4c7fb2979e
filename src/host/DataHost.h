#pragma once

// What front ends need of a host that opens data by itself, besides the objects of an export.

#include "host/Application.h"
#include "host/LostShapes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::host {

/// Where the data lies that the documents of a host name and that an export has asked for.
struct DataRead {
    std::vector<std::string> paths; ///< absolute, each once: files and folders; some may be missing
    bool bServers = false;          ///< there is data of servers, too
};

/// A loop over the rows of a table that goes on.
struct RowsUnderWay {
    std::uint64_t nLoop = 0; ///< tells it from those before it
    std::string sTable;
    std::int64_t lRead = 0;
    std::optional<std::int64_t> lAll; ///< about; nothing where only a reading tells
};

class DataHost : public GisHost {
public:
    /// Lets the documents of other programs that are opened from now on name databases of servers, which are
    /// then reached as those that a map document of this host names.
    virtual void allowConnections() = 0;
    /// Opens a map document, or any dataset or folder as a document of one map that holds all its layers
    /// and tables. From then on relative locations are taken from a map document's folder.
    /// @param sPath relative to the current folder.
    /// @throws Failure: what is wrong, in which file and line, and what to do.
    [[nodiscard]] virtual GisMapDocumentPtr openMapDocument(const std::string& sPath) = 0;
    /// Opens all data of a document of this host and tells of what cannot be opened, a line for each.
    [[nodiscard]] virtual std::vector<std::string> problems(const GisMapDocumentPtr& pDocument) const = 0;
    /// What a map document of this host says that is allowed but will not do what was meant, a line for each
    /// with its place. Opens no data.
    [[nodiscard]] virtual std::vector<std::string> remarks(const GisMapDocumentPtr& pDocument) const = 0;
    /// Of the data that the opened documents name, and of that at further locations as a control file gives
    /// them, the one that a file is part of: its path, or the name of its connection. "" for none.
    /// @param sFile absolute; it need not exist.
    [[nodiscard]] virtual std::string dataWith(const std::string& sFile,
                                               const std::vector<std::string>& locations) const = 0;
    /// All data that the opened documents name, and that of locations asked for since.
    [[nodiscard]] virtual DataRead dataRead() const = 0;
    /// Until what is returned is destroyed, all that is read of a server is its state at one moment, however
    /// many connections read it. Files are read as they are. Nothing for a host without servers.
    [[nodiscard]] virtual std::shared_ptr<void> holdServers() { return nullptr; }
    /// The server of data that was held and can no longer be read; "" for none. Asks the servers.
    [[nodiscard]] virtual std::string lostServer() const { return {}; }
    /// The outermost of the loops over rows that go on; nothing where there is none, or it is not known.
    [[nodiscard]] virtual std::optional<RowsUnderWay> rowsUnderWay() const { return std::nullopt; }
    /// The shapes that were asked for since the last call, are stored and could not be read, layer by layer.
    [[nodiscard]] virtual std::vector<LostShapes> takeLostShapes() const = 0;
    /// The workspaces of which a map document opened here says something of its own, in the document's order;
    /// those that cannot be opened are left out.
    [[nodiscard]] virtual std::vector<GisWorkspacePtr> namedWorkspaces() const = 0;
    /// Selects features of a layer of the shown map, found by its name ignoring case, in groups too.
    /// @param sChoice a comma-separated list of feature identifiers, in that order; anything else is a
    ///        where clause.
    /// @throws Failure for an unknown layer or feature and for a clause that is rejected.
    virtual void selectFeatures(const GisMapDocumentPtr& pDocument, std::string_view sLayer,
                                std::string_view sChoice) = 0;
    /// Loads a library of external processors (host/IExternalProcessorLibrary.h) for the rest of the process.
    /// @param sPath relative to the current folder. @throws Failure when it is not such a library.
    virtual void loadProcessorLibrary(const std::string& sPath) = 0;
};
using DataHostPtr = std::shared_ptr<DataHost>;

/// Which data a host's library works on, for whoever has to tell of its crash.
struct DataInUse {
    const char* pPath = nullptr;   ///< null where no call of the library is under way
    const char* pDriver = nullptr; ///< "" where it is not known yet
    bool bAnyCall = false;         ///< calls of the library are under way, in this thread or in another
};

/// How a front end comes by its host.
struct DataHosts {
    DataHostPtr (*create)();
    /// Asks, often and on any thread, whether an orderly end was asked for: what databases compute for hosts
    /// of this process then ends with a failure. @param pTest must not throw; nothing: nobody asks for one.
    void (*endWhen)(bool (*pTest)() noexcept) noexcept;
    /// In this thread. May be called by a signal's handler.
    DataInUse (*dataInUse)() noexcept;
};

} // namespace halvane::host
