// What the document manager does at paths: queries, sections, insertions. A byte says which, the first line
// is the path, the rest the document.

#include "base/Failure.h"
#include "fuzz/Check.h"
#include "fuzz/Input.h"
#include "fuzz/Target.h"
#include "xml/ClsXMLManager.h"

#include <string>

namespace halvane::fuzz {
namespace {

void query(const ClsXMLManager& manager, const std::string& sPath) {
    const dom::Node oFound = manager.GetNodeByName(sPath);
    static_cast<void>(manager.GetFullPath(oFound));
    if (oFound) {
        static_cast<void>(manager.GetChildNodeDepth(oFound, 0));
        static_cast<void>(manager.HasDuplicateNodeNames(oFound));
    }
    const dom::NodeList oNodes = manager.GetNodesByName(sPath);
    check(!oNodes || (oNodes.length() > 0) == static_cast<bool>(oFound),
          "The list begins with the first node", sPath);
    static_cast<void>(manager.GetNodesByAttributeValue(sPath, "k", "v"));
}

void change(ClsXMLManager& manager, std::size_t nKind, std::string sPath) {
    switch (nKind) {
    case 0:
        static_cast<void>(manager.GetSectionNode(sPath));
        break;
    case 1:
        static_cast<void>(manager.InsertNode(sPath, "n", true, 1, nullptr));
        break;
    case 2:
        static_cast<void>(manager.InsertNode(sPath, "n", false, 1, nullptr));
        break;
    case 3:
        static_cast<void>(manager.InsertNode(sPath, sPath, false, 1, nullptr));
        break;
    default:
        static_cast<void>(manager.TotalNodesByName(sPath));
    }
}

} // namespace
} // namespace halvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize) {
    using namespace halvane;
    fuzz::Input input(pBytes, nSize);
    const std::size_t nKind = input.below(5);
    const std::string sPath(input.line().substr(0, 60));
    ClsXMLManager manager;
    manager.DOMDoc()->loadXML(input.rest());
    try {
        fuzz::query(manager, sPath);
    } catch (const Failure&) { // a path that cannot be selected
    }
    try {
        fuzz::change(manager, nKind, sPath);
    } catch (const Failure&) {
    }
    const std::string sText = manager.DOMDoc()->xml();
    const auto oAgain = dom::Document::create();
    fuzz::check(sText.empty() || oAgain->loadXML(sText), "A changed document can be read again", sText);
    return 0;
}
