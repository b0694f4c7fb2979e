#pragma once

#include "engine/second/SecondControl.h"
#include "expression/sqlite/SqliteEvaluator.h"
#include "support/ExportTest.h"

#include <string>

namespace halvane::test {

/// Exports the town world with control files of the second edition.
class SecondEditionTest : public ExportTest {
protected:
    /// The document that nodes below an element "Out" write; "not saved: …" for none.
    std::string out(const std::string& sNodes, const std::string& sRootAttributes = "") {
        observer.aFailures.clear();
        observer.aNotices.clear();
        observer.sNotSavedReason.reset();
        state.options.pSecondEdition = &edition;
        const auto sWritten =
            run("<c xmlns:h='urn:halvane:control:2' Name='Out' " + sRootAttributes + ">" + sNodes + "</c>");
        if (observer.sNotSavedReason)
            return "not saved: " + *observer.sNotSavedReason;
        return sWritten.value_or("(no file)");
    }
    /// The same without the element "Out".
    std::string in(const std::string& sNodes) {
        std::string sAll = out(sNodes);
        if (sAll == "<Out/>")
            return "";
        if (sAll.starts_with("<Out>") && sAll.ends_with("</Out>"))
            return sAll.substr(5, sAll.size() - 11);
        return sAll;
    }
    /// In an element for each road.
    std::string inRoads(const std::string& sNodes) {
        return in(
            "<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>"
            "<r Name='R' DataSource='Feature' Entries='Multiple'>" +
            sNodes + "</r></l>");
    }
    /// What failed, "name: description".
    [[nodiscard]] std::string failures() const {
        std::string sAll;
        for (const auto& failure : observer.aFailures)
            sAll += failure.sName + ": " + failure.sDescription + "\n";
        return sAll;
    }

    expression::sqlite::SqliteEvaluator evaluator{1'700'000'000};
    SecondEdition edition{evaluator,
                          "2023-11-14",
                          "2023-11-14T22:13:20Z",
                          {{"who", "O'Brien"}},
                          nullptr,
                          [this](std::string_view sCode) { return world.pHost->referenceOf(sCode); }};
};

} // namespace halvane::test
