#pragma once

#include "cli/Samples.h"
#include "halvane.h"

#include <memory>

namespace halvane::test {

struct FreesHandles {
    void operator()(halvane_export* pExport) const { halvane_export_free(pExport); }
    void operator()(halvane_description* pDescription) const { halvane_description_free(pDescription); }
};
using ExportHandle = std::unique_ptr<halvane_export, FreesHandles>;
using DescriptionHandle = std::unique_ptr<halvane_description, FreesHandles>;

/// A folder with the towns, and an export of them into "out.xml".
class LibraryFixture : public ExportFixture {
protected:
    [[nodiscard]] ExportHandle townsInto(std::string_view sOutput) const {
        ExportHandle pTowns(
            halvane_export_new(program.file("control.xml").c_str(), program.file(sOutput).c_str()));
        EXPECT_EQ(halvane_export_set_map(pTowns.get(), program.file("towns.geojson").c_str()), 0);
        return pTowns;
    }

    ExportHandle pExport = townsInto("out.xml");
};

} // namespace halvane::test
