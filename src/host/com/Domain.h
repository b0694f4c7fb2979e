#pragma once

#include "host/Domains.h"
#include "host/Fields.h"
#include "host/Subtypes.h"
#include "host/com/HostObject.h"

namespace halvane::host::com {

class ComDomain final : public GisDomain, public HostObject {
public:
    ComDomain(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindDomain, std::move(pDispatch)) {}

    [[nodiscard]] std::string name() const override { return object().text("Name"); }
    [[nodiscard]] std::string description() const override { return object().text("Description"); }
    [[nodiscard]] std::int32_t fieldType() const override { return object().integer("FieldType"); }
    [[nodiscard]] std::int32_t mergePolicy() const override { return object().integer("MergePolicy"); }
    [[nodiscard]] std::int32_t splitPolicy() const override { return object().integer("SplitPolicy"); }
    [[nodiscard]] std::int32_t domainType() const override { return object().integer("DomainType"); }
    [[nodiscard]] Value minValue() const override { return object().value("MinValue"); }
    [[nodiscard]] Value maxValue() const override { return object().value("MaxValue"); }
    [[nodiscard]] std::int32_t codeCount() const override { return object().integer("CodeCount"); }
    [[nodiscard]] CodedValue code(std::int32_t lIndex) const override {
        return {object().value("CodeValue", {lIndex}), object().text("CodeName", {lIndex})};
    }
};

class ComSubtypes final : public GisSubtypes, public HostObject {
public:
    ComSubtypes(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindSubtypes, std::move(pDispatch)) {}

    [[nodiscard]] bool hasSubtypes() const override { return object().flag("HasSubtypes"); }
    [[nodiscard]] std::string subtypeFieldName() const override { return object().text("SubtypeFieldName"); }
    [[nodiscard]] std::int32_t defaultSubtypeCode() const override {
        return object().integer("DefaultSubtypeCode");
    }
    [[nodiscard]] std::int32_t subtypeCount() const override;
    [[nodiscard]] std::int32_t subtypeCode(std::int32_t lIndex) const override;
    [[nodiscard]] std::string subtypeName(std::int32_t lCode) const override {
        return object().text("SubtypeName", {lCode});
    }
    [[nodiscard]] GisDomainPtr domain(std::int32_t lCode, std::string_view sFieldName) const override {
        return roleOf<ComDomain>(object(), "Domain", {lCode, std::string(sFieldName)});
    }
    [[nodiscard]] Value defaultValue(std::int32_t lCode, std::string_view sFieldName) const override {
        return object().value("DefaultValue", {lCode, std::string(sFieldName)});
    }

private:
    [[nodiscard]] std::vector<std::int32_t> readCodes() const;

    mutable CountedList<std::int32_t> codes_;
};

} // namespace halvane::host::com
