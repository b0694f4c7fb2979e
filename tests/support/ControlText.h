#pragma once

#include "engine/ModExporter.h"

#include <gtest/gtest.h>

#include <memory>
#include <string_view>

namespace halvane::test {

/// A control document given as a text, read as the engine reads it.
class ControlText {
public:
    /// @param state has an output document.
    ControlText(ExportState& state, std::string_view sXml, const ControlAttributes& inherited = {}) {
        EXPECT_TRUE(oDocument_->loadXML(sXml)) << oDocument_->parseError().reason;
        pTree_ = std::make_unique<ControlTree>(oDocument_->documentElement(), ControlTree::Root::OfPart,
                                               *state.oOutputManager->DOMDoc(), state.options.bIgnoreComments,
                                               inherited);
    }

    [[nodiscard]] const ControlNode& root() const { return pTree_->root(); }

private:
    dom::DocumentPtr oDocument_ = dom::Document::create();
    std::unique_ptr<ControlTree> pTree_;
};

} // namespace halvane::test
