#include "host/gdal/source/ServerWatch.h"

#include "host/gdal/source/Interruption.h"

#include <gdal_priv.h>

#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
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

    using Place = std::list<ServerWatch::Cancel>::iterator;

    Place add(ServerWatch::Cancel fnCancel) {
        const std::lock_guard lock(mutex_);
        const Place place = watched_.insert(watched_.end(), std::move(fnCancel));
        if (!thread_.joinable()) {
            try {
                thread_ = std::jthread([this](const std::stop_token& stop) { watch(stop); });
            } catch (const std::system_error&) {
                // No thread can be had: the query is waited for.
            }
        }
        return place;
    }

    /// Nothing is cancelled any more when it returns.
    void remove(Place place) {
        const std::lock_guard lock(mutex_);
        watched_.erase(place);
    }

private:
    void watch(const std::stop_token& stop) {
        constexpr auto betweenLooks = std::chrono::milliseconds(100);
        std::unique_lock lock(mutex_);
        while (!stop.stop_requested()) {
            changed_.wait_for(lock, stop, betweenLooks, [] { return false; });
            if (!interruptionAsked())
                continue;
            for (const ServerWatch::Cancel& fnCancel : watched_)
                fnCancel();
        }
    }

    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::list<ServerWatch::Cancel> watched_;
    std::jthread thread_; // ends before what it uses
};

bool isServer(GDALDataset* pDataset) {
    return pDataset != nullptr && pDataset->GetDriver() != nullptr &&
           pDataset->GetDriver()->GetDescription() == std::string_view("PostgreSQL");
}

} // namespace

ServerWatch::ServerWatch(Cancel fnCancel) : place_(Watchman::instance().add(std::move(fnCancel))) {}

ServerWatch::ServerWatch(GDALDataset* pDataset) {
    if (isServer(pDataset))
        place_ = Watchman::instance().add([pDataset] { pDataset->AbortSQL(); });
}

ServerWatch::ServerWatch(ServerWatch&& other) noexcept : place_(std::exchange(other.place_, std::nullopt)) {}

ServerWatch::~ServerWatch() {
    end();
}

void ServerWatch::end() noexcept {
    if (place_)
        Watchman::instance().remove(*std::exchange(place_, std::nullopt));
}

} // namespace halvane::host::gdal
