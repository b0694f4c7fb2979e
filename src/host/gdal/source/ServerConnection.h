#pragma once

#include "base/Owned.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/ServerWatch.h"

#include <libpq-fe.h>

#include <memory>
#include <optional>
#include <string>

namespace halvane::host::gdal {

using ServerResult = Owned<PGresult, PQclear>;

/// A connection to a server beside those of the data library, which asks for values as texts. It reads the
/// state that is held of the server, and writes nothing. What fails on it is told to nobody: whoever uses it
/// has another way.
class ServerConnection {
public:
    /// Reads as the handle does: in the same encoding, time zone and search path.
    /// @returns nothing where no state is held, where the texts of numbers are not their values, and where no
    /// further connection can be had.
    [[nodiscard]] static std::unique_ptr<ServerConnection> tryOpen(const LayerHandle& layer);
    ServerConnection(const ServerConnection&) = delete;
    ServerConnection& operator=(const ServerConnection&) = delete;
    ~ServerConnection() = default;

    /// Waits for the statement's end. @returns nothing when it failed.
    [[nodiscard]] ServerResult run(const std::string& sStatement);
    /// Begins a statement, whose end is waited for later; one at a time. @returns whether it began.
    [[nodiscard]] bool begin(const std::string& sStatement);
    /// The result of the statement that was begun. @returns nothing when it failed.
    [[nodiscard]] ServerResult finish();
    /// Ends what the server computes, from whatever thread.
    void cancel() const noexcept;

private:
    explicit ServerConnection(const std::string& sConnection);

    Owned<PGconn, PQfinish> pConnection_;
    Owned<PGcancel, PQfreeCancel> pCancel_;
    ServerWatch watch_; // ends first
};

} // namespace halvane::host::gdal
