#pragma once

#include "xml/dom/Backend.h"
#include "xml/dom/Dom.h"
#include "xml/dom/Layout.h"
#include "xml/dom/NameTable.h"
#include "xml/dom/NodeStore.h"
#include "xml/dom/Sealing.h"
#include "xml/dom/WideElements.h"

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <utility>
#include <vector>

namespace halvane::dom {

struct Document::Impl {
    explicit Impl(Document& document) : pDocument(&document), sealing(*this) {
        documentNode.kind = Kind::Document;
        documentNode.pDocument = this;
    }

    /// To be called at every change of names, values or structure.
    void changed() noexcept {
        ++nVersion;
        if (pMirror != nullptr)
            pMirror.reset();
    }

    Document* pDocument;
    NodeData documentNode;
    NodeStore store;
    NameTable names;
    WideElements wideElements;
    std::uint64_t nVersion = 0;

    std::unique_ptr<Mirror> pMirror; ///< there only while it is up to date
    const NodeData* pMirrorTop = nullptr;

    Sealing sealing;
    std::list<NodeObject*> holders;

    bool bValidateOnParse = false;
    ParseError parseError;
    std::int32_t lReadyState = 4;
    using Listener = std::pair<std::uint64_t, std::function<void()>>;
    std::vector<Listener> aListeners;
    std::uint64_t nNextListener = 1; ///< 0 is that of onReadyStateChange

    Layout layout;
    CharacterRepairs repairsOfLastSave;
    std::string sWhyNotDurable;
    CharacterRepairs repairs; ///< what characterRepairs handed out last
};

} // namespace halvane::dom
