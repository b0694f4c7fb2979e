#include "host/gdal/source/ServerWatch.h"

#include "host/gdal/source/Interruption.h"

#include <gdal_priv.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <stop_token>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace halvane::host::gdal {

namespace {

/// Looks from time to time whether an end was asked for, and cancels what servers compute then.
class Watchman {
public:
    static Watchman& instance() {
        static Watchman watchman;
        return watchman;
    }

    void add(GDALDataset* pDataset) {
        const std::lock_guard lock(mutex_);
        watched_.insert(pDataset);
        if (!thread_.joinable()) {
            try {
                thread_ = std::jthread([this](const std::stop_token& stop) { watch(stop); });
            } catch (const std::system_error&) {
                // No thread can be had: the query is waited for.
            }
        }
    }

    /// Nothing is cancelled any more when it returns.
    void remove(GDALDataset* pDataset) {
        const std::lock_guard lock(mutex_);
        watched_.erase(pDataset);
    }

private:
    void watch(const std::stop_token& stop) {
        constexpr auto betweenLooks = std::chrono::milliseconds(100);
        std::unique_lock lock(mutex_);
        while (!stop.stop_requested()) {
            changed_.wait_for(lock, stop, betweenLooks, [] { return false; });
            if (!interruptionAsked())
                continue;
            for (GDALDataset* pDataset : watched_)
                pDataset->AbortSQL();
        }
    }

    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::set<GDALDataset*> watched_;
    std::jthread thread_; // ends before what it uses
};

bool isServer(GDALDataset* pDataset) {
    return pDataset != nullptr && pDataset->GetDriver() != nullptr &&
           pDataset->GetDriver()->GetDescription() == std::string_view("PostgreSQL");
}

} // namespace

ServerWatch::ServerWatch(GDALDataset* pDataset) : pDataset_(isServer(pDataset) ? pDataset : nullptr) {
    if (pDataset_ != nullptr)
        Watchman::instance().add(pDataset_);
}

ServerWatch::ServerWatch(ServerWatch&& other) noexcept : pDataset_(std::exchange(other.pDataset_, nullptr)) {}

ServerWatch::~ServerWatch() {
    end();
}

void ServerWatch::end() noexcept {
    if (pDataset_ != nullptr)
        Watchman::instance().remove(std::exchange(pDataset_, nullptr));
}

} // namespace halvane::host::gdal
