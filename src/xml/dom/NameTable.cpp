#include "xml/dom/NameTable.h"

#include "base/Failure.h"
#include "xml/dom/Characters.h"

namespace halvane::dom {

const Name* NameTable::intern(std::string_view sName) {
    if (const auto found = namesByText_.find(sName); found != namesByText_.end())
        return found->second.get();
    if (!isXmlName(sName))
        throw Failure(FailureNumber::DocumentFailure,
                      "\"" + std::string(sName) + "\" is not a name that XML allows");
    auto pName = std::make_unique<Name>();
    pName->sQualified = sName;
    const auto colon = sName.find(':');
    pName->nBase = colon == std::string_view::npos ? 0 : colon + 1;
    pName->sStartTag.append("\r\n<").append(sName).append(">");
    pName->sEndTag.append("\r\n</").append(sName).append(">");
    pName->sAttribute.append(" ").append(sName).append("=\"");
    const std::string_view sKey = pName->sQualified;
    return namesByText_.emplace(sKey, std::move(pName)).first->second.get();
}

} // namespace halvane::dom
