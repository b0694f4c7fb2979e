#pragma once

#include "xml/dom/Dom.h"

#include <string>
#include <vector>

namespace halvane {

/// What makes a control file unfit for an export, a line each ("control.xml:12: …"): it cannot be read, is
/// not well-formed, has text among its control elements, or elements without a usable Name: one that XML
/// allows, with no prefix that nothing declares.
/// @param sPath absolute, or a URL. @param sShown the name that the lines begin with.
/// @param oDocument becomes the document, if it could be read.
[[nodiscard]] std::vector<std::string> checkControlFile(const std::string& sPath, const std::string& sShown,
                                                        dom::DocumentPtr& oDocument);
[[nodiscard]] inline std::vector<std::string> checkControlFile(const std::string& sPath,
                                                               const std::string& sShown) {
    dom::DocumentPtr oDocument;
    return checkControlFile(sPath, sShown, oDocument);
}

} // namespace halvane
