#pragma once

#include "host/gdal/source/Source.h"

#include <gdal_priv.h>

#include <map>
#include <memory>
#include <string>

namespace halvane::host::gdal {

/// The states of servers that are held for an export: whoever reads then, on whatever connection, reads the
/// same rows. Files have none.
class ServerSnapshots {
public:
    /// From now until what is returned is destroyed, each server is read as it is when it is asked first.
    [[nodiscard]] std::shared_ptr<void> hold();
    /// Lets a connection read the state that is held of its server, from now until it leaves it. A statement
    /// that fails ends its reading. @throws Failure when the server does not hold one.
    void join(const Source& source, GDALDataset& dataset);
    /// Nothing for a connection that has not joined. Errors are reported to the scope around the call.
    /// @returns whether it had joined, and answers.
    static bool leave(const Source& source, GDALDataset& dataset);
    /// As leave, of a connection that nobody reads from any more: where it does not answer, its server is
    /// lost.
    void letGo(const Source& source, GDALDataset& dataset);
    /// Another text for each state; "" where none is held.
    [[nodiscard]] std::string stateOf(const Source& source) const;
    /// The display name of a source whose state is gone with its server; "" for none. Asks the servers.
    [[nodiscard]] std::string lost() const;

private:
    /// A state lasts as long as the transaction that has named it.
    struct State {
        GDALDatasetUniquePtr pConnection;
        std::string sName;
        std::string sDisplayName;
        bool bLost = false; ///< another connection to it was
    };
    struct States {
        States() = default;
        States(const States&) = delete;
        States& operator=(const States&) = delete;
        ~States();

        std::map<std::string, State> byConnection;
    };

    [[nodiscard]] const State& stateFor(const Source& source);

    std::weak_ptr<States> states_; // while somebody holds them
};

} // namespace halvane::host::gdal
