#pragma once

class GDALDataset;

namespace halvane::host::gdal {

/// As long as it lives, what a server computes for a dataset is ended once an orderly end is asked for: the
/// caller waits in the library meanwhile, so that another thread sees to it. Nothing for other datasets.
class ServerWatch {
public:
    explicit ServerWatch(GDALDataset* pDataset);
    ServerWatch(ServerWatch&& other) noexcept;
    ServerWatch& operator=(ServerWatch&&) = delete;
    ServerWatch(const ServerWatch&) = delete;
    ServerWatch& operator=(const ServerWatch&) = delete;
    ~ServerWatch();

    /// The dataset is left alone from then on.
    void end() noexcept;

private:
    GDALDataset* pDataset_ = nullptr;
};

} // namespace halvane::host::gdal
