#pragma once

#include "host/Map.h"
#include "host/com/HostObject.h"

namespace halvane::host::com {

class ComMap final : public GisMap, public HostObject {
public:
    ComMap(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindMap, std::move(pDispatch)) {}

    [[nodiscard]] std::string name() const override { return object().text("Name"); }
    [[nodiscard]] std::int32_t layerCount() const override;
    [[nodiscard]] GisLayerPtr layer(std::int32_t lIndex) const override;
    [[nodiscard]] std::int32_t standaloneTableCount() const override;
    [[nodiscard]] GisTablePtr standaloneTable(std::int32_t lIndex) const override;
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override;

private:
    [[nodiscard]] std::vector<GisTablePtr> tables() const;

    mutable CountedList<GisLayerPtr> layers_;
    mutable CountedList<GisTablePtr> tables_;
};

class ComMapDocument final : public GisMapDocument, public HostObject {
public:
    ComMapDocument(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindMapDocument, std::move(pDispatch)) {}

    [[nodiscard]] GisMapPtr focusMap() const override { return roleOf<ComMap>(object(), "FocusMap"); }
    [[nodiscard]] std::int32_t mapCount() const override;
    [[nodiscard]] GisMapPtr map(std::int32_t lIndex) const override;

private:
    [[nodiscard]] std::vector<std::shared_ptr<ComMap>> maps() const;

    mutable CountedList<std::shared_ptr<ComMap>> maps_;
};

} // namespace halvane::host::com
