#pragma once

#include "engine/output/OutputElement.h"
#include "engine/second/SecondNode.h"

#include <string_view>

namespace halvane {

/// Writes a text behind what an element holds already, as its node asks for.
/// @param oDocument the output document.
/// @throws Failure DocumentFailure, before anything is written, when a text that is to be XML is not
/// well-formed, or has prefixes that nothing declares.
void appendTextAs(const SecondNode& node, const OutputElement& oElement, std::string_view sText,
                  dom::TextKind kind, dom::Document& oDocument);

} // namespace halvane
