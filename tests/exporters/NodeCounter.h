#pragma once

#include "host/IExternalProcessor.h"
#include "host/memory/Memory.h"
#include "xml/dom/Dom.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>

namespace halvane::test {

/// Sees how many nodes the output document holds while it is written: a processor that writes nothing.
class NodeCounter : public IExternalProcessor {
public:
    /// Lets the control element below ask for this processor.
    /// @returns the most nodes that it saw.
    static std::shared_ptr<std::size_t> registerAt(host::memory::MemoryHost& host,
                                                   dom::DocumentPtr pDocument) {
        auto pMost = std::make_shared<std::size_t>(0);
        host.registerComponent("Test.Nodes", [pDocument = std::move(pDocument), pMost] {
            return std::make_shared<NodeCounter>(pDocument, pMost);
        });
        return pMost;
    }
    static constexpr const char* sElement = "<n Name='N' DataSource='External' IdentityValue='Test.Nodes'/>";

    NodeCounter(dom::DocumentPtr pDocument, std::shared_ptr<std::size_t> pMost)
        : pDocument_(std::move(pDocument)), pMost_(std::move(pMost)) {}
    std::string Process(dCollection&) override {
        *pMost_ = std::max(*pMost_, pDocument_->memoryUse().nodes);
        return "";
    }

private:
    dom::DocumentPtr pDocument_;
    std::shared_ptr<std::size_t> pMost_;
};

} // namespace halvane::test
