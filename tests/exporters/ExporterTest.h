#pragma once

#include "base/Text.h"
#include "engine/ModExporter.h"
#include "host/memory/Memory.h"
#include "support/ControlText.h"
#include "support/RecordingObserver.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <string_view>

namespace halvane::test {

/// Calls exporters on a host in memory, one by one or through a whole export.
class ExporterTest : public ::testing::Test {
protected:
    ExporterTest() { prepare(state); }

    /// A state that an exporter can be called with: an output document with a root element.
    void prepare(ExportState& prepared) {
        prepared.pHost = pHost;
        prepared.options.pObserver = &observer;
        prepared.oOutputManager = std::make_unique<ClsXMLManager>();
        prepared.oOutputManager->setDOMDoc(dom::Document::create());
        oRoot = prepared.oOutputManager->DOMDoc()->asNode().appendChild(newOutputElement(prepared, "Out"));
    }

    /// The root of a control document that lives as long as the test.
    const ControlNode& control(std::string_view sXml, const ControlAttributes& inherited = {}) {
        return aControls.emplace_back(state, sXml, inherited).root();
    }
    /// A new element below the output's root.
    Node element(std::string_view sName) { return oRoot.appendChild(newOutputElement(state, sName)); }

    /// What was written below the output's root.
    [[nodiscard]] std::string written() const {
        const std::string sXml = state.oOutputManager->DOMDoc()->xml();
        constexpr std::string_view sOpen = "<Out>";
        constexpr std::string_view sClose = "</Out>";
        const auto begin = sXml.find(sOpen);
        const auto end = sXml.rfind(sClose);
        return begin == std::string::npos || end == std::string::npos
                   ? sXml
                   : sXml.substr(begin + sOpen.size(), end - begin - sOpen.size());
    }

    /// Runs a whole export of a map document. @returns the document without its line breaks, "" when none was
    /// saved.
    std::string exportWhole(const host::GisMapDocumentPtr& pMapDoc, std::string_view sControlXml) {
        const TemporaryFolder folder;
        state.sControlPath = folder.write("control.xml", sControlXml);
        state.sOutputPath = folder.file("out.xml");
        state.pMapDoc = pMapDoc;
        state.pMap = pMapDoc == nullptr ? nullptr : pMapDoc->focusMap();
        ExportEntry(state);
        return replaceAll(folder.read("out.xml").value_or(""), "\r\n", "");
    }

    host::memory::MemoryHostPtr pHost = host::memory::MemoryHost::make();
    RecordingObserver observer;
    ExportState state;
    Node oRoot;

private:
    std::deque<ControlText> aControls;
};

/// A property and the text that is written for it.
struct PropertyCase {
    const char* sName;
    const char* sText;
};

/// A parameter's name with everything that a test's name cannot hold left out.
template<class Parameter>
std::string nameOfParameter(const ::testing::TestParamInfo<Parameter>& info) {
    std::string sName;
    for (const char c : std::string(info.param.sName)) {
        if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'))
            sName += c;
    }
    return sName;
}

} // namespace halvane::test
