#pragma once

#include "host/com/DispatchObject.h"
#include "snapshot/SnapshotFormat.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace halvane::test {

/// Serves a recorded snapshot as automation objects, with the members that a host application has. What was
/// not recorded is an exception, and is noted. The shape of its lists changes from one to the next.
class SnapshotServer : public std::enable_shared_from_this<SnapshotServer> {
public:
    [[nodiscard]] static std::shared_ptr<SnapshotServer> create(Json snapshot);

    [[nodiscard]] com::ComPtr<IDispatch> document() { return object(0); }
    [[nodiscard]] com::ComPtr<IDispatch> application() { return object(1); }

    /// What the application's CreateComponent yields.
    void registerComponent(const std::string& sProgId, com::ComPtr<IDispatch> pComponent) {
        components_[sProgId] = std::move(pComponent);
    }
    [[nodiscard]] com::ComPtr<IDispatch> component(const std::string& sProgId) const;

    /// The members that were asked for in vain.
    [[nodiscard]] const std::vector<std::string>& unrecorded() const noexcept { return aUnrecorded_; }

    // For the objects that are served.
    [[nodiscard]] com::ComPtr<IDispatch> object(std::size_t nPlace);
    [[nodiscard]] const Json& recorded(std::size_t nPlace) const { return snapshot_["objects"].at(nPlace); }
    /// @throws Failure for a recorded failure.
    [[nodiscard]] com::Variant answer(const Json& json);
    [[noreturn]] void refuse(const std::string& sWhat);
    [[nodiscard]] int next(const std::string& sWhat) { return counts_[sWhat]++; }

private:
    explicit SnapshotServer(Json snapshot) : snapshot_(std::move(snapshot)) {}

    [[nodiscard]] com::Variant list(const Json& json);

    Json snapshot_;
    std::map<std::string, com::ComPtr<IDispatch>> components_;
    std::map<std::string, int> counts_;
    std::vector<std::string> aUnrecorded_;
};

} // namespace halvane::test
