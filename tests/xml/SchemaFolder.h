#pragma once

#include "support/TemporaryFolder.h"
#include "xml/schema/SchemaCatalog.h"
#include "xml/schema/SchemaFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {

/// A schema of the target namespace "urn:NAMESPACE", or of none.
inline std::string schemaOf(std::string_view sContent, std::string_view sNamespace = {}) {
    std::string sSchema = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema")";
    if (!sNamespace.empty())
        sSchema.append(" targetNamespace=\"urn:").append(sNamespace).append("\"");
    return sSchema.append(">").append(sContent).append("</xs:schema>");
}

inline std::string catalogOf(std::string_view sEntries) {
    return "<catalog xmlns=\"urn:oasis:names:tc:entity:xmlns:xml:catalog\">" + std::string(sEntries) +
           "</catalog>";
}

/// Schemas and catalogues of a folder, and what is said of them.
class SchemaFolder : public testing::Test {
protected:
    [[nodiscard]] std::string path(std::string_view sName) const { return folder.file(sName); }

    dom::SchemaCatalog catalogIn(std::string_view sName) {
        return {path(sName), "shown:" + std::string(sName), problems};
    }
    /// Reads a catalogue with those entries that has nothing wrong.
    dom::SchemaCatalog catalogWith(std::string_view sEntries) {
        folder.write("catalog.xml", catalogOf(sEntries));
        auto catalog = catalogIn("catalog.xml");
        EXPECT_THAT(problems, testing::IsEmpty());
        return catalog;
    }
    dom::SchemaFiles filesFrom(std::string_view sName, const dom::SchemaCatalog& catalog = {}) {
        return {path(sName), "shown:" + std::string(sName), catalog, problems};
    }

    TemporaryFolder folder;
    std::vector<std::string> problems;
};

} // namespace halvane::test
