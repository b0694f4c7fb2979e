// A recorded snapshot as a host: what a test asks of a host in memory is recorded, and the same test asks
// what was recorded, served as automation objects.

#include "host/com/ComHost.h"
#include "host/com/ScriptEngine.h"
#include "host/com/SnapshotServer.h"
#include "host/memory/Town.h"
#include "snapshot/RecordedTown.h"

namespace halvane::test::conformance {

namespace {

class ServedTown final : public TownHost {
public:
    [[nodiscard]] const Town& town() const override { return town_; }
    void open(const Test& test) override {
        Recording recording;
        const OpenTown recorded = recordTown(recording, townInMemory(town_));
        test(recorded);
        Json snapshot = recording.toJson();
        const auto pServer = SnapshotServer::create(std::move(snapshot));
        OpenTown served = recorded;
        served.pDocument = host::com::mapDocumentOf(*pServer->document());
        served.bTransforms = false; // by automation
        served.pHost = host::com::makeHost(pServer->document().get());
        test(served);
    }

private:
    Apartment apartment_;
    Town town_ = commonTown();
};

} // namespace

std::unique_ptr<TownHost> makeTownHost() {
    return std::make_unique<ServedTown>();
}

} // namespace halvane::test::conformance
