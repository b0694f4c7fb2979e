#pragma once

#include "host/Relationships.h"
#include "host/com/HostObject.h"

namespace halvane::host::com {

class ComRelationshipClass final : public GisRelationshipClass, public HostObject {
public:
    ComRelationshipClass(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindRelationshipClass, std::move(pDispatch)) {}

    [[nodiscard]] std::string name() const override { return object().text("Name"); }
    [[nodiscard]] std::string forwardPathLabel() const override { return object().text("ForwardPathLabel"); }
    [[nodiscard]] std::string backwardPathLabel() const override {
        return object().text("BackwardPathLabel");
    }
    [[nodiscard]] std::string featureDatasetName() const override {
        return object().text("FeatureDatasetName");
    }
    [[nodiscard]] bool isAttributed() const override { return object().flag("IsAttributed"); }
    [[nodiscard]] bool isComposite() const override { return object().flag("IsComposite"); }
    [[nodiscard]] std::int32_t notification() const override { return object().integer("Notification"); }
    [[nodiscard]] std::int32_t cardinality() const override { return object().integer("Cardinality"); }
    [[nodiscard]] std::string originClassName() const override { return object().text("OriginClassName"); }
    [[nodiscard]] std::string destinationClassName() const override {
        return object().text("DestinationClassName");
    }
    [[nodiscard]] std::string originPrimaryKey() const override { return object().text("OriginPrimaryKey"); }
    [[nodiscard]] std::string originForeignKey() const override { return object().text("OriginForeignKey"); }
    [[nodiscard]] std::string destinationPrimaryKey() const override {
        return object().text("DestinationPrimaryKey");
    }
    [[nodiscard]] std::string destinationForeignKey() const override {
        return object().text("DestinationForeignKey");
    }
};

} // namespace halvane::host::com
