// The recorder between the tests and a host: it passes on what the host says.

#include "host/memory/Town.h"
#include "snapshot/RecordedTown.h"

namespace halvane::test::conformance {

namespace {

class RecordedTown final : public TownHost {
public:
    [[nodiscard]] const Town& town() const override { return town_; }
    void open(const Test& test) override {
        Recording recording;
        test(recordTown(recording, townInMemory(town_)));
    }

private:
    Town town_ = commonTown();
};

} // namespace

std::unique_ptr<TownHost> makeTownHost() {
    return std::make_unique<RecordedTown>();
}

} // namespace halvane::test::conformance
