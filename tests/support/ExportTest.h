#pragma once

#include "base/Text.h"
#include "engine/ModExporter.h"
#include "support/ControlText.h"
#include "support/RecordingObserver.h"
#include "support/TemporaryFolder.h"
#include "support/TownWorld.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace halvane::test {

/// Exports the town world with control files given as texts, through a module state of the test's own.
class ExportTest : public ::testing::Test {
protected:
    ExportTest() { prepare(); }

    /// Puts the map document into the state, as the component does before an export.
    void prepare() {
        state.pHost = world.pHost;
        state.options.pObserver = &observer;
        state.pMapDoc = world.pMapDocument;
        state.pMap = world.pMapDocument->focusMap();
    }

    /// The document as written, its line breaks between tags taken out; nothing when there is no file.
    std::optional<std::string> run(const std::string& sControl) {
        prepare();
        state.sControlPath = folder.write("control.xml", sControl);
        state.sOutputPath = folder.file(sOutputName);
        ExportEntry(state);
        const auto sOutput = folder.read(sOutputName);
        return sOutput.has_value() ? std::optional(replaceAll(*sOutput, ">\r\n<", "><")) : std::nullopt;
    }
    [[nodiscard]] std::string rawOutput() const { return folder.read(sOutputName).value_or("(no file)"); }

    /// A control file that puts the nodes below an element L of the roads layer.
    [[nodiscard]] static std::string group(const std::string& sNodes) {
        return "<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>" +
               sNodes + "</l></a>";
    }

    TownWorld world;
    TemporaryFolder folder;
    RecordingObserver observer;
    ExportState state;
    std::string sOutputName = "out.xml";
};

} // namespace halvane::test
