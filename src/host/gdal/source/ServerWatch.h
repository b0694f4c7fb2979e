#pragma once

#include <functional>
#include <list>
#include <optional>

class GDALDataset;

namespace halvane::host::gdal {

/// As long as it lives, what a server computes is ended once an orderly end is asked for: the caller waits in
/// a library meanwhile, so that another thread sees to it.
class ServerWatch {
public:
    /// Ends what a server computes. Called from another thread, more than once; it must not throw.
    using Cancel = std::function<void()>;

    explicit ServerWatch(Cancel fnCancel);
    /// Nothing for datasets of files.
    explicit ServerWatch(GDALDataset* pDataset);
    ServerWatch(ServerWatch&& other) noexcept;
    ServerWatch& operator=(ServerWatch&&) = delete;
    ServerWatch(const ServerWatch&) = delete;
    ServerWatch& operator=(const ServerWatch&) = delete;
    ~ServerWatch();

    /// The server is left alone from then on.
    void end() noexcept;

private:
    std::optional<std::list<Cancel>::iterator> place_; ///< among those that are watched
};

} // namespace halvane::host::gdal
