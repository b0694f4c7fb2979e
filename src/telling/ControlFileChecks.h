#pragma once

#include "telling/ControlFileParts.h"
#include "xml/dom/Dom.h"

#include <string>
#include <vector>

namespace halvane {

struct SecondEdition;

/// What makes a control file unfit for an export, a line each ("control.xml:12: …"): it cannot be read, is
/// not well-formed, has text among its control elements, or elements without a usable Name: one that XML
/// allows, with no prefix that nothing declares. In a file of the second edition also: what it says in that
/// edition cannot be followed.
/// @param pSecondEdition what the second edition is read with; nothing: files are of the first edition.
/// @param sPath absolute, or a URL. @param sShown the name that the lines begin with.
/// @param oDocument becomes the document, if it could be read.
[[nodiscard]] std::vector<std::string> checkControlFile(const std::string& sPath, const std::string& sShown,
                                                        dom::DocumentPtr& oDocument,
                                                        const SecondEdition* pSecondEdition = nullptr);
[[nodiscard]] inline std::vector<std::string>
checkControlFile(const std::string& sPath, const std::string& sShown,
                 const SecondEdition* pSecondEdition = nullptr) {
    dom::DocumentPtr oDocument;
    return checkControlFile(sPath, sShown, oDocument, pSecondEdition);
}
/// The same of a control file that is loaded already.
/// @param nMost where there are more problems, the last one says so; at least 1.
[[nodiscard]] std::vector<ControlProblem> controlProblems(const dom::DocumentPtr& oDocument,
                                                          const SecondEdition* pSecondEdition = nullptr,
                                                          std::size_t nMost = 20);

} // namespace halvane
