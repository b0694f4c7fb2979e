// The automation host on the objects of a script.

#include "host/com/ScriptHost.h"
#include "host/conformance/Conformance.h"

namespace halvane::test::conformance {

namespace {

/// The common town; not every engine of JScript makes dates of automation, so the script tells them as texts.
Town townOfAScript() {
    Town town = commonTown();
    const auto nOpened = static_cast<std::size_t>(town.roads.indexOf("OPENED"));
    town.roads.aFields[nOpened] = {"OPENED", "", host::FieldType::String, 20};
    town.roads.aRows[0].values["OPENED"] = std::string("17 May 1921");
    return town;
}

class ScriptedTown final : public TownHost {
public:
    [[nodiscard]] const Town& town() const override { return town_; }
    void open(const Test& test) override {
        ScriptEngine engine("JScript", townScript());
        engine.run("var town = makeTown();");
        const auto pTown = engine.evaluate("town");
        test({host::com::makeHost(pTown.get()), host::com::mapDocumentOf(*pTown), "C:\\town.mdb",
              "C:\\town.mdb", "C:\\photo.tif", false});
    }

private:
    Apartment apartment_;
    Town town_ = townOfAScript();
};

} // namespace

std::unique_ptr<TownHost> makeTownHost() {
    return std::make_unique<ScriptedTown>();
}

} // namespace halvane::test::conformance
