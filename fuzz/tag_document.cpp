// A document whose nodes at a path pair tags with aliases: the first line is the path.

#include "component/clsExport.h"
#include "fuzz/Check.h"
#include "fuzz/Input.h"
#include "fuzz/Target.h"
#include "support/TownWorld.h"
#include "telling/TagDocument.h"

#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize) {
    using namespace halvane;
    fuzz::Input input(pBytes, nSize);
    // The work of an expression can grow with its length's power.
    const std::string sPath(input.line().substr(0, 60));
    const auto oDocument = dom::Document::create();
    oDocument->loadXML(input.rest());
    std::vector<std::string> warnings;
    const std::string sProblem = checkTagPath(oDocument, sPath, {}, warnings);
    static const test::TownWorld world;
    clsExport component(world.pHost);
    const dCollectionPtr dTagNames = component.GetTagNames(oDocument, sPath);
    fuzz::check(sProblem.empty() || dTagNames == nullptr || dTagNames->Count() == 0,
                "A path that is none finds no tags", sPath);
    return 0;
}
