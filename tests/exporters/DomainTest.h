#pragma once

#include "exporters/ExporterTest.h"

#include <string>

namespace halvane::test {

/// A workspace that holds domains, behind the current layer.
class DomainTest : public ExporterTest {
protected:
    DomainTest() {
        pWorkspace->add(pRoads);
        state.pFeatureLayer = host::memory::MemoryFeatureLayer::make("Roads", pRoads);
    }

    void addThreeDomains() {
        for (const char* sName : {"A", "B", "C"})
            pWorkspace->add(host::memory::MemoryDomain::ofType(sName, 4, 3));
    }
    /// What a property node named V with these attributes writes, inside an element D.
    std::string property(const host::GisDomain& domain, const std::string& sAttributes) {
        ExportDomainProperty(state, domain, control("<v Name='V' " + sAttributes + "/>"), element("D"));
        return written();
    }
    std::string exported(const std::string& sControl, const std::string& sElement = "D") {
        OutputElement oElement = element(sElement);
        ExportDomains(state, control(sControl), oElement);
        return written();
    }

    host::memory::MemoryWorkspacePtr pWorkspace = host::memory::MemoryWorkspace::make("D:\\data.mdb", 1);
    host::memory::MemoryFeatureClassPtr pRoads =
        host::memory::MemoryFeatureClass::make("Roads", host::ShapeType::Polyline, {});
};

} // namespace halvane::test
