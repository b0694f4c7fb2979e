#pragma once

#include "host/Application.h"
#include "host/Workspace.h"
#include "snapshot/RecordingTables.h"

#include <memory>

namespace halvane::test {

/// The host, filing what it opens and makes under an object of the kind "Application".
class RecordingHost final : public RecorderOf<host::GisHost> {
public:
    RecordingHost(RecordedObject& object, Recording& recording, host::GisHostPtr pReal)
        : RecorderOf(object, std::move(pReal)), recording_(recording) {}

    [[nodiscard]] host::GisFeatureLayerPtr newFeatureLayer() override;
    [[nodiscard]] host::GisPropertySetPtr newPropertySet() override { return host().newPropertySet(); }
    [[nodiscard]] host::GisWorkspaceFactoryPtr newWorkspaceFactory(host::WorkspaceFactoryKind kind) override;
    [[nodiscard]] host::GisCatalogPtr newCatalog() override { return host().newCatalog(); }
    [[nodiscard]] host::GisNumericFormatPtr newNumericFormat() override { return host().newNumericFormat(); }
    [[nodiscard]] ObjectPtr createComponent(std::string_view sProgId) override {
        return host().createComponent(sProgId);
    }
    [[nodiscard]] host::GisSpatialReferencePtr referenceOf(std::string_view sAuthorityCode) override;
    [[nodiscard]] Date today() const override {
        return noted("Today", [&] { return host().today(); });
    }
    [[nodiscard]] char pathSeparator() const override;

private:
    Recording& recording_;
};

/// A recorder of a whole map document; nothing for nothing.
[[nodiscard]] host::GisMapDocumentPtr recordDocument(RecordedObject& object,
                                                     const host::GisMapDocumentPtr& pReal);

/// A recorder of a layer of whatever kind, filed under the key.
[[nodiscard]] host::GisLayerPtr recordLayer(RecordedObject& object, const std::string& sKey,
                                            const host::GisLayerPtr& pReal);

} // namespace halvane::test
