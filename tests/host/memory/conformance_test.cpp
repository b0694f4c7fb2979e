#include "host/memory/Town.h"

namespace halvane::test::conformance {

namespace {

/// The common town, with a field of each further type.
Town townOfAllTypes() {
    Town town = commonTown();
    town.roads.aFields.push_back({"GRADE", "", host::FieldType::SmallInteger});
    town.roads.aFields.push_back({"LOAD", "", host::FieldType::Single});
    town.roads.aFields.push_back({"RAW", "", host::FieldType::Blob});
    TownRow& row = town.roads.aRows[0];
    row.values["GRADE"] = 4;
    row.values["LOAD"] = 7.5F;
    row.bytes["RAW"] = {std::byte{1}, std::byte{0}, std::byte{255}};
    return town;
}

class MemoryTown final : public TownHost {
public:
    [[nodiscard]] const Town& town() const override { return town_; }
    void open(const Test& test) override { test(townInMemory(town_)); }

private:
    Town town_ = townOfAllTypes();
};

} // namespace

std::unique_ptr<TownHost> makeTownHost() {
    return std::make_unique<MemoryTown>();
}

} // namespace halvane::test::conformance
