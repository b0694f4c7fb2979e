#pragma once

#include "xml/dom/Dom.h"

#include <string>
#include <vector>

namespace halvane {

/// What a document's loading found, as "NAME:LINE:COLUMN: reason". @param sShown the name.
[[nodiscard]] std::string parseProblem(const std::string& sShown, const dom::ParseError& error);

/// Loads a document. @param sPath absolute, or a URL. @param sShown the name that problems begin with.
/// @param problems gets a line, with line and column where they are known, when it cannot be read.
/// @param pError what the parser found then; may be nothing.
/// @returns nothing then.
[[nodiscard]] dom::DocumentPtr loadDocument(const std::string& sPath, const std::string& sShown,
                                            std::vector<std::string>& problems,
                                            dom::ParseError* pError = nullptr);

} // namespace halvane
